#!/usr/bin/env python3
"""Tries what the documents say: .ci/check_docs.py FOLDER [--write]

FOLDER holds the built programs. The blocks of README.md marked "console" are run in their order in a sample home, and
what they print has to be what stands there, but for identifiers, times and the figures of the disk; with --write it is
put there instead. In all documents every link and every path of the repository has to lead somewhere, and every command
of orvanectl and every option of it has to exist.
"""

import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parent.parent
BLOCK = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"^```[^\n]*\n(?P<block>.*?)^```$|`(?P<inline>[^`\n]+)`", re.MULTILINE | re.DOTALL)
LINK = re.compile(r"\]\((?P<target>[^)#\s]+)[^)]*\)")
# Texts that differ from run to run or from machine to machine, each with its stand-in for the comparison.
VARYING = [
    (re.compile(r"\b[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\b|\b[0-9A-F]{8}\b"), "ID"),
    (re.compile(r"\b[A-Z][a-z]{2} \d{1,2}, \d{4}, \d{1,2}:\d{2}[\s\u202f][AP]M\b"), "DATE"),
    (re.compile(r"^(Disk: ).*$|^(  (?:kernel|system|file system of ~|free there|desktop) ).*$", re.MULTILINE), "FIGURES"),
    (re.compile(r"-{3,}"), "---"),  # rules are as long as the longest line
    (re.compile(r"[ \t\u202f]+"), " "),
]


def comparable(text):
    for pattern, stand_in in VARYING:
        text = pattern.sub(stand_in, text)
    # File systems list a folder in an order of their own, and equal figures keep it.
    return sorted(line.strip() for line in text.strip().splitlines())


def documents():
    listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", "*.md"],
                            cwd=TOP, check=True, capture_output=True, text=True)
    return sorted(TOP / name for name in listed.stdout.split("\0") if name)


def commands_in(block):
    """Each command, with the lines of the input that belong to it, and what stands there as its output."""
    found = []
    for line in block.splitlines():
        if line.startswith("$ "):
            found.append((line[2:], []))
        elif found and found[-1][0].endswith("|"):
            found[-1] = (found[-1][0] + "\n" + line, [])
        elif found:
            found[-1][1].append(line)
    return [(command, "\n".join(lines)) for command, lines in found]


class Tour:
    """A shell in a sample home, where the programs are found by their names."""

    def __init__(self, programs, top):
        self.home = top / "home"
        self.home.mkdir()
        (top / "bin").mkdir()
        made = subprocess.run([programs / "orvanectl", "demo", top / "demo"], capture_output=True, text=True,
                              env={"HOME": str(self.home), "PATH": "/usr/bin:/bin"}, check=False)
        if made.returncode != 0:
            raise SystemExit(f"no sample home: {made.stderr}")
        self.environment = {"PATH": f"{top}/demo:/usr/bin:/bin", "TZ": "UTC", "LC_ALL": "C.UTF-8", "HOME": str(self.home),
                            "ORVANE_MOUNTS": "/dev/null", "LANG": "en_US.UTF-8"}
        self.folder = top / "demo/home"

    def run(self, command):
        done = subprocess.run(["/bin/bash", "-c", command], cwd=self.folder, env=self.environment, text=True, check=False,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
        return "\n".join(line.rstrip() for line in done.stdout.splitlines()).replace(str(self.folder), "/home/you")


def check_tour(programs, write):
    readme = TOP / "README.md"
    problems = []
    with tempfile.TemporaryDirectory(prefix="orvane-tour-") as top:
        tour = Tour(programs, pathlib.Path(top))

        def block(match):
            text = ""
            for command, expected in commands_in(match.group(1)):
                actual = tour.run(command)
                if comparable(actual) != comparable(expected):
                    problems.append(f"README.md: `{command}` prints\n{actual}\ninstead of\n{expected}")
                blank = "\n" if text and not text.endswith("\n\n") else ""
                text += f"{blank}$ {command}\n{actual}\n" if actual else f"{blank}$ {command}\n"
            return f"```console\n{text}```"

        written = BLOCK.sub(block, readme.read_text(encoding="utf-8"))
    if write:
        readme.write_text(written, encoding="utf-8")
        return []
    return problems


def check_links(path, text):
    for match in LINK.finditer(text):
        target = match.group("target")
        if "://" not in target and not (path.parent / target).exists():
            yield f"{path.relative_to(TOP)}: the link to {target} leads nowhere"


def check_paths(path, text, tops):
    for match in CODE.finditer(text):
        for word in re.findall(r"(?<![\w~/.$-])\.?/?[\w.-]+/[\w./-]+(?![\w*{<#])", match.group("block") or match.group("inline")):
            place = word.removeprefix("./").rstrip("/.")
            # Words in capitals stand for names of the reader's.
            if re.search(r"NAME|ICON|PRESET|FILE", word):
                continue
            if place.split("/")[0] in tops and not (TOP / place).exists() and not list(TOP.glob(place + ".*")):
                yield f"{path.relative_to(TOP)}: there is no {word}"


def check_commands(path, text, helps, help_of):
    pattern = re.compile(r"orvanectl ([a-z][a-z-]*)(?: ([a-z][a-z-]*))?([^`|\n#]*)")
    for match in CODE.finditer(text):
        for call in pattern.finditer(match.group("block") or match.group("inline") or ""):
            first, second, rest = call.groups()
            found = help_of(f"{first} {second}") if second else None
            found = found or help_of(first)
            if not found:
                yield f"{path.relative_to(TOP)}: there is no command '{call.group(0).strip()}'"
                continue
            for option in re.findall(r"(?<=\s)--[a-z][a-z-]*", rest):
                if option not in found and option not in helps:
                    yield f"{path.relative_to(TOP)}: '{first}' has no option {option}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("programs", type=pathlib.Path)
    parser.add_argument("--write", action="store_true")
    options = parser.parse_args()
    programs = options.programs.resolve()
    if shutil.which("git") is None:
        return "git is missing"
    problems = check_tour(programs, options.write)

    known = {}

    def help_of(command):
        if command not in known:
            done = subprocess.run([programs / "orvanectl", *command.split(), "--help"], capture_output=True, text=True,
                                  check=False, env={**os.environ, "HOME": "/"})
            known[command] = done.stdout if done.returncode == 0 else ""
        return known[command]

    tops = {entry.name for entry in TOP.iterdir() if entry.name not in ("build", ".git")}
    for path in documents():
        text = path.read_text(encoding="utf-8")
        problems += [*check_links(path, text), *check_paths(path, text, tops),
                     *check_commands(path, text, "--help --version --json --no-progress", help_of)]
    print("\n".join(problems), end="\n" if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
