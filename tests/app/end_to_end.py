#!/usr/bin/python3
"""Drives the real window as assistive technology would: by what its controls are called.

    end_to_end.py PROGRAM [SCENARIO]

Everything is the test's own: X server, message bus, home and settings.
"""

import json
import subprocess
import sys

from window_driver import END, PATIENCE, Scenario, expect, main, put, trash_of, wait_for


def scan_clean_undo(window, home):
    trash = trash_of(home)
    log = home / "Downloads/Logs/old.log"
    content = log.read_bytes()

    window.scan("3 items found")
    expect(window.is_checked("old.log, Safe"), "a safe item is not selected")
    expect(not window.is_checked("new.dmg, Review"), "an item to review is selected")
    expect(not window.is_checked("letter.txt, Manual"), "a manual item is selected")

    window.press("Clean Selected · 1")
    window.sees("Successfully moved 1 items to the Trash, reclaiming 5 KB.")
    expect(not log.exists() and (trash / "old.log").read_bytes() == content, "the log is not in the Trash")
    for name in ("letter.txt", "new.dmg"):
        expect((home / "Downloads" / name).exists(), "something was moved that nobody selected")
    expect([path.name for path in trash.iterdir()] == ["old.log"], "there is more in the Trash than was selected")
    window.press("action.ok")

    window.press("action.undo")
    wait_for("the log to come back", log.exists)
    expect(log.read_bytes() == content, "another log came back")
    wait_for("an empty Trash", lambda: not list(trash.iterdir()))

    window.press("nav.history")
    window.sees("state.restored")
    window.sees("origin.clean")


def change_language(window):
    window.press("nav.overview")
    window.press("nav.language")
    window.press("日本語")
    window.sees("クリーンアップ")
    wait_for("no English section", lambda: "Settings" not in window.names())
    window.press("言語")
    window.press("English")
    window.sees("nav.settings")


def second_start(window, program):
    """Ends at once, and shows the section that it names in the first one."""
    second = subprocess.run([program, "--show", "privacy"], timeout=PATIENCE, check=False)
    expect(second.returncode == 0, "a second start failed")
    window.sees("privacy.subtitle")


def bare(home):
    put(home, ".cache/pip/http/a", b"x" * 5000)
    (home / "stuff").mkdir()


def bare_account(window, home):
    """None of the usual folders is there: the caches of programs are found all the same."""
    window.press("Scan Now")
    window.sees("None of the folders to scan exists.")
    box, button = (window.place_of(name) for name in ("None of the folders to scan exists.", "Choose Folders"))
    expect(button.y + button.height <= box.y + box.height, "the way to the folders is outside its box")
    window.press("Cleanup")
    expect(window.is_checked("pip, Safe"), "a known place is not selected")
    window.press("Choose Folders")
    window.sees("Add Folder")


def never_started(home):
    (home / "Downloads").mkdir()
    (home / ".config/orvane/preferences.json").unlink()


def introduction(window, home):
    """At the first start, and again when it is asked for."""
    settings = home / ".config/orvane/preferences.json"
    window.press("onboarding.start")
    window.sees("onboarding.folders_title")
    window.sees("Downloads, ~/Downloads")
    window.press("onboarding.next")
    window.press("onboarding.later")
    wait_for("a note that it was shown", lambda: settings.exists() and "hasCompletedOnboarding" in settings.read_text())
    wait_for("the introduction to go", lambda: not window.find("onboarding.later"))
    window.press("nav.settings")
    window.sees("settings.schedule_enabled")
    # It stands further down.
    window.focus("settings.add_folder")
    window.key(END)
    window.press("settings.show_again")
    window.sees("onboarding.start")


def prepare(home):
    put(home, "Downloads/Logs/old.log", bytes(range(250)) * 20)
    put(home, "Downloads/new.dmg", b"i" * 9000)
    put(home, "Downloads/letter.txt", "Dear all")


def use_the_window(window, home):
    scan_clean_undo(window, home)
    change_language(window)
    second_start(window, sys.argv[1])
    settings = json.loads((home / ".config/orvane/preferences.json").read_text())
    expect(settings.get("OrvaneLanguage") == "en", "the language is not remembered")


if __name__ == "__main__":
    main({
        "cleanup": Scenario(prepare, use_the_window),
        "introduction": Scenario(never_started, introduction),
        "bare": Scenario(bare, bare_account),
    })
