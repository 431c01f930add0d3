"""What the tests of the window share: a desktop of their own, and the window by what its controls are called."""

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


def texts_in(language, program):
    """The window's texts by key, from the terminal program that was built or installed beside it."""
    installed = pathlib.Path(program).with_name("orvanectl")
    orvanectl = installed if installed.exists() else pathlib.Path(program).parent.parent / "cli/orvanectl"
    shown = subprocess.run([orvanectl, "strings", "--json", "--language", language], stdout=subprocess.PIPE, check=True)
    return {key: text.replace("\u00a0", " ") for key, text in json.loads(shown.stdout).items()}


class Window:
    """The program's controls, as they are shown at the moment. They go by the key of their text, or by the text itself
    where it says more than that."""

    def __init__(self, atspi, process, texts):
        self.atspi = atspi
        self.texts = texts
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

    def find_all(self, name, exact=True, role=None):
        name = self.texts.get(name, name)
        for control in self.shown():
            try:
                if role and control.get_role_name() != role:
                    continue
                known = (control.get_name() or "").replace("\u00a0", " ")
            except self.glib_error:
                continue
            if known == name or (not exact and name in known):
                yield control

    def find(self, name, exact=True, role=None):
        return next(self.find_all(name, exact, role), None)

    def sees(self, name):
        return wait_for(f"“{name}”", lambda: self.find(name, exact=False))

    def press(self, name, exact=True):
        """Presses the first control of that name that can be pressed: a mere text may say the same."""

        def press_one(control):
            try:
                if not control.get_state_set().contains(self.atspi.StateType.ENABLED):
                    return False
                action = self.atspi.Action
                names = [action.get_action_name(control, index) for index in range(action.get_n_actions(control))]
                return "Press" in names and action.do_action(control, names.index("Press"))
            except self.glib_error:
                return False

        wait_for(f"a press of “{name}”", lambda: any(press_one(control) for control in self.find_all(name, exact)))

    def focus(self, name, role=None):
        """Gives the keyboard to a control."""

        def act():
            control = self.find(name, role=role)
            if not control:
                return False
            try:
                if control.get_state_set().contains(self.atspi.StateType.FOCUSED):
                    return True
                control.grab_focus()
            except self.glib_error:
                pass
            return False

        wait_for(f"the keyboard on “{name}”", act)

    def tab_to(self, name, role=None):
        """Walks with the Tab key until a control further down a page comes into view."""
        for _ in range(80):
            if self.find(name, role=role):
                return
            self.key(0xFF09)
            time.sleep(0.02)
        self.focus(name, role)

    def type(self, name, text):
        """Types into a field, key by key."""
        self.focus(name, "text")
        for character in text:
            self.key(ord(character))

    def key(self, symbol):
        """A key by its symbol's number in X, which for a plain character is its own."""
        self.atspi.generate_keyboard_event(symbol, None, self.atspi.KeySynthType.SYM)

    def place_of(self, name):
        """Its x, y, width and height in the window."""
        control = wait_for(f"“{name}”", lambda: self.find(name, exact=False))
        return control.get_component_iface().get_extents(self.atspi.CoordType.WINDOW)

    def is_checked(self, name):
        control = wait_for(f"“{name}”", lambda: self.find(name, exact=False))
        return control.get_state_set().contains(self.atspi.StateType.CHECKED)


def expect(condition, what):
    if not condition:
        raise Failure(what)


def files_below(folder):
    """Content of each file below a folder, by its path from there."""
    return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def trash_of(home):
    return home / ".local/share/Trash/files"


def wait_for_all_back(home, folder, before):
    """Waits until a folder holds what it held, and the Trash nothing any more."""
    wait_for("everything to come back", lambda: files_below(folder) == before)
    wait_for("an empty Trash", lambda: not files_below(trash_of(home)))


class Scenario:
    """One start of the program in a home of its own: `prepare(home)`, then `act(window, home)`."""

    def __init__(self, prepare, act, settings=None):
        self.prepare = prepare
        self.act = act
        self.settings = {"hasCompletedOnboarding": True} if settings is None else settings


def write_settings(home, values):
    settings = home / ".config/orvane"
    settings.mkdir(parents=True)
    (settings / "preferences.json").write_text(json.dumps(values))


def drive(program, scenario, home):
    """Within the desktop made below: starts the program and does what the scenario does."""
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib

    Atspi.init()
    process = subprocess.Popen([program])
    try:
        Window.glib_error = GLib.Error
        window = Window(Atspi, process, texts_in(scenario.settings.get("OrvaneLanguage", "en"), program))
        try:
            scenario.act(window, home)
        except Failure as failure:
            shown = "\n  ".join(name for name in window.names() if name)
            raise Failure(f"{failure}; what can be seen:\n  {shown}") from None
    finally:
        process.terminate()
        process.wait(PATIENCE)


def in_own_desktop(command, scenario, screen="1280x900", environment=None):
    """Runs a command with the home's path as one more argument, on an X server, a message bus and in a home that nobody
    else has; gives its exit status."""
    with tempfile.TemporaryDirectory(prefix="orvane-window-", ignore_cleanup_errors=True) as top:
        home = pathlib.Path(top) / "home"
        runtime = pathlib.Path(top) / "runtime"
        runtime.mkdir(mode=0o700)
        write_settings(home, scenario.settings)
        scenario.prepare(home)
        read, write = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", screen + "x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write],
            stderr=subprocess.DEVNULL,
        )
        os.close(write)
        try:
            display = os.read(read, 16).decode().strip()
            expect(display, "there is no X server")
            made = {
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
                "PYTHONDONTWRITEBYTECODE": "1",
                **(environment or {}),
            }
            started = ["dbus-run-session", "--", *command, str(home)]
            return subprocess.run(started, env=made, check=False).returncode
        finally:
            os.close(read)
            server.terminate()
            server.wait()


def main(scenarios):
    """SCRIPT PROGRAM [NAME]: all scenarios, or the one of that name."""
    script, program, *rest = sys.argv
    try:
        if len(rest) == 2:
            return drive(program, scenarios[rest[0]], pathlib.Path(rest[1]))
        failed = [
            name
            for name in rest or scenarios
            if in_own_desktop([sys.executable, script, program, name], scenarios[name]) != 0
        ]
        return f"failed: {', '.join(failed)}" if failed else 0
    except Failure as failure:
        return f"{os.path.basename(script)}: {failure}"
