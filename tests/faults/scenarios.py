"""The commands that move files, each with a home to do it in: one table, SCENARIOS."""

import dataclasses
import json
import os
import shlex
import socket
import stat
import struct
import typing

from starts import ORVANECTL, USER
from trees import inventory
from world import VOLUMES

HOSTILE_NAMES = {
    "newline": b"two\nlines.txt",
    "not-utf8": b"caf\xe9 \xff.txt",
    "dash": b"-rf",
    "blank": b" ",
    "percent": b"100%25 %00 %2F.txt",
    "escape": b"\x1b[31mred\x1b[0m\r.txt",
    "hidden": b".hidden",
    "final-dot": b"a.",
    "quotes": b"'\"$(touch x)`;&|*?[].txt",
    "trashinfo": b"a.trashinfo",
    "numbered": b"a.2.txt",
    "long-255": b"n" * 255,
    "long-253": b"n" * 249 + b".txt",
    "long-extension": b"a." + b"x" * 250,
    "combining": "e\u0301\u202etxt.pdf".encode(),
    "long-utf8": "語".encode() * 85,
}


def access_list(path, user):
    """One more user who may read."""
    undefined = 0xFFFFFFFF
    entries = [(1, 6, undefined), (2, 4, user), (4, 4, undefined), (16, 4, undefined), (32, 4, undefined)]
    value = struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries)
    os.setxattr(path, "system.posix_acl_access", value)


def make_socket(path):
    """Also where the path is longer than a socket's may be."""
    folder = os.open(os.path.dirname(path), os.O_PATH)
    with socket.socket(socket.AF_UNIX) as listener:
        listener.bind(f"/proc/self/fd/{folder}/{os.path.basename(path)}")
    os.close(folder)


def many_kinds(world, folder):
    """A folder with a file of every kind that its user can make."""
    top = f"{folder}/project"
    first = world.file(f"{top}/first.txt")
    os.link(first, world.path(f"{top}/second.txt"))
    os.symlink(world.path("home/Canary/keep.txt"), world.path(f"{top}/link"))
    os.symlink("nowhere", world.path(f"{top}/dangling"))
    with open(world.file(f"{top}/sparse", b""), "r+b") as file:
        file.seek(1 << 18)
        file.write(b"end")
    os.setxattr(world.file(f"{top}/attributes"), "user.note", b"keep \0 this")
    access_list(world.file(f"{top}/shared"), 12345)
    world.file(os.fsencode(f"{top}/") + HOSTILE_NAMES["not-utf8"])
    world.file(f"{top}/sub/private", mode=0o400)
    world.file(f"{top}/run", mode=0o4755)
    os.mkfifo(world.path(f"{top}/fifo"))
    world.folder(f"{top}/empty", mode=0o2700)
    world.folder(f"{top}/sub", mode=0o500)
    make_socket(world.path(f"{top}/socket"))
    if USER == 0:
        os.mknod(world.path(f"{top}/device"), stat.S_IFCHR | 0o640, os.makedev(1, 3))
        os.chown(world.file(f"{top}/of another user", mode=0o4711), 12345, 12346)
        os.chmod(world.path(f"{top}/of another user"), 0o4711)
        net_raw = struct.pack("<5I", 0x02000001, 1 << 13, 0, 0, 0)
        os.setxattr(world.file(f"{top}/able"), "security.capability", net_raw)


@dataclasses.dataclass(frozen=True)
class Scenario:
    name: str
    # Makes the files; runs as the user.
    build: typing.Callable
    # The arguments of orvanectl; "{home}" and "{volume}" stand for the two volumes.
    words: str
    # Folders that only hold what moves, so their own times change.
    folders: tuple
    # Folders that the command may make: these and whatever folders are inside them.
    creates: tuple = ()
    # The calls of orvanectl that set the scene.
    before: tuple = ()
    moves: int = 0  # how many entries the journal has to get at least

    def command(self, world):
        return command_of(world, self.words)


def command_of(world, words):
    return [word.format(home=world.path("home"), volume=world.path("volume")) for word in shlex.split(words)]


def build_trash(*places):
    def build(world):
        for place in places:
            folder = f"{place}/Downloads"
            world.file(f"{folder}/plain.txt")
            world.file(os.fsencode(folder) + b"/" + HOSTILE_NAMES["newline"])
            many_kinds(world, folder)
            world.file(f"{folder}/stays.txt")
            os.symlink("stays.txt", world.path(f"{folder}/link"))
            world.folder(f"{place}/Elsewhere")
            os.link(world.file(f"{folder}/linked"), world.path(f"{place}/Elsewhere/other name"))

    return build


TRASHED = ("plain.txt", "two\nlines.txt", "project", "link", "linked")


def trash_words(*places):
    items = " ".join(shlex.quote(f"{{{place}}}/Downloads/{name}") for place in places for name in TRASHED)
    return f"trash --yes --root {{home}}/Downloads --root {{volume}} {items}"


def build_logs(*places):
    def build(world):
        for place in places:
            for name in ("one.log", "two words.log", "three.log"):
                world.file(f"{place}/Downloads/{name}", age=40.5)
            world.file(f"{place}/Downloads/letter.txt")
        world.folder("volume/Box")

    return build


def build_stuff(world):
    for name in ("paper.pdf", "photo.png", "song.mp3"):
        world.file(f"home/Stuff/{name}")
    many_kinds(world, "home/Stuff")
    world.folder("volume/Box")


def build_tidy(*places):
    def build(world):
        for place in places:
            world.file(f"{place}/Downloads/new.pdf", age=0.02)
            world.file(f"{place}/Downloads/new.png", age=0.02)

    return build


def build_duplicates(*places):
    def build(world):
        for place in places:
            for name in ("a", "b"):
                world.file(f"{place}/Downloads/{name} photo.jpg", b"p" * 50000 + name.encode())
        for name in ("a", "b"):
            world.file(f"home/Downloads/copy of {name}.jpg", b"p" * 50000 + name.encode())

    return build


def build_app(world):
    world.file("home/Applications/Subject.app/Contents/Info.plist", (
        b'<plist version="1.0"><dict><key>CFBundleName</key><string>Subject</string>'
        b"<key>CFBundleIdentifier</key><string>org.example.subject</string></dict></plist>"))
    world.file("home/Applications/Subject.app/Contents/MacOS/run", mode=0o755)
    world.file("home/Library/Caches/org.example.subject/cache")
    world.file("home/Library/Preferences/org.example.subject.plist")


def build_old_logs(world):
    world.folder("home/Library/Caches")
    for name in ("one.log", "two.log"):
        world.file(f"home/Library/Logs/{name}", age=40.5)


def build_rule(action):
    def build(world):
        build_logs("home")(world)
        rule = {"name": "Mine", "trigger": {"folderPath": "~/Downloads", "fileExtensions": ["log"]},
                "action": json.loads(json.dumps(action).replace("VOLUME", world.path("volume")))}
        world.file("home/Documents/rule.json", json.dumps(rule).encode())

    return build


def build_plan(world):
    build_logs("home")(world)
    step = {"id": "8B0C9C1E-5E0B-4C8E-9B1E-4C2D1E3F4A5B", "targetFolder": "~/Downloads", "action": "move",
            "filter": {"minimumSizeBytes": 0}, "explanation": "because",
            "destinationFolder": world.path("volume/Box")}
    plan = {"id": "8B0C9C1E-5E0B-4C8E-9B1E-4C2D1E3F4A5C", "userGoal": "tidy", "steps": [step], "summary": "All.",
            "isDryRun": True, "createdAt": 0}
    world.file("home/Documents/plan.json", json.dumps(plan).encode())


ALL_FOLDERS = ("folders add {home}/Downloads {home}/Documents {volume}/Box",)
ADD_RULE = ("folders add {home}/Downloads {home}/Documents {volume}/Box", "rules add {home}/Documents/rule.json")
SCENARIOS = [
    Scenario("trash/one", build_trash("home"), trash_words("home"), ("home/Downloads",), moves=5),
    Scenario("trash/two", build_trash("home", "volume"), trash_words("home", "volume"),
             ("home/Downloads", "volume/Downloads"), moves=10),
    Scenario("clean/one", build_logs("home"), "clean --yes {home}/Downloads", ("home/Downloads",), moves=3),
    Scenario("clean/two", build_logs("home", "volume"), "clean --yes {home}/Downloads {volume}/Downloads",
             ("home/Downloads", "volume/Downloads"), moves=6),
    Scenario("organize/one", build_stuff, "organize {home}/Stuff --apply --yes", ("home/Stuff",),
             creates=("home/Stuff/Organized",), moves=4),
    Scenario("organize/two", build_stuff, "organize {home}/Stuff --destination {volume}/Box --apply --yes",
             ("home/Stuff", "volume/Box"), creates=("volume/Box",), moves=8),
    Scenario("tidy/one", build_tidy("home"), "tidy run --yes", ("home/Downloads",),
             creates=("home/Downloads/Recents", "home/Downloads/Sorted"), moves=2),
    Scenario("tidy/two", build_tidy("home", "volume"), "tidy run --yes", ("home/Downloads", "volume/Downloads"),
             creates=("home/Downloads/Recents", "home/Downloads/Sorted", "volume/Downloads/Recents",
                      "volume/Downloads/Sorted"),
             before=("tidy set --folder {home}/Downloads --folder {volume}/Downloads",), moves=4),
    Scenario("rules/one", build_rule({"type": "moveToTrash"}), "rules run Mine --yes", ("home/Downloads",),
             before=ADD_RULE, moves=3),
    Scenario("rules/two", build_rule({"type": "moveToFolder", "path": "VOLUME/Box"}), "rules run Mine --yes",
             ("home/Downloads", "volume/Box"), before=ADD_RULE, moves=6),
    Scenario("duplicates/one", build_duplicates("home"), "duplicates --clean --yes {home}/Downloads",
             ("home/Downloads",), moves=2),
    Scenario("duplicates/two", build_duplicates("home", "volume"),
             "duplicates --clean --yes {home}/Downloads {volume}/Downloads", ("home/Downloads", "volume/Downloads"),
             moves=4),
    Scenario("apps/one", build_app, "apps uninstall Subject --all-leftovers --yes",
             ("home/Applications", "home/Library/Caches", "home/Library/Preferences"), moves=3),
    Scenario("ask/one", build_old_logs, 'ask "delete old logs" --apply --yes', ("home/Library/Logs",),
             before=("folders add {home}/Library/Logs",), moves=2),
    Scenario("plan/two", build_plan, "plan run {home}/Documents/plan.json --yes", ("home/Downloads", "volume/Box"),
             before=ALL_FOLDERS, moves=8),
]


def prepared(world, scenario, restoring=False):
    """Makes the scenario's template. Returns the user's files as they were before Orvane did anything at all.

    The journal knows an earlier run by then; `restoring`: and the scenario's own, whose restore is to be tried.
    """
    world.make(lambda world: (scenario.build(world), world.file("home/Downloads/earlier.txt")))
    truth = {place: inventory(world.path(place)) for place in VOLUMES}
    commands = [command_of(world, words) for words in scenario.before]
    commands.append(command_of(world, "trash --yes --root {home}/Downloads {home}/Downloads/earlier.txt"))
    if restoring:
        commands.append(scenario.command(world))
    for words in commands:
        result = world.run(*words)
        if result.status != 0:
            raise RuntimeError(f"{scenario.name}: {shlex.join([ORVANECTL, *words])} fails: {result.errors}")
    world.keep()
    return truth
