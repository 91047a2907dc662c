"""A client written after docs/ports.md.

    Client(folder).settings()                           # all of them
    Client(folder).set("kSleepTime", 30)                # None, or why it was refused
"""
import socket
import struct
import time

from harness import wire
from harness.archives import NotAnArchive, archive, unarchive

PATIENCE = 1  # seconds to connect and write, and as many again for the reply


class NoAnswer(Exception):
    """No answer came in time, or something else did."""


class Client:
    """Asks and tells the tweak of a ports folder, over a connection for each message. Any thread may call."""

    def __init__(self, folder, patience=PATIENCE):
        self._folder, self._patience = folder, patience

    def settings(self):
        body = self._exchange(wire.REQUEST_SETTINGS, None)
        try:
            settings = unarchive(body or b"")
        except NotAnArchive as error:
            raise NoAnswer(str(error)) from error
        if type(settings) is not dict:
            raise NoAnswer("the settings are no dictionary")
        return settings

    def set(self, key, value):
        """None, or the line that says why the tweak refuses. What is no such line is no refusal."""
        body = self._exchange(wire.UPDATE_SETTINGS, archive({"object": {"key": key, "object": value}}))
        try:
            answer = unarchive(body or b"")
        except NotAnArchive:
            return None
        return answer.get("error") if type(answer) is dict else None

    def _exchange(self, name, body):
        try:
            with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as connection:
                end = time.monotonic() + self._patience
                # With a time-out of Python's own, connect() would not wait for a place in a full backlog.
                connection.setsockopt(socket.SOL_SOCKET, socket.SO_SNDTIMEO, struct.pack("@ll", int(self._patience), 0))
                connection.connect(wire.socket_path(self._folder, name))
                if not wire.is_ours(connection):
                    raise NoAnswer("the port belongs to another user")
                connection.settimeout(_left(end))
                connection.sendall(wire.frame(body))
                end = time.monotonic() + self._patience

                def receive(length):
                    connection.settimeout(_left(end))
                    return connection.recv(length)
                return wire.read_frame(receive)[1]
        except (OSError, EOFError, wire.NotAFrame) as error:
            raise NoAnswer(f"no answer from the tweak: {error!r}") from error


def _left(end):
    left = end - time.monotonic()
    if left <= 0:
        raise TimeoutError("the time is over")
    return left
