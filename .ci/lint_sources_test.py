#!/usr/bin/env python3
"""Every rule of lint_sources finds what it forbids, and leaves alone what it allows."""

import pathlib
import tempfile
import unittest

import lint_sources

HEADER = "#pragma once\n"
CMAKE = {
    "core/CMakeLists.txt": "add_library(core base/A.cpp safety/B.cpp scanning/C.cpp)\n",
    "platform/CMakeLists.txt": "add_library(platform linux/P.cpp SharedServices.cpp)\n",
    "cli/CMakeLists.txt": "find_sources(sources *.cpp)\n",
}

# Name, files, and a piece of the one finding.
VIOLATIONS = [
    ("base includes an engine", {"core/base/A.h": '#include "core/safety/B.h"\n', "core/safety/B.h": ""}, "which is engines"),
    ("an interface includes a record",
     {"core/platform/I.h": '#include "core/scanning/records/FileItem.h"\n', "core/scanning/records/FileItem.h": ""}, "which is records"),
    ("an engine includes a task",
     {"core/safety/B.h": '#include "core/tasks/T.h"\n', "core/tasks/T.h": ""}, "which is tasks"),
    ("a task includes a coordinator",
     {"core/tasks/T.h": '#include "core/rules/schedule/ScheduleCoordinator.h"\n', "core/rules/schedule/ScheduleCoordinator.h": ""},
     "which is coordinators"),
    ("the terminal program includes an engine",
     {"cli/frame/main.cpp": '#include "core/safety/run/TrashMover.h"\n', "core/safety/run/TrashMover.h": ""}, "which is engines"),
    ("the window includes an engine",
     {"app/W.h": '#include "core/scanning/scan/StorageScanner.h"\n', "core/scanning/scan/StorageScanner.h": ""}, "which is engines"),
    ("the window includes a class of the platform",
     {"app/W.h": '#include "platform/linux/P.h"\n', "platform/linux/P.h": ""}, "which is platform"),
    ("an engine includes a coordinator",
     {"core/rules/R.h": '#include "core/rules/schedule/ScheduleCoordinator.h"\n', "core/rules/schedule/ScheduleCoordinator.h": ""},
     "which is coordinators"),
    ("the core includes the platform", {"core/safety/B.cpp": '#include "platform/P.h"\n', "platform/P.h": ""}, "which is platform"),
    ("the window includes the terminal program", {"app/W.h": '#include "cli/T.h"\n', "cli/T.h": ""}, "which is cli"),
    ("an include that is not from the top", {"core/base/A.h": '#include "B.h"\n'}, "is no file of this tree"),
    ("two headers in a loop",
     {"core/safety/B.h": '#include "core/scanning/C.h"\n', "core/scanning/C.h": '#include "core/safety/B.h"\n'}, "include loop"),
    ("three headers in a loop",
     {"core/safety/B.h": '#include "core/scanning/C.h"\n', "core/scanning/C.h": '#include "core/rules/D.h"\n',
      "core/rules/D.h": '#include "core/safety/B.h"\n'}, "include loop"),
    ("Qt in the core", {"core/base/A.h": "#include <QString>\n"}, "Qt"),
    ("Qt in the terminal program", {"cli/frame/main.cpp": "#include <QtCore/QFile>\n"}, "Qt"),
    ("D-Bus in the core", {"core/base/A.h": "#include <sdbus-c++/sdbus-c++.h>\n"}, "D-Bus"),
    ("curl in the core", {"core/base/A.h": "#include <curl/curl.h>\n"}, "curl"),
    ("libsecret in the core", {"core/base/A.h": "#include <libsecret/secret.h>\n"}, "libsecret"),
    ("CLI11 in the core", {"core/base/A.h": "#include <CLI/CLI.hpp>\n"}, "CLI11"),
    ("a system's macro in the core", {"core/base/A.h": "#if defined(__linux__)\n#endif\n"}, "__linux__"),
    ("a system's macro in an elif", {"cli/frame/main.cpp": "#if 0\n# elif defined(__APPLE__)\n#endif\n"}, "__APPLE__"),
    ("shared() elsewhere", {"core/safety/B.cpp": "B& B::shared() {\n"}, "shared() may be defined only"),
    ("shared() in a header", {"core/safety/B.h": "static B& shared() { static B b; return b; }\n"}, "shared() may be defined only"),
    *(
        (f"{call} in the terminal program", {"cli/frame/main.cpp": f"void f() {{ {call}; }}\n"}, "cuts short a file")
        for call in (
            "unlink(p)", "::unlinkat(AT_FDCWD, p, 0)", "::rmdir(p)", "std::rename(a, b)", "::renameat2(a, b, c, d, e)",
            "std::remove(p.c_str())", "::remove(p)", "std::filesystem::remove_all(p)", "fs::rename(a, b)", "truncate(p, 0)",
            "std::system(c)", "popen(c, m)", "QFile::remove(p)", "d.removeRecursively()",
        )
    ),
    ("a removing call in the base", {"core/base/A.cpp": "void f() { ::unlink(p); }\n"}, "cuts short a file"),
    ("a source file that is not built", {"core/base/Z.cpp": ""}, "not built by core/CMakeLists.txt"),
    ("a source file outside the folder whose files are built",
     {"tests/CMakeLists.txt": "orvane_test(tests core/*.cpp)\n", "tests/other/T.cpp": ""}, "not built"),
    ("a source file whose name only ends like one that is built", {"core/other/base/A.cpp": ""}, "not built"),
    ("somebody's home in a page", {"docs/page.md": "cd /home/" + "bob/orvane\n"}, "path of one machine"),
    ("somebody's home elsewhere", {"core/base/A.h": "// see /Users/" + "J.Doe/notes\n"}, "path of one machine"),
    ("a name that begins like an example", {"docs/page.md": "/home/" + "user2/x\n"}, "path of one machine"),
    ("the administrator's home", {"run": "source /root/" + ".profile\n"}, "path of one machine"),
    ("a temporary file", {"run": "tail /tmp/" + "build.log\n"}, "path of one machine"),
    ("a temporary file that outlives a start", {"run": "log=/var/tmp/" + "x\n"}, "path of one machine"),
    ("a left-over of a merge", {"docs/page.md": "<<<<<<" + "< HEAD\n"}, "left over from a merge"),
    ("a tab", {"core/base/A.h": "\tint a;\n"}, "tab"),
    ("a comment without its subject", {"core/base/A.h": "int a;  // Wh" + "at is counted.\n"}, "name its subject first"),
    ("one in a script", {"run": "# Who" + "ever starts it.\n"}, "name its subject first"),
    ("two types of one name",
     {"core/base/A.h": "namespace orvane {\nstruct A {\n};\n}\n", "app/W.h": "namespace orvane {\nclass A : public B {\n};\n}\n"},
     "is a type of"),
    ("a header without a guard", {"core/base/A.h": None}, "#pragma once"),
]

ALLOWED = [
    ("includes downwards and among engines",
     {"core/safety/B.h": '#include "core/base/A.h"\n#include "core/scanning/C.h"\n', "core/base/A.h": "",
      "core/scanning/C.h": "", "cli/frame/main.cpp": '#include "platform/SystemServices.h"\n#include "core/tasks/T.h"\n#include "core/scanning/records/FileItem.h"\n',
      "platform/SystemServices.h": "", "core/tasks/T.h": '#include "core/safety/B.h"\n', "core/scanning/records/FileItem.h": "",
      "platform/P.h": '#include "core/safety/B.h"\n'}),
    ("what only looks like a removing call",
     {"cli/frame/main.cpp": 'void f() { list.remove(a); map->rename(b); std::remove(b, e, v); '
      'journal.unlink(c); X::remove(d); say("unlink(p)"); }  // unlink(p)\nvoid removeFolder(P p);\n'}),
    ("removing calls where they belong",
     {"core/safety/B.cpp": "void f() { ::unlink(p); }\n", "platform/linux/P.cpp": "void f() { ::renameat2(p); }\n"}),
    ("shared() where it belongs", {"platform/SharedServices.cpp": "B& B::shared() {\n"}),
    ("a header's implementation that uses what is built on the header",
     {"core/safety/B.h": "", "core/safety/B.cpp": '#include "core/scanning/C.h"\n',
      "core/scanning/C.h": '#include "core/safety/B.h"\n'}),
    ("shared() declared and used", {"core/safety/B.h": "static B& shared();\n", "cli/frame/main.cpp": "void f() { B::shared().run(); }\n"}),
    ("homes of nobody, and folders that only sound temporary",
     {"docs/page.md": "/home/user/x /Users/me/x ~/tmp/x core/tmp/x $XDG_RUNTIME_DIR/tmp/x /private/var/root\n"}),
    ("a question in a comment and in a page", {"core/base/A.h": "// Which? Whatever.\n", "docs/page.md": "# What is kept\n"}),
    ("types of one name in two namespaces, and one that is nested",
     {"core/base/A.h": "namespace orvane {\nstruct A {\n  struct B {\n  };\n};\nclass C;\nclass C::B {\n};\n}\n",
      "cli/frame/A.h": "namespace orvane::cli {\nstruct A {\n};\nstruct B {\n};\nclass C;\n}\n"}),
    ("a system's macro where it belongs", {"platform/linux/P.cpp": "#if defined(__linux__)\n#endif\n"}),
]


def findings_in(files):
    with tempfile.TemporaryDirectory() as top:
        names = set()
        for name, text in {**CMAKE, **files}.items():
            if text is None:
                text = "int a;\n"
            elif name.endswith(".h"):
                text = HEADER + text
            path = pathlib.Path(top) / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
            names.add(name)
        return list(lint_sources.findings(lint_sources.Tree(top, names)))


class Lint(unittest.TestCase):
    def test_finds(self):
        for name, files, piece in VIOLATIONS:
            # Files that a case adds beside the offending ones are built by their own lists.
            lists = {"app/CMakeLists.txt": "", "tests/CMakeLists.txt": ""}
            with self.subTest(name):
                found = findings_in({**lists, **files})
                self.assertTrue(any(piece in line for line in found), found)
                self.assertEqual(len(found), 1, found)

    def test_leaves_alone(self):
        for name, files in ALLOWED:
            with self.subTest(name):
                self.assertEqual(findings_in(files), [])


if __name__ == "__main__":
    unittest.main()
