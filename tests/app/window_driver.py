"""What the tests of the window share: a desktop of their own, and the window by what its controls are called."""

import collections
import contextlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import time

PATIENCE = 30  # seconds
DAY = 86400  # seconds
# Keys by their symbols in X, and two that are held by their codes on a keyboard of X.
BACKSPACE, TAB, RETURN, ESCAPE, SPACE = 0xFF08, 0xFF09, 0xFF0D, 0xFF1B, 0x20
HOME, DOWN, END, MENU, F1 = 0xFF50, 0xFF54, 0xFF57, 0xFF67, 0xFFBE
SHIFT, CONTROL = 50, 37


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

    def safely(self, look, otherwise=None):
        """What `look` tells; `otherwise` where the control went meanwhile."""
        try:
            return look()
        except self.glib_error:
            return otherwise

    def has(self, control, state):
        return self.safely(lambda: control.get_state_set().contains(getattr(self.atspi.StateType, state)), False)

    def below(self, control):
        found = self.safely(lambda: [control.get_child_at_index(i) for i in range(control.get_child_count())], [])
        return [child for child in found if child]

    def all_below(self, control):
        for child in self.below(control):
            yield child
            yield from self.all_below(child)

    def shown(self):
        """Every control that can be seen, from the top down."""
        waiting = [self.top]
        while waiting:
            control = waiting.pop()
            if self.has(control, "SHOWING"):
                yield control
            waiting.extend(reversed(self.below(control)))

    def names(self):
        return [self.safely(control.get_name) or "" for control in self.shown()]

    def find_all(self, name, exact=True, role=None):
        name = self.texts.get(name, name)
        for control in self.shown():
            known = (self.safely(control.get_name) or "").replace("\u00a0", " ")
            is_meant = known == name or (not exact and name in known)
            if is_meant and (role is None or self.safely(control.get_role_name) == role):
                yield control

    def find(self, name, exact=True, role=None):
        return next(self.find_all(name, exact, role), None)

    def sees(self, name):
        return wait_for(f"“{name}”", lambda: self.find(name, exact=False))

    def press(self, name, exact=True):
        """Presses the first control of that name that can be pressed: a mere text may say the same."""
        action = self.atspi.Action

        def press_one(control):
            names = [action.get_action_name(control, index) for index in range(action.get_n_actions(control))]
            return "Press" in names and action.do_action(control, names.index("Press"))

        def press_first():
            enabled = (control for control in self.find_all(name, exact) if self.has(control, "ENABLED"))
            return any(self.safely(lambda: press_one(control)) for control in enabled)

        wait_for(f"a press of “{name}”", press_first)

    def focus(self, name, role=None):
        """Gives the keyboard to a control."""

        def act():
            control = self.find(name, role=role)
            if control and not self.has(control, "FOCUSED"):
                self.safely(control.grab_focus)
                return False
            return control

        wait_for(f"the keyboard on “{name}”", act)

    def tab_to(self, name, role=None):
        """Walks with the Tab key until a control further down a page comes into view."""
        for _ in range(80):
            if self.find(name, role=role):
                return
            self.key(TAB)
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

    def hold(self, modifier, key):
        """A key by its symbol in X while a modifier, by its code on a keyboard of X, is held."""
        synth = self.atspi.KeySynthType
        self.atspi.generate_keyboard_event(modifier, None, synth.PRESS)
        self.key(key)
        self.atspi.generate_keyboard_event(modifier, None, synth.RELEASE)

    def extents(self, control):
        component = control.get_component_iface()  # none of a control that went meanwhile
        return component and component.get_extents(self.atspi.CoordType.WINDOW)

    def place_of(self, name):
        """Its x, y, width and height in the window."""
        return self.extents(self.sees(name))

    def is_checked(self, name):
        return self.has(self.sees(name), "CHECKED")

    # Steps of users in several sections

    def scan(self, *seen):
        self.press("action.scan")
        self.press("nav.cleanup")
        self.sees("selected")
        for text in seen:
            self.sees(text)

    def look_for_duplicates(self, found="2 copies"):
        self.press("nav.duplicates")
        self.press("duplicates.search")
        self.sees(found)

    def look_into_downloads(self, found="2 moves"):
        """Has the organizer propose its moves."""
        self.press("nav.organize")
        self.press("Folder: Choose a Folder")
        self.press("Downloads")
        self.press("organize.analyze")
        self.sees(found)

    def ask_to_tidy(self):
        self.press("nav.settings")
        self.focus("settings.schedule_enabled")
        self.tab_to("tray.organize_now")
        self.press("tray.organize_now")

    def ask(self, request, before=""):
        """Has the assistant plan what is typed in the place of the request before."""
        self.press("nav.agent")
        self.focus("agent.prompt", "text")
        self.key(END)
        for _ in before:
            self.key(BACKSPACE)
        self.type("agent.prompt", request)
        self.press("action.dry_run")


def expect(condition, what):
    if not condition:
        raise Failure(what)


def put(home, place, content, days=0):
    """A file of this text or these bytes, so many days old, and the folders that it is in."""
    file = home / place
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_bytes(content if isinstance(content, bytes) else content.encode())
    if days:
        os.utime(file, (time.time() - days * DAY,) * 2)
    return file


def bring_to_front(section):
    """Nothing manages windows here: the window is active once a second start asked for it."""
    subprocess.run([sys.argv[1], "--show", section], timeout=PATIENCE, check=True)


def files_below(folder):
    """Content of each file below a folder, by its path from there. Those that go meanwhile are left out."""
    found = {}
    for top, _, names in os.walk(folder):
        for path in (pathlib.Path(top, name) for name in names):
            with contextlib.suppress(FileNotFoundError):
                if path.is_file():
                    found[str(path.relative_to(folder))] = path.read_bytes()
    return found


def trash_of(home):
    return home / ".local/share/Trash/files"


def moves_and_undoes(window, home, before, button, after, trashed=None, result=None, folder="Downloads",
                     undo="dashboard.undo"):
    """Nothing moves before the button is pressed. Then these files are left in the folder and those are in the Trash,
    by their paths with their contents, and all of them come back."""
    folder = home / folder
    expect(files_below(folder) == before, "something moved before it was said what")
    window.press(button, exact=False)
    if result:
        window.sees(result)
    wait_for("just the files that were shown to move", lambda: files_below(folder) == after)
    if trashed is not None:
        wait_for("just these in the Trash", lambda: files_below(trash_of(home)) == trashed)
    if undo == "action.undo":
        window.press("action.ok")
    window.press(undo)
    wait_for("everything to come back", lambda: files_below(folder) == before)
    wait_for("an empty Trash", lambda: not files_below(trash_of(home)))


# One start of the program in a home of its own: `prepare(home)`, then `act(window, home)`.
SHOWN_AROUND = {"hasCompletedOnboarding": True}
Scenario = collections.namedtuple("Scenario", "prepare act settings", defaults=[SHOWN_AROUND])


def write_settings(home, values):
    settings = home / ".config/orvane"
    settings.mkdir(parents=True)
    (settings / "preferences.json").write_text(json.dumps(values))


@contextlib.contextmanager
def telling_what_is_seen(window):
    try:
        yield
    except Failure as failure:
        shown = "\n  ".join(name for name in window.names() if name)
        raise Failure(f"{failure}; what can be seen:\n  {shown}") from None


def accessibility():
    """The library by which the window is driven."""
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi, GLib

    Window.glib_error = GLib.Error
    Atspi.init()
    return Atspi


@contextlib.contextmanager
def complaints_seen():
    """A file for what a program says on standard error, which is shown; its screens have nothing to say there."""
    with tempfile.TemporaryFile("w+") as file:
        try:
            yield file
        finally:
            file.seek(0)
            said = file.read()
            sys.stderr.write(said)
    complaints = {line for line in said.splitlines() if "qrc:/" in line}
    expect(not complaints, "a screen complains: " + "; ".join(sorted(complaints)))


def drive(program, scenario, home):
    """Within the desktop made below: starts the program and does what the scenario does."""
    atspi = accessibility()
    with complaints_seen() as complaints:
        process = subprocess.Popen([program], stderr=complaints)
        try:
            window = Window(atspi, process, texts_in(scenario.settings.get("OrvaneLanguage", "en"), program))
            with telling_what_is_seen(window):
                scenario.act(window, home)
        finally:
            process.terminate()
            process.wait(PATIENCE)


def environment_of(home, runtime):
    return {
        "PATH": "/usr/bin:/bin",
        "HOME": str(home),
        "XDG_RUNTIME_DIR": str(runtime),
        "LANG": "en_US.UTF-8",
        "QT_QUICK_BACKEND": "software",
        "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        # Without a settings store of the desktop there is nothing to wait for.
        "GSETTINGS_BACKEND": "memory",
        # One name of the library's is shadowed by an older one.
        "PYTHONWARNINGS": "ignore::DeprecationWarning",
        "PYTHONDONTWRITEBYTECODE": "1",
    }


@contextlib.contextmanager
def x_server(screen, **started):
    """An X server of its own; gives the display's name."""
    read, write = os.pipe()
    command = ["Xvfb", "-displayfd", str(write), "-screen", "0", screen + "x24", "-nolisten", "tcp", "-noreset"]
    server = subprocess.Popen(command, pass_fds=[write], stderr=subprocess.DEVNULL, **started)
    os.close(write)
    try:
        with os.fdopen(read) as answer:
            display = answer.readline().strip()
        expect(display, "there is no X server")
        yield f":{display}"
    finally:
        server.terminate()
        server.wait()


def in_own_desktop(command, scenario, screen="1280x900", environment=None):
    """Runs a command with the home's path as one more argument, on an X server, a message bus and in a home that nobody
    else has; gives its exit status."""
    with tempfile.TemporaryDirectory(prefix="orvane-window-", ignore_cleanup_errors=True) as top:
        home = pathlib.Path(top) / "home"
        runtime = pathlib.Path(top) / "runtime"
        runtime.mkdir(mode=0o700)
        write_settings(home, scenario.settings)
        scenario.prepare(home)
        with x_server(screen) as display:
            made = {**environment_of(home, runtime), "DISPLAY": display, **(environment or {})}
            started = ["dbus-run-session", "--", *command, str(home)]
            return subprocess.run(started, env=made, check=False).returncode


def main(scenarios, drive_one=drive, run_one=None):
    """SCRIPT PROGRAM [NAME]: all scenarios, or the one of that name."""
    script, program, *rest = sys.argv
    run_one = run_one or (lambda name: in_own_desktop([sys.executable, script, program, name], scenarios[name]))
    try:
        if len(rest) == 2:
            sys.exit(drive_one(program, scenarios[rest[0]], pathlib.Path(rest[1])))
        failed = [name for name in rest or scenarios if run_one(name) != 0]
        sys.exit(f"failed: {', '.join(failed)}" if failed else 0)
    except Failure as failure:
        sys.exit(f"{os.path.basename(script)}: {failure}")
