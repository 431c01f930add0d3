#!/usr/bin/python3
"""Hears what a screen reader hears while the keyboard walks, and what docks hear of a run."""

import gi

from end_to_end_consent import prepare_logs
from window_driver import DOWN, END, F1, HOME, Scenario, bring_to_front, expect, main, put, wait_for

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

ROWS = 400


class Recorder:
    """Notes what arrives; `heard(look)` waits for something of it."""

    def __init__(self):
        self.notes = []

    def heard(self, what, look):
        def turn():
            while GLib.MainContext.default().iteration(False):
                pass
            return look(self.notes)

        return wait_for(what, turn)


def focus_events(window):
    recorder = Recorder()

    def note(event):
        if event.detail1:
            recorder.notes.append(window.safely(event.source.get_name) or "")

    listener = window.atspi.EventListener.new(note)
    listener.register("object:state-changed:focused")
    recorder.listener = listener
    return recorder


def prepare_long_list(home):
    prepare_logs(home)
    for number in range(ROWS):
        put(home, f"Downloads/Logs/run {number:03}.log", b"l" * (1000 + number))


def rows_are_heard(window, home):
    window.scan("3 selected")
    window.press("Sort by Name")
    window.focus("Cleanup", "list")
    recorder = focus_events(window)
    for name in ("mail.log", "other.log", "web.log"):
        window.key(DOWN)
        recorder.heard(f"“{name}” from the reader", lambda notes: notes and notes[-1].startswith(name))
    row = window.find("web.log, Safe, 4 KB")
    expect(window.has(row, "FOCUSED"), "the row does not say that it has the keyboard")


def only_rows_in_view(window, home):
    window.scan()
    window.focus("Cleanup", "list")
    rows = wait_for("the list", lambda: window.find("Cleanup", role="list"))
    for key in (END, HOME, END, HOME):
        window.key(key)
        shown = "letter.txt" if key == END else "System & App Logs"
        window.sees(shown)

    def only_those_in_view():
        known = [control.get_name() or "" for control in window.all_below(rows)]
        logs = [name for name in known if ".log, " in name]
        # And a few beside it that are ready to come in.
        return 0 < len(logs) < 40 and len(set(logs)) == len(logs)

    wait_for("rows out of view to go", lambda: window.safely(only_those_in_view))


def sheets_hide_the_window(window, home):
    bring_to_front("settings")
    window.sees("Add Folder")
    for title in ("Settings", "Folders"):
        expect(window.find(title, role="heading"), f"“{title}” is told as no heading")
    window.key(F1)
    window.sees("Keyboard Shortcuts")
    expect(not window.find("Overview") and not window.find("Add Folder"), "the window can be found behind the sheet")
    window.press("Close")
    wait_for("the window to come back", lambda: window.find("Overview") and window.find("Add Folder"))


def docks_follow(window, home):
    recorder = Recorder()
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    entry = (None, "com.canonical.Unity.LauncherEntry", "Update", None, None, Gio.DBusSignalFlags.NONE)
    bus.signal_subscribe(*entry, lambda *arguments: recorder.notes.append(arguments[5].unpack()))
    window.scan("3 selected")
    window.press("Clean Selected · 3")
    recorder.heard("a run in the dock", lambda notes: any(update.get("progress-visible") for _, update in notes))
    recorder.heard("its end", lambda notes: notes[-1][1].get("progress-visible", True) is False or "urgent" in notes[-1][1])
    expect({entry for entry, _ in recorder.notes} == {"application://orvane.desktop"}, "another entry was told")


if __name__ == "__main__":
    main({
        "rows": Scenario(prepare_logs, rows_are_heard),
        "pool": Scenario(prepare_long_list, only_rows_in_view),
        "sheet": Scenario(prepare_logs, sheets_hide_the_window),
        "dock": Scenario(prepare_logs, docks_follow),
    })
