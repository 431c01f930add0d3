#!/usr/bin/env python3
"""Runs clang-tidy over the project's own files (tests left out), in the groups in which they are compiled, as many
groups at a time as there are processors.

Compile commands are those of the build folder given. A group that passed once is looked at again only when it, anything
that it includes, its compile command, the checks or the tool change: what passed is kept in the user's cache folder.
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

CHECKED = ("core/", "platform/", "cli/", "app/")


def sources_of(entry):
    """The source files that one compile command reads: those of a group where sources are compiled together."""
    if "/Unity/" not in entry["file"]:
        return [entry["file"]]
    return re.findall(r'^#include "(.*)"$', pathlib.Path(entry["file"]).read_text(), re.MULTILINE)


def preprocessed(entry):
    words = shlex.split(entry["command"])
    if os.path.basename(words[0]) == "ccache":
        words = words[1:]
    at = words.index("-o")
    words = [word for word in words[:at] + words[at + 2:] if word != "-c"]
    result = subprocess.run([*words, "-E"], cwd=entry["directory"], capture_output=True, check=True)
    return " ".join(words).encode() + result.stdout


def check(entry, folder, common, cache):
    """The report of a file that does not pass; nothing otherwise."""
    try:
        key = hashlib.sha256(common + preprocessed(entry)).hexdigest()
    except subprocess.CalledProcessError as error:
        return f"{entry['file']} cannot be preprocessed:\n{error.stderr.decode(errors='replace')}"
    stamp = cache / key
    if stamp.exists():
        return None
    result = subprocess.run(
        # Overloads that Qt's models hide are none of ours. The compiler itself tells which names shadow others; clang takes
        # the constants of a group's other sources for such too.
        ["clang-tidy", "-p", folder, "--quiet", "--extra-arg=-Wno-overloaded-virtual", "--extra-arg=-Wno-shadow",
         entry["file"]],
        capture_output=True,
        text=True,
        errors="replace",
    )
    if result.returncode != 0:
        return result.stdout + result.stderr
    stamp.touch()
    return None


def main():
    folder = sys.argv[1]
    top = pathlib.Path(__file__).resolve().parent.parent
    cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "orvane-tidy"
    cache.mkdir(parents=True, exist_ok=True)
    common = (top / ".clang-tidy").read_bytes() + subprocess.run(
        ["clang-tidy", "--version"], capture_output=True, check=True
    ).stdout
    entries = [
        entry
        for entry in json.loads((pathlib.Path(folder) / "compile_commands.json").read_text())
        if any(os.path.relpath(source, top).startswith(CHECKED) for source in sources_of(entry))
    ]
    if not entries:
        sys.exit("tidy: no file to check")
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for report in pool.map(lambda entry: check(entry, folder, common, cache), entries):
            if report is not None:
                failed += 1
                print(report)
    files = sum(len(sources_of(entry)) for entry in entries)
    print(f"tidy: {files} files in {len(entries)} groups, {failed} groups with findings")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
