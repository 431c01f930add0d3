#!/usr/bin/python3
"""Drives the real window as assistive technology would: by what its controls are called.

Everything is the test's own: X server, message bus, home and settings.
"""

import json

from window_driver import END, Scenario, expect, files_below, main, moves_and_undoes, put, wait_for


def scan_clean_undo(window, home):
    before = files_below(home / "Downloads")
    window.scan("3 items found")
    expect(window.is_checked("old.log, Safe"), "a safe item is not selected")
    expect(not window.is_checked("new.dmg, Review"), "an item to review is selected")
    expect(not window.is_checked("letter.txt, Manual"), "a manual item is selected")
    after = {name: content for name, content in before.items() if name != "Logs/old.log"}
    moves_and_undoes(window, home, before, "Clean Selected · 1", after, {"old.log": before["Logs/old.log"]},
                     "Successfully moved 1 items to the Trash, reclaiming 5 KB.", undo="action.undo")
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
    settings = json.loads((home / ".config/orvane/preferences.json").read_text())
    expect(settings.get("OrvaneLanguage") == "en", "the language is not remembered")


if __name__ == "__main__":
    main({
        "cleanup": Scenario(prepare, use_the_window),
        "introduction": Scenario(never_started, introduction),
        "bare": Scenario(bare, bare_account),
    })
