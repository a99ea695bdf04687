#!/bin/bash
# Brings everything that building and testing need, and nothing that is there. To be sourced.
# shellcheck source=scripts/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
for part in packages mirror wine-root wine-choice wine-prefix; do
    # shellcheck source=/dev/null
    . "$nmfv_scripts/$part.sh"
done
unset part

# set_up_packages [PACKAGE...]: what building and Wine need, and these.
set_up_packages() {
    local -a packages
    check_machine
    mapfile -t packages < <(wine_packages)
    install_packages "${nmfv_build_packages[@]}" "${packages[@]}" "$@"
    [[ ${NMFV_SKIP_PACKAGES:-} != 1 ]] || check_tools
}

set_up_wine() {
    ensure_wine
    ensure_prefix
    say "set-up is complete (Wine: $(paste -sd ' ' "$nmfv_wine_choice"))"
}

# set_up_while COMMAND...: brings Wine while the command, which does without it, runs: one loads, the other compiles.
set_up_while() {
    set_up_packages
    set_up_wine &
    local wine=$!
    # shellcheck disable=SC2064  # this very process, which cleans up after itself
    trap "kill $wine 2>/dev/null; wait $wine" EXIT
    "$@"
    wait "$wine" || exit 1 # it has said why
    trap - EXIT
}

set_up() { set_up_while true; }
