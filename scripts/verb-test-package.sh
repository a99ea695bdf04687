#!/bin/bash
# package, then its test: samples, the same bytes elsewhere, signatures, the installer in Wine
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
for part in installer test-samples test-installer; do
    # shellcheck source=/dev/null
    . "$nmfv_scripts/$part.sh"
done
out=$nmfv_build/package
test=$nmfv_build/package-test
step_lines=20

wine() { timeout 120 "$nmfv_scripts/wine" "$@"; }

# As Wine's programs see PATH.
windows_path() { printf 'Z:%s\n' "${1//\//\\}"; }

# Another folder holds the same sources; what is packed there must have the same bytes.
copy_sources() {
    mkdir -p "$test/copy"
    (cd "$nmfv_top" && git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -pt "$test/copy")
}

package_copy() {
    (unset NMFV_RUN_LOCK && bash "$test/copy/run" package) && cd "$test/copy/build/package"
}

same_bytes() { package_copy && cmp SHA256SUMS "$out/SHA256SUMS"; }

# There the version stands in one place: the next one is packed, and signed by nobody of note.
next_version=1.0.1.0
make_key() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=nobody of note" -addext extendedKeyUsage=codeSigning \
        -keyout "$test/key.pem" -out "$test/cert.pem"
}

package_next() {
    sed -i "s/$package_version/$next_version/" "$test/copy"/{CMakeLists.txt,CHANGELOG.md,docs/registration.md}
    NMFV_SIGN_CERT=$test/cert.pem NMFV_SIGN_KEY=$test/key.pem package_copy && sha256sum -c SHA256SUMS &&
        unzip -q "$package_name-$next_version-win64.zip" -d "$test/next" &&
        cp "$package_name-$next_version-win64.msi" "$test/next.msi"
}

check_signatures() {
    local file
    for file in "$test/next.msi" "$test"/next/*/bin/{NMFVDeitrx.dll,nmfvdeint.exe}; do
        osslsigncode verify -CAfile "$test/cert.pem" -in "$file" || return
    done
    ! osslsigncode verify -CAfile "$test/cert.pem" -in "$sdk/bin/NMFVDeitrx.dll"
}

# The DLL leads to its symbols, and they know where an entry point was written, in whatever folder that was.
check_symbols() {
    local address
    address=$(x86_64-w64-mingw32-nm "$sdk/bin/NMFVDeitrx.dll.debug" | awk '$3 == "DllGetClassObject" { print $1 }')
    [[ $(x86_64-w64-mingw32-addr2line -e "$sdk/bin/NMFVDeitrx.dll" "$address") == ././server/Module.cpp:* ]]
}

# What vcpkg does with a port that only copies.
install_port() {
    cmake -D "CURRENT_PACKAGES_DIR=$test/port" -P "$sdk/share/NMFVDeitrx/vcpkg/nmfvdeitrx/portfile.cmake" &&
        cmp "$sdk/lib/cmake/NMFVDeitrx/NMFVDeitrxConfig.cmake" "$test/port/lib/cmake/NMFVDeitrx/NMFVDeitrxConfig.cmake" &&
        cmp "$sdk/bin/NMFVDeitrx.dll" "$test/port/bin/NMFVDeitrx.dll"
}

# Every file that the nuspec file names is there.
check_nuspec() {
    local folder=$sdk/share/NMFVDeitrx/nuget name
    sed -n 's/.*<file src="\([^"]*\)".*/\1/p' "$folder/NMFVDeitrx.nuspec" | tr '\\' / >"$test/nuspec"
    [[ -s $test/nuspec ]] && while read -r name; do compgen -G "$folder/$name" || return; done <"$test/nuspec"
}

set_package_time
bash "$nmfv_scripts/verb-package.sh"
set_up
install_packages unzip openssl
# shellcheck source=/dev/null
. "$nmfv_build/release/packaging/package.env"
rm -rf "$test"
mkdir -p "$test"
need_space "$test" 1500 "the package's test"
export NMFV_WINEPREFIX=$test/prefix
cp -a --reflink=auto "$nmfv_prefix" "$NMFV_WINEPREFIX"
keep_server
sdk=$test/sdk/$package_name-$package_version-win64
step "test: unpacking" unzip -q "$out/${sdk##*/}.zip" -d "$test/sdk" || die "the SDK cannot be unpacked"
step "test: symbols" check_symbols || die "the symbols do not lead to the sources"
step "test: vcpkg port" install_port || die "the vcpkg port does not install the SDK"
step "test: nuspec file" check_nuspec || die "the nuspec file names files that are not there"
step "test: samples" build_samples || die "the samples cannot be built against the SDK"
step "test: running the samples" run_samples || die "a sample does not do what it says"
step "test: copying the sources" copy_sources || die "the sources cannot be copied"
step "test: the same bytes again" same_bytes || die "packing the same sources gives other bytes"
step "test: a key" make_key || die "no key can be made"
step "test: the next version, signed" package_next || die "the next version cannot be packed and signed"
step "test: signatures" check_signatures || die "the signatures are not right"
step "test: the installer's life" live_installer || die "the installer does not do what it says"
wine --server -k || true
rm -rf "$test"
say "the package is as it should be"
