#!/bin/bash
# What is in the DLL and the host: the bill of materials, an SPDX document, and the notices. To be sourced after common.sh.

# What the linker may take in beside the project's own objects, a row for each part:
# files of the tool chain, name, Debian package, licence as that package states it.
nmfv_materials=(
    '/libstdc\+\+\.a$|libstdc++|g++-mingw-w64-x86-64-posix|GPL-3.0-or-later WITH GCC-exception-3.1'
    '/(libgcc(_eh)?\.a|crt(begin|end)\.o)$|libgcc|gcc-mingw-w64-x86-64-posix|GPL-3.0-or-later WITH GCC-exception-3.1'
    '/lib(win)?pthread\.a$|winpthreads|mingw-w64-x86-64-dev|MIT AND BSD-3-Clause'
    '-w64-mingw32/lib/[^/]*\.(a|o)$|mingw-w64|mingw-w64-x86-64-dev|ZPL-2.1'
)
nmfv_mingw_comment="start-up code, run-time functions and import libraries; single files are under other licences, which the\
 package's copyright file names"

# The libraries and start-up files of the tool chain that stand in a linker map; the project's own have relative paths.
linked_files() {
    sed -nE -e 's/^(\/[^ (]+\.a)\(.*\)$/\1/p' -e 's/^LOAD (\/[^ ]+\.o)$/\1/p' "$@" | sort -u
}

# Prints the rows of which FILES hold anything. A file that no row knows is no material to ship unnamed.
linked_materials() {
    local row pattern file unknown
    for row in "${nmfv_materials[@]}"; do
        pattern=${row%|*|*|*}
        unknown=()
        local found=
        for file in "$@"; do
            if [[ $file =~ $pattern ]]; then found=1; else unknown+=("$file"); fi
        done
        [[ -z $found ]] || printf '%s\n' "${row#"$pattern|"}"
        set -- "${unknown[@]}"
    done
    (($# == 0)) || die "linked in, and unknown to scripts/materials.sh: $*"
}

# find_materials RELEASE: sets materials to the rows that the linker maps in RELEASE, the build's folder, ask for.
find_materials() {
    local files
    mapfile -t files < <(linked_files "$1/NMFVDeitrx.map" "$1/nmfvdeint.map")
    materials=$(linked_materials "${files[@]}")
}

# Prints what the licences of the materials want to go with the programs: the copyright files of their packages.
print_notices() {
    local package
    echo "Parts of these programs come from the packages below, under the terms that follow."
    while IFS='|' read -r _ package _; do
        [[ ! -f /usr/share/doc/$package/copyright ]] || printf '%s\n' "$package"
    done <<<"$materials" | sort -u | while read -r package; do
        printf '\n==== %s\n\n' "$package"
        cat "/usr/share/doc/$package/copyright"
    done
}

package_version_of() {
    dpkg-query -W -f '${Version}' "$1" 2>/dev/null || echo NOASSERTION
}

# spdx_package ID NAME VERSION LICENCE MORE: an element of the array of packages; MORE is members, each with a comma before.
spdx_package() {
    printf '    {"SPDXID": "SPDXRef-%s", "name": "%s", "versionInfo": "%s", "licenseDeclared": "%s",\n' "$1" "$2" "$3" "$4"
    printf '     "licenseConcluded": "NOASSERTION", "downloadLocation": "NOASSERTION", "filesAnalyzed": false%s}' "$5"
}

spdx_material() {
    local name=$1 package=$2 licence=$3 version purl more
    version=$(package_version_of "$package")
    purl=pkg:deb/debian/$package@$version
    purl=${purl//+/%2B}
    more=', "copyrightText": "NOASSERTION"'
    [[ $version == NOASSERTION ]] || more+=",
     \"externalRefs\": [{\"referenceCategory\": \"PACKAGE-MANAGER\", \"referenceType\": \"purl\", \"referenceLocator\": \"$purl\"}]"
    [[ $name != mingw-w64 ]] || more+=",
     \"comment\": \"$nmfv_mingw_comment\""
    printf ',\n'
    spdx_package "${name//+/p}" "$name" "$version" "$licence" "$more"
}

spdx_file() {
    local name=${1##*/} sha1 sha256
    sha1=$(sha1sum <"$1") sha256=$(sha256sum <"$1")
    printf '    {"SPDXID": "SPDXRef-%s", "fileName": "./bin/%s", "copyrightText": "NOASSERTION",\n' "$name" "$name"
    printf '     "checksums": [{"algorithm": "SHA1", "checksumValue": "%s"},\n' "${sha1%% *}"
    printf '                   {"algorithm": "SHA256", "checksumValue": "%s"}]}' "${sha256%% *}"
}

spdx_relation() {
    printf '    {"spdxElementId": "SPDXRef-%s", "relationshipType": "%s", "relatedSpdxElement": "SPDXRef-%s"}' "$@"
}

# spdx_relations of the document's parts; the materials' names are the arguments.
spdx_relations() {
    local file name
    spdx_relation DOCUMENT DESCRIBES "$package_name"
    for file in NMFVDeitrx.dll nmfvdeint.exe; do
        printf ',\n'
        spdx_relation "$package_name" CONTAINS "$file"
    done
    for name in "$@"; do
        printf ',\n'
        spdx_relation "$package_name" STATIC_LINK "${name//+/p}"
    done
    printf '\n'
}

# write_bill SDK: of the materials and the files in SDK; to SDK.spdx.json.
write_bill() {
    local sdk=$1 name package licence names=()
    {
        printf '{\n  "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",\n'
        printf '  "name": "%s", "documentNamespace": "urn:uuid:%s",\n' "${sdk##*/}" \
            "$(name_uuid "$package_name bill $package_version $(sha256sum "$sdk"/bin/*.{dll,exe} | cut -c 1-64)")"
        printf '  "creationInfo": {"created": "%s", "creators": ["Tool: scripts/materials.sh", "Organization: %s"]},\n' \
            "$(date -u -d "@$SOURCE_DATE_EPOCH" +%FT%TZ)" "$package_company"
        printf '  "packages": [\n'
        spdx_package "$package_name" "$package_name" "$package_version" NOASSERTION \
            ", \"copyrightText\": \"${package_copyright:-NOASSERTION}\", \"summary\": \"$package_title\""
        while IFS='|' read -r name package licence; do
            names+=("$name")
            spdx_material "$name" "$package" "$licence"
        done <<<"$materials"
        printf '\n  ],\n  "files": [\n'
        spdx_file "$sdk/bin/NMFVDeitrx.dll" && printf ',\n' && spdx_file "$sdk/bin/nmfvdeint.exe"
        printf '\n  ],\n  "relationships": [\n'
        spdx_relations "${names[@]}"
        printf '  ]\n}\n'
    } >"$sdk.spdx.json"
}
