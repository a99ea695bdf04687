#!/bin/bash
# brings what is missing to build and test, and nothing else
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
set_up
