"""What tests of a window as assistive tools see it are made of.

Needs what window.py needs, and pyatspi with its bus: dbus-run-session -- TEST.
"""
import os

import pyatspi
from gi.repository import Atspi, GLib

from harness.waiting import GONE, eventually
from harness.window import Windows

GONE.append(GLib.Error)

# What the toolkit makes of a switch, of a link if it is an older one, and of an option in a list of them.
SWITCH = pyatspi.ROLE_CHECK_BOX
LINK = BUTTON = pyatspi.ROLE_PUSH_BUTTON
OPTION = pyatspi.ROLE_RADIO_BUTTON


def role_of(item):
    """A newer toolkit tells of links as links, which are buttons to the tests."""
    role = item.getRole()
    return LINK if role == pyatspi.ROLE_LINK else role


def children(item):
    """Those that are still there: one that goes while it is asked for is none."""
    return [child for child in item if child]


class Spoken(Windows):
    """A test of a window that is looked at and pressed by assistive tools."""

    ROW = pyatspi.ROLE_LIST_ITEM  # of the list that the test looks at

    def setUp(self):
        super().setUp()
        self.environment |= {"DBUS_SESSION_BUS_ADDRESS": os.environ["DBUS_SESSION_BUS_ADDRESS"],
                             "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        self.start_tweak()

    def find(self, accessible, matches):
        if matches(accessible):
            yield accessible
        for child in children(accessible):
            yield from self.find(child, matches)

    def applications(self, window):
        """Those of the window's process; of others only that they are not."""
        desktop = pyatspi.Registry.getDesktop(0)
        desktop.set_cache_mask(Atspi.Cache.NONE)
        for application in children(desktop):
            try:
                if application.get_process_id() == window.pid:
                    yield application
            except GLib.Error:
                pass  # one that has just gone

    def spoken(self, window, role):
        """What is shown in a role, by its name, as assistive tools see it now."""
        try:
            return {item.name: item for application in self.applications(window)
                    for item in self.find(application, lambda it: role_of(it) == role and
                                          self.has_state(it, pyatspi.STATE_SHOWING))}
        except GLib.Error:
            return {}  # something went away while it was looked at

    def named(self, window, role, name):
        """One of them, to be used at once: whatever changes on the screen may put another in its place."""
        return eventually(lambda: self.spoken(window, role).get(name), name)

    @staticmethod
    def has_state(item, state):
        return item.getState().contains(state)

    @staticmethod
    def extents(item):
        component = item.get_component_iface()
        if component is None:
            raise GLib.Error("it has gone while it was looked at")
        return component.get_extents(pyatspi.DESKTOP_COORDS)

    @staticmethod
    def text_of(item):
        text = item.queryText()
        return text.getText(0, text.characterCount)

    @staticmethod
    def act(item, name):
        actions = item.queryAction()
        actions.doAction([actions.getName(i) for i in range(actions.nActions)].index(name))

    def press_button(self, window, name):
        """Or a link."""
        self.act(self.named(window, BUTTON, name), "Press")

    def click(self, item):
        place = self.extents(item)
        self.click_at(place.x + place.width // 2, place.y + place.height // 2)

    def listen(self, note, *events):
        """Has note(event) called for what assistive tools are told, while await_told() waits."""
        pyatspi.Registry.registerEventListener(note, *events)
        self.addCleanup(pyatspi.Registry.deregisterEventListener, note, *events)

    @staticmethod
    def await_told(condition, what):
        def look():
            GLib.MainContext.default().iteration(False)
            return condition()
        eventually(look, what)

    # -- the rows of a list --

    def rows(self, window):
        return self.spoken(window, self.ROW)

    def place(self, window, name):
        return self.extents(self.named(window, self.ROW, name))

    def in_state(self, window, state):
        return [name for name, row in self.rows(window).items() if self.has_state(row, state)]

    def focused(self, window):
        return self.in_state(window, pyatspi.STATE_FOCUSED)

    def marked(self, window):
        return self.in_state(window, pyatspi.STATE_CHECKED)

    def lift(self, window, name):
        """Presses a row's handle, and tells where."""
        row = self.place(window, name)
        x, y = row.x + row.width - 30, row.y + row.height // 2
        self.xdotool("mousemove", x, y, "mousedown", 1)
        return x, y

    def drag(self, window, name, to):
        """Drops a row where its middle is at that height."""
        x, y = self.lift(window, name)
        for part in range(1, 9):
            self.xdotool("mousemove", x, y + (to - y) * part // 8)
        self.xdotool("mouseup", 1)

    def expect(self, key, identifiers):
        self.expect_soon(lambda: self.get(key), identifiers)
