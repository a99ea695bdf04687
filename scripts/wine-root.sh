#!/bin/bash
# Makes the private Wine 10: packages of Debian 13 unpacked by apt and dpkg into the user's own cache and made
# relocatable, so that its programs run where they lie, without any privilege. To be sourced after common.sh and mirror.sh.

# Wine; a display for windows; the decoders through which Wine's platform reads MP4 (libav) and AVI (good);
# the character set that file names need.
nmfv_wine_packages=(
    wine64 fonts-dejavu-core fonts-wine
    xvfb
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav
    libc-bin
)

# Dependencies of the above that nothing here uses: 3D drivers, desktop services, set-up tools of a full
# system. To apt they are said to be installed, which saves 300 MB.
nmfv_wine_left_out=(
    libgl1-mesa-dri libglx-mesa0 dconf-gsettings-backend dconf-service glib-networking iso-codes systemd
    debconf libcap2-bin procps media-types shared-mime-info
)

# Raised when the way in which the root is made changes.
nmfv_wine_recipe=3

# The programs that are started by others than the wrapper as well: each must find the private libraries itself.
nmfv_wine_programs=(
    usr/lib/wine/wine64 usr/lib/wine/wineserver64 usr/bin/Xvfb
    usr/lib/x86_64-linux-gnu/gstreamer1.0/gstreamer-1.0/gst-plugin-scanner
)

# Where the root is, or is to be. Its programs hold that path, so one that was made elsewhere is another one.
wine_root_path() {
    local stamp
    stamp=$(printf '%s\n' "$nmfv_wine_recipe" "${nmfv_wine_packages[@]}" "${nmfv_wine_left_out[@]}" "$nmfv_cache" | sha256sum)
    echo "$nmfv_cache/wine-root-${stamp:0:12}"
}

# apt's private state below FOLDER: its lists, its download folder, its idea of what is installed.
prepare_apt() {
    local folder=$1 mirror=$2 package
    mkdir -p "$folder"/{state/lists/partial,archives/partial,none}
    for package in "${nmfv_wine_left_out[@]}"; do
        printf 'Package: %s\nStatus: install ok installed\nVersion: 9999\nArchitecture: amd64\n' "$package"
        printf 'Multi-Arch: foreign\nMaintainer: none <none@localhost>\nDescription: left out\n\n'
    done >"$folder/status"
    echo "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror trixie main" >"$folder/sources.list"
    cat >"$folder/apt.conf" <<END
Dir::State "$folder/state";
Dir::State::status "$folder/status";
Dir::Cache "$folder";
Dir::Cache::archives "$folder/archives";
Dir::Etc::sourcelist "$folder/sources.list";
Dir::Etc::sourceparts "$folder/none";
Dir::Etc::preferences "$folder/none/preferences";
Dir::Etc::preferencesparts "$folder/none";
APT::Architecture "amd64";
APT::Architectures { "amd64"; };
APT::Sandbox::User "root";
Acquire::Retries "2";
#clear APT::Update::Pre-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
#clear DPkg::Post-Invoke;
END
}

private_apt() {
    local folder=$1
    shift
    apt-get -q -y -c "$folder/apt.conf" "$@"
}

# What is read by people only stays packed.
unpack_package() {
    dpkg-deb --fsys-tarfile "$1" | tar -x -C "$2" --keep-directory-symlink --no-same-owner \
        --exclude=./usr/share/{doc,man,info,locale,lintian,bug,help,gtk-doc,doc-base} \
        --exclude=./usr/i686-w64-mingw32
}

unpack_packages() {
    local folder=$1 root=$2 name count=0
    local -a packages=("$folder"/archives/*.deb)
    mkdir -p "$root"/usr/{bin,sbin,lib,lib64}
    for name in bin sbin lib lib64; do ln -s "usr/$name" "$root/$name"; done
    export -f unpack_package
    # shellcheck disable=SC2016  # the inner shell's own variables
    printf '%s\0' "${packages[@]}" |
        xargs -0 -P "$(jobs)" -I '{}' bash -euo pipefail -c 'unpack_package "$1" "$2"; echo unpacked' - '{}' "$root" |
        while read -r _; do printf '%d %%\n' $((++count * 100 / ${#packages[@]})); done
    ((PIPESTATUS[1] == 0))
}

# Wine's package turns zlib's DLL into one of its own kind in its set-up script; without that nothing loads.
# The mark stands in the 32 bytes after the 64 of the file's first header.
mark_zlib() {
    local dll=$1/usr/lib/x86_64-linux-gnu/wine/x86_64-windows/zlib1.dll
    cp --remove-destination "$1/usr/x86_64-w64-mingw32/lib/zlib1.dll" "$dll" &&
        { printf 'Wine builtin DLL' && head -c 16 /dev/zero; } | dd of="$dll" bs=1 seek=64 conv=notrunc status=none
}

# relocate_elf FILE LIBRARIES: FILE's own search path, which the libraries that it loads inherit, is where the private
# libraries are, as seen from FILE's folder.
relocate_elf() {
    local folder=$2 path='' part
    for part in '' /blas /lapack /pulseaudio; do path+=${path:+:}\$ORIGIN/$folder$part; done
    patchelf --force-rpath --set-rpath "$path" "$1"
}

# The private loader knows neither the system's library folders nor its list of what they hold: what the packages above
# leave out must not come from another system. The names stay as long as they were.
blind_loader() {
    LC_ALL=C sed -z -i -E 's#/lib/(x86_64-linux-gnu/)?$#/non/\1#; s#^/etc/(ld.so.cache)$#/non/\1#' "$1" &&
        ! grep -qa -e /lib/x86_64-linux-gnu/ -e ^/etc/ld.so.cache$ "$1"
}

# Programs hold the path of their loader; libraries that name a folder of the system's would be led astray by it.
relocate_root() {
    local root=$1 target=$2 program library
    local libraries=$root/usr/lib/x86_64-linux-gnu
    blind_loader "$libraries/ld-linux-x86-64.so.2" || return
    for program in "${nmfv_wine_programs[@]}"; do
        relocate_elf "$root/$program" "$(realpath --relative-to="$(dirname "$root/$program")" "$libraries")" &&
            patchelf --set-interpreter "$target/usr/lib64/ld-linux-x86-64.so.2" "$root/$program" || return
    done
    for library in "$libraries"/*.so.*; do
        [[ -L $library || $(patchelf --print-rpath "$library") != /* ]] || relocate_elf "$library" . || return
    done
}

# Wine's server and its data are looked for under other names than the packages give them; fonts are the root's own.
finish_root() {
    local root=$1 target=$2
    ln -sf wineserver64 "$root/usr/lib/wine/wineserver" &&
        ln -sfn . "$root/usr/share/wine/wine" &&
        printf '%s\n' '<?xml version="1.0"?>' '<!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd">' '<fontconfig>' \
            '<dir prefix="relative">../../usr/share/fonts</dir>' '<cachedir prefix="xdg">fontconfig</cachedir>' \
            '</fontconfig>' >"$root/etc/fonts/fonts.conf" &&
        mark_zlib "$root" && relocate_root "$root" "$target"
}

# Debug information is two thirds of Wine's DLLs, and every prefix holds a copy of them.
strip_wine() {
    find "$1/usr/lib/x86_64-linux-gnu/wine/x86_64-windows" -type f ! -name '*.msstyles' ! -name '*.tlb' -print0 |
        xargs -0 -P "$(jobs)" -n 40 x86_64-w64-mingw32-strip --strip-debug
}

make_wine_root() {
    local target=$1 mirror work
    mirror=$(debian_mirror)
    [[ -n $mirror ]] ||
        die "this machine's apt names no repository of Debian's main component to take Wine from; install Wine 10 or newer"
    need_space "$nmfv_cache" 2500 "making the private Wine"
    work=$(mktemp -d "$nmfv_cache/making.XXXXXX")
    # shellcheck disable=SC2064  # this very folder
    trap "rm -rf '$work'" EXIT
    chmod 755 "$work"
    prepare_apt "$work/apt" "$mirror"
    step "Wine: package lists of Debian 13" private_apt "$work/apt" -o APT::Update::Error-Mode=any update ||
        die "Debian 13's package lists cannot be had from this machine's mirror: is there a network?"
    step "Wine: downloading" private_apt "$work/apt" install --no-install-recommends --download-only \
        "${nmfv_wine_packages[@]}" || die "Wine's packages cannot be downloaded from this machine's mirror"
    step "Wine: unpacking" unpack_packages "$work/apt" "$work/root" || die "Wine's packages cannot be unpacked (disk full?)"
    step "Wine: making it relocatable" finish_root "$work/root" "$target" || die "Wine cannot be made relocatable"
    step "Wine: leaving out debug information" strip_wine "$work/root" || die "Wine's DLLs cannot be stripped"
    mv "$work/root" "$target"
    rm -rf "$work"
    trap - EXIT
}

# Takes the lock of the cache, or waits for another set-up that has it.
lock_cache() {
    [[ $nmfv_cache != *:* ]] || die "the cache folder $nmfv_cache has a colon in its name, which no search path can hold; set NMFV_CACHE"
    { mkdir -p "$nmfv_cache" && : >>"$nmfv_cache/lock"; } 2>/dev/null ||
        die "the cache folder $nmfv_cache cannot be written; set NMFV_CACHE to one that can"
    exec {cache_lock}>>"$nmfv_cache/lock"
    flock -n "$cache_lock" && return
    say "another set-up fills $nmfv_cache; waiting for it"
    flock "$cache_lock"
}

# Makes the root unless it is there. Roots of other recipes and of interrupted set-ups go.
ensure_wine_root() {
    local target cache_lock
    target=$(wine_root_path)
    [[ -d $target ]] && return
    lock_cache
    if [[ ! -d $target ]]; then
        rm -rf "$nmfv_cache"/making.* "$nmfv_cache"/wine-root-*
        make_wine_root "$target"
    fi
    exec {cache_lock}>&-
}
