#!/usr/bin/env python3
"""How often programs wake up a minute while nothing happens.

    PYTHONPATH=tests bench/IdleBench.py BUILD [--seconds N]

Prints JSON in the form of Google Benchmark's, and on standard error which threads it were. Looks at the Settings window
on its first page, at the lock screen, whose clock goes on, at the tweak beside them, and at the process in which a
plug-in has drawn its App View, with the memory that is that process's own.
"""
import argparse
import json
import re
import sys
import types
from pathlib import Path

from harness.client import Client
from harness.wakeups import wakeups
from stage import Stage

SETTLED = 8  # seconds after which a program has done all that it does by itself once it is open


def rest(stage):
    stage.settle(0, 0, stage.width, stage.height, still=SETTLED)


def drawing_process(face):
    """That of the App View which a lock screen shows."""
    for thread in Path(f"/proc/{face.pid}/task").iterdir():
        for pid in (thread / "children").read_text(encoding="ascii").split():
            if Path(f"/proc/{pid}/comm").read_text(encoding="utf-8").strip() == "lumora-appview":
                return types.SimpleNamespace(pid=int(pid))
    raise RuntimeError("no App View draws")


def own_megabytes(process):
    """What is resident and shared with no other process."""
    memory = Path(f"/proc/{process.pid}/smaps_rollup").read_text(encoding="ascii")
    return sum(map(int, re.findall(r"^Private_\w+:\s*(\d+) kB", memory, re.MULTILINE))) / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("--seconds", type=int, default=60)
    arguments = parser.parse_args()

    def measured(name, process):
        found = wakeups(process, arguments.seconds)
        print(name, found, file=sys.stderr)
        return {"name": name, "value": sum(found.values()) * 60 / arguments.seconds}

    benchmarks = []
    with Stage(arguments.build) as stage:
        with stage.settings() as window:
            rest(stage)
            benchmarks.append(measured("WindowIdle", window))
        with stage.lockscreen() as face:
            rest(stage)
            benchmarks.append(measured("FaceIdle", face))
            benchmarks.append(measured("TweakIdle", stage.tweak))
        client = Client(stage.environment["LUMORA_PORTS"])
        client.set("kTweakEnabled", True)
        client.set("kSleepTime", 3600)
        client.set("kAppViewsEnabled", ["org.lumora.plugins.weather"])
        with stage.lockscreen("--surface", "V") as face:
            rest(stage)
            process = drawing_process(face)
            benchmarks.append({"name": "AppViewMemory", "value": own_megabytes(process)})
            benchmarks.append(measured("AppViewIdle", process))
    json.dump({"benchmarks": benchmarks}, sys.stdout, indent=2)
    print()


if __name__ == "__main__":
    main()
