#!/usr/bin/python3
"""Drives what the window asks and says before and while much moves: hidden selections, large runs, ends in the middle.

    end_to_end_consent.py PROGRAM [SCENARIO]
"""

import fcntl
import json
import os
import pathlib
import subprocess
import sys
import time

from window_driver import PATIENCE, Scenario, expect, files_below, main, trash_of, wait_for

DAY = 86400  # seconds
SHIFT, CONTROL = 50, 37  # their codes on a keyboard of X


def age(path, days):
    os.utime(path, (time.time() - days * DAY,) * 2)


def moves_away(window, verb, *paths):
    window.press(verb)
    wait_for(f"{verb} to be done", lambda: not any(path.exists() for path in paths))


# --- what a search hides


def prepare_logs(home):
    logs = home / "Downloads/Logs"
    logs.mkdir(parents=True)
    for name in ("web.log", "mail.log", "other.log"):
        (logs / name).write_bytes(name.encode() * 500)
        age(logs / name, 20)
    (home / "Downloads/letter.txt").write_text("Dear all")


def clean_what_is_shown(window, home):
    logs = home / "Downloads/Logs"
    window.press("action.scan")
    window.press("nav.cleanup")
    window.sees("3 selected")
    letter = wait_for("the letter", lambda: window.find("letter.txt, Manual", exact=False))
    expect(letter.get_role_name() != "check box", "an item that cannot be chosen has a box")
    expect("it may be your own work" in letter.get_description(), "the lock does not say why")

    window.type("action.search", "mail")
    window.sees("Remove the filter “Search: mail”")
    window.sees("1 of 4")
    window.sees("2 more selected items are hidden by the search and the filters.")
    expect(window.find("Clean All · 3"), "there is no second choice")
    moves_away(window, "Clean Shown · 1", logs / "mail.log")
    expect((logs / "web.log").exists() and (logs / "other.log").exists(), "what the search hid was moved")
    window.press("action.ok")

    window.press("Remove the filter “Search: mail”")
    window.sees("Clean Selected · 2")
    (logs / "web.log").unlink()
    moves_away(window, "Clean Selected · 2", logs / "other.log")
    window.press("action.ok")
    window.sees("1 item found")

    # Something else stands in its place by now.
    (logs / "other.log").write_text("new")
    window.press("action.undo")
    window.sees("other (restored 1).log")


# --- more than a thousand items


def prepare_many(home):
    logs = home / "Downloads/Logs"
    logs.mkdir(parents=True)
    for number in range(1001):
        (logs / f"{number}.log").write_bytes(b"l" * 1000)
        age(logs / f"{number}.log", 20)


def ask_before_many(window, home):
    logs = home / "Downloads/Logs"
    before = files_below(logs)
    window.press("action.scan")
    window.press("nav.cleanup")
    window.press("Clean Selected · 1,001")
    window.sees("1,001 items (1 MB) will go to the Trash.")
    window.press("action.cancel")
    wait_for("the question to go", lambda: not window.find("consent.large_title", exact=False))
    expect(files_below(logs) == before, "a question that was refused moved something")
    window.press("Clean Selected · 1,001")
    window.sees("consent.large_title")
    # The question has the same button as the screen: it is the later one.
    again = list(window.find_all("Clean Selected · 1,001"))[-1]
    again.do_action(0)
    wait_for("an empty folder", lambda: not any(logs.iterdir()))


# --- an end in the middle of a run


def prepare_twins(home):
    downloads = home / "Downloads"
    downloads.mkdir()
    for name, days in (("first.mov", 3), ("second.mov", 1)):
        (downloads / name).write_bytes(b"film" * 5000)
        age(downloads / name, days)


def quit_in_the_middle(window, home):
    downloads = home / "Downloads"
    window.press("nav.duplicates")
    window.press("duplicates.search")
    window.sees("2 copies")
    # A cleanup of duplicates waits its turn: another one holds it up for as long as this needs.
    state = home / "Library/Application Support/Orvane"
    state.mkdir(parents=True, exist_ok=True)
    with (state / "duplicates.lock").open("w") as turn:
        fcntl.flock(turn, fcntl.LOCK_EX)
        window.press("Clean 1 · 20 KB")
        window.sees("Cleaning")
        bring_to_front("duplicates")
        hold(window, CONTROL, ord("q"))
        window.sees("quit.title")
        expect(window.find("quit.stop"), "the run cannot be stopped")
        window.press("quit.finish")
        expect(window.process.poll() is None, "the program ended in the middle of the run")
    window.process.wait(PATIENCE)
    expect(len(files_below(downloads)) == 1 and len(files_below(trash_of(home))) == 1, "the run was not finished")


def bring_to_front(section):
    """Nothing manages windows here: the window is active once a second start asked for it."""
    subprocess.run([sys.argv[1], "--show", section], timeout=PATIENCE, check=True)


def hold(window, modifier, key):
    """A key by its symbol in X while a modifier, by its code on a keyboard of X, is held."""
    synth = window.atspi.KeySynthType
    window.atspi.generate_keyboard_event(modifier, None, synth.PRESS)
    window.key(key)
    window.atspi.generate_keyboard_event(modifier, None, synth.RELEASE)


# --- the desktop's chooser, and its tray


def start_desktop(folder):
    script = pathlib.Path(__file__).with_name("fake_desktop.py")
    desktop = subprocess.Popen([sys.executable, script, folder], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    expect(desktop.stdout.readline() == "ready\n", "there is no desktop")
    return desktop


def choose_by_portal(window, home):
    project = home / "Work Files"
    project.mkdir()
    desktop = start_desktop(project)
    try:
        window.press("nav.organize")
        window.press("Folder: Choose a Folder")
        window.press("action.other_folder")
        asked = json.loads(desktop.stdout.readline())
        expect(asked["directory"] is True and asked["title"] == "Choose a Folder", f"it asked for {asked}")
        window.sees("Folder: Work Files")
    finally:
        desktop.stdin.close()
        desktop.wait(PATIENCE)


def choose_without_portal(window, home):
    (home / "Work Files/Inner").mkdir(parents=True)
    window.press("nav.organize")
    window.press("Folder: Choose a Folder")
    window.press("action.other_folder")
    window.sees("folder.choose")
    window.press("Work Files", exact=False)
    window.press("Inner", exact=False)
    window.sees("~/Work Files/Inner")
    window.press("folder.parent")
    window.sees("~/Work Files")
    window.press("folder.choose")
    window.sees("Folder: Work Files")


MAP = '[1,2,{},[{"name":"/srv/archive"},[{"name":"films"},{"name":"long.mkv","dsize":7000000000}]]]'


def choose_map_by_portal(window, home):
    """A map of another machine, from a file that the desktop's chooser names."""
    file = home / "server map.json"
    file.write_text(MAP)
    desktop = start_desktop(file)
    try:
        window.focus("action.scan")
        window.tab_to("map.start")
        window.press("map.start")
        window.press("map.open_file")
        asked = json.loads(desktop.stdout.readline())
        expect(asked["directory"] is False and asked["title"] == window.texts["map.open_file"], f"it asked for {asked}")
        window.sees("~/server map.json")
        window.sees("films, 7 GB")
    finally:
        desktop.stdin.close()
        desktop.wait(PATIENCE)


def choose_map_without_portal(window, home):
    (home / "maps").mkdir()
    (home / "maps/server.json").write_text(MAP)
    window.focus("action.scan")
    window.tab_to("map.start")
    window.press("map.start")
    window.press("map.open_file")
    window.press("maps", exact=False)
    window.press("server.json", exact=False)
    window.sees("~/maps/server.json")
    window.sees("films, 7 GB")


if __name__ == "__main__":
    sys.exit(
        main(
            {
                "hidden": Scenario(prepare_logs, clean_what_is_shown),
                "many": Scenario(prepare_many, ask_before_many),
                "quit": Scenario(prepare_twins, quit_in_the_middle),
                "portal": Scenario(prepare_twins, choose_by_portal),
                "chooser": Scenario(prepare_twins, choose_without_portal),
                "map-portal": Scenario(prepare_twins, choose_map_by_portal),
                "map-chooser": Scenario(prepare_twins, choose_map_without_portal),
            }
        )
    )
