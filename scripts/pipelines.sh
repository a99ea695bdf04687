#!/bin/bash
# The host between programs of others: ffmpeg and the platform's decoder. To be sourced by verb-test-long.sh.

# A pipeline is a name here and the function pipeline_NAME, which says in its output what differed.
pipelines=(media pipe formats large)
pipes=$nmfv_build/pipelines

host() { "$nmfv_scripts/wine" "$nmfv_build/mingw/nmfvdeint.exe" --quiet --force "$@"; }
quiet_ffmpeg() { ffmpeg -v error -nostdin -y "$@"; }

# The checksum of each frame, a line for each, that ffmpeg makes of what these options name.
frame_sums() { quiet_ffmpeg "$@" -f framemd5 - | sed -e '/^#/d' -e 's/.* //'; }

# same_frames WHAT EXPECTED GOT: two files of checksums; tells which lines differ.
same_frames() {
    local count
    count=$(wc -l <"$2")
    if ((count == 0)) || ! diff "$2" "$3" >"$pipes/difference"; then
        echo "$1: of $count frames expected and $(wc -l <"$3") got these differ (from 1): $(grep -m 3 '^[0-9]' "$pipes/difference")"
        return 1
    fi
    echo "$1: $count frames are the same"
}

# follow_rules SIZE METHOD FRAMES: before.raw and after.raw, of YUY2; each frame was to be changed.
follow_rules() {
    local said
    said=$("$nmfv_build/native/clip_oracle" "$pipes/before.raw" "$pipes/after.raw" "${1%x*}" "${1#*x}" 16 "$2")
    echo "$1, $2: $said"
    [[ $said == "$3 frames, $3 changed" ]]
}

# Combed frames that call themselves progressive: Wine's decoder takes others apart.
make_combed_mp4() {
    quiet_ffmpeg -f lavfi -i "testsrc2=s=320x240:r=50,format=yuv420p,noise=alls=20:allf=t,
        tinterlace=interleave_top,setfield=prog" -frames:v 3000 -c:v libx264 -preset veryfast "$pipes/combed.mp4"
}

# The Source Reader, with the decoder and the converter that the platform puts in. Its luma is ffmpeg's own.
pipeline_media() {
    make_combed_mp4 && host "$pipes/combed.mp4" "$pipes/before.raw" --mode off &&
        frame_sums -i "$pipes/combed.mp4" -vf extractplanes=y >"$pipes/decoded" &&
        frame_sums -f rawvideo -pix_fmt yuyv422 -s 320x240 -i "$pipes/before.raw" -vf extractplanes=y >"$pipes/luma" &&
        same_frames "luma of the decoder" "$pipes/decoded" "$pipes/luma" &&
        host "$pipes/combed.mp4" "$pipes/after.raw" --mode all && follow_rules 320x240 merge 3000 &&
        host "$pipes/combed.mp4" "$pipes/after.raw" --mode all --method rebuild && follow_rules 320x240 odd 3000
}

# The demo's recording, over and over, under a window that never rests; interlaced, as Y4M and as raw frames.
real_clip() {
    quiet_ffmpeg -i "$nmfv_clip" -an -filter_complex "loop=-1:41,setpts=N/50/TB,fps=50,trim=end_frame=4000,
        crop=640:360:x='abs(mod(3*n,2400)-1200)':y='abs(mod(n,1400)-700)',format=yuv422p,
        tinterlace=interleave_top,split[a][b]" \
        -map '[a]' -f yuv4mpegpipe - -map '[b]' -pix_fmt yuyv422 -f rawvideo "$pipes/before.raw"
}

pipeline_pipe() {
    local codes
    real_clip | host - - --mode all |
        quiet_ffmpeg -f yuv4mpegpipe -i - -pix_fmt yuyv422 -f rawvideo "$pipes/after.raw"
    codes="${PIPESTATUS[*]}"
    echo "exit codes of ffmpeg, nmfvdeint, ffmpeg: $codes"
    [[ $codes == "0 0 0" ]] && follow_rules 640x360 merge 2000
}

# PICTURE | how ffmpeg writes it | the host's options and output | pixels of a raw output | compared as
# The picture has 8 bits and the comparison repacks it, so every step is exact; 4:2:0 where its chroma does not change from
# row to row, else the way there and back rounds.
pipeline_rows=(
    'yuv420p | -chroma_sample_location center in.y4m  | --to-chroma 420 out.y4m |         | format=yuv420p'
    'yuv420p | -chroma_sample_location left in.y4m    | --to-chroma 420 out.y4m |         | format=yuv420p'
    'yuv420p | -chroma_sample_location topleft in.y4m | --to-chroma 420 out.y4m |         | format=yuv420p'
    'yuv422p | in.y4m                                 | out.y4m                 |         | format=yuv422p'
    'yuv444p | in.y4m                                 | out.y4m                 |         | format=yuv444p'
    'gray    | in.y4m                                 | out.y4m                 |         | extractplanes=y'
    'yuv420p | -strict -1 -pix_fmt yuv420p10 in.y4m   | --to-chroma 420 out.y4m |         | format=yuv420p'
    'yuv420p | -strict -1 -pix_fmt yuv420p12 in.y4m   | --to-chroma 420 out.y4m |         | format=yuv420p'
    'yuv420p | -strict -1 -pix_fmt yuv420p16 in.y4m   | --to-chroma 420 out.y4m |         | format=yuv420p'
    'yuv422p | -strict -1 -pix_fmt yuv422p10 in.y4m   | out.y4m                 |         | format=yuv422p'
    'yuv422p | -strict -1 -pix_fmt yuv422p12 in.y4m   | out.y4m                 |         | format=yuv422p'
    'yuv422p | -strict -1 -pix_fmt yuv422p16 in.y4m   | out.y4m                 |         | format=yuv422p'
    'yuv444p | -strict -1 -pix_fmt yuv444p10 in.y4m   | out.y4m                 |         | format=yuv444p'
    'yuv444p | -strict -1 -pix_fmt yuv444p12 in.y4m   | out.y4m                 |         | format=yuv444p'
    'yuv444p | -strict -1 -pix_fmt yuv444p16 in.y4m   | out.y4m                 |         | format=yuv444p'
    'yuv422p | in.y4m                                 | out.avi                 |         | format=yuv422p'
    'yuv422p | in.y4m                                 | --feed uyvy out.avi     |         | format=yuv422p'
    'yuv422p | -c:v rawvideo -pix_fmt yuyv422 in.avi  | out.y4m                 |         | format=yuv422p'
    'yuv422p | -c:v rawvideo -pix_fmt uyvy422 in.avi  | out.y4m                 |         | format=yuv422p'
    'yuv422p | -c:v rawvideo -pix_fmt yuyv422 in.avi  | out.raw                 | yuyv422 | format=yuv422p'
    'yuv422p | -c:v rawvideo -pix_fmt uyvy422 in.avi  | out.raw                 | uyvy422 | format=yuv422p'
    'bgr24   | -c:v rawvideo in.avi                   | out.raw                 | bgr24   | format=bgr24'
    'bgr24   | -c:v rawvideo -pix_fmt bgra in.avi     | out.raw                 | bgr24   | format=bgr24'
    'yuv422p | -f rawvideo -pix_fmt yuyv422 in.raw    | --raw 36x22:yuy2@25 out.avi  |    | format=yuv422p'
    'yuv422p | -f rawvideo -pix_fmt uyvy422 in.raw    | --raw 36x22:uyvy@25 out.avi  |    | format=yuv422p'
    'bgr24   | -f rawvideo -vf vflip in.raw           | --raw 36x22:rgb24@25 out.avi |    | format=bgr24'
)

# The two spell the same pictures differently: ffmpeg writes a file, the host reads it and writes another, ffmpeg reads.
check_row() {
    local picture writing options pixels compared turn='' source
    local -a write host_options raw=()
    IFS='|' read -r picture writing options pixels compared <<<"$1"
    read -ra write <<<"$writing"
    read -ra host_options <<<"$options"
    source="testsrc2=s=36x22:r=25:d=1,format=${picture// /},noise=alls=60:allf=t,format=${picture// /}"
    [[ $picture != yuv420p* ]] || source+=",geq=lum='lum(X,Y)':cb='cb(X,0)':cr='cr(X,0)'"
    pixels=${pixels// /}
    [[ -z $pixels ]] || raw=(-f rawvideo -pix_fmt "$pixels" -s 36x22 -r 25)
    [[ $pixels != bgr24 ]] || turn=vflip, # the host's raw frames begin with the lowest row
    rm -f in.* out.*
    quiet_ffmpeg -f lavfi -i "$source" "${write[@]}" && host "${write[-1]}" --mode off "${host_options[@]}" &&
        frame_sums -f lavfi -i "$source" -vf "${compared// /}" >expected &&
        frame_sums "${raw[@]}" -i "${host_options[-1]}" -vf "$turn${compared// /}" >got &&
        same_frames "$(tr -s ' ' <<<"${1%|*|*}")" expected got
}

# What ffmpeg cannot decode, or would not write so, it copies: IYU2, and RGB24 from the lowest row.
check_copy() {
    rm -f in.* out.*
    quiet_ffmpeg -f lavfi -i testsrc2=s=36x22:d=1,format=rgb24,noise=alls=60:allf=t -f rawvideo in.raw &&
        host in.raw out.avi --raw "36x22:$1@25" --mode off &&
        frame_sums -f rawvideo -pix_fmt rgb24 -s 36x22 -i in.raw >expected &&
        frame_sums -copy_unknown -i out.avi -map 0 -c copy >got && same_frames "$1 in AVI" expected got &&
        quiet_ffmpeg -copy_unknown -i out.avi -map 0 -c copy in.avi && host in.avi out.raw --mode off &&
        cmp in.raw out.raw && echo "$1 from a copied AVI: all bytes are the same"
}

pipeline_formats() {
    local row
    cd "$pipes" || return
    for row in "${pipeline_rows[@]}"; do
        check_row "$row" || return
    done
    check_copy rgb24 && check_copy iyu2
}

# OpenDML: past 4 GB, so that no offset of 31 or 32 bits is enough. The last frame is also found by the index.
pipeline_large() {
    local frames=1080 last=43.16 codes # 25 a second
    local -a source=(-f lavfi -i testsrc2=s=1920x1080:r=25 -pix_fmt yuyv422 -frames:v "$frames")
    need_space "$pipes" 5000 "an AVI file past 4 GB"
    cd "$pipes" || return
    frame_sums "${source[@]}" >expected && tail -n 1 expected >last || return
    quiet_ffmpeg "${source[@]}" -f rawvideo - | host - big.avi --raw 1920x1080:yuy2@25 --mode off
    codes="${PIPESTATUS[*]}"
    echo "exit codes of ffmpeg, nmfvdeint: $codes; $(stat -c %s big.avi) bytes"
    [[ $codes == "0 0" ]] && frame_sums -i big.avi -c copy >got && same_frames "ffmpeg reads" expected got &&
        frame_sums -ss "$last" -i big.avi -c copy >got && same_frames "and seeks" last got || return
    quiet_ffmpeg "${source[@]}" -c:v rawvideo big.avi || return
    echo "written by ffmpeg: $(stat -c %s big.avi) bytes"
    host big.avi - --to raw --mode off |
        frame_sums -f rawvideo -pix_fmt yuyv422 -s 1920x1080 -r 25 -i - -c copy >got && same_frames "the host reads" expected got
}

# run_pipeline NAME: shows what it says of itself.
run_pipeline() {
    local log=$nmfv_logs/pipelines-$1.log status=0 step_lines=20
    rm -rf "$pipes"
    mkdir -p "$pipes"
    step "pipelines $1" "pipeline_$1" && sed '/^\r*$/d; /GStreamer/d; s/^/   /' "$log" || status=1
    rm -rf "$pipes"
    return "$status"
}
