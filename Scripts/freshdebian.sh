# For scripts that try something in a fresh Debian 12: how to make one in a folder, and how to run commands in it.
# Sourced by them; `root` names the repository. Needs to be root.

suite=bookworm
step() { printf '\n== %s\n' "$*"; }
fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# make_fresh_debian FOLDER: puts a minimal one in a folder that holds nothing yet.
make_fresh_debian() {
    local room=$1 mirror started
    [ "$(id -u)" -eq 0 ] || fail "this makes a system of its own and must run as root."
    "$root/Scripts/packages" install tools
    mkdir -p "$room"
    [ -z "$(ls -A "$room")" ] || fail "$room is not empty."

    # The mirror is the one that this machine's apt takes Debian itself from.
    mirror=$(apt-get indextargets --format '$(CODENAME) $(ORIGIN) $(COMPONENT) $(REPO_URI)' 'Identifier: Packages' |
        awk -v suite="$suite" '$1 == suite && $2 == "Debian" && $3 == "main" { print $4; exit }')
    [ -n "$mirror" ] || fail "apt knows no source of Debian $suite; add one and run apt-get update."

    step "A minimal Debian 12 in $room"
    started=$SECONDS
    debootstrap --variant=minbase "$suite" "$room" "$mirror" >"$room.log" 2>&1 || {
        tail -n 20 "$room.log" >&2
        fail "debootstrap failed; all that it said is in $room.log."
    }
    echo "made in $((SECONDS - started)) s"

    # Reaching the mirror from inside takes what it takes from outside: names, and proxies if there are any.
    cp -L /etc/resolv.conf "$room/etc/resolv.conf"
    apt-config dump | grep -iE '^Acquire::[^ ]*(proxy|cainfo)' >"$room/etc/apt/apt.conf.d/80clean-room" || true
}

# inside FOLDER COMMAND...: runs a command in the home folder there. The processes have their own process table and
# mounts, and none outlives the command.
inside() {
    unshare --mount --pid --fork --kill-child sh -c '
        mount --make-rprivate /
        mount -t proc proc "$1/proc"
        mount -t sysfs -o ro sysfs "$1/sys" 2>/dev/null
        mount -t tmpfs -o mode=1777 tmpfs "$1/tmp"
        mount -t tmpfs -o mode=755 tmpfs "$1/run"
        mount -t tmpfs -o mode=755 tmpfs "$1/dev"
        for node in null zero full random urandom tty; do
            touch "$1/dev/$node" && mount --bind "/dev/$node" "$1/dev/$node"
        done
        mkdir "$1/dev/pts" "$1/dev/shm"
        mount -t devpts -o newinstance,ptmxmode=0666 devpts "$1/dev/pts"
        ln -s pts/ptmx "$1/dev/ptmx"
        ln -s /proc/self/fd "$1/dev/fd"
        mount -t tmpfs -o mode=1777 tmpfs "$1/dev/shm"
        room=$1
        shift
        exec chroot "$room" /usr/bin/env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
            TERM=dumb sh -c "cd && exec \"\$@\"" sh "$@"
    ' sh "$@" </dev/null
}
