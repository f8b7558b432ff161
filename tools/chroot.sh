# A minimal Debian in a folder, thrown away after use. To be sourced. Where packages come from is what this machine's own package
# manager says, with the name of the release in place of this machine's.
# shellcheck shell=sh

# make_chroot RELEASE FOLDER: Debian's minimal base and nothing else.
make_chroot() {
    chroot_release=$1
    chroot_here=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
    chroot_sources=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
        sed -n "s/^\([^ ]*\) $chroot_here\(-[a-z]*\)\{0,1\} /\1 $chroot_release\2 /p" | sort -u)
    chroot_mirror=$(echo "$chroot_sources" | sed -n "s/^\([^ ]*\) $chroot_release main$/\1/p" | head -n 1)
    if [ -z "$chroot_mirror" ]; then
        echo "This machine's package manager knows no source of Debian." >&2
        return 1
    fi
    shift
    chmod 755 "$1"
    debootstrap --variant=minbase "$chroot_release" "$1" "$chroot_mirror" || return 1
    echo "$chroot_sources" | sed 's/^/deb /' >"$1/etc/apt/sources.list"
    apt-config dump --format '%F "%v";%n' Acquire::http Acquire::https Acquire::Check-Valid-Until Acquire::Check-Date \
        Acquire::Retries | grep -v '""' >"$1/etc/apt/apt.conf.d/90machine" || true
    cp /etc/resolv.conf "$1/etc/resolv.conf"
    # Services must not start in there.
    printf '#!/bin/sh\nexit 101\n' >"$1/usr/sbin/policy-rc.d"
    chmod 755 "$1/usr/sbin/policy-rc.d"
    in_chroot "$1" apt-get update -q
}

# unpack_chroot ARCHIVE FOLDER: one that tools/make-base has packed.
unpack_chroot() {
    chmod 755 "$2"
    tar -xf "$1" -C "$2"
}

# copy_tree TREE FOLDER: what git knows of it, as it stands.
copy_tree() {
    mkdir "$2"
    git -C "$1" ls-files -z | (cd "$1" && xargs -0 ls -d 2>/dev/null | tar -cf - -T -) | tar -xf - -C "$2"
}

# in_chroot FOLDER COMMAND...: as root, with an environment of its own. Whatever it starts ends with it, and so does what it mounts.
# The folder is a mount point like the root of any system.
in_chroot() {
    chroot_folder=$1
    shift
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        unshare --mount --pid --fork --kill-child sh -c '
            mount --bind "$0" "$0"
            mount -t proc proc "$0/proc"
            mount -t sysfs -o ro sysfs "$0/sys"
            mount -t tmpfs tmpfs "$0/dev/shm"
            exec chroot "$0" "$@"' "$chroot_folder" "$@"
}

# can_make_chroots: whether that is possible here; prints what is in the way.
can_make_chroots() {
    if [ "$(id -u)" -ne 0 ]; then
        echo "skipped: only root can make a minimal system"
        return 1
    fi
    if ! command -v debootstrap >/dev/null 2>&1; then
        echo "skipped: debootstrap is not installed"
        return 1
    fi
    if ! unshare --mount --pid --fork --kill-child true 2>/dev/null; then
        echo "skipped: this machine does not let root mount anything"
        return 1
    fi
    chroot_probe=$(mktemp -d)
    chroot_status=0
    mknod "$chroot_probe/null" c 1 3 2>/dev/null && echo x 2>/dev/null >"$chroot_probe/null" || chroot_status=1
    rm -rf "$chroot_probe"
    if [ "$chroot_status" -ne 0 ]; then
        echo "skipped: this machine does not let root make devices"
    fi
    return "$chroot_status"
}
