"""The cases: what can go wrong, when, and in which scenario. Each has a name that says how to repeat it."""

import collections
import dataclasses
import errno
import json
import os
import random
import re
import stat

from group import Group
from neighbours import NeighbourGroup
from oracle import Oracle, TRASHES, check_end
from scenarios import HOSTILE_NAMES, SCENARIOS, Scenario, command_of, make_socket, prepared
from starts import ORVANECTL, USER
from trees import inventory, look_at
from world import COMMITS, as_user

# The errors that the manual pages document, of those that happen to files.
ERRORS = {
    "open": "EACCES EDQUOT EINTR EIO EMFILE ENAMETOOLONG ENOMEM ENOSPC EPERM EROFS",
    "tmpfile": "EACCES EDQUOT EIO EMFILE ENOMEM ENOSPC EOPNOTSUPP EPERM EROFS",
    "rename": "EACCES EDQUOT EINVAL EIO ENAMETOOLONG ENOMEM ENOSPC EPERM EROFS EXDEV",
    "link": "EACCES EDQUOT EIO ENAMETOOLONG ENOMEM ENOSPC EPERM EROFS EXDEV",
    "unlink": "EACCES EIO ENAMETOOLONG ENOMEM EPERM EROFS",
    "rmdir": "EACCES EIO ENAMETOOLONG ENOMEM EPERM EROFS",
    "mkdir": "EACCES EDQUOT EIO ENAMETOOLONG ENOMEM ENOSPC EPERM EROFS",
    "symlink": "EACCES EDQUOT EIO ENAMETOOLONG ENOMEM ENOSPC EPERM EROFS",
    "mknod": "EACCES EDQUOT EIO ENAMETOOLONG ENOMEM ENOSPC EPERM EROFS",
    "write": "EDQUOT EINTR EIO ENOSPC EPERM",
    "copy_file_range": "EIO ENOMEM ENOSPC EPERM EXDEV",
    "sendfile": "EIO ENOMEM",
    "ftruncate": "EINTR EIO EPERM EROFS",
    "fsync": "EDQUOT EINTR EIO ENOSPC EROFS",
    "fdatasync": "EDQUOT EINTR EIO ENOSPC EROFS",
    "syncfs": "EDQUOT EIO ENOSPC",
    "chmod": "EACCES EIO ENOMEM EPERM EROFS",
    "chown": "EACCES EIO ENOMEM EPERM EROFS",
    "utimens": "EACCES EPERM EROFS",
    "setxattr": "EDQUOT ENOSPC ENOMEM EPERM EACCES",
    "removexattr": "EPERM EACCES",
    "ioctl": "EPERM EIO EXDEV",
    # reads
    "openat2": "EACCES EINTR EIO EMFILE ENOMEM",
    "read": "EINTR EIO",
    "readdir": "EIO",
    "stat": "EACCES EIO ENOMEM",
    "statx": "EACCES EIO ENOMEM",
    "readlink": "EACCES EIO ENOMEM",
    "listxattr": "EIO",
    "getxattr": "EIO",
    "flock": "EINTR ENOMEM",
}
READ_ERRORS = ("EACCES", "EINTR", "EIO", "EMFILE")
START_SCENARIOS = ("trash/one", "organize/two")
LASTING_ERRORS = ("EIO", "ENOSPC", "EROFS")
ROOM = 32  # pages and inodes that a disk has left, from none to this

FEATURES = {"no-tmpfile": "tmpfile", "no-noreplace": "noreplace", "no-openat2": "openat2", "bare": "tmpfile,noreplace"}
FILE_SYSTEMS = ("ext4", "xfs")


def numbered(calls, kinds=None):
    return [f"{number}-{name}" for number, name in enumerate(calls, 1) if kinds is None or name in kinds]


def number_of(label):
    return int(label.split("-")[0])


class ScenarioGroup(Group):
    """One command, and everything that can happen to it."""

    def __init__(self, scenario, surroundings="", restoring=False):
        name = f"restore-{scenario.name}" if restoring else scenario.name
        super().__init__(f"{surroundings}/{name}" if surroundings else name)
        self.base = scenario
        self.restoring = restoring
        self.surroundings = surroundings
        if surroundings in FILE_SYSTEMS:
            self.file_system = surroundings
        self.lacks = FEATURES.get(surroundings, "")
        words = "restore --last --yes" if restoring else scenario.words
        self.scenario = dataclasses.replace(scenario, name=self.name, words=words)

    def prepare(self, world):
        self.truth = prepared(world, self.base, self.restoring)
        self.words = self.scenario.command(world)
        self.oracle = Oracle(world, self.truth, self.scenario)

    def list(self, world):
        world.lay_out()
        calls, result = world.calls(*self.words)
        if result.status != 0:
            raise RuntimeError(f"{self.name} fails by itself: {result.errors}")
        if self.file_system != "tmpfs":
            labels = [*numbered(calls), f"{len(calls) + 1}-end"]
            return [f"power-{commit}/{label}" for commit in COMMITS for label in labels]
        cases = ["whole/0"] + [f"kill/{label}" for label in numbered(calls)]
        cases += [f"tear/{label}" for label in numbered(calls, {"write"})]
        cases += [f"fail/{label}/{error}" for label in numbered(calls) for error in ERRORS[label.split("-")[1]].split()]
        if self.surroundings:
            return cases
        cases += [f"short/{label}" for label in numbered(calls, {"write"})]
        cases += [f"fail-on/{label}/{error}" for label in numbered(calls) for error in LASTING_ERRORS
                  if error in ERRORS[label.split("-")[1]]]
        cases += [f"{kind}-{volume}/{room}" for kind in ("pages", "inodes") for volume in ("home", "volume")
                  for room in range(ROOM) if volume == "home" or self.name.endswith("two")]
        world.lay_out()
        reads, _ = world.calls(*self.words, side="reads")
        cases += [f"read/{label}/{error}" for label in numbered(reads) for error in READ_ERRORS
                  if error in ERRORS[label.split("-")[1]]]
        return cases + [f"start/{label}" for label in numbered(calls) if self.base.name in START_SCENARIOS]

    def run(self, world, case):
        world.lay_out()
        kind, at, *more = case.split("/")
        if kind == "start":
            return self.run_starts(world, {"at": number_of(at), "do": "kill"})
        if kind.startswith("power"):
            commit = kind.removeprefix("power-")
            return self.oracle.judge(world.run_and_cut_power(*self.words, at=number_of(at), commit=commit))
        if kind.startswith(("pages", "inodes")):
            return self.run_short_of_room(world, *kind.split("-"), int(at))
        faults = {"at": number_of(at), "do": kind}
        if kind in ("fail", "fail-on", "read"):
            error = getattr(errno, more[0])
            faults |= {"do": kind.replace("read", "fail"), "errno": error,
                       "side": "reads" if kind == "read" else "changes"}
        if kind == "whole":
            faults = {}
        result = world.run(*self.words, faults=faults)
        if kind in ("read", "fail-on"):
            # An unreadable item may have been left out, and was reported.
            result.status = result.status or 1
        return self.oracle.judge(result)

    def run_starts(self, world, faults):
        """The command is killed; the next start fails at each of its changes in turn, and the one after is killed."""
        world.run(*self.words, faults=faults)
        steps, _ = world.calls("history", "--json")
        findings = []
        for step, name in enumerate(steps, 1):
            world.lay_out()
            world.run(*self.words, faults=faults)
            for do in ("fail", "kill"):
                again = world.run("history", "--json", faults={"at": step, "do": do, "errno": errno.EIO})
                check_end(again, "the next start", findings)
            findings += [f"{finding}, after a start that failed at {step}-{name}" for finding in self.oracle.judge()]
        return findings

    def run_short_of_room(self, world, kind, volume, room):
        world.leave(volume, **{kind: room})
        result = world.run(*self.words)
        findings = []
        check_end(world.run("history", "--json"), "a start without room", findings)
        world.leave(volume)
        return findings + self.oracle.judge(result)


def scenario_named(name):
    return next(scenario for scenario in SCENARIOS if scenario.name == name)


STATE = "home/Library/Application Support/Orvane"
PREFERENCES = "home/.config/orvane/preferences.json"


class DamageGroup(Group):
    """A state file of which bytes are missing or wrong."""

    FILES = ("journal", "log", "preferences")

    def __init__(self, which):
        super().__init__(f"damage/{which}")
        self.which = which

    def prepare(self, world):
        scenario = scenario_named("tidy/two" if self.which == "preferences" else "trash/one")
        truth = prepared(world, scenario, restoring=self.which == "journal")
        self.oracle = Oracle(world, truth, scenario)
        world.lay_out()
        if self.which == "log":
            calls, _ = world.calls(*scenario.command(world))
            world.lay_out()
            last = max(number for number, name in enumerate(calls, 1) if name == "rename" and number < len(calls) - 6)
            world.run(*scenario.command(world), faults={"at": last, "do": "kill"})
            world.keep()
            world.lay_out()
        names = {"journal": f"{STATE}/undo_journal.json", "preferences": PREFERENCES}
        logs = [name for name in os.listdir(world.path(STATE)) if name.endswith(".log")]
        self.place = names.get(self.which) or f"{STATE}/{logs[0]}"
        with open(world.path(self.place), "rb") as file:
            self.whole = file.read()

    def list(self, world):
        return [f"{how}/{position}" for how in ("cut", "flip") for position in range(len(self.whole))]

    def run(self, world, case):
        how, position = case.split("/")
        position = int(position)
        damaged = self.whole[:position]
        if how == "flip":
            damaged += bytes([self.whole[position] ^ (1 << position % 8)]) + self.whole[position + 1:]
        world.lay_out()
        with open(world.path(self.place), "r+b") as file:
            file.truncate(0)
            file.write(damaged)
        before = users(self.oracle.state())
        start = world.run("history", "--json")
        findings = [f"a start changes {path!r}" for path in before.keys() ^ users(self.oracle.state()).keys()]
        runs = len(start.json) if start.status == 0 else 0
        words = "trash --yes --root {home}/Downloads {home}/Downloads/stays.txt"
        world.run(*command_of(world, "tidy set --days 5" if self.which == "preferences" else words))
        folder = os.path.dirname(world.path(self.place))
        kept = [name for name in os.listdir(folder) if damaged in content(os.path.join(folder, name))]
        if self.which == "journal" and runs < 2 and not kept:
            findings.append(f"the history has {runs} of 2 runs, and the damaged journal is gone")
        if self.which == "preferences" and not is_json(damaged) and content(world.path(self.place)) != damaged:
            findings.append("the damaged preferences are changed")
        return findings + self.oracle.judge_weakly(start)


def users(state):
    """Without what is the program's own."""
    return {path: item for path, item in state.items()
            if not path.startswith((b"home/Library/Application Support/Orvane", b"home/.config")) and
            b"/info/" not in path}


def is_json(text):
    try:
        json.loads(text)
    except ValueError:
        return False
    return True


def content(path):
    with open(path, "rb") as file:
        return file.read(1 << 20)


class ReplacedGroup(Group):
    """Something else in the place of a file or folder that the program keeps."""

    PLACES = (STATE, f"{STATE}/undo_journal.json", f"{STATE}/undo_journal.lock",
              f"{STATE}/undo_journal.moves.lock", f"{STATE}/undo_journal.restore.lock",
              f"{STATE}/undo_journal.8B0C9C1E-5E0B-4C8E-9B1E-4C2D1E3F4A5B.log", f"{STATE}/duplicates.lock",
              f"{STATE}/auto_organize.lock", PREFERENCES, f"{PREFERENCES}.lock", "home/.local/share/Trash",
              "home/.local/share/Trash/files", "home/.local/share/Trash/info", "home/.local/share/Trash/directorysizes",
              f"volume/.Trash-{USER}")
    KINDS = ("fifo", "dangling", "link", "folder", "device", "socket", "sparse", "unreadable")
    COMMANDS = ("trash --yes --root {home}/Downloads --root {volume} {home}/Downloads/plain.txt "
                "{volume}/Downloads/plain.txt", "restore --last --yes", "tidy set --days 5", "tidy run --yes",
                "duplicates --clean --yes {home}/Downloads", "trash --yes --root {home}/Downloads "
                "{home}/Downloads/linked {home}/Downloads/project")

    def prepare(self, world):
        self.prepare_scenario(world, scenario_named("trash/two"))

    def list(self, world):
        return [f"{kind}/{place.rpartition('/')[2]}" for place in self.PLACES for kind in self.KINDS]

    def run(self, world, case):
        kind, name = case.split("/")
        place = next(place for place in self.PLACES if place.rpartition("/")[2] == name)
        world.lay_out()
        with as_user():
            self.replace(world, world.path(place), kind)
        if kind == "device":
            os.mknod(world.path(place), stat.S_IFCHR | 0o666, os.makedev(1, 5))
            os.chmod(world.path(place), 0o666)
        results = []
        for words in self.COMMANDS:
            results.append(world.run(*command_of(world, words)))
        return self.oracle.judge_weakly(*results)

    def replace(self, world, path, kind):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        is_folder = os.path.isdir(path)
        if kind == "unreadable":
            if not os.path.lexists(path):
                world.file(os.path.relpath(path, world.top))
            os.chmod(path, 0o400 if is_folder else 0)
            return
        if os.path.lexists(path):
            os.rename(path, path + " as it was")
        if kind == "fifo":
            os.mkfifo(path)
        elif kind == "dangling":
            os.symlink(world.path("home/nowhere"), path)
        elif kind == "link":
            os.symlink(world.path("outside/Canary" if is_folder else "outside/Canary/keep.txt"), path)
        elif kind == "folder":
            os.mkdir(path)
        elif kind == "socket":
            make_socket(path)
        elif kind == "sparse":
            with open(path, "wb") as file:
                file.truncate(1 << 40)


class TogetherGroup(Group):
    """Several processes on one home, killed at random."""

    ROUNDS = 60

    def prepare(self, world):

        def build(world):
            for number in range(12):
                world.file(f"home/Downloads/{number}.txt")

        self.prepare_scenario(world, Scenario("together", build, "history", ("home/Downloads",)))

    def list(self, world):
        return [f"{count}/{seed}" for count in (2, 4) for seed in range(self.ROUNDS)]

    def run(self, world, case):
        count, seed = map(int, case.split("/"))
        chance = random.Random(seed)
        world.lay_out()
        findings = []
        os.sched_setaffinity(0, range(os.cpu_count()))
        for _ in range(2):
            running = []
            for _ in range(count):
                items = [world.path(f"home/Downloads/{number}.txt") for number in chance.sample(range(12), 4)]
                words = chance.choice([["trash", "--yes", "--root", world.path("home/Downloads"), *items],
                                       ["trash", "--yes", "--root", world.path("home/Downloads"), *items],
                                       ["restore", "--last", "--yes"], ["history"]])
                faults = {"at": chance.randrange(1, 60), "do": chance.choice(["kill", "tear", "none"])}
                running.append(world.start([ORVANECTL, *words], faults=faults))
            for process in running:
                check_end(world.wait_for(process), "a process", findings)
        return findings + self.oracle.judge()


class LongGroup(Group):
    """A run of several groups of moves, whose journal is written anew between them, and its restore: both are killed."""

    COUNT = 1300

    def prepare(self, world):
        def build(world):
            for number in range(self.COUNT):
                world.file(f"home/Downloads/{number}.txt")

        self.prepare_scenario(world, Scenario(self.name, build, "history", ("home/Downloads",)))
        folder = world.path("home/Downloads")
        self.words = ["trash", "--yes", "--root", folder, *(f"{folder}/{number}.txt" for number in range(self.COUNT))]
        world.lay_out()
        calls, _ = world.calls(*self.words)
        self.moves = [number for number, name in enumerate(calls, 1) if name == "rename"]

    def list(self, world):
        return ["7", "512", "1025"]

    def run(self, world, case):
        findings = []
        for restored in (None, int(case) // 2):
            world.lay_out()
            world.run(*self.words, faults={"at": self.moves[int(case)], "do": "kill"})
            if restored is not None:
                world.run("restore", "--last", "--yes", faults={"at": self.moves[restored], "do": "kill"})
            findings += self.oracle.judge()
        return findings


class NameGroup(Group):
    """One hostile name three times, so that two of them have to find another one where they go."""

    FOLDERS = tuple(f"home/Downloads/{folder}" for folder in ("one", "two", "three"))

    def list(self, world):
        return [f"{how}/{name}" for how in ("trash", "restore", "organize") for name in HOSTILE_NAMES]

    def run(self, world, case):
        how, key = case.split("/")
        places = [os.fsencode(f"{folder}/") + HOSTILE_NAMES[key] for folder in self.FOLDERS]
        scenario = Scenario(self.name, lambda world: [world.file(place) for place in places], "history",
                            ("home/Downloads", *self.FOLDERS), creates=("home/Downloads/Organized",))
        oracle = Oracle(world, prepared(world, scenario), scenario)
        downloads = world.path("home/Downloads")
        if how == "organize":
            return oracle.judge(world.run("organize", downloads, "--subfolders", "--apply", "--yes"))
        result = world.run("trash", "--yes", "--root", downloads, "--", *map(world.path, places))
        findings = [] if result.status == 0 else [f"cannot be moved: {result.errors.strip()[:300]}"]
        if how == "trash":
            return findings + oracle.judge(result)
        with as_user():
            taken = [look_at(world.file(place, b"another")) for place in places]
        findings += oracle.judge_weakly(result, world.run("restore", "--last", "--yes"))
        return findings + ["a restored file replaced another"] * (taken != [look_at(world.path(p)) for p in places])


class SwapGroup(Group):
    """Items come back into places where others stand by now. Two have each path, so places are known by content."""

    PLACES = ("home/Downloads/pip/wheel", "home/Downloads/report.pdf")
    WORDS = ("restore", "--last", "--swap", "--yes")

    def prepare(self, world):
        downloads = world.path("home/Downloads")
        world.make(lambda world: [world.file(place) for place in self.PLACES])
        world.run("trash", "--yes", "--root", downloads, f"{downloads}/pip", f"{downloads}/report.pdf")
        with as_user():
            for place in self.PLACES:
                world.file(place, b"newer")
        world.keep()
        scenario = Scenario(self.name, None, "", ("home/Downloads",))
        self.oracle = Oracle(world, {volume: inventory(world.path(volume)) for volume in ("home", "volume")}, scenario)
        mine = (b"home/Downloads/", os.fsencode(f"{OracleGroup.TRASH}/files/"), b"home/Canary/", b"volume/")
        self.oracle.truth = {path: item for path, item in self.oracle.truth.items() if path.startswith(mine)}

    def list(self, world):
        world.lay_out()
        calls, result = world.calls(*self.WORDS)
        if result.status != 0:
            raise RuntimeError(f"{self.name} fails by itself: {result.errors}")
        return (["whole/0"] + [f"kill/{label}" for label in numbered(calls)]
                + [f"fail/{label}/{error}" for label in numbered(calls) for error in ERRORS[label.split("-")[1]].split()])

    def run(self, world, case):
        world.lay_out()
        kind, at, *more = case.split("/")
        faults = {"at": number_of(at), "do": kind} if kind != "whole" else {}
        if more:
            faults["errno"] = getattr(errno, more[0])
        result = world.run(*self.WORDS, faults=faults)
        findings = self.oracle.judge_weakly(result)
        if result.status == 0 and any(content(world.path(place)) != os.fsencode(place) * 7 for place in self.PLACES):
            findings.append("says that all went well, but the places are not swapped")
        # Each run brings its own back, in any state that it was left in.
        for run in world.run("history", "--json").json:
            check_end(world.run("restore", run["runId"], "--yes", "--json"), "restore", findings)
        findings += self.oracle.judge_weakly()
        left = os.listdir(world.path(f"{OracleGroup.TRASH}/files"))
        if left:
            findings.append(f"after restore {left} are still in the Trash")
        return findings + [f"nothing is at {place}" for place in self.PLACES if not os.path.exists(world.path(place))]


class PermissionGroup(Group):
    """Folders that may not be read, searched or written."""

    FOLDERS = ("Downloads", "home", "Trash", "files", "info", "Orvane", "volume-trash", "volume")
    MODES = (0o000, 0o300, 0o400, 0o500, 0o600)

    def prepare(self, world):
        self.prepare_scenario(world, scenario_named("trash/two"))
        trash = os.fsdecode(TRASHES[b"home"])
        self.places = {"Downloads": "home/Downloads", "home": "home", "Trash": trash, "files": f"{trash}/files",
                       "info": f"{trash}/info", "Orvane": STATE, "volume": "volume",
                       "volume-trash": f"volume/.Trash-{USER}"}

    def list(self, world):
        return [f"{folder}/{mode:03o}" for folder in self.FOLDERS for mode in self.MODES]

    def run(self, world, case):
        folder, mode = case.split("/")
        world.lay_out()
        path = world.path(self.places[folder])
        with as_user():
            os.makedirs(path, mode=0o700, exist_ok=True)
        before = stat.S_IMODE(os.stat(path).st_mode)
        os.chmod(path, int(mode, 8))
        result = world.run(*self.scenario.command(world))
        findings = []
        check_end(result, "the command", findings)
        check_end(world.run("restore", "--last", "--yes"), "restore", findings)
        os.chmod(path, before)
        return findings + self.oracle.judge()


class SightGroup(Group):
    """The library itself: does it number every change that the kernel sees?"""

    KINDS = {"openat": "open", "renameat2": "rename", "renameat": "rename", "linkat": "link", "unlinkat": "unlink",
             "mkdirat": "mkdir", "symlinkat": "symlink", "mknodat": "mknod", "pwrite64": "write", "writev": "write",
             "fchmodat": "chmod", "fchmod": "chmod", "fchownat": "chown", "fchown": "chown", "utimensat": "utimens",
             "lsetxattr": "setxattr", "fsetxattr": "setxattr", "fremovexattr": "removexattr"}
    CALLS = ("creat", "open", "rename", "link", "unlink", "rmdir", "mkdir", "symlink", "mknod", "write", "pwritev",
             "pwritev2", "truncate", "ftruncate", "fallocate", "copy_file_range", "sendfile", "sync", "fsync",
             "fdatasync", "syncfs", "sync_file_range", "chmod", "chown", "lchown", "setxattr", "removexattr",
             "lremovexattr", "utime", "utimes", "futimesat", *KINDS)

    def list(self, world):
        return [scenario.name for scenario in SCENARIOS]

    def run(self, world, case):
        scenario = scenario_named(case)
        prepared(world, scenario)
        world.lay_out()
        trace = os.path.join(world.work, "trace")
        calls, _ = world.calls("-f", "-qq", "-y", "-s", "4096", "-e", "signal=none", "-e",
                               f"trace={','.join(self.CALLS)}", "-o", trace, ORVANECTL, *scenario.command(world),
                               program="/usr/bin/strace")
        seen = collections.Counter()
        for line in content(trace).decode(errors="replace").splitlines():
            name, _, rest = line.split(None, 1)[1].partition("(")
            # The folder of an absolute path, and what is written, say nothing about the place.
            places = re.sub(r'AT_FDCWD<[^>]*>, "/', '"/', rest.split(">")[0] if "write" in name else rest)
            reads = name in ("open", "openat") and not any(flag in line for flag in ("O_CREAT", "O_TRUNC", "O_TMPFILE"))
            if world.top in places and not reads:
                kind = "tmpfile" if "O_TMPFILE" in line else self.KINDS.get(name, name)
                seen["rmdir" if "AT_REMOVEDIR" in line else kind] += 1
        numbered_calls = collections.Counter(calls)
        return [f"{kind}: the kernel sees {seen[kind]}, the library {numbered_calls[kind]}"
                for kind in sorted(seen.keys() | numbered_calls.keys()) if seen[kind] != numbered_calls[kind]]


class OracleGroup(Group):
    """The oracle itself: damage that it has to see."""

    TRASH = "home/.local/share/Trash"
    DAMAGE = {
        "lost": lambda world: os.unlink(world.path(f"{OracleGroup.TRASH}/files/plain.txt")),
        "lost inside": lambda world: os.unlink(world.path(f"{OracleGroup.TRASH}/files/project/run")),
        "twice": lambda world: os.link(world.path(f"{OracleGroup.TRASH}/files/plain.txt"),
                                       world.path("home/Downloads/plain.txt")),
        "other bytes": lambda world: world.file(f"{OracleGroup.TRASH}/files/plain.txt"),
        "other mode": lambda world: os.chmod(world.path(f"{OracleGroup.TRASH}/files/project/run"), 0o700),
        "other time": lambda world: os.utime(world.path(f"{OracleGroup.TRASH}/files/project/fifo")),
        "no attribute": lambda world: os.removexattr(
            world.path(f"{OracleGroup.TRASH}/files/project/attributes"), "user.note"),
        "no record": lambda world: os.unlink(world.path(f"{OracleGroup.TRASH}/info/plain.txt.trashinfo")),
        "record alone": lambda world: world.file(f"{OracleGroup.TRASH}/info/nothing.trashinfo"),
        "stray": lambda world: world.file("home/Downloads/.orvane-1.partial"),
        "stray log": lambda world: world.file(f"{STATE}/undo_journal.json.1.tmp"),
        "canary": lambda world: os.utime(world.path("volume/Canary/keep.txt")),
        "outside": lambda world: world.file("outside/new"),
        "no journal": lambda world: os.unlink(world.path(f"{STATE}/undo_journal.json")),
    }

    def prepare(self, world):
        self.prepare_scenario(world, scenario_named("trash/one"))

    def list(self, world):
        return list(self.DAMAGE)

    def run(self, world, case):
        world.lay_out()
        world.run(*self.scenario.command(world))
        self.DAMAGE[case](world)
        findings = self.oracle.judge()
        world.outside = inventory(world.path("outside"))
        return [] if findings else ["the oracle sees nothing"]


def all_groups():
    groups = [OracleGroup("oracle"), SightGroup("sight"), NameGroup("name"), SwapGroup("swap"),
              PermissionGroup("permission"), ReplacedGroup("replaced"), TogetherGroup("together"), LongGroup("long"),
              NeighbourGroup("neighbours"), *(DamageGroup(which) for which in DamageGroup.FILES)]
    for scenario in SCENARIOS:
        groups += [ScenarioGroup(scenario), ScenarioGroup(scenario, restoring=True)]
    for name in ("trash/one", "organize/two"):
        for surroundings in (*FEATURES, *FILE_SYSTEMS):
            groups += [ScenarioGroup(scenario_named(name), surroundings, restoring) for restoring in (False, True)]
    return groups
