#!/usr/bin/env python3
"""Draws the field of the colour control: hue from the left to the right, saturation from the bottom to the top, all at
full brightness.

    tools/draw_colormap.py resources/colormap.png

The colour of a pixel is that of its centre. One picture serves every screen: between its pixels colours hardly differ,
so that it can be stretched. Needs nothing but Python.
"""
import colorsys
import sys
from pathlib import Path

from png import RGB, png

WIDTH = 720  # a multiple of 6, so that the hues where a component turns stand between two pixels
HEIGHT = 360


def row(y):
    saturation = 1 - (y + 0.5) / HEIGHT
    colours = (colorsys.hsv_to_rgb((x + 0.5) / WIDTH, saturation, 1) for x in range(WIDTH))
    return bytes(round(255 * component) for colour in colours for component in colour)


def filtered(pixels):
    """Each component less that of the pixel before: few different numbers, which pack well."""
    return b"\1" + bytes((after - before) & 0xFF for before, after in zip(bytes(3) + pixels, pixels))


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: draw_colormap.py FILE.png")
    Path(sys.argv[1]).write_bytes(png(WIDTH, HEIGHT, RGB, (filtered(row(y)) for y in range(HEIGHT))))


if __name__ == "__main__":
    main()
