#!/bin/bash
# The installer, from the first installation to the last trace. To be sourced by verb-test-package.sh, whose variables it
# uses.
installed='C:\Program Files\Nerin Systems\NMFVDeitrx'

# list_registry NAME: the machine's keys and values, as text in NAME.txt.
list_registry() {
    wine reg.exe export 'HKLM\Software' "$(windows_path "$test/$1.reg")" /y >/dev/null &&
        iconv -f UTF-16 -t UTF-8 "$test/$1.reg" | tr -d '\r' >"$test/$1.txt" && rm "$test/$1.reg"
}

# What is in listing $2 and not in $1, without blank lines and without Windows Installer's own keys.
added() {
    { diff "$test/$1.txt" "$test/$2.txt" || true; } | sed -n 's/^> \(.\)/\1/p' |
        awk '/^\[/ { own = /\\Installer\\|\\Installer\]|\\Uninstall\\/ } !own'
}

removed() { diff "$test/$1.txt" "$test/$2.txt" | grep '^< .' || true; }

host() { wine "$NMFV_WINEPREFIX/drive_c/Program Files/Nerin Systems/NMFVDeitrx/nmfvdeint.exe" "$@"; }

msiexec() { wine msiexec.exe "$@" /qn; }

# The path of every user.
path_value() {
    wine reg.exe query 'HKLM\System\CurrentControlSet\Control\Session Manager\Environment' /v PATH >"$test/path" &&
        tr -d '\r' <"$test/path"
}

# What the DLL itself writes from the folder that the installer uses. The folder that help would be in is the one
# difference allowed: an installer's folders end in a backslash.
same_rows() {
    local folder="$NMFV_WINEPREFIX/drive_c/Program Files/Nerin Systems/NMFVDeitrx"
    mkdir -p "$folder" && cp "$sdk"/bin/{NMFVDeitrx.dll,nmfvdeint.exe} "$folder" &&
        host register && list_registry registered && host unregister && rm -r "${folder%/*}" &&
        msiexec /i "$first" && list_registry installed &&
        added before registered >"$test/rows-registered" && added before installed >"$test/rows-installed" &&
        [[ -s $test/rows-registered ]] &&
        sed 's/\(NMFVDeitrx\)\\\\"$/\1"/' "$test/rows-installed" | diff "$test/rows-registered" -
}

# A key and a file go; a repair brings both back. (Wine's msiexec knows no /f, which asks for the same.)
repair() {
    host verify --quiet && wine reg.exe delete 'HKCR\CLSID\{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}' /f &&
        rm "$NMFV_WINEPREFIX/drive_c/Program Files/Nerin Systems/NMFVDeitrx/nmfvdeint.exe" &&
        msiexec /i "$first" REINSTALL=ALL REINSTALLMODE=amus && host verify --quiet
}

script() { wine cscript.exe /nologo "$(windows_path "$1")"; }

# By class identifier, from a script.
automate() {
    prints script script "$sdk/share/NMFVDeitrx/samples/controls.vbs" <<'END'
merge True, sensitivity 1
merge False, sensitivity 2
END
}

# The next version takes the first one's place, with the folder on the path; the first one does not come back.
upgrade() {
    msiexec /i "$next" ADDLOCAL=ALL && [[ $(host --version | tr -d '\r') == "nmfvdeint $next_version" ]] &&
        host verify --quiet && path_value | grep -qF "$installed" && ! msiexec /i "$first" &&
        [[ $(host --version | tr -d '\r') == "nmfvdeint $next_version" ]]
}

# Nothing is left but the user's own settings, those that the samples saved.
uninstall() {
    msiexec /x "$next" && list_registry after && [[ -z $(added before after; removed before after) ]] &&
        ! grep -F "$package_title" "$test/after.txt" &&
        ! path_value | grep -F "$installed" && [[ ! -e $NMFV_WINEPREFIX/drive_c/Program\ Files/Nerin\ Systems ]] &&
        wine reg.exe query 'HKCU\Software\Nerin Systems\MF\Transforms\Deinterlace' /v Attributes
}

live_installer() {
    local first next part
    first=$(windows_path "$out/${sdk##*/}.msi") next=$(windows_path "$test/next.msi")
    # Wine's script host registers itself when it is first used.
    echo "' nothing" >"$test/empty.vbs" && script "$test/empty.vbs" && list_registry before || return
    for part in same_rows automate repair upgrade uninstall; do
        echo "$part" && "$part" || return
    done
}
