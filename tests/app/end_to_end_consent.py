#!/usr/bin/python3
"""Drives what the window asks and says before and while much moves: hidden selections, large runs, early ends."""

import contextlib
import fcntl
import json
import pathlib
import subprocess
import sys

from window_driver import (
    CONTROL, PATIENCE, Scenario, Window, bring_to_front, expect, files_below, main, put, trash_of, wait_for,
)


def moves_away(window, verb, *paths):
    window.press(verb)
    wait_for(f"{verb} to be done", lambda: not any(path.exists() for path in paths))


# --- what a search hides


def prepare_logs(home):
    for name in ("web.log", "mail.log", "other.log"):
        put(home, f"Downloads/Logs/{name}", name * 500, days=20)
    put(home, "Downloads/letter.txt", "Dear all")


def clean_what_is_shown(window, home):
    logs = home / "Downloads/Logs"
    window.scan("3 selected")
    letter = window.sees("letter.txt, Manual")
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


def asks_once_more(*steps, button, sums, place, days, folder="Downloads"):
    """The button asks first; a refused question moves nothing, and one that is confirmed does what it says."""

    def prepare(home):
        for number in range(1001):
            put(home, "Downloads/" + place.format(number), b"l" * 1000, days)

    def act(window, home):
        for step in steps:
            step(window)
        here = home / folder
        before = files_below(here)
        window.press(button)
        window.sees(sums)
        window.sees("consent.large_title")
        # The question has buttons of its own, which may be named as those of the screen: they are the later ones.
        list(window.find_all("action.cancel"))[-1].do_action(0)
        wait_for("the question to go", lambda: not window.find("consent.large_title", exact=False))
        expect(files_below(here) == before, "a question that was refused moved something")
        window.press(button)
        window.sees("consent.large_title")
        list(window.find_all(button))[-1].do_action(0)
        wait_for("all of them to leave", lambda: not any(path.is_file() for path in here.iterdir()))

    return Scenario(prepare, act)


TO_TRASH = "1,001 items (1 MB) will go to the Trash."
TO_FOLDERS = "1,001 items (1 MB) will move to another folder."
MANY = {
    "many": asks_once_more(Window.scan, button="Clean Selected · 1,001", sums=TO_TRASH, place="Logs/{}.log", days=20,
                           folder="Downloads/Logs"),
    "many by rules": asks_once_more(lambda window: window.press("nav.rules"),
                                    lambda window: window.press("Run 8 Rules"),
                                    button="Run Now · 1,001 · 1 MB", sums=TO_TRASH, place="{}.dmg", days=60),
    "many tidied": asks_once_more(Window.ask_to_tidy, button="Move 1,001 · 1 MB", sums=TO_FOLDERS, place="{}.dmg",
                                  days=60),
    "many by request": asks_once_more(lambda window: window.ask("organize files older than 30 days in downloads"),
                                      button="Confirm & Apply · 1,001 · 1 MB", sums=TO_FOLDERS, place="{}.dmg",
                                      days=60),
}


# --- an end in the middle of a run


def prepare_twins(home):
    put(home, "Downloads/first.mov", b"film" * 5000, days=3)
    put(home, "Downloads/second.mov", b"film" * 5000, days=1)


@contextlib.contextmanager
def turn_of_duplicates(home):
    """A cleanup of duplicates waits its turn: another one holds it up for as long as this lasts."""
    state = home / "Library/Application Support/Orvane"
    state.mkdir(parents=True, exist_ok=True)
    with (state / "duplicates.lock").open("w") as turn:
        fcntl.flock(turn, fcntl.LOCK_EX)
        yield


def quit_in_the_middle(window, home):
    downloads = home / "Downloads"
    window.look_for_duplicates()
    with turn_of_duplicates(home):
        window.press("Clean 1 · 20 KB")
        window.sees("Cleaning")
        bring_to_front("duplicates")
        window.hold(CONTROL, ord("q"))
        window.sees("quit.title")
        expect(window.find("quit.stop"), "the run cannot be stopped")
        window.press("quit.finish")
        expect(window.process.poll() is None, "the program ended in the middle of the run")
    window.process.wait(PATIENCE)
    expect(len(files_below(downloads)) == 1 and len(files_below(trash_of(home))) == 1, "the run was not finished")


# --- a pause in the middle of a run


def prepare_copies(home):
    for number in range(601):
        put(home, f"Downloads/{number}.mov", b"film" * 5000, days=700 - number)


def pause_in_the_middle(window, home):
    downloads = home / "Downloads"
    window.look_for_duplicates("601 copies")
    # The run is held up until it was asked to pause, and then waits after its first group of items.
    with turn_of_duplicates(home):
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


# --- the desktop's chooser, and its tray


@contextlib.contextmanager
def desktop(folder):
    """Its portal answers each request with `folder`. Gives a function that tells the next thing that it was asked."""
    script = pathlib.Path(__file__).with_name("fake_desktop.py")
    pipe = subprocess.PIPE
    process = subprocess.Popen([sys.executable, script, folder], stdin=pipe, stdout=pipe, text=True)
    try:
        expect(process.stdout.readline() == "ready\n", "there is no desktop")
        yield process.stdout.readline
    finally:
        process.stdin.close()
        process.wait(PATIENCE)


def choose_another_folder(window):
    window.press("nav.organize")
    window.press("Folder: Choose a Folder")
    window.press("action.other_folder")


def choose_by_portal(window, home):
    (home / "Work Files").mkdir()
    with desktop(home / "Work Files") as asked:
        choose_another_folder(window)
        request = json.loads(asked())
        expect(request["directory"] is True and request["title"] == "Choose a Folder", f"it asked for {request}")
        window.sees("Folder: Work Files")


def choose_without_portal(window, home):
    (home / "Work Files/Inner").mkdir(parents=True)
    choose_another_folder(window)
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
    with desktop(put(home, "server map.json", MAP)) as asked:
        window.focus("action.scan")
        window.tab_to("map.open_file")
        window.press("map.open_file")
        request = json.loads(asked())
        is_for_a_file = request["directory"] is False and request["title"] == window.texts["map.open_file"]
        expect(is_for_a_file, f"it asked for {request}")
        window.sees("~/server map.json")
        window.sees("films, 7 GB")


def choose_map_without_portal(window, home):
    put(home, "maps/server.json", MAP)
    window.focus("action.scan")
    window.tab_to("map.start")
    window.press("map.start")
    window.press("map.open_file")
    # The map behind has an area of that name too.
    window.sees("folder.parent")
    window.press("maps", exact=False)
    window.press("server.json", exact=False)
    window.sees("~/maps/server.json")
    window.sees("films, 7 GB")


if __name__ == "__main__":
    main({
        "hidden": Scenario(prepare_logs, clean_what_is_shown),
        **MANY,
        "pause": Scenario(prepare_copies, pause_in_the_middle),
        "quit": Scenario(prepare_twins, quit_in_the_middle),
        "portal": Scenario(prepare_twins, choose_by_portal),
        "chooser": Scenario(prepare_twins, choose_without_portal),
        "map-portal": Scenario(prepare_twins, choose_map_by_portal),
        "map-chooser": Scenario(prepare_twins, choose_map_without_portal),
    })
