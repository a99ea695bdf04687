#!/bin/bash
# Paths and messages that every script shares. To be sourced, under set -euo pipefail.

nmfv_scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd -P)
nmfv_top=${nmfv_scripts%/*}
nmfv_build=$nmfv_top/build
nmfv_cache=$(realpath -m "${NMFV_CACHE:-${XDG_CACHE_HOME:-${HOME:-/var/tmp}/.cache}/nmfv-deinterlace}")
nmfv_logs=$nmfv_build/logs

say() { printf -- '-- %s\n' "$*"; }

# One clear message, and out.
die() {
    printf 'run: %s\n' "$*" >&2
    exit 1
}

# minutes_of VERB DEFAULT [ARGUMENT...]: what a verb that takes nothing but a number of minutes is to take.
minutes_of() {
    local minutes=${3:-$2}
    (($# <= 3)) || die "$1 takes a number of minutes, and nothing else"
    [[ $minutes =~ ^[1-9][0-9]{0,3}$ ]] || die "$1 takes a number of minutes, not '$minutes'"
    echo "$minutes"
}

jobs() { nproc 2>/dev/null || echo 1; }

# Megabytes free where PATH's file system is; PATH need not exist yet.
free_megabytes() {
    local path=$1
    while [[ ! -e $path ]]; do path=$(dirname "$path"); done
    df -Pm "$path" | awk 'NR == 2 { print $4 }'
}

# need_space PATH MEGABYTES WHAT
need_space() {
    local free
    free=$(free_megabytes "$1")
    ((free >= $2)) || die "$3 needs $2 MB in $1, and $free MB are free there; make room or set NMFV_CACHE"
}

# The last thing a log says, short enough for a line.
last_words() {
    tr '\r' '\n' <"$1" | grep . | tail -n 1 | cut -c 1-60 || true
}

# Waits for process PID, telling every few seconds that LABEL still goes on. Result: the process's.
wait_telling() {
    local pid=$1 label=$2 log=$3 begin=$SECONDS told=$SECONDS
    while kill -0 "$pid" 2>/dev/null; do
        sleep 0.2
        if ((SECONDS - told >= 10)); then
            told=$SECONDS
            printf -- '   %s: %d s  %s\n' "$label" $((SECONDS - begin)) "$(last_words "$log")"
        fi
    done
    wait "$pid"
}

# step LABEL COMMAND...: runs the command with its output in a log, shows the log's end if it fails: step_lines of it.
# The result is the command's; the log is build/logs/LABEL-with-dashes.log.
step_lines=3
step() {
    local label=$1 begin=$SECONDS log status=0
    shift
    mkdir -p "$nmfv_logs"
    log=$nmfv_logs/${label//[^A-Za-z0-9]/-}.log
    say "$label"
    "$@" >"$log" 2>&1 </dev/null &
    local pid=$!
    # shellcheck disable=SC2064  # the process of this very step
    trap "kill $pid 2>/dev/null; exit 130" INT TERM
    wait_telling "$pid" "$label" "$log" || status=$?
    trap - INT TERM
    if ((status != 0)); then
        tail -n "$step_lines" "$log" >&2
        echo "run: '$label' failed (all of its output: $log)" >&2
        return "$status"
    fi
    ((SECONDS - begin < 5)) || say "$label: done in $((SECONDS - begin)) s"
}
