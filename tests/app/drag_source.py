#!/usr/bin/python3
"""Stands for a file manager: a small window at the right of the screen, from which a folder can be dragged (XDND).

    drag_source.py FOLDER
"""

import pathlib
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def main(folder):
    window = Gtk.Window(type=Gtk.WindowType.POPUP)
    window.set_default_size(60, 60)
    window.move(1210, 820)
    box = Gtk.EventBox()
    box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
    box.drag_source_add_uri_targets()
    box.connect("drag-data-get", lambda _box, _context, data, _info, _time: data.set_uris([folder.as_uri()]))
    window.add(box)
    window.connect("map-event", lambda *_: print("ready", flush=True))
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
