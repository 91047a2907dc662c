#!/usr/bin/python3
"""Every control of every page of rows, in the real window: found by what is read out for it, used by pointer, keyboard
and assistive tool, and looked up on the tweak's disk.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/everything_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import email
import email.policy
import unittest
from pathlib import Path

import pyatspi

from everything import WAYS, Control, Everything
from everything_pages import CELLS, PAGES, VIEWS
from harness.spoken import BUTTON, OPTION
from harness.waiting import eventually

ROLES = {"switch": pyatspi.ROLE_CHECK_BOX, "slider": pyatspi.ROLE_SLIDER, "field": pyatspi.ROLE_TEXT,
         "secure": pyatspi.ROLE_TEXT, "text": pyatspi.ROLE_LABEL}
HEADING, LABEL = pyatspi.ROLE_HEADING, pyatspi.ROLE_LABEL


class EverythingTest(Everything):
    def begin(self, page):
        """Keeps account of what is used of a page, and in which ways."""
        self.rows = PAGES[page]
        self.used = {}
        self.chosen = dict(self.before)  # since then

    def open_page(self, page):
        self.begin(page)
        window = self.open_window("--page", page)
        eventually(lambda: self.items(window), "the page")
        return window

    def around(self, row):
        """The text that tells a row from others of its name: what stands beneath its group, or else above."""
        group = next(other for other in reversed(self.rows[:self.position(row)]) if other.kind == "group")
        return group.footer or group.name

    def position(self, row):
        return next(i for i, other in enumerate(self.rows) if other is row)

    def control(self, row):
        around = "" if self.around(row) == row.name else self.around(row)
        told = "Secure" if row.kind == "secure" else self.title_of(row) if row.kind == "options" else ""
        return Control(ROLES.get(row.kind, BUTTON), row.name, ". ".join(text for text in (told, around) if text))

    def title_of(self, row):
        return row.titles[row.values.index(self.chosen[row.key])]

    def use(self, window, row, way):
        getattr(self, "use_" + row.kind)(window, row, way)
        self.used.setdefault(self.position(row), set()).add(way)

    def use_all(self, window):
        """Each row by each way, down the page and again."""
        self.read_all(window)
        for way in WAYS:
            for row in self.rows:
                if row.kind not in ("group", "text"):
                    self.use(window, row, way)
        self.expect_all_used()

    def expect_all_used(self):
        for row in self.rows:
            ways = {"assistive"} if row.kind in ("group", "text") else set(WAYS)
            for used in (self.position(row), *((self.position(row), title) for title in row.titles)):
                self.assertEqual(self.used.get(used), ways, (row, used))

    # -- what is there --

    def expect_rows(self, page):
        """The program's rows are those that we know of, each with what was stored before."""
        printed = self.printed(page)["rows"]
        self.assertEqual(len(printed), len(PAGES[page]))
        for row, known in zip(printed, PAGES[page]):
            is_field = known.kind in ("field", "secure")
            expected = {"cell": CELLS[known.kind], "name": "" if is_field or known.kind == "slider" else known.name,
                        "identifier": known.key or ""}
            if known.footer:
                expected |= {"footerText": known.footer}
            if known.kind == "slider":
                expected |= {"min": known.low, "max": known.high, "showValue": True}
            if is_field:
                expected |= {"placeholder": known.name}
            if known.kind == "options":
                expected |= {"titles": list(known.titles), "values": list(known.values),
                             "detail": "PSListItemsController"}
            if known.kind == "link":
                expected |= {"detail": known.page}
            if known.kind == "button":
                expected |= {"icon": True}
            if known.key:
                expected |= {"value": "•••" if known.kind == "secure" else self.before[known.key]}
            self.assertEqual(row, expected)

    def read_all(self, window):
        """All that is read out on the page are our rows, each as it was stored."""
        expected = []
        for row in self.rows:
            if row.kind == "group":
                expected += [Control(HEADING, row.name, "")] * bool(row.name)
                expected += [Control(LABEL, row.footer, "")] * bool(row.footer)
                self.used[self.position(row)] = {"assistive"}
                continue
            expected.append(self.control(row))
            item = self.find_control(window, expected[-1])
            if row.kind == "switch":
                self.assertEqual(self.has_state(item, pyatspi.STATE_CHECKED), self.before[row.key], row)
            elif row.kind == "slider":
                self.assertEqual(item.queryValue().currentValue, self.before[row.key])
                self.assertEqual((item.queryValue().minimumValue, item.queryValue().maximumValue), (row.low, row.high))
            elif row.kind in ("field", "secure"):
                self.assertEqual(self.text_of(item), self.shown(row, self.before[row.key]))
            elif row.kind == "text":
                self.used[self.position(row)] = {"assistive"}
        shown = [control for control, _ in self.items(window) if control.role != pyatspi.ROLE_PANEL]
        self.assertCountEqual(shown, expected)

    @staticmethod
    def shown(row, text):
        return "•" * len(text) if row.kind == "secure" else text

    # -- each kind of row --

    def use_switch(self, window, row, way):
        control = self.control(row)
        for key in ("space", "Return"):
            on = not self.chosen[row.key]
            self.press(window, control, way, key)
            self.expect_stored(row.key, on)
            item = self.find_control(window, control)
            eventually(lambda: self.has_state(item, pyatspi.STATE_CHECKED) is on, f"{control} as it is stored")
            self.chosen[row.key] = on

    def use_slider(self, window, row, way):
        control = self.control(row)
        for end, key in ((row.low, "Home"), (row.high, "End")):
            if way == "pointer":
                item = self.find_control(window, control)
                self.turn_wheel_to(item)
                self.drag_to_end(item, row, end)
            else:
                item = self.focus(window, control, way)
                if way == "keyboard":
                    self.keys(window, key)
                else:
                    item.queryValue().currentValue = end
            self.expect_stored(row.key, float(end))
            eventually(lambda: item.queryValue().currentValue == end, "the slider's end")

    def drag_to_end(self, item, row, end):
        """By its knob, and beyond what the slider has."""
        place = self.extents(item)
        at = (item.queryValue().currentValue - row.low) / (row.high - row.low)
        x, y = place.x + 14 + (place.width - 28) * at, place.y + place.height // 2
        to = place.x + (-8 if end == row.low else place.width + 8)
        moves = [["mousemove", round(x + (to - x) * step / 4), y] for step in range(5)]
        self.xdotool(*moves[0], "mousedown", 1, *sum(moves[1:], []), "mouseup", 1)

    def use_field(self, window, row, way):
        control = self.control(row)
        for text, key in ((f"By {way}", "Return"), ("", "Tab")):
            item = self.focus(window, control, way)
            eventually(lambda: self.has_state(item, pyatspi.STATE_FOCUSED), f"the focus in {control}")
            self.keys(window, "ctrl+a", "BackSpace")
            self.type(window, text)
            self.keys(window, key)
            self.expect_stored(row.key, text)
            self.assertEqual(self.text_of(item), self.shown(row, text))

    use_secure = use_field

    def use_options(self, window, row, way):
        """Opens the list, chooses each option and goes back."""
        self.press(window, self.control(row), way)
        self.expect_page(window, row.name, Control(OPTION, row.titles[0], ""))
        shown = [control for control, _ in self.items(window) if control.role == OPTION]
        self.assertEqual(shown, [Control(OPTION, title, "") for title in row.titles])
        for title, value in zip(row.titles, row.values):
            self.press(window, Control(OPTION, title, ""), way)
            self.expect_stored(row.key, value)
            eventually(lambda: self.marked(window) == [title], f"the mark of {title}")
            self.used.setdefault((self.position(row), title), set()).add(way)
            self.chosen[row.key] = value
        self.go_back(window, way, "alt+Left")
        self.find_control(window, self.control(row))

    def marked(self, window):
        return [control.name for control, item in self.items(window)
                if control.role == OPTION and self.has_state(item, pyatspi.STATE_CHECKED)]

    def use_link(self, window, row, way):
        self.press(window, self.control(row), way)
        self.expect_page(window, VIEWS.get(row.page, row.name), self.landmark(row.page))
        self.go_back(window, way)
        self.find_control(window, self.control(row))

    def expect_page(self, window, title, landmark):
        self.find_control(window, landmark)
        self.assertEqual(self.title(window), title)

    @staticmethod
    def landmark(page):
        """Something that no other page has."""
        if page == "ColorPickerController":
            return Control(pyatspi.ROLE_SLIDER, "Hue", "Hue and Saturation")
        if page in VIEWS:
            return Control(pyatspi.ROLE_PANEL if page == "ChangeLogController" else pyatspi.ROLE_LIST, VIEWS[page], "")
        first = next(row for row in PAGES[page] if row.kind == "group")
        return Control(HEADING, first.name, "") if first.name else Control(LABEL, first.footer, "")


class PagesTest(EverythingTest):
    def check(self, page):
        self.expect_rows(page)
        self.use_all(self.open_page(page))

    def test_lockscreen_apps(self):
        self.check("AppsController")

    def test_auto_unlock(self):
        self.check("AutoUnlockController")

    def test_lock_screen(self):
        self.check("LSSettingsController")

    def test_passcode_view(self):
        self.check("LSPasscodeSettings")

    def test_date_view(self):
        self.check("LSDateViewSettings")

    def test_app_views(self):
        self.check("PluginsListController")

    def test_pages_of_plug_ins(self):
        """They have no class that could be named from outside: their links lead to them."""
        for link in ("Notes", "Weather"):
            window = self.open_page("PluginsListController")
            self.press(window, Control(BUTTON, link, "Settings"), "assistive")
            self.begin(link + "Page")
            self.expect_page(window, link, self.landmark(link + "Page"))
            self.use_all(window)
            window.kill()

    def test_knows_every_page_that_a_link_opens(self):
        found = ["LumoraPreferences"]
        for page in found:  # grows meanwhile
            if page not in VIEWS and page not in ("NotesPage", "WeatherPage"):
                found += [row["detail"] for row in self.printed(page)["rows"]
                          if row["cell"] == CELLS["link"] and row["detail"] not in found]
        self.assertEqual(set(found), {*PAGES, *VIEWS})


class RootPageTest(EverythingTest):
    """The first page, with programs of the test's own for the two buttons at its end."""

    def setUp(self):
        super().setUp()
        self.take_mail()
        self.opened = Path(self.folder, "opened")
        self.opened.touch()
        viewer = self.add_script("viewer", f'echo "$@" >> {self.opened}')
        self.write("home/applications/viewer.desktop", "[Desktop Entry]\nType=Application\nName=Viewer\n"
                   f"Exec={viewer} %u\nMimeType=x-scheme-handler/twitter;\n")
        self.write("home/mimeapps.list", "[Default Applications]\nx-scheme-handler/twitter=viewer.desktop\n")

    def test_first_page(self):
        self.expect_rows("LumoraPreferences")
        self.use_all(self.open_page("LumoraPreferences"))

    def use_button(self, window, row, way):
        if row.name.startswith("@"):
            before = self.addresses()
            self.press(window, self.control(row), way)
            self.expect_soon(self.addresses, [*before, "twitter://user?screen_name=nevo_lumora"])
            return
        self.press(window, self.control(row), way)
        end = {"pointer": "Send", "keyboard": "Cancel", "assistive": "Save Draft"}[way]
        button = self.named(window, BUTTON, end)
        if way == "pointer":
            self.expect_still(button)
            self.click(button)
        elif way == "keyboard":
            self.keys(window, "Escape")
        else:
            self.act(button, "Press")
        eventually(lambda: end not in self.spoken(window, BUTTON), "the composer to go")
        if end == "Send":
            eventually(self.sent.exists, "the message")
            self.expect_report(self.sent)
        if end == "Save Draft":
            [draft] = eventually(lambda: [*Path(self.home, "lumora/drafts").glob("*")], "the draft")
            self.expect_report(draft)
            draft.unlink()

    def addresses(self):
        return self.opened.read_text(encoding="ascii").split()

    def expect_report(self, path):
        message = email.message_from_bytes(path.read_bytes(), policy=email.policy.default)
        self.assertEqual(message["To"], "support@nevo.example")
        self.assertRegex(message["Subject"], r"^Lumora -- .+\(.+\)$")


if __name__ == "__main__":
    unittest.main()
