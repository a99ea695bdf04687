#!/bin/bash
# set-up, then every benchmark: kernels, chain, DLL and peers; figures go to build/bench
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
rows=$nmfv_build/bench/rows.md
figures=$nmfv_build/bench/figures.md

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

# The rows that docs/performance.md shows, each with the aligned frames' ratio beside it; and the worst place in a cache
# line of each work.
short_table() {
    awk -F' *[|] *' '
        $5 != "cold" { next }
        $2 == "places, native" { name = $3; sub(/, [0-9]+ to [0-9]+$/, "", name); if ($7 + 0 > worst[name]) worst[name] = $7 + 0; next }
        $4 ~ /, aligned$/ { base = $2 $3 $4; sub(/, aligned$/, "", base); aligned[base] = $7 + 0; next }
        $2 == "DLL, Wine" && $4 ~ /^YUY2 (720x480|1920x1080)$/ && $3 ~ /^(memcpy|rebuild|auto, clean)$/ { key = $2 $3 $4 }
        $2 == "DLL, Wine" && $4 ~ /^(YUY2 (720x480|1920x1080)|RGB24 (720x576|3840x2160))$/ && $3 ~ /^(merge|auto, combed, merge)$/ { key = $2 $3 $4 }
        $2 == "peers, native" && $4 == "4:2:2 1920x1080" && $3 ~ /^(this engine: merge|.* yadif|.* linear)$/ { key = $2 $3 $4 }
        key { order[++n] = key; row[key] = $3 " | " $4 " | " $6 " | " $7; wanted[key] = $8; key = "" }
        END {
            print "| what | frame | GB/s | times memcpy | aligned | wanted |\n|---|---|---|---|---|---|"
            for (i = 1; i <= n; ++i) { k = order[i]; printf "| %s | %s | %s |\n", row[k], k in aligned ? aligned[k] : "", wanted[k] }
            print ""
            for (name in worst) print "- " name ": at the worst place in a cache line " worst[name] " times what it takes at its start"
        }' "$rows"
}

write_figures() {
    {
        describe_machine
        awk '/: met/ { met++ } /missed/ { missed++ } END { printf "- %d of %d wanted ratios met\n\n", met, met + missed }' "$rows"
        short_table
    } >"$figures"
    cat "$figures"
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
for frame in "YUY2 720x480" "YUY2 1920x1080" "RGB24 1920x1080"; do
    measure "places in a cache line" "$nmfv_build/bench/bench_frames" places "$frame"
done
write_figures
say "every row: ${rows#"$nmfv_top/"}; the short table: ${figures#"$nmfv_top/"}"
