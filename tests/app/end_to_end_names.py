#!/usr/bin/python3
"""Walks all that assistive technology is told of every section, empty and full, and finds no control without a name;
in the least window none that stands outside.

    end_to_end_names.py PROGRAM [SCENARIO]
"""

import re
import sys

from end_to_end_moves import prepare_applications, prepare_duplicates
from window_driver import Scenario, expect, main, wait_for

END = 0xFF57  # keys' symbols in X
RETURN = 0xFF0D
TAB = 0xFF09
SMALL = {"hasCompletedOnboarding": True, "OrvaneLanguage": "fr", "window": {"width": 900, "height": 600}}
SECTIONS = [
    "Overview", "Cleanup", "Duplicates", "Applications", "Organize", "Rules", "AI Agent", "History", "Privacy",
    "Settings",
]
# The controls that a person acts on, by the names of roles that assistive technology uses.
INTERACTIVE = {
    "check box", "check menu item", "combo box", "entry", "link", "list", "list item", "menu item", "page tab",
    "password text", "push button", "push button menu", "radio button", "radio menu item", "slider", "spin button",
    "text", "toggle button",
}


def nameless(window):
    """The controls without a name, each by its role and the names around it."""
    found = []
    seen = 0
    for control in window.shown():
        try:
            role = control.get_role_name()
            name = control.get_name()
            states = control.get_state_set()
            focusable = states.contains(window.atspi.StateType.FOCUSABLE)
            if role not in INTERACTIVE and not (focusable and role not in ("frame", "application")):
                continue
            seen += 1
            if role == "password text":
                name = control.get_parent().get_name()  # the toolkit tells none of its own
            if not (name or "").strip():
                around = []
                parent = control.get_parent()
                while parent:
                    around.append(parent.get_name() or parent.get_role_name())
                    parent = parent.get_parent()
                found.append(f"{role} in {' < '.join(around)}")
        except window.glib_error:
            continue
    # A sheet is all there is while it is open.
    least = len(SECTIONS) if window.find(SECTIONS[0]) else 1
    expect(seen > least, "the walk found hardly anything to act on")
    return found


def tab_until(window, beginning):
    """Walks with the Tab key until a control whose name begins so, a pattern, has the keyboard."""

    def is_meant(control):
        try:
            has_keyboard = control.get_state_set().contains(window.atspi.StateType.FOCUSED)
            return has_keyboard and re.match(beginning, control.get_name())
        except window.glib_error:
            return False

    for _ in range(150):
        if any(is_meant(control) for control in window.shown()):
            return
        window.key(TAB)
    expect(False, f"no way by the Tab key to “{beginning}”")


def check(window, where):
    missing = nameless(window)
    expect(not missing, f"{where}: without a name: " + "; ".join(sorted(set(missing))))


def prepare(home):
    prepare_duplicates(home)
    prepare_applications(home)
    logs = home / "Library/Logs/old"
    logs.mkdir(parents=True)
    (logs / "run.log").write_bytes(b"line\n" * 500)
    (home / "Downloads/report.pdf").write_bytes(b"words" * 900)


def walk(window, home):
    for section in SECTIONS:
        window.press(section)
        check(window, f"{section}, empty")
    window.focus("settings.add_folder")
    window.key(END)
    window.sees("settings.show_again")
    check(window, "Settings, its foot")

    window.press("nav.overview")
    tab_until(window, "Map Home Folder")
    window.key(RETURN)
    window.sees("map.largest")
    check(window, "Overview, a map")
    for filter_by in ("Show as: ", "Measure: ", "Kind: ", "Last change: ", "Category: "):
        tab_until(window, filter_by)
    window.press("Kind: ", exact=False)
    window.sees("map.kind.pictures")
    check(window, "Overview, a filter of the map")
    window.press("map.kind.all")
    # Into a folder from an area of the picture, up by the path, and in again from the list, which names its state too.
    for beginning in ("Downloads, ", r"Downloads, .*, yours"):
        tab_until(window, beginning)
        window.key(RETURN)
        window.sees("report.pdf, ")
        check(window, "Overview, a folder of the map")
        tab_until(window, "~")
        window.key(RETURN)
        window.sees("Downloads, ")
    window.press("action.scan")
    window.sees("Last scan")
    check(window, "Overview, after a scan")
    window.press("nav.cleanup")
    window.sees("items found")
    check(window, "Cleanup, after a scan")
    window.press("Sort by: Size")
    window.sees("sort.date")
    check(window, "Cleanup, a menu")
    window.press("sort.date")
    window.press("nav.duplicates")
    window.press("duplicates.search")
    window.sees("2 copies")
    check(window, "Duplicates, found")
    window.press("nav.apps")
    window.press("Review: Paint")
    window.sees("Uninstall Paint")
    check(window, "Applications, an uninstallation")
    window.press("action.cancel")
    window.press("nav.organize")
    window.press("Folder: Choose a Folder")
    window.press("Downloads")
    window.press("organize.analyze")
    window.sees("moves")
    check(window, "Organize, a proposal")
    window.press("organize.rename_title", exact=False)
    window.sees("Orvane remembers the name")
    check(window, "Organize, a new name")
    window.press("action.cancel")
    window.press("Move ", exact=False)
    window.sees("moved.")
    check(window, "Organize, moved")
    window.press("nav.rules")
    window.press("rules.add")
    window.sees("rules.extensions")
    check(window, "Rules, the editor")
    window.press("action.cancel")
    window.press("nav.agent")
    window.type("agent.prompt", "delete pdf files older than 30 days in downloads")
    window.press("action.dry_run")
    window.sees("Plan by ")
    check(window, "AI Agent, a plan")
    window.press("agent.what_is_sent")
    window.sees("Nothing is sent")
    check(window, "AI Agent, the request")
    window.press("action.close")
    window.press("nav.history")
    window.press("Organize · ", exact=False)
    wait_for("an unfolded run", lambda: window.find("report.pdf", exact=False))
    check(window, "History, unfolded")


def cut_off(window):
    """The controls that reach beyond the window's right or left edge."""
    frame = next(control for control in window.shown() if control.get_role_name() == "frame")
    width = frame.get_component_iface().get_extents(window.atspi.CoordType.WINDOW).width
    found = []
    for control in window.shown():
        try:
            if control.get_role_name() not in INTERACTIVE:
                continue
            place = control.get_component_iface().get_extents(window.atspi.CoordType.WINDOW)
            if place.x < 0 or place.x + place.width > width:
                found.append(f"{control.get_name()} from {place.x} to {place.x + place.width} of {width}")
        except window.glib_error:
            continue
    return found


def stay_inside(window, home):
    """In a language of long words."""
    window.focus("action.scan")
    tab_until(window, window.texts["map.start"])
    expect(not cut_off(window), f"Overview: {cut_off(window)}")
    window.key(RETURN)
    tab_until(window, window.texts["map.again"])
    tab_until(window, window.texts["map.offer_no"])
    expect(not cut_off(window), f"Overview, a map: {cut_off(window)}")
    window.press("action.scan")
    window.press("nav.cleanup")
    wait_for("a result", lambda: window.find("action.select_recommended"))
    expect(not cut_off(window), f"Cleanup: {cut_off(window)}")
    for section in ("duplicates", "apps", "organize", "rules", "agent", "history", "privacy", "settings"):
        window.press("nav." + section)
        expect(not cut_off(window), f"{section}: {cut_off(window)}")


if __name__ == "__main__":
    sys.exit(main({"names": Scenario(prepare, walk), "small": Scenario(prepare, stay_inside, SMALL)}))
