"""A tweak that remembers every change in the order in which it came.

    with RecordingTweak(ports_folder, {"kTweakEnabled": True}) as tweak:
        …
        tweak.changes   # [("kTweakEnabled", False), …]
"""
import os
import plistlib
import socket
import struct
import threading

HEADER = struct.Struct("<4siq")


def archive(value):
    """A keyed archive of texts, numbers, booleans, and lists and dictionaries of them."""
    objects = ["$null"]

    def add(item):
        if item is None:
            return plistlib.UID(0)
        at = len(objects)
        objects.append(item)
        if isinstance(item, dict):
            objects[at] = {"NS.keys": [add(key) for key in item], "NS.objects": [add(entry) for entry in item.values()],
                           "$class": add_class("NSDictionary")}
        elif isinstance(item, list):
            objects[at] = {"NS.objects": [add(entry) for entry in item], "$class": add_class("NSArray")}
        return plistlib.UID(at)

    def add_class(name):
        objects.append({"$classname": name, "$classes": [name, "NSObject"]})
        return plistlib.UID(len(objects) - 1)

    root = add(value)
    return plistlib.dumps({"$version": 100000, "$archiver": "NSKeyedArchiver", "$top": {"root": root},
                           "$objects": objects}, fmt=plistlib.FMT_BINARY, sort_keys=False)


def unarchive(body):
    archived = plistlib.loads(body, fmt=plistlib.FMT_BINARY)
    objects = archived["$objects"]

    def read(uid):
        item = objects[uid.data]
        if uid.data == 0:
            return None
        if not isinstance(item, dict):
            return item
        entries = [read(entry) for entry in item["NS.objects"]]
        if "NS.keys" not in item:
            return entries
        return dict(zip((read(key) for key in item["NS.keys"]), entries))

    return read(archived["$top"]["root"])


class RecordingTweak:
    def __init__(self, folder, settings):
        self.settings = archive(settings)
        self.changes = []
        self._lock = threading.Lock()
        self._listeners = []
        os.makedirs(os.path.join(folder, "com.nevo.lumora"), mode=0o700, exist_ok=True)
        for name, answer in (("requestTweakSettings", lambda body: self.settings), ("updateSettings", self._record)):
            listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
            listener.bind(os.path.join(folder, "com.nevo.lumora", name))
            listener.listen(128)
            self._listeners.append(listener)
            threading.Thread(target=self._accept, args=(listener, answer), daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        for listener in self._listeners:
            listener.shutdown(socket.SHUT_RDWR)
            listener.close()

    def _record(self, body):
        change = unarchive(body)["object"]
        with self._lock:
            self.changes.append((change["key"], change["object"]))

    def _accept(self, listener, answer):
        while True:
            try:
                client, _ = listener.accept()
            except OSError:
                return  # it was closed
            threading.Thread(target=self._serve, args=(client, answer), daemon=True).start()

    def _serve(self, client, answer):
        with client, client.makefile("rwb") as stream:
            while len(header := stream.read(HEADER.size)) == HEADER.size:
                _, _, length = HEADER.unpack(header)
                reply = answer(stream.read(length) if length >= 0 else None)
                stream.write(HEADER.pack(b"LMP1", 0, -1 if reply is None else len(reply)) + (reply or b""))
                stream.flush()
