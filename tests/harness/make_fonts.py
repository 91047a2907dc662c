#!/usr/bin/python3
"""Makes small fonts for tests, and a fontconfig file by which only they are installed.

    make_fonts.py FOLDER KIND…

FOLDER gets fonts.conf, fonts/ and cache/. In each font every character is a box, by whose height the fonts are told
apart: in thousandths of the size. The kinds:

    many=COUNT    families "Many 0000" and so on, one font each, "Many0000-Regular"
    twins         two files with one PostScript name, "Twin-Regular": one box is 300 high, the other 700
    cousins       the families "Cousin One" and "Cousin Two", a font each, both "Cousin-Regular"
    cases         families "beta", "Alpha", "BETA" and "alpha", fonts of the same names; so are their files
    nameless      "Name Less" with the full name "Name Less Wide" and no PostScript name
    halfnameless  "Foo" and, in the same family, "Foo Bold", neither with a PostScript name
    twowords      "Two Words" by family and full name, no PostScript name
    hyphens=COUNT families "Real Name 0000" and so on, one font each: "Real-Name-0000", and "Real Name 0000 Regular" in full
    variable      "Vary" by weight, its box 200 to 800 high, with the instances Thin (200), Regular (500), Black (800)
    instance      "Vary-Regular" once more, as a file of its own
    uninstanced   "Plain Vary", variable with no instance named
    collection    one file: "CollectLow-Regular" (200), "CollectHigh-Regular" (900)
    arabic        a font with an Arabic full name, no PostScript name, and Arabic letters
    dumb          "Dumb-Regular", which has none of the letters of its own name
    tall          "Tall-Regular", whose box is 5000 high
"""
import os
import sys

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTCollection
from fontTools.ttLib.tables.TupleVariation import TupleVariation

LATIN = [chr(code) for code in range(0x20, 0x7F)] + ["…"]
ARABIC = [chr(code) for code in range(0x0621, 0x064B)] + [" "]


def box(height, width=400):
    pen = TTGlyphPen(None)
    for place in ((50, 0), (50, height), (width + 50, height), (width + 50, 0)):
        (pen.lineTo if pen.points else pen.moveTo)(place)
    pen.closePath()
    return pen.glyph()


def font(family, height, postscript=None, full=None, characters=LATIN, style="Regular", axes=None, instances=None):
    builder = FontBuilder(1000, isTTF=True)
    names = {ord(character): f"u{ord(character):04X}" for character in characters}
    order = [".notdef", *names.values()]
    empty = TTGlyphPen(None).glyph()
    builder.setupGlyphOrder(order)
    builder.setupCharacterMap(names)
    builder.setupGlyf({name: empty if name in (".notdef", "u0020") else box(height) for name in order})
    builder.setupHorizontalMetrics({name: (500, 50) for name in order})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    texts = {"familyName": family, "styleName": style, "fullName": full or f"{family} {style}"}
    if postscript:
        texts["psName"] = postscript
    builder.setupNameTable(texts)
    builder.setupOS2(sTypoAscender=800, sTypoDescender=-200, usWinAscent=800, usWinDescent=200)
    builder.setupPost()
    if axes:
        builder.setupFvar(axes, instances or [])
        grow = {axes[0][0]: (0, 1, 1)}
        shrink = {axes[0][0]: (-1, -1, 0)}
        up = [(0, 0), (0, 300), (0, 300), (0, 0)] + 4 * [(0, 0)]
        down = [(x, -y) for x, y in up]
        builder.setupGvar({name: [TupleVariation(grow, up), TupleVariation(shrink, down)]
                           for name in order if name not in (".notdef", "u0020")})
    return builder.font


WEIGHT = [("wght", 100, 400, 900, "Weight")]
INSTANCES = [{"location": {"wght": at}, "stylename": name, "postscriptfontname": f"Vary-{name}"}
             for name, at in (("Thin", 100), ("Regular", 400), ("Black", 900))]
# The arguments of font(), by the file's name.
SINGLE_FONTS = {
    "twins": {"twin1": ("Twin", 300, "Twin-Regular"), "twin2": ("Twin", 700, "Twin-Regular")},
    "cousins": {"cousin1": ("Cousin One", 300, "Cousin-Regular"), "cousin2": ("Cousin Two", 700, "Cousin-Regular")},
    "cases": {name: (name, 700, name) for name in ("beta", "Alpha", "BETA", "alpha")},
    "nameless": {"nameless": ("Name Less", 700, None, "Name Less Wide")},
    "halfnameless": {"foo": ("Foo", 300, None, "Foo"), "foobold": ("Foo", 700, None, "Foo Bold", LATIN, "Bold")},
    "twowords": {"twowords": ("Two Words", 700, None, "Two Words")},
    "variable": {"vary": ("Vary", 500, "Vary-Regular", None, LATIN, "Regular", WEIGHT, INSTANCES)},
    "instance": {"regular": ("Vary", 500, "Vary-Regular")},
    "uninstanced": {"plainvary": ("Plain Vary", 500, "PlainVary-Regular", None, LATIN, "Regular", WEIGHT)},
    "arabic": {"arabic": ("خط عربي", 700, None, "خط عربي", ARABIC)},
    "dumb": {"dumb": ("Dumb", 700, "Dumb-Regular", None, "x")},
    "tall": {"tall": ("Tall", 5000, "Tall-Regular")},
}


def fonts_of(kind):
    """Files and what is in them."""
    kind, _, number = kind.partition("=")
    if kind == "many":
        for i in range(int(number)):
            yield f"many{i:04}.ttf", font(f"Many {i:04}", 700, f"Many{i:04}-Regular", characters="Many-Regular0123456789")
    elif kind == "hyphens":
        for i in range(int(number)):
            yield f"hyphens{i:04}.ttf", font(f"Real Name {i:04}", 700, f"Real-Name-{i:04}", characters="x")
    elif kind == "collection":
        collection = TTCollection()
        collection.fonts = [font("Collect Low", 200, "CollectLow-Regular"),
                            font("Collect High", 900, "CollectHigh-Regular")]
        yield "collection.ttc", collection
    elif kind in SINGLE_FONTS:
        for file, arguments in SINGLE_FONTS[kind].items():
            yield file + ".ttf", font(*arguments)
    else:
        sys.exit(f"make_fonts.py: no fonts are of the kind {kind}")


def make_fonts(folder, *kinds):
    os.makedirs(os.path.join(folder, "fonts"), exist_ok=True)
    with open(os.path.join(folder, "fonts.conf"), "w", encoding="utf-8") as config:
        config.write('<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "urn:fontconfig:fonts.dtd"><fontconfig>'
                     f"<dir>{folder}/fonts</dir><cachedir>{folder}/cache</cachedir></fontconfig>")
    for kind in kinds:
        for file, content in fonts_of(kind):
            content.save(os.path.join(folder, "fonts", file))


if __name__ == "__main__":
    make_fonts(*sys.argv[1:])
