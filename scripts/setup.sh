#!/bin/bash
# Brings everything that building and testing need, and nothing that is there. To be sourced.
# shellcheck source=scripts/common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
for part in packages mirror wine-enter wine-root wine-choice wine-prefix; do
    # shellcheck source=/dev/null
    . "$nmfv_scripts/$part.sh"
done
unset part

set_up() {
    check_machine
    install_packages "${nmfv_build_packages[@]}"
    ensure_wine
    ensure_prefix
    say "set-up is complete (Wine: $(paste -sd ' ' "$nmfv_wine_choice"))"
}
