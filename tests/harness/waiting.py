"""Waiting for what happens unannounced, and the end of all patience."""
import os
import signal
import threading
import time
import unittest

# Seconds, for anything that works at all; $LUMORA_TEST_PATIENCE times that where programs are slow.
LONG_ENOUGH = 120 * int(os.environ.get("LUMORA_TEST_PATIENCE", "1"))
# What a look ends with at something that has just gone from the screen; spoken.py knows what that is.
GONE = []


def eventually(condition, what):
    """Looks again and again at what changes unannounced. A condition is to look for things anew each time."""
    end = time.monotonic() + LONG_ENOUGH
    tick = threading.Event()
    while True:
        try:
            if result := condition():
                return result
        except tuple(GONE):
            pass
        if time.monotonic() > end:
            raise AssertionError(f"never came: {what}")
        tick.wait(0.02)


def settled(look, what, times=6):
    """What look() gives, once it has given the same so many times in a row; None is nothing yet."""
    looks = []

    def same():
        looks.append(look())
        return looks[-1] is not None and looks[-times:] == times * looks[-1:]
    eventually(same, what)
    return looks[-1]


class Limited(unittest.TestCase):
    """A test that fails when it takes too long; where it was, and what it waited for there, is in its traceback."""

    limit = 2 * LONG_ENOUGH

    def run(self, result=None):
        def give_up(*_):
            raise AssertionError(f"waited in vain, after {self.limit} s")
        signal.signal(signal.SIGALRM, give_up)
        signal.setitimer(signal.ITIMER_REAL, self.limit, self.limit)  # again, for what is done at the end
        try:
            return super().run(result)
        finally:
            signal.setitimer(signal.ITIMER_REAL, 0)
