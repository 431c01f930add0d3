"""A user's home on one volume, a second volume, and a tree beside both: made, run in, filled up and looked at.

The suite runs as root in a mount namespace of its own; the programs under test run as an ordinary user.
"""

import fcntl
import os
import shutil
import struct
import subprocess
import tempfile
import time

from starts import INTERPOSER, ORVANECTL, PATIENCE, USER, Result, StartServer
from trees import Tree, inventory
from volumes import MNT_DETACH, MS_NOATIME, MS_REMOUNT, Disk, mount, unmount

VOLUMES = ("home", "volume")
SHUTDOWN = 0x8004587D  # ioctl of ext4 and XFS
# A power cut right before or right after the file system commits its journal of names; data that nobody made durable is
# lost either way.
COMMITS = {"before": 2, "after": 1}
MIB = 1 << 20
IMAGE_SIZES = {"ext4": 16 * MIB, "xfs": 300 * MIB}

class World:
    """`top`/home, `top`/volume and `top`/outside. A template of it can be laid out again and again, cheaply."""

    def __init__(self, file_system="tmpfs"):
        self.file_system = file_system
        self.top = os.path.realpath(tempfile.mkdtemp(prefix="orvane-faults-"))
        os.chmod(self.top, 0o755)
        self.work = tempfile.mkdtemp(prefix="orvane-faults-work-", dir="/dev/shm")
        os.chmod(self.work, 0o777)
        self.mounted = False
        self.disks = {}
        if file_system != "tmpfs":
            size = IMAGE_SIZES[file_system]
            self.disks = {name: Disk(os.path.join(self.work, f"{name}.image"), size) for name in VOLUMES}
        self.lacks = ""  # features that the file systems do not have
        self.trees = {}  # the template, of volumes in memory
        self.server = StartServer()
        for name in (*VOLUMES, "outside"):
            os.mkdir(self.path(name))
        self.canary("outside")
        self.outside = inventory(self.path("outside"))

    def close(self):
        self.server.close()
        self.unmount()
        for disk in self.disks.values():
            disk.close()
        shutil.rmtree(self.work, ignore_errors=True)
        shutil.rmtree(self.top, ignore_errors=True)

    def path(self, place):
        return os.path.join(os.fsencode(self.top), place) if isinstance(place, bytes) else os.path.join(self.top, place)

    # Mounting

    def mount(self, options="size=64m"):
        for name in VOLUMES:
            if self.file_system == "tmpfs":
                mount("tmpfs", self.path(name), "tmpfs", options=f"{options},mode=755,uid={USER},gid={USER}")
            else:
                mount(self.disks[name].path, self.path(name), self.file_system)
        self.mounted = True

    def unmount(self):
        if not self.mounted:
            return
        for name in VOLUMES:
            if self.file_system == "tmpfs":
                unmount(self.path(name), MNT_DETACH)
            else:
                unmount(self.path(name))
                self.disks[name].forget()
        self.mounted = False

    def format(self):
        """Empty disks, where the file system needs any."""
        quiet = ["-q"] + (["-E", f"root_owner={USER}:{USER},nodiscard"] if self.file_system == "ext4" else [])
        for disk in self.disks.values():
            disk.clear()
            subprocess.run([f"mkfs.{self.file_system}", *quiet, disk.path_of_image], check=True)

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
            self.trees = {name: Tree(self.path(name)) for name in VOLUMES}
            return
        self.unmount()
        for disk in self.disks.values():
            disk.keep()

    def lay_out(self, options="size=64m"):
        self.unmount()
        for disk in self.disks.values():
            disk.lay_out()
        self.mount(options)
        if self.file_system == "tmpfs":
            for name in VOLUMES:
                self.trees[name].write(self.path(name))

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

    def variables(self, faults):
        """The environment of a start; without `faults` nothing happens to it."""
        values = {"HOME": self.path("home"), "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "TZ": "UTC",
                  "PYTHONDONTWRITEBYTECODE": "1", "XDG_RUNTIME_DIR": self.work}
        if faults is not None or self.lacks:
            faults = {"lacks": self.lacks, **(faults or {})}
            values |= {"LD_PRELOAD": INTERPOSER, "FAULTS_ROOT": self.top}
            values |= {f"FAULTS_{name.upper()}": str(value) for name, value in faults.items()}
        return values

    def start(self, words, faults=None):
        """Beside others, or another program."""
        return subprocess.Popen(words, env=self.variables(faults), cwd=self.path("home"), user=USER, group=USER,
                                extra_groups=[], umask=0o022, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def run(self, *words, program=ORVANECTL, faults=None, when_stopped=None):
        if program == ORVANECTL:
            return self.server.run(words, self.variables(faults), self.path("home"), when_stopped)
        return self.wait_for(self.start([program, *words], faults), when_stopped)

    def wait_for(self, process, when_stopped=None):
        timed_out = False
        if when_stopped is not None:
            # A stopped program keeps its output open.
            os.waitid(os.P_PID, process.pid, os.WEXITED | os.WSTOPPED | os.WNOWAIT)
            when_stopped()
            process.kill()
        try:
            output, errors = process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            output, errors = process.communicate()
            timed_out = True
        return Result(process.returncode, output.decode(errors="replace"), errors.decode(errors="replace"), timed_out)

    def run_and_cut_power(self, *words, at, commit, program=ORVANECTL):
        """Stops the program before its `at`-th change, or lets it end, and cuts the power there."""
        result = self.run(*words, program=program, faults={"at": at, "do": "stop"},
                          when_stopped=lambda: self.cut_power(commit))
        self.start_again()
        return result

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
