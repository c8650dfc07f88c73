# Sourced by the checks that need a systemd: a container of its own on this machine, with udev, whose main unit's line is
# the console tty61 and whose first console is tty62. Needs root rights, debootstrap and cgroup2. Nothing in it changes
# this machine: it gets no events of other devices, has a network of its own, and cannot write to /proc/sys.
#
# Three things differ from a board, and stand in a rule and a drop-in: the line, the panel draws without a screen, and
# it paints its menus at once.
place=$(mktemp -d)
root=$place/root
group=
for at in /sys/fs/cgroup/unified /sys/fs/cgroup; do
    if [ -e "$at/cgroup.procs" ] && [ "$(stat -f -c %T "$at")" = cgroup2fs ]; then
        group=$at/qn740-$$
        break
    fi
done
[ -n "$group" ] || { echo "there is no cgroup2 here" >&2; exit 1; }
started=
container=
finish() {
    [ -z "$started" ] || kill -9 "$started" 2>/dev/null || true # --kill-child ends what is in it
    [ -z "$container" ] || kill -9 "$container" 2>/dev/null || true
    for _ in {1..25}; do
        find "$group" -depth -type d -exec rmdir {} \; 2>/dev/null || true
        [ -d "$group" ] || break
        sleep 0.2
    done
    rm -rf "$place"
}
trap finish EXIT
fail() {
    echo "not so: $*" >&2
    inside journalctl --no-pager -b -n 40 >&2 || true
    exit 1
}

contain() { # in the new namespaces
    mount --make-rprivate /
    mount --bind "$root" "$root"
    mount -t proc proc "$root/proc"
    mount --bind "$root/proc/sys" "$root/proc/sys"
    mount -o remount,bind,ro "$root/proc/sys"
    mount -t sysfs sysfs "$root/sys"
    mount -t cgroup2 cgroup2 "$root/sys/fs/cgroup"
    mount -t tmpfs -o mode=0755 tmpfs "$root/run"
    mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
    # systemd listens to udev only when it finds this at its start, or the machine's own /dev.
    mkdir "$root/run/udev"
    : >"$root/run/udev/control"
    mount -t tmpfs -o mode=0755 tmpfs "$root/dev"
    local node name major minor mode
    for node in null:1:3:666 zero:1:5:666 full:1:7:666 random:1:8:666 urandom:1:9:666 tty:5:0:666 tty0:4:0:620 \
        tty1:4:62:620 tty61:4:61:660; do
        IFS=: read -r name major minor mode <<<"$node"
        mknod -m "$mode" "$root/dev/$name" c "$major" "$minor"
    done
    mkdir -p "$root/dev/pts" "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts "$root/dev/pts"
    mount -t tmpfs -o mode=1777 tmpfs "$root/dev/shm"
    ln -s pts/ptmx "$root/dev/ptmx"
    ln -s /proc/self/fd "$root/dev/fd"
    # No chroot: the service gets a user namespace, which the kernel refuses there.
    cd "$root"
    pivot_root . mnt
    umount -l /mnt
    exec /usr/bin/env -i container=qn740 PATH=/usr/sbin:/usr/bin:/sbin:/bin /lib/systemd/systemd
}
inside() { nsenter -t "$container" -a /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"; }
value() { inside systemctl show qn740-panel -p "$1" --value; }
# A device event, as the kernel sends it; udev in the container takes tty61 for the main unit's line.
device() { echo "$1" >/sys/class/tty/tty61/uevent; }
until_so() { # SECONDS WHAT TEST...
    local seconds=$1 what=$2 end=$((SECONDS + $1))
    shift 2
    until "$@"; do
        [ "$SECONDS" -lt "$end" ] || fail "$what, within $seconds s"
        sleep 0.2
    done
    echo "ok: $what"
}

# make_root FOLDER PACKAGE...: a clean Debian with udev and these packages of the folder.
make_root() {
    "$here/root" "$(dpkg --print-architecture)" "$root"
    mkdir "$root/packages"
    local folder=$1 name
    shift
    for name; do cp "$folder/$name"_*.deb "$root/packages"; done
    "$here/enter" "$root" sh -c "apt-get install -y -qq udev /packages/*.deb" >"$place/apt" 2>&1 || {
        tail "$place/apt"
        exit 1
    }
    echo 'SUBSYSTEM=="tty", KERNEL=="tty61", SYMLINK+="ttyO1", TAG+="systemd", GROUP="dialout", MODE="0660"' \
        >"$root/etc/udev/rules.d/61-qn740-line.rules"
    rmdir "$root/var/log/journal" # the journal goes to /run
    mkdir -p "$root/etc/systemd/system/qn740-panel.service.d"
    printf '[Service]\nEnvironment=QT_QPA_PLATFORM=offscreen QN740_SPLASH_MS=0\nDeviceAllow=/dev/tty61 rw\n' \
        >"$root/etc/systemd/system/qn740-panel.service.d/00-here.conf"
    for unit in systemd-udev-trigger.service systemd-logind.service getty.target; do
        ln -s /dev/null "$root/etc/systemd/system/$unit"
    done
}

# Starts systemd in the root.
start_systemd() {
    export -f contain
    export root
    exec 7>/run/lock/qn740-container # one at a time: they share this machine's consoles
    flock 7
    mkdir "$group"
    (
        echo "$BASHPID" >"$group/cgroup.procs"
        exec 7>&-
        exec unshare --mount --pid --fork --uts --ipc --net --cgroup --kill-child bash -ec contain >"$place/console" 2>&1
    ) &
    started=$!
    disown "$started"
    until [ -n "$container" ]; do
        kill -0 "$started" 2>/dev/null || { cat "$place/console"; exit 1; }
        container=$(pgrep -P "$started" || true)
        sleep 0.1
    done
    until_so 30 "systemd and udev run" listening
}
listening() { inside udevadm control --ping 2>/dev/null; }
