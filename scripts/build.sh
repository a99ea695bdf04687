#!/bin/bash
# Configures and builds a preset. To be sourced after common.sh.
build_preset() {
    (cd "$nmfv_top" && step "configuring $1" cmake --preset "$1") ||
        die "the $1 build can't be configured"
    (cd "$nmfv_top" && step "building $1" cmake --build --preset "$1" --parallel "$(jobs)") ||
        die "the $1 build failed"
}
