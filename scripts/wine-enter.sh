#!/bin/bash
# Enters the private root that holds Wine: the root's own /usr and /etc, and the machine's other folders at
# their own paths, so that every path means the same inside and outside. To be sourced; needs common.sh no more
# than the wrapper does (it must be quick).

# Top-level folders that come from the private root, or that are made new.
is_root_own() {
    case $1 in
        /usr | /bin | /sbin | /lib | /lib32 | /lib64 | /libx32 | /etc | /dev | /proc | /sys | /lost+found) return 0 ;;
    esac
    return 1
}

# Fills the array host_folders: the machine's folders to be seen inside.
find_host_folders() {
    host_folders=()
    local folder
    for folder in /*; do
        [[ -d $folder && ! -L $folder ]] && ! is_root_own "$folder" && host_folders+=("$folder")
    done
    return 0
}

# enter_by_bwrap ROOT ACCESS COMMAND...: ACCESS is --ro-bind or --bind. Replaces the shell.
enter_by_bwrap() {
    local root=$1 access=$2 folder
    shift 2
    local -a binds=("$access" "$root/usr" /usr "$access" "$root/etc" /etc)
    for folder in bin sbin lib lib64; do binds+=(--symlink "usr/$folder" "/$folder"); done
    for folder in passwd group; do binds+=(--ro-bind "/etc/$folder" "/etc/$folder"); done
    for folder in "${host_folders[@]}"; do binds+=(--bind "$folder" "$folder"); done
    exec bwrap "${binds[@]}" --dev-bind /dev /dev --proc /proc --ro-bind /sys /sys --die-with-parent -- "$@"
}

# enter_by_chroot ROOT ACCESS COMMAND...: for machines where bubblewrap may make no namespaces; needs root or
# a sudo that asks nothing. The mounts live in a namespace of their own and end with the command.
enter_by_chroot() {
    local root=$1
    shift 2
    local -a become=() variables=()
    if ((EUID != 0)); then
        become=(sudo -n)
        mapfile -d '' -t variables < <(env -0)
    fi
    # shellcheck disable=SC2016  # the inner shell's own variables
    exec "${become[@]}" unshare --mount --propagation private bash -c '
        set -e
        root=$1 user=$2 folder=$3 count=$4
        shift 4
        for mounted in "${@:1:count}" /dev /proc /sys; do
            mkdir -p "$root$mounted"
            mount --rbind "$mounted" "$root$mounted"
        done
        mount --bind /etc/passwd "$root/etc/passwd"
        mount --bind /etc/group "$root/etc/group"
        shift "$count"
        exec chroot --userspec="$user" "$root" /usr/bin/env -C "$folder" "$@"' \
        enter "$root" "$(id -u):$(id -g)" "$PWD" "${#host_folders[@]}" "${host_folders[@]}" "${variables[@]}" "$@"
}

# enter_root HOW ROOT ACCESS COMMAND...: HOW is bwrap or chroot.
enter_root() {
    local how=$1
    shift
    find_host_folders
    "enter_by_$how" "$@"
}
