#!/usr/bin/python3
"""Drives the sections that move files on the user's word, each in a home of its own, and undoes what they did.

    end_to_end_moves.py PROGRAM [SCENARIO]
"""

from window_driver import Scenario, expect, files_below, main, put, trash_of, wait_for, wait_for_all_back


# --- duplicates


def prepare_duplicates(home):
    picture = bytes(range(200)) * 30
    put(home, "Downloads/holiday.mov", picture, days=3)
    put(home, "Downloads/copy of holiday.mov", picture, days=1)
    put(home, "Downloads/alone.mov", picture[:-1] + b"!")


def clean_duplicates(window, home):
    downloads = home / "Downloads"
    before = files_below(downloads)

    window.look_for_duplicates()
    expect(files_below(downloads) == before, "looking for duplicates moved something")
    window.press("Clean 1 · 6 KB")
    window.sees("Cleaned 1 duplicate files, freeing 6 KB.")
    expect(files_below(trash_of(home)) == {"copy of holiday.mov": before["copy of holiday.mov"]}, "not the copy went")
    after = {name: content for name, content in before.items() if name != "copy of holiday.mov"}
    expect(files_below(downloads) == after, "more than the copy left its place")
    window.press("action.ok")

    window.press("action.undo")
    wait_for_all_back(home, downloads, before)


# --- organizer


def prepare_organizer(home):
    put(home, "Downloads/song.mp3", b"la" * 1000)
    put(home, "Downloads/report.pdf", b"words" * 1000)


def organize(window, home):
    downloads = home / "Downloads"
    before = files_below(downloads)

    window.look_into_downloads()
    expect(files_below(downloads) == before, "a proposal moved something")
    window.press("Move 2 · 7 KB")
    wait_for("an emptied folder", lambda: not any(path.is_file() for path in downloads.iterdir()))
    wait_for("two files in their folders", lambda: len(files_below(downloads)) == 2)
    organized = files_below(downloads)
    for name, content in before.items():
        places = [path for path in organized if path.endswith("/" + name)]
        expect(len(places) == 1 and organized[places[0]] == content, f"{name} did not arrive")

    window.press("dashboard.undo")
    wait_for("the files to come back", lambda: files_below(downloads) == before)


# --- tidying


def prepare_tidying(home):
    for name in ("song.mp3", "report.pdf"):
        put(home, f"Downloads/{name}", name * 500, days=1)


def tidy(window, home):
    downloads = home / "Downloads"
    before = files_below(downloads)

    window.ask_to_tidy()
    window.sees("2 moves proposed")
    expect(files_below(downloads) == before, "asking moved something")
    put(home, "Downloads/late.pdf", "late", days=1)
    window.press("Move 2 · 9 KB")
    moved = {"Recents/" + name: content for name, content in before.items()} | {"late.pdf": b"late"}
    wait_for("the shown files in Recents", lambda: files_below(downloads) == moved)
    window.press("dashboard.undo")
    wait_for("the files to come back", lambda: files_below(downloads) == before | {"late.pdf": b"late"})


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


def uninstall(window, home):
    applications = home / "Applications"
    cache = home / "Library/Caches"
    before = files_below(applications)
    left = files_below(cache)

    window.press("nav.apps")
    window.press("Review: Paint")
    window.sees("Uninstall Paint")
    window.sees("com.example.paint, ")
    expect(files_below(applications) == before, "the review moved something")
    window.press("com.example.paint, 500 bytes")
    window.press("Uninstall 2 items · 5 KB")
    wait_for("the application to go", lambda: not files_below(applications))
    wait_for("its cache to go", lambda: not files_below(cache))
    window.press("dashboard.undo")
    wait_for_all_back(home, applications, before)
    wait_for("its cache to come back", lambda: files_below(cache) == left)


if __name__ == "__main__":
    main({
        "duplicates": Scenario(prepare_duplicates, clean_duplicates),
        "organizer": Scenario(prepare_organizer, organize),
        "tidying": Scenario(prepare_tidying, tidy),
        "applications": Scenario(prepare_applications, uninstall),
    })
