"""How often a process wakes up while nothing happens."""
import contextlib
import os
import re
import time
from pathlib import Path


def counted(process):
    """Name of each thread to how often it has gone to sleep so far: as often as it has been woken."""
    found = {}
    for thread in os.listdir(f"/proc/{process.pid}/task"):
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):
            folder = Path(f"/proc/{process.pid}/task", thread)
            switches = re.search(r"^voluntary_ctxt_switches:\s*(\d+)", (folder / "status").read_text(), re.MULTILINE)
            found[thread, (folder / "comm").read_text().strip()] = int(switches[1])
    return found


def wakeups(process, seconds):
    """Name of each thread that woke up meanwhile to how often."""
    before = counted(process)
    time.sleep(seconds)
    return {name: count - before.get((thread, name), 0) for (thread, name), count in counted(process).items()
            if count != before.get((thread, name), 0)}
