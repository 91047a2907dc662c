"""Python's property lists, with keyed archives on top, for the tests to exchange archives with.

Each line of standard input is answered by one:

    plistlib_peer.py read             archive in hexadecimal -> its value
    plistlib_peer.py again            archive -> the same value archived anew
    plistlib_peer.py write [STYLE]    value -> archive

Values are written as tests/interop/Form.h says. A line that starts with "!" says why there is no answer. Styles: equal
values are one object, unless "unshared"; "sorted" sorts the keys of each dictionary of the property list;
"reversed" puts archived objects in the opposite order, the root last; "mutable" makes mutable classes, texts too;
"inline" has data and dates stand among the archived objects as they are.
"""
import datetime
import plistlib
import struct
import sys
from dataclasses import dataclass

EPOCH = datetime.datetime(2001, 1, 1)


@dataclass(frozen=True)
class Date:
    """A point in time, in seconds since 2001-01-01 UTC."""
    seconds: float


def read_form(form):
    """The value that a line of tokens stands for; nil is None."""
    closing = object()

    def value():
        token = next(tokens)
        kind, rest = token[0], token[1:]
        if kind in "])}":
            return closing
        if kind == "[":
            return list(iter(value, closing))
        if kind == "{":
            return {key: value() for key in iter(value, closing)}
        return {
            "n": lambda: None,
            "t": lambda: True,
            "f": lambda: False,
            "i": lambda: int(rest),
            "r": lambda: struct.unpack(">d", bytes.fromhex(rest))[0],
            "s": lambda: bytes.fromhex(rest).decode(),
            "d": lambda: bytes.fromhex(rest),
            "w": lambda: Date(struct.unpack(">d", bytes.fromhex(rest))[0]),
        }[kind]()

    tokens = iter(form.split(" "))
    return value()


def write_form(value):
    """The opposite of read_form."""
    if isinstance(value, list):
        return " ".join(["[", *map(write_form, value), "]"])
    if isinstance(value, dict):
        return " ".join(["{", *(write_form(part) for entry in value.items() for part in entry), "}"])
    if value is None:
        return "n"
    if isinstance(value, bool):
        return "t" if value else "f"
    if isinstance(value, int):
        return f"i{value}"
    if isinstance(value, float):
        return "r" + struct.pack(">d", value).hex()
    if isinstance(value, str):
        return "s" + value.encode().hex()
    if isinstance(value, bytes):
        return "d" + value.hex()
    return "w" + struct.pack(">d", value.seconds).hex()


class Archiver:
    """Lays a value out as archived objects, which refer to each other by UID."""

    def __init__(self, styles):
        self.styles = styles
        self.objects = ["$null"]
        self.known = {}
        self.classes = {}

    def archive(self, value):
        root = self.add(value)
        if "reversed" in self.styles:
            root = self.reverse(root)
        archive = {"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": root}, "$objects": self.objects}
        return plistlib.dumps(archive, fmt=plistlib.FMT_BINARY, sort_keys="sorted" in self.styles)

    def add(self, value):
        if value is None:
            return plistlib.UID(0)
        # The form tells 1, 1.0 and True apart, and 0.0 and -0.0.
        same = write_form(value)
        if same in self.known and "unshared" not in self.styles:
            return self.known[same]
        uid = self.known[same] = plistlib.UID(len(self.objects))
        self.objects.append(None)
        self.objects[uid.data] = self.archived(value)
        return uid

    def archived(self, value):
        if isinstance(value, dict):
            return self.instance("Dictionary", **{"NS.keys": list(map(self.add, value)),
                                                  "NS.objects": list(map(self.add, value.values()))})
        if isinstance(value, list):
            return self.instance("Array", **{"NS.objects": list(map(self.add, value))})
        if isinstance(value, bytes) and "inline" not in self.styles:
            return self.instance("Data", **{"NS.data": value})
        if isinstance(value, Date):
            if "inline" in self.styles:
                return EPOCH + datetime.timedelta(seconds=value.seconds)
            return self.instance("Date", **{"NS.time": value.seconds})
        if isinstance(value, str) and "mutable" in self.styles:
            return self.instance("String", **{"NS.string": value})
        return value

    def instance(self, name, **fields):
        bases = ["NS" + name, "NSObject"]
        if "mutable" in self.styles and name != "Date":
            bases.insert(0, "NSMutable" + name)
        if bases[0] not in self.classes:
            self.classes[bases[0]] = plistlib.UID(len(self.objects))
            self.objects.append({"$classname": bases[0], "$classes": bases})
        return {**fields, "$class": self.classes[bases[0]]}

    def reverse(self, root):
        last = len(self.objects)

        def turned(part):
            if isinstance(part, plistlib.UID):
                return plistlib.UID(last - part.data) if part.data else part
            if isinstance(part, list):
                return list(map(turned, part))
            if isinstance(part, dict):
                return {key: turned(entry) for key, entry in part.items()}
            return part

        self.objects[1:] = [turned(part) for part in reversed(self.objects[1:])]
        return turned(root)


def unarchive(data):
    """The value of a keyed archive."""
    archive = plistlib.loads(data, fmt=plistlib.FMT_BINARY)
    assert archive["$version"] == 100000 and archive["$archiver"] == "NSKeyedArchiver", "not a keyed archive"
    objects = archive["$objects"]
    assert objects[0] == "$null", "no $null"

    def value(uid):
        if uid.data == 0:
            return None
        found = objects[uid.data]
        if not isinstance(found, dict):
            return found
        described = objects[found["$class"].data]
        name = described["$classname"]
        assert described["$classes"] == [name, "NSObject"], described
        if name == "NSDictionary":
            return dict(zip(map(value, found["NS.keys"]), map(value, found["NS.objects"]), strict=True))
        if name == "NSArray":
            return list(map(value, found["NS.objects"]))
        assert name == "NSDate", name
        return Date(found["NS.time"])

    return value(archive["$top"]["root"])


def answer(line, mode, styles):
    if mode == "write":
        return Archiver(styles).archive(read_form(line)).hex()
    value = unarchive(bytes.fromhex(line))
    return Archiver(styles).archive(value).hex() if mode == "again" else write_form(value)


def main():
    sys.setrecursionlimit(10_000)
    for line in sys.stdin:
        try:
            print(answer(line.rstrip("\n"), sys.argv[1], sys.argv[2:]), flush=True)
        except Exception as problem:  # whatever it is, the tests want to read it
            print(f"! {problem!r}".replace("\n", " "), flush=True)


main()
