#!/usr/bin/python3
"""Drives the sections in which the user says what is to go: rules, and the assistant without a network."""

import os

from window_driver import Scenario, expect, files_below, main, moves_and_undoes, put, wait_for

SMALL = {"hasCompletedOnboarding": True, "OrvaneLanguage": "de", "window": {"width": 900, "height": 600}}


def prepare_rules(home):
    for name in ("old.log", "old.dat"):
        put(home, f"Downloads/Logs/{name}", "line\n" * 400, days=60)


def write_and_run_rule(window, home):
    before = files_below(home / "Downloads")
    window.press("nav.rules")
    window.press("rules.add")
    window.type("rules.name", "Drop logs")
    window.type("rules.extensions", "log")
    window.press("What happens: To the Trash")
    window.press("rules.review_only")
    window.press("What happens: Review Only")
    window.press("rules.to_trash")
    window.sees("1 file right now, 2 KB")
    window.press("action.save")
    window.sees("13 rules, 9 switched on")

    # None of the rules that come with the program takes a log outside the folder of logs.
    window.press("Run 9 Rules")
    window.sees("1 file right now, 2 KB")
    moves_and_undoes(window, home, before, "Run Now · 1 · 2 KB", {"Logs/old.dat": before["Logs/old.dat"]},
                     {"old.log": before["Logs/old.log"]}, "1 item moved, 2 KB in all.")


def prepare_assistant(home):
    for name, days in (("setup.dmg", 60), ("new.dmg", 0), ("letter.txt", 60)):
        put(home, f"Downloads/{name}", name * 500, days)


def ask_assistant(window, home):
    before = files_below(home / "Downloads")
    window.press("nav.agent")
    window.sees("agent.offline_badge")
    window.ask("delete dmg files older than 30 days in downloads")
    window.sees("Plan by ")
    window.sees("setup.dmg, ")
    expect(not window.find("new.dmg", exact=False), "the plan takes a new file")
    if not window.is_checked("setup.dmg, "):
        window.press("setup.dmg, ", exact=False)
    after = {name: content for name, content in before.items() if name != "setup.dmg"}
    moves_and_undoes(window, home, before, "Confirm & Apply · 1 · 4 KB", after, {"setup.dmg": before["setup.dmg"]},
                     "1 item moved.")


def prepare_long_figures(home):
    prepare_assistant(home)
    setup = home / "Downloads/setup.dmg"
    status = setup.stat()
    os.truncate(setup, 123_400_000)
    os.utime(setup, (status.st_atime, status.st_mtime))


def plan_in_a_small_window(window, home):
    """In the language of the longest words, and the least size."""
    window.ask("delete dmg files older than 30 days in downloads")
    window.press("action.select_all")
    window.sees("Bestätigen und anwenden · 1 · 123,4 MB")
    card = window.place_of("agent.dry_run_title")
    button = window.place_of("agent.save_rule")
    expect(button.x >= card.x, f"a button at {button.x} stands outside of its card at {card.x}")


def prepare_understanding(home):
    put(home, "Downloads/old.log", "line\n" * 400, days=400)
    for place in (".cache/mozilla", ".cache/pip"):
        put(home, f"{place}/data", b"1" * 3000)


def ask_and_be_understood(window, home):
    downloads = home / "Downloads"
    before = files_below(downloads)
    window.ask("don't delete files older than a year")
    window.sees("Not understood; here is the closest")
    window.sees("It says that something must stay.")
    expect(not window.is_checked("old.log, "), "a plan that was not understood comes selected")

    window.ask("clear browser caches", before="don't delete files older than a year")
    window.sees("Browser Caches of programs are a category of their own: 3 KB")
    window.press("Add to the Plan")
    window.press("Confirm & Apply · 1 · 3 KB")
    window.sees("1 item moved.")
    expect(not (home / ".cache/mozilla").exists(), "the browser's cache is still there")
    expect((home / ".cache/pip/data").exists(), "another cache went")

    window.ask("organize my downloads", before="clear browser caches")
    window.press("Open “Organize”")
    window.sees("Downloads")
    expect(files_below(downloads) == before, "a file moved that nobody asked for")


def prepare_conditions(home):
    screenshot = "Screenshot 2026-01-01 at 10.00.00.png"
    for name, days in (("old.pdf", 400), ("older.pdf", 500), ("month.dmg", 40), (screenshot, 90)):
        put(home, f"Downloads/{name}", name * 100, days)


def change_conditions(window, home):
    before = files_below(home / "Downloads")
    window.press("AI Agent")
    window.sees("Delete screenshots older than 30 days")
    expect(not window.find("Delete logs older than 30 days"), "a request is offered that does nothing here")
    window.ask("organize files older than 30 days in downloads")
    window.sees("Downloads → Downloads/Documents/PDFs, 2 files")
    expect(window.is_checked("action.select_all"), "a move does not come selected")

    # A narrower plan keeps what was chosen.
    window.press("Age: older than 30 days → 30 days")
    window.press("90 days")
    window.sees("No longer as typed")
    wait_for("the younger file to go", lambda: not window.find("month.dmg, ", exact=False))
    window.sees("Confirm & Apply · 3 · ")
    window.press("Add a condition: Extensions")
    window.press("agent.other_value")
    window.type("rules.extensions", "pdf")
    window.press("agent.look_again")
    window.sees("Confirm & Apply · 2 · ")

    # A wider one starts over.
    window.press("Age: 90 days")
    window.press("agent.remove_condition")
    window.sees("nothing is selected")
    expect(not window.is_checked("old.pdf, "), "a wider plan comes selected")
    window.press("action.select_all")
    after = {"Documents/PDFs/" + name if name.endswith(".pdf") else name: content for name, content in before.items()}
    moves_and_undoes(window, home, before, "Confirm & Apply · 2 · ", after, result="2 items moved.")

    window.press("Delete screenshots older than 30 days")
    window.sees("Screenshot 2026-01-01 at 10.00.00.png, ")


if __name__ == "__main__":
    main({
        "rules": Scenario(prepare_rules, write_and_run_rule),
        "assistant": Scenario(prepare_assistant, ask_assistant),
        "small": Scenario(prepare_long_figures, plan_in_a_small_window, SMALL),
        "conditions": Scenario(prepare_conditions, change_conditions),
        "understanding": Scenario(prepare_understanding, ask_and_be_understood),
    })
