"""Keyed archives, written after docs/ports.md.

    archive({"key": "kSleepTime", "object": 30})    # the bytes of one
    unarchive(data)                                 # and back; None is nil

Kinds are Python's own: bool, int, float, str, bytes, list, dict and None, and Date for a date. Any thread may call.
"""
import plistlib
import struct
from collections import defaultdict
from dataclasses import dataclass
from datetime import datetime, timezone
from itertools import count

EPOCH = datetime(2001, 1, 1, tzinfo=timezone.utc)


@dataclass(frozen=True)
class Date:
    """A moment, exactly as it travels."""

    seconds: float  # since EPOCH


def archive(value):
    """A value as a keyed archive. Raises TypeError or OverflowError for what has no form in one."""
    objects, known = [("text", "$null")], {}

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
    names = dict.fromkeys(item[0] for item in objects if item[0] not in ("text", "plain"))
    classes = {name: place for place, name in enumerate(names, len(objects))}
    return _property_list([*objects, *(("class", name) for name in names)], root, classes)


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


def _bytes(number):
    """As few as it takes."""
    return number.to_bytes(max(1, (number.bit_length() + 7) // 8), "big")


def _property_list(objects, root, classes):
    """The binary form, its objects in the order and with the numbers of the document's example."""
    numbers = count(4 + len(objects))
    uids, texts = defaultdict(numbers.__next__), defaultdict(numbers.__next__)
    written = []  # (number, head, references), in the order of the file

    uids |= {index: next(numbers) for index in range(1, len(objects))}
    keys = [texts[key] for key in ("$version", "$archiver", "$top", "$objects")]
    written.append((0, _head(13, 4), [*keys, 1, texts["NSKeyedArchiver"], 2, 3]))
    written.append((1, _integer(100000), []))
    written.append((2, _head(13, 1), [texts["root"], uids[root]]))
    written.append((3, _head(10, len(objects)), range(4, 4 + len(objects))))
    for number, (kind, content) in enumerate(objects, 4):
        if kind == "text":
            written.append((number, _text(content), []))
        elif kind == "plain":
            written.append((number, content, []))
        elif kind == "class":
            names = [texts["$classname"], texts["$classes"], texts[content]]
            listed = next(numbers)
            written.append((number, _head(13, 2), [*names, listed]))
            written.append((listed, _head(10, 2), [texts[content], texts["NSObject"]]))
        else:
            keys = [texts[key] for key in (*content, "$class")]
            parts = [(next(numbers), part) for part in content.values()]  # they follow their object
            written.append((number, _head(13, len(keys)), [*keys, *(place for place, _ in parts), uids[classes[kind]]]))
            for place, part in parts:
                if isinstance(part, bytes):
                    written.append((place, part, []))
                else:
                    written.append((place, _head(10, len(part)), [uids[item] for item in part]))
    for index, number in uids.items():
        digits = _bytes(index)
        written.append((number, bytes([0x80 | len(digits) - 1]) + digits, []))
    for words, number in texts.items():
        written.append((number, _text(words), []))

    reference = len(_bytes(len(written)))
    out, offsets = bytearray(b"bplist00"), [0] * len(written)
    for number, head, references in written:
        offsets[number] = len(out)
        out += head
        for item in references:
            out += item.to_bytes(reference, "big")
    table, size = len(out), len(_bytes(len(out)))
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
