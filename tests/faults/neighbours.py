"""Another program that swaps folders and files for links while Orvane moves them.

It starts with the first move, when everything has been approved: from then on nothing but what stood in its place at
the beginning may move, and nothing may come out of or go into the private folders that the links lead to.
"""

import ctypes
import os
import random
import signal
import time
import traceback

from world import as_user

FOLDERS, FILES = 8, 250
NOREPLACE, EXCHANGE, AT_FDCWD = 1, 2, -100
libc = ctypes.CDLL(None)


def rename(one, other, how):
    return libc.renameat2(AT_FDCWD, os.fsencode(one), AT_FDCWD, os.fsencode(other), how) == 0


def put_back(place, kept):
    """Gives `place` the entry that `kept` holds, and leaves what stood there, or nothing, as `kept`."""
    while not rename(place, kept, EXCHANGE) and not rename(kept, place, NOREPLACE):
        pass
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
