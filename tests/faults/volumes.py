"""Mounts, and disks that are files: asked of the kernel directly, as programs for it take longer than a case."""

import ctypes
import errno
import fcntl
import os
import struct

from trees import pieces_of

libc = ctypes.CDLL(None, use_errno=True)
MS_REMOUNT, MS_NOATIME, MS_REC, MS_PRIVATE, MNT_DETACH = 32, 1024, 16384, 1 << 18, 2
CLONE_NEWNS = 0x00020000
LOOP_CONFIGURE, LOOP_CTL_GET_FREE, BLKFLSBUF = 0x4C0A, 0x4C82, 0x1261
LO_FLAGS_AUTOCLEAR = 4


def checked(result, what):
    if result != 0:
        raise OSError(ctypes.get_errno(), os.strerror(ctypes.get_errno()), what)


def mount(source, target, kind, flags=MS_NOATIME, options=""):
    words = [os.fsencode(word) for word in (source, target, kind)]
    checked(libc.mount(*words, ctypes.c_ulong(flags), options.encode()), target)


def unmount(target, flags=0):
    checked(libc.umount2(os.fsencode(target), flags), target)


def own_mounts():
    """From here on nobody else sees what this process mounts."""
    checked(libc.unshare(CLONE_NEWNS), "this needs root")
    mount("none", "/", "none", MS_REC | MS_PRIVATE)


class Disk:
    """A block device whose bytes are those of a file."""

    def __init__(self, path, size):
        self.path_of_image = path
        self.image = os.open(path, os.O_RDWR | os.O_CREAT | os.O_CLOEXEC, 0o600)
        os.ftruncate(self.image, size)
        self.size = size
        self.kept = []
        self.attach()

    def attach(self):
        # struct loop_config, of which only the file and the flags are set: the device goes when nobody has it open.
        config = struct.pack("=II 52x I 240x", self.image, 0, LO_FLAGS_AUTOCLEAR)
        control = os.open("/dev/loop-control", os.O_RDWR | os.O_CLOEXEC)
        try:
            while True:
                self.path = f"/dev/loop{fcntl.ioctl(control, LOOP_CTL_GET_FREE)}"
                self.device = os.open(self.path, os.O_RDWR | os.O_CLOEXEC)
                try:
                    return fcntl.ioctl(self.device, LOOP_CONFIGURE, config)
                except OSError as error:
                    os.close(self.device)
                    if error.errno != errno.EBUSY:  # somebody else was faster
                        raise
        finally:
            os.close(control)

    def close(self):
        os.close(self.device)
        os.close(self.image)

    def forget(self):
        """Drops what the kernel holds of the device, so that the file's bytes count."""
        fcntl.ioctl(self.device, BLKFLSBUF)

    def clear(self):
        self.forget()
        os.ftruncate(self.image, 0)
        os.ftruncate(self.image, self.size)

    def keep(self):
        """The bytes as they are now are those that lay_out() brings back."""
        os.fsync(self.device)
        self.kept = []
        at = 0
        while True:
            try:
                at = os.lseek(self.image, at, os.SEEK_DATA)
            except OSError:
                break
            end = os.lseek(self.image, at, os.SEEK_HOLE)
            self.kept += pieces_of(os.pread(self.image, end - at, at), at)
            at = end

    def lay_out(self):
        self.clear()
        for at, content in self.kept:
            os.pwrite(self.image, content, at)
