#!/bin/bash
# The Windows installer, and the time and names of what is packed. To be sourced after common.sh.

# Everything that is packed is as old as the last commit, on every machine; sources without a history are of 1980.
set_package_time() {
    SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$nmfv_top" log -1 --format=%ct 2>/dev/null || echo 315532800)}
    export SOURCE_DATE_EPOCH
}

# name_uuid NAME: always the same identifier for the same name.
name_uuid() {
    local sum
    sum=$(printf '%s' "$1" | sha1sum)
    printf '%s-%s-5%s-a%s-%s\n' "${sum:0:8}" "${sum:8:4}" "${sum:13:3}" "${sum:17:3}" "${sum:20:12}" | tr a-f A-F
}

# What wixl cannot say. The files' versions: without them, an upgrade would leave out a file that it finds newer, and
# then remove it with the older product. The path: a row that appends the folder, and takes away just that.
complete_installer() {
    local installer=$1 version=$2
    msibuild "$installer" -s "$package_title" "$package_company" 'x64;1033' "{$3}" &&
        msibuild "$installer" -q "UPDATE \`File\` SET \`Version\` = '$version', \`Language\` = '1033' WHERE \`File\` <> 'Notices'" \
            "CREATE TABLE \`Environment\` (\`Environment\` CHAR(72) NOT NULL, \`Name\` CHAR(255) NOT NULL LOCALIZABLE,
             \`Value\` CHAR(255) LOCALIZABLE, \`Component_\` CHAR(72) NOT NULL PRIMARY KEY \`Environment\`)" \
            "INSERT INTO \`Environment\` (\`Environment\`, \`Name\`, \`Value\`, \`Component_\`)
             VALUES ('HostOnPath', '=-*PATH', '[~];[INSTALLDIR]', 'HostOnPath')" \
            "INSERT INTO \`InstallExecuteSequence\` (\`Action\`, \`Sequence\`) VALUES ('RemoveEnvironmentStrings', 3300)" \
            "INSERT INTO \`InstallExecuteSequence\` (\`Action\`, \`Sequence\`) VALUES ('WriteEnvironmentStrings', 5200)"
}

# make_installer SOURCE FOLDER VERSION INSTALLER: of FOLDER's DLL and host, by SOURCE, a .wxs file. The clock stands
# still, and identifiers follow from the version and from what is packed, so that the bytes do, too.
make_installer() {
    local source=$1 folder=$2 version=$3 installer=$4 work product package
    work=$(mktemp -d)
    cp -p "$folder"/{NMFVDeitrx.dll,nmfvdeint.exe,notices.txt} "$work" && cp "$source" "$work/NMFVDeitrx.wxs" || return
    product=$(name_uuid "$package_name product ${version%.*}")
    package=$(name_uuid "$package_name package $version $(cd "$work" && sha256sum -- *)")
    (
        export -f complete_installer
        export package_title package_company
        cd "$work" || exit
        # shellcheck disable=SC2016  # the inner shell fills these in
        TZ=UTC0 faketime -f "$(date -u -d "@$SOURCE_DATE_EPOCH" '+%F %T')" bash -c '
            wixl -a x64 -D "Version=$1" -D "ProductCode=$2" -o made.msi NMFVDeitrx.wxs &&
                complete_installer made.msi "$1" "$3"' - "$version" "$product" "$package"
    ) && mv "$work/made.msi" "$installer" && rm -rf "$work"
}
