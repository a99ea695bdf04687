#!/bin/bash
# Which Wine this checkout uses, and how: written once by set-up to build/wine-choice, read by scripts/wine.
# To be sourced after common.sh.
nmfv_wine_choice=$nmfv_build/wine-choice

# The machine's own Wine, if it is 10 or newer: its path, or nothing.
machine_wine() {
    [[ ${NMFV_WINE:-} == private ]] && return
    local name version
    for name in wine wine64; do
        command -v "$name" >/dev/null || continue
        version=$(WINEPREFIX=$nmfv_build/none timeout 30 "$name" --version 2>/dev/null || true)
        if [[ $version =~ ^wine-([0-9]+) ]] && ((BASH_REMATCH[1] >= 10)); then
            command -v "$name"
            return
        fi
    done
}

# How the private root can be entered on this machine: bwrap or chroot.
way_to_enter() {
    if bwrap --ro-bind / / --dev-bind /dev /dev --proc /proc true 2>/dev/null; then
        echo bwrap
    elif ((EUID == 0)) && unshare --mount --propagation private true 2>/dev/null; then
        echo chroot
    elif ((EUID != 0)) && sudo -n unshare --mount --propagation private true 2>/dev/null; then
        echo chroot
    fi
}

# Brings a Wine and writes the choice: HOW (machine, bwrap or chroot) and a PATH, a line each.
ensure_wine() {
    local how path
    path=$(machine_wine)
    if [[ -n $path ]]; then
        how=machine
    else
        how=${NMFV_ENTER:-$(way_to_enter)}
        [[ -n $how ]] || die "no way into the private Wine: this machine allows neither namespaces (bubblewrap) nor" \
            "mounts (root, or sudo without a question); allow one of them, or install Wine 10 or newer"
        ensure_wine_root "$how"
        path=$(wine_root_path)
    fi
    mkdir -p "$nmfv_build"
    printf '%s\n' "$how" "$path" >"$nmfv_wine_choice.new"
    mv "$nmfv_wine_choice.new" "$nmfv_wine_choice"
}
