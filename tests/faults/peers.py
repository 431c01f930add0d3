"""The same power cuts for Orvane and for the desktop's own tools: how many files does each lose, whole or in part?"""

import dataclasses
import itertools
import os
import urllib.parse

from oracle import TRASHES
from scenarios import Scenario, prepared
from starts import ORVANECTL
from trees import inventory
from world import COMMITS, World

NAMES = [f"file {number}.txt" for number in range(8)]
TRASH = os.fsdecode(TRASHES[b"home"])
TOOLS = {
    "orvanectl": (ORVANECTL, "trash", "--yes", "--root", "{home}/Downloads"),
    "gio trash": ("/usr/bin/gio", "trash"),
    "trash-put": ("/usr/bin/trash-put",),
}


@dataclasses.dataclass
class Tally:
    cuts: int = 0
    lost: int = 0  # files that are nowhere, or not as they were
    homeless: int = 0  # files in the Trash of which nobody knows where they were
    orphans: int = 0  # records without a file
    undone: int = 0  # files that were said to be in the Trash and are not
    bad_cuts: int = 0  # cuts after which any of these is so


def build(world):
    for name in NAMES:
        world.file(f"home/Downloads/{name}")


def recorded_path(world, name):
    """Where the Trash's record says that a file was."""
    try:
        with open(world.path(f"{TRASH}/info/{name}.trashinfo"), "rb") as file:
            lines = file.read().split(b"\n")
    except OSError:
        return None
    return next((urllib.parse.unquote_to_bytes(line[5:]) for line in lines if line.startswith(b"Path=")), None)


def count(world, truth, result, at_end, tally):
    home = inventory(world.path("home"))
    before = (tally.lost, tally.homeless, tally.orphans, tally.undone)
    for name in NAMES:
        origin = f"Downloads/{name}".encode()
        trashed = os.fsencode(TRASH).removeprefix(b"home/") + b"/files/" + name.encode()
        found = home.get(origin) or home.get(trashed)
        whole = found is not None and found.same_but(truth["home"][origin])
        tally.lost += not whole
        if trashed in home:
            tally.homeless += recorded_path(world, name) != os.fsencode(world.path(f"home/Downloads/{name}"))
        elif at_end and result.status == 0:
            tally.undone += 1
    info = os.fsencode(TRASH).removeprefix(b"home/") + b"/info/"
    for path in home:
        if path.startswith(info) and info.replace(b"/info/", b"/files/") + path[len(info):-10] not in home:
            tally.orphans += 1
    tally.cuts += 1
    tally.bad_cuts += before != (tally.lost, tally.homeless, tally.orphans, tally.undone)


def measure(world, tool):
    program, *words = [word.format(home=world.path("home")) for word in TOOLS[tool]]
    words += [world.path(f"home/Downloads/{name}") for name in NAMES]
    truth = prepared(world, Scenario("peers", build, "history", ("home/Downloads",)))
    world.lay_out()
    calls, _ = world.calls(*words, program=program)
    tally = Tally()
    for commit, at in itertools.product(COMMITS, range(1, len(calls) + 2)):
        world.lay_out()
        result = world.run_and_cut_power(*words, at=at, commit=commit, program=program)
        if tool == "orvanectl":
            world.run("history")  # the next start settles what was under way
        count(world, truth, result, at == len(calls) + 1, tally)
    return tally


def main():
    print("| File system | Tool | Power cuts | Cuts with damage | Files lost | Origin forgotten | Records without a file |"
          " Said done, undone |")
    print("|---|---|---|---|---|---|---|---|")
    for file_system in ("ext4", "xfs"):
        world = World(file_system)
        try:
            for tool in TOOLS:
                tally = measure(world, tool)
                print(f"| {file_system} | {tool} | {tally.cuts} | {tally.bad_cuts} | {tally.lost} | {tally.homeless} | "
                      f"{tally.orphans} | {tally.undone} |", flush=True)
        finally:
            world.close()
    return 0
