#!/usr/bin/env python3
"""The real window while its tweak fails: it lives, says nothing, keeps nothing, and goes on with a tweak that is sound.

    PYTHONPATH=tests tests/faults/window_test.py [-v] BUILD
"""
import resource
import unittest

from case import with_few_descriptors
from clients_test import NO_REPLIES, NO_SETTINGS, SMALL
from harness import wire
from harness.display import WIDTH
from harness.faulty import FaultyTweak, answering, crowded, hanging_up, silent, sound
from harness.programs import descriptors, sockets, threads
from harness.waiting import eventually, settled
from harness.window import Windows

FAULTS = {called: fault for called, (fault, _) in (NO_REPLIES | NO_SETTINGS).items()}


class WindowTest(Windows):
    def open_first_switch(self):
        """The root page, with its first switch focused, on a tweak that is sound."""
        window = self.open_root_page()
        self.keys(window, "Tab")
        return window

    def flip(self, window):
        self.keys(window, "space")

    def expect_change(self, window, tweak):
        """That the window still does what a key asks for: it sends a change."""
        before = tweak.visits(wire.UPDATE_SETTINGS)
        self.flip(window)
        eventually(lambda: tweak.visits(wire.UPDATE_SETTINGS) == before + 1, "a change")

    def at_rest(self, window):
        """How many descriptors and threads it holds, once it is done with its messages. A thread goes when it had
        nothing to do for a second and a half."""
        # For 2.5 seconds at least.
        return settled(lambda: (descriptors(window), threads(window)), "the end of its messages", 125)

    def test_sends_each_change_once_and_keeps_silent_whatever_becomes_of_it(self):
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_first_switch()
            self.expect_change(window, tweak)
            said, (held, running) = window.lines.text, self.at_rest(window)
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
        before = sockets(window)
        with crowded(self.ports):
            for _ in range(10):
                self.flip(window)

            def under_way():
                self.flip(window)
                return sockets(window) > before
            eventually(under_way, "a message that is under way")
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
            self.assertIsNone(window.poll(), "the process is the same")
            self.assertGreaterEqual(tweak.visits(wire.REQUEST_SETTINGS), 2, "one more if an answer came late")

    def test_goes_on_with_a_tweak_that_is_killed_and_started_anew(self):
        tweak = self.start_tweak()
        window = self.open_first_switch()
        said, shown = window.lines.text, True
        for _ in range(3):
            tweak.kill()
            tweak.wait()
            tweak.stdout.close()
            with FaultyTweak(self.ports, hanging_up) as deaf:
                self.expect_change(window, deaf)  # which is lost
            shown = not shown
            tweak = self.start_tweak()
            for _ in range(2):
                shown = not shown
                self.flip(window)
                eventually(lambda: self.stored("kTweakEnabled") is shown, shown)
        self.assertEqual(window.lines.text, said)
        self.expect_to_close(window)

    @with_few_descriptors
    def test_shows_changes_without_a_descriptor_left_and_sends_them_when_there_are_some(self):
        def drawn():
            """The line of the screen that goes through the first switch."""
            with self.display.screen() as (_, _, line):
                return line(120)[:4 * WIDTH]

        def turned_twice(window):
            """The look of the switch when nothing has moved for a while after that."""
            for _ in range(2):
                picture = drawn()
                self.flip(window)
                eventually(lambda picture=picture: drawn() != picture, "the switch to turn")
            return settled(drawn, "the end of its movements", 10)
        with FaultyTweak(self.ports, sound) as tweak:
            window = self.open_first_switch()
            looks = [turned_twice(window)]

            def same_again():
                # A movement that had just come to a stop is not seen in the same place twice.
                looks.append(turned_twice(window))
                return looks[-1] == looks[-2]
            eventually(same_again, "the switch as it was two turns before")
            before = 2 * len(looks)
            eventually(lambda: tweak.visits(wire.UPDATE_SETTINGS) == before, "all changes")
            said = window.lines.text
            _, most = resource.prlimit(window.pid, resource.RLIMIT_NOFILE)
            resource.prlimit(window.pid, resource.RLIMIT_NOFILE, (3, most))
            turned_twice(window)
            turned_twice(window)
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
    unittest.main()
