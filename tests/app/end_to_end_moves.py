#!/usr/bin/python3
"""Drives the sections that move files on the user's word, each in a home of its own, and undoes what they did."""

from window_driver import Scenario, expect, files_below, main, moves_and_undoes, put


# --- duplicates


def prepare_duplicates(home):
    picture = bytes(range(200)) * 30
    put(home, "Downloads/holiday.mov", picture, days=3)
    put(home, "Downloads/copy of holiday.mov", picture, days=1)
    put(home, "Downloads/alone.mov", picture[:-1] + b"!")


def clean_duplicates(window, home):
    before = files_below(home / "Downloads")
    window.look_for_duplicates()
    copy = {name: content for name, content in before.items() if name == "copy of holiday.mov"}
    after = {name: content for name, content in before.items() if name not in copy}
    moves_and_undoes(window, home, before, "Clean 1 · 6 KB", after, copy, "Cleaned 1 duplicate files, freeing 6 KB.",
                     undo="action.undo")


# --- organizer


def prepare_organizer(home):
    put(home, "Downloads/song.mp3", b"la" * 1000)
    put(home, "Downloads/report.pdf", b"words" * 1000)


def organize(window, home):
    before = files_below(home / "Downloads")
    window.look_into_downloads()
    places = {"song.mp3": "Organized/Media/Audio/", "report.pdf": "Organized/Documents/PDFs/"}
    after = {places[name] + name: content for name, content in before.items()}
    moves_and_undoes(window, home, before, "Move 2 · 7 KB", after)


# --- tidying


def prepare_tidying(home):
    for name in ("song.mp3", "report.pdf"):
        put(home, f"Downloads/{name}", name * 500, days=1)


def tidy(window, home):
    before = files_below(home / "Downloads")
    window.ask_to_tidy()
    window.sees("2 moves proposed")
    put(home, "Downloads/late.pdf", "late", days=1)
    late = {"late.pdf": b"late"}
    after = {"Recents/" + name: content for name, content in before.items()} | late
    moves_and_undoes(window, home, before | late, "Move 2 · 9 KB", after)


# --- applications


INFORMATION = """<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleIdentifier</key><string>com.example.paint</string>
<key>CFBundleName</key><string>Paint</string>
<key>CFBundleShortVersionString</key><string>2.1</string>
</dict></plist>
"""


def prepare_applications(home):
    put(home, "Applications/Paint.app/Contents/Info.plist", INFORMATION)
    put(home, "Applications/Paint.app/Contents/MacOS/Paint", b"code" * 1000)
    put(home, "Library/Caches/com.example.paint/brush.cache", b"b" * 500)
    put(home, "Library/Logs/com.example.paint/run.log", b"l" * 100)


def uninstall(window, home):
    before = files_below(home / "Applications")
    cache = home / "Library/Caches/com.example.paint/brush.cache"
    window.press("nav.apps")
    window.press("Review: Paint")
    window.sees("Uninstall Paint")
    window.press("com.example.paint, 500 bytes")
    trashed = before | {"com.example.paint/brush.cache": cache.read_bytes()}
    moves_and_undoes(window, home, before, "Uninstall 2 items · 5 KB", {}, trashed, folder="Applications")
    expect(cache.exists(), "its cache did not come back")


if __name__ == "__main__":
    main({
        "duplicates": Scenario(prepare_duplicates, clean_duplicates),
        "organizer": Scenario(prepare_organizer, organize),
        "tidying": Scenario(prepare_tidying, tidy),
        "applications": Scenario(prepare_applications, uninstall),
    })
