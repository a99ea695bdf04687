#!/bin/bash
# set-up, then what takes longer than test: a second compiler, its checks, a race detector, pipelines with ffmpeg
# arguments: [PART...]
# Every part in order, or only those named: clang, tidy, threads, pipelines. A part is skipped when what it stands on has failed.
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
# shellcheck source=scripts/build.sh
. "$nmfv_scripts/build.sh"
# shellcheck source=scripts/tests.sh
. "$nmfv_scripts/tests.sh"
# shellcheck source=scripts/demo-clip.sh
. "$nmfv_scripts/demo-clip.sh"
# shellcheck source=scripts/pipelines.sh
. "$nmfv_scripts/pipelines.sh"

# A part is a name here and the function long_NAME, whose result is 0, or 2: skipped, or another: failed.
long_parts=(clang tidy threads pipelines)
long_packages=(clang-19 lld-19 clang-tidy-19 ffmpeg)
product_rooms=(com diag engine settings ui mft server host)

# clang-tidy takes each file's flags and the precompiled headers from this build as well.
build_clang() {
    [[ ${clang_built:-} ]] || clang_built=$( (build_preset mingw-clang) >&2 && echo yes || echo no)
    [[ $clang_built == yes ]]
}

long_clang() {
    build_clang && test_preset mingw-clang "$tally"
}

tidy_product() {
    cd "$nmfv_top" && find "${product_rooms[@]}" -name '*.cpp' -print0 |
        xargs -0 -P "$(jobs)" -n 1 clang-tidy-19 -p "$nmfv_build/mingw-clang" --quiet
}

long_tidy() {
    build_clang || return 2
    step_lines=60
    step "clang-tidy over the product" tidy_product
}

# Everything of the platform-free rooms that the fuzzers reach, in two threads at once.
long_threads() {
    (build_preset threads test_fuzz) || return 2
    step "fuzzers under ThreadSanitizer" "$nmfv_build/threads/test_fuzz" --gtest_brief=1
}

# The clip is brought in a shell of its own, whose end it watches.
long_pipelines() {
    local name status=0
    (build_preset mingw nmfvdeint NMFVDeitrx && build_preset native clip_oracle && ensure_clip) || return 2
    ensure_clip
    for name in "${pipelines[@]}"; do
        run_pipeline "$name" || status=1
    done
    return "$status"
}

# run_part NAME: adds its line to the results.
run_part() {
    local begin=$SECONDS status=0 word=failed
    "long_$1" || status=$?
    case $status in
        0) word=passed ;;
        2) word=skipped ;;
    esac
    results+=("$(printf '%-10s %-7s %5d s' "$1" "$word" $((SECONDS - begin)))")
    return "$status"
}

(($# != 0)) || set -- "${long_parts[@]}"
for part in "$@"; do
    [[ " ${long_parts[*]} " == *" $part "* ]] || die "test-long has no part '$part', but: ${long_parts[*]}"
done
set_up_packages "${long_packages[@]}"
set_up_wine
keep_server
tally=$(mktemp)
trap 'rm -rf "$tally" "$pipes"' EXIT
results=()
worst=0
for part in "$@"; do
    run_part "$part" || worst=1
done
echo
show_tally "$tally"
printf -- '-- %s\n' "${results[@]}"
exit "$worst"
