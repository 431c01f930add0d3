#!/usr/bin/python3
"""Drives what can be done with one row of a list: its menu, a glance at its item, and what becomes of a result.

    end_to_end_rows.py PROGRAM [SCENARIO]
"""

import struct
import sys
import tarfile
import time
import zlib

from end_to_end_consent import age, bring_to_front, hold, prepare_logs, CONTROL
from end_to_end_desktop import DOWN, ESCAPE, MENU, scanned
from end_to_end_moves import prepare_applications, prepare_organizer
from window_driver import Scenario, expect, main, wait_for

SPACE = 0x20


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
    window.press("Applications")
    window.sees("Review: Paint")
    wait_for("the sizes", lambda: not window.find("Cancel"))
    menu_of_row(window, "Applications", "Copy Command", "Show in Folder", "Copy Path")
    window.key(ESCAPE)

    window.press("Rules")
    menu_of_row(window, "Rules", "Edit", "Preview", "Run Now")
    window.key(ESCAPE)

    window.press("Organize")
    window.press("Folder: Choose a Folder")
    window.press("Downloads")
    window.press("Analyze")
    window.sees("2 moves")
    menu_of_row(window, "Organize", "Never Offer Again", "Open")
    window.press("Never Offer Again")
    window.sees("1 selected")
    kept = [row for row in map(window.find, ("report.pdf", "song.mp3")) if "on the keep list" in row.get_description()]
    expect(len(kept) == 1, "the row does not say that it is kept")

    window.press("Move 1 ·", exact=False)
    window.press("History")
    menu_of_row(window, "History", "Restore All")
    window.press("Restore All")
    wait_for("the file to come back", lambda: sum(1 for path in (home / "Downloads").iterdir() if path.is_file()) == 2)


# --- a glance


def png(width, height):
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    rows = (b"\0" + b"\x20\x90\x80" * width) * height
    head = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def prepare_glances(home):
    logs = home / "Downloads/Logs"
    logs.mkdir(parents=True)
    (logs / "web.log").write_text("a line that tells\n" * 5000)
    age(logs / "web.log", 20)
    for name in ("first.png", "second.png"):
        (home / "Downloads" / name).write_bytes(png(600, 400))
    member = home / "Downloads/inside.txt"
    member.write_text("inside")
    with tarfile.open(home / "Downloads/backup.tar.gz", "w:gz") as archive:
        archive.add(member, "notes/inside.txt")
    member.unlink()
    age(home / "Downloads/backup.tar.gz", 200)


def glances(window, home):
    scanned_any(window)
    window.press("Deselect All")
    window.sees("0 selected")
    for name, content in (("web", "Only the beginning is shown."), ("backup", "notes/inside.txt")):
        window.focus("Search", "text")
        hold(window, CONTROL, ord("a"))
        window.type("Search", name)
        window.sees("1 of 4")
        window.focus("Cleanup", "list")
        window.key(DOWN)
        press_key_for(window, SPACE, content)
        expect(window.find("Show in Folder"), "a glance offers no way to its folder")
        window.key(SPACE)
        wait_for("the glance to end", lambda: not window.find(content))
    window.sees("0 selected")


def scanned_any(window):
    window.press("Scan Now")
    window.press("Cleanup")
    window.sees("selected")


def compared(window, home):
    window.press("Duplicates")
    window.press("Find Duplicates")
    window.sees("2 copies")
    window.focus("Duplicates", "list")
    window.key(DOWN)
    press_key_for(window, MENU, "Compare Side by Side")
    window.press("Compare Side by Side")
    window.sees("The content is the same, byte for byte.")
    kept = [name for name in window.names() if name in ("first.png, Kept", "second.png, Kept")]
    other = [name for name in window.names() if name in ("first.png", "second.png")]
    expect(len(kept) == 1 and other, "the copies do not stand side by side")
    window.press("Close")

    window.type("Search", "nothing like it")
    window.sees("No copy matches the search.")
    expect(not window.find("Clean 1 ·", exact=False), "what the search hides can be cleaned unseen")
    expect(window.find("Clean All · 1"), "there is no way to all")


# --- results


def results(window, home):
    log = home / "Downloads/Logs/web.log"
    scanned(window)
    window.press("Clean Selected · 3")
    wait_for("the logs to go", lambda: not log.exists())
    window.press("OK")
    window.sees("Undo Clean")
    window.press("Dismiss")
    wait_for("the result to go", lambda: not window.find("Undo Clean"))
    window.press("Overview")
    window.press("Cleanup")
    window.sees("1 item found")
    expect(not window.find("Undo Clean"), "a result that was read comes back")

    bring_to_front("cleanup")
    hold(window, CONTROL, ord("z"))
    wait_for("the logs to come back", log.exists)
    window.sees("4 items found")
    window.press("Select All")
    window.press("Clean Selected · 3")
    wait_for("the logs to go again", lambda: not log.exists())
    window.press("OK")
    window.press("History")
    window.press("Restore All: ", exact=False)
    wait_for("the logs to be restored", log.exists)
    window.press("Cleanup")
    wait_for("the stale result to go", lambda: not window.find("Undo Clean"))


def prepare_sections(home):
    prepare_applications(home)
    prepare_organizer(home)


if __name__ == "__main__":
    sys.exit(
        main(
            {
                "menus": Scenario(prepare_sections, menus_everywhere),
                "glances": Scenario(prepare_glances, glances),
                "compare": Scenario(prepare_glances, compared),
                "results": Scenario(prepare_logs, results),
            }
        )
    )
