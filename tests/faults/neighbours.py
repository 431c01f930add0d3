"""Another program that swaps folders and files for links while Orvane moves them.

It starts with the first move, when everything has been approved: from then on nothing but what stood in its place at
the beginning may move, and nothing may come out of or go into the private folders that the links lead to.
"""

import ctypes
import os
import random
import re
import signal
import time
import traceback

from group import Group
from oracle import Journal, check_end
from trees import inventory
from world import as_user

FOLDERS, FILES = 8, 250
NOREPLACE, EXCHANGE, AT_FDCWD = 1, 2, -100
libc = ctypes.CDLL(None)


def rename(one, other, how):
    return libc.renameat2(AT_FDCWD, os.fsencode(one), AT_FDCWD, os.fsencode(other), how) == 0


def put_back(place, kept):
    """Gives `place` the entry that `kept` holds, and leaves what stood there, or nothing, as `kept`."""
    while not rename(place, kept, EXCHANGE) and not rename(kept, place, NOREPLACE):
        if not os.path.lexists(kept):
            raise RuntimeError(f"what stood in {place} was taken from beside it")
    if os.path.lexists(kept) and not os.path.islink(kept):
        raise RuntimeError(f"something came to {place}, where a link stood")


def swap(root, private, link, seed, watched, files, begun):
    """Swaps folders, and files too, until SIGTERM, with everything back in its place at the end; how often. Closes `begun` when it watches."""
    chance = random.Random(seed)
    ended = []
    signal.signal(signal.SIGTERM, lambda *_: ended.append(True))
    before = os.stat(watched).st_mtime_ns
    os.close(begun)
    while not ended and os.stat(watched).st_mtime_ns == before:
        pass
    swaps = 0
    while not ended:
        folder = chance.choice([entry for entry in os.scandir(root) if entry.is_dir(follow_symlinks=False)] or [None])
        if folder is None:
            continue
        place, target = folder.path, os.path.join(private, folder.name)
        if files and chance.random() < 0.5:
            names = os.listdir(place)
            if not names:
                continue
            name = chance.choice(names)
            place, target = os.path.join(place, name), os.path.join(target, name)
        if os.path.lexists(link):
            os.unlink(link)
        os.symlink(target, link)
        if rename(place, link, EXCHANGE):
            swaps += 1
            time.sleep(chance.random() * 3e-4)
            put_back(place, link)
    return swaps


class Neighbour:
    """A process of the user that swaps below `root` as soon as the folder `watched` changes."""

    def __init__(self, world, root, watched, seed, files=True):
        begun, self.told = os.pipe(), os.pipe()
        self.process = os.fork()
        if self.process == 0:
            status = 1
            try:
                as_user().__enter__()
                os.close(begun[0])
                swaps = swap(root, world.path("home/Private"), world.path("home/Neighbour/link"), seed, watched, files,
                             begun[1])
                os.write(self.told[1], b"%d" % swaps)
                status = 0
            except BaseException:
                os.write(self.told[1], traceback.format_exc().encode())
            finally:
                os._exit(status)
        os.close(self.told[1])
        os.close(begun[1])
        os.read(begun[0], 1)
        os.close(begun[0])

    def end(self):
        """How often it swapped."""
        os.kill(self.process, signal.SIGTERM)
        with os.fdopen(self.told[0]) as told:
            text = told.read()
        if os.waitpid(self.process, 0)[1] != 0:
            raise RuntimeError("the neighbour fails: " + text)
        return int(text)


class NeighbourGroup(Group):
    """Another program swaps what moves for links to private folders, a million moves in all."""

    ROUNDS = 125  # of 2,000 items, each moved and brought back in two scenarios
    ROOT = "home/Downloads"
    TRASH = "home/.local/share/Trash/files"

    def prepare(self, world):
        def build(world):
            for folder in range(FOLDERS):
                for name in range(FILES):
                    world.file(f"{self.ROOT}/{folder}/{name}.txt", b"%d/%d" % (folder, name))
                    world.file(f"home/Private/{folder}/{name}.txt", b"private %d/%d" % (folder, name))
            world.folder("home/Neighbour")
            world.folder(self.TRASH, mode=0o700)

        world.make(build)
        world.keep()

    def list(self, world):
        return [f"{how}/{seed}" for how in ("trash", "organize") for seed in range(self.ROUNDS)]

    def run(self, world, case):
        how, seed = case.split("/")
        world.lay_out("size=256m")
        root = world.path(self.ROOT)
        self.before, private = self.inodes(root), inventory(world.path("home/Private"))
        findings = []
        if how == "trash":
            watched = world.path(self.TRASH)
            words = ["trash", "--yes", "--root", root, *self.before]
        else:
            watched, words = root, ["organize", root, "--subfolders", "--apply", "--yes"]
        swaps = self.beside(world, words, watched, int(seed), findings)
        self.check(world, findings, "after the run ")
        fullest = max(os.walk(world.path("home")), key=lambda found: len(found[2]))[0]
        swaps += self.beside(world, ["restore", "--last", "--yes"], fullest, int(seed), findings,
                             files=how == "trash")
        if swaps == 0:
            findings.append("the neighbour swapped nothing")
        self.check(world, findings, "after the restore beside a neighbour ")
        world.run("restore", "--last", "--yes")
        self.check(world, findings, "after the last restore ")
        returned = self.inodes(root)
        if len(returned) != len(self.before) or {self.asked_for(place) for place in returned} != set(self.before):
            findings.append("not everything is back")
        if inventory(world.path("home/Private")) != private:
            findings.append("the private folders have changed")
        if inventory(world.path("outside")) != world.outside:
            findings.append("the tree beside the home has changed")
        return findings

    def beside(self, world, words, watched, seed, findings, files=True):
        os.sched_setaffinity(0, range(os.cpu_count()))
        neighbour = Neighbour(world, world.path(self.ROOT), watched, seed, files)
        check_end(world.run(*words), words[0], findings)
        return neighbour.end()

    def check(self, world, findings, when):
        """Each file is once where it was or where the journal says, and no link is taken for one."""
        journal = Journal(world, findings)
        places = {os.fsdecode(world.path(original)): os.fsdecode(world.path(trashed))
                  for action, original, trashed in journal.entries if action != "restored"}
        there = {self.asked_for(place): inode for place, inode in self.inodes(world.path("home")).items()}
        wrong = [place for place, inode in self.before.items() if there.get(places.get(place, place)) != inode]
        if wrong:
            elsewhere = [place for place, inode in there.items() if inode == self.before[wrong[0]]]
            findings.append(f"{when}{len(wrong)} files are not where they should be, as {wrong[0]}, which is {elsewhere}")

    @staticmethod
    def asked_for(place):
        """What the neighbour has put into a place gives an item that comes back there another name."""
        return re.sub(r" \(restored \d+\)(\.\w+)$", r"\1", place)

    @staticmethod
    def inodes(top):
        return {os.path.join(folder, name): os.lstat(os.path.join(folder, name)).st_ino
                for folder, _, files in os.walk(top) for name in files}
