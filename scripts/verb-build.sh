#!/bin/bash
# set-up, then the DLL and the host: build/mingw/NMFVDeitrx.dll and nmfvdeint.exe
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
set_up_while build_preset mingw NMFVDeitrx nmfvdeint
for result in NMFVDeitrx.dll nmfvdeint.exe; do
    [[ -f $nmfv_build/mingw/$result ]] || die "the build left no build/mingw/$result"
    say "built: build/mingw/$result"
done
