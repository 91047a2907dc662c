"""A tweak that does not do what docs/ports.md asks of it.

    with FaultyTweak(folder, silent) as tweak:      # each client meets with silence
        tweak.fault = answering(frame[:20])         # and from now on, with a part of a reply

and as a program, a tweak that is killed between two steps of its work:

    PYTHONPATH=tests python3 -m harness.faulty STEP     # one of STEPS

A fault is a function of a Client, called on a thread of that client's own; the connection closes when it returns.
"""
import contextlib
import os
import select
import signal
import socket
import sys
import threading

from harness import wire
from harness.archives import archive

NAMES = (wire.REQUEST_SETTINGS, wire.UPDATE_SETTINGS)
SETTINGS = {"kTweakEnabled": True, "kSleepTime": 30, "kAppIconSize": 70.0, "kLSDateSubtitle": "ü – 𝄞"}


def reply_to(name, settings=None):
    """The whole frame that a sound tweak answers with."""
    return wire.frame(archive(settings or SETTINGS) if name == wire.REQUEST_SETTINGS else None)


class Client:
    """Who has connected to a port of that name."""

    def __init__(self, tweak, name, connection):
        self._tweak, self.name, self.connection = tweak, name, connection

    def take_request(self):
        return wire.read_frame(self.connection.recv)[1]

    def pause(self, seconds):
        """Does nothing for a while; False if the tweak or the client ends meanwhile."""
        ended, _, _ = select.select([self._tweak.over, self.connection], [], [], seconds)
        return not ended

    def stay(self):
        """Does nothing until the tweak ends."""
        select.select([self._tweak.over], [], [])


def sound(client):
    while True:
        client.take_request()
        client.connection.sendall(reply_to(client.name))


def unread(client):
    """Accepts, and reads nothing."""
    client.stay()


def hanging_up(client):
    """Closes before anything is read."""


def silent(client):
    client.take_request()
    client.stay()


def answering(reply, stay=False):
    """Answers each request with those bytes, and then closes or stays."""
    def fault(client):
        client.take_request()
        client.connection.sendall(reply)
        if stay:
            client.stay()
    return fault


def dripping(reply, seconds):
    """Sends a byte, waits, sends the next."""
    def fault(client):
        client.take_request()
        for byte in reply:
            client.connection.sendall(bytes([byte]))
            if not client.pause(seconds):
                return
    return fault


class FaultyTweak:
    """Holds both ports from with to its end."""

    def __init__(self, folder, fault):
        self.fault, self._folder = fault, folder
        self._guard, self._visited = threading.Lock(), []
        self._threads, self._listeners = [], []

    def __enter__(self):
        self.over, self._end = os.pipe()
        for name in NAMES:
            self._listeners.append(listen(self._folder, name))
            self._run(self._accept, name, self._listeners[-1])
        return self

    def __exit__(self, *_):
        os.close(self._end)  # which every thread sees
        for thread in self._threads:
            thread.join()
        for listener in self._listeners:
            listener.close()
        os.close(self.over)

    def visits(self, name):
        """How many clients have come to a port to say something. Those of the programs come anew for each message."""
        with self._guard:
            return self._visited.count(name)

    def _run(self, work, *arguments):
        thread = threading.Thread(target=work, args=arguments)
        with self._guard:
            self._threads.append(thread)
        thread.start()

    def _accept(self, name, listener):
        while self.over not in select.select([self.over, listener], [], [])[0]:
            connection, _ = listener.accept()
            self._run(self._serve, name, connection)

    def _serve(self, name, connection):
        # A client that never reads must not keep this thread for good.
        connection.settimeout(60)
        try:
            with connection:
                # Settings only looks whether somebody is there, and then hangs up.
                if connection.recv(1, socket.MSG_PEEK):
                    with self._guard:
                        self._visited.append(name)
                    self.fault(Client(self, name, connection))
        except (OSError, EOFError, wire.NotAFrame):
            pass  # the client has gone


@contextlib.contextmanager
def crowded(folder):
    """Both ports, their backlogs full of clients that are never accepted."""
    with contextlib.ExitStack() as kept:
        for name in NAMES:
            listener = kept.enter_context(listen(folder, name, 0))
            first = kept.enter_context(socket.socket(socket.AF_UNIX, socket.SOCK_STREAM))
            first.connect(listener.getsockname())
        yield


def listen(folder, name, backlog=socket.SOMAXCONN):
    path = wire.socket_path(folder, name)
    os.makedirs(os.path.dirname(path), 0o700, exist_ok=True)
    if os.path.lexists(path):
        os.unlink(path)
    listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
    listener.bind(path)
    listener.listen(backlog)
    return listener


# -- a tweak that is killed --

STEPS = ["connected", "accepted", "half a header taken", "header taken", "request taken", "half a header sent",
         "header sent", "half a body sent", "replied"]


def main():
    step = sys.argv[1]

    def reached(done):
        if done == step:
            os.kill(os.getpid(), signal.SIGKILL)

    listeners = {listen(wire.ports_folder(), name): name for name in NAMES}
    print("faulty.py: ready", flush=True)
    listener, = select.select(list(listeners), [], [])[0]
    reached("connected")
    connection, _ = listener.accept()
    reached("accepted")
    header = connection.recv(8, socket.MSG_WAITALL)
    reached("half a header taken")
    header += connection.recv(8, socket.MSG_WAITALL)
    reached("header taken")
    connection.recv(max(0, wire.HEADER.unpack(header)[2]), socket.MSG_WAITALL)
    reached("request taken")
    # A body for changes too, so that there is one to send half of. To a client it means that the change was taken.
    reply = reply_to(wire.REQUEST_SETTINGS)
    for done, begin, end in (("half a header sent", 0, 8), ("header sent", 8, 16), ("half a body sent", 16, 100),
                             ("replied", 100, len(reply))):
        connection.sendall(reply[begin:end])
        reached(done)


if __name__ == "__main__":
    main()
