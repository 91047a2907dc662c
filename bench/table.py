#!/usr/bin/env python3
"""Turns Google Benchmark's JSON into one table: ours, floor or peer, ratio, goal, met or not.

    bench/table.py RESULTS.json… [--json TABLE.json]

Goals are ratios against a floor or a peer measured in the same run, since these numbers mean nothing across machines;
the few in microseconds, milliseconds and megabytes are costs that a person or a caller feels directly.
"""
import argparse
import json
import sys

# what is told, ours, floor or peer, the largest ratio that meets the goal
RATIOS = [
    ("port exchange of 200 bytes / bare Unix-socket exchange", "PortExchange", "BareSocketExchange", 1.3),
    ("notify() to its reply block / bare Unix-socket exchange", "NotifyToReply", "BareSocketExchange", 2.5),
    ("notify() to its reply block / D-Bus call on a new connection", "NotifyToReply", "DBusCallNewConnection", 0.5),
    ("encode a settings dictionary / libplist", "EncodeSettings", "EncodeSettingsLibplist", 1 / 5),
    ("decode a settings dictionary / libplist, to settings", "DecodeSettings", "DecodeSettingsLibplist", 1 / 4),
    ("decode a settings dictionary / libplist, parsing alone", "DecodeSettings", "ParseSettingsLibplist", 1 / 4),
    ("application list of 10,000 built / library call and ICU sort", "BuildAppsList", "ListAndSort", 1.3),
    ("discover 1,000 plug-ins / bare dlopen and dlsym", "DiscoverThousandPlugins", "LoadThousandPluginsBare", 2.0),
]
# what is told, benchmark, unit, divisor of nanoseconds, the largest value that meets the goal
COSTS = [
    ("cost of notify() to its caller, idle", "NotifyCallerCost", "µs", 1e3, 10),
    ("cost of notify() to its caller, 200 messages stuck", "NotifyCallerCostWith200Stuck", "µs", 1e3, 10),
    ("first frame of the window, warm", "FirstFrame", "ms", 1e6, 150),
]
MEMORY = ("resident memory of the window", "ResidentMemory", "MB", 1, 64)

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


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


def rows(found):
    for told, ours, peer, goal in RATIOS:
        if ours in found and peer in found:
            yield told, f"{found[ours] / 1e3:.1f} µs", f"{found[peer] / 1e3:.1f} µs", found[ours] / found[peer], goal, ""
        else:
            yield told, None, None, None, goal, ""
    for told, ours, unit, divisor, goal in [*COSTS, MEMORY]:
        value = found[ours] / divisor if ours in found else None
        yield told, None if value is None else f"{value:.1f} {unit}", "", value, goal, " " + unit


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("results", nargs="+")
    parser.add_argument("--json", metavar="FILE", help="write the same as JSON")
    arguments = parser.parse_args()
    table = []
    print("| measured | ours | floor or peer | ratio or value | goal | met |")
    print("|---|---|---|---|---|---|")
    for told, ours, peer, value, goal, unit in rows(medians(arguments.results)):
        shown = "not measured" if value is None else f"{value:.2f}{unit}"
        met = "?" if value is None else "yes" if value <= goal else "no"
        print(f"| {told} | {ours or '–'} | {peer or '–'} | {shown} | ≤ {goal:.3g}{unit} | {met} |")
        table.append({"measured": told, "value": value, "goal": goal, "unit": unit.strip() or "ratio", "met": met})
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as file:
            json.dump(table, file, ensure_ascii=False, indent=2)
    return 0 if all(row["value"] is not None for row in table) else 1


if __name__ == "__main__":
    sys.exit(main())
