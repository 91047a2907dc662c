#!/usr/bin/env python3
"""From the start of a process to its picture on the screen, warm, and the memory that it takes at that moment.

    PYTHONPATH=tests bench/StartBench.py BUILD [--runs N] [--peers]

Prints JSON in the form of Google Benchmark's. All programs are measured alike: started with a session bus and no window
manager, and looked at until nothing changes any more. A program counts as drawn from the moment at which nine tenths of
what it changes of the screen stand there as they do in the end; so a caret that blinks, or a title that comes before
the rest, is no matter. A peer that is not there, or draws nothing, is left out, and standard error says so.
"""
import argparse
import json
import shutil
import statistics
import sys
import time

from stage import LOOK, Stage, WeakCore, resident_megabytes

WARM_UP = 2  # starts that fill the page cache and are not counted
STILL = 1.0  # seconds without a change, after which nothing more is awaited
PATIENCE = 8.0  # and as long as that altogether, or until the first change
LINES = 8  # every one of so many is looked at
PEERS = {"Systemsettings": "systemsettings", "PhoshMobileSettings": "phosh-mobile-settings",
         "GnomeControlCenter": "gnome-control-center"}


def pictures(look, memory, began):
    """What is drawn one after the other, each with its moment and the memory then, until it stays as it is."""
    seen = [(began, look(), memory())]
    while (now := time.monotonic()) < (seen[-1][0] + STILL if len(seen) > 1 else began + PATIENCE) and \
            now < began + PATIENCE:
        if (picture := look()) != seen[-1][1]:
            seen.append((time.monotonic(), picture, memory()))
        time.sleep(LOOK)
    return seen


def drawn(seen):
    """The moment from which nine tenths of the changed pixels are what they are in the end, and the memory then; None
    if none changed."""
    blank, final = (memoryview(seen[place][1]).cast("I") for place in (0, -1))
    changed = [place for place, (one, other) in enumerate(zip(blank, final)) if one != other]
    since = None
    for moment, picture, memory in seen[1:]:
        pixels = memoryview(picture).cast("I")
        if sum(pixels[place] == final[place] for place in changed) < 0.9 * len(changed):
            since = None
        elif since is None:
            since = moment, memory
    return since


def start_once(stage, command):
    """Milliseconds and megabytes, or None."""
    began = time.monotonic()
    with stage.program(*command) as process:
        first = drawn(pictures(lambda: stage.area(0, 0, stage.width, stage.height, LINES),
                               lambda: resident_megabytes(process), began))
        if first is None or process.poll() is not None:
            return None
        moment, megabytes = first
        return 1000 * (moment - began), megabytes


def start(stage, name, command, runs):
    """Two entries of the table: the time and the memory."""
    results = [start_once(stage, command) for _ in range(WARM_UP + runs)][WARM_UP:]
    if None in results:
        print(f"{command[0]} did not draw anything", file=sys.stderr)
        return []
    milliseconds, megabytes = zip(*results)
    return [{"name": name + "Start", "real_time": statistics.median(milliseconds), "time_unit": "ms"},
            {"name": name + "Memory", "value": statistics.median(megabytes)}]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("--runs", type=int, default=9)
    parser.add_argument("--peers", action="store_true", help="also start " + ", ".join(PEERS.values()))
    arguments = parser.parse_args()
    with Stage(arguments.build) as stage:
        benchmarks = start(stage, "Window", stage.settings_command(), arguments.runs)
        benchmarks += start(stage, "Face", stage.lockscreen_command("--time", "18:36"), arguments.runs)
        for name, program in PEERS.items() if arguments.peers else ():
            if shutil.which(program):
                benchmarks += start(stage, name, [program], arguments.runs)
            else:
                print(f"{program} is not installed", file=sys.stderr)
    with Stage(arguments.build, scale=3) as stage:
        benchmarks += start(stage, "WindowAtThree", stage.settings_command(), arguments.runs)
        benchmarks += start(stage, "FaceAtThree", stage.lockscreen_command("--time", "18:36"), arguments.runs)
    if why_not := WeakCore.why_not():
        print(f"nothing is measured on a weak core: {why_not}", file=sys.stderr)
    else:
        with Stage(arguments.build, weak=True) as stage:
            benchmarks += start(stage, "WindowOnWeakCore", stage.settings_command(), arguments.runs)
    json.dump({"benchmarks": benchmarks}, sys.stdout, indent=2)
    print()


if __name__ == "__main__":
    main()
