"""Trees of files: looked at, and kept in memory to be written again and again."""

import hashlib
import os
import stat
import typing


class Item(typing.NamedTuple):
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
        return self._replace(inode=0, **ignored) == other._replace(inode=0, **ignored)


KINDS = {stat.S_IFREG: "file", stat.S_IFDIR: "folder", stat.S_IFLNK: "link"}


def read(path):
    file = os.open(path, os.O_RDONLY)
    try:
        pieces = []
        while piece := os.read(file, 1 << 20):
            pieces.append(piece)
        return b"".join(pieces)
    finally:
        os.close(file)


def content_of(path, status):
    if stat.S_ISLNK(status.st_mode):
        return os.readlink(path).hex()
    if not stat.S_ISREG(status.st_mode) or status.st_size > 1 << 32:
        return ""
    return hashlib.blake2b(read(path), digest_size=12).hexdigest()


def attributes_of(path, status):
    names = [] if stat.S_ISSOCK(status.st_mode) else sorted(os.listxattr(path, follow_symlinks=False))
    return tuple((name, os.getxattr(path, name, follow_symlinks=False)) for name in names)


def look_at(path):
    status = os.lstat(path)
    is_folder = stat.S_ISDIR(status.st_mode)
    return Item(
        kind=KINDS.get(stat.S_IFMT(status.st_mode), "special"),
        mode=status.st_mode,
        owner=(status.st_uid, status.st_gid),
        size=0 if is_folder else status.st_size,
        modified=status.st_mtime_ns,
        content=content_of(path, status),
        attributes=attributes_of(path, status),
        inode=status.st_ino,
        links=0 if is_folder else status.st_nlink,
    )


def inventory(top):
    """Every entry below `top` by its path from there, as bytes."""
    found = {}

    def walk(folder, prefix):
        with os.scandir(folder) as entries:
            for entry in entries:
                name = prefix + entry.name
                found[name] = item = look_at(entry.path)
                if item.kind == "folder":
                    walk(entry.path, name + b"/")

    walk(os.fsencode(top), b"")
    found.pop(b"lost+found", None)
    return found


class Kept(typing.NamedTuple):
    """What one entry is made of; `pieces` are the bytes of a file with their positions, `same_as` another name of it."""

    path: bytes
    status: os.stat_result
    attributes: tuple
    pieces: tuple = ()
    same_as: bytes | None = None
    target: bytes = b""


ZEROS = bytes(1 << 12)


def pieces_of(content, start=0):
    """The blocks that are not all zeros, with their positions, so that sparse files stay so."""
    blocks = ((at, content[at:at + len(ZEROS)]) for at in range(0, len(content), len(ZEROS)))
    return tuple((start + at, block) for at, block in blocks if block != ZEROS[:len(block)])


class Tree:
    """A folder with all that is in it, as it was when this was made."""

    def __init__(self, top):
        self.entries = []  # a folder before its content
        names = {}

        def keep(path, name):
            status = os.lstat(path)
            other = None if stat.S_ISDIR(status.st_mode) else names.setdefault(status.st_ino, name)
            self.entries.append(Kept(
                path=name,
                status=status,
                attributes=attributes_of(path, status),
                pieces=pieces_of(read(path)) if stat.S_ISREG(status.st_mode) else (),
                same_as=None if other == name else other,
                target=os.readlink(path) if stat.S_ISLNK(status.st_mode) else b"",
            ))
            if stat.S_ISDIR(status.st_mode):
                # A file system in memory lists the newest first: so the copy lists as the folder does.
                for inside in reversed(os.listdir(path)):
                    keep(path + b"/" + inside, name + b"/" + inside)

        keep(os.fsencode(top), b"")

    def write(self, top):
        """Into a folder that is empty."""
        top = os.fsencode(top)
        folders = []
        for entry in self.entries:
            path = top + entry.path
            mode = entry.status.st_mode
            if stat.S_ISDIR(mode):
                if entry.path:
                    os.mkdir(path)
                folders.append((path, entry))
            elif entry.same_as is not None:
                os.link(top + entry.same_as, path, follow_symlinks=False)
            else:
                self.make(path, entry)
                self.finish(path, entry)
        # A folder gets its times once nothing is put into it any more.
        for path, entry in reversed(folders):
            self.finish(path, entry)

    @staticmethod
    def make(path, entry):
        mode = entry.status.st_mode
        if stat.S_ISLNK(mode):
            os.symlink(entry.target, path)
        elif stat.S_ISREG(mode):
            file = os.open(path, os.O_WRONLY | os.O_CREAT | os.O_EXCL)
            for at, piece in entry.pieces:
                os.pwrite(file, piece, at)
            os.ftruncate(file, entry.status.st_size)
            os.close(file)
        else:
            os.mknod(path, mode, entry.status.st_rdev)

    @staticmethod
    def finish(path, entry):
        status = entry.status
        os.lchown(path, status.st_uid, status.st_gid)
        if not stat.S_ISLNK(status.st_mode):
            os.chmod(path, stat.S_IMODE(status.st_mode))
        for name, value in entry.attributes:
            os.setxattr(path, name, value, follow_symlinks=False)
        os.utime(path, ns=(status.st_atime_ns, status.st_mtime_ns), follow_symlinks=False)
