#!/bin/bash
# everything that clients do, at once for so many minutes (5); a table and a plot of what it takes go to build/soak
# arguments: [MINUTES]
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
minutes=$(minutes_of soak 5 "$@")
folder=$nmfv_build/soak

set_up
build_preset mingw test_soak
mkdir -p "$folder" "$nmfv_logs"
say "soaking for $minutes min"
status=0
NMFV_SOAK_SECONDS=$((60 * minutes)) NMFV_DISPLAY=1 \
    "$nmfv_scripts/wine" "$nmfv_build/mingw/test_soak.exe" --gtest_brief=1 >"$nmfv_logs/soak.log" 2>&1 || status=$?
tr -d '\r' <"$nmfv_logs/soak.log" | sed -n 's/^figures: //p' |
    awk -v svg="$folder/soak.svg" -f "$nmfv_scripts/soak-report.awk" | tee "$folder/table.md" || status=1
((status == 0)) || say "something grew, or failed: build/logs/soak.log"
exit "$status"
