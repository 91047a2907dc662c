"""A tweak written after docs/ports.md. In a test it remembers what it is told:

    with Tweak(folder, {"kSleepTime": 30}) as tweak:
        ...                                             # tweak.settings, tweak.changes

and as a program it keeps its settings on disk, as JSON:

    PYTHONPATH=tests python3 -m harness.tweak [--settings FILE.json]
"""
import argparse
import os
import signal
import sys
import threading
from pathlib import Path

from harness import forms, wire
from harness.archives import NotAnArchive, archive, unarchive


class Tweak:
    """Holds both ports from with to its end. keep(settings), if given, puts a change on disk before it is taken.

    Each client is served by a thread of its own; one change is taken at a time.
    """

    def __init__(self, folder, settings, keep=None):
        self.settings, self.changes = settings, []
        self._folder, self._keep = folder, keep
        self._lock, self._ports = threading.Lock(), []

    def __enter__(self):
        try:
            for name, answer in ((wire.UPDATE_SETTINGS, self._update), (wire.REQUEST_SETTINGS, self._request)):
                self._ports.append(wire.Port(self._folder, name, answer))
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        while self._ports:
            self._ports.pop().close()

    def _request(self, _):
        with self._lock:
            return archive(self.settings)

    def _update(self, body):
        try:
            change = unarchive(body or b"")["object"]
            key, value = change["key"], change["object"]
        except (NotAnArchive, LookupError, TypeError) as error:
            return self._refuse(f"that is no change: {error}")
        if type(key) is not str:
            return self._refuse("the key is no text")
        if value is None:
            return self._refuse("nothing takes a key away")
        with self._lock:
            if self._keep:
                try:
                    self._keep({**self.settings, key: value})
                except OSError as error:
                    return self._refuse(f"the settings cannot be kept: {error}")
            self.changes.append((key, value))
            self.settings[key] = value
        return None

    @staticmethod
    def _refuse(why):
        return archive({"error": why})


def keep_in(path):
    """A function that writes settings into a new file and renames it, so that the file is always whole."""
    def keep(settings):
        Path(path + ".new").write_text(forms.dump(settings, indent=2) + "\n", encoding="utf-8")
        os.rename(path + ".new", path)
    return keep


def kept_in(path):
    try:
        return forms.load(Path(path).read_text(encoding="utf-8"))
    except FileNotFoundError:
        return {}


def main():
    parser = argparse.ArgumentParser(description="A tweak that keeps its settings as JSON, until SIGTERM or SIGINT.")
    parser.add_argument("--settings", metavar="FILE.json", default="settings.json")
    path = parser.parse_args().settings
    ends = {signal.SIGTERM, signal.SIGINT}
    signal.pthread_sigmask(signal.SIG_BLOCK, ends)  # before there are threads, which take this over
    try:
        with Tweak(wire.ports_folder(), kept_in(path), keep_in(path)):
            print("tweak.py: ready", flush=True)
            signal.sigwait(ends)
    except (OSError, ValueError) as error:
        sys.exit(f"tweak.py: {error}")


if __name__ == "__main__":
    main()
