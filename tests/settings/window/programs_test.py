#!/usr/bin/env python3
"""The real programs together: lumora-settings on a display of its own, lumora-tweak, lumoractl.

    PYTHONPATH=tests tests/settings/window/programs_test.py [-v] BUILD
"""
import os
import re
import resource
import struct
import unittest
from pathlib import Path

from harness.build import SOURCE
from harness.display import WIDTH
from harness.programs import ROOT, add_plugin, program
from harness.slow_display import SlowDisplay
from harness.waiting import LONG_ENOUGH, eventually
from harness.window import Windows

ON_A_FULL_DISK = ["sh", "-c", "trap '' XFSZ; ulimit -f 4; exec \"$@\"", "sh"]


def what_stands_in(file):
    """All of it, for it is small: a picture that should not be there."""
    content = file.read_bytes()
    return f"{len(content)} bytes: {content.hex(' ', 4)}"


class ProgramsTest(Windows):
    limit = 4 * LONG_ENOUGH

    # -- without a window --

    def test_prints_values_by_their_kind_and_none_for_what_the_tweak_leaves_out(self):
        self.start_tweak("--omit", "kNotificationsHideOnTap")
        page = self.printed("LumoraPreferences")
        self.assertEqual(page["page"], "LumoraPreferences")
        rows = {row["identifier"]: row for row in page["rows"] if row["identifier"]}
        self.assertIs(rows["kTweakEnabled"]["value"], True)
        self.assertIs(type(rows["kSleepTime"]["value"]), int)
        self.assertNotIn("value", rows["kNotificationsHideOnTap"])

    def test_says_plainly_what_went_wrong(self):
        self.start_tweak()
        for options, why in [(["--rows", "NoSuchPage"], "no page class NoSuchPage"),
                             (["--rows", "LumoraPreferences", "--bundle", "/nowhere"], "no settings bundle at /nowhere"),
                             (["--grab", self.folder + "/none/a.png"], "cannot write the picture"),
                             (["--grab", self.folder + "/a.png", "--page", "NoSuchPage"], "no page class NoSuchPage")]:
            failed = self.settings(*options)
            self.assertEqual(failed.returncode, 1, options)
            self.assertIn(why, failed.stderr)
            self.assertNotIn("timed out", failed.stderr)

    def test_ends_at_once_when_a_page_throws_before_all_its_rows_are_there(self):
        self.make_root()
        bundle = add_plugin(self.root, "Faulty", program("strange/FaultyBundle"), "FaultyTablePage")
        failed = self.settings("--bundle", bundle, "--rows", "FaultyTablePage", "--timeout", "86400", DISPLAY="")
        self.assertEqual((failed.returncode, failed.stdout), (1, ""))
        self.assertEqual(failed.stderr, "lumora-settings: the page FaultyTablePage fails: no such row\n"
                                        "lumora-settings: FaultyTablePage does not show its rows\n")

    def test_says_that_the_tweak_did_not_answer_in_time(self):
        for options in (["--rows", "LumoraPreferences"], ["--grab", self.folder + "/a.png"], ["--tour", self.folder]):
            failed = self.settings("--timeout", "10", *options)  # long enough to have asked it
            self.assertEqual(failed.returncode, 1, options)
            self.assertIn("timed out waiting for the tweak", failed.stderr)
            self.assertEqual(failed.stdout, "")

    def test_keeps_the_time_out_while_a_page_is_drawn(self):
        self.start_tweak()
        self.make_root()
        bundle = add_plugin(self.root, "Strange", program("strange/StrangePlugin"), "Strange")
        # Half a minute of work to draw, less than a second to open.
        Path(bundle, "name.txt").write_text("word " * 6_400_000, encoding="utf-8")
        failed = self.settings("--page", "PluginsListController", "--timeout", "10", "--grab", self.folder + "/a.png")
        self.assertEqual((failed.returncode, failed.stderr),
                         (1, "lumora-settings: timed out waiting for the page to be drawn\n"))
        self.assertFalse(os.path.exists(self.folder + "/a.png"))

    def test_saves_a_picture_whole_or_not_at_all(self):
        self.start_tweak()
        file = Path(self.folder, "a.png")
        for before in (None, b"what stood there"):
            if before:
                file.write_bytes(before)
            failed = self.run_program(*ON_A_FULL_DISK, program("lumora-settings"), "--root", ROOT, "--grab", file)
            if failed.returncode == 0:
                self.fail(what_stands_in(file))
            self.assertEqual(failed.returncode, 1)
            self.assertIn("cannot write the picture", failed.stderr)
            left = [name for name in os.listdir(self.folder) if name.startswith("a.png")]
            self.assertEqual(left, ["a.png"] if before else [])
        self.assertEqual(file.read_bytes(), before)

    def test_starts_again_after_it_was_started_on_a_full_disk(self):
        self.start_tweak()
        for disk in (ON_A_FULL_DISK, []):
            self.run_program(*disk, program("lumora-settings"), "--root", ROOT, "--grab", "/dev/null", status=0)

    def test_saves_a_picture_into_what_is_no_plain_file(self):
        self.start_tweak()
        link = Path(self.folder, "link.png")
        link.symlink_to("behind.png")
        for file in ("/dev/null", link, self.folder + "/behind.png"):
            self.settings("--grab", file, status=0)
        self.assertTrue(link.is_symlink())
        self.assertTrue(link.read_bytes().startswith(b"\x89PNG"))
        self.assertFalse(os.path.isfile("/dev/null"))
        printed = self.run_program(program("lumora-settings"), "--root", ROOT, "--grab", "/dev/stdout", text=False,
                                   status=0)
        self.assertTrue(printed.stdout.startswith(b"\x89PNG"))

    def test_waits_for_an_answer_without_turning(self):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.settings("--timeout", "4", "--grab", self.folder + "/a.png", status=1)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.assertLess(after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, 1)

    def test_tells_wrong_use_from_failure(self):
        for options in (["--nonsense"], ["--size", "0x0"], ["--size", "wide"], ["--light", "--dark"],
                        ["--grab", "a.png", "--rows", "X"], ["--timeout", "0"], ["stray"],
                        ["--text-size", "49"], ["--text-size", "301"], ["--text-size", "large"], ["--contrast", "little"],
                        ["--renderer", "fast"],
                        ["--rows", "\udcff"], ["--page", "\udcff"]):  # bytes that are no UTF-8
            self.settings(*options, status=2)
        self.settings("--help", status=0)
        self.assertRegex(self.settings("--version").stdout, r"^lumora-settings \d+\.\d+\.\d+")

    # -- pictures --

    def install_applications(self):
        """Two whose icons take hours to draw, and one behind them whose icon is a green plate."""
        data = self.environment["XDG_DATA_HOME"] = self.folder + "/data"
        os.makedirs(data + "/applications")
        size = 'xmlns="http://www.w3.org/2000/svg" width="100" height="100"'
        dear = f'<svg {size}><filter id="f"><feTurbulence baseFrequency="0.05" numOctaves="1000000"/>' \
            f'<feGaussianBlur stdDeviation="100000"/></filter><rect width="100" height="100" filter="url(#f)"/></svg>'
        green = f'<svg {size}><rect width="100" height="100" fill="#00ff00"/></svg>'
        for name, picture in (("test.a", dear), ("test.b", dear), ("test.c", green)):
            icon = self.write(f"data/{name}.svg", picture)
            self.write(f"data/applications/{name}.desktop",
                       f"[Desktop Entry]\nType=Application\nExec=true\nName={name}\nIcon={icon}\n")
        self.set("kAppsEnabled", ["test.a", "test.b", "test.c"])

    def green_is_seen(self):
        with self.display.screen() as (_, height, line):
            return any(bytes((0, 255, 0)) == line(y)[4 * x:4 * x + 3]
                       for y in range(0, height, 4) for x in range(0, WIDTH, 4))

    def test_draws_an_icon_into_its_row_when_dear_ones_before_it_are_given_up(self):
        self.start_tweak()
        self.install_applications()
        self.assertFalse(self.green_is_seen())
        self.open_window("--page", "AppsListController")
        eventually(self.green_is_seen, "the icon")

    def test_waits_for_every_icon_of_a_picture(self):
        self.start_tweak()
        self.install_applications()
        options = ("--page", "AppsListController", "--timeout", "60")
        picture = self.picture(*options)
        self.assertEqual(self.picture(*options), picture)
        os.remove(self.folder + "/data/test.c.svg")
        self.assertNotEqual(self.picture(*options), picture, "the green icon was not in it")

    def picture(self, *options, **environment):
        """What a file of one holds."""
        file = Path(self.folder, "picture.png")
        self.settings("--grab", file, *options, status=0, **environment)
        content = file.read_bytes()
        file.unlink()
        return content

    def assert_is_picture(self, content, width, height):
        self.assertEqual(content[:8], b"\x89PNG\r\n\x1a\n")
        self.assertEqual(struct.unpack(">II", content[16:24]), (width, height))

    def test_saves_the_same_picture_of_a_page_each_time_on_any_platform(self):
        self.start_tweak()
        options = ("--dark", "--size", "500x600")
        picture = self.picture(*options)
        self.assert_is_picture(picture, 500, 600)
        self.assertEqual(self.picture(*options), picture)
        self.assertEqual(self.picture(*options, DISPLAY=""), picture)

    def test_saves_no_empty_picture_when_the_display_is_late_to_tell_the_windows_size(self):
        self.start_tweak()
        with SlowDisplay(self.display.name, 1.5) as slow:
            pictures = [self.picture(DISPLAY=display, QT_XCB_NO_MITSHM="1") for display in (self.display.name, slow)]
        self.assertEqual(pictures[0], pictures[1], f"{len(pictures[0])} and {len(pictures[1])} bytes")

    def test_draws_by_the_renderer_that_is_asked_for(self):
        self.start_tweak()
        software, gpu = "Loading backend software", "Using QRhi with backend OpenGL"
        for name in ("lumora-settings", "lumora-lockscreen"):
            command = program(name), "--root", ROOT, "--grab", self.folder + "/a.png"
            for options, before, renderer in (([], None, software), ([], "rhi", gpu), (["--renderer=auto"], "rhi", gpu),
                                              (["--renderer=software"], "rhi", software),
                                              (["--renderer=gpu"], "software", gpu)):
                environment = {**self.environment, "QSG_INFO": "1", **({"QT_QUICK_BACKEND": before} if before else {})}
                said = self.run_program(*command, *options, env=environment, status=0).stderr
                self.assertEqual([renderer], re.findall(f"{software}|{gpu}", said), (name, options, before))
            without_display = self.run_program(*command, "--renderer=gpu", status=1,
                                               env={**self.environment, "DISPLAY": ""})
            self.assertIn(f"{name}: the renderer cannot draw: ", without_display.stderr)

    def test_draws_texts_in_the_size_that_is_asked_for(self):
        self.start_tweak()
        picture = self.picture()
        self.assertEqual(self.picture("--text-size", "100"), picture)
        self.assertNotEqual(self.picture("--text-size", "200"), picture)

    def test_draws_more_contrast_if_asked_and_from_right_to_left_in_languages_that_are_written_so(self):
        self.start_tweak()
        picture = self.picture(LC_ALL="en_GB.UTF-8")
        self.assertEqual(self.picture("--contrast", "normal", LC_ALL="de_DE.UTF-8"), picture)
        self.assertNotEqual(self.picture("--contrast", "more"), picture)
        mirrored = self.picture(LC_ALL="ar_EG.UTF-8")
        self.assertNotEqual(mirrored, picture)
        self.assertEqual(self.picture(LC_ALL="he_IL.UTF-8"), mirrored)

    def take_tour(self, *words):
        """Of some hundred pictures."""
        return self.run_program(program("lumora-settings"), "--root", ROOT, *words, cwd=self.folder, status=0,
                                timeout=self.limit)

    def test_takes_a_tour_of_every_page(self):
        self.start_tweak()
        self.take_tour("--tour", self.folder + "/tour")
        pictures = [*Path(self.folder, "tour").iterdir()]
        self.assertEqual({picture.name for picture in pictures},
                         {picture.name for picture in (SOURCE / "docs/pictures").glob("*.png")
                          if "-empty-" not in picture.name})  # of other settings
        for picture in pictures:
            self.assert_is_picture(picture.read_bytes(), int(picture.name.split("-")[-2]), 844)
        self.assertIsNone(self.stored("kTweakEnabled"), "a tour changes nothing")

    def test_takes_the_tour_instead_of_opening_a_window_where_there_is_no_display(self):
        self.start_tweak()
        self.environment["DISPLAY"] = ""
        toured = self.take_tour()
        self.assertIn("there is no display", toured.stderr)
        self.assertIn("LumoraPreferences-390-light.png", os.listdir(self.folder + "/lumora-tour"))

    def test_lets_a_change_reach_the_tweak_when_it_is_closed_at_once(self):
        self.start_tweak()
        window = self.open_root_page()
        self.keys(window, "Tab", "space")
        self.expect_to_close(window)
        self.assertIs(self.stored("kTweakEnabled"), False)


if __name__ == "__main__":
    unittest.main()
