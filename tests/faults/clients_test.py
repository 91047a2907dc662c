#!/usr/bin/env python3
"""Tweaks that fail in every way, and what lumoractl and the bundle's messages make of that.

    PYTHONPATH=tests tests/faults/clients_test.py [-v] BUILD

The bundle must keep silent about each of them, and lumoractl must say what happened. Whatever happened, nothing stays
behind, and the next message to a tweak that is as it should be works.
"""
import concurrent.futures
import json
import os
import random
import select
import signal
import sys
import unittest

from case import Case
from harness import wire
from harness.archives import archive
from harness.faulty import (STEPS, FaultyTweak, answering, crowded, dripping, hanging_up, reply_to, silent, sound,
                            unread)
from harness.programs import descriptors, program, threads
from harness.waiting import LONG_ENOUGH, eventually

SMALL = reply_to(wire.REQUEST_SETTINGS)
LARGE = reply_to(wire.REQUEST_SETTINGS, {f"org.test.{number}": "x" * 100 for number in range(2000)})
ZEROS = bytes(wire.LONGEST)

LATE = "did not answer within 1 second"
GONE = "went away before it had answered"
ODD = "does not speak the tweak's language"
NO_ARCHIVE = "is no keyed archive"

# In no way a frame, or not in time.
NO_REPLIES = {
    "silence": (silent, LATE),
    "a request that is not read": (unread, LATE),
    "no byte and the end": (hanging_up, GONE),
    "half a header": (answering(SMALL[:8], stay=True), LATE),
    "a header alone": (answering(SMALL[:16], stay=True), LATE),
    "half a body": (answering(SMALL[:len(SMALL) // 2], stay=True), LATE),
    "a reply that drips": (dripping(LARGE, 0.05), LATE),
    "a reply that drips from its header on": (dripping(SMALL[:16], 0.2), LATE),
    "half a header and the end": (answering(SMALL[:8]), GONE),
    "half a body and the end": (answering(SMALL[:len(SMALL) // 2]), GONE),
    "garbage": (answering(random.Random(1).randbytes(5000)), ODD),
    "another protocol": (answering(b"HTTP/1.1 400 Bad Request\r\n\r\n"), ODD),
    "another magic": (answering(b"LMP2" + SMALL[4:]), ODD),
    "64 MiB that break off": (answering(wire.HEADER.pack(b"LMP1", 0, wire.LONGEST) + ZEROS[:1 << 20]), GONE),
    **{f"a length of {length}": (answering(wire.HEADER.pack(b"LMP1", 0, length) + SMALL[16:]), ODD)
       for length in (-2, -1 << 31, -1 << 63, wire.LONGEST + 1, 1 << 32, (1 << 63) - 1)},
}
# Frames, but no settings. As an answer to a change they say that it was taken.
NO_SETTINGS = {
    "no body": (answering(wire.frame(None)), "answered without any settings"),
    "an empty body": (answering(wire.frame(b"")), NO_ARCHIVE),
    "a body that is no archive": (answering(wire.frame(b"whatever")), NO_ARCHIVE),
    "a length that is too short": (answering(wire.HEADER.pack(b"LMP1", 0, 50) + SMALL[16:]), NO_ARCHIVE),
    "a list": (answering(wire.frame(archive([1]))), "is no dictionary of settings"),
}


class LumoractlTest(Case):
    def setUp(self):
        super().setUp()
        self.asked = 0

    def ask(self, why, *words):
        """Once; on a slow machine again, until what comes in time does come in time."""
        def asked():
            self.asked += 1
            result = self.lumoractl(*words)
            return result if why == LATE or LATE not in result.stderr else None
        return eventually(asked, why)

    def expect_sound(self, tweak):
        tweak.fault = sound
        listed = self.ask("", "get", "kSleepTime")
        self.assertEqual((listed.returncode, listed.stdout, listed.stderr), (0, "30\n", ""))

    def test_says_what_happened_in_place_of_an_answer(self):
        with FaultyTweak(self.ports, silent) as tweak, concurrent.futures.ThreadPoolExecutor(2) as pool:
            for called, (fault, why) in NO_REPLIES.items():
                with self.subTest(called):
                    tweak.fault = fault
                    asked = [pool.submit(self.ask, why, *words) for words in (["list"], ["set", "kSleepTime", "30"])]
                    for result in asked:
                        self.expect_failure(result.result(), why)
            self.expect_sound(tweak)

    def test_says_what_is_wrong_with_an_answer_and_takes_any_frame_for_a_change_that_was_taken(self):
        with FaultyTweak(self.ports, silent) as tweak:
            for called, (fault, why) in NO_SETTINGS.items():
                with self.subTest(called):
                    tweak.fault = fault
                    self.expect_failure(self.ask(why, "list"), why)
                    changed = self.ask("", "set", "kSleepTime", "30")
                    self.assertEqual((changed.returncode, changed.stdout, changed.stderr), (0, "", ""))
            self.expect_sound(tweak)

    def test_copes_with_the_longest_reply_there_is(self):
        with FaultyTweak(self.ports, answering(wire.frame(ZEROS))) as tweak:
            self.expect_failure(self.lumoractl("list"), NO_ARCHIVE, LATE)  # late on a slow machine
            self.expect_sound(tweak)

    def test_takes_an_answer_that_drips_in_time(self):
        with FaultyTweak(self.ports, dripping(reply_to(wire.UPDATE_SETTINGS), 0.01)):
            changed = self.ask("", "set", "kSleepTime", "30")
            self.assertEqual((changed.returncode, changed.stderr), (0, ""))

    def test_says_that_a_tweak_went_away_at_any_byte_of_its_reply(self):
        with FaultyTweak(self.ports, silent) as tweak:
            for end in range(len(SMALL)):
                tweak.fault = answering(SMALL[:end])
                self.expect_failure(self.ask(GONE, "list"), GONE)
            self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), self.asked, "it never tries again by itself")
            self.expect_sound(tweak)

    def test_says_that_a_tweak_is_not_free(self):
        with crowded(self.ports):
            for words in (["list"], ["set", "kSleepTime", "30"]):
                self.expect_failure(self.lumoractl(*words), "takes no messages: it was not free within 1 second")
        with FaultyTweak(self.ports, unread):
            longer_than_a_buffer = json.dumps("x" * (4 << 20))
            changed = self.lumoractl("set", "kLSDateSubtitle", "-", input=longer_than_a_buffer)
            self.expect_failure(changed, "takes no messages: it was not free within 1 second")

    def test_says_that_a_tweak_was_killed_and_goes_on_with_the_next(self):
        for step in STEPS:
            with self.subTest(step):
                tweak = self.start_ready(sys.executable, "-m", "harness.faulty", step)
                asked = self.lumoractl("get", "kSleepTime")
                self.assertEqual(tweak.wait(LONG_ENOUGH), -signal.SIGKILL)
                if step == "replied" and asked.returncode == 0:
                    self.assertEqual((asked.stdout, asked.stderr), ("30\n", ""))
                else:
                    self.expect_failure(asked, LATE, *[GONE] * (step != "replied"))  # late on a slow machine
                self.expect_failure(self.lumoractl("list"), "is lumora-tweak running?")
                after = self.start_tweak()
                self.assertIsNone(self.client.set("kSleepTime", 60))
                self.end(after)


class BundleTest(Case):
    """The messages of the bundle, sent by a program of the test."""

    def setUp(self):
        super().setUp()
        self.sender = self.start(program("message_sender"))
        with FaultyTweak(self.ports, sound):
            self.expect_reply()
        self.before = descriptors(self.sender)

    def replies(self, count=1, *names):
        """How many replies came to so many messages of each name."""
        self.tell(self.sender, count, *(names or ["requestTweakSettings"]))
        return int(self.sender.stdout.readline())

    @staticmethod
    def tell(sender, *words):
        print(*words, file=sender.stdin, flush=True)

    def opened(self, sender):
        """What a page of this sender reads once it is opened; None when it waits for good, without an answer in time."""
        self.tell(sender, "open")
        return int(sender.stdout.readline()) if select.select([sender.stdout], [], [], 10)[0] else None

    def page(self):
        """A sender that a page has been opened in, with what it reads."""
        def opened():
            sender = self.start(program("message_sender"))
            read = self.opened(sender)
            return read is not None and (sender, read)
        return eventually(opened, "a page that opens")

    def expect_reply(self, name="requestTweakSettings"):
        eventually(lambda: self.replies(1, name) == 1, "a reply in time")

    def expect_sound(self):
        """That a message is answered, that nothing was said, and that nothing is left of those before."""
        for name in ("requestTweakSettings", "updateSettings"):
            self.expect_reply(name)
        self.expect_soon(lambda: descriptors(self.sender), self.before)
        # The first one, the one that looks for work, and ThreadSanitizer's.
        self.expect_soon(lambda: threads(self.sender), 2 + ("thread" in os.environ.get("LUMORA_SANITIZE", "")))
        self.assertEqual(self.sender.lines.text, "")

    def test_messages_fail_in_silence_whatever_comes_in_place_of_a_reply(self):
        with FaultyTweak(self.ports, silent) as tweak:
            for called, (fault, _) in NO_REPLIES.items():
                with self.subTest(called):
                    tweak.fault = fault
                    self.assertEqual(self.replies(20, "requestTweakSettings", "updateSettings"), 0)
            tweak.fault = sound
            self.expect_sound()

    def test_any_frame_is_a_reply(self):
        with FaultyTweak(self.ports, silent) as tweak:
            for fault, _ in NO_SETTINGS.values():
                tweak.fault = fault
                self.expect_reply()
            tweak.fault = sound
            self.expect_sound()

    def test_a_page_that_is_opened_again_keeps_its_settings_when_its_request_is_dropped(self):
        with FaultyTweak(self.ports, sound) as tweak:
            pages = [self.page() for _ in NO_REPLIES]
            self.assertEqual([read for _, read in pages], [30] * len(pages))
            faults = iter([fault for fault, _ in NO_REPLIES.values()])  # one for each of them
            tweak.fault = lambda client: next(faults)(client)
            with concurrent.futures.ThreadPoolExecutor(len(pages)) as pool:
                read = list(pool.map(self.opened, [sender for sender, _ in pages]))
            self.assertEqual(read, [30] * len(pages))
            self.assertIsNone(next(faults, None), "each was met with")
            self.assertEqual("".join(sender.lines.text for sender, _ in pages), "")

    def test_a_page_that_has_its_settings_reads_nothing_after_an_answer_without_any(self):
        with FaultyTweak(self.ports, sound) as tweak:
            for called, (fault, _) in NO_SETTINGS.items():
                def opened_again(fault=fault):
                    tweak.fault = sound
                    sender, read = self.page()
                    self.assertEqual(read, 30)
                    tweak.fault = fault
                    # An answer that comes before the page looks for settings leaves it waiting: once more, then.
                    return self.opened(sender) == 0 and sender
                with self.subTest(called):
                    self.assertEqual(eventually(opened_again, "an answer in time").lines.text, "")

    def test_a_page_opens_on_a_list_for_settings_and_reads_nothing(self):
        with FaultyTweak(self.ports, NO_SETTINGS["a list"][0]):
            _, read = self.page()
            self.assertEqual(read, 0)

    def test_the_longest_reply_leaves_nothing_behind(self):
        with FaultyTweak(self.ports, answering(wire.frame(ZEROS))) as tweak:
            self.assertIn(self.replies(), (0, 1))  # none on a slow machine
            tweak.fault = sound
            self.expect_sound()

    def test_messages_fail_in_silence_when_the_tweak_goes_away_at_any_byte(self):
        chosen = random.Random(2)
        ends = [*range(17), *chosen.sample(range(17, len(LARGE)), 100), len(LARGE) - 1]
        with FaultyTweak(self.ports, silent) as tweak:
            for reply, positions in ((SMALL, range(len(SMALL))), (LARGE, ends)):
                for end in positions:
                    tweak.fault = answering(reply[:end])
                    self.assertEqual(self.replies(), 0, end)
            self.assertEqual(tweak.visits(wire.REQUEST_SETTINGS), len(SMALL) + len(ends), "no second try")
            tweak.fault = sound
            self.expect_sound()

    def test_messages_fail_in_silence_at_a_tweak_that_is_not_free(self):
        with crowded(self.ports):
            self.assertEqual(self.replies(100, "requestTweakSettings", "updateSettings"), 0)
        with FaultyTweak(self.ports, sound):
            self.expect_sound()

    def test_messages_fail_in_silence_when_the_tweak_is_killed_and_reach_the_next(self):
        for step in STEPS:
            tweak = self.start_ready(sys.executable, "-m", "harness.faulty", step)
            self.assertLessEqual(self.replies(), step == "replied", step)
            self.assertEqual(tweak.wait(LONG_ENOUGH), -signal.SIGKILL)
            self.assertEqual(self.replies(), 0, "no tweak is there")
        self.start_tweak()
        self.expect_sound()

    def test_a_crowd_of_messages_meets_faults_of_all_kinds_at_once(self):
        chosen = random.Random(3)
        faults = [fault for fault, _ in NO_REPLIES.values()]
        with FaultyTweak(self.ports, lambda client: chosen.choice(faults)(client)) as tweak:
            self.assertEqual(self.replies(300), 0)
            tweak.fault = sound
            self.expect_sound()


if __name__ == "__main__":
    unittest.main()
