#!/usr/bin/python3
"""Drives the sections in which the user says what is to go: rules, and the assistant without a network.

    end_to_end_requests.py PROGRAM [SCENARIO]
"""

import os
import sys
import time

from window_driver import Scenario, expect, files_below, main, trash_of, wait_for_all_back

DAY = 86400  # seconds


def prepare_rules(home):
    logs = home / "Downloads/Logs"
    logs.mkdir(parents=True)
    for name in ("old.log", "old.dat"):
        (logs / name).write_bytes(b"line\n" * 400)
        os.utime(logs / name, (time.time() - 60 * DAY,) * 2)


def write_and_run_rule(window, home):
    downloads = home / "Downloads"
    before = files_below(downloads)

    window.press("nav.rules")
    window.press("rules.add")
    window.type("rules.name", "Drop logs")
    window.type("rules.extensions", "log")
    window.press("What happens: To the Trash")
    window.press("rules.review_only")
    window.press("What happens: Review Only")
    window.press("rules.to_trash")
    window.sees("1 file right now, 2 KB")
    window.press("action.save")
    window.sees("13 rules, 9 switched on")
    expect(files_below(downloads) == before, "writing a rule moved something")

    # None of the rules that come with the program takes a log outside the folder of logs.
    window.press("Run 9 Rules")
    window.sees("1 file right now, 2 KB")
    expect(files_below(downloads) == before, "running moved something before it was said what")
    window.press("Run Now · 1 · 2 KB")
    window.sees("1 item moved, 2 KB in all.")
    expect(files_below(trash_of(home)) == {"old.log": before["Logs/old.log"]}, "not the log went to the Trash")
    expect(files_below(downloads) == {"Logs/old.dat": before["Logs/old.dat"]}, "more than the log left its place")

    window.press("dashboard.undo")
    wait_for_all_back(home, downloads, before)


def prepare_assistant(home):
    downloads = home / "Downloads"
    downloads.mkdir()
    for name, age in (("setup.dmg", 60), ("new.dmg", 0), ("letter.txt", 60)):
        (downloads / name).write_bytes(name.encode() * 500)
        os.utime(downloads / name, (time.time() - age * DAY,) * 2)


def ask_assistant(window, home):
    downloads = home / "Downloads"
    before = files_below(downloads)

    window.press("nav.agent")
    window.sees("agent.offline_badge")
    window.type("agent.prompt", "delete dmg files older than 30 days in downloads")
    window.press("action.dry_run")
    window.sees("Plan by ")
    window.sees("setup.dmg, ")
    expect(not window.find("new.dmg", exact=False), "the plan takes a new file")
    expect(files_below(downloads) == before, "a dry run moved something")
    if not window.is_checked("setup.dmg, "):
        window.press("setup.dmg, ", exact=False)
    window.press("Confirm & Apply · 1 · 4 KB")
    window.sees("1 item moved.")
    expect(files_below(trash_of(home)) == {"setup.dmg": before["setup.dmg"]}, "not the old file went to the Trash")
    after = {name: content for name, content in before.items() if name != "setup.dmg"}
    expect(files_below(downloads) == after, "more than the old file left its place")

    window.press("dashboard.undo")
    wait_for_all_back(home, downloads, before)


if __name__ == "__main__":
    sys.exit(
        main(
            {
                "rules": Scenario(prepare_rules, write_and_run_rule),
                "assistant": Scenario(prepare_assistant, ask_assistant),
            }
        )
    )
