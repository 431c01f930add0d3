#!/usr/bin/python3
"""Walks all that assistive technology is told of every section, empty and full, and finds no control without a name;
in the least window none that stands outside.
"""

import re

from end_to_end_moves import prepare_applications, prepare_duplicates
from window_driver import END, RETURN, TAB, Scenario, expect, main, put, wait_for

SMALL = {"hasCompletedOnboarding": True, "OrvaneLanguage": "fr", "window": {"width": 900, "height": 600}}
# The controls that a person acts on, by the names of roles that assistive technology uses.
INTERACTIVE = {
    "check box", "check menu item", "combo box", "entry", "link", "list", "list item", "menu item", "page tab",
    "password text", "push button", "push button menu", "radio button", "radio menu item", "slider", "spin button",
    "text", "toggle button",
}


# Controls to press, one after the other, where a star stands for the end of a name; a text that shows then; the state.
STATES = [
    (["action.scan"], "Last scan", "Overview, after a scan"),
    # The result leads to its items.
    (["Review *"], "items found", "Cleanup, after a scan"),
    (["Sort by: Size"], "sort.date", "Cleanup, a menu"),
    (["sort.date", "nav.duplicates", "duplicates.search"], "2 copies", "Duplicates, found"),
    (["nav.apps", "Review: Paint"], "Uninstall Paint", "Applications, an uninstallation"),
    (["action.cancel", "nav.organize", "Folder: Choose a Folder", "Downloads", "organize.analyze"], "moves",
     "Organize, a proposal"),
    (["organize.rename_title*"], "Orvane remembers the name", "Organize, a new name"),
    (["action.cancel", "Move *"], "moved.", "Organize, moved"),
    (["nav.rules", "rules.add"], "rules.extensions", "Rules, the editor"),
]


def sections_of(window):
    """The keys of the sections' names."""
    return [key for key in window.texts if key.startswith("nav.") and key != "nav.language"]


def nameless(window):
    """The controls without a name, each by its role and the names around it."""
    found = []
    seen = 0

    def look_at(control):
        nonlocal seen
        role = control.get_role_name()
        if role not in INTERACTIVE and (not window.has(control, "FOCUSABLE") or role in ("frame", "application")):
            return
        seen += 1
        parent = control.get_parent()
        # The toolkit tells no name of its own for a field of secrets.
        name = parent.get_name() if role == "password text" else control.get_name()
        if (name or "").strip():
            return
        around = []
        while parent:
            around.append(parent.get_name() or parent.get_role_name())
            parent = parent.get_parent()
        found.append(f"{role} in {' < '.join(around)}")

    for control in window.shown():
        window.safely(lambda: look_at(control))
    # A sheet is all there is while it is open.
    least = len(sections_of(window)) if window.find("nav.overview") else 1
    expect(seen > least, "the walk found hardly anything to act on")
    return found


def tab_until(window, beginning):
    """Walks with the Tab key until a control whose name begins so, a pattern, has the keyboard."""

    def is_meant(control):
        return window.has(control, "FOCUSED") and re.match(beginning, window.safely(control.get_name) or "")

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
    put(home, "Library/Logs/old/run.log", "line\n" * 500)
    put(home, "Downloads/report.pdf", b"words" * 900)


def walk(window, home):
    for section in sections_of(window):
        window.press(section)
        check(window, f"{section}, empty")
    window.press("nav.settings")
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
    for controls, seen, where in STATES:
        for control in controls:
            window.press(control.rstrip("*"), exact=not control.endswith("*"))
        window.sees(seen)
        check(window, where)
    window.press("action.cancel")
    window.ask("delete pdf files older than 30 days in downloads")
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
    width = window.extents(frame).width
    found = []
    for control in window.shown():
        if window.safely(control.get_role_name) not in INTERACTIVE:
            continue
        place = window.safely(lambda: window.extents(control))
        if place and not 0 <= place.x <= width - place.width:
            found.append(f"{window.safely(control.get_name)} from {place.x} to {place.x + place.width} of {width}")
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
    window.type("action.search", "run")
    wait_for("the way out of the search", lambda: window.find("cleanup.show_all"))
    expect(not cut_off(window), f"Cleanup, searched: {cut_off(window)}")
    for section in ("duplicates", "apps", "organize", "rules", "agent", "history", "privacy", "settings"):
        window.press("nav." + section)
        expect(not cut_off(window), f"{section}: {cut_off(window)}")


if __name__ == "__main__":
    main({"names": Scenario(prepare, walk), "small": Scenario(prepare, stay_inside, SMALL)})
