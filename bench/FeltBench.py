#!/usr/bin/python3
"""What a person feels: from the event at the display server to the changed pixels on the screen, in the real window.

    PYTHONPATH=tests bench/FeltBench.py BUILD [--times N] [--peers]

Prints JSON in the form of Google Benchmark's. Drawing is done in software, as by ./run. Some of it is measured again on
a phone's screen, with three pixels to a point, and some where each program has a fifth of a processor. Peers are asked
for what they have as well: a page that opens, and a switch.
"""
import argparse
import contextlib
import itertools
import json
import random
import shutil
import statistics
import subprocess
import sys
import time

from pathlib import Path

from harness.client import Client
from harness.display import HEIGHT, WIDTH
from harness.make_fonts import make_fonts
from harness.waiting import LONG_ENOUGH
from stage import LOOK, Stage, WeakCore, resident_megabytes

BAR = 52
PAGE = (0, BAR, WIDTH, HEIGHT - BAR)
CELL = "#ffffff"
SWITCH = (332, 120, 51, 20)  # "Enable Lumora", on the root page: its middle and size
LINK = (100, 164)  # "Apps", beneath it
BACK = (40, 25)
RIGHT_OF_ROWS = (WIDTH - 8, 121)  # the page's ground, unless another page's first row slides in over it
FIELD = (20, BAR + 75 + 20, WIDTH - 40, HEIGHT - BAR - 75 - 60 - 90)
ROUND = 36  # moves of a dragging finger, after which it comes to the same places again
SCREEN = (20, 225, WIDTH, 60)  # where the lock screen has its subtitle
CARD = (40, 540, WIDTH, 100)  # where an App View draws
RING = 16  # half the side of the square that holds the crosshair
KNOB = (567, 373)  # of the time's font size, beside the lock screen
CLOCK = (930, 155, 180, 75)  # there
SCREENS_EDGE = 430  # the width of the lock screen's window
GLASS = (60, 700, 40, 40)  # free of keys, under the passcode's
LISTED = (60, 120, 200, 600)  # the names in a list of cells
MANY_FONTS, MANY_APPLICATIONS = 300, 10_000
SWIPES = 30  # which lead to the last font
HELD = 0.05  # seconds for which a peer is pressed; some hear of nothing shorter
# Of a peer: how it begins at its first page, a row that leads to a page, where that comes, and what can be switched there, one after the other.
PEERS = {
    "Systemsettings": (["systemsettings"], (80, 126), (280, 0, 600, 600), [(271, 97), (271, 68)]),
    "PhoshMobileSettings": (["phosh-mobile-settings"], (80, 190), (300, 60, 270, 200), [(545, 135)]),
    "GnomeControlCenter": (["gnome-control-center", "network"], (130, 306), (300, 60, 600, 500), [(866, 144)]),
}


def pause():
    """The next event comes at no particular moment of a frame."""
    time.sleep(random.uniform(0.02, 0.06))


def open_window(stage, at):
    stage.when(lambda: stage.pixel(*at) == CELL)
    stage.settle(*PAGE)


def switched(stage, x, y, width, height):
    """From letting go of a switch to the first change of its picture. What the press changed is drawn by then."""
    around = (x - width // 2, y - height // 2, width, height)
    stage.press(x, y)
    stage.settle(*around)
    pause()
    before = stage.area(*around)
    let_go = stage.release()
    seconds = stage.when(lambda: stage.area(*around) != before) - let_go
    stage.settle(*around)
    return seconds


def tap_switch(stage, times):
    with stage.settings():
        open_window(stage, LINK)
        for _ in range(times):
            yield switched(stage, *SWITCH)


def push_page(stage):
    """From letting go of a link to the first row of its page coming into view, and to the page at rest."""
    pause()
    stage.press(*LINK)
    let_go = stage.release()
    coming = stage.when(lambda: stage.pixel(*RIGHT_OF_ROWS) == CELL)
    return coming - let_go, stage.settle(*PAGE) - let_go


def open_page(stage, times):
    """The page asks the tweak and waits for the answer."""
    for _ in range(times):
        with stage.settings():
            open_window(stage, LINK)
            yield push_page(stage)


def open_page_again(stage, times):
    with stage.settings():
        open_window(stage, LINK)
        for _ in range(times + 1):
            yield push_page(stage)
            stage.press(*BACK)
            stage.release()
            stage.settle(*PAGE)


def drag(stage, times, interval=None):
    """From each move of a finger to the crosshair at its place, or at a later one. A move comes every interval seconds,
    wherever the crosshair is by then, or else when it has come to the last one's place."""
    left, top, width, height = FIELD
    path = [(left + 30 + 48 * (step % 6), top + 30 + 48 * (step % ROUND // 6)) for step in range(times)]
    with stage.settings("--page", "ColorPickerController"):
        stage.when(lambda: stage.pixel(left + width // 2, top + height - 5) != "#000000")
        stage.settle(*PAGE)
        stage.press(left + 200, top + 400)  # off the path
        stage.settle(*PAGE)
        squares = {place: (place[0] - RING, place[1] - RING, 2 * RING, 2 * RING) for place in path}
        empty = {place: stage.area(*square) for place, square in squares.items()}
        under_way = []

        def drawn():
            """How many of the moves under way are on the screen, or overtaken by one that is."""
            return next((count for count in range(len(under_way), 0, -1)
                         if stage.area(*squares[under_way[count - 1][0]]) != empty[under_way[count - 1][0]]), 0)

        def arrivals(until):
            """Looks until then; how long each move took that has come to the screen meanwhile."""
            while not until():
                count, now = drawn(), time.monotonic()
                if under_way and now > under_way[0][1] + LONG_ENOUGH:
                    raise RuntimeError("never came to the screen")
                yield from (now - moved for _, moved in under_way[:count])
                del under_way[:count]
                time.sleep(LOOK)

        began = time.monotonic()
        for step, place in enumerate(path):
            if interval:
                yield from arrivals(lambda: time.monotonic() >= began + step * interval)
            else:
                yield from arrivals(lambda: not under_way)
                pause()
            if len(under_way) >= ROUND - 1:  # its place is that of a move which is not told apart from it
                raise RuntimeError("the crosshair is a whole round of the path behind")
            under_way.append((place, stage.move(*place)))
        yield from arrivals(lambda: not under_way)
        stage.release()


def processor_time(process):
    """Of its main thread, which draws, in seconds."""
    return int(Path(f"/proc/{process.pid}/schedstat").read_text(encoding="ascii").split()[0]) / 1e9


def await_rows(stage):
    """Until a page has a list of cells, and whatever comes after its first ones."""
    left, top, width, height = LISTED
    stage.when(lambda: len({stage.area(left, line, width, 1) for line in range(top, top + height)}) > 100)
    stage.settle(*LISTED, still=1)


def scroll(stage, page, times):
    """From each move of a finger to the list moving under it, and the processor time that this takes."""
    def grasp():
        """Whether the list follows the finger, as it does once it has all rows."""
        before = stage.area(*LISTED)
        stage.press(200, 650)
        for y in range(645, 580, -5):  # after the first of which it is no tap
            stage.move(200, y)
            pause()
        return stage.area(*LISTED) != before

    with stage.settings("--page", page) as window:
        await_rows(stage)
        while not grasp():
            stage.release()
            stage.settle(*LISTED, still=1)
        for step in range(times):
            stage.settle(*LISTED, still=0.1)
            pause()
            before, spent = stage.area(*LISTED), processor_time(window)
            moved = stage.move(200, 570 - 9 * min(step % 80, 80 - step % 80))
            felt = stage.when(lambda: stage.area(*LISTED) != before) - moved
            stage.settle(*LISTED, still=0.1)
            yield felt, processor_time(window) - spent


def memory_of_swipes(stage, page):
    """In megabytes, of the window whose list a finger has swiped through."""
    with stage.settings("--page", page) as window:
        await_rows(stage)
        for _ in range(SWIPES):
            stage.press(200, 650)
            for y in range(645, 100, -15):
                stage.move(200, y)
                pause()
            stage.release()
            stage.settle(*LISTED, still=0.1)
        return resident_megabytes(window)


def add_fonts_and_applications(stage):
    """As many as nobody has."""
    shared = Path(stage.folder, ".local/share")
    make_fonts(shared, f"many={MANY_FONTS}")
    applications = shared / "applications"
    applications.mkdir()
    for number in range(MANY_APPLICATIONS):
        (applications / f"many.{number}.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Application {number}\nExec=true\n", encoding="ascii")


def waking(stage):
    """Who may change the settings of a lock screen that stays awake."""
    client = Client(stage.environment["LUMORA_PORTS"])
    client.set("kTweakEnabled", True)
    client.set("kSleepTime", 3600)
    return client


def change_face(stage, times, area, key, values, *options):
    """From the tweak's answer to the first change on the lock screen, which another program has told the tweak of."""
    client = waking(stage)
    client.set("kAppViewsEnabled", ["org.lumora.plugins.weather"])
    with stage.lockscreen("--time", "18:36", *options):
        stage.when(lambda: stage.pixel(*area[:2]) != "#000000")
        stage.settle(*area, still=1)
        for value in itertools.islice(values, times):
            pause()
            before = stage.area(*area)
            client.set(key, value)
            answered = time.monotonic()
            yield stage.when(lambda: stage.area(*area) != before) - answered
            stage.settle(*area)


def drag_slider(stage, times):
    """From each move of a held knob to the changed clock beside the page."""
    with stage.settings("--page", "LSDateViewSettings", size="1240x844"):
        stage.when(lambda: len(set(stage.area(*CLOCK)[::4])) > 100)
        stage.settle(0, 0, stage.width, HEIGHT)
        stage.press(*KNOB)
        for step in range(times):
            pause()
            before = stage.area(*CLOCK)
            moved = stage.move(KNOB[0] + (24, 12, -12, -24)[step % 4], KNOB[1])
            yield stage.when(lambda: stage.area(*CLOCK) != before) - moved
            stage.settle(*CLOCK, still=0.05)
        stage.release()


def drag_color_of_face(stage, times):
    """Between one picture and the next of a lock screen of its own, while its colour is dragged."""
    waking(stage).set("kLSBlurColorEnabled", True)
    passcode = stage.lockscreen_command("--surface", "P", "--time", "18:36")
    with stage.settings("--page", "ColorPickerController", "--columns", "1", size="900x844"):
        stage.settle(0, 0, stage.width, HEIGHT)
        left, top = SCREENS_EDGE + 40, FIELD[1] + 60
        page = stage.area(*GLASS)
        with subprocess.Popen(passcode, env=stage.environment, stderr=subprocess.DEVNULL) as face:
            try:
                stage.when(lambda: stage.area(*GLASS) != page)
                stage.settle(*GLASS, still=1)
                stage.press(left, top)
                stage.settle(*GLASS)
                began, step, shown, since = time.monotonic(), 0, stage.area(*GLASS), None
                while step < times:
                    if (now := time.monotonic()) >= began + step / 120:
                        step += 1
                        stage.move(left + 8 * (step % 32), top + 24 * (step // 32 % 10))
                    if shown != (shown := stage.area(*GLASS)):
                        if since:
                            yield now - since
                        since = now
                    time.sleep(LOOK)
                stage.release()
            finally:
                face.kill()


@contextlib.contextmanager
def peer_at_rest(stage, command, page):
    with stage.program(*command):
        stage.when(lambda: len(set(stage.area(*page)[::4])) > 1)
        stage.settle(0, 0, stage.width, stage.height, still=1)
        yield


def tap_peer(stage, place):
    stage.press(*place)
    time.sleep(HELD)
    return stage.release()


def open_page_of_peer(stage, command, row, page, times):
    """From letting go of a row to the first change where its page comes."""
    for _ in range(times):
        with peer_at_rest(stage, command, page):
            pause()
            before = stage.area(*page)
            let_go = tap_peer(stage, row)
            yield stage.when(lambda: stage.area(*page) != before) - let_go


def tap_switch_of_peer(stage, command, row, page, switches, times):
    with peer_at_rest(stage, command, page):
        tap_peer(stage, row)
        stage.settle(*page, still=2)
        for x, y in itertools.islice(itertools.cycle(switches), times):
            yield switched(stage, x, y, 30, 20)


def peer_entries(stage, times):
    for name, (command, row, page, switches) in PEERS.items():
        if not shutil.which(command[0]):
            print(f"{command[0]} is not installed", file=sys.stderr)
            continue
        yield from entries("OpenPage" + name, open_page_of_peer(stage, command, row, page, times // 3))
        yield from entries("TapSwitch" + name, tap_switch_of_peer(stage, command, row, page, switches, times))


def entries(name, samples):
    """The median, and the 95th percentile."""
    milliseconds = [1000 * seconds for seconds in samples]
    return [{"name": name, "real_time": statistics.median(milliseconds), "time_unit": "ms"},
            {"name": name + "95", "real_time": statistics.quantiles(milliseconds, n=20)[-1], "time_unit": "ms"}]


def scrolled_entries(name, samples):
    felt, processor = zip(*samples)
    return entries(name, felt) + entries(name + "Processor", processor)


def page_entries(name, samples):
    coming, at_rest = zip(*samples)
    return entries(name, coming) + entries(name + "AtRest", at_rest)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("--times", type=int, default=60)
    parser.add_argument("--peers", action="store_true", help="also " + ", ".join(command[0] for command, *_ in PEERS.values()))
    arguments = parser.parse_args()
    times = arguments.times
    with Stage(arguments.build) as stage:
        benchmarks = [
            *entries("TapSwitch", tap_switch(stage, times)),
            *page_entries("OpenPage", open_page(stage, times // 3)),
            *page_entries("OpenPageAgain", open_page_again(stage, times // 3)),
            *entries("MoveCrosshair", drag(stage, 3 * times)),
            *entries("DragCrosshair", drag(stage, 10 * times, 1 / 120)),
            *entries("ChangeFace", change_face(stage, times, SCREEN, "kLSDateSubtitle",
                                               (f"Change {step}" for step in itertools.count()))),
            *entries("ChangeAppView", change_face(stage, times, CARD, "org.lumora.plugins.weather.units",
                                                  itertools.cycle(["kelvin", "celsius"]), "--surface", "V")),
            *entries("DragSlider", drag_slider(stage, 2 * times)),
            *entries("DragColorOfFace", drag_color_of_face(stage, 10 * times)),
        ]
        if arguments.peers:
            benchmarks += peer_entries(stage, times)
    with Stage(arguments.build, scale=3) as stage:
        benchmarks += page_entries("OpenPageAtThree", open_page(stage, times // 3))
        benchmarks += entries("MoveCrosshairAtThree", drag(stage, 3 * times))
        add_fonts_and_applications(stage)
        benchmarks += scrolled_entries("ScrollFontsAtThree", scroll(stage, "FontViewController", times))
        benchmarks += scrolled_entries("ScrollApplicationsAtThree", scroll(stage, "AppsListController", times))
        benchmarks += [{"name": name, "value": memory_of_swipes(stage, page)} for name, page in
                       (("FontsAtThreeMemory", "FontViewController"), ("ApplicationsAtThreeMemory", "AppsListController"))]
    if why_not := WeakCore.why_not():
        print(f"nothing is measured on a weak core: {why_not}", file=sys.stderr)
    else:
        with Stage(arguments.build, weak=True) as stage:
            benchmarks += entries("TapSwitchOnWeakCore", tap_switch(stage, times))
            benchmarks += page_entries("OpenPageOnWeakCore", open_page(stage, times // 3))
            benchmarks += entries("MoveCrosshairOnWeakCore", drag(stage, 3 * times))
            benchmarks += entries("DragSliderOnWeakCore", drag_slider(stage, 2 * times))
    json.dump({"context": {"times": times}, "benchmarks": benchmarks}, sys.stdout, indent=2)
    print()


if __name__ == "__main__":
    main()
