#!/usr/bin/python3
"""Drives what can be done with one row of a list: its menu, a glance at its item, and what becomes of a result."""

import io
import struct
import tarfile
import time
import zlib

from end_to_end_consent import prepare_logs
from end_to_end_moves import prepare_applications, prepare_organizer
from window_driver import (
    CONTROL, DOWN, ESCAPE, MENU, SPACE, Scenario, bring_to_front, expect, main, put, wait_for,
)


def press_key_for(window, key, text):
    """Presses a key until it had its effect: the list may not have had its rows."""

    def act():
        window.key(key)
        for _ in range(30):
            if window.find(text, exact=False):
                return True
            time.sleep(0.05)
        return False

    wait_for(f"“{text}”", act)


def menu_of_row(window, list_name, *entries):
    window.focus(list_name, "list")
    window.key(DOWN)
    press_key_for(window, MENU, entries[0])
    for entry in entries:
        expect(window.find(entry, role="menu item"), f"the menu of {list_name} lacks “{entry}”")


def menus_everywhere(window, home):
    window.press("nav.apps")
    window.sees("Review: Paint")
    wait_for("the sizes", lambda: not window.find("action.cancel"))
    menu_of_row(window, "Applications", "Show in Folder", "Copy Path")
    window.key(ESCAPE)

    window.press("nav.rules")
    menu_of_row(window, "Rules", "Edit", "Preview", "Run Now")
    window.key(ESCAPE)

    window.look_into_downloads()
    menu_of_row(window, "Organize", "Never Offer Again", "Open")
    window.press("keep.keep")
    window.sees("1 selected")
    kept = [row for row in map(window.find, ("report.pdf", "song.mp3")) if "on the keep list" in row.get_description()]
    expect(len(kept) == 1, "the row does not say that it is kept")

    window.press("Move 1 ·", exact=False)
    window.press("nav.history")
    menu_of_row(window, "History", "Restore All")
    window.press("history.restore_run")
    wait_for("the file to come back", lambda: sum(1 for path in (home / "Downloads").iterdir() if path.is_file()) == 2)


# --- a glance


def png(width, height):
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = (b"\0" + b"\x20\x90\x80" * width) * height
    head = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def prepare_glances(home):
    put(home, "Downloads/Logs/web.log", "a line that tells\n" * 5000, days=20)
    for name in ("first.png", "second.png"):
        put(home, f"Downloads/{name}", png(600, 400))
    content = io.BytesIO()
    with tarfile.open(fileobj=content, mode="w:gz") as archive:
        archive.add(__file__, "notes/inside.txt")
    put(home, "Downloads/backup.tar.gz", content.getvalue(), days=200)


def glances(window, home):
    window.scan()
    window.press("action.deselect_all")
    window.sees("0 selected")
    for name, content in (("web", "Only the beginning is shown."), ("backup", "notes/inside.txt")):
        window.focus("action.search", "text")
        window.hold(CONTROL, ord("a"))
        window.type("action.search", name)
        window.sees("1 of 4")
        window.focus("nav.cleanup", "list")
        window.key(DOWN)
        press_key_for(window, SPACE, content)
        expect(window.find("action.reveal_in_finder"), "a glance offers no way to its folder")
        window.key(SPACE)
        wait_for("the glance to end", lambda: not window.find(content))
    window.sees("0 selected")


def compared(window, home):
    window.look_for_duplicates()
    window.focus("nav.duplicates", "list")
    window.key(DOWN)
    press_key_for(window, MENU, "Compare Side by Side")
    window.press("Compare Side by Side")
    window.sees("The content is the same, byte for byte.")
    kept = [name for name in window.names() if name in ("first.png, Kept", "second.png, Kept")]
    other = [name for name in window.names() if name in ("first.png", "second.png")]
    expect(len(kept) == 1 and other, "the copies do not stand side by side")
    window.press("action.close")

    window.type("action.search", "nothing like it")
    window.sees("No copy matches the search.")
    expect(not window.find("Clean 1 ·", exact=False), "what the search hides can be cleaned unseen")
    expect(window.find("Clean All · 1"), "there is no way to all")


# --- results


def results(window, home):
    log = home / "Downloads/Logs/web.log"
    window.scan("3 selected")
    window.press("Clean Selected · 3")
    wait_for("the logs to go", lambda: not log.exists())
    window.press("action.ok")
    window.sees("action.undo")
    window.press("action.dismiss")
    wait_for("the result to go", lambda: not window.find("action.undo"))
    window.press("nav.overview")
    window.press("nav.cleanup")
    window.sees("1 item found")
    expect(not window.find("action.undo"), "a result that was read comes back")

    # From any section.
    bring_to_front("privacy")
    window.sees("privacy.subtitle")
    window.hold(CONTROL, ord("z"))
    wait_for("the logs to come back", log.exists)
    window.sees("3 items are back where they were.")
    window.focus("nav.privacy")
    window.hold(CONTROL, ord("8"))
    wait_for("the rows of the history", lambda: window.find("History", role="list"))
    wait_for("the keyboard on them", lambda: window.has(window.find("History", role="list"), "FOCUSED"))
    window.press("nav.cleanup")
    window.sees("4 items found")
    window.press("action.select_all")
    window.press("Clean Selected · 3")
    wait_for("the logs to go again", lambda: not log.exists())
    window.press("action.ok")
    window.press("nav.history")
    window.press("Restore All: ", exact=False)
    wait_for("the logs to be restored", log.exists)
    window.press("nav.cleanup")
    wait_for("the stale result to go", lambda: not window.find("action.undo"))


def prepare_sections(home):
    prepare_applications(home)
    prepare_organizer(home)


if __name__ == "__main__":
    main({
        "menus": Scenario(prepare_sections, menus_everywhere),
        "glances": Scenario(prepare_glances, glances),
        "compare": Scenario(prepare_glances, compared),
        "results": Scenario(prepare_logs, results),
    })
