#!/bin/bash
# set-up and build, then deinterlaces a real clip and leaves a picture and a film in build/demo
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/demo-clip.sh
. "$nmfv_scripts/demo-clip.sh"
demo=$nmfv_build/demo

# Every frame goes through the DLL, loaded by its COM entry points in Wine.
deinterlace_clip() {
    set -o pipefail
    interlaced_clip "$demo/interlaced.mp4" |
        "$nmfv_scripts/wine" "$nmfv_build/mingw/nmfvdeint.exe" --dll "$nmfv_build/mingw/NMFVDeitrx.dll" - - \
            --from y4m --to y4m --feed rgb24 --mode auto --method rebuild \
            --still "$nmfv_demo_still" "$demo/before-after.png" 2>"$demo/summary.txt" |
        ffmpeg -v error -nostdin -y -f yuv4mpegpipe -i - -c:v libx264 -preset veryfast -crf 18 -pix_fmt yuv420p \
            -movflags +faststart "$demo/deinterlaced.mp4"
}

set_up_packages ffmpeg
bash "$nmfv_scripts/verb-build.sh"
ensure_clip
rm -rf "$demo"
mkdir -p "$demo"
need_space "$demo" 200 "the demo"
say "demo: a phone's recording, cut to a window of 1280x720 that rests and pans by $nmfv_demo_pan pixels a field;"
say "demo: 210 frames as RGB24, --mode auto --method rebuild, sensitivity 1 (the default);"
say "demo: frames of the rests are not interlaced, and pass unchanged but for five seconds after an interlaced one"
keep_server
step_lines=20
step "demo: deinterlacing" deinterlace_clip || {
    cat "$demo/summary.txt" >&2
    die "the demo failed; nothing in build/demo is to be trusted"
}
for result in before-after.png deinterlaced.mp4 interlaced.mp4; do
    [[ -s $demo/$result ]] || die "the demo left no $result"
done
sed 's/\r$//; s/^/   /' "$demo/summary.txt"
echo
say "the picture, before and after:  $demo/before-after.png"
say "the film, deinterlaced:         $demo/deinterlaced.mp4"
say "the film before:                $demo/interlaced.mp4"
