#!/bin/bash
# The demo's clip: a real recording, made interlaced. To be sourced after setup.sh's parts.

nmfv_clip_package=forensics-samples-files
nmfv_clip_file=usr/share/forensics-samples/original-files/movie1/VID_20191220_170832.mp4

# Takes the one file out of FOLDER's package.
unpack_clip() {
    dpkg-deb --fsys-tarfile "$1"/*.deb | tar -xO "./$nmfv_clip_file" >"$1/clip.mp4" && [[ -s $1/clip.mp4 ]]
}

download_clip() {
    cd "$1" && apt-get -q -o APT::Sandbox::User=root download "$nmfv_clip_package"
}

# Brings the recording (a phone's, 1920x1080, 30 frames a second, CC BY-SA 4.0) into the cache, once. Prints nothing.
ensure_clip() {
    nmfv_clip=$nmfv_cache/demo-clip.mp4
    [[ -s $nmfv_clip ]] && return
    need_space "$nmfv_cache" 100 "the demo's clip"
    mkdir -p "$nmfv_cache"
    local work
    work=$(mktemp -d "$nmfv_cache/clip.XXXXXX")
    # shellcheck disable=SC2064  # this very folder
    trap "rm -rf '$work'" EXIT
    step "demo: downloading a clip" download_clip "$work" ||
        die "the demo's clip cannot be downloaded; it is in the package $nmfv_clip_package"
    step "demo: unpacking the clip" unpack_clip "$work" || die "the package $nmfv_clip_package holds no clip any more"
    mv "$work/clip.mp4" "$nmfv_clip"
    rm -rf "$work"
    trap - EXIT
}

# The window onto the recording stands still for 60 frames, pans right for 40, rests for 30, pans back for 40 and
# stands still again: 210 frames of two fields.
nmfv_demo_pan=8
nmfv_demo_still=80

# Writes the interlaced clip as Y4M 4:2:2 on standard output, and to the file COPY for players. Sixty pictures a
# second, each moved by the pan, become thirty frames whose upper and lower fields are of different moments.
interlaced_clip() {
    local copy=$1 span=640 x
    x="min($span,max(0,$nmfv_demo_pan*(n-120)))-min($span,max(0,$nmfv_demo_pan*(n-260)))"
    ffmpeg -v error -nostdin -y -stream_loop -1 -i "$nmfv_clip" -an -filter_complex \
        "fps=60,format=yuv422p,crop=1280:720:x='$x':y=180,tinterlace=mode=interleave_top,trim=end_frame=210,split[a][b];
         [b]scale=interl=1,format=yuv420p[c]" \
        -map '[c]' -c:v libx264 -preset veryfast -crf 18 -flags +ildct+ilme -movflags +faststart "$copy" \
        -map '[a]' -strict -1 -f yuv4mpegpipe -
}
