#!/bin/bash
# set-up, then every benchmark: kernels, chain, DLL and peers; figures go to docs/performance.md
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
page=$nmfv_top/docs/performance.md
rows=$nmfv_build/bench/rows.md

# Processor, caches and versions; no name of the machine.
describe_machine() {
    local caches
    caches=$(lscpu | awk -F: '/^L[123]d? cache|^L1d/ { gsub(/^ +/, "", $2); printf "%s%s %s", sep, $1, $2; sep = ", " }')
    echo "- $(date -u +%Y-%m-%d), $(lscpu | sed -n 's/^Model name: *//p' | head -n 1), $(nproc) cores ($caches)," \
        "load before the run $(cut -d' ' -f1 /proc/loadavg)"
    echo "- $(x86_64-w64-mingw32-g++-posix --version | head -n 1)"
    echo "- $(g++ --version | head -n 1); $("$nmfv_scripts/wine" --version); $("$nmfv_build/bench/bench_peers" --versions)"
}

# measure NAME COMMAND...: shows the program's rows and keeps them.
measure() {
    say "measuring: $1"
    shift
    "$@" | tr -d '\r' | tee -a "$rows" || die "'$1' failed"
}

# The page up to the line "## Figures" stays; what follows is this run's.
write_page() {
    local new=$nmfv_build/bench/page.md
    {
        sed '/^## Figures/,$d' "$page"
        printf '## Figures\n\n'
        describe_machine
        awk -F'|' '/ met / { met++ } /missed/ { missed++; list = list sprintf("\n  - %s,%s,%s,%s: %s; wanted %s", $2, $3, $4, $5, $7, $8) }
            END { printf "- %d of %d wanted ratios met%s%s\n", met, met + missed, missed ? "; missed:" : "", list }' "$rows"
        printf '\n| where | what | frame | flow | GB/s of frame | times memcpy (middle half) | wanted |\n|---|---|---|---|---|---|---|\n'
        cat "$rows"
    } >"$new"
    cat "$new" >"$page"
}

set_up
install_packages "${nmfv_bench_packages[@]}"
need_space "$nmfv_build" 500 "the benchmarks"
build_preset bench bench_kernels bench_frames bench_peers
build_preset mingw NMFVDeitrx bench_transform
: >"$rows"
keep_server
measure kernels "$nmfv_build/bench/bench_kernels" --benchmark_min_time=0.05 --benchmark_repetitions=9
measure "the chain, natively" "$nmfv_build/bench/bench_frames"
measure "the DLL in Wine" "$nmfv_scripts/wine" "$nmfv_build/mingw/bench_transform.exe"
measure "peers" "$nmfv_build/bench/bench_peers"
write_page
say "written: docs/performance.md"
