#!/usr/bin/python3
"""Starts the window on a Wayland compositor without a screen and without an input device, as an ordinary user, by what
its controls are called.

    end_to_end_wayland.py PROGRAM
"""

import os
import pathlib
import pwd
import signal
import subprocess
import sys
import tempfile

from end_to_end_consent import prepare_logs
from window_driver import PATIENCE, Failure, Window, english_texts, expect, wait_for, write_settings

ORDINARY = "nobody"


def drive(program, home):
    """As the ordinary user, on the bus of the session."""
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib

    Window.glib_error = GLib.Error
    Atspi.init()
    process = subprocess.Popen([program])
    try:
        window = Window(Atspi, process, english_texts(program))
        window.press("Scan Now")
        window.press("Cleanup")
        window.sees("3 selected")
        window.press("Clean Selected · 3")
        wait_for("the logs to go", lambda: not any((home / "Downloads/Logs").iterdir()))
        window.press("OK")
        window.press("Undo Clean")
        wait_for("the logs to come back", lambda: len(list((home / "Downloads/Logs").iterdir())) == 3)
        expect(process.poll() is None, "the program ended")
    finally:
        process.terminate()
        process.wait(PATIENCE)


def become_ordinary():
    if os.geteuid() != 0:
        return
    user = pwd.getpwnam(ORDINARY)
    os.setgroups([])
    os.setgid(user.pw_gid)
    os.setuid(user.pw_uid)


def main(program):
    with tempfile.TemporaryDirectory(prefix="orvane-wayland-", ignore_cleanup_errors=True) as top:
        home, runtime = pathlib.Path(top) / "home", pathlib.Path(top) / "runtime"
        runtime.mkdir()
        write_settings(home, {"hasCompletedOnboarding": True})
        prepare_logs(home)
        if os.geteuid() == 0:
            subprocess.run(["chown", "-R", ORDINARY + ":", top], check=True)
        runtime.chmod(0o700)
        environment = {
            "PATH": "/usr/bin:/bin",
            "HOME": str(home),
            "XDG_RUNTIME_DIR": str(runtime),
            "WAYLAND_DISPLAY": "wayland-test",
            "XDG_SESSION_TYPE": "wayland",
            "LANG": "en_US.UTF-8",
            "QT_QUICK_BACKEND": "software",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "GSETTINGS_BACKEND": "memory",
            "PYTHONWARNINGS": "ignore::DeprecationWarning",
            "PYTHONDONTWRITEBYTECODE": "1",
        }
        started = {"env": environment, "preexec_fn": become_ordinary, "cwd": "/"}
        compositor = subprocess.Popen(
            ["weston", "--backend=headless-backend.so", "--socket=wayland-test", "--idle-time=0"],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            **started,
        )
        try:
            wait_for("the compositor", (runtime / "wayland-test").exists)
            script = str(pathlib.Path(__file__).resolve())
            command = ["dbus-run-session", "--", sys.executable, script, str(pathlib.Path(program).resolve()), str(home)]
            return subprocess.run(command, check=False, **started).returncode
        finally:
            compositor.send_signal(signal.SIGTERM)
            compositor.wait(PATIENCE)


if __name__ == "__main__":
    try:
        sys.exit(drive(sys.argv[1], pathlib.Path(sys.argv[2])) if len(sys.argv) == 3 else main(sys.argv[1]))
    except Failure as failure:
        sys.exit(f"end_to_end_wayland.py: {failure}")
