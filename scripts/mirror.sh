#!/bin/bash
# Where the machine's own apt fetches Debian itself from. To be sourced after common.sh.

# Prints the address of the repository that holds Debian's main component of this release, among whatever
# other sources the machine has. A repository that calls itself Debian's goes before one that says nothing.
debian_mirror() {
    local codename
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
    # shellcheck disable=SC2016  # apt fills these in
    apt-get indextargets --format '$(RELEASE)|$(CODENAME)|$(COMPONENT)|$(ORIGIN)|$(REPO_URI)' 'Created-By: Packages' |
        awk -F '|' -v name="$codename" '
            ($1 == name || $2 == name) && $3 == "main" && $5 !~ /^cdrom:/ {
                if ($4 == "Debian") { print $5; found = 1; exit }
                if ($4 == "" && silent == "") silent = $5
            }
            END { if (!found && silent != "") print silent }'
}
