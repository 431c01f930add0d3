"""A user's home on one volume, a second volume, and a tree beside both: made, run in, filled up and looked at.

The suite runs as root in a mount namespace of its own; the programs under test run as an ordinary user.
"""

import ctypes
import dataclasses
import errno
import fcntl
import hashlib
import json
import os
import shutil
import signal
import stat
import struct
import subprocess
import tempfile
import time

USER = 65534
PATIENCE = 15  # seconds until a program counts as one that never ends
TOP = os.path.realpath(os.path.join(os.path.dirname(__file__), "../.."))
ORVANECTL = os.environ.get("ORVANECTL", os.path.join(TOP, "build/dev/cli/orvanectl"))
INTERPOSER = os.environ.get("FAULTS_LIBRARY", os.path.join(TOP, "build/dev/tests/faults/liborvane_faults.so"))
VOLUMES = ("home", "volume")
SHUTDOWN = 0x8004587D  # ioctl of ext4 and XFS
# A power cut right before or right after the file system commits its journal of names; data that nobody made durable is
# lost either way.
COMMITS = {"before": 2, "after": 1}
MIB = 1 << 20
IMAGE_SIZES = {"ext4": 16 * MIB, "xfs": 300 * MIB}

libc = ctypes.CDLL(None, use_errno=True)
MS_RDONLY, MS_REMOUNT, MS_NOATIME, MS_REC, MS_PRIVATE, MNT_DETACH = 1, 32, 1024, 16384, 1 << 18, 2


def mount(source, target, kind, flags=MS_NOATIME, options=""):
    words = [os.fsencode(word) for word in (source, target, kind)]
    if libc.mount(*words, ctypes.c_ulong(flags), options.encode()) != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()), target)


def unmount(target):
    libc.umount2(os.fsencode(target), MNT_DETACH)


@dataclasses.dataclass(frozen=True)
class Item:
    """All that a user could miss about a file; times of reading and of the inode aside."""

    kind: str
    mode: int
    owner: tuple
    size: int
    modified: int
    content: str
    attributes: tuple
    inode: int
    links: int

    def same_but(self, other, **ignored):
        return dataclasses.replace(self, inode=0, **ignored) == dataclasses.replace(other, inode=0, **ignored)


def content_of(path, status):
    if stat.S_ISLNK(status.st_mode):
        return os.readlink(path).hex()
    if not stat.S_ISREG(status.st_mode) or status.st_size > 1 << 32:
        return ""
    with open(path, "rb") as file:
        return hashlib.blake2b(file.read(), digest_size=12).hexdigest()


def look_at(path):
    status = os.lstat(path)
    names = [] if stat.S_ISSOCK(status.st_mode) else sorted(os.listxattr(path, follow_symlinks=False))
    is_folder = stat.S_ISDIR(status.st_mode)
    return Item(
        kind={stat.S_IFREG: "file", stat.S_IFDIR: "folder", stat.S_IFLNK: "link"}.get(
            stat.S_IFMT(status.st_mode), "special"),
        mode=status.st_mode,
        owner=(status.st_uid, status.st_gid),
        size=0 if is_folder else status.st_size,
        modified=status.st_mtime_ns,
        content=content_of(path, status),
        attributes=tuple((name, os.getxattr(path, name, follow_symlinks=False)) for name in names),
        inode=status.st_ino,
        links=0 if is_folder else status.st_nlink,
    )


def inventory(top):
    """Every entry below `top` by its path from there, as bytes."""
    found = {}

    def walk(folder, prefix):
        for entry in os.scandir(folder):
            name = prefix + entry.name
            found[name] = look_at(entry.path)
            if entry.is_dir(follow_symlinks=False):
                walk(entry.path, name + b"/")

    walk(os.fsencode(top), b"")
    found.pop(b"lost+found", None)
    return found


@dataclasses.dataclass
class Result:
    status: int
    output: str
    errors: str
    timed_out: bool = False

    @property
    def json(self):
        return json.loads(self.output)


class World:
    """`top`/home, `top`/volume and `top`/outside. A template of it can be laid out again and again, cheaply."""

    def __init__(self, file_system="tmpfs"):
        self.file_system = file_system
        self.top = os.path.realpath(tempfile.mkdtemp(prefix="orvane-faults-"))
        os.chmod(self.top, 0o755)
        self.work = tempfile.mkdtemp(prefix="orvane-faults-work-", dir="/dev/shm")
        os.chmod(self.work, 0o777)
        self.mounted = False
        self.lacks = ""  # features that the file systems do not have
        for name in (*VOLUMES, "outside"):
            os.mkdir(self.path(name))
        self.canary("outside")
        self.outside = inventory(self.path("outside"))

    def close(self):
        self.unmount()
        shutil.rmtree(self.work, ignore_errors=True)
        shutil.rmtree(self.top, ignore_errors=True)

    def path(self, place):
        return os.path.join(os.fsencode(self.top), place) if isinstance(place, bytes) else os.path.join(self.top, place)

    # Mounting

    def image(self, volume):
        return os.path.join(self.work, f"{volume}.image")

    def mount(self, options="size=64m"):
        for name in VOLUMES:
            if self.file_system == "tmpfs":
                mount("tmpfs", self.path(name), "tmpfs", options=f"{options},mode=755,uid={USER},gid={USER}")
            else:
                subprocess.run(["mount", "-o", "loop,noatime", self.image(name), self.path(name)], check=True)
        self.mounted = True

    def unmount(self):
        if not self.mounted:
            return
        for name in VOLUMES:
            if self.file_system == "tmpfs":
                unmount(self.path(name))
            else:
                subprocess.run(["umount", self.path(name)], check=True)
        self.mounted = False

    def format(self):
        """Empty images, or nothing where the file system needs none."""
        if self.file_system == "tmpfs":
            return
        for name in VOLUMES:
            with open(self.image(name), "wb") as file:
                file.truncate(IMAGE_SIZES[self.file_system])
            quiet = ["-q"] + (["-E", f"root_owner={USER}:{USER},nodiscard"] if self.file_system == "ext4" else [])
            subprocess.run([f"mkfs.{self.file_system}", *quiet, self.image(name)], check=True)

    def make(self, build):
        """Lays the world out by `build(world)`, carried out as the user, and keeps it as the template."""
        self.unmount()
        self.format()
        self.mount()
        for name in VOLUMES:
            os.chown(self.path(name), USER, USER)
        with as_user():
            for name in VOLUMES:
                self.canary(name)
            build(self)

    def keep(self):
        """What is there now is what lay_out brings back."""
        if self.file_system == "tmpfs":
            for name in VOLUMES:
                shutil.rmtree(os.path.join(self.work, name), ignore_errors=True)
                copy_tree(self.path(name), os.path.join(self.work, name))
            return
        self.unmount()
        for name in VOLUMES:
            copy_sparse(self.image(name), self.image(name) + ".template")

    def lay_out(self, options="size=64m"):
        self.unmount()
        if self.file_system != "tmpfs":
            for name in VOLUMES:
                copy_sparse(self.image(name) + ".template", self.image(name))
        self.mount(options)
        if self.file_system == "tmpfs":
            for name in VOLUMES:
                copy_tree(os.path.join(self.work, name), self.path(name))

    def leave(self, volume, pages=None, inodes=None):
        """Leaves so much room on a volume in memory; all of it where neither is given."""
        status = os.statvfs(self.path(volume))
        options = ["size=64m", "nr_inodes=8192"]
        if pages is not None:
            options[0] = f"size={(status.f_blocks - status.f_bfree + pages) * status.f_bsize}"
        if inodes is not None:
            options[1] = f"nr_inodes={status.f_files - status.f_ffree + inodes}"
        mount("tmpfs", self.path(volume), "tmpfs", MS_REMOUNT | MS_NOATIME, ",".join(options))

    def cut_power(self, commit):
        for name in VOLUMES:
            folder = os.open(self.path(name), os.O_RDONLY)
            fcntl.ioctl(folder, SHUTDOWN, struct.pack("I", COMMITS[commit]))
            os.close(folder)

    def start_again(self):
        self.unmount()
        self.mount()

    # Files

    def file(self, place, content=None, mode=0o644, age=5.5):
        """A file with a content of its own, `age` days old."""
        path = self.path(place)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        if content is None:
            content = os.fsencode(place) * 7
        with open(path, "wb") as file:
            file.write(content)
        os.chmod(path, mode)
        moment = time.time_ns() - int(age * 86400e9)
        os.utime(path, ns=(moment, moment))
        return path

    def folder(self, place, mode=0o755):
        os.makedirs(self.path(place), exist_ok=True)
        os.chmod(self.path(place), mode)
        return self.path(place)

    def canary(self, place):
        self.file(f"{place}/Canary/keep.txt")
        self.file(f"{place}/Canary/deep/keep.log", mode=0o600)
        os.symlink("keep.txt", self.path(f"{place}/Canary/link"))

    # Programs

    def start(self, words, faults=None):
        values = {"HOME": self.path("home"), "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": "UTC",
                  "PYTHONDONTWRITEBYTECODE": "1", "XDG_RUNTIME_DIR": self.work}
        if faults is not None or self.lacks:
            faults = {"lacks": self.lacks, **(faults or {})}
            values |= {"LD_PRELOAD": INTERPOSER, "FAULTS_ROOT": self.top}
            values |= {f"FAULTS_{name.upper()}": str(value) for name, value in faults.items()}
        return subprocess.Popen(words, env=values, cwd=self.path("home"), user=USER, group=USER,
                                extra_groups=[], umask=0o022, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def run(self, *words, program=ORVANECTL, **settings):
        return self.wait_for(self.start([program, *words], **settings))

    def wait_for(self, process):
        timed_out = False
        try:
            output, errors = process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            output, errors = process.communicate()
            timed_out = True
        return Result(process.returncode, output.decode(errors="replace"), errors.decode(errors="replace"), timed_out)

    def run_and_cut_power(self, *words, at, commit, program=ORVANECTL):
        """Stops the program before its `at`-th change, or lets it end, and cuts the power there."""
        process = self.start([program, *words], faults={"at": at, "do": "stop"})
        deadline = time.monotonic() + PATIENCE
        while True:
            found, status = os.waitpid(process.pid, os.WUNTRACED | os.WNOHANG)
            if found or time.monotonic() > deadline:
                break
            time.sleep(0.0005)
        ended = bool(found) and not os.WIFSTOPPED(status)
        self.cut_power(commit)
        if not ended:
            os.kill(process.pid, signal.SIGKILL)
            os.waitpid(process.pid, 0)
        process.returncode = 0
        output = process.stdout.read().decode(errors="replace")
        errors = process.stderr.read().decode(errors="replace")
        self.start_again()
        return Result(os.waitstatus_to_exitcode(status) if ended else -signal.SIGKILL, output, errors, not found)

    def calls(self, *words, side="changes", program=ORVANECTL, **faults):
        """Names of the calls that the program makes, in their order, and how it ended."""
        log = os.path.join(self.work, "calls")
        with open(log, "wb"):
            os.chmod(log, 0o666)
        result = self.run(*words, program=program, faults={"log": log, "side": side, **faults})
        with open(log, "rb") as file:
            return [line.split(b" ", 2)[1].decode() for line in file], result


class as_user:
    def __enter__(self):
        self.groups = os.getgroups()
        os.setgroups([])
        os.setegid(USER)
        os.seteuid(USER)

    def __exit__(self, *_):
        os.seteuid(0)
        os.setegid(0)
        os.setgroups(self.groups)


def copy_tree(source, target):
    os.makedirs(target, exist_ok=True)
    subprocess.run(["cp", "-a", "--sparse=always", f"{source}/.", target], check=True)


def copy_sparse(source, target):
    subprocess.run(["cp", "--sparse=always", source, target], check=True)


def own_mounts():
    """From here on nobody else sees what this process mounts. Starts the process anew where that takes other rights."""
    if libc.unshare(0x00020000) != 0:
        raise OSError(ctypes.get_errno(), errno.errorcode[ctypes.get_errno()], "this needs root")
    mount("none", "/", "none", MS_REC | MS_PRIVATE)
