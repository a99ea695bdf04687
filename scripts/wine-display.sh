#!/bin/bash
# A display for one Windows program. To be sourced by scripts/wine, whose variables and functions it uses.

# Starts Xvfb, which picks a free number itself, and sets display_pid and DISPLAY.
start_display() {
    local -a xvfb=(Xvfb)
    [[ $whose == machine ]] || xvfb=("$path/usr/bin/Xvfb" -xkbdir "$XKB_CONFIG_ROOT")
    mkfifo "$1/number"
    ("${xvfb[@]}" -displayfd 3 -screen 0 "${NMFV_SCREEN:-1280x1024}x24" -nolisten tcp -extension GLX) \
        3<>"$1/number" >"$1/log" 2>&1 </dev/null {display_lock}>&- &
    display_pid=$!
    if ! read -r -t 20 display_number <>"$1/number"; then
        echo "wine: Xvfb did not start: $(tail -n 1 "$1/log")" >&2
        return 1
    fi
    export DISPLAY=:$display_number
    unset WAYLAND_DISPLAY
}

end_display() {
    "$server" -k 2>/dev/null || true
    if [[ -n $display_pid ]]; then
        kill "$display_pid" 2>/dev/null || true
        wait "$display_pid" 2>/dev/null || true
        rm -f "/tmp/.X11-unix/X$display_number"
    fi
    rm -rf "$display_files"
}

# Takes the lock, the prefix with a desktop and a display. One program at a time: they would share a desktop.
begin_display() {
    exec {display_lock}>"$build/display.lock"
    flock "$display_lock"
    if [[ -z ${NMFV_WINEPREFIX:-} ]]; then
        [[ -d $build/wine-prefix-display ]] || cp -a --reflink=auto "$WINEPREFIX" "$build/wine-prefix-display"
        export WINEPREFIX=$build/wine-prefix-display
    fi
    display_files=$(mktemp -d)
    start_display "$display_files"
}

# run_with_display PROGRAM...: sets display_status to the program's exit code.
run_with_display() {
    display_pid='' display_number=none program_pid='' display_status=0
    trap '[[ -z $program_pid ]] || kill "$program_pid" 2>/dev/null' INT TERM
    if begin_display; then
        "$loader" "$@" <&0 {display_lock}>&- &
        program_pid=$!
        wait "$program_pid" || display_status=$?
    else
        display_status=1
    fi
    end_display
}
