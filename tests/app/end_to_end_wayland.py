#!/usr/bin/python3
"""Drives the window on Wayland, as an ordinary user, by what its controls are called: on a compositor without a screen
and without an input device, and on one that has a keyboard and a pointer, those of an X server of the test's own.
"""

import json
import os
import pathlib
import pwd
import subprocess
import sys
import tempfile
import time

from end_to_end_consent import desktop, prepare_logs
from window_driver import (
    CONTROL, DOWN, ESCAPE, MENU, PATIENCE, Window, accessibility, environment_of, expect, main,
    telling_what_is_seen, texts_in, wait_for, write_settings, x_server,
)

ORDINARY = "nobody"
SCREEN = (1400, 1000)
BESIDE = 100  # pixels of the X server at the right of the compositor's screen
SIZE = (1010, 690)  # of the window, as it was left
LEAST = (900, 600)  # that it can have
# Of the screen and of the window to drag from. Nothing else has them.
BACKGROUND = (0x10, 0x20, 0x30)
SOURCE = (0xC0, 0x20, 0x80)
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


def box_of(is_meant, least):
    """Left, top, right and bottom of the pixels on the screen that are meant, by the rows that have that many."""
    import gi

    gi.require_version("Gdk", "3.0")
    from gi.repository import Gdk

    width, height = SCREEN
    shot = Gdk.pixbuf_get_from_window(Gdk.get_default_root_window(), 0, 0, width, height)
    pixels, stride = shot.get_pixels(), shot.get_rowstride()
    counts = [sum(map(is_meant, zip(*[iter(pixels[y * stride:y * stride + 3 * width])] * 3))) for y in range(height)]
    rows = [y for y in range(height) if counts[y] >= least]
    if not rows:
        return None
    middle = pixels[(rows[0] + rows[-1]) // 2 * stride:]
    columns = [x for x in range(width) if is_meant(tuple(middle[3 * x:3 * x + 3]))]
    return columns[0], rows[0], columns[-1], rows[-1]


def drag(window, start, end):
    """With the left button, step by step: each is to be seen by who follows the pointer."""
    mouse = window.atspi.generate_mouse_event
    steps = 30
    # The compositor reads where the pointer is when it comes in, and adds up its steps from then on; it may have missed
    # the first time. The window under a pointer that stays is told of it anew only once it moves.
    for place in ((SCREEN[0] + BESIDE // 2, start[1]), (start[0] - 20, start[1] - 20), start):
        mouse(*place, "abs")
        time.sleep(0.05)
    mouse(*start, "b1p")
    for step in range(1, steps + 1):
        mouse(*[round(a + (b - a) * step / steps) for a, b in zip(start, end)], "abs")
        time.sleep(0.02)
    mouse(*end, "b1r")


def within(seconds, look):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        if look():
            return True
        time.sleep(0.03)
    return False


def corner_of(window):
    """The lower right one of its frame, once the screen shows the window as large as it is."""

    def look():
        box = box_of(lambda pixel: pixel != BACKGROUND, 300)
        return box if box and 0 <= box[2] - box[0] - size_of(window)[0] < 10 else None

    box = wait_for("the window's frame", look)
    return box[2] - 1, box[3] - 1


def is_resized_by_the_pointer(session, home):
    window = session.start()
    window.sees("action.scan")
    width, height = size_of(window)

    def pulled(less, is_meant):
        """Whether the corner, pulled inwards, gave the size. A press while the pointer's shape changes goes nowhere."""
        corner = corner_of(window)
        drag(window, corner, (corner[0] - less[0], corner[1] - less[1]))
        return within(2, lambda: is_meant(*size_of(window)))

    wait_for("a smaller window", lambda: pulled((60, 40), lambda w, h: LEAST[0] < w < width and LEAST[1] < h < height))
    wait_for("the least size", lambda: pulled((500, 400), lambda *size: size == LEAST))
    window.press("nav.cleanup")
    window.sees("cleanup.empty_title")


def takes_a_dropped_folder(session, home):
    window = session.start()
    window.sees("action.scan")
    script = pathlib.Path(__file__).with_name("drag_source.py")
    command = [sys.executable, script, home / "Downloads/Logs", *map(str, SOURCE)]
    source = subprocess.Popen(command, stdout=subprocess.PIPE, env={**os.environ, **ON_WAYLAND, "GDK_BACKEND": "wayland"})

    def drag_over():
        left, top, right, bottom = wait_for("the other window", lambda: box_of(lambda pixel: pixel == SOURCE, 30))
        start = (left + right) // 2, (top + bottom) // 2
        drag(window, start, (SCREEN[0] // 2, SCREEN[1] // 2 + (120 if start[1] < SCREEN[1] // 2 else -120)))
        return within(3, lambda: window.find("Look into “Logs”?"))

    try:
        source.stdout.readline()
        wait_for("the question of a drop", drag_over)
        window.press("Add and Scan")
        window.press("nav.cleanup")
        window.sees("web.log")
    finally:
        source.terminate()
        source.wait(PATIENCE)


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
        expect(window.find("action.open") and window.find("cleanup.why"), "the menu lacks an entry")
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
WITH_DEVICES = ["--backend=x11-backend.so", f"--width={SCREEN[0]}", f"--height={SCREEN[1]}", "--use-pixman"]
SCENARIOS = {
    "bare": (cleans_and_undoes, ["--backend=headless-backend.so"]),
    "devices": (is_handled_and_remembered, WITH_DEVICES),
    "resize": (is_resized_by_the_pointer, WITH_DEVICES),
    "drop": (takes_a_dropped_folder, WITH_DEVICES),
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
        (runtime / "weston.ini").write_text("[shell]\npanel-position=none\nlocking=false\nanimation=none\n"
                                            "startup-animation=none\nclose-animation=none\n"
                                            "background-color=0xff{:02x}{:02x}{:02x}\n".format(*BACKGROUND))
        if os.geteuid() == 0:
            subprocess.run(["chown", "-R", ORDINARY + ":", top], check=True)
        runtime.chmod(0o700)
        started = {"env": environment_of(home, runtime), "preexec_fn": become_ordinary, "cwd": "/"}
        with x_server(f"{SCREEN[0] + BESIDE}x{SCREEN[1]}", **started) as display:
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
