#!/usr/bin/python3
"""The lists in the real programs: rows moved by mouse, keyboard and assistive action, as the tweak has them then; and
plug-ins' own pages.

    PYTHONPATH=tests dbus-run-session -- tests/settings/window/lists_test.py [-v] BUILD

Needs what spoken.py needs.
"""
import glob
import os
import shutil
import unittest

import pyatspi

from harness.build import BUILD
from harness.display import BAR, HEIGHT
from harness.programs import add_plugin
from harness.spoken import LINK, SWITCH, Spoken
from harness.waiting import eventually

# None of them is installed: their rows have no title, and the identifier is their name.
SAVED = ["test.one", "test.two", "test.three"]


class Lists:
    """The tests, for one page of a list and the key that it saves."""

    page = key = None

    def setUp(self):
        super().setUp()
        self.set(self.key, SAVED)
        self.assertEqual(self.saved(), SAVED)

    def saved(self):
        return self.get(self.key)

    def open_list(self, *shown):
        window = self.open_window("--page", self.page)
        eventually(lambda: {*shown} <= self.rows(window).keys(), "the rows")
        return window

    def expect_saved(self, *identifiers):
        self.expect(self.key, list(identifiers))

    def save_many(self, count):
        many = [f"test.{i}" for i in range(count)]
        self.set(self.key, many)
        return many

    def disabled(self):
        """The titles and identifiers of what is not in the list."""
        return [(row["title"], row["identifier"]) for row in self.printed(self.page)["sections"][1]["rows"]]

    def test_moves_a_row_by_its_handle(self):
        window = self.open_list(*SAVED)
        x, y = self.lift(window, "test.one")
        for step in range(10, 81, 10):
            self.xdotool("mousemove", x, y + step)
        self.assertEqual(self.saved(), SAVED, "nothing is moved before the drop")
        self.xdotool("mouseup", 1)
        self.expect_saved("test.two", "test.three", "test.one")

    def test_moves_rows_into_an_empty_section_and_out_of_the_only_full_one(self):
        self.set(self.key, [])
        title, identifier = self.disabled()[1]
        window = self.open_window("--page", self.page)
        row = self.place(window, title)
        self.drag(window, title, 100)
        self.expect_saved(identifier)
        eventually(lambda: self.place(window, title).y < row.y, "the row in the other section")
        self.drag(window, title, self.place(window, title).y + 5 * row.height)
        self.expect_saved()

    def test_scrolls_over_many_rows_for_a_row_in_the_hand(self):
        many = self.save_many(1000)  # more than it can scroll over between two looks
        window = self.open_list("test.0")
        x, y = self.lift(window, "test.0")
        for to in (y + 20, y + 300, HEIGHT - 60, HEIGHT - 20):
            self.xdotool("mousemove", x, to)

        def is_far_below():
            return any(name.startswith("test.") and int(name.removeprefix("test.")) >= 70 for name in self.rows(window))
        eventually(is_far_below, "the rows far below")
        self.xdotool("mousemove", x, HEIGHT // 2)
        self.xdotool("mouseup", 1)
        eventually(lambda: self.saved() != many, "the move")
        moved = self.saved()
        self.assertEqual([row for row in moved if row != "test.0"], many[1:])
        self.assertGreaterEqual(moved.index("test.0"), 50)

    def test_shows_the_last_row_whole(self):
        self.save_many(60)
        last, _ = self.disabled()[-1]
        window = self.open_list("test.0")
        self.keys(window, "End")
        eventually(lambda: self.focused(window) == [last], "the focus on the last row")
        place = self.place(window, last)
        self.assertGreater(place.y, HEIGHT // 2)
        self.assertLessEqual(place.y + place.height, HEIGHT)

    def test_moves_a_row_that_has_only_just_come_into_view(self):
        many = self.save_many(300)
        window = self.open_list("test.0")
        self.xdotool("key", "--window", window.id, "--delay", 0, "Next", "Next", "Next", "alt+Up")
        eventually(lambda: self.saved() != many, "the move")
        moved = self.saved()
        at = next(i for i in range(300) if moved[i] != many[i])
        self.assertGreater(at, 20)
        many[at], many[at + 1] = many[at + 1], many[at]
        self.assertEqual(moved, many)
        eventually(lambda: self.focused(window) == [moved[at]], "the focus on the moved row")

    def test_moves_a_row_by_keyboard_and_out_of_the_enabled_ones(self):
        window = self.open_list(*SAVED)
        self.keys(window, "Tab", "Down", "alt+Up")
        self.expect_saved("test.two", "test.one", "test.three")
        self.keys(window, "alt+Down", "alt+Down", "alt+Down")
        self.expect_saved("test.one", "test.three")

    def test_moves_a_row_to_the_ends_of_its_section_and_into_the_other_by_keyboard(self):
        window = self.open_list(*SAVED)
        self.keys(window, "Tab", "alt+End")
        self.expect_saved("test.two", "test.three", "test.one")
        self.keys(window, "alt+Home")
        self.expect_saved(*SAVED)
        self.keys(window, "alt+shift+Down")
        self.expect_saved("test.two", "test.three")
        self.keys(window, "alt+shift+Up")
        self.expect_saved("test.two", "test.three", "test.one")

    def test_filters_by_letters_and_moves_the_row_once_the_filter_is_cleared(self):
        self.save_many(300)
        title, identifier = self.disabled()[-1]
        window = self.open_list("test.0")
        self.keys(window, "Tab")
        self.type(window, title.swapcase())
        eventually(lambda: list(self.rows(window)) == [title], f"{title} alone, not {list(self.rows(window))}")
        self.keys(window, "Down", "alt+shift+Up", "Escape")
        eventually(lambda: self.focused(window) == [title], f"the focus on {title}, not {self.focused(window)}")
        self.assertNotEqual(self.saved()[-1:], [identifier])
        self.keys(window, "alt+shift+Up")
        eventually(lambda: self.saved()[-1] == identifier, "the move of the row that was found")

    def test_moves_a_row_by_its_menu_from_the_keyboard(self):
        window = self.open_list(*SAVED)
        self.keys(window, "Tab", "Down", "shift+F10")
        self.named(window, pyatspi.ROLE_MENU_ITEM, "To Top")
        self.keys(window, "Down", "Down", "Return")
        self.expect_saved("test.two", "test.one", "test.three")
        self.keys(window, "Menu")
        self.named(window, pyatspi.ROLE_MENU_ITEM, "To Disabled")
        self.keys(window, "Up", "Return")
        self.expect_saved("test.one", "test.three")
        eventually(lambda: self.focused(window) == ["test.two"], "the focus on the moved row")

    def test_moves_a_row_by_its_menu_from_the_pointer(self):
        window = self.open_list(*SAVED)
        row = self.place(window, "test.three")
        self.click_at(row.x + 100, row.y + row.height // 2, button=3)
        self.click(self.named(window, pyatspi.ROLE_MENU_ITEM, "To Top"))
        self.expect_saved("test.three", "test.one", "test.two")
        eventually(lambda: self.place(window, "test.three").y < row.y, "the row at the top")
        row = self.place(window, "test.three")
        self.xdotool("mousemove", row.x + 100, row.y + row.height // 2, "mousedown", 1)
        below = self.named(window, pyatspi.ROLE_MENU_ITEM, "To Disabled")
        self.xdotool("mouseup", 1)
        self.click(below)
        self.expect_saved("test.one", "test.two")

    def test_tells_assistive_tools_of_the_possible_moves_of_a_menu_and_takes_one_of_them(self):
        window = self.open_list(*SAVED)
        self.act(self.named(window, self.ROW, "test.one"), "ShowMenu")
        self.named(window, pyatspi.ROLE_POPUP_MENU, "test.one")
        lines = self.spoken(window, pyatspi.ROLE_MENU_ITEM)
        self.assertEqual([*lines], ["Move Down", "To Disabled"])
        self.act(lines["Move Down"], "Press")
        self.expect_saved("test.two", "test.one", "test.three")

    def test_moves_a_row_by_assistive_action_and_tells_of_its_focus(self):
        window = self.open_list(*SAVED)
        focused = []
        self.listen(lambda event: event.detail1 and focused.append(event.source.name), "object:state-changed:focused")
        self.act(self.named(window, self.ROW, "test.one"), "Move down")
        self.expect_saved("test.two", "test.one", "test.three")
        self.await_told(lambda: focused[-1:] == ["test.one"], f"the focus on the moved row, not {focused}")
        moved = self.named(window, self.ROW, "test.one")
        self.assertTrue(self.has_state(moved, pyatspi.STATE_FOCUSED))
        self.assertTrue(moved.description.startswith("Position 2 of 3 in Enabled."), moved.description)
        self.act(moved, "Move up")
        self.expect_saved(*SAVED)

    def test_prints_every_row_of_the_list(self):
        many = self.save_many(300)
        page = self.printed(self.page)
        self.assertEqual(page["page"], self.page)
        self.assertEqual([section["header"] for section in page["sections"]], ["Enabled", "Disabled"])
        self.assertEqual([row["identifier"] for row in page["sections"][0]["rows"]], many)
        self.assertEqual(page["sections"][0]["rows"][0], {"identifier": "test.0", "title": "", "marked": False})


class AppViewsTest(Lists, Spoken):
    page, key = "PluginsListViewController", "kAppViewsEnabled"

    def test_puts_a_row_back_when_its_page_goes(self):
        window = self.open_window("--page", "PluginsListController")
        self.press_button(window, "Select Plugins")
        eventually(lambda: "test.one" in self.rows(window) and "Select Plugins" not in self.spoken(window, LINK),
                   "the list, in its place")
        x, y = self.lift(window, "test.one")
        self.xdotool("mousemove", x, y + 80)
        self.xdotool("key", "alt+Left")
        eventually(lambda: "Select Plugins" in self.spoken(window, LINK), "the page before")
        self.xdotool("mouseup", 1)
        self.assertEqual(self.saved(), SAVED)


    def test_closes_a_menu_alone_with_escape(self):
        window = self.open_window("--page", "PluginsListController")
        self.press_button(window, "Select Plugins")
        eventually(lambda: "test.one" in self.rows(window) and "Select Plugins" not in self.spoken(window, LINK),
                   "the list, in its place")
        self.keys(window, "Tab", "Menu")
        self.named(window, pyatspi.ROLE_MENU_ITEM, "Move Down")
        self.keys(window, "Escape")
        eventually(lambda: not self.spoken(window, pyatspi.ROLE_MENU_ITEM), "the menu to close")
        self.assertIn("test.one", self.rows(window))
        eventually(lambda: self.focused(window) == ["test.one"], "the focus on the row")
        self.keys(window, "Escape")
        eventually(lambda: "Select Plugins" in self.spoken(window, LINK), "the page before")
        self.assertEqual(self.saved(), SAVED)

    def test_prints_no_row_for_what_an_empty_section_says(self):
        self.set(self.key, [])
        [enabled, disabled] = self.printed(self.page)["sections"]
        self.assertEqual(enabled, {"header": "Enabled", "footer": " ", "rows": []})
        window = self.open_window("--page", self.page)
        eventually(lambda: len(self.rows(window)) == len(disabled["rows"]), "the rows")
        row = self.place(window, disabled["rows"][0]["title"])
        self.assertTrue(self.rows(window)[disabled["rows"][0]["title"]].description.startswith("Position 1 of "))
        self.assertGreater(row.y, BAR + 50 + 40 + 50, "the placeholder has room")


class AppsTest(Lists, Spoken):
    page, key = "AppsListController", "kAppsEnabled"


class AutoUnlockAppsTest(Spoken):
    def test_saves_what_is_exempt_and_leaves_the_chosen_ones_alone(self):
        self.set("kAppsEnabled", SAVED)
        window = self.open_window("--page", "AUAppsListController")
        self.act(self.named(window, self.ROW, "test.three"), "Move down")
        self.expect("kAUAppsDisabled", ["test.three"])
        self.keys(window, "Up", "alt+Down")
        self.expect("kAUAppsDisabled", ["test.two", "test.three"])
        self.drag(window, "test.one", self.place(window, "test.three").y + 60)
        self.expect("kAUAppsDisabled", ["test.two", "test.three", "test.one"])
        self.drag(window, "test.three", 100)
        self.expect("kAUAppsDisabled", ["test.two", "test.one"])
        self.assertEqual(self.get("kAppsEnabled"), SAVED)


class PlugInPageTest(Spoken):
    """A plug-in's own settings page, from its link to a key of its own at the tweak, and faulty ones."""

    def add(self, name, module):
        add_plugin(self.root, name, BUILD / "tests/lists/modules" / module, "TestPlugin")

    def test_opens_from_its_link_and_keeps_its_keys_at_the_tweak(self):
        window = self.open_window("--page", "PluginsListController")
        eventually(lambda: "Weather" in self.spoken(window, LINK), "the link")
        self.act(self.spoken(window, LINK)["Weather"], "Press")
        eventually(lambda: "Show Tomorrow" in self.spoken(window, SWITCH), "the plug-in's page")
        self.act(self.spoken(window, SWITCH)["Show Tomorrow"], "Toggle")
        eventually(lambda: self.stored("org.lumora.plugins.weather.tomorrow") is False, "the change at the tweak")

    def test_does_not_open_when_it_throws_or_has_a_null_row_and_the_others_do(self):
        faults = {"constructor": "no page today", "rows": "no page today", "row": "it has a null row"}
        self.make_root()
        for place in faults:
            self.add(f"faulty-{place}", "PagePlugin")
        window = self.open_window("--page", "PluginsListController")
        self.named(window, LINK, "Weather")
        said = window.lines.text
        for place, fault in faults.items():
            self.act(self.named(window, LINK, f"faulty-{place}"), "Press")
            said += f"lumora-settings: the page TestPage does not open: {fault}\n"
            self.expect_soon(lambda: window.lines.text, said)
        self.act(self.named(window, LINK, "Weather"), "Press")
        self.named(window, SWITCH, "Show Tomorrow")
        self.assertEqual(window.lines.text, said)

    def test_of_one_that_sleeps_while_it_is_loaded_is_waited_for_once(self):
        loads = self.environment["LUMORA_TEST_LOADS"] = self.folder + "/loads"
        with open(loads, "w", encoding="utf-8"):
            pass  # the plug-in adds a line each time
        self.make_root()
        plugins = self.root + "/Library/Nevo/Lumora/Plugins"
        shutil.rmtree(plugins)
        os.mkdir(plugins)
        self.add("hanging-at-load-1", "TestPlugin")
        self.add("sound", "PagePlugin")
        window = self.open_root_page()
        eventually(lambda: glob.glob(self.folder + "/cache/lumora/index-" + 16 * "?"), "the index, whose process loads it too")
        with open(loads, encoding="utf-8") as file:
            before = file.read()
        for _ in range(2):
            self.act(self.named(window, LINK, "App Views"), "Press")
            self.named(window, LINK, "sound")
            self.assertNotIn("hanging-at-load-1", self.spoken(window, LINK))
            self.xdotool("key", "--window", window.id, "Escape")
            eventually(lambda: self.spoken(window, LINK).keys() & {"App Views", "sound"} == {"App Views"}, "the root")
        with open(loads, encoding="utf-8") as file:
            self.assertEqual(file.read().removeprefix(before), "hanging-at-load-1\n")


if __name__ == "__main__":
    unittest.main()
