#!/usr/bin/python3
"""Stands for a file manager: a small window, from which a folder can be dragged. On X it is at the right of the screen;
on Wayland it is where the compositor puts it, and can be told by its colour.

    drag_source.py FOLDER [RED GREEN BLUE]
"""

import pathlib
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def main(folder, *color):
    is_x = "X11" in type(Gdk.Display.get_default()).__name__
    window = Gtk.Window(type=Gtk.WindowType.POPUP if is_x else Gtk.WindowType.TOPLEVEL, decorated=False)
    window.set_default_size(60, 60)
    window.move(1210, 820)
    box = Gtk.EventBox()
    if color:
        style = Gtk.CssProvider()
        style.load_from_data("* {{ background: rgb({}, {}, {}); }}".format(*color).encode())
        box.get_style_context().add_provider(style, Gtk.STYLE_PROVIDER_PRIORITY_USER)
    box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
    box.drag_source_add_uri_targets()
    box.connect("drag-data-get", lambda _box, _context, data, _info, _time: data.set_uris([folder.as_uri()]))
    window.add(box)
    window.connect("map-event", lambda *_: print("ready", flush=True))
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), *sys.argv[2:])
