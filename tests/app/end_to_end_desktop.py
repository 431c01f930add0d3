#!/usr/bin/python3
"""Drives what people expect of any program of a desktop: menus, ranges, what is remembered, undo from anywhere.

    end_to_end_desktop.py PROGRAM [SCENARIO]
"""

import json
import subprocess
import sys

from end_to_end_consent import CONTROL, SHIFT, bring_to_front, hold, prepare_logs
from window_driver import PATIENCE, Scenario, Window, expect, main, wait_for

# Keys by their symbols in X.
MENU, DOWN, END, ESCAPE, F1 = 0xFF67, 0xFF54, 0xFF57, 0xFF1B, 0xFFBE


def scanned(window):
    window.press("Scan Now")
    window.press("Cleanup")
    window.sees("3 selected")


def menus_and_ranges(window, home):
    scanned(window)
    window.press("Deselect All")
    window.sees("0 selected")
    window.focus("Cleanup", "list")
    window.key(DOWN)
    window.key(MENU)
    window.sees("Copy Path")
    expect(window.find("Open") and window.find("Why This Label"), "the menu lacks an entry")
    window.key(ESCAPE)
    wait_for("the menu to go", lambda: not window.find("Copy Path"))
    hold(window, SHIFT, DOWN)
    window.sees("2 selected")
    window.press("Select All")
    window.sees("3 selected")


def remembered(window, home):
    settings = home / ".config/orvane/preferences.json"
    scanned(window)
    window.press("Sort by: Size")
    window.press("Name")
    bring_to_front("cleanup")
    hold(window, CONTROL, ord("q"))
    window.process.wait(PATIENCE)
    stored = json.loads(settings.read_text())["window"]
    expect(stored["section"] == 1 and stored["cleanupSort"] == 2, f"it remembers {stored}")

    process = subprocess.Popen([sys.argv[1]])
    try:
        again = Window(window.atspi, process)
        again.sees("No Scanned Items Yet")
        again.press("Overview")
        again.sees("found 12 KB that can go. Scan again to see it.")
        again.press("Cleanup")
        again.press("Scan Now")
        again.sees("Sort by: Name")
    finally:
        process.terminate()
        process.wait(PATIENCE)


def sorted_by_heads(window, home):
    logs = ["mail.log", "other.log", "web.log"]
    scanned(window)
    for wanted in (logs, logs[::-1]):
        window.press("Sort by Name")
        wait_for(
            f"the rows as {wanted}",
            lambda: [name.split(",")[0] for name in window.names() if name.split(",")[0] in logs] == wanted,
        )


def undone_from_anywhere(window, home):
    log = home / "Downloads/Logs/web.log"
    scanned(window)
    window.press("Clean Selected · 3")
    wait_for("the logs to go", lambda: not log.exists())
    window.press("OK")
    bring_to_front("privacy")
    window.sees("What Orvane sees, and what it never sends.")
    hold(window, CONTROL, ord("z"))
    wait_for("the logs to come back", log.exists)
    window.sees("3 items are back where they were.")


def foot_of_settings(window):
    window.focus("Add Folder")
    window.key(END)


def told_about_itself(window, home):
    bring_to_front("overview")
    window.key(F1)
    window.sees("Keyboard Shortcuts")
    window.press("Close")
    window.press("Settings")
    foot_of_settings(window)
    window.press("Theme: As the System")
    window.press("Dark")
    foot_of_settings(window)
    window.sees("Theme: Dark")
    window.press("Show Licenses")
    window.sees("Libraries and their licenses")
    window.sees("Version ")


if __name__ == "__main__":
    sys.exit(
        main(
            {
                "menus": Scenario(prepare_logs, menus_and_ranges),
                "memory": Scenario(prepare_logs, remembered),
                "heads": Scenario(prepare_logs, sorted_by_heads),
                "undo": Scenario(prepare_logs, undone_from_anywhere),
                "about": Scenario(prepare_logs, told_about_itself),
            }
        )
    )
