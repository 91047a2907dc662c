"""What tests of every control are made of: a page that is at rest, its controls as they are read out, and the three ways
in which a person uses them.

    item = self.find_control(window, control)    # by role, name and description
    self.press(window, control, "keyboard")      # by keyboard, pointer or assistive tool

Needs what spoken.py needs.
"""
import os
from pathlib import Path
from typing import NamedTuple

import pyatspi
from gi.repository import GLib

from everything_pages import stored_before
from harness.display import BAR, HEIGHT, WIDTH
from harness.spoken import OPTION, Spoken, children, role_of
from harness.waiting import LONG_ENOUGH, eventually, settled

WAYS = ("pointer", "keyboard", "assistive")


class Control(NamedTuple):
    """What is read out for a control. Links are buttons to the toolkit."""
    role: int
    name: str
    description: str


BACK = Control(pyatspi.ROLE_PUSH_BUTTON, "Back", "")


class Everything(Spoken):
    """A test that uses every control of some pages."""

    limit = 10 * LONG_ENOUGH
    before = stored_before()
    looked_at = (None, [])  # a page, and what is on it

    def start_tweak(self, *options):
        """One that has a value for every key, and an empty home."""
        self.store(self.before)
        self.home = os.path.join(self.folder, "home")
        for folder in ("applications", "nothing"):
            os.makedirs(os.path.join(self.home, folder))
        nothing = os.path.join(self.home, "nothing")
        self.environment |= {"HOME": self.home, "XDG_DATA_HOME": self.home, "XDG_CONFIG_HOME": self.home,
                             "XDG_DATA_DIRS": nothing, "XDG_CONFIG_DIRS": nothing, "LUMORA_SENDMAIL": ""}
        return super().start_tweak(*options)

    def take_mail(self):
        """Has the next message that is sent put into a file."""
        self.sent = Path(self.folder, "sent")
        self.environment["LUMORA_SENDMAIL"] = self.add_script("transport", f"cat > {self.sent}.new\n"
                                                              f"mv {self.sent}.new {self.sent}")

    def expect_stored(self, key, value):
        """On the tweak's disk, and of the same type."""
        self.expect_soon(lambda: (type(self.stored(key)), self.stored(key)), (type(value), value))

    # -- what is there --

    def frames(self, window):
        return [frame for application in self.applications(window) for frame in children(application)]

    def page(self, window):
        """The page that is shown, once it has slid in and the other one has gone."""
        for pane in (child for frame in self.frames(window) for child in children(frame)
                     if child.getRole() == pyatspi.ROLE_LAYERED_PANE):
            shown = [page for page in children(pane) if self.has_state(page, pyatspi.STATE_SHOWING)]
            if len(shown) == 1:
                return shown[0]
        return None

    def above(self, window, role):
        """What is shown in the bar above all pages."""
        def shows(child):
            try:
                return role_of(child) == role and self.has_state(child, pyatspi.STATE_SHOWING)
            except GLib.Error:
                return False  # a notice that has just passed
        return [child for frame in self.frames(window) for child in children(frame) if shows(child)]

    def title(self, window):
        return next((child.name for child in self.above(window, pyatspi.ROLE_HEADING)), None)

    def items(self, window):
        """All that is read out on the page that is shown, as (control, accessible), in view or not."""
        self.looked_at = (None, [])
        try:
            if page := self.page(window):
                self.looked_at = (page, [(Control(role_of(item), item.name, item.description), item)
                                         for item in self.find(page, lambda it: it.get_component_iface())])
        except GLib.Error:
            pass  # something went away while it was looked at
        return self.looked_at[1]

    def look_for(self, window, control):
        """A page is walked through once, and again when something is not there, because that takes a while."""
        if control == BACK:
            return next((back for back in self.above(window, BACK.role) if back.name == BACK.name), None)
        if self.looked_at[0] != self.page(window) or control not in [other for other, _ in self.looked_at[1]]:
            self.items(window)
        found = [item for other, item in self.looked_at[1] if other == control]
        self.assertLessEqual(len(found), 1, f"told apart by nothing: {control}")
        return found[0] if found else None

    def find_control(self, window, control):
        return eventually(lambda: self.look_for(window, control), str(control))

    # -- as a person does --

    def is_in_view(self, item):
        place = self.extents(item)
        return place.y >= BAR and place.y + place.height <= HEIGHT

    def turn_wheel(self, up):
        self.click_at(WIDTH // 2, HEIGHT // 2, 4 if up else 5)

    def turn_wheel_to(self, item):
        """Notch by notch, of which the first scroll little after the mouse has dragged something."""
        while not self.is_in_view(item):
            self.turn_wheel(self.extents(item).y < BAR)
            self.expect_still(item)

    def expect_still(self, item):
        settled(lambda: self.extents(item).y, f"{item.name} in its place")

    def focus_by_keyboard(self, window, control):
        """The way of the keyboard leads to everything, wherever it begins; from option to option by arrows."""
        self.find_control(window, control)
        items = [(other, item) for other, item in self.looked_at[1]
                 if other.role not in (pyatspi.ROLE_PANEL, pyatspi.ROLE_LIST)]
        items += [(Control(BACK.role, button.name, ""), button) for button in self.above(window, BACK.role)]

        def focused():
            return next((other for other, item in items if self.has_state(item, pyatspi.STATE_FOCUSED)), None)
        self.lead_focus(window, "Down" if control.role == OPTION else "Tab", focused, control)

    def lead_focus(self, window, key, focused, wanted):
        seen = []
        while (now := focused()) != wanted:
            self.assertNotIn(now, seen, f"the keyboard does not lead to {wanted}")
            seen.extend([now] if now else [])
            self.keys(window, key)
            eventually(lambda: focused() not in (None, now), f"the focus after {now}")

    def focus(self, window, control, way):
        """Brings it into view too, and gives what has the focus then."""
        item = self.find_control(window, control)
        if way == "pointer":
            self.turn_wheel_to(item)
            self.click(item)
        elif way == "keyboard":
            self.focus_by_keyboard(window, control)
        else:
            self.act(item, "SetFocus")
        if way != "pointer":
            eventually(lambda: self.has_state(item, pyatspi.STATE_FOCUSED), f"the focus on {control}")
            eventually(lambda: self.is_in_view(item), f"{control} in view")
        return item

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
            self.click(back)
        elif way == "keyboard":
            self.keys(window, key)
        else:
            self.act(back, "Press")
