#!/bin/bash
# Configures and builds a preset. To be sourced after common.sh.

# build_preset PRESET [TARGET...]: everything, or the targets alone.
build_preset() {
    local preset=$1 step_lines=100
    shift
    (cd "$nmfv_top" && step "configuring $preset" cmake --preset "$preset") ||
        die "the $preset build cannot be configured"
    (cd "$nmfv_top" && step "building $preset" cmake --build --preset "$preset" --parallel "$(jobs)" ${1+--target "$@"}) ||
        die "the $preset build failed (all of its output: build/logs)"
}
