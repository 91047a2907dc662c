#!/usr/bin/python3
"""What the window takes from the desktop, and what it tells assistive tools of a passcode.

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
from harness.spoken import SWITCH, Spoken
from harness.waiting import eventually


class Portal:
    """A desktop's portal with two settings, how large texts are and whether dark colours are preferred, and others."""

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
    # Each with what it is when the user has not asked for it, and when he has.
    CONTRAST = {("org.freedesktop.appearance", "contrast"): "u 0 1",
                ("org.gnome.desktop.a11y.interface", "high-contrast"): "b false true",
                ("org.gnome.desktop.interface", "gtk-theme"): "s 'Adwaita' 'HighContrastInverse'"}
    LESS_MOTION = {("org.freedesktop.appearance", "reduced-motion"): "u 0 1",
                   ("org.gnome.desktop.interface", "enable-animations"): "b true false"}

    def __init__(self, factor=1.0, scheme=NO_PREFERENCE, others=None):
        self.values = {self.TEXTS: GLib.Variant("d", factor), self.COLOURS: GLib.Variant("u", scheme), **(others or {})}
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
        if (value := self.values.get(parameters.unpack())) is not None:  # wrapped once too often, as by older portals
            call.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))
        else:
            call.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")

    def change_texts(self, factor):
        self._tell(self.TEXTS, GLib.Variant("d", factor))

    def change_colours(self, scheme):
        self._tell(self.COLOURS, GLib.Variant("u", scheme))

    @staticmethod
    def asked(kinds, key, wanted):
        """The value of a setting of CONTRAST or LESS_MOTION."""
        kind, no, yes = kinds[key].split()
        return GLib.Variant.parse(GLib.VariantType(kind), yes if wanted else no, None, None)

    def change(self, kinds, key, wanted):
        self._tell(key, self.asked(kinds, key, wanted))

    def _tell(self, key, value):
        self.bus.emit_signal(None, self.PATH, self.SETTINGS, "SettingChanged", GLib.Variant("(ssv)", (*key, value)))
        self.bus.flush_sync(None)

    def stop(self):
        self.loop.get_context().invoke_full(GLib.PRIORITY_DEFAULT, self.loop.quit)
        self.thread.join()
        self.bus.close_sync(None)


class DesktopTest(Spoken):
    """The first switch: its height, and what the screen shows beside it and in it above its text."""

    LIGHT, DARK = ("#f2f2f7", "#ffffff"), ("#000000", "#1c1c1e")
    USUAL, LARGE = 44, 60  # in points: exactly, and at least

    def portal(self, **settings):
        portal = Portal(**settings)
        self.addCleanup(portal.stop)
        return portal

    def row(self, window):
        return self.extents(self.named(window, SWITCH, "Enable Lumora"))

    def expect_usual_texts(self, window):
        eventually(lambda: self.row(window).height == self.USUAL, "rows for usual texts")

    def expect_large_texts(self, window):
        eventually(lambda: self.row(window).height > self.LARGE, "rows for large texts")

    def colours(self, window):
        row = self.row(window)
        return self.display.color_at(4, row.y + 4), self.display.color_at(WIDTH // 2, row.y + 4)

    def test_texts_follow_it(self):
        portal = self.portal(factor=2.0)
        window = self.open_root_page()
        self.expect_large_texts(window)
        portal.change_texts(1.0)
        self.expect_usual_texts(window)
        for nonsense in (0.0, -1.0, float("nan")):
            portal.change_texts(nonsense)
        portal.change_texts(2.0)
        self.expect_large_texts(window)

    def test_texts_are_what_the_command_line_says_whatever_it_has(self):
        portal = self.portal(factor=3.0)
        window = self.open_root_page("--text-size", "100")
        self.expect_usual_texts(window)
        portal.change_texts(2.0)
        self.make_root()  # for one device there is one window
        self.expect_large_texts(self.open_root_page())
        self.assertEqual(self.row(window).height, self.USUAL)

    def test_colours_follow_it(self):
        self.scheme = []
        portal = self.portal(scheme=Portal.DARK)
        window = self.open_root_page()
        self.expect_soon(lambda: self.colours(window), self.DARK)
        for scheme, colours in ((Portal.LIGHT, self.LIGHT), (Portal.DARK, self.DARK),
                                (Portal.NO_PREFERENCE, self.LIGHT)):
            portal.change_colours(scheme)
            self.expect_soon(lambda: self.colours(window), colours)

    def test_colours_are_what_the_command_line_says_whatever_it_has(self):
        for option, other, colours in (("--light", Portal.DARK, self.LIGHT), ("--dark", Portal.LIGHT, self.DARK)):
            with self.subTest(option):
                self.scheme = [option]
                portal = Portal(scheme=other)
                window = self.open_root_page()
                self.expect_soon(lambda: self.colours(window), colours)
                portal.change_colours(other)
                portal.change_texts(2.0)
                self.expect_large_texts(window)  # so it has heard of both
                self.assertEqual(self.colours(window), colours)
                window.kill()
                portal.stop()


class ContrastTest(Spoken):
    """The line beneath the first switch."""

    NORMAL, MORE = "#d5d5d9", "#75757a"

    def portal(self, **settings):
        portal = Portal(**settings)
        self.addCleanup(portal.stop)
        return portal

    def line(self, window):
        row = self.extents(self.named(window, SWITCH, "Enable Lumora"))
        return self.display.color_at(WIDTH // 2, row.y + row.height - 1)

    def test_follows_each_of_the_desktops_settings(self):
        portal = self.portal()
        window = self.open_root_page()
        self.expect_soon(lambda: self.line(window), self.NORMAL)
        for key in Portal.CONTRAST:
            for wanted, line in ((True, self.MORE), (False, self.NORMAL)):
                with self.subTest(key, wanted=wanted):
                    portal.change(Portal.CONTRAST, key, wanted)
                    self.expect_soon(lambda: self.line(window), line)

    def test_is_more_as_long_as_one_of_them_asks_for_it(self):
        keys = list(Portal.CONTRAST)
        portal = self.portal(others={key: Portal.asked(Portal.CONTRAST, key, True) for key in keys})
        window = self.open_root_page()
        self.expect_soon(lambda: self.line(window), self.MORE)
        for key, line in zip(keys, (self.MORE, self.MORE, self.NORMAL)):
            portal.change(Portal.CONTRAST, key, False)
            portal.change_texts(2.0 if line == self.MORE else 1.0)  # heard of after it
            self.expect_soon(lambda: self.line(window), line)

    def test_is_what_the_command_line_says_whatever_they_are(self):
        for option, wanted, line in (("more", False, self.MORE), ("normal", True, self.NORMAL)):
            with self.subTest(option):
                portal = Portal(others={key: Portal.asked(Portal.CONTRAST, key, wanted) for key in Portal.CONTRAST})
                window = self.open_root_page("--contrast", option)
                portal.change_texts(2.0)
                eventually(lambda: self.extents(self.named(window, SWITCH, "Enable Lumora")).height > 60, "large texts")
                self.assertEqual(self.line(window), line)
                window.kill()
                portal.stop()


class MotionTest(Spoken):
    """Pages slide in, or are there at once."""

    def pages(self, window):
        """The places of the pages that are seen, by their names."""
        return {pane.name: self.extents(pane).x for application in self.applications(window)
                for pane in self.find(application, lambda it: it.getRole() == pyatspi.ROLE_PANEL)
                if self.has_state(pane, pyatspi.STATE_SHOWING)}

    def slides(self, window):
        """Whether a page is seen on its way, going there and back again."""
        seen = []

        def at_rest(title):
            seen.append(self.pages(window))
            return seen[-1] == {title: 0}
        for button, title in (("Sleep After", "Sleep After"), ("Back", "Lumora")):
            self.press_button(window, button)
            eventually(lambda: at_rest(title), title)
        return any(place != 0 for pages in seen for place in pages.values())

    def test_is_there_unless_one_of_the_desktops_settings_asks_for_less(self):
        window = self.open_root_page()
        eventually(lambda: self.slides(window), "a page on its way")
        window.kill()
        for key in Portal.LESS_MOTION:
            with self.subTest(key):
                portal = Portal(others={key: Portal.asked(Portal.LESS_MOTION, key, True)})
                window = self.open_root_page()
                portal.change_texts(2.0)  # heard of after it
                eventually(lambda: self.extents(self.named(window, SWITCH, "Enable Lumora")).height > 60, "large texts")
                self.assertFalse(any(self.slides(window) for _ in range(3)))
                portal.change(Portal.LESS_MOTION, key, False)
                eventually(lambda: self.slides(window), "a page on its way")
                window.kill()
                portal.stop()


class SecureFieldTest(Spoken):
    def test_tells_of_what_is_typed_in_dots_only(self):
        window = self.open_window("--page", "AutoUnlockController")
        self.xdotool("mousemove", 1200, 1000)
        eventually(lambda: "Passcode" in self.spoken(window, pyatspi.ROLE_TEXT), "the field")
        told = []
        self.listen(lambda event: told.append((event.type.name, event.source.name, event.any_data)),
                    "object:text-changed", "object:property-change", "object:state-changed:focused")
        self.click(self.named(window, pyatspi.ROLE_TEXT, "Passcode"))
        self.keys(window, "q", "7", "x", "Return", "shift+Tab")
        self.await_told(lambda: any(kind == "object:state-changed:focused" and name != "Passcode"
                                    for kind, name, _ in told),
                        "the focus on another control, after all that was told of the text")
        self.assertEqual(self.text_of(self.named(window, pyatspi.ROLE_TEXT, "Passcode")), "•••")
        for kind, _, what in told:
            self.assertFalse(isinstance(what, str) and re.search("[q7x]", what), (kind, what))
        eventually(lambda: "q7x" in map(self.stored, ("kAutoUnlockPasscode", "kAutoUnlockPasscodeConfirm")),
                   "the passcode at the tweak")


if __name__ == "__main__":
    unittest.main()
