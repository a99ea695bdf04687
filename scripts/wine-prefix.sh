#!/bin/bash
# This checkout's own Windows folder for Wine; the user's is never touched. To be sourced after common.sh and
# wine-choice.sh.
nmfv_prefix=$nmfv_build/wine-prefix

# Windows are drawn through X only: without this Wine complains of a missing Wayland at each start.
fill_prefix() {
    timeout 120 "$nmfv_scripts/wine" wineboot.exe --init &&
        timeout 60 "$nmfv_scripts/wine" reg.exe add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f &&
        timeout 60 "$nmfv_scripts/wine" --server -w
}

# Makes the prefix unless the one that is there was made by the Wine that is chosen now.
ensure_prefix() {
    local new=$nmfv_prefix.new
    cmp -s "$nmfv_wine_choice" "$nmfv_prefix/made-by" && return
    rm -rf "$nmfv_prefix" "$new" "$nmfv_prefix-display"
    need_space "$nmfv_build" 1000 "making Wine's Windows folder"
    NMFV_WINEPREFIX=$new step "Wine: making its Windows folder" fill_prefix ||
        die "Wine cannot make its Windows folder; NMFV_WINE=private ./run setup tries the private one"
    cp "$nmfv_wine_choice" "$new/made-by"
    mv "$new" "$nmfv_prefix"
}

# One server for all programs of the next minute: starting it costs each half a second otherwise. Its first program
# starts Windows's services, which would hold that program's output open as long as they live: for whoever waits for its
# end, a minute. So that program is one without output.
keep_server() {
    "$nmfv_scripts/wine" --server -p60 >/dev/null 2>&1 </dev/null || true
    timeout 60 "$nmfv_scripts/wine" cmd.exe /c exit >/dev/null 2>&1 </dev/null || true
}
