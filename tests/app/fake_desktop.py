#!/usr/bin/python3
"""Stands for a desktop on the session bus: the portal that asks for folders, and the watcher of icons in a tray.

    fake_desktop.py FOLDER

Answers each request for a folder with FOLDER, and prints what it was asked, a line each. Ends with its standard input.
"""

import json
import pathlib
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

INTERFACES = """
<node>
  <interface name="org.freedesktop.portal.FileChooser">
    <property name="version" type="u" access="read"/>
    <method name="OpenFile">
      <arg name="parent_window" type="s" direction="in"/>
      <arg name="title" type="s" direction="in"/>
      <arg name="options" type="a{sv}" direction="in"/>
      <arg name="handle" type="o" direction="out"/>
    </method>
  </interface>
  <interface name="org.kde.StatusNotifierWatcher">
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
    <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg name="service" type="s" direction="in"/></method>
    <signal name="StatusNotifierHostRegistered"/>
  </interface>
</node>
"""
PROPERTIES = {
    "version": GLib.Variant("u", 4),
    "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
    "ProtocolVersion": GLib.Variant("i", 0),
    "RegisteredStatusNotifierItems": GLib.Variant("as", []),
}


def say(line):
    print(line, flush=True)


class FakeDesktop:
    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)

    def call(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            say("tray")
        if method != "OpenFile":
            invocation.return_value(None)
            return
        _, title, options = arguments.unpack()
        start = bytes(options.get("current_folder", [])).rstrip(b"\0").decode()
        say(json.dumps({"title": title, "directory": options.get("directory"), "start": start}))
        request = f"/org/freedesktop/portal/desktop/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        invocation.return_value(GLib.Variant("(o)", (request,)))
        results = {"uris": GLib.Variant("as", [self.folder.as_uri()])}
        answer = GLib.Variant("(ua{sv})", (0, results))
        self.bus.emit_signal(sender, request, "org.freedesktop.portal.Request", "Response", answer)

    def run(self):
        portal, watcher = Gio.DBusNodeInfo.new_for_xml(INTERFACES).interfaces
        read = lambda _bus, _sender, _path, _interface, name: PROPERTIES[name]  # noqa: E731
        self.bus.register_object("/org/freedesktop/portal/desktop", portal, self.call, read, None)
        self.bus.register_object("/StatusNotifierWatcher", watcher, self.call, read, None)
        for name in ("org.freedesktop.portal.Desktop", "org.kde.StatusNotifierWatcher"):
            bus = ("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus")
            wanted = GLib.Variant("(su)", (name, 0))
            self.bus.call_sync(*bus, "RequestName", wanted, None, Gio.DBusCallFlags.NONE, -1, None)
        say("ready")
        loop = GLib.MainLoop()
        GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_HUP | GLib.IO_IN, lambda *_: loop.quit())
        loop.run()


if __name__ == "__main__":
    FakeDesktop(sys.argv[1]).run()
