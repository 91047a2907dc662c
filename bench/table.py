#!/usr/bin/env python3
"""Turns Google Benchmark's JSON into one table: ours, floor or peer, ratio, goal, met or not.

    bench/table.py RESULTS.json… [--peers] [--json TABLE.json] [--documents FOLDER]

Goals are ratios against a floor or a peer measured in the same run, since these numbers mean nothing across machines;
the few in microseconds, milliseconds and megabytes are costs that a person or a caller feels directly.
"""
import argparse
import json
import os
import platform
import sys

# the unit, and what a measured number is divided by
US, MS, MB, TIMES = ("µs", 1e3), ("ms", 1e6), ("MB", 1), ("times", 1)
FRAME = 1000 / 60
INSTANT = 100  # milliseconds up to which an answer seems to come at once
AT_REST = 500  # milliseconds up to which a page that slides in stands still
MEDIAN, TAIL = (", median", ""), (", 95th percentile", "95")

# what is told, ours, floor or peer, the unit of both, the largest ratio that meets the goal
RATIOS = [
    ("port exchange of 200 bytes / bare Unix-socket exchange", "PortExchange", "BareSocketExchange", US, 1.3),
    ("notify() to its reply block / bare Unix-socket exchange", "NotifyToReply", "BareSocketExchange", US, 2.5),
    ("notify() to its reply block / D-Bus call, new connection", "NotifyToReply", "DBusCallNewConnection", US, 0.5),
    ("encode a settings dictionary / libplist", "EncodeSettings", "EncodeSettingsLibplist", US, 1 / 5),
    ("decode a settings dictionary / libplist, to settings", "DecodeSettings", "DecodeSettingsLibplist", US, 1 / 4),
    ("decode a settings dictionary / libplist, parsing alone", "DecodeSettings", "ParseSettingsLibplist", US, 1 / 4),
    ("application list of 10,000 built / library call and ICU sort", "BuildAppsList", "ListAndSort", US, 1.3),
    ("dearest of seven searches of 10,000 rows / each word in each text, without an order", "SearchTenThousand",
     "PlainSearchTenThousand", US, 1.5),
    ("discover 1,000 plug-ins / bare dlopen and dlsym", "DiscoverThousandPlugins", "LoadThousandPluginsBare", US, 1.5),
    ("discover 1,000 new plug-ins / bare dlopen and dlsym", "DiscoverThousandPluginsFirst", "LoadThousandPluginsBare",
     US, 3.0),
    ("tweak's answer to a change, 16 followers of whom four are stuck / none", "ChangeAnswerWithFollowers",
     "ChangeAnswer", US, 1.3),
    ("tweak's answer to a change, recorded / not recorded", "ChangeAnswer", "ChangeAnswerWithoutHistory", US, 1.3),
]
# what is told, benchmark, unit, the largest value that meets the goal
COSTS = [
    ("cost of notify() to its caller, idle", "NotifyCallerCost", US, 10),
    ("cost of notify() to its caller, 200 messages stuck", "NotifyCallerCostWith200Stuck", US, 10),
    ("100 new connections to a port beside 200 busy ones, the last answered", "NewcomersAmongBusy", MS, 300),
    ("dearest of seven searches of 10,000 rows, processor time", "SearchTenThousand", MS, 1),
    ("dearest of four with mistakes, processor time", "SearchTenThousandForgiving", MS, 5),
    ("key to drawn results among 10,000 rows, 95th percentile", "DrawResults", MS, FRAME),
    ("index of all pages read from the cache", "ReadKeptIndex", MS, 5),
    ("processor time for the index of all pages", "MakeIndex", MS, 300),
    ("full history of 5,000 changes read", "ReadFullHistory", MS, 10),
    ("settings reckoned from one end of it to the other", "MoveThroughHistory", MS, 1),
    ("step of a slider through it to the drawn lock screen, processor time, 95th percentile", "ScrubHistory", MS, FRAME),
    ("start to the first page on the screen, warm", "WindowStart", MS, 150),
    ("resident memory of the window then", "WindowMemory", MB, 64),
    ("start to the first page with a fifth of a processor", "WindowOnWeakCoreStart", MS, 700),
    ("start to the lock screen, warm", "FaceStart", MS, 150),
    ("resident memory of the lock screen then", "FaceMemory", MB, 65),
    ("what a change makes of the lock screen, and where it differs, the dearest key", "LookOfChange", US, 50),
    ("a change drawn with two pixels to a point, the dearest key", "FaceChangeAtTwo", MS, 4),
    ("passcode view drawn with three pixels to a point", "PasscodeViewAtThree", MS, 8),
    ("a frame of a swipe between App Views with three pixels to a point, 95th percentile", "SwipeAppViewsAtThree", MS,
     FRAME),
    ("start to the first page with three pixels to a point", "WindowAtThreeStart", MS, 200),
    ("resident memory of the window then", "WindowAtThreeMemory", MB, 90),
    ("resident memory of the window after a way through 300 fonts there", "FontsAtThreeMemory", MB, 90),
    ("resident memory of the window after 30 swipes among 10,000 applications there", "ApplicationsAtThreeMemory", MB, 90),
    ("resident memory of a lock screen with three pixels to a point", "FaceAtThreeMemory", MB, 130),
    ("blur of a lock screen with three pixels to a point", "BlurScreenAtThree", MS, 10),
    ("another tint and another blur's opacity there", "TintScreenAtThree", MS, 8),
    ("wake-ups a minute of the window while nothing happens", "WindowIdle", TIMES, 1),
    ("wake-ups a minute of the lock screen while only its clock goes on", "FaceIdle", TIMES, 30),
    ("wake-ups a minute of the tweak then", "TweakIdle", TIMES, 10),
    ("wake-ups a minute of the process of an App View that shows the same", "AppViewIdle", TIMES, 0),
    ("resident memory of its own then", "AppViewMemory", MB, 8),
    *((told + which, benchmark + suffix, MS, goal)
      for told, benchmark, goal, parts in (
          ("tap on a switch to its change on the screen", "TapSwitch", 2 * FRAME, (MEDIAN, TAIL)),
          ("tweak's answer to the change on the lock screen", "ChangeFace", FRAME, (MEDIAN, TAIL)),
          ("tweak's answer to the change of its own setting in an App View", "ChangeAppView", 2 * FRAME, (MEDIAN, TAIL)),
          ("tap on a link to the first row coming into view, page asks the tweak", "OpenPage", INSTANT, (MEDIAN, TAIL)),
          ("tap on a link to the page at rest, page asks the tweak", "OpenPageAtRest", AT_REST, (MEDIAN,)),
          ("tap on a link to the first row coming into view, page was open before", "OpenPageAgain", INSTANT,
           (MEDIAN, TAIL)),
          ("tap on a link to the page at rest, page was open before", "OpenPageAgainAtRest", AT_REST, (MEDIAN,)),
          ("move of a finger to the crosshair there", "MoveCrosshair", FRAME, (MEDIAN, TAIL)),
          ("move of a finger to the crosshair there, at 120 moves a second", "DragCrosshair", FRAME, (MEDIAN, TAIL)),
          ("move of a slider's knob to the lock screen beside it", "DragSlider", FRAME, (MEDIAN, TAIL)),
          ("three pixels to a point: tap on a link to the first row coming into view, page asks the tweak",
           "OpenPageAtThree", INSTANT, (MEDIAN, TAIL)),
          ("three pixels to a point: move of a finger to the crosshair there", "MoveCrosshairAtThree", 2 * FRAME,
           (MEDIAN, TAIL)),
          ("three pixels to a point: move of a finger to the list of 300 fonts moving under it", "ScrollFontsAtThree",
           2 * FRAME, (MEDIAN, TAIL)),
          ("three pixels to a point: processor time of that", "ScrollFontsAtThreeProcessor", FRAME, (MEDIAN, TAIL)),
          ("three pixels to a point: move of a finger to the list of 10,000 applications moving under it",
           "ScrollApplicationsAtThree", 2 * FRAME, (MEDIAN, TAIL)),
          ("three pixels to a point: processor time of that", "ScrollApplicationsAtThreeProcessor", FRAME,
           (MEDIAN, TAIL)),
          ("fifth of a processor: tap on a switch to its change on the screen", "TapSwitchOnWeakCore", INSTANT,
           (MEDIAN, TAIL)),
          ("fifth of a processor: tap on a link to the first row coming into view, page asks the tweak",
           "OpenPageOnWeakCore", AT_REST, (MEDIAN, TAIL)),
          ("fifth of a processor: move of a finger to the crosshair there", "MoveCrosshairOnWeakCore", 50,
           (MEDIAN, TAIL)),
          ("fifth of a processor: move of a slider's knob to the lock screen beside it", "DragSliderOnWeakCore", 50,
           (MEDIAN, TAIL)),
          # Not a frame is left out.
          ("one frame of a lock screen to the next, its colour dragged there in another process", "DragColorOfFace",
           1.5 * FRAME, (TAIL,)))
      for which, suffix in parts),
]
# Installed and measured with --peers only.
PEERS = [(f"{told} / {program}", ours, theirs.format(name), unit, goal)
         for name, program in (("Systemsettings", "systemsettings"), ("PhoshMobileSettings", "phosh-mobile-settings"),
                               ("GnomeControlCenter", "gnome-control-center"))
         for told, ours, theirs, unit, goal in (
             ("start to the first page on the screen", "WindowStart", "{}Start", MS, 1 / 2),
             ("memory then", "WindowMemory", "{}Memory", MB, 1 / 2),
             ("tap on a link to the first sign of its page, median", "OpenPage", "OpenPage{}", MS, 1),
             ("tap on a switch to its change on the screen, median", "TapSwitch", "TapSwitch{}", MS, 1))]

# The rows that say most, and so stand in the README.
CHOSEN = {
    "notify() to its reply block / D-Bus call, new connection",
    "decode a settings dictionary / libplist, parsing alone",
    "start to the first page on the screen / phosh-mobile-settings",
    "memory then / phosh-mobile-settings",
    "tap on a switch to its change on the screen, 95th percentile",
}

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
BEGIN, END = "<!-- made by bench/run --documents -->\n", "<!-- end -->\n"


def medians(paths):
    """Benchmark name to its median: real time in nanoseconds, or the counter "value" where there is one."""
    found = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for entry in json.load(file)["benchmarks"]:
                name = entry.get("run_name", entry["name"]).split("/")[0]
                if entry.get("error_occurred") or entry.get("aggregate_name", "median") != "median":
                    continue
                value = entry["value"] if "value" in entry else entry["real_time"] * NANOSECONDS[entry["time_unit"]]
                found[name] = value
    return found


def rows(found, ratios):
    """A row of the table each, as it is written to JSON."""
    def measured(name, unit):
        return found[name] / unit[1] if name in found else None

    for told, name, peer, unit, goal in ratios:
        ours, theirs = measured(name, unit), measured(peer, unit)
        value = ours / theirs if ours is not None and theirs else None
        yield {"measured": told, "ours": ours, "peer": theirs, "of": unit[0], "value": value, "goal": goal,
               "unit": "ratio"}
    for told, name, unit, goal in COSTS:
        value = measured(name, unit)
        yield {"measured": told, "ours": value, "peer": None, "of": unit[0], "value": value, "goal": goal,
               "unit": unit[0]}


def lines(table):
    def shown(number, unit):
        return "–" if number is None else f"{number:.1f} {unit}"

    yield "| measured | ours | floor or peer | ratio | goal | met |\n|---|---|---|---|---|---|\n"
    for row in table:
        ratio = row["unit"] == "ratio"
        goal = f"≤ {row['goal']:.3g}" + ("" if ratio else " " + row["unit"])
        value = f"{row['value']:.2f}" if ratio and row["met"] != "not measured" else "–" if ratio else ""
        yield (f"| {row['measured']} | {shown(row['ours'], row['of'])} | "
               f"{shown(row['peer'], row['of']) if ratio else ''} | {value} | {goal} | {row['met']} |\n")


def machine():
    """Processor, cores, kernel and distribution, in a line."""
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = [line.split(":", 1)[1].strip() for line in file if line.startswith("model name")]
    model = models[0] if models else platform.machine()
    return f"{model}, {len(os.sched_getaffinity(0))} cores, {platform.system()} {platform.release()}, " \
           f"{platform.freedesktop_os_release()['PRETTY_NAME']}"


def write_between_marks(path, text):
    with open(path, encoding="utf-8") as file:
        before, found, rest = file.read().partition(BEGIN)
    _, ended, after = rest.partition(END)
    if not found or not ended:
        sys.exit(f"{path} has no place for the table")
    with open(path, "w", encoding="utf-8") as file:
        file.write(before + BEGIN + text + END + after)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("results", nargs="+")
    parser.add_argument("--peers", action="store_true", help="with rows for other settings programs")
    parser.add_argument("--json", metavar="FILE", help="write the same as JSON")
    parser.add_argument("--documents", metavar="FOLDER",
                        help="put the table between its marks in docs/performance.md there, some rows in README.md")
    arguments = parser.parse_args()
    table = list(rows(medians(arguments.results), RATIOS + PEERS * arguments.peers))
    for row in table:
        row["met"] = "not measured" if row["value"] is None else "yes" if row["value"] <= row["goal"] else "no"
    measured_on = f"Measured on: {machine()}.\n\n"
    text = measured_on + "".join(lines(table))
    print(text, end="")
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump({"machine": machine(), "rows": table}, file, ensure_ascii=False, indent=2)
    if arguments.documents:
        write_between_marks(f"{arguments.documents}/docs/performance.md", text)
        chosen = measured_on + "".join(lines(row for row in table if row["measured"] in CHOSEN))
        write_between_marks(f"{arguments.documents}/README.md", chosen)
    may_lack = {told for told, *_ in PEERS} | {told for told, name, *_ in COSTS if "OnWeakCore" in name}
    return 0 if all(row["value"] is not None or row["measured"] in may_lack for row in table) else 1


if __name__ == "__main__":
    sys.exit(main())
