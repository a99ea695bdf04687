#!/bin/bash
# A display for one Windows program. To be sourced by scripts/wine, whose variables and functions it uses.

# Starts Xvfb, which picks a free number itself, and sets display_pid and DISPLAY.
start_display() {
    local number
    mkfifo "$1/number"
    (inside Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -extension GLX) \
        3<>"$1/number" >"$1/log" 2>&1 </dev/null &
    display_pid=$!
    if ! read -r -t 20 number <>"$1/number"; then
        echo "wine: Xvfb did not start: $(tail -n 1 "$1/log")" >&2
        return 1
    fi
    export DISPLAY=:$number
    unset WAYLAND_DISPLAY
}

end_display() {
    (inside "$server" -k) 2>/dev/null || true
    [[ -z $display_pid ]] || kill "$display_pid" 2>/dev/null || true
    rm -rf "$display_files"
}

# Runs the program and exits with its code. One at a time: they share a desktop.
run_with_display() {
    local lock status=0
    exec {lock}>"$build/display.lock"
    flock "$lock"
    if [[ -z ${NMFV_WINEPREFIX:-} ]]; then
        [[ -d $build/wine-prefix-display ]] || cp -a --reflink=auto "$WINEPREFIX" "$build/wine-prefix-display"
        export WINEPREFIX=$build/wine-prefix-display
    fi
    display_pid=
    display_files=$(mktemp -d)
    trap end_display EXIT
    trap 'kill "$program_pid" 2>/dev/null' INT TERM
    start_display "$display_files" || exit 1
    (inside "$loader" "$@") {lock}>&- <&0 &
    program_pid=$!
    wait "$program_pid" || status=$?
    exit "$status"
}
