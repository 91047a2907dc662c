"""A display that is slow to tell a window its size, and that it is on the screen.

    with SlowDisplay(display, seconds) as name: …
"""
import contextlib
import os
import socket
import struct
import threading

LATE = (12, 19, 22)  # Expose, MapNotify and ConfigureNotify
REPLY, GENERIC_EVENT = 1, 35  # which may be longer than 32 bytes


class SlowDisplay:
    """Hands on what a program and a real display tell each other. It passes no descriptors: $QT_XCB_NO_MITSHM=1."""

    def __init__(self, display, seconds):
        self._real, self._seconds = self._path(display), seconds
        self.name = f":{os.getpid()}"
        self._listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)

    @staticmethod
    def _path(display):
        return "/tmp/.X11-unix/X" + display.removeprefix(":")

    def __enter__(self):
        self._listener.bind(self._path(self.name))
        self._listener.listen()
        threading.Thread(target=self._accept, daemon=True).start()
        return self.name

    def __exit__(self, *_):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()
        os.unlink(self._path(self.name))

    def _accept(self):
        with contextlib.suppress(OSError):
            while True:
                program, _ = self._listener.accept()
                display = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
                display.connect(self._real)
                for work in (self._hand_requests_on, self._hand_answers_on):
                    threading.Thread(target=work, args=(program, display), daemon=True).start()

    @staticmethod
    def _hand_requests_on(program, display):
        with contextlib.suppress(OSError), program, display:
            while data := program.recv(1 << 16):
                display.sendall(data)
            display.shutdown(socket.SHUT_RDWR)

    def _hand_answers_on(self, program, display):
        one_at_a_time = threading.Lock()

        def send(message):
            with contextlib.suppress(OSError), one_at_a_time:
                program.sendall(message)

        with display.makefile("rb") as answers, contextlib.suppress(OSError):
            greeting = answers.read(8)
            send(greeting + answers.read(4 * struct.unpack_from("=H", greeting, 6)[0]))
            while message := answers.read(32):
                kind = message[0] & 0x7F
                if kind in (REPLY, GENERIC_EVENT):
                    message += answers.read(4 * struct.unpack_from("=I", message, 4)[0])
                if kind in LATE:
                    threading.Timer(self._seconds, send, (message,)).start()
                else:
                    send(message)
