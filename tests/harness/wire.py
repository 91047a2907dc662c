"""The ports, written after docs/ports.md: their frames, and who holds a name. Any thread may call."""
import contextlib
import errno
import fcntl
import os
import socket
import stat
import struct
import threading
from itertools import accumulate

REQUEST_SETTINGS = "com.nevo.lumora/requestTweakSettings"
UPDATE_SETTINGS = "com.nevo.lumora/updateSettings"

# -- frames --

HEADER = struct.Struct("<4siq")
LONGEST = 64 << 20
NO_BODY = -1


class NotAFrame(Exception):
    """Bytes that are no frame, or not all of one."""


def frame(body):
    """A request or reply. No body is None and differs from an empty one."""
    if body is not None and len(body) > LONGEST:
        raise ValueError("the body is too long for a frame")
    return HEADER.pack(b"LMP1", 0, NO_BODY if body is None else len(body)) + (body or b"")


def read_frame(receive):
    """Id and body of the next frame; EOFError where the other side is done. receive(N) yields up to N bytes."""
    def read(length):
        data = bytearray()
        while len(data) < length:
            if not (part := receive(min(length - len(data), 1 << 16))):
                raise EOFError(len(data))
            data += part
        return bytes(data)

    try:
        header = read(HEADER.size)
    except EOFError as end:
        if end.args == (0,):
            raise
        raise NotAFrame("a header that ends early") from end
    magic, message, length = HEADER.unpack(header)
    if magic != b"LMP1" or not NO_BODY <= length <= LONGEST:
        raise NotAFrame("a header of another kind")
    try:
        return message, None if length == NO_BODY else read(length)
    except EOFError as end:
        raise NotAFrame("a body that ends early") from end


# -- ports --

def ports_folder(environment=os.environ):
    """Where the ports are."""
    for name in ("LUMORA_PORTS", "XDG_RUNTIME_DIR"):
        if environment.get(name):
            return environment[name]
    run = f"/run/user/{os.geteuid()}"
    return run if os.path.isdir(run) else f"/tmp/lumora-{os.geteuid()}"


def socket_path(folder, name):
    """Raises ValueError for a name that no port can have."""
    path = f"{folder}/{name}"
    if any(part in ("", ".", "..") for part in name.split("/")) or "\0" in name or len(os.fsencode(path)) > 107:
        raise ValueError(f"no port can be at {path!r}")
    return path


def is_ours(connection):
    """Whether the kernel says that the other end is of the same user, or root."""
    _, uid, _ = struct.unpack("iII", connection.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, 12))
    return uid in (os.geteuid(), 0)


class NameTaken(OSError):
    """Another port holds the name, or what stands there is no port."""


def _make_folders(folder, name):
    """Makes what is missing, and raises PermissionError for a folder that another user could meddle with."""
    for path in accumulate((folder, *name.split("/")[:-1]), os.path.join):
        os.makedirs(path, 0o700, exist_ok=True)
        found = os.lstat(path)
        if not stat.S_ISDIR(found.st_mode) or found.st_uid not in (os.geteuid(), 0) or found.st_mode & 0o022:
            raise PermissionError(errno.EPERM, "no folder of the user's own", path)


class Port:
    """Holds a name and answers what comes to it.

        port = Port(folder, UPDATE_SETTINGS, lambda body: None)    # answer(body) yields the reply's body
        port.close()

    Each connection is served by a thread of its own, which calls answer. An exception of answer closes the connection.
    """

    def __init__(self, folder, name, answer):
        self.path, self._answer = socket_path(folder, name), answer
        _make_folders(folder, name)
        self._guard, self._closed = threading.Lock(), False
        self._served = {}  # connection: its thread
        self._lock = os.open(self.path + ".lock", os.O_RDWR | os.O_CREAT | os.O_NOFOLLOW | os.O_CLOEXEC, 0o600)
        self._listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        try:
            self._take_name()
        except OSError:
            self._listener.close()
            os.close(self._lock)
            raise
        self._accepting = threading.Thread(target=self._accept, daemon=True)
        self._accepting.start()

    def _take_name(self):
        try:
            fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError as error:
            raise NameTaken(errno.EADDRINUSE, "another port holds the name", self.path) from error
        self._remove_dead_socket()
        self._listener.bind(self.path)
        os.chmod(self.path, 0o600)
        self._bound = os.lstat(self.path)
        self._listener.listen(socket.SOMAXCONN)

    def _remove_dead_socket(self):
        try:
            found = os.lstat(self.path)
        except FileNotFoundError:
            return
        if stat.S_ISSOCK(found.st_mode):
            with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as probe:
                probe.setblocking(False)
                if probe.connect_ex(self.path) == errno.ECONNREFUSED:
                    os.unlink(self.path)
                    return
        raise NameTaken(errno.EADDRINUSE, "what stands there is left alone", self.path)

    def _accept(self):
        while True:
            try:
                connection, _ = self._listener.accept()
            except OSError:
                if self._closed:
                    return
                raise
            with self._guard:
                if self._closed or not is_ours(connection):
                    connection.close()
                    continue
                # A client that does not read is given up soon.
                connection.setsockopt(socket.SOL_SOCKET, socket.SO_SNDTIMEO, struct.pack("@ll", 1, 0))
                thread = threading.Thread(target=self._serve, args=(connection,), daemon=True)
                self._served[connection] = thread
                thread.start()

    def _serve(self, connection):
        try:
            while True:
                message, body = read_frame(connection.recv)
                connection.sendall(frame(self._answer(body) if message == 0 else None))
        except (EOFError, NotAFrame, OSError):
            pass  # A client that is no longer there, or speaks otherwise, is told nothing.
        finally:
            with self._guard:
                del self._served[connection]
            connection.close()

    def close(self):
        """Gives the name up and waits for the answers in hand."""
        with self._guard:
            self._closed = True
            threads = list(self._served.values())
            for connection in self._served:
                connection.shutdown(socket.SHUT_RD)
        self._listener.shutdown(socket.SHUT_RDWR)
        self._accepting.join()
        for thread in threads:
            thread.join()
        with contextlib.suppress(FileNotFoundError):
            if os.path.samestat(os.lstat(self.path), self._bound):
                os.unlink(self.path)
        self._listener.close()
        os.close(self._lock)
