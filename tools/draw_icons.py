#!/usr/bin/env python3
"""Draws a bundle's row icons into its folder: NAME.png at 29 pixels and NAME@2x.png at 58.

    tools/draw_icons.py resources
    tools/draw_icons.py plugins/Weather

Each icon is a function from a point (in units of the icon's side, y downwards) to the shade of its glyph there, put on
a rounded square. Every pixel is sampled 8 by 8 times. Needs nothing but Python.
"""
import sys
from pathlib import Path

from png import RGBA, png

SIDE = 29
SAMPLES = 8


def box(x, y, left, top, right, bottom, radius):
    """True inside a rounded rectangle."""
    cx = min(max(x, left + radius), right - radius)
    cy = min(max(y, top + radius), bottom - radius)
    return left <= x <= right and top <= y <= bottom and (x - cx) ** 2 + (y - cy) ** 2 <= radius ** 2


def near(x, y, ax, ay, bx, by, width):
    """True within half a width of the line from a to b."""
    dx, dy = bx - ax, by - ay
    t = min(max(((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy), 0), 1)
    return (x - ax - t * dx) ** 2 + (y - ay - t * dy) ** 2 <= (width / 2) ** 2


def bubble(x, y):
    """A speech bubble with three dots: a word with the maker."""
    dots = any((x - cx) ** 2 + (y - 0.44) ** 2 <= 0.052 ** 2 for cx in (0.335, 0.5, 0.665))
    tail = 0.30 <= x <= 0.52 and 0.6 <= y <= 0.83 - (x - 0.30) * 1.05
    return (box(x, y, 0.17, 0.21, 0.83, 0.67, 0.17) or tail) and not dots


def envelope(x, y):
    """An envelope with its flap closed."""
    body = box(x, y, 0.15, 0.25, 0.85, 0.75, 0.07)
    flap = near(x, y, 0.15, 0.29, 0.5, 0.555, 0.055) or near(x, y, 0.85, 0.29, 0.5, 0.555, 0.055)
    return body and not flap


def ring(x, y, cx, cy, outer, inner):
    return inner ** 2 <= (x - cx) ** 2 + (y - cy) ** 2 <= outer ** 2


def thermometer(x, y):
    """A thermometer, half full."""
    glass = box(x, y, 0.41, 0.15, 0.59, 0.75, 0.09) or ring(x, y, 0.5, 0.70, 0.15, 0)
    empty = box(x, y, 0.455, 0.195, 0.545, 0.42, 0.045)
    return glass and not empty


def sun(x, y):
    """A sun with eight rays."""
    rays = any(near(x, y, 0.5 + 0.25 * dx, 0.5 + 0.25 * dy, 0.5 + 0.35 * dx, 0.5 + 0.35 * dy, 0.055)
               for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1), (0.71, 0.71), (-0.71, 0.71), (0.71, -0.71), (-0.71, -0.71)))
    return ring(x, y, 0.5, 0.5, 0.175, 0) or rays


def hours(x, y):
    """A clock at three."""
    return (ring(x, y, 0.5, 0.5, 0.34, 0.275) or near(x, y, 0.5, 0.5, 0.5, 0.31, 0.06)
            or near(x, y, 0.5, 0.5, 0.64, 0.5, 0.06))


def page(x, y):
    """A written page."""
    lines = any(near(x, y, 0.36, cy, end, cy, 0.05) for cy, end in ((0.36, 0.64), (0.5, 0.64), (0.64, 0.54)))
    return box(x, y, 0.26, 0.17, 0.74, 0.83, 0.06) and not lines


def letter(x, y):
    """A capital A."""
    return (near(x, y, 0.27, 0.77, 0.5, 0.23, 0.085) or near(x, y, 0.73, 0.77, 0.5, 0.23, 0.085)
            or near(x, y, 0.36, 0.59, 0.64, 0.59, 0.075))


def lock(x, y):
    """A closed padlock."""
    bow = ring(x, y, 0.5, 0.40, 0.2, 0.135) and y < 0.40 or (0.135 <= abs(x - 0.5) <= 0.2 and 0.40 <= y <= 0.5)
    return box(x, y, 0.25, 0.46, 0.75, 0.81, 0.06) and not ring(x, y, 0.5, 0.63, 0.055, 0) or bow


# The icons of each bundle, by the name of its folder: glyph and colour of the plate.
ICONS = {
    "resources": {"twitter": (bubble, (0x2F, 0xA8, 0x8F)), "mail": (envelope, (0x1F, 0x7A, 0xF0))},
    "Weather": {"thermometer": (thermometer, (0xE5, 0x5B, 0x4D)), "sun": (sun, (0xF2, 0xA5, 0x1E)),
                "hours": (hours, (0x3B, 0x8F, 0xD9))},
    "Notes": {"page": (page, (0xE0, 0xA8, 0x1F)), "letter": (letter, (0x6B, 0x6F, 0x7A)),
              "lock": (lock, (0x3F, 0x9E, 0x58))},
    "template": {"icon": (sun, (0x7A, 0x5B, 0xD6))},
}


def pixel(glyph, colour, column, row, side):
    plate = white = 0
    for i in range(SAMPLES):
        for j in range(SAMPLES):
            x = (column + (i + 0.5) / SAMPLES) / side
            y = (row + (j + 0.5) / SAMPLES) / side
            if box(x, y, 0, 0, 1, 1, 0.225):
                plate += 1
                white += glyph(x, y)
    if plate == 0:
        return bytes(4)
    share = white / plate
    return bytes([round(c + (255 - c) * share) for c in colour] + [round(255 * plate / SAMPLES ** 2)])


def main():
    folder = Path(sys.argv[1]).resolve() if len(sys.argv) == 2 else None
    if not folder or not folder.is_dir() or folder.name not in ICONS:
        sys.exit("usage: draw_icons.py FOLDER, where the folder is one of " + ", ".join(ICONS))
    for name, (glyph, colour) in ICONS[folder.name].items():
        for suffix, side in (("", SIDE), ("@2x", 2 * SIDE)):
            rows = [b"\0" + b"".join(pixel(glyph, colour, x, y, side) for x in range(side)) for y in range(side)]
            (folder / f"{name}{suffix}.png").write_bytes(png(side, side, RGBA, rows))


if __name__ == "__main__":
    main()
