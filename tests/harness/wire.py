"""The ports and what travels over them, written after docs/ports.md: archives, frames, and who holds a name.

    archive({"key": "kSleepTime", "object": 30})    # the bytes of a keyed archive
    unarchive(data)                                 # and back; None is nil

Kinds are Python's own: bool, int, float, str, bytes, list, dict and None, and Date for a date. Any thread may call.
"""
import errno
import fcntl
import os
import plistlib
import socket
import stat
import struct
import threading
from dataclasses import dataclass
from datetime import datetime, timezone
from itertools import count

REQUEST_SETTINGS = "com.nevo.lumora/requestTweakSettings"
UPDATE_SETTINGS = "com.nevo.lumora/updateSettings"


# -- keyed archives --

EPOCH = datetime(2001, 1, 1, tzinfo=timezone.utc)


@dataclass(frozen=True)
class Date:
    """A moment, exactly as it travels."""

    seconds: float  # since EPOCH


def archive(value):
    """A value as a keyed archive. Raises TypeError or OverflowError for what has no form in one."""
    objects, known, classes = [("text", "$null")], {}, {}

    def add(key, item):
        if key not in known:
            known[key] = len(objects)
            objects.append(item)
        return known[key]

    def reserve():
        objects.append(None)
        return len(objects) - 1

    def fill(place, classname, **parts):
        objects[place] = (classname, {"NS." + name: part for name, part in parts.items()})
        return place

    def text(words):
        if type(words) is not str:
            raise TypeError(f"the key {words!r} is no text")
        # A long text that is shared would stand for more than its archive's length allows.
        return add((str, words) if len(words) <= 16 else (str, len(objects)), ("text", words))

    def encode(it):
        kind = type(it)
        if it is None:
            return 0
        if kind is str:
            return text(it)
        if kind is bool:
            return add((bool, it), ("plain", b"\x09" if it else b"\x08"))
        if kind is int:
            return add((int, it), ("plain", _integer(it)))
        if kind is float:
            real = b"\x23" + struct.pack(">d", it)
            return add((float, real), ("plain", real))
        if kind is bytes:
            return add((bytes, len(objects)), ("plain", _head(4, len(it)) + it))
        if kind is Date:
            return fill(reserve(), "NSDate", time=b"\x23" + struct.pack(">d", it.seconds))
        if kind is list:
            return fill(reserve(), "NSArray", objects=[encode(item) for item in it])
        if kind is dict:
            place = reserve()
            keys = [text(key) for key in it]
            return fill(place, "NSDictionary", keys=keys, objects=[encode(item) for item in it.values()])
        raise TypeError(f"{kind.__name__} has no form in an archive")

    root = encode(value)
    for name in [item[0] for item in objects if item[0] not in ("text", "plain")]:
        if name not in classes:
            classes[name] = len(objects)
            objects.append(("class", name))
    return _property_list(objects, root, classes)


def _integer(number):
    for kind, size in ((0x10, 1), (0x11, 2), (0x12, 4)):
        if 0 <= number < 1 << 8 * size:
            return bytes([kind]) + number.to_bytes(size, "big")
    return b"\x13" + number.to_bytes(8, "big", signed=True)


def _head(kind, size):
    return bytes([kind << 4 | size]) if size < 15 else bytes([kind << 4 | 15]) + _integer(size)


def _text(words):
    if words.isascii():
        return _head(5, len(words)) + words.encode("ascii")
    wide = words.encode("utf-16-be")
    return _head(6, len(wide) // 2) + wide


def _property_list(objects, root, classes):
    """The binary form, its objects in the order and with the numbers of the document's example."""
    numbers = count(4 + len(objects))
    uids, texts = {}, {}
    written = []  # (number, head, references), in the order of the file

    def uid(index):
        if index not in uids:
            uids[index] = next(numbers)
        return uids[index]

    def text(words):
        if words not in texts:
            texts[words] = next(numbers)
        return texts[words]

    for index in range(1, len(objects)):
        uid(index)
    keys = [text(key) for key in ("$version", "$archiver", "$top", "$objects")]
    written.append((0, _head(13, 4), [*keys, 1, text("NSKeyedArchiver"), 2, 3]))
    written.append((1, _integer(100000), []))
    written.append((2, _head(13, 1), [text("root"), uid(root)]))
    written.append((3, _head(10, len(objects)), range(4, 4 + len(objects))))
    for number, (kind, content) in enumerate(objects, 4):
        if kind == "text":
            written.append((number, _text(content), []))
        elif kind == "plain":
            written.append((number, content, []))
        elif kind == "class":
            names = [text("$classname"), text("$classes"), text(content)]
            listed = next(numbers)
            written.append((number, _head(13, 2), [*names, listed]))
            written.append((listed, _head(10, 2), [text(content), text("NSObject")]))
        else:
            keys = [text(key) for key in (*content, "$class")]
            parts = [(next(numbers), part) for part in content.values()]  # they follow their object
            written.append((number, _head(13, len(keys)), [*keys, *(place for place, _ in parts), uid(classes[kind])]))
            for place, part in parts:
                if isinstance(part, bytes):
                    written.append((place, part, []))
                else:
                    written.append((place, _head(10, len(part)), [uid(item) for item in part]))
    for index, number in uids.items():
        size = max(1, (index.bit_length() + 7) // 8)
        written.append((number, bytes([0x80 | size - 1]) + index.to_bytes(size, "big"), []))
    for words, number in texts.items():
        written.append((number, _text(words), []))

    reference = max(1, (len(written).bit_length() + 7) // 8)
    out, offsets = bytearray(b"bplist00"), [0] * len(written)
    for number, head, references in written:
        offsets[number] = len(out)
        out += head
        for item in references:
            out += item.to_bytes(reference, "big")
    table, size = len(out), max(1, (len(out).bit_length() + 7) // 8)
    for offset in offsets:
        out += offset.to_bytes(size, "big")
    return bytes(out) + struct.pack(">6xBBQQQ", size, reference, len(written), 0, table)


class NotAnArchive(ValueError):
    """Bytes that are no keyed archive, or one that swells beyond what its size allows."""


CONTENTS = {"NSString": ("NS.string", (str,)), "NSData": ("NS.data", (bytes,)), "NSDate": ("NS.time", (float, int))}
KINDS = {"NSDictionary", "NSArray", "NSNull", *CONTENTS}
DEEPEST = 128  # dictionaries and lists within each other


def unarchive(data):
    """The value in a keyed archive. Shared parts count each time: a small archive makes no huge value."""
    try:
        document = plistlib.loads(data, fmt=plistlib.FMT_BINARY)
        if document["$archiver"] != "NSKeyedArchiver" or document["$version"] != 100000:
            raise NotAnArchive("an archive of another kind")
        return _Reader(document["$objects"], len(data)).value(document["$top"]["root"])
    except NotAnArchive:
        raise
    except (plistlib.InvalidFileException, LookupError, TypeError, ValueError, AttributeError, RecursionError) as error:
        raise NotAnArchive(f"no keyed archive: {error!r}") from error


class _Reader:
    """Follows the numbers of one archive."""

    def __init__(self, objects, length):
        self.objects = objects
        self.values, self.bytes = 4096 + 4 * length, (1 << 20) + 64 * length  # that may still come

    def at(self, uid):
        """The object that is numbered, paid for."""
        if type(uid) is not plistlib.UID:
            raise NotAnArchive("a UID is missing")
        found = self.objects[uid.data]
        self.values -= 1
        self.bytes -= len(found) if isinstance(found, (str, bytes)) else 0
        if self.values < 0 or self.bytes < 0:
            raise NotAnArchive("it holds more than its size allows")
        return found

    def value(self, uid, depth=0):
        found = self.at(uid)
        if uid.data == 0:
            return None
        if type(found) in (bool, float, str, bytes):
            return found
        if type(found) is datetime:
            return Date((found.replace(tzinfo=timezone.utc) - EPOCH).total_seconds())
        if type(found) is int and -1 << 63 <= found < 1 << 63:
            return found
        if type(found) is not dict or depth == DEEPEST:
            raise NotAnArchive("an object of no known kind, or too deep")
        return self.made(self.kind(self.at(found["$class"])), found, depth + 1)

    def kind(self, described):
        """What is known of an object's class, or else of the nearest one that it derives from."""
        for name in (described["$classname"], *described.get("$classes", ())):
            if (known := name.replace("NSMutable", "NS", 1)) in KINDS:
                return known
        raise NotAnArchive("an object of an unknown class")

    def made(self, kind, found, depth):
        if kind == "NSDictionary":
            keys = [self.value(key, depth) for key in found["NS.keys"]]
            values = [self.value(item, depth) for item in found["NS.objects"]]
            if len(keys) != len(values) or not all(type(key) is str for key in keys):
                raise NotAnArchive("a dictionary whose keys are no texts, or not as many as its objects")
            return dict(zip(keys, values))
        if kind == "NSArray":
            return [self.value(item, depth) for item in found["NS.objects"]]
        if kind == "NSNull":
            return None
        field, kinds = CONTENTS[kind]
        content = found[field]
        if type(content) is plistlib.UID:
            content = self.at(content)
        if type(content) not in kinds:
            raise NotAnArchive(f"an {kind} without {field}")
        return Date(float(content)) if kind == "NSDate" else content


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
    """Somebody else holds the name, or what stands there is no port's."""


def _make_folders(folder, name):
    """Makes what is missing, and raises PermissionError for a folder that somebody else could meddle with."""
    os.makedirs(folder, 0o700, exist_ok=True)
    path = folder
    for part in [None, *name.split("/")[:-1]]:
        if part:
            path = f"{path}/{part}"
            try:
                os.mkdir(path, 0o700)
            except FileExistsError:
                pass
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
            raise NameTaken(errno.EADDRINUSE, "somebody holds the name", self.path) from error
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
                # A client that does not read holds nobody up, and not for long.
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
            pass  # Whoever is no longer there, or speaks otherwise, is told nothing.
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
        try:
            found = os.lstat(self.path)
            if (found.st_dev, found.st_ino) == (self._bound.st_dev, self._bound.st_ino):
                os.unlink(self.path)
        except FileNotFoundError:
            pass
        self._listener.close()
        os.close(self._lock)
