#!/usr/bin/python3
"""Made Inter.otc, by which the pictures of the documentation are drawn, of the files of the package fonts-inter 3.19.

    keep_inter.py FOLDER

Later versions draw other letters, and break lines elsewhere. What is kept is what the pages show: the two faces of their
texts with the letters of western languages, the others with those of their own names.
"""
import sys
from pathlib import Path

from fontTools import subset
from fontTools.ttLib import TTCollection

TEXTS = [*range(0x20, 0x7F), *range(0xA0, 0x100), *range(0x2010, 0x203B)]
NAMES = [ord(letter) for letter in set("-InterDisplayBlackBoldExtraItalicLightMediumRegularSemiThin")]

kept = TTCollection()
for file in sorted(Path(sys.argv[1]).glob("*.otf")):
    options = subset.Options(layout_features=["kern", "calt", "ccmp", "locl", "mark", "mkmk"], name_IDs=["*"],
                             notdef_outline=True)
    font = subset.load_font(file, options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=TEXTS if file.stem in ("Inter-Regular", "Inter-SemiBold") else NAMES)
    subsetter.subset(font)
    kept.fonts.append(font)
kept.save(Path(__file__).with_name("Inter.otc"))
