#!/bin/bash
# Which Wine this checkout uses: written once by set-up to build/wine-choice, read by scripts/wine.
# To be sourced after common.sh.
nmfv_wine_choice=$nmfv_build/wine-choice

# The machine's own Wine, if it is 10 or newer: its path, or nothing. Debian's program for 64 bits goes before its
# launcher, which asks for the one for 32 bits at every start.
machine_wine() {
    [[ ${NMFV_WINE:-} == private ]] && return
    local name version
    for name in /usr/lib/wine/wine64 wine wine64; do
        command -v "$name" >/dev/null || continue
        version=$(WINEPREFIX=$nmfv_build/none timeout 30 "$name" --version 2>/dev/null || true)
        if [[ $version =~ ^wine-([0-9]+) ]] && ((BASH_REMATCH[1] >= 10)); then
            command -v "$name"
            return
        fi
    done
}

# Brings a Wine and writes the choice: WHOSE (machine or private) and the PATH of its program or its root, a line each.
ensure_wine() {
    local whose=machine path
    path=$(machine_wine)
    if [[ -z $path ]]; then
        whose=private
        ensure_wine_root
        path=$(wine_root_path)
    fi
    mkdir -p "$nmfv_build"
    printf '%s\n' "$whose" "$path" >"$nmfv_wine_choice.new"
    mv "$nmfv_wine_choice.new" "$nmfv_wine_choice"
}
