#!/bin/bash
# tools/measure/measure.sh fields [NAME...]      what "nmfvdeint analyse" and ffmpeg's idet say of clips with known truth
# tools/measure/measure.sh methods [PICTURE.png] how near each method comes to the truth; the picture shows a detail
# The clips are made with ffmpeg from a real recording whose frames stand for the moments of fields. Needs a build.
set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
# shellcheck source=scripts/common.sh
. "$top/scripts/common.sh"
# shellcheck source=scripts/demo-clip.sh
. "$nmfv_scripts/demo-clip.sh"

work=$nmfv_build/measure
ulimit -f 4000000 # kilobytes: a clip without an end does not fill the disk
tool() { "$nmfv_scripts/wine" "$nmfv_build/mingw/nmfvdeint.exe" "$@"; }
quiet_ffmpeg() { ffmpeg -v error -nostdin -y "$@"; }

# The recording's frames, forth and back so that they repeat without a jump, as 60 moments a second.
make_moments() {
    [[ -s $work/moments.y4m ]] || quiet_ffmpeg -i "$nmfv_clip" -an -vsync passthrough -filter_complex \
        "format=yuv422p,split[a][b];[b]reverse[c];[a][c]concat,setpts=N/60/TB" -r 60 -strict -1 "$work/moments.y4m"
}

tff=tinterlace=mode=interleave_top
bff=tinterlace=mode=interleave_bottom
soft=:flags=low_pass_filter
hd=crop=1280:720
# NAME|TRUTH|FRAMES|SOURCE|FILTERS. SOURCE is the recording (-), one picture of it (still), or one of ffmpeg's own.
# "new" before the name: these clips were first made when the analysis was finished.
clips() {
    cat <<END
hand-held 1080p|top-field-first|60|-|$tff
hand-held 576 rows, soft|bottom-field-first|80|-|scale=720:576,$bff$soft
new hand-held, noise|top-field-first|80|-|$hd:x=300:y=180,noise=alls=12:allf=t,$tff
pan, 8 pixels a field|top-field-first|80|still|$hd:x='4*n':y=180,setpts=N/60/TB,crop=640:480:x='4*n':y=100,$tff
pan, 1 pixel a field|bottom-field-first|80|still|$hd:x='n':y=180,$bff
new pan, half a pixel a field|top-field-first|80|still|crop=1600:960:x='n':y=60,scale=800:480,$tff$soft
tilt, 2 rows a field|bottom-field-first|80|still|$hd:x=300:y='2*n',$bff
hand-held, progressive|progressive|60|-|null
new pan, progressive|progressive|80|still|$hd:x='6*n':y=180
film 24 to 30|telecined|80|still|$hd:x='6*n':y=180,telecine=first_field=top
new film, hand-held|telecined|80|-|scale=720:480,telecine=first_field=bottom
film 24 to 25|telecined|100|still|$hd:x='4*n':y=180,telecine=first_field=top:pattern=222222222223
small object|top-field-first|80|still|split[a][b];[b]crop=64:64:900:500[c];[a]$hd:x=0:y=180[d];[d][c]overlay=x='100+5*n':y=300,$tff
new small object, noise|bottom-field-first|80|still|split[a][b];[b]crop=64:64:900:500[c];[a]$hd:x=0:y=180[d];[d][c]overlay=x='100+3*n':y=200,noise=alls=8:allf=t,$bff
first progressive, then video|mixed|100|still|$hd:x='3*if(lt(n,100),2*floor(n/2),n)':y=180,$tff
new cuts|top-field-first|80|-|$hd:x='300*mod(floor(n/26),3)':y=180,$tff
drawn graphics|top-field-first|80|testsrc2=s=720x576:r=60|format=yuv422p,$tff
new drawn graphics|bottom-field-first|80|testsrc2=s=720x480:r=60|format=yuv422p,$bff$soft
coded as interlaced H.264|top-field-first|80|-|scale=720:576,$tff,setfield=tff
nothing moves|undecided|60|still|$hd:x=0:y=180
END
}

# make_clip SOURCE FRAMES FILTERS FILE
make_clip() {
    local -a input=(-stream_loop -1 -i "$work/moments.y4m")
    [[ $1 != still ]] || input=(-loop 1 -framerate 60 -i "$work/still.png")
    [[ $1 != *=* ]] || input=(-f lavfi -i "$1")
    quiet_ffmpeg "${input[@]}" -filter_complex "$3,format=yuv422p" -frames:v "$2" -strict -1 -f yuv4mpegpipe "$4"
}

# Codes the clip as interlaced video and decodes it again.
code_clip() {
    quiet_ffmpeg -i "$1" -pix_fmt yuv420p -c:v libx264 -crf 26 -flags +ildct+ilme "$work/coded.mp4"
    quiet_ffmpeg -i "$work/coded.mp4" -pix_fmt yuv420p -strict -1 -f yuv4mpegpipe "$1"
}

# What idet's counts of the whole clip amount to, by the rule that the analysis goes by: nine tenths of one kind. It has
# no word for film, so repeated fields of both kinds, a tenth of the frames each, stand for it.
idet_verdict() {
    ffmpeg -nostdin -hide_banner -i "$1" -vf idet -f null - 2>&1 | tr -s ' ' | awk '
        function after(word,  i) { for (i = 1; i < NF; i++) if ($i == word) return $(i + 1); return 0 }
        /Repeated Fields/ { neither = after("Neither:"); top = after("Top:"); bottom = after("Bottom:") }
        /Multi frame/ { t = after("TFF:"); b = after("BFF:"); p = after("Progressive:"); u = after("Undetermined:") }
        END {
            n = t + b + p
            if (top + bottom > 0 && top * 10 >= neither + top + bottom && bottom * 10 >= neither + top + bottom) print "telecined"
            else if (n * 10 < n + u || n == 0) print "undecided"
            else if (t >= 0.9 * n) print "top-field-first"
            else if (b >= 0.9 * n) print "bottom-field-first"
            else if (p >= 0.9 * n) print "progressive"
            else print "mixed"
        }'
}

json_value() { sed -E "s/.*\"$1\": \"?([^\",}]*).*/\1/" <<<"$2"; }

measure_fields() {
    local wanted=" $* " name truth frames source filters json verdict peer right=0 peer_right=0 all=0
    printf '| clip | truth | analyse | confidence | idet |\n|---|---|---|---|---|\n'
    while IFS='|' read -r name truth frames source filters; do
        [[ $# == 0 || $wanted == *" ${name%% *} "* || ($wanted == " old " && $name != new\ *) ]] || continue
        make_clip "$source" "$frames" "$filters" "$work/clip.y4m"
        [[ $name != coded* ]] || code_clip "$work/clip.y4m"
        json=$(tool analyse "$work/clip.y4m" --json --quiet)
        verdict=$(json_value verdict "$json") peer=$(idet_verdict "$work/clip.y4m")
        printf '| %s | %s | %s | %s | %s |\n' "$name" "$truth" "$verdict" "$(json_value confidence "$json")" "$peer"
        all=$((all + 1))
        [[ $verdict != "$truth" ]] || right=$((right + 1))
        [[ $peer != "$truth" ]] || peer_right=$((peer_right + 1))
    done < <(clips)
    printf '\nright: analyse %d, idet %d, of %d clips\n' "$right" "$peer_right" "$all"
    rm -f "$work/clip.y4m" "$work/coded.mp4"
}

# psnr TRUTH CLIP FILTER: of luma, over all frames; FILTER takes truth [0] and clip [1] to [t] and [c].
psnr() {
    ffmpeg -nostdin -hide_banner -i "$1" -i "$2" -filter_complex "$3;[t]settb=AVTB,setpts=N/60/TB[u];[c]settb=AVTB,setpts=N/60/TB[d];[d][u]psnr" \
        -f null - 2>&1 | sed -nE 's/.*PSNR y:([0-9.inf]+).*/\1/p' | tail -n 1
}

# What a method left: against the moments of the field that it kept, and against all moments. A method that gives a
# picture for each frame shows it for both of its moments.
own="[0]select='not(mod(n,2))'[t];[1]null[c]"
each="[0]null[t];[1]split[a][b];[a][b]interleave[c]"

measure_method() {
    printf '| %s | %s | %s |\n' "$2" "$(psnr "$1" "$3" "$own")" "$(psnr "$1" "$3" "$each")"
}

# A method that gives a picture for each field.
measure_doubling() {
    quiet_ffmpeg -i "$work/woven.y4m" -vf "setfield=tff,$3" -strict -1 -f yuv4mpegpipe "$work/out.y4m"
    printf '| %s | %s | %s |\n' "$2" "$(psnr "$1" "$work/out.y4m" "[0]select='not(mod(n,2))'[t];[1]select='not(mod(n,2))'[c]")" \
        "$(psnr "$1" "$work/out.y4m" "[0]null[t];[1]null[c]")"
}

# measure_clip TRUTH
measure_clip() { # frames are YUY2, whose even rows are the top field
    quiet_ffmpeg -i "$1" -vf "$tff" -strict -1 -f yuv4mpegpipe "$work/woven.y4m"
    tool "$work/woven.y4m" "$work/merge.y4m" --mode all --method merge --force --quiet
    tool "$work/woven.y4m" "$work/rebuild.y4m" --mode all --method rebuild --even --force --quiet
    printf '| method | kept field'\''s moments | all moments |\n|---|---|---|\n'
    measure_method "$1" "nothing" "$work/woven.y4m"
    measure_method "$1" "merge" "$work/merge.y4m"
    measure_method "$1" "rebuild" "$work/rebuild.y4m"
    measure_doubling "$1" "simple bob" "separatefields,scale=iw:ih*2:flags=bilinear"
    measure_doubling "$1" "yadif" "yadif=mode=send_field"
    measure_doubling "$1" "bwdif" "bwdif=mode=send_field"
}

# make_picture FILE: a detail of one frame before, merged, rebuilt and true.
make_picture() {
    local part="select='eq(n,20)',crop=108:96:x=$detail_x:y=$detail_y,scale=iw*2:ih*2:flags=neighbor,setsar=1"
    local -a names=(before merged rebuilt truth)
    local graph="" i
    for i in 0 1 2 3; do
        graph+="[$i]${part/eq(n,20)/eq(n,$((i == 3 ? 40 : 20)))},pad=iw+8:ih+32:4:28:white,"
        graph+="drawtext=text=${names[i]}:x=8:y=6:fontsize=18:fontcolor=black[p$i];"
    done
    quiet_ffmpeg -i "$work/woven.y4m" -i "$work/merge.y4m" -i "$work/rebuild.y4m" -i "$work/truth.y4m" \
        -filter_complex "${graph}[p0][p1][p2][p3]hstack=inputs=4" -frames:v 1 "$1"
}

detail_x=475 detail_y=366

measure_methods() {
    echo "moving (the recording, hand-held):"
    quiet_ffmpeg -i "$work/moments.y4m" -strict -1 "$work/truth.y4m"
    measure_clip "$work/truth.y4m"
    printf '\nmoving (a pan by 8 pixels a field):\n'
    quiet_ffmpeg -loop 1 -framerate 60 -i "$work/still.png" -vf "$hd:x='8*n':y=180,format=yuv422p" -frames:v 80 \
        -strict -1 "$work/truth.y4m"
    measure_clip "$work/truth.y4m"
    [[ $# == 0 ]] || make_picture "$1"
    printf '\nstill (one picture of it):\n'
    quiet_ffmpeg -loop 1 -framerate 60 -i "$work/still.png" -vf format=yuv422p -frames:v 40 -strict -1 "$work/truth.y4m"
    measure_clip "$work/truth.y4m"
    rm -f "$work"/{truth,woven,merge,rebuild,out}.y4m
}

case ${1:-} in
    fields | methods) ;;
    *)
        sed -n '2,4s/^# //p' "${BASH_SOURCE[0]}" >&2
        exit 2
        ;;
esac
[[ -f $nmfv_build/mingw/nmfvdeint.exe ]] || die "there is no build; run ./run build"
command -v ffmpeg >/dev/null || die "ffmpeg is wanted"
ensure_clip
mkdir -p "$work"
need_space "$work" 2000 "measuring"
make_moments
[[ -s $work/still.png ]] || quiet_ffmpeg -i "$nmfv_clip" -vf "select='eq(n,30)',format=rgb24" -frames:v 1 "$work/still.png"
verb=$1
shift
"measure_$verb" "$@"
