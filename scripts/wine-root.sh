#!/bin/bash
# Makes the private root that holds Wine 10: packages of Debian 13 unpacked by apt and dpkg, in the user's own
# cache and without any privilege. To be sourced after common.sh, mirror.sh and wine-enter.sh.

# Wine; a display for windows; the decoders through which Wine's platform reads MP4 (libav) and AVI (good);
# a shell and tools, for the packages' own set-up and the display's keyboard.
nmfv_wine_packages=(
    wine64 fonts-dejavu-core fonts-wine
    xvfb xauth
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav
    dash coreutils
)

# Dependencies of the above that nothing here uses: 3D drivers, desktop services, set-up tools of a full
# system. To apt they are said to be installed, which saves 300 MB.
nmfv_wine_left_out=(
    libgl1-mesa-dri libglx-mesa0 dconf-gsettings-backend dconf-service glib-networking iso-codes systemd
    debconf libcap2-bin procps media-types shared-mime-info
)

# Raised when the way in which the root is made changes.
nmfv_wine_recipe=2

wine_root_path() {
    local stamp
    stamp=$(printf '%s\n' "$nmfv_wine_recipe" "${nmfv_wine_packages[@]}" "${nmfv_wine_left_out[@]}" | sha256sum)
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

# Wine's package turns zlib's DLLs into ones of its own kind in its set-up script; without them nothing loads.
# The script wants the 32-bit one too, which nothing here uses.
run_wine_setup() {
    local folder=$1 root=$2 how=$3 other=$2/usr/i686-w64-mingw32
    mkdir -p "$other/lib" && touch "$other/lib/zlib1.dll" &&
        dpkg-deb --ctrl-tarfile "$folder"/archives/libwine_*.deb | tar -xO ./postinst >"$root/usr/setup" &&
        (enter_root "$how" "$root" --bind /usr/bin/sh /usr/setup configure) &&
        rm -rf "$root/usr/setup" "$other" &&
        [[ -s $root/usr/lib/x86_64-linux-gnu/wine/x86_64-windows/zlib1.dll ]]
}

# The packages' set-up scripts don't run; this is what matters of them here.
finish_root() {
    local folder=$1 root=$2 how=$3
    touch "$root"/etc/{passwd,group} &&
        echo 'include /etc/ld.so.conf.d/*.conf' >"$root/etc/ld.so.conf" &&
        printf '/usr/lib/x86_64-linux-gnu/%s\n' blas lapack >"$root/etc/ld.so.conf.d/chosen.conf" &&
        /sbin/ldconfig -r "$root" &&
        # Relative patterns need a working folder, and one that came from another run's mounts has no name.
        sed -i '/<selectfont>/,/<\/selectfont>/d' "$root/etc/fonts/fonts.conf" &&
        run_wine_setup "$folder" "$root" "$how"
}

# Debug information is two thirds of Wine's DLLs, and every prefix holds a copy of them.
strip_wine() {
    find "$1/usr/lib/x86_64-linux-gnu/wine/x86_64-windows" -type f ! -name '*.msstyles' ! -name '*.tlb' -print0 |
        xargs -0 -P "$(jobs)" -n 40 x86_64-w64-mingw32-strip --strip-debug
}

make_wine_root() {
    local target=$1 how=$2 mirror work
    mirror=$(debian_mirror)
    [[ -n $mirror ]] || die "the machine's apt configuration names no repository of this Debian release's main component"
    need_space "$nmfv_cache" 2500 "making the private Wine"
    work=$(mktemp -d "$nmfv_cache/making.XXXXXX")
    # shellcheck disable=SC2064  # this very folder
    trap "rm -rf '$work'" EXIT
    chmod 755 "$work"
    prepare_apt "$work/apt" "$mirror"
    step "Wine: package lists of Debian 13" private_apt "$work/apt" -o APT::Update::Error-Mode=any update ||
        die "Debian 13's package lists can't be had from this machine's mirror: is there a network?"
    step "Wine: downloading" private_apt "$work/apt" install --no-install-recommends --download-only \
        "${nmfv_wine_packages[@]}" || die "Wine's packages can't be downloaded from this machine's mirror"
    step "Wine: unpacking" unpack_packages "$work/apt" "$work/root" || die "Wine's packages can't be unpacked (disk full?)"
    step "Wine: finishing" finish_root "$work/apt" "$work/root" "$how" || die "Wine's own set-up failed"
    step "Wine: leaving out debug information" strip_wine "$work/root" || die "Wine's DLLs can't be stripped"
    mv "$work/root" "$target"
    rm -rf "$work"
    trap - EXIT
}

# Makes the root unless it is there. Roots of other recipes and of interrupted set-ups go.
ensure_wine_root() {
    local target how=$1 lock
    target=$(wine_root_path)
    [[ -d $target ]] && return
    mkdir -p "$nmfv_cache" || die "the cache folder $nmfv_cache can't be made; set NMFV_CACHE"
    exec {lock}>"$nmfv_cache/lock"
    flock "$lock"
    if [[ ! -d $target ]]; then
        rm -rf "$nmfv_cache"/making.* "$nmfv_cache"/wine-root-*
        make_wine_root "$target" "$how"
    fi
    exec {lock}>&-
}
