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


def prepare_many_loose(home):
    downloads = home / "Downloads"
    downloads.mkdir()
    for number in range(1001):
        (downloads / f"{number}.dmg").write_bytes(b"d" * 1000)
        age(downloads / f"{number}.dmg", 60)


def asks_once_more(window, verb, sums, folder):
    """The button asks first; a refused question moves nothing, and one that is confirmed does what it says."""
    before = files_below(folder)
    window.press(verb)
    window.sees(sums)
    window.sees("consent.large_title")
    # The question has buttons of its own, which may be named as those of the screen: they are the later ones.
    list(window.find_all("action.cancel"))[-1].do_action(0)
    wait_for("the question to go", lambda: not window.find("consent.large_title", exact=False))
    expect(files_below(folder) == before, "a question that was refused moved something")
    window.press(verb)
    window.sees("consent.large_title")
    list(window.find_all(verb))[-1].do_action(0)


def ask_before_many(window, home):
    logs = home / "Downloads/Logs"
    window.press("action.scan")
    window.press("nav.cleanup")
    asks_once_more(window, "Clean Selected · 1,001", "1,001 items (1 MB) will go to the Trash.", logs)
    wait_for("an empty folder", lambda: not any(logs.iterdir()))


def ask_before_many_by_rules(window, home):
    downloads = home / "Downloads"
    window.press("nav.rules")
    window.press("Run 8 Rules")
    asks_once_more(window, "Run Now · 1,001 · 1 MB", "1,001 items (1 MB) will go to the Trash.", downloads)
    wait_for("an empty folder", lambda: not any(downloads.iterdir()))


def ask_before_many_are_tidied(window, home):
    downloads = home / "Downloads"
    window.press("nav.settings")
    window.focus("settings.schedule_enabled")
    window.tab_to("tray.organize_now")
    window.press("tray.organize_now")
    asks_once_more(window, "Move 1,001 · 1 MB", "1,001 items (1 MB) will move to another folder.", downloads)
    wait_for("all of them in Recents", lambda: len(files_below(downloads / "Recents")) == 1001)


def ask_before_many_by_request(window, home):
    downloads = home / "Downloads"
    window.press("nav.agent")
    window.type("agent.prompt", "organize files older than 30 days in downloads")
    window.press("action.dry_run")
    asks_once_more(
        window, "Confirm & Apply · 1,001 · 1 MB", "1,001 items (1 MB) will move to another folder.", downloads
    )
    wait_for("all of them in a folder", lambda: not any(path.is_file() for path in downloads.iterdir()))


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


# --- a pause in the middle of a run


def prepare_copies(home):
    downloads = home / "Downloads"
    downloads.mkdir()
    for number in range(601):
        (downloads / f"{number}.mov").write_bytes(b"film" * 5000)
        age(downloads / f"{number}.mov", 700 - number)


def pause_in_the_middle(window, home):
    downloads = home / "Downloads"
    window.press("nav.duplicates")
    window.press("duplicates.search")
    window.sees("601 copies")
    state = home / "Library/Application Support/Orvane"
    state.mkdir(parents=True, exist_ok=True)
    # The run is held up until it was asked to pause, and then waits after its first group of items.
    with (state / "duplicates.lock").open("w") as turn:
        fcntl.flock(turn, fcntl.LOCK_EX)
        window.press("Clean 600 · ", exact=False)
        window.press("run.pause")
        window.sees("run.pausing")
    window.sees("run.paused")
    moved = len(files_below(trash_of(home)))
    expect(0 < moved < 600, f"{moved} of 600 copies went before the pause")
    expect(len(files_below(downloads)) == 601 - moved, "a copy is in two places or in none")
    expect(not window.find("run.pause"), "a run that waits can be paused again")
    window.press("run.resume")
    wait_for("one copy to be left", lambda: len(list(downloads.iterdir())) == 1)
    expect(len(files_below(trash_of(home))) == 600, "not every copy went to the Trash")


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
    """A map of another machine, from a file that the desktop's chooser names, before there is one of this home."""
    file = home / "server map.json"
    file.write_text(MAP)
    desktop = start_desktop(file)
    try:
        window.focus("action.scan")
        window.tab_to("map.open_file")
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
                "many by rules": Scenario(prepare_many_loose, ask_before_many_by_rules),
                "many tidied": Scenario(prepare_many_loose, ask_before_many_are_tidied),
                "many by request": Scenario(prepare_many_loose, ask_before_many_by_request),
                "pause": Scenario(prepare_copies, pause_in_the_middle),
                "quit": Scenario(prepare_twins, quit_in_the_middle),
                "portal": Scenario(prepare_twins, choose_by_portal),
                "chooser": Scenario(prepare_twins, choose_without_portal),
                "map-portal": Scenario(prepare_twins, choose_map_by_portal),
                "map-chooser": Scenario(prepare_twins, choose_map_without_portal),
            }
        )
    )
