#!/usr/bin/python3
"""Drives the real window as assistive technology would: by what its controls are called.

    end_to_end.py PROGRAM

Everything is the test's own: X server, message bus, home and settings.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

PATIENCE = 30  # seconds


class Failure(Exception):
    pass


def wait_for(what, look):
    """What `look` gives as soon as it gives anything."""
    deadline = time.monotonic() + PATIENCE
    while True:
        found = look()
        if found:
            return found
        if time.monotonic() > deadline:
            raise Failure(f"waited in vain for {what}")
        time.sleep(0.03)


class Window:
    """The program's controls, as they are shown at the moment."""

    def __init__(self, atspi, process):
        self.atspi = atspi
        self.process = process
        self.top = wait_for("the window", self._find_application)

    def _find_application(self):
        if self.process.poll() is not None:
            raise Failure(f"the program ended with status {self.process.returncode}")
        desktop = self.atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(index)
            if child and child.get_name() == "orvane" and child.get_child_count() > 0:
                return child
        return None

    def shown(self):
        """Every control that can be seen, from the top down."""
        waiting = [self.top]
        while waiting:
            control = waiting.pop()
            try:
                states = control.get_state_set()
                children = [control.get_child_at_index(i) for i in range(control.get_child_count())]
            except self.glib_error:
                continue  # it went while we looked
            if states.contains(self.atspi.StateType.SHOWING):
                yield control
            waiting.extend(reversed([child for child in children if child]))

    def names(self):
        result = []
        for control in self.shown():
            try:
                result.append(control.get_name() or "")
            except self.glib_error:
                continue
        return result

    def find(self, name, exact=True):
        for control in self.shown():
            try:
                known = (control.get_name() or "").replace("\u00a0", " ")
            except self.glib_error:
                continue
            if known == name or (not exact and name in known):
                return control
        return None

    def sees(self, name):
        return wait_for(f"“{name}”", lambda: self.find(name, exact=False))

    def press(self, name):
        def act():
            control = self.find(name)
            if not control:
                return False
            try:
                if not control.get_state_set().contains(self.atspi.StateType.ENABLED):
                    return False
                action = self.atspi.Action
                names = [action.get_action_name(control, index) for index in range(action.get_n_actions(control))]
                return action.do_action(control, names.index("Press"))
            except self.glib_error:
                return False

        wait_for(f"a press of “{name}”", act)

    def is_checked(self, name):
        control = wait_for(f"“{name}”", lambda: self.find(name, exact=False))
        return control.get_state_set().contains(self.atspi.StateType.CHECKED)


def expect(condition, what):
    if not condition:
        raise Failure(what)


def scan_clean_undo(window, home):
    trash = home / ".local/share/Trash/files"
    log = home / "Downloads/Logs/old.log"
    letter = home / "Downloads/letter.txt"
    content = log.read_bytes()

    window.press("Scan Now")
    window.press("Cleanup")
    window.sees("3 items found")
    expect(window.is_checked("old.log, Safe"), "a safe item is not selected")
    expect(not window.is_checked("new.dmg, Review"), "an item to review is selected")
    expect(not window.is_checked("letter.txt, Manual"), "a manual item is selected")

    window.press("Clean Selected · 1")
    window.sees("Successfully moved 1 items to the Trash, reclaiming 5 KB.")
    expect(not log.exists() and (trash / "old.log").read_bytes() == content, "the log is not in the Trash")
    expect(letter.exists() and (home / "Downloads/new.dmg").exists(), "something was moved that nobody selected")
    expect([path.name for path in trash.iterdir()] == ["old.log"], "there is more in the Trash than was selected")
    window.press("OK")

    window.press("Undo Clean")
    wait_for("the log to come back", log.exists)
    expect(log.read_bytes() == content, "another log came back")
    wait_for("an empty Trash", lambda: not list(trash.iterdir()))

    window.press("History")
    window.sees("Restored")


def change_language(window):
    window.press("Overview")
    window.press("Language")
    window.press("日本語")
    window.sees("クリーンアップ")
    wait_for("no English section", lambda: "Settings" not in window.names())
    window.press("言語")
    window.press("English")
    window.sees("Settings")


def second_start(window, program):
    """Ends at once, and shows the section that it names in the first one."""
    second = subprocess.run([program, "--show", "privacy"], timeout=PATIENCE, check=False)
    expect(second.returncode == 0, "a second start failed")
    window.sees("What Orvane sees, and what it never sends.")


def inside(program, home):
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib

    Atspi.init()
    process = subprocess.Popen([program])
    try:
        Window.glib_error = GLib.Error
        window = Window(Atspi, process)
        try:
            scan_clean_undo(window, home)
            change_language(window)
            second_start(window, program)
            settings = json.loads((home / ".config/orvane/preferences.json").read_text())
            expect(settings.get("OrvaneLanguage") == "en", "the language is not remembered")
        except Failure as failure:
            shown = "\n  ".join(name for name in window.names() if name)
            raise Failure(f"{failure}; what can be seen:\n  {shown}") from None
    finally:
        process.terminate()
        process.wait(PATIENCE)


def prepare(home):
    downloads = home / "Downloads"
    (downloads / "Logs").mkdir(parents=True)
    (downloads / "Logs/old.log").write_bytes(bytes(range(250)) * 20)
    (downloads / "new.dmg").write_bytes(b"i" * 9000)
    (downloads / "letter.txt").write_text("Dear all")
    settings = home / ".config/orvane"
    settings.mkdir(parents=True)
    (settings / "preferences.json").write_text(json.dumps({"hasCompletedOnboarding": True}))


def main():
    program = sys.argv[1]
    if len(sys.argv) > 2:
        return inside(program, pathlib.Path(sys.argv[2]))
    with tempfile.TemporaryDirectory(prefix="orvane-window-", ignore_cleanup_errors=True) as top:
        home = pathlib.Path(top) / "home"
        runtime = pathlib.Path(top) / "runtime"
        runtime.mkdir(mode=0o700)
        prepare(home)
        read, write = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x900x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write],
            stderr=subprocess.DEVNULL,
        )
        os.close(write)
        try:
            display = os.read(read, 16).decode().strip()
            expect(display, "there is no X server")
            environment = {
                "PATH": "/usr/bin:/bin",
                "HOME": str(home),
                "XDG_RUNTIME_DIR": str(runtime),
                "DISPLAY": f":{display}",
                "LANG": "en_US.UTF-8",
                "QT_QUICK_BACKEND": "software",
                "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                # Without a settings store of the desktop there is nothing to wait for.
                "GSETTINGS_BACKEND": "memory",
                # One name of the library's is shadowed by an older one.
                "PYTHONWARNINGS": "ignore::DeprecationWarning",
            }
            command = ["dbus-run-session", "--", sys.executable, __file__, program, str(home)]
            return subprocess.run(command, env=environment, check=False).returncode
        finally:
            server.terminate()
            server.wait()


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as failure:
        sys.exit(f"end_to_end.py: {failure}")
