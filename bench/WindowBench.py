#!/usr/bin/env python3
"""Start of the window, warm, on a virtual display: time to the first page's first frame, and resident memory then.

    bench/WindowBench.py BUILD [RUNS]

Prints JSON in the form of Google Benchmark's. The tweak runs already, as it does on a device.
"""
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

WARM_UP = 2  # starts that fill the page cache and are not counted


def start_display():
    read, write = os.pipe()
    display = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"],
                               pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as number:
        return display, ":" + number.readline().strip()


def measure(command, environment):
    """Milliseconds from just before the process is made, and megabytes."""
    environment["LUMORA_TRACE_START"] = str(time.clock_gettime_ns(time.CLOCK_MONOTONIC))
    with subprocess.Popen(command, env=environment, text=True, stderr=subprocess.PIPE) as window:
        for line in window.stderr:
            if line.startswith("first page "):
                window.kill()
                words = line.split()
                return float(words[2]), float(words[5])
    sys.exit("lumora-settings ended before its first page was drawn")


def main():
    build = os.path.abspath(sys.argv[1])
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 15
    folder = tempfile.mkdtemp(prefix="window-bench-")
    os.mkdir(folder + "/ports", 0o700)
    display, name = start_display()
    environment = {**{key: value for key, value in os.environ.items() if not key.startswith(("QT_", "QSG_"))},
                   "DISPLAY": name, "LUMORA_PORTS": folder + "/ports", "XDG_RUNTIME_DIR": folder}
    tweak = subprocess.Popen([build + "/bin/lumora-tweak", "--settings", folder + "/settings.plist"], env=environment,
                             text=True, stdout=subprocess.PIPE)
    try:
        if "ready" not in tweak.stdout.readline():
            sys.exit("lumora-tweak did not start")
        command = [build + "/bin/lumora-settings", "--root", build + "/root", "--light"]
        results = [measure(command, environment) for _ in range(WARM_UP + runs)][WARM_UP:]
    finally:
        tweak.terminate()
        tweak.wait()
        display.terminate()
        display.wait()
        shutil.rmtree(folder, ignore_errors=True)
    milliseconds, megabytes = zip(*results)
    json.dump({"context": {"runs": runs, "milliseconds": milliseconds, "megabytes": megabytes}, "benchmarks": [
        {"name": "FirstFrame", "real_time": statistics.median(milliseconds), "time_unit": "ms"},
        {"name": "ResidentMemory", "value": statistics.median(megabytes)},
    ]}, sys.stdout, indent=2)
    print()


if __name__ == "__main__":
    main()
