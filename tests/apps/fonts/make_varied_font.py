# SPDX-License-Identifier: Apache-2.0
"""Makes Varied.ttf: a font of boxes whose width depends on the weight axis and whose height depends on the width axis.

    make_varied_font.py FILE.ttf        needs Debian's python3-fonttools
"""
import sys

from fontTools.designspaceLib import AxisDescriptor, DesignSpaceDocument, SourceDescriptor
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.varLib import build

ADVANCE = 1000  # font units; equal to the units per em


def box(width, height, lean=0):
    pen = TTGlyphPen(None)
    pen.moveTo((100, 0))
    pen.lineTo((100 + lean, height))
    pen.lineTo((100 + width + lean, height))
    pen.lineTo((100 + width, 0))
    pen.closePath()
    return pen.glyph()


def master(width, height, lean, advance):
    font = FontBuilder(ADVANCE, isTTF=True)
    font.setupGlyphOrder([".notdef", "space", "A"])
    font.setupCharacterMap({32: "space", 65: "A"})
    font.setupGlyf({".notdef": box(100, 100), "space": TTGlyphPen(None).glyph(), "A": box(width, height, lean)})
    font.setupHorizontalMetrics({".notdef": (500, 100), "space": (500, 0), "A": (advance, 100)})
    font.setupHorizontalHeader(ascent=800, descent=-200)
    font.setupNameTable({"familyName": "Varied Boxes", "styleName": "Regular", "psName": "VariedBoxes"})
    font.setupOS2(sTypoAscender=800, usWinAscent=800, usWinDescent=200, usWeightClass=400)
    font.setupPost()
    return font.font


def main():
    axes = [("wght", 100, 400, 900), ("wdth", 50, 100, 200), ("slnt", -20, 0, 0), ("opsz", 8, 8, 100)]
    document = DesignSpaceDocument()
    for tag, least, default, most in axes:
        axis = AxisDescriptor()
        axis.tag, axis.name, axis.minimum, axis.default, axis.maximum = tag, tag, least, default, most
        document.addAxis(axis)
    # Location on the axes; width, height and lean of the box there; advance.
    places = [({}, 400, 400, 0, 1000), ({"wght": 100}, 100, 400, 0, 700), ({"wght": 900}, 900, 400, 0, 1500),
              ({"wdth": 50}, 400, 200, 0, 1000), ({"wdth": 200}, 400, 800, 0, 1000),
              ({"slnt": -20}, 400, 400, 200, 1000), ({"opsz": 100}, 400, 40, 0, 1000)]
    for location, width, height, lean, advance in places:
        source = SourceDescriptor()
        source.font = master(width, height, lean, advance)
        source.location = {tag: location.get(tag, default) for tag, _, default, _ in axes}
        document.addSource(source)
    font, _, _ = build(document)
    font["head"].created = font["head"].modified = 0
    font.recalcTimestamp = False
    font.save(sys.argv[1])


main()
