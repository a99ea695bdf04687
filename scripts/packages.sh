#!/bin/bash
# Brings Debian packages to the build machine: only those that are missing. To be sourced after common.sh.

# The compilers, their tools, GoogleTest's source (it is built for Windows as well), a fixed clock for the
# type library's time stamp, what draws the icon, and what enters the private Wine.
nmfv_build_packages=(
    g++ cmake ninja-build
    g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev mingw-w64-tools
    googletest faketime librsvg2-bin icoutils bubblewrap
)

# For the benchmarks alone: Google Benchmark, and the peers they measure.
# shellcheck disable=SC2034  # used by verb-bench.sh
nmfv_bench_packages=(
    libbenchmark-dev pkg-config
    libavfilter-dev libgstreamer1.0-dev gstreamer1.0-plugins-good
)

check_machine() {
    [[ ${NMFV_SKIP_PACKAGES:-} == 1 ]] && return
    [[ $(uname -s) == Linux && $(uname -m) == x86_64 ]] ||
        die "set-up is written for Linux on x86-64, and this is $(uname -s) on $(uname -m)"
    local id version
    id=$(. /etc/os-release 2>/dev/null && echo "${ID:-unknown}") || id=unknown
    version=$(. /etc/os-release 2>/dev/null && echo "${VERSION_ID:-}") || version=
    [[ $id == debian && $version == 12 ]] ||
        die "set-up is written for Debian 12, and this is $id $version; with the tools there, NMFV_SKIP_PACKAGES=1 skips it"
}

is_installed() {
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

missing_packages() {
    local package
    for package in "$@"; do
        is_installed "$package" || printf '%s\n' "$package"
    done
}

# Runs a command as root: as it is, through sudo, or not at all.
as_root() {
    if ((EUID == 0)); then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        return 126
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 \
        -o Acquire::Retries=2 "$@"
}

install_packages() {
    local -a missing
    [[ ${NMFV_SKIP_PACKAGES:-} == 1 ]] && return
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            die "these packages are missing, and there is neither root nor sudo to install them: ${missing[*]}"
        sudo -v || die "sudo refused; it is needed to install: ${missing[*]}"
    fi
    step "package lists" apt_get update ||
        die "apt-get update failed: is there a network, and does the machine's apt configuration work?"
    step "installing ${#missing[@]} packages" apt_get install --no-install-recommends "${missing[@]}" ||
        die "these packages could not be installed (is there a network, and are they on the mirror?): ${missing[*]}"
}
