#!/usr/bin/python3
"""Drives the window on Wayland, as an ordinary user, by what its controls are called: on a compositor without a screen
and without an input device, and on one that has a keyboard, that of an X server of the test's own.

    end_to_end_wayland.py PROGRAM [SCENARIO]
"""

import json
import os
import pathlib
import pwd
import subprocess
import sys
import tempfile

from end_to_end_consent import desktop, prepare_logs
from window_driver import (
    CONTROL, DOWN, ESCAPE, MENU, PATIENCE, Window, accessibility, environment_of, expect, main,
    telling_what_is_seen, texts_in, wait_for, write_settings, x_server,
)

ORDINARY = "nobody"
SCREEN = (1400, 1000)
SIZE = (1010, 690)  # of the window, as it was left
SOCKET = "wayland-test"
# For the program alone: who presses its keys does so on the X server.
ON_WAYLAND = {"WAYLAND_DISPLAY": SOCKET, "XDG_SESSION_TYPE": "wayland", "QT_QPA_PLATFORM": "wayland"}


class Session:
    """The program on the compositor, and what it takes to start it again."""

    def __init__(self, program):
        self.atspi = accessibility()
        self.program = program
        self.texts = texts_in("en", program)

    def start(self):
        self.process = subprocess.Popen([self.program], env={**os.environ, **ON_WAYLAND})
        self.window = Window(self.atspi, self.process, self.texts)
        return self.window

    def names(self):
        return self.window.names()

    def end(self):
        self.process.terminate()
        self.process.wait(PATIENCE)


def size_of(window):
    place = window.extents(window.top.get_child_at_index(0))
    return place.width, place.height


def cleans_and_undoes(session, home):
    window = session.start()
    window.scan("3 selected")
    window.press("Clean Selected · 3")
    wait_for("the logs to go", lambda: not any((home / "Downloads/Logs").iterdir()))
    window.press("action.ok")
    window.press("Undo Clean")
    wait_for("the logs to come back", lambda: len(list((home / "Downloads/Logs").iterdir())) == 3)
    expect(session.process.poll() is None, "the program ended")


def is_handled_and_remembered(session, home):
    """Menus by the keyboard, the icon in the tray; a second start has the size and the section of the first."""
    with desktop(home) as said:
        window = session.start()
        expect(said() == "tray\n", "there is no icon in the tray")
        expect(size_of(window) == SIZE, f"it is {size_of(window)} large")
        window.scan("3 selected")
        window.focus("nav.cleanup", "list")
        window.key(DOWN)
        window.key(MENU)
        window.sees("action.copy_path")
        window.key(ESCAPE)
        wait_for("the menu to go", lambda: not window.find("action.copy_path"))

        window.hold(CONTROL, ord("q"))
        session.process.wait(PATIENCE)
        stored = json.loads((home / ".config/orvane/preferences.json").read_text())["window"]
        expect(stored["section"] == 1, f"it remembers {stored}")
        again = session.start()
        again.sees("cleanup.empty_title")
        expect(size_of(again) == SIZE, f"it is {size_of(again)} large")


# Each with the compositor's back end: one that draws nowhere has neither keyboard nor pointer.
SCENARIOS = {
    "bare": (cleans_and_undoes, ["--backend=headless-backend.so"]),
    "devices": (is_handled_and_remembered,
                ["--backend=x11-backend.so", f"--width={SCREEN[0]}", f"--height={SCREEN[1]}", "--use-pixman"]),
}


def drive(program, scenario, home):
    """As the ordinary user, on the bus of the session."""
    session = Session(program)
    try:
        with telling_what_is_seen(session):
            scenario[0](session, home)
    finally:
        session.end()


def become_ordinary():
    if os.geteuid() != 0:
        return
    user = pwd.getpwnam(ORDINARY)
    os.setgroups([])
    os.setgid(user.pw_gid)
    os.setuid(user.pw_uid)


def run(name):
    """One scenario: a home, an X server, a compositor on it and a session bus that nobody else has."""
    script, program = (str(pathlib.Path(path).resolve()) for path in (__file__, sys.argv[1]))
    with tempfile.TemporaryDirectory(prefix="orvane-wayland-", ignore_cleanup_errors=True) as top:
        home, runtime = pathlib.Path(top) / "home", pathlib.Path(top) / "runtime"
        runtime.mkdir()
        write_settings(home, {"hasCompletedOnboarding": True, "window": {"width": SIZE[0], "height": SIZE[1]}})
        prepare_logs(home)
        (runtime / "weston.ini").write_text("[shell]\npanel-position=none\nlocking=false\n")
        if os.geteuid() == 0:
            subprocess.run(["chown", "-R", ORDINARY + ":", top], check=True)
        runtime.chmod(0o700)
        started = {"env": environment_of(home, runtime), "preexec_fn": become_ordinary, "cwd": "/"}
        with x_server("{}x{}".format(*SCREEN), **started) as display:
            # The compositor's devices, and by them those of whoever drives the window.
            started["env"]["DISPLAY"] = display
            compositor = subprocess.Popen(
                ["weston", *SCENARIOS[name][1], f"--config={runtime}/weston.ini", f"--socket={SOCKET}",
                 "--idle-time=0"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **started)
            try:
                wait_for("the compositor", (runtime / SOCKET).exists)
                command = ["dbus-run-session", "--", sys.executable, script, program, name, str(home)]
                return subprocess.run(command, check=False, **started).returncode
            finally:
                compositor.terminate()
                compositor.wait(PATIENCE)


if __name__ == "__main__":
    main(SCENARIOS, drive, run)
