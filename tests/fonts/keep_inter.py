#!/usr/bin/python3
"""Made the fonts by which the pictures of the documentation are drawn, of the files of the package fonts-inter.

    keep_inter.py FOLDER                 Inter.otc, for the pages; of version 3.19
    keep_inter.py FOLDER --lockscreen    InterLockscreen.otc; of version 4.0~beta7, the first with Inter Display

Other versions draw other letters, and break lines elsewhere. What is kept is what is shown: the faces of texts with the
letters of western languages, and on the pages, which list all, the others with those of their own names.
"""
import sys
from pathlib import Path

from fontTools import subset
from fontTools.ttLib import TTCollection

TEXTS = [*range(0x20, 0x7F), *range(0xA0, 0x100), *range(0x2010, 0x203B)]
NAMES = [ord(letter) for letter in set("-InterDisplayBlackBoldExtraItalicLightMediumRegularSemiThin")]

LOCKSCREEN = ["Inter-Light", "Inter-Regular", "Inter-Medium", "Inter-SemiBold",
              "InterDisplay-Light", "InterDisplay-SemiBold"]

lockscreen = "--lockscreen" in sys.argv
kept = TTCollection()
for file in sorted(Path(sys.argv[1]).glob("*.otf")):
    if lockscreen and file.stem not in LOCKSCREEN:
        continue
    options = subset.Options(layout_features=["kern", "calt", "ccmp", "locl", "mark", "mkmk"], name_IDs=["*"],
                             notdef_outline=True)
    font = subset.load_font(file, options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=TEXTS if lockscreen or file.stem in ("Inter-Regular", "Inter-SemiBold") else NAMES)
    subsetter.subset(font)
    kept.fonts.append(font)
kept.save(Path(__file__).with_name("InterLockscreen.otc" if lockscreen else "Inter.otc"))
