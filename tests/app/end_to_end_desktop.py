#!/usr/bin/python3
"""Drives what people expect of any program of a desktop: ranges, what is remembered, a drop, its own page."""

import json
import pathlib
import subprocess
import sys
import time

from end_to_end_consent import prepare_logs
from window_driver import (
    CONTROL, DOWN, END, F1, PATIENCE, SHIFT,
    Scenario, Window, bring_to_front, expect, main, put, wait_for,
)


def ranges_and_heads(window, home):
    logs = ["mail.log", "other.log", "web.log"]
    window.scan("3 selected")
    for wanted in (logs, logs[::-1]):
        window.press("Sort by Name")
        wait_for(
            f"the rows as {wanted}",
            lambda: [name.split(",")[0] for name in window.names() if name.split(",")[0] in logs] == wanted,
        )
    window.press("action.deselect_all")
    window.sees("0 selected")
    window.focus("nav.cleanup", "list")
    window.key(DOWN)
    window.hold(SHIFT, DOWN)
    window.sees("2 selected")
    window.press("action.select_all")
    window.sees("3 selected")


def remembered(window, home):
    settings = home / ".config/orvane/preferences.json"
    window.scan("3 selected")
    window.press("Sort by: Size")
    window.press("sort.name")
    bring_to_front("cleanup")
    window.hold(CONTROL, ord("q"))
    window.process.wait(PATIENCE)
    stored = json.loads(settings.read_text())["window"]
    expect(stored["section"] == 1 and stored["cleanupSort"] == 2, f"it remembers {stored}")

    process = subprocess.Popen([sys.argv[1]])
    try:
        again = Window(window.atspi, process, window.texts)
        again.sees("cleanup.empty_title")
        again.press("nav.overview")
        again.sees("found 12 KB that can go. Scan again to see it.")
        again.press("nav.cleanup")
        again.press("action.scan")
        again.sees("Sort by: Name")
    finally:
        process.terminate()
        process.wait(PATIENCE)


def prepare_dropped(home):
    prepare_logs(home)
    put(home, "Projects/setup.dmg", b"i" * 9000)


def dropped(window, home):
    """A folder, dragged over from another program's window."""
    script = pathlib.Path(__file__).with_name("drag_source.py")
    source = subprocess.Popen([sys.executable, script, home / "Projects"], stdout=subprocess.PIPE)

    def mouse(x, y, event):
        window.atspi.generate_mouse_event(x, y, event)

    def drag_over():
        mouse(1240, 850, "b1p")
        # Step by step: a drag begins after some way, and the target answers each.
        for step in range(1, 41):
            mouse(1240 - 16 * step, 850 - 11 * step, "abs")
            time.sleep(0.03)
        mouse(600, 410, "b1r")
        deadline = time.monotonic() + 3
        while time.monotonic() < deadline:
            if window.find("Look into “Projects”?"):
                return True
        return False

    try:
        source.stdout.readline()
        wait_for("the question of a drop", drag_over)
        window.press("Add and Scan")
        window.press("Cleanup")
        window.sees("setup.dmg")
    finally:
        source.terminate()
        source.wait(PATIENCE)


def foot_of_settings(window):
    window.focus("settings.add_folder")
    window.key(END)


def told_about_itself(window, home):
    bring_to_front("overview")
    window.key(F1)
    window.sees("shortcuts.title")
    window.press("action.close")
    window.press("nav.settings")
    foot_of_settings(window)
    window.press("Theme: As the System")
    window.press("settings.theme_dark")
    foot_of_settings(window)
    window.sees("Theme: Dark")
    window.press("about.show")
    window.sees("about.licences")
    window.sees("Version ")


def begins_light(window, home):
    # Some systems' themes bring the same libraries along, so the window's memory tells nothing.
    program = f"/proc/{window.process.pid}/exe"
    needed = subprocess.run(["objdump", "-p", program], capture_output=True, text=True, check=True).stdout
    expect("NEEDED" in needed, "the program's libraries are not told")
    for library in ("libarchive", "libcurl", "libsecret"):
        expect(library not in needed, f"{library} is loaded before anything needs it")


if __name__ == "__main__":
    main({
        "ranges": Scenario(prepare_logs, ranges_and_heads),
        "memory": Scenario(prepare_logs, remembered),
        "drop": Scenario(prepare_dropped, dropped),
        "about": Scenario(prepare_logs, told_about_itself),
        "start": Scenario(prepare_logs, begins_light),
    })
