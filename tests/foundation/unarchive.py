"""Prints the value of a keyed archive as JSON, read with Python's own property-list parser."""
import json
import plistlib
import sys

with open(sys.argv[1], "rb") as file:
    archive = plistlib.load(file)
assert archive["$version"] == 100000 and archive["$archiver"] == "NSKeyedArchiver", archive
objects = archive["$objects"]
assert objects[0] == "$null"


def value(uid):
    if uid.data == 0:
        return None
    found = objects[uid.data]
    if isinstance(found, bytes):
        return {"data": found.hex()}
    if not isinstance(found, dict):
        return found
    described = objects[found["$class"].data]
    assert described["$classes"] == [described["$classname"], "NSObject"], described
    if described["$classname"] == "NSDictionary":
        return dict(zip(map(value, found["NS.keys"]), map(value, found["NS.objects"]), strict=True))
    if described["$classname"] == "NSArray":
        return [value(entry) for entry in found["NS.objects"]]
    if described["$classname"] == "NSDate":
        return {"date": found["NS.time"]}
    raise ValueError(described)


print(json.dumps(value(archive["$top"]["root"])))
