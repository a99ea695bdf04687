#!/bin/bash
# Brings Debian packages to the build machine: only those that are missing. To be sourced after common.sh.

# The compilers, their tools, GoogleTest with its source (it is built for Windows as well), a fixed clock for the
# type library's time stamp, and what draws the icon.
nmfv_build_packages=(
    g++ cmake ninja-build
    g++-mingw-w64-x86-64-posix mingw-w64-x86-64-dev mingw-w64-tools
    libgtest-dev faketime librsvg2-bin icoutils
)

# Debian 13's own Wine is new enough; elsewhere a private one is made with patchelf, and its display calls a keyboard compiler.
nmfv_wine_here_packages=(wine64 xvfb fonts-dejavu-core fonts-wine gstreamer1.0-plugins-{base,good} gstreamer1.0-libav)
nmfv_wine_private_packages=(patchelf x11-xkb-utils)

# For the package alone: the installer's compiler and editor, the zip, and signatures.
# shellcheck disable=SC2034  # used by verb-package.sh
nmfv_package_packages=(wixl msitools zip osslsigncode)

# For the benchmarks alone: Google Benchmark, and the peers they measure.
# shellcheck disable=SC2034  # used by verb-bench.sh
nmfv_bench_packages=(
    libbenchmark-dev pkg-config
    libavfilter-dev libgstreamer1.0-dev gstreamer1.0-plugins-good
)

# For the fuzzers alone: a clang that brings libFuzzer.
# shellcheck disable=SC2034  # used by verb-fuzz.sh
nmfv_fuzz_packages=(clang-19 libclang-rt-19-dev)

# The value of NAME in what the system says of itself.
release_value() {
    (. /etc/os-release 2>/dev/null && echo "${!1:-}")
}

# Which of the lists above this machine's Wine needs.
wine_packages() {
    local name=nmfv_wine_private_packages
    [[ $(release_value VERSION_ID) == 12 || ${NMFV_WINE:-} == private ]] || name=nmfv_wine_here_packages
    local -n list=$name
    printf '%s\n' "${list[@]}"
}

check_machine() {
    [[ ${NMFV_SKIP_PACKAGES:-} == 1 ]] && return
    local system="$(uname -s) on $(uname -m)" id version
    id=$(release_value ID) version=$(release_value VERSION_ID)
    [[ $system == "Linux on x86_64" && $id == debian && $version =~ ^1[23]$ ]] && return
    printf 'run: set-up installs packages on Debian 12 and 13 (x86-64), and this is %s %s, %s.\n' "$id" "$version" "$system"
    printf '     Bring what these packages of Debian hold, and Wine 10 or newer:\n       %s\n' "${nmfv_build_packages[*]}"
    die "then set NMFV_SKIP_PACKAGES=1, which leaves out this step"
}

# Without the package step: what the build calls must be there.
check_tools() {
    local tool missing=()
    for tool in cmake ninja g++ x86_64-w64-mingw32-g++ x86_64-w64-mingw32-windres x86_64-w64-mingw32-widl; do
        command -v "$tool" >/dev/null || missing+=("$tool")
    done
    ((${#missing[@]} == 0)) || die "NMFV_SKIP_PACKAGES is set, and these tools are missing: ${missing[*]}"
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

# Who installs: root, or sudo after a question at most.
check_root() {
    ((EUID == 0)) && return
    local way="have them installed, or set NMFV_SKIP_PACKAGES=1 if the tools are there without them"
    command -v sudo >/dev/null || die "these packages are missing, and there is neither root nor sudo: $* ($way)"
    sudo -v || die "sudo refused, and these packages are missing: $* ($way)"
}

# An installation that was interrupted is finished first: apt refuses to begin another.
install_packages() {
    local -a missing
    [[ ${NMFV_SKIP_PACKAGES:-} == 1 ]] && return
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    check_root "${missing[@]}"
    step "package lists" apt_get update ||
        die "apt-get update failed: is there a network, and does the machine's apt configuration work?"
    [[ -z $(dpkg --audit) ]] || step "finishing an interrupted installation" as_root dpkg --configure -a ||
        die "dpkg --configure -a failed"
    step "installing ${#missing[@]} packages" apt_get install --no-install-recommends "${missing[@]}" ||
        die "these packages could not be installed (is there a network, and are they on the mirror?): ${missing[*]}"
}
