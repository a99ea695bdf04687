#!/bin/bash
# Runs a preset's tests. To be sourced after common.sh.

# Runs one preset's tests; appends its counts "PRESET passed failed skipped" to the file TALLY.
test_preset() {
    local preset=$1 tally=$2 log=$nmfv_logs/test-$1.log status=0
    mkdir -p "$nmfv_logs"
    say "testing $preset"
    (cd "$nmfv_top" && ctest --preset "$preset" --verbose --no-tests=ignore -j "$(jobs)" 2>&1) </dev/null |
        tee "$log" | awk -v preset="$preset" -v tally="$tally" -f "$nmfv_scripts/test-report.awk" || status=$?
    say "all of its output: build/logs/test-$preset.log"
    return "$status"
}

# One line for each preset in the file TALLY.
show_tally() {
    awk '{ printf "-- %s: %d passed, %d failed, %d skipped\n", $1, $2, $3, $4 }' "$1"
}
