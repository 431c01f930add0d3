#!/usr/bin/env python3
"""Checks what a compiler does not: the floors of the source tree, and what may be done on which of them.

Run without arguments from anywhere in the tree; prints one line for each finding and ends with status 1 if there are
any. The rules, each with its reason, are the functions named check_*.
"""

import fnmatch
import pathlib
import re
import subprocess
import sys

# Who may include whom: a file includes files of its own floor or of lower ones. The first pattern that fits decides.
# Services keep settings and ask the system, and move nothing; coordinators join tasks into what happens by itself.
FLOORS = [
    ("core/base/*", 0, "base"),
    ("core/platform/*", 1, "interfaces"),
    ("core/*/records/*", 2, "records"),
    ("core/organizer/categories/*", 3, "categories"),
    ("core/*/services/*", 4, "services"),
    ("core/organizer/tidy/*", 6, "coordinators"),
    ("core/rules/schedule/*", 6, "coordinators"),
    ("core/localization/*", 4, "localization"),
    ("core/tasks/*", 5, "tasks"),
    ("core/*", 4, "engines"),
    ("platform/*", 7, "platform"),
    ("cli/*", 8, "cli"),
    ("app/*", 8, "app"),
    ("tests/*", 9, "tests"),
    ("bench/*", 9, "bench"),
]
# Of the core, the front ends name only these floors: they show proposals and reports, and decide nothing.
FRONT_ENDS = ("cli/", "app/")
SHOWN_TO_FRONT_ENDS = {"base", "interfaces", "records", "services", "localization", "tasks", "coordinators"}

SOURCE_SUFFIXES = {".h", ".cpp"}

# Libraries that one part of the tree keeps to itself: header pattern, where it may stand.
PRIVATE_LIBRARIES = [
    (re.compile(r"Q[A-Z]\w*(/\w+)?|q[a-z]+\.h|Qt\w+/.*"), ("app/", "tests/app/", "bench/Window"), "Qt"),
    (re.compile(r"sdbus-c\+\+/.*|dbus/.*|systemd/.*"), ("platform/", "tests/platform/"), "D-Bus"),
    (re.compile(r"curl/.*"), ("platform/", "tests/platform/"), "curl"),
    (re.compile(r"libsecret/.*|glib\.h|gio/.*"), ("platform/", "tests/platform/"), "libsecret"),
    (re.compile(r"CLI/.*"), ("cli/", "tests/cli/"), "CLI11"),
]

# Calls that remove, rename or cut short a file. User files change on one path only.
CHANGING_CALL = re.compile(
    r"(?<![\w.>:])(?:::|std::)?(unlink|unlinkat|rmdir|rename|renameat|renameat2|truncate)\s*\("
    r"|(?<![\w.>])(?:std::)?(?:filesystem|fs)::(remove|remove_all|rename|resize_file|copy|copy_file)\s*\("
    r"|(?<![\w.>:])(?:::|std::)remove\s*\(\s*[^,()]*(?:\([^()]*\))?[^,()]*\)"
    r"|\bQ(?:File|Dir)::(remove|rename|rmdir|rmpath|copy)\s*\("
    r"|(?:\.|->)(removeRecursively|moveToTrash)\s*\(\s*\)"
    r"|(?<![\w.>:])(?:::|std::)?(system|popen)\s*\("
)
CHANGING_PLACES = ("core/safety/", "core/base/files/AtomicFile.cpp", "core/base/files/SetAside.cpp", "platform/", "tests/",
                   "bench/")

NAMESPACE = re.compile(r"namespace ([\w:]+) \{")
# A definition outside of every other one.
TYPE = re.compile(r"(?:class|struct|union|enum(?: class)?) +(\w+) (?:final )?(?:[:] .*)?\{")

SYSTEM_MACRO = re.compile(r"^\s*#\s*(?:el)?if.*\b(__linux__|__linux|__APPLE__|_WIN32|__unix__|__FreeBSD__|BSD)\b")
SHARED_DEFINITION = re.compile(r"\bshared\s*\(\s*\)\s*(?:noexcept\s*)?\{")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
# Somebody's home folder or temporary file is nowhere else. Some names stand for anybody's home.
MACHINE_PATH = re.compile(
    r"(?<![\w.~-])/(?:(?:home|Users)/(?!(?:you|user|me|alex)/)[\w.-]+|root|(?:private/)?(?:var/)?tmp)/[\w.]"
)
# A comment names its subject first; one that begins so names it last or never.
SUBJECT_LAST = re.compile(r"(?://|(?<!\S)#) (What|Whoever|Whatever) ")
CONFLICT = re.compile(r"^(?:<{7} |={7}$|>{7} )")


def floor_of(path):
    for pattern, floor, name in FLOORS:
        if fnmatch.fnmatchcase(path, pattern):
            return floor, name
    return None


def without_comments_and_strings(text):
    """Same length in lines; what stands in comments and literals is gone."""
    token = re.compile(
        r'//[^\n]*|/\*.*?\*/|R"(?P<tag>[^(\s]*)\(.*?\)(?P=tag)"|"(?:\\.|[^"\\\n])*"|(?<![\w])\'(?:\\.|[^\'\\\n])*\'',
        re.DOTALL,
    )
    return token.sub(lambda match: "\n" * match.group(0).count("\n") + '""', text)


class Tree:
    """The files of a source tree by their path below `top`."""

    def __init__(self, top, paths):
        self.texts = {}
        for path in sorted(paths):
            try:
                self.texts[path] = (pathlib.Path(top) / path).read_text(encoding="utf-8")
            except (UnicodeDecodeError, FileNotFoundError):
                continue
        self.sources = {
            path: text
            for path, text in self.texts.items()
            if pathlib.PurePosixPath(path).suffix in SOURCE_SUFFIXES and floor_of(path)
        }
        self.code = {path: without_comments_and_strings(text) for path, text in self.sources.items()}

    def includes(self, path):
        for number, line in enumerate(self.sources[path].splitlines(), 1):
            match = INCLUDE.match(line)
            if match:
                yield number, match.group(1), match.group(2)

    def matches(self, pattern, allowed):
        for path, code in self.code.items():
            if path.startswith(allowed):
                continue
            for number, line in enumerate(code.splitlines(), 1):
                match = pattern.search(line)
                if match:
                    yield path, number, match


def check_floors(tree):
    """A file includes only what stands on its own floor or below: what is below never has to change for it."""
    for path in tree.sources:
        own = floor_of(path)
        for number, kind, included in tree.includes(path):
            target = floor_of(included) if kind == '"' else None
            if target is None:
                continue
            # Floors of one height in the core know each other; programs and what stands above them do not.
            sideways = target[0] == own[0] >= 7 and target[1] != own[1]
            if target[0] > own[0] or sideways:
                yield f"{path}:{number}: {own[1]} includes {included}, which is {target[1]}"


def check_front_ends(tree):
    """The front ends hold no rules: what moves is decided below, once for both, and they cannot name what moves it."""
    for path in tree.sources:
        if not path.startswith(FRONT_ENDS):
            continue
        for number, kind, included in tree.includes(path):
            if kind != '"' or not included.startswith(("core/", "platform/")):
                continue
            name = floor_of(included)[1]
            if name not in SHOWN_TO_FRONT_ENDS and included != "platform/SystemServices.h":
                yield f"{path}:{number}: a front end includes {included}, which is {name}; use or add a task"


def check_include_paths(tree):
    """Quoted includes name a file of this tree from its top, so that the other checks see all of them."""
    for path in tree.sources:
        for number, kind, included in tree.includes(path):
            if kind == '"' and included not in tree.texts:
                yield f'{path}:{number}: "{included}" is no file of this tree, named from its top'


def check_loops(tree):
    """No two files include each other, by whatever detour."""
    graph = {
        path: sorted(name for _, kind, name in tree.includes(path) if kind == '"' and name in tree.sources)
        for path in tree.sources
    }
    finished, stack = set(), []

    def visit(path):
        if path in finished:
            return
        if path in stack:
            yield "include loop: " + " -> ".join(stack[stack.index(path):] + [path])
            return
        stack.append(path)
        for target in graph[path]:
            yield from visit(target)
        stack.pop()
        finished.add(path)

    for path in graph:
        yield from visit(path)


def check_private_libraries(tree):
    """The core runs without Qt, D-Bus, curl and libsecret; each library is known to the one folder that wraps it."""
    for path in tree.sources:
        for number, kind, included in tree.includes(path):
            for pattern, places, name in PRIVATE_LIBRARIES:
                if kind == "<" and pattern.fullmatch(included) and not path.startswith(places):
                    yield f"{path}:{number}: {name} (<{included}>) may be used only in {places[0]}"


def check_system_macros(tree):
    """What differs between systems stands behind an interface, in platform/."""
    for path, number, match in tree.matches(SYSTEM_MACRO, ("platform/",)):
        yield f"{path}:{number}: a condition on {match.group(1)} may stand only in platform/"


def check_shared(tree):
    """The wiring of the shared instances is in one place."""
    for path, number, _ in tree.matches(SHARED_DEFINITION, ("platform/SharedServices.cpp",)):
        yield f"{path}:{number}: shared() may be defined only in platform/SharedServices.cpp"


def check_changing_calls(tree):
    """User files change on one path only."""
    for path, number, match in tree.matches(CHANGING_CALL, CHANGING_PLACES):
        yield (
            f"{path}:{number}: {match.group(0)!r} removes, renames or cuts short a file; only core/safety, platform and "
            "core/base/files/AtomicFile.cpp may"
        )


def check_build_lists(tree):
    """A source file that no CMakeLists.txt finds or names is never built, and a test in it never runs."""
    lists = {
        pathlib.PurePosixPath(path).parent: re.findall(r"[^\s()\"]+\.cpp\b", text)
        for path, text in tree.texts.items()
        if pathlib.PurePosixPath(path).name == "CMakeLists.txt"
    }
    for path in map(pathlib.PurePosixPath, tree.sources):
        if path.suffix != ".cpp":
            continue
        parent = next((parent for parent in path.parents if parent in lists), None)
        if parent is None:
            yield f"{path}: no CMakeLists.txt above it"
        elif not any(fnmatch.fnmatchcase(str(path.relative_to(parent)), name) for name in lists[parent]):
            yield f"{path}: not built by {parent}/CMakeLists.txt"


def check_type_names(tree):
    """Two types of one name are one to the linker: the members of either would do for both."""
    known = {}
    for path in tree.sources:
        if not path.endswith(".h"):
            continue
        space = ""
        for number, line in enumerate(tree.texts[path].splitlines(), 1):
            space = match.group(1) if (match := NAMESPACE.match(line)) else space
            if match := TYPE.match(line):
                name = f"{space}::{match.group(1)}"
                if known.setdefault(name, path) != path:
                    yield f"{path}:{number}: {name} is a type of {known[name]} too"


def check_texts(tree):
    """No paths of somebody's machine, no left-overs of a merge, headers guarded, no tabs in code."""
    for path, text in tree.texts.items():
        for number, line in enumerate(text.splitlines(), 1):
            match = MACHINE_PATH.search(line)
            if match and not path.startswith("tests/"):
                yield f"{path}:{number}: {match.group(0)!r} is a path of one machine"
            if CONFLICT.match(line):
                yield f"{path}:{number}: left over from a merge"
            if path in tree.sources and "\t" in line:
                yield f"{path}:{number}: tab"
        if path.endswith(".h") and path in tree.sources and not text.startswith("#pragma once\n"):
            yield f"{path}:1: a header starts with #pragma once"


def check_comments(tree):
    """The subject of a comment comes first."""
    for path, text in tree.texts.items():
        if path.endswith(".md"):
            continue
        for number, line in enumerate(text.splitlines(), 1):
            match = SUBJECT_LAST.search(line)
            if match:
                yield f"{path}:{number}: a comment begins with {match.group(1)!r}; name its subject first"


CHECKS = [
    check_floors,
    check_front_ends,
    check_include_paths,
    check_loops,
    check_private_libraries,
    check_system_macros,
    check_shared,
    check_changing_calls,
    check_build_lists,
    check_type_names,
    check_texts,
    check_comments,
]


def findings(tree):
    for check in CHECKS:
        yield from check(tree)


def main():
    top = subprocess.run(
        ["git", "-C", pathlib.Path(__file__).parent, "rev-parse", "--show-toplevel"],
        check=True, capture_output=True, text=True,
    ).stdout.strip()
    names = subprocess.run(
        ["git", "-C", top, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        check=True, capture_output=True, text=True,
    ).stdout.split("\0")
    tree = Tree(top, {name for name in names if name})
    if not tree.sources:
        sys.exit("lint_sources: found no source file")
    found = list(findings(tree))
    for line in found:
        print(line)
    print(f"lint_sources: {len(tree.sources)} source files, {len(found)} findings")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
