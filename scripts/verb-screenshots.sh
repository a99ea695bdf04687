#!/bin/bash
# pictures of the property pages and of pages --live, for build/screenshots and docs/pages
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
shots=$nmfv_build/screenshots

# The DLL and the host come with it.
build_screens() {
    cd "$nmfv_top" && cmake --preset mingw && cmake --build --preset mingw --parallel "$(jobs)" --target screens
}

# A test picture that scrolls: the photographs go into the repository, so they show nobody's recording.
make_clip() {
    ffmpeg -v error -nostdin -y -f lavfi -i testsrc=size=640x360:rate=60 -frames:v 60 \
        -vf scroll=horizontal=0.0125,format=yuv422p,tinterlace=mode=interleave_top "$shots/clip.y4m"
}

# make_prefix DPI: Wine itself draws the titles there, as there is no window manager; the tests' prefix is left alone.
make_prefix() {
    rm -rf "$WINEPREFIX" && cp -a --reflink=auto "$nmfv_prefix" "$WINEPREFIX"
    "$nmfv_scripts/wine" reg.exe add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f
    "$nmfv_scripts/wine" reg.exe add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
    "$nmfv_scripts/wine" --server -k -w || true
}

take_pictures() {
    local dpi=$1
    mkdir -p "$shots/$dpi"
    export NMFV_WINEPREFIX=$shots/prefix
    WINEPREFIX=$NMFV_WINEPREFIX make_prefix "$dpi" &&
        NMFV_DISPLAY=1 NMFV_SCREEN=$((1280 * dpi / 96))x$((1024 * dpi / 96)) timeout 300 \
            "$nmfv_scripts/wine" "$nmfv_build/mingw/screens.exe" "$shots/$dpi" "$shots/clip.y4m" &&
        rm -rf "$NMFV_WINEPREFIX"
}

# Few colours make small files.
shrink_pictures() {
    pngquant --force --ext .png --strip --speed 1 --nofs 48 "$shots"/96/*.png "$shots"/192/*.png
}

set_up
install_packages ffmpeg pngquant
rm -rf "$shots"
mkdir -p "$shots"
need_space "$shots" 1500 "the screenshots"
step "screenshots: building" build_screens || die "they cannot be built"
step "screenshots: a clip" make_clip || die "the clip cannot be made"
for dpi in 96 192; do
    step "screenshots at $dpi dpi" take_pictures "$dpi" || die "the windows cannot be shown or photographed"
done
step "screenshots: shrinking" shrink_pictures || die "the pictures cannot be shrunk"
for picture in settings roi about sheet live; do
    [[ -s $shots/96/$picture.png && -s $shots/192/$picture.png ]] || die "there is no picture of $picture"
done
mkdir -p "$nmfv_top/docs/pages"
cp "$shots"/96/*.png "$nmfv_top/docs/pages/"
say "screenshots: build/screenshots/96 and 192; those at 96 dpi are in docs/pages now"
