#!/bin/bash
# Brings everything that building and testing need, and nothing that is there. To be sourced.
# shellcheck source=scripts/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
for part in packages mirror wine-root wine-choice wine-prefix; do
    # shellcheck source=/dev/null
    . "$nmfv_scripts/$part.sh"
done
unset part

set_up() {
    local -a packages
    check_machine
    mapfile -t packages < <(wine_packages)
    install_packages "${nmfv_build_packages[@]}" "${packages[@]}"
    [[ ${NMFV_SKIP_PACKAGES:-} != 1 ]] || check_tools
    ensure_wine
    ensure_prefix
    say "set-up is complete (Wine: $(paste -sd ' ' "$nmfv_wine_choice"))"
}
