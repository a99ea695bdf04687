#!/bin/bash
# every fuzzer side by side for so many minutes (1), then a table; what they find is kept in build/fuzz/found
# arguments: [MINUTES]
# A finding ends its fuzzer. Run it again with: build/fuzz/fuzz --target=NAME FILE
# The inputs that reached something new stay in build/fuzz/corpus, where the next run begins.
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
minutes=$(minutes_of fuzz 1 "$@")
fuzz=$nmfv_build/fuzz/fuzz
corpus=$nmfv_build/fuzz/corpus
found=$nmfv_build/fuzz/found

fuzz_target() {
    mkdir -p "$corpus/$1" "$found"
    "$fuzz" "--target=$1" "--seeds=$corpus/$1"
    exec "$fuzz" "--target=$1" -max_total_time=$((60 * minutes)) -timeout=30 -print_final_stats=1 \
        "-artifact_prefix=$found/$1-" "$corpus/$1" >"$nmfv_logs/fuzz-$1.log" 2>&1
}

show_table() {
    local target log findings
    printf '%-12s %12s %8s %9s\n' target runs edges findings
    for target in "${targets[@]}"; do
        log=$nmfv_logs/fuzz-$target.log
        findings=$(find "$found" -name "$target-*" | wc -l)
        awk -v target="$target" -v findings="$findings" '
            { for (i = 1; i < NF; ++i) if ($i == "cov:") edges = $(i + 1) }
            /number_of_executed_units/ { runs = $2 }
            END { printf "%-12s %12d %8d %9d\n", target, runs, edges, findings }' "$log"
    done
}

set_up_packages "${nmfv_fuzz_packages[@]}"
need_space "$nmfv_build" 500 "the fuzzers"
build_preset fuzz fuzz
mkdir -p "$nmfv_logs"
rm -rf "$found"
mapfile -t targets < <("$fuzz" --list)
((${#targets[@]} != 0)) || die "the fuzzers name no target"
say "fuzzing ${#targets[@]} targets for $minutes min"
declare -A pids
for target in "${targets[@]}"; do
    fuzz_target "$target" &
    pids[$target]=$!
done
trap 'kill "${pids[@]}" 2>/dev/null; exit 130' INT TERM
worst=0
for target in "${targets[@]}"; do
    wait "${pids[$target]}" || {
        worst=1
        say "$target failed: build/logs/fuzz-$target.log"
    }
done
show_table
exit "$worst"
