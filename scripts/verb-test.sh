#!/bin/bash
# set-up, both builds, then every test: natively with sanitizers, and under Wine
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"

# Runs one preset's tests; appends its counts "PRESET passed failed skipped" to the file TALLY.
test_preset() {
    local preset=$1 tally=$2 log=$nmfv_logs/test-$1.log status=0
    say "testing $preset"
    (cd "$nmfv_top" && ctest --preset "$preset" --verbose --no-tests=ignore -j "$(jobs)" 2>&1) </dev/null |
        tee "$log" | awk -v preset="$preset" -v tally="$tally" -f "$nmfv_scripts/test-report.awk" || status=$?
    say "all of its output: build/logs/test-$preset.log"
    return "$status"
}

build_all() {
    build_preset mingw
    build_preset native
}

set_up_while build_all
mkdir -p "$nmfv_logs"
tally=$(mktemp)
trap 'rm -f "$tally"' EXIT
keep_server
worst=0
for preset in native mingw; do
    test_preset "$preset" "$tally" || worst=1
done
echo
awk '{ printf "-- %s: %d passed, %d failed, %d skipped\n", $1, $2, $3, $4 }' "$tally"
awk '{ passed += $2; failed += $3; skipped += $4 }
    END { printf "%d passed, %d failed, %d skipped\n", passed, failed, skipped; exit failed > 0 || passed == 0 }' "$tally" ||
    worst=1
exit "$worst"
