#!/usr/bin/python3
"""Pages that host a view, in the real programs, as assistive tools see them.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/views_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import os
import re
import threading
import unittest

import pyatspi
from gi.repository import Gio, GLib

from harness.display import WIDTH
from harness.programs import ROOT
from harness.spoken import SWITCH, Spoken
from harness.waiting import eventually


class ChangeLogTest(Spoken):
    def test_reads_the_text_out(self):
        bundle = os.path.join(ROOT, "Library/PreferenceBundles/Lumora.bundle")
        with open(os.path.join(bundle, "changelog.txt"), encoding="utf-8") as file:
            text = file.read()
        window = self.open_window("--page", "ChangeLogController")
        shown = eventually(lambda: self.spoken(window, pyatspi.ROLE_LABEL).get(text), "the text")
        place = shown.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.assertEqual((place.x, place.width), (0, WIDTH))
        self.assertFalse(shown.getState().contains(pyatspi.STATE_EDITABLE))


class Portal:
    """A desktop's portal that tells how large texts are and whether dark colours are preferred, and no more."""

    INTERFACE = """<node><interface name="org.freedesktop.portal.Settings">
        <method name="Read">
            <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
        </method>
        <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface></node>"""
    PATH, NAME = "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Desktop"
    SETTINGS = "org.freedesktop.portal.Settings"
    TEXTS = ("org.gnome.desktop.interface", "text-scaling-factor")
    COLOURS = ("org.freedesktop.appearance", "color-scheme")
    NO_PREFERENCE, DARK, LIGHT = range(3)

    def __init__(self, factor=1.0, scheme=NO_PREFERENCE):
        self.values = {self.TEXTS: GLib.Variant("d", factor), self.COLOURS: GLib.Variant("u", scheme)}
        self.loop = GLib.MainLoop(GLib.MainContext())
        ready = threading.Event()
        self.thread = threading.Thread(target=self._serve, args=(ready,), daemon=True)
        self.thread.start()
        ready.wait()

    def _serve(self, ready):
        self.loop.get_context().push_thread_default()
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.bus = Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SESSION_BUS_ADDRESS"], flags, None, None)
        interface = Gio.DBusNodeInfo.new_for_xml(self.INTERFACE).interfaces[0]
        self.bus.register_object(self.PATH, interface, self._answer, None, None)
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                           GLib.Variant("(su)", (self.NAME, 0)), None, Gio.DBusCallFlags.NONE, -1, None)
        ready.set()
        self.loop.run()

    def _answer(self, _bus, _sender, _path, _interface, _method, parameters, call):
        if value := self.values.get(parameters.unpack()):  # wrapped once too often, as by older portals
            call.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))
        else:
            call.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")

    def change(self, factor):
        self._tell(self.TEXTS, GLib.Variant("d", factor))

    def change_colours(self, scheme):
        self._tell(self.COLOURS, GLib.Variant("u", scheme))

    def _tell(self, key, value):
        self.bus.emit_signal(None, self.PATH, self.SETTINGS, "SettingChanged", GLib.Variant("(ssv)", (*key, value)))
        self.bus.flush_sync(None)

    def stop(self):
        self.loop.get_context().invoke_full(GLib.PRIORITY_DEFAULT, self.loop.quit)
        self.thread.join()
        self.bus.close_sync(None)


class TextSizeTest(Spoken):
    def height(self, window):
        switch = self.spoken(window, SWITCH).get("Enable Lumora")
        return switch and switch.queryComponent().getExtents(pyatspi.DESKTOP_COORDS).height

    def test_follows_the_desktop(self):
        portal = Portal(2.0)
        self.addCleanup(portal.stop)
        window = self.open_root_page()
        eventually(lambda: (self.height(window) or 0) > 60, "rows for large texts")
        portal.change(1.0)
        eventually(lambda: self.height(window) == 44, "rows for usual texts")
        for nonsense in (0.0, -1.0, float("nan")):
            portal.change(nonsense)
        portal.change(2.0)
        eventually(lambda: (self.height(window) or 0) > 60, "large texts again")

    def test_is_what_the_command_line_says_whatever_the_desktop_has(self):
        portal = Portal(3.0)
        self.addCleanup(portal.stop)
        window = self.open_root_page("--text-size", "100")
        eventually(lambda: self.height(window) == 44, "rows for usual texts")
        portal.change(2.0)
        other = self.open_root_page()
        eventually(lambda: (self.height(other) or 0) > 60, "another window, which follows")
        self.assertEqual(self.height(window), 44)


class DarkTest(Spoken):
    """What the screen shows beside the first row, and in it above its text."""

    LIGHT, DARK = ("#f2f2f7", "#ffffff"), ("#000000", "#1c1c1e")

    def row(self, window):
        switch = self.spoken(window, SWITCH).get("Enable Lumora")
        return switch and switch.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)

    def colours(self, row):
        return row and (self.display.color_at(4, row.y + 4), self.display.color_at(WIDTH // 2, row.y + 4))

    def test_follows_the_desktop(self):
        self.scheme = []
        portal = Portal(scheme=Portal.DARK)
        self.addCleanup(portal.stop)
        window = self.open_root_page()
        eventually(lambda: self.colours(self.row(window)) == self.DARK, "dark colours")
        for scheme, colours in ((Portal.LIGHT, self.LIGHT), (Portal.DARK, self.DARK),
                                (Portal.NO_PREFERENCE, self.LIGHT)):
            portal.change_colours(scheme)
            eventually(lambda: self.colours(self.row(window)) == colours, f"{colours} for {scheme}")

    def test_is_what_the_command_line_says_whatever_the_desktop_has(self):
        for option, other, colours in (("--light", Portal.DARK, self.LIGHT), ("--dark", Portal.LIGHT, self.DARK)):
            with self.subTest(option):
                self.scheme = [option]
                portal = Portal(scheme=other)
                window = self.open_root_page()
                eventually(lambda: self.colours(self.row(window)) == colours, f"{colours} by {option}")
                portal.change_colours(other)
                portal.change(2.0)
                eventually(lambda: self.row(window).height > 60, "what the desktop said last")
                self.assertEqual(self.colours(self.row(window)), colours)
                window.kill()
                portal.stop()


class SecureFieldTest(Spoken):
    def test_tells_of_what_is_typed_in_dots_only(self):
        window = self.open_window("--page", "AutoUnlockController")
        self.xdotool("mousemove", "1200", "1000")
        eventually(lambda: "Passcode" in self.spoken(window, pyatspi.ROLE_TEXT), "the field")
        told = []
        listen = lambda event: told.append((event.type.name, event.source.name, event.any_data))
        names = ("object:text-changed", "object:property-change", "object:state-changed:focused")
        pyatspi.Registry.registerEventListener(listen, *names)
        self.addCleanup(pyatspi.Registry.deregisterEventListener, listen, *names)
        place = self.named(window, pyatspi.ROLE_TEXT, "Passcode").queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.xdotool("mousemove", str(place.x + 100), str(place.y + place.height // 2), "click", "1")
        self.xdotool("key", "--window", window.id, "q", "7", "x", "Return", "shift+Tab")

        def has_told_of_the_next_focus():
            GLib.MainContext.default().iteration(False)
            return any(kind == "object:state-changed:focused" and name != "Passcode" for kind, name, _ in told)
        eventually(has_told_of_the_next_focus, "the focus on another control, after all that was told of the text")
        text = self.named(window, pyatspi.ROLE_TEXT, "Passcode").queryText()
        self.assertEqual(text.getText(0, text.characterCount), "•••")
        for kind, _, what in told:
            self.assertFalse(isinstance(what, str) and re.search("[q7x]", what), (kind, what))
        eventually(lambda: "q7x" in map(self.stored, ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm")),
                   "the passcode at the tweak")


if __name__ == "__main__":
    unittest.main()
