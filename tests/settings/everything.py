"""What tests of every control are made of: a page that is at rest, its controls as they are read out, and the three ways in
which a person uses them.

    item = self.find_control(window, control)    # by role, name and description
    self.press(window, control, "keyboard")      # by keyboard, pointer or assistive tool

Needs what spoken.py needs.
"""
import os
import plistlib
from typing import NamedTuple

import pyatspi
from gi.repository import GLib

from everything_pages import stored_before
from spoken import Spoken
from window import HEIGHT, WIDTH, eventually

WAYS = ("pointer", "keyboard", "assistive")
BAR = 52  # the navigation bar, above the page


class Control(NamedTuple):
    """What is read out for a control. Links are buttons to the toolkit."""
    role: int
    name: str
    description: str


BACK = Control(pyatspi.ROLE_PUSH_BUTTON, "Back", "")


def ways_for(number, count):
    """All three for one of a kind; where there are more they share them, each way being somebody's."""
    return [WAYS[number % 3]] if count >= 3 else list(WAYS[number::count])


class Everything(Spoken):
    """A test that uses every control of some pages."""

    before = stored_before()

    def start_tweak(self, *options):
        """One that has a value for every key, and a home in which there is nothing but what the test puts there."""
        with open(self.settings_file, "wb") as file:
            plistlib.dump(self.before, file, fmt=plistlib.FMT_BINARY)
        self.home = os.path.join(self.folder, "home")
        for folder in ("applications", "nothing"):
            os.makedirs(os.path.join(self.home, folder))
        nothing = os.path.join(self.home, "nothing")
        self.environment |= {"HOME": self.home, "XDG_DATA_HOME": self.home, "XDG_CONFIG_HOME": self.home,
                             "XDG_DATA_DIRS": nothing, "XDG_CONFIG_DIRS": nothing, "LUMORA_SENDMAIL": ""}
        return super().start_tweak(*options)

    def expect_stored(self, key, value):
        """On the tweak's disk, and of the same type."""
        def is_stored():
            return (type(self.stored(key)), self.stored(key)) == (type(value), value)
        try:
            eventually(is_stored, f"{key} = {value!r}")
        except AssertionError as never:
            raise AssertionError(f"{never}, not {self.stored(key)!r}") from None

    # -- what is there --

    def page(self, window):
        """The page that is shown, once it has slid in and the other one has gone."""
        for application in self.applications(window):
            for frame in application:
                for pane in (child for child in frame if child.getRole() == pyatspi.ROLE_LAYERED_PANE):
                    shown = [page for page in pane if page and page.getState().contains(pyatspi.STATE_SHOWING)]
                    if len(shown) == 1:
                        return shown[0]
        return None

    def items(self, window):
        """All that is read out on the page that is shown, as (control, accessible), in view or not."""
        try:
            page = self.page(window)
            return [(Control(item.getRole(), item.name, item.description), item)
                    for item in (self.find(page, lambda it: it.get_component_iface()) if page else ())]
        except GLib.Error:
            return []  # something went away while it was looked at

    def look_for(self, window, control):
        if control == BACK:
            return self.spoken(window, control.role).get(control.name)
        found = [item for other, item in self.items(window) if other == control]
        self.assertLessEqual(len(found), 1, f"told apart by nothing: {control}")
        return found[0] if found else None

    def find_control(self, window, control):
        return eventually(lambda: self.look_for(window, control), str(control))

    @staticmethod
    def has_state(item, state):
        return item.getState().contains(state)

    def title(self, window):
        """The one in the bar above all pages."""
        return next((name for application in self.applications(window) for frame in application
                     for name in [child.name for child in frame if child.getRole() == pyatspi.ROLE_HEADING]), None)

    # -- as a person does --

    def keys(self, window, *keys):
        self.xdotool("key", "--window", window.id, *keys)

    def type(self, window, text):
        self.xdotool("type", "--window", window.id, "--delay", "4", text)

    @staticmethod
    def extents(item):
        return item.get_component_iface().get_extents(pyatspi.DESKTOP_COORDS)

    def is_in_view(self, item):
        place = self.extents(item)
        return place.y >= BAR and place.y + place.height <= HEIGHT

    def turn_wheel_to(self, item):
        """Where it is then."""
        self.xdotool("mousemove", str(WIDTH // 2), str(HEIGHT // 2))
        while not self.is_in_view(item):
            y = self.extents(item).y
            self.xdotool("click", "4" if y < BAR else "5")
            eventually(lambda: self.extents(item).y != y, f"the page to scroll to {item.name}")
        return self.extents(item)

    def focused(self, window):
        """What has the keyboard, on the page or above it."""
        back = self.look_for(window, BACK)
        return next((control for control, item in [*self.items(window), *([(BACK, back)] if back else [])]
                     if control.role not in (pyatspi.ROLE_PANEL, pyatspi.ROLE_LIST)
                     and self.has_state(item, pyatspi.STATE_FOCUSED)), None)

    def focus_by_keyboard(self, window, control):
        """The way of the keyboard leads to everything, wherever it begins."""
        seen = []
        while (now := self.focused(window)) != control:
            self.assertNotIn(now, seen, f"the keyboard does not lead to {control}")
            seen.extend([now] if now else [])
            self.keys(window, "Tab")
            eventually(lambda: self.focused(window) not in (None, now), f"the focus after {now}")

    def focus(self, window, control, way):
        """Brings it into view too, and gives what has the focus then."""
        item = self.find_control(window, control)
        if way == "pointer":
            self.click(item)
        elif way == "keyboard":
            self.focus_by_keyboard(window, control)
        else:
            self.act(item, "SetFocus")
        if way != "pointer":
            eventually(lambda: self.has_state(item, pyatspi.STATE_FOCUSED), f"the focus on {control}")
            eventually(lambda: self.is_in_view(item), f"{control} in view")
        return item

    def click(self, item):
        place = self.turn_wheel_to(item)
        self.xdotool("mousemove", str(place.x + place.width // 2), str(place.y + place.height // 2), "click", "1")

    def press(self, window, control, way, key="Return"):
        """By a key, if by keyboard: what has the focus takes Return and the space bar."""
        item = self.focus(window, control, way)
        if way == "keyboard":
            self.keys(window, key)
        elif way == "assistive":
            self.act(item, "Press")

    def go_back(self, window, way, key="Escape"):
        back = self.find_control(window, BACK)
        if way == "pointer":
            place = self.extents(back)
            self.xdotool("mousemove", str(place.x + place.width // 2), str(place.y + place.height // 2), "click", "1")
        elif way == "keyboard":
            self.keys(window, key)
        else:
            self.act(back, "Press")
