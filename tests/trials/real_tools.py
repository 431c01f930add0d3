#!/usr/bin/python3
"""Cleans a home that real tools filled, and tries whether they work afterwards.

    real_tools.py ORVANECTL [TOOL...]

Each tool fills its caches in a home of the trial's own. While it runs, its places must be shown as in use and stay. Then
`orvanectl clean` takes them, the tool has to work without them, `orvanectl restore --last --swap` brings them back as they
were, and the tool has to work from them. Packages come from a server at a loopback address; nothing asks the network.

Tools that are not installed are named and left out. Prints a line for each tool and ends with status 1 if one failed.
"""

import contextlib
import fcntl
import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

from package_server import PackageServer

PATIENCE = 120  # seconds; reached only when something hangs
CATEGORIES = ["caches", "browserCaches", "developerCaches", "largeFiles", "logs"]


class TrialFailed(Exception):
    pass


def expect(condition, words):
    if not condition:
        raise TrialFailed(words)


class World:
    def __init__(self, orvanectl, home):
        self.orvanectl = orvanectl
        self.home = home
        self.server = PackageServer()
        runtime = home.parent / "runtime"
        runtime.mkdir(mode=0o700)
        kept = {"LANG": "C.UTF-8", "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/local/games:/usr/games"}
        self.environment = {**kept, "HOME": str(home), "XDG_RUNTIME_DIR": str(runtime), "NO_COLOR": "1"}

    def run(self, *words, folder=None, **environment):
        result = subprocess.run([str(word) for word in words], cwd=folder or self.home, capture_output=True, text=True,
                                env={**self.environment, **environment}, timeout=PATIENCE, check=False)
        expect(result.returncode == 0, f"{words[0]} ended with {result.returncode}: {result.stderr.strip()[-600:]}")
        return result.stdout

    def start(self, *words, **environment):
        return subprocess.Popen([str(word) for word in words], cwd=self.home, stdout=subprocess.PIPE,
                                stderr=subprocess.DEVNULL, env={**self.environment, **environment})

    def orvane(self, *words):
        return self.run(self.orvanectl, *words)

    def clean(self):
        words = [word for category in CATEGORIES for word in ("--category", category)]
        return json.loads(self.orvane("clean", "--yes", "--json", "--developer-caches", "--include-review", *words))

    def found(self):
        """Items of a scan by their path below the home."""
        items = {}
        for line in self.orvane("scan", "--json", "--developer-caches").splitlines():
            event = json.loads(line)
            if event["event"] == "itemDiscovered":
                items[event["item"]["relativePath"]] = event["item"]
        return items

    def content(self, place):
        """What is in a place, links and times of files included."""
        digest = hashlib.sha256()
        top = self.home / place
        for path in sorted([top, *top.rglob("*")]):
            status = path.lstat()
            digest.update(f"{path.relative_to(top)} {status.st_mode} ".encode(errors="surrogateescape"))
            if path.is_symlink():
                digest.update(os.fsencode(os.readlink(path)))
            elif path.is_file():
                digest.update(f"{status.st_mtime_ns} ".encode() + path.read_bytes())
        return digest.hexdigest()


class Tool:
    """One program. `use()` works with and without its caches; `places` are those that a cleanup has to take."""

    program = ""
    places = ()

    def __init__(self, world):
        self.world = world

    def prepare(self):
        pass

    def use_from_cache(self):
        """The same, failing where the brought back caches are of no use."""
        self.use()

    @contextlib.contextmanager
    def running(self):
        """While it holds, the tool is being used. Yields the places that are in use; None where nothing tells."""
        yield None


class Pip(Tool):
    program = "pip3"
    places = (".cache/pip",)

    def use(self):
        target = self.world.home / "Projects/letters/lib"
        shutil.rmtree(target, ignore_errors=True)
        self.world.run("pip3", "install", "--quiet", "--no-input", "--disable-pip-version-check", "--no-build-isolation",
                       "--index-url", self.world.server.url("/simple/"), "--target", target, "greeter",
                       PIP_CONFIG_FILE="/dev/null")
        said = self.world.run("python3", "-c", "import greeter; print(greeter.hello())", PYTHONPATH=str(target))
        expect(said.strip() == "hello", "the installed package does not work")

    def use_from_cache(self):
        before = self.world.server.asked("/sources/greeter")
        self.use()
        expect(self.world.server.asked("/sources/greeter") == before, "pip built what its cache has")


class Npm(Tool):
    program = "npm"
    places = (".npm/_cacache", "Documents/site/node_modules")

    def prepare(self):
        site = self.world.home / "Documents/site"
        site.mkdir(parents=True)
        (site / "package.json").write_text('{"name":"site","version":"1.0.0","dependencies":{"greeter":"1.0.0"}}')
        (site / "index.js").write_text("console.log(require('greeter')());")
        self.install("install")

    def install(self, *words):
        self.world.run("npm", *words, "--no-audit", "--no-fund", folder=self.world.home / "Documents/site",
                       npm_config_registry=self.world.server.url("/npm/"), npm_config_update_notifier="false")

    def works(self):
        said = self.world.run("node", "index.js", folder=self.world.home / "Documents/site")
        expect(said.strip() == "hello", "the site does not work")

    def use(self):
        self.install("ci")
        self.works()

    def use_from_cache(self):
        self.works()  # by the folder that came back
        self.install("ci", "--offline")
        self.works()


class Ccache(Tool):
    program = "ccache"
    places = (".cache/ccache",)

    def prepare(self):
        (self.world.home / "Projects/tool").mkdir(parents=True)
        (self.world.home / "Projects/tool/main.c").write_text("int main(void) { return 0; }\n")

    def use(self):
        folder = self.world.home / "Projects/tool"
        self.world.run("ccache", "gcc", "-c", "main.c", "-o", "main.o", folder=folder)
        self.world.run("gcc", "main.o", "-o", "main", folder=folder)
        self.world.run(folder / "main")

    def hits(self):
        figures = dict(line.split("\t") for line in self.world.run("ccache", "--print-stats").splitlines())
        return int(figures["direct_cache_hit"]) + int(figures["preprocessed_cache_hit"])

    def use_from_cache(self):
        before = self.hits()
        self.use()
        expect(self.hits() == before + 1, "ccache compiled what its cache has")


class Cargo(Tool):
    program = "cargo"
    places = (".cargo/registry/cache", ".cargo/registry/src", "Documents/engine/target")

    def prepare(self):
        home = self.world.home
        index = self.world.server.make_crate_index(home.parent / "index", self.world.run)
        (home / ".cargo").mkdir()
        (home / ".cargo/config.toml").write_text('[source.crates-io]\nreplace-with = "loopback"\n'
                                                 f'[source.loopback]\nregistry = "file://{index}"\n')
        (home / "Documents/engine/src").mkdir(parents=True)
        (home / "Documents/engine/Cargo.toml").write_text(
            '[package]\nname = "engine"\nversion = "0.1.0"\nedition = "2021"\n[dependencies]\ngreeter = "0.1.0"\n')
        (home / "Documents/engine/src/main.rs").write_text('fn main() { println!("{}", greeter::hello()); }\n')

    def use(self, *words):
        said = self.world.run("cargo", "run", "--quiet", *words, folder=self.world.home / "Documents/engine")
        expect(said.strip() == "hello", "the program does not work")

    def use_from_cache(self):
        self.use("--offline")
        shutil.rmtree(self.world.home / "Documents/engine/target")
        self.use("--offline")

    @contextlib.contextmanager
    def running(self):
        with open(self.world.home / ".cargo/.package-cache", "ab") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)  # as cargo holds it while it downloads
            yield (".cargo/registry/cache", ".cargo/registry/src")


class Browser(Tool):
    """Loads a page whose script may be kept for a day, and tells the server when it has loaded."""

    @contextlib.contextmanager
    def open(self):
        with self.world.server.expecting("/loaded") as loaded:
            process = self.world.start(*self.words, self.world.server.url("/page.html"))
            try:
                expect(loaded.wait(PATIENCE), "the page was not loaded")
                yield
            finally:
                process.terminate()
                process.communicate(timeout=PATIENCE)  # until the last of its processes ended

    def use(self):
        with self.open():
            pass

    def use_from_cache(self):
        before = self.world.server.asked("/kept.js")
        self.use()
        expect(self.world.server.asked("/kept.js") == before, "the browser downloaded what its cache has")

    @contextlib.contextmanager
    def running(self):
        with self.open():
            yield self.places


class Chromium(Browser):
    program = "chromium"
    words = ("chromium", "--headless", "--no-sandbox", "--disable-gpu", "--disable-background-networking", "--no-first-run")
    places = (".cache/chromium",)

    def prepare(self):
        # Where it keeps them with a window; without one it would take others.
        self.words += (f"--user-data-dir={self.world.home}/.config/chromium",)


class Firefox(Browser):
    program = "firefox-esr"
    words = ("firefox-esr", "--headless")
    places = (".cache/mozilla",)


TOOLS = {"pip": Pip, "npm": Npm, "ccache": Ccache, "cargo": Cargo, "chromium": Chromium, "firefox": Firefox}


def stays_while_used(world, tool):
    with tool.running() as used:
        if used is None:
            return
        items = world.found()
        known = world.orvane("folders", "known")
        for place in used:
            expect(place in items, f"{place} is not found")
            expect(not items[place]["isSelected"], f"{place} is selected while it is used")
            row = next((line for line in known.splitlines() if f" ~/{place} " in line), "no row")
            expect("is open and uses it" in row, f"nothing says that {place} is used: {row}")
        others = world.clean()
        for place in used:
            expect((world.home / place).exists(), f"{place} was taken while it was used")
    if others["itemsProcessed"]:
        world.orvane("restore", others["runId"], "--yes", "--swap")


def try_out(world, tool):
    tool.prepare()
    tool.use()
    tool.use()
    stays_while_used(world, tool)
    before = {place: world.content(place) for place in tool.places}
    report = world.clean()
    expect(not report["failures"], f"not moved: {report['failures']}")
    for place in tool.places:
        expect(not (world.home / place).exists(), f"{place} was not taken")
    tool.use()
    back = json.loads(world.orvane("restore", report["runId"], "--yes", "--swap", "--json"))
    expect(back["restoredCount"] == report["itemsProcessed"],
           f"{back['restoredCount']} of {report['itemsProcessed']} came back: {back['warnings']}")
    for place in tool.places:
        expect(world.content(place) == before[place], f"{place} came back otherwise")
    renamed = [str(path) for path in world.home.rglob("*(restored*")]
    expect(not renamed, f"came back under another name: {renamed}")
    tool.use_from_cache()
    return report


def main():
    orvanectl = pathlib.Path(sys.argv[1]).resolve()
    unknown = set(sys.argv[2:]) - set(TOOLS)
    if unknown:
        sys.exit(f"no such tool: {', '.join(sorted(unknown))}")
    failed = False
    for name in sys.argv[2:] or TOOLS:
        if shutil.which(TOOLS[name].program) is None:
            print(f"{name}: not installed")
            continue
        with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as top:
            home = pathlib.Path(top) / "home"
            (home / "Documents").mkdir(parents=True)
            world = World(orvanectl, home)
            with contextlib.closing(world.server):
                try:
                    report = try_out(world, TOOLS[name](world))
                    print(f"{name}: works after a cleanup of {report['itemsProcessed']} items, and after their return")
                except (TrialFailed, subprocess.TimeoutExpired) as failure:
                    print(f"{name}: FAILED: {failure}")
                    failed = True
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
