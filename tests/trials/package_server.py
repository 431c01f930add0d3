"""Serves one package, "greeter", as the registries of pip, npm and Cargo do, and a page for browsers."""

import base64
import collections
import contextlib
import hashlib
import http.server
import io
import json
import tarfile
import threading

DAY = "max-age=86400"


def archive_of(files):
    content = io.BytesIO()
    with tarfile.open(fileobj=content, mode="w:gz") as archive:
        for name, text in files.items():
            entry = tarfile.TarInfo(name)
            entry.size = len(text)
            archive.addfile(entry, io.BytesIO(text.encode()))
    return content.getvalue()


NPM_PACKAGE = {"name": "greeter", "version": "1.0.0", "main": "index.js"}
CRATE = archive_of({
    "greeter-0.1.0/Cargo.toml": '[package]\nname = "greeter"\nversion = "0.1.0"\nedition = "2021"\n',
    "greeter-0.1.0/src/lib.rs": 'pub fn hello() -> &\'static str { "hello" }\n',
})
# No wheel: one that came without encryption is not kept, one that was built here is.
SOURCES = archive_of({
    "greeter-1.0.0/PKG-INFO": "Metadata-Version: 2.1\nName: greeter\nVersion: 1.0.0\n",
    "greeter-1.0.0/setup.py": "from setuptools import setup\n"
                              "setup(name='greeter', version='1.0.0', py_modules=['greeter'])\n",
    "greeter-1.0.0/greeter.py": "def hello():\n    return 'hello'\n",
})
TARBALL = archive_of({"package/package.json": json.dumps(NPM_PACKAGE),
                      "package/index.js": "module.exports = () => 'hello';\n"})
PAGE = """<!doctype html><title>A page</title><script src="/kept.js"></script>
<script>addEventListener("load", () => fetch("/loaded", {cache: "no-store"}))</script>"""


class PackageServer:
    """At a loopback address, until it is closed."""

    def __init__(self):
        self._asked = collections.Counter()
        self._events = {}
        owner = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):  # pylint: disable=invalid-name
                owner.answer(self)

            def log_message(self, *_):  # pylint: disable=arguments-differ
                pass

        self._server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        self._server.daemon_threads = True
        self._server.handle_error = lambda *_: None  # browsers break off what they no longer need
        threading.Thread(target=self._server.serve_forever, daemon=True).start()
        integrity = "sha512-" + base64.b64encode(hashlib.sha512(TARBALL).digest()).decode()
        version = {**NPM_PACKAGE, "dist": {"tarball": self.url("/tarballs/greeter-1.0.0.tgz"), "integrity": integrity}}
        packument = {"name": "greeter", "dist-tags": {"latest": "1.0.0"}, "versions": {"1.0.0": version}}
        # Kind, how long it may be kept, content.
        self._content = {
            "/simple/greeter/": ("text/html", "no-cache",
                                 b'<a href="/sources/greeter-1.0.0.tar.gz">greeter-1.0.0.tar.gz</a>'),
            "/sources/greeter-1.0.0.tar.gz": ("application/octet-stream", DAY, SOURCES),
            "/npm/greeter": ("application/json", DAY, json.dumps(packument).encode()),
            "/tarballs/greeter-1.0.0.tgz": ("application/octet-stream", DAY, TARBALL),
            "/crates/greeter/0.1.0/download": ("application/gzip", DAY, CRATE),
            "/page.html": ("text/html", "no-cache", PAGE.encode()),
            "/kept.js": ("text/javascript", DAY, b"// " + b"kept " * 20000),
            "/loaded": ("text/plain", "no-store", b""),
        }

    def url(self, path):
        return f"http://127.0.0.1:{self._server.server_address[1]}{path}"

    def asked(self, beginning):
        """How often was asked for what begins so."""
        return sum(count for path, count in self._asked.items() if path.startswith(beginning))

    @contextlib.contextmanager
    def expecting(self, path):
        """Yields an event that the next request for the path sets."""
        self._events[path] = threading.Event()
        yield self._events[path]

    def answer(self, request):
        self._asked[request.path] += 1
        found = self._content.get(request.path)
        request.send_response(200 if found else 404)
        kind, keep, content = found or ("text/plain", "no-store", b"")
        for name, value in {"Content-Type": kind, "Cache-Control": keep, "Content-Length": str(len(content))}.items():
            request.send_header(name, value)
        request.end_headers()
        request.wfile.write(content)
        if request.path in self._events:
            self._events[request.path].set()

    def make_crate_index(self, folder, run):
        """A git repository that says where Cargo finds the crate."""
        (folder / "gr/ee").mkdir(parents=True)
        (folder / "config.json").write_text(json.dumps({"dl": self.url("/crates")}))
        row = {"name": "greeter", "vers": "0.1.0", "deps": [], "cksum": hashlib.sha256(CRATE).hexdigest(), "features": {},
               "yanked": False}
        (folder / "gr/ee/greeter").write_text(json.dumps(row) + "\n")
        run("git", "init", "--quiet", "--initial-branch=main", ".", folder=folder)
        run("git", "add", ".", folder=folder)
        run("git", "-c", "user.name=trial", "-c", "user.email=trial@localhost", "commit", "--quiet", "-m", "index",
            folder=folder)
        return folder

    def close(self):
        self._server.shutdown()
        self._server.server_close()
