#!/usr/bin/python3
"""Changes things behind the window's back, in the terminal, and looks whether it shows them without a new start.

The terminal program is the one beside the window's.
"""

import pathlib
import subprocess
import sys

from window_driver import PATIENCE, Scenario, expect, main, put, wait_for


def terminal(*arguments):
    program = pathlib.Path(sys.argv[1]).with_name("orvanectl")
    done = subprocess.run([program, *arguments], capture_output=True, text=True, timeout=PATIENCE, check=False)
    expect(done.returncode == 0, f"orvanectl {' '.join(arguments)}: {done.stdout}{done.stderr}")


def prepare(home):
    (home / "Projects").mkdir()
    put(home, "Downloads/setup.dmg", b"i" * 9000)


def rules(window):
    window.press("nav.rules")
    window.sees("12 rules, 8 switched on")
    terminal("rules", "disable", "Stale Installers in Downloads")
    window.sees("12 rules, 7 switched on")
    terminal("rules", "enable", "Stale Installers in Downloads")
    window.sees("12 rules, 8 switched on")


def schedule_and_folders(window, home):
    def is_on():
        switch = window.find("settings.schedule_enabled", role="check box")
        return switch and window.has(switch, "CHECKED")

    window.press("nav.settings")
    window.sees("settings.schedule_enabled")
    expect(not is_on(), "there is a schedule nobody asked for")
    terminal("schedule", "enable")
    wait_for("the schedule's switch", is_on)
    expect(not window.find("Projects, ~/Projects"), "a folder is granted that nobody granted")
    terminal("folders", "add", str(home / "Projects"))
    window.sees("Projects, ~/Projects")
    window.press("nav.privacy")
    window.sees("Projects, ~/Projects")
    terminal("folders", "remove", str(home / "Projects"))
    wait_for("one folder less", lambda: not window.find("Projects, ~/Projects"))


def history(window, home):
    window.press("nav.history")
    window.sees("history.empty_title")
    terminal("trash", "--yes", str(home / "Downloads/setup.dmg"))
    window.sees("1 item")
    window.sees("Restore All: ")
    wait_for("a head for the day", lambda: window.find("Today", role="heading"))
    for figure in ("Moved in all: 9 KB", "Brought back: Zero KB", "Still in the Trash: 9 KB", "By week: Week from "):
        window.sees(figure)
    terminal("restore", "--last", "--yes")
    window.sees("state.restored")
    window.sees("Brought back: 9 KB")
    window.sees("Still in the Trash: Zero KB")

    # One item of two: the other's box is taken out.
    other = put(home, "Downloads/other.dmg", b"o" * 5000)
    terminal("trash", "--yes", str(home / "Downloads/setup.dmg"), str(other))
    window.press("2 items, ", exact=False)
    window.sees("Bring Back 2")
    window.press("setup.dmg, Downloads", exact=False)
    window.press("Bring Back 1")
    wait_for("the one item", other.exists)
    expect(not (home / "Downloads/setup.dmg").exists(), "more came back than was asked for")


def swap(window, home):
    """An item that comes back finds another in its place."""
    wheel = put(home, "Downloads/pip/wheel", "old")
    terminal("trash", "--yes", str(wheel.parent))
    put(home, "Downloads/pip/wheel", "newer")
    window.press("Restore All: Cleanup · 1 item")
    window.sees("history.taken_title")
    window.sees("~/Downloads/pip (5 bytes)")
    expect(wheel.read_bytes() == b"newer", "something moved before the answer")
    window.press("history.swap")
    wait_for("the old folder in its place", lambda: wheel.exists() and wheel.read_bytes() == b"old")
    window.sees("1 item from its place is in the Trash, as a run of its own.")

    # The same question where the history is not shown.
    window.press("nav.overview")
    window.focus("action.scan")
    window.tab_to("dashboard.undo")
    window.press("dashboard.undo")
    window.sees("history.taken_title")
    window.press("history.restore_beside")
    beside = home / "Downloads/pip (restored 1)/wheel"
    wait_for("the folder beside", lambda: beside.exists() and beside.read_bytes() == b"newer")


def follow(window, home):
    rules(window)
    schedule_and_folders(window, home)
    history(window, home)
    swap(window, home)


if __name__ == "__main__":
    main({"outside": Scenario(prepare, follow)})
