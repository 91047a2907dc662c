#!/usr/bin/env python3
"""Keyed archives in another language, written after docs/ports.md, with those of lumoractl.

    PYTHONPATH=tests tests/wire/archives_test.py [-v] BUILD
"""
import math
import plistlib
import re
import subprocess
import unittest
from datetime import datetime

from harness import forms, wire
from harness.archives import Date, NotAnArchive, archive, unarchive
from harness.build import SOURCE
from harness.programs import program
from harness.waiting import LONG_ENOUGH, Limited

DOCUMENT = (SOURCE / "docs/ports.md").read_text(encoding="utf-8")

ALL_KINDS = {
    "yes": True, "no": False, "one": 1, "one real": 1.0, "nothing": 0, "nothing real": 0.0, "below nothing": -0.0,
    "least": -1 << 63, "most": (1 << 63) - 1, "infinite": math.inf, "words": "Grüße 𝄞", "no words": "",
    "$null": "$null", "data": bytes(range(256)), "no data": b"", "date": Date(760000000.25),
    "list": [1, True, 1.0, "1", [], {}],
    "dictionary": {"b": 1, "a": {"deep": [[["er"]]]}}, "many": {f"key {i}": i for i in range(400)},
}


def exactly(value):
    """Tells apart what Python holds for equal: kinds, the order of a dictionary, and the two zeros."""
    return repr(value)


def lumoractl(command, given):
    """What it makes of an archive or, as JSON, of a value."""
    return subprocess.run([program("lumoractl"), command], input=given, capture_output=True, timeout=LONG_ENOUGH,
                          check=True).stdout


def unarchived(data):
    return forms.load(lumoractl("unarchive", data))


def archived(value):
    return lumoractl("archive", forms.dump(value).encode())


def archive_of(objects):
    """An archive of these objects, of which the second is the root."""
    return plistlib.dumps({"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": plistlib.UID(1)},
                           "$objects": objects}, fmt=plistlib.FMT_BINARY)


class ArchiveTest(Limited):
    def test_builds_the_example_of_the_document_byte_by_byte(self):
        lines = re.findall(r"^    ([0-9a-f]{4})  ((?:[0-9a-f]{2} {1,2}){1,16})", DOCUMENT, re.MULTILINE)
        dumped = bytes.fromhex("".join(digits for _, digits in lines))
        self.assertEqual([int(at, 16) for at, _ in lines], list(range(0, len(dumped), 16)))
        self.assertEqual(len(dumped), 16 + 303)
        change = {"object": {"key": "kSleepTime", "object": 30}}
        self.assertEqual(wire.frame(archive(change)).hex(" "), dumped.hex(" "))
        self.assertEqual(exactly(unarchive(dumped[16:])), exactly(change))

    def test_keeps_every_kind_apart(self):
        self.assertEqual(exactly(unarchive(archive(ALL_KINDS))), exactly(ALL_KINDS))
        for value in (None, True, 0, 1.5, "root", b"root", Date(-1.0), [None, [None]], math.nan):
            self.assertEqual(exactly(unarchive(archive(value))), exactly(value))

    def test_understands_the_real_programs_archives_and_is_understood(self):
        self.maxDiff = None
        self.assertEqual(exactly(unarchived(archive(ALL_KINDS))), exactly(ALL_KINDS))
        self.assertEqual(exactly(unarchive(archived(ALL_KINDS))), exactly(ALL_KINDS))

    def test_reads_the_classes_that_others_write(self):
        uid = plistlib.UID

        def classed(name):
            return {"$classname": name, "$classes": [name, "NSObject"]}
        objects = ["$null", {"NS.keys": [uid(2)], "NS.objects": [uid(4)], "$class": uid(10)},
                   {"NS.string": "key", "$class": uid(11)}, b"raw",
                   {"NS.objects": [*map(uid, (0, 5, 6, 7, 8, 3))], "$class": uid(12)}, {"$class": uid(13)},
                   {"NS.data": uid(3), "$class": uid(14)}, {"NS.time": 5, "$class": uid(15)},
                   datetime(2001, 1, 2), "",
                   {"$classname": "OwnDictionary", "$classes": ["OwnDictionary", "NSMutableDictionary", "NSObject"]},
                   *map(classed, ("NSMutableString", "NSMutableArray", "NSNull", "NSMutableData", "NSDate"))]
        for read in (unarchive, unarchived):
            self.assertEqual(exactly(read(archive_of(objects))),
                             exactly({"key": [None, None, b"raw", Date(5.0), Date(86400.0), b"raw"]}))

    def test_reads_as_deep_as_the_document_says_and_no_deeper(self):
        value = []
        for _ in range(127):
            value = [value]
        for read, refusal in ((unarchive, NotAnArchive), (unarchived, subprocess.CalledProcessError)):
            self.assertEqual(read(archive(value)), value)
            with self.assertRaises(refusal):
                read(archive([value]))

    def test_refuses_what_is_no_archive_whatever_it_is(self):
        good = archive(ALL_KINDS)
        for end in range(len(good)):
            with self.assertRaises(NotAnArchive):
                unarchive(good[:end])
        small = archive({"a": [1, "b", {"c": Date(1.0)}]})
        refused = 0
        for at in range(len(small)):
            for flip in (1, 0x80, 0xff):
                try:
                    unarchive(small[:at] + bytes([small[at] ^ flip]) + small[at + 1:])
                except NotAnArchive:
                    refused += 1
        self.assertGreater(refused, len(small))

    def test_refuses_an_archive_that_swells_or_holds_itself(self):
        uid = plistlib.UID
        swelling = ["$null", *({"NS.objects": [uid(i + 2)] * 10, "$class": uid(31)} for i in range(29)), "end",
                    {"$classname": "NSArray"}]
        for objects in (swelling, ["$null", {"NS.objects": [uid(1)], "$class": uid(2)}, {"$classname": "NSArray"}]):
            with self.assertRaises(NotAnArchive):
                unarchive(archive_of(objects))

    def test_writes_long_equal_texts_so_that_others_read_them(self):
        value = [{"a" * size: "ä𝄞" * size for size in (5, 16, 17, 50, 1000)}] * 2000
        self.assertEqual(unarchived(archive(value)), value)
        self.assertEqual(unarchive(archived(value)), value)

    def test_archives_nothing_that_has_no_form(self):
        for value in ({1: 2}, (1,), {"a": object()}):
            with self.assertRaises(TypeError):
                archive(value)
        with self.assertRaises(OverflowError):
            archive(1 << 63)


if __name__ == "__main__":
    unittest.main()
