#!/usr/bin/env python3
"""Prints what clang-tidy reads so that it sees each source file of ours once: the build puts several into one.

    tidy_units.py BUILD_FOLDER FILE…

The analyser looks into source files that another one includes only where that one's name begins with "UnifiedSource", so
it is given such a copy. A file that is in no target, such as a template, is read as if it were in that of its neighbours.
"""
import json
import os
import re
import shutil
import sys

build, ours = sys.argv[1], {os.path.realpath(file) for file in sys.argv[2:]}
INCLUDED = re.compile(r'^#include "(.*)"$', re.MULTILINE)

seen = set()
with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
    units = {os.path.realpath(entry["file"]) for entry in json.load(file)}
for unit in sorted(units):
    files = {unit}
    if os.path.basename(os.path.dirname(unit)) == "Unity":
        with open(unit, encoding="utf-8") as file:
            files = {os.path.realpath(included) for included in INCLUDED.findall(file.read())}
    if files & ours:
        seen |= files
        if unit not in files:
            folder, name = os.path.split(unit)
            unit = shutil.copy(unit, os.path.join(folder, name.replace("unity", "UnifiedSource")))
        print(unit)
for file in sorted(ours - seen):
    print(file)
