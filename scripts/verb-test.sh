#!/bin/bash
# set-up, both builds, then every test: natively with sanitizers, and under Wine
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
# shellcheck source=scripts/tests.sh
. "$nmfv_scripts/tests.sh"

build_all() {
    build_preset mingw
    build_preset native
}

set_up_while build_all
tally=$(mktemp)
trap 'rm -f "$tally"' EXIT
keep_server
worst=0
for preset in native mingw; do
    test_preset "$preset" "$tally" || worst=1
done
echo
show_tally "$tally"
awk '{ passed += $2; failed += $3; skipped += $4 }
    END { printf "%d passed, %d failed, %d skipped\n", passed, failed, skipped; exit failed > 0 || passed == 0 }' "$tally" ||
    worst=1
exit "$worst"
