"""The build that is tested: the last argument of the test's program, which unittest does not see."""
import os
import re
import subprocess
import sys
from pathlib import Path

BUILD = Path(sys.argv.pop()).resolve()
SOURCE = Path(__file__).resolve().parents[2]


def cached(entry):
    """An entry of the build's cache."""
    found = re.search(rf"^{entry}:\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE)
    return found.group(1) if found else ""


def output(*command, folder=None, umask=-1, **environment):
    """What a program that must succeed writes, errors and warnings included."""
    done = subprocess.run([str(word) for word in command], cwd=folder, umask=umask, env={**os.environ, **environment},
                          text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}\n{done.stdout[-10_000:]}")
    return done.stdout
