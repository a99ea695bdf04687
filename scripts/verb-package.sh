#!/bin/bash
# set-up, then what is handed over, in build/package: SDK zip, installer, checksums, bill of materials
set -euo pipefail
# shellcheck source=scripts/setup.sh
. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"
for part in build installer materials sign; do
    # shellcheck source=/dev/null
    . "$nmfv_scripts/$part.sh"
done
out=$nmfv_build/package
release=$nmfv_build/release

# The version stands once in the build, and in two texts that people write.
check_texts() {
    grep -q "^## $package_version\$" "$nmfv_top/CHANGELOG.md" || die "CHANGELOG.md says nothing of version $package_version"
    grep -q "name=\"NMFVDeitrx.X\" version=\"$package_version\"" "$nmfv_top/docs/registration.md" ||
        die "docs/registration.md names another version than $package_version"
}

lay_out_sdk() {
    cmake --install "$release" --prefix "$sdk" &&
        print_notices >"$sdk/bin/notices.txt" &&
        sign_files "$sdk"/bin/{NMFVDeitrx.dll,nmfvdeint.exe} &&
        chmod -R u=rwX,go=rX "$sdk" &&
        find "$sdk" -exec touch -h -d "@$SOURCE_DATE_EPOCH" {} +
}

zip_sdk() {
    (cd "$out" && find "${sdk##*/}" -type f | LC_ALL=C sort | TZ=UTC0 zip -q -X -D -@ "$sdk.zip")
}

make_msi() {
    make_installer "$release/packaging/NMFVDeitrx.wxs" "$sdk/bin" "$package_version" "$sdk.msi" && sign_files "$sdk.msi"
}

set_package_time
export LC_ALL=C # one order of names
set_up_packages "${nmfv_package_packages[@]}"
build_preset release
# shellcheck source=/dev/null
. "$release/packaging/package.env"
check_texts
sdk=$out/$package_name-$package_version-win64
rm -rf "$out"
mkdir -p "$out"
need_space "$out" 100 "the package"
find_materials "$release" || die "the linker's maps do not say what is in the programs"
say "$(signing_text)"
step_lines=20
step "package: SDK" lay_out_sdk || die "the SDK cannot be laid out"
step "package: zip" zip_sdk || die "the SDK cannot be zipped"
step "package: installer" make_msi || die "the installer cannot be made"
step "package: bill of materials" write_bill "$sdk" || die "the bill of materials cannot be made"
rm -rf "$sdk"
(cd "$out" && sha256sum -- * >SHA256SUMS && sed 's/^/   /' SHA256SUMS)
say "packed: build/package"
