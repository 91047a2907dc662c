#!/usr/bin/env python3
"""The real window while its tweak fails: it lives, says nothing, keeps nothing, and goes on with a tweak that is sound.

    window_test.py [-v] BINARIES DEVICE_ROOT
"""
import resource
import sys
import unittest

from case import LONG_ENOUGH, descriptors, eventually, threads
import wire
from clients_test import NO_REPLIES, NO_SETTINGS, SMALL
from faulty import FaultyTweak, answering, crowded, hanging_up, silent, sound
from window import WIDTH, Programs

FAULTS = {called: fault for called, (fault, _) in (NO_REPLIES | NO_SETTINGS).items()}


class WindowTest(Programs):
    def setUp(self):
        super().setUp()
        self.ports = self.environment["LUMORA_PORTS"]

    def open_first_switch(self):
        """The root page, with its first switch focused, on a tweak that is sound."""
        window = self.open_root_page()
        self.xdotool("key", "--window", window.id, "Tab")
        return window

    def flip(self, window):
        self.xdotool("key", "--window", window.id, "space")

    def expect_change(self, window, tweak):
        """That the window still does what a key asks for: it sends a change."""
        before = tweak.visits(wire.UPDATE_SETTINGS)
        self.flip(window)
        eventually(lambda: tweak.visits(wire.UPDATE_SETTINGS) == before + 1, "a change")

    def expect_to_close(self, window):
        self.close(window)
        eventually(lambda: not self.windows(window), "the window to go")
        self.assertEqual(window.wait(LONG_ENOUGH), 0)

    def test_sends_each_change_once_and_keeps_silent_whatever_becomes_of_it(self):
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_first_switch()
            self.expect_change(window, tweak)
            said, held, running = window.lines.text, descriptors(window), threads(window)
            for called, fault in FAULTS.items():
                with self.subTest(called):
                    tweak.fault = fault
                    self.expect_change(window, tweak)
            tweak.fault = sound
            self.expect_change(window, tweak)
            eventually(lambda: descriptors(window) <= held, "what the messages held to be given back")
            eventually(lambda: threads(window) <= running, "the threads of the messages to end")
            self.assertEqual(window.lines.text, said)
            self.expect_to_close(window)

    def test_closes_while_messages_are_stuck(self):
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_first_switch()
            tweak.fault = silent
            for _ in range(10):
                self.expect_change(window, tweak)
            self.expect_to_close(window)

    def test_closes_while_a_crowd_is_in_front_of_it_at_the_tweak(self):
        with FaultyTweak(self.ports, sound):
            window = self.open_first_switch()
        with crowded(self.ports):
            for _ in range(10):
                self.flip(window)
            self.expect_to_close(window)

    def test_closes_while_it_waits_for_a_first_answer_that_will_not_come(self):
        for fault in (silent, hanging_up, answering(SMALL[:100]), answering(wire.frame(b"no archive"))):
            with FaultyTweak(self.ports, fault) as tweak:
                window = self.open_window()
                eventually(lambda: tweak.visits(wire.REQUEST_SETTINGS), "the question")
                self.expect_to_close(window)
                self.assertEqual(window.lines.text, "")
                self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), 1, "it asks once")

    def test_opens_its_page_when_it_is_restarted_after_a_fault(self):
        with FaultyTweak(self.ports, answering(SMALL[:100])) as tweak:
            window = self.open_window()
            eventually(lambda: tweak.visits(wire.REQUEST_SETTINGS), "the question")
            tweak.fault = sound

            def restarted():
                # The button takes the focus when it is offered.
                for shown in self.windows(window):
                    self.xdotool("windowfocus", shown)
                    self.xdotool("key", "--window", shown, "Return")
                return "kTweakEnabled" in window.lines.text
            eventually(restarted, "the page after a restart")
            self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), 2)

    def test_goes_on_with_a_tweak_that_is_killed_and_started_anew(self):
        tweak = self.start_tweak()
        window = self.open_first_switch()
        said, shown = window.lines.text, True
        for _ in range(3):
            tweak.kill()
            tweak.wait()
            tweak.stdout.close()
            with FaultyTweak(self.ports, hanging_up) as nobody:
                self.expect_change(window, nobody)  # which is lost
            shown = not shown
            tweak = self.start_tweak()
            for _ in range(2):
                shown = not shown
                self.flip(window)
                eventually(lambda: self.stored("kTweakEnabled") is shown, shown)
        self.assertEqual(window.lines.text, said)
        self.expect_to_close(window)

    def test_shows_changes_without_a_descriptor_left_and_sends_them_when_there_are_some(self):
        def drawn():
            """The line of the screen that goes through the first switch."""
            with self.display.screen() as (_, _, line):
                return line(120)[:4 * WIDTH]
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_first_switch()
            self.expect_change(window, tweak)
            self.expect_change(window, tweak)
            said, before = window.lines.text, tweak.visits(wire.UPDATE_SETTINGS)
            looks = []

            def still():
                looks.append(drawn())
                return looks[-10:] == 10 * looks[-1:]
            eventually(still, "the end of its movements")
            _, most = resource.prlimit(window.pid, resource.RLIMIT_NOFILE)
            resource.prlimit(window.pid, resource.RLIMIT_NOFILE, (3, most))
            for _ in range(4):
                picture = drawn()
                self.flip(window)
                eventually(lambda: drawn() != picture, "the switch to turn")
            eventually(lambda: drawn() == looks[-1], "the switch as it was before")
            self.assertEqual(tweak.visits(wire.UPDATE_SETTINGS), before)
            resource.prlimit(window.pid, resource.RLIMIT_NOFILE, (most, most))

            def changed():
                self.flip(window)
                return tweak.visits(wire.UPDATE_SETTINGS) > before
            eventually(changed, "a change")
            self.assertEqual(window.lines.text, said)
            self.expect_to_close(window)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[1:-2]])
