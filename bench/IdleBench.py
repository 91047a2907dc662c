#!/usr/bin/env python3
"""How often programs wake up a minute while nothing happens.

    PYTHONPATH=tests bench/IdleBench.py BUILD [--seconds N]

Prints JSON in the form of Google Benchmark's, and on standard error which threads it were. Looks at the Settings window
on its first page, at the lock screen, whose clock goes on, and at the tweak beside them.
"""
import argparse
import json
import sys

from harness.wakeups import wakeups
from stage import Stage

SETTLED = 8  # seconds after which a program has done all that it does by itself once it is open


def rest(stage):
    stage.settle(0, 0, stage.width, stage.height, still=SETTLED)


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
    json.dump({"benchmarks": benchmarks}, sys.stdout, indent=2)
    print()


if __name__ == "__main__":
    main()
