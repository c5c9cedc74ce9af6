#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes fonts of three letters: A is a square, B a triangle, C two bars. Needs python3-fonttools and python3-brotli.

    tiny_fonts.py header FILE.h     writes all fonts as base64 strings, for tests
    tiny_fonts.py documents FOLDER  writes drawings that embed such fonts
    tiny_fonts.py colours FOLDER    writes drawings that embed the colour font, one for each of its glyphs
    tiny_fonts.py drawings FOLDER   writes drawings that embed fonts whose glyphs are SVG drawings
    tiny_fonts.py varied FILE.ttf   writes the variable font; at weight 900, its letters advance by 2.1 em
"""
import base64
import gzip
import io
import os
import struct
import sys

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.t2CharStringPen import T2CharStringPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont
from fontTools.ttLib.tables.DefaultTable import DefaultTable
from fontTools.ttLib.tables.TupleVariation import TupleVariation

SHAPES = {
    "A": [[(100, 0), (100, 700), (800, 700), (800, 0)]],
    "B": [[(100, 0), (450, 700), (800, 0)]],
    "C": [[(100, 0), (100, 250), (800, 250), (800, 0)], [(100, 450), (100, 700), (800, 700), (800, 450)]],
}
STEP = 900


def draw(pen, contours):
    for contour in contours:
        pen.moveTo(contour[0])
        for point in contour[1:]:
            pen.lineTo(point)
        pen.closePath()


def make(letters="ABC", shapes=None, cubic=False, x_height=500, flavor=None, wider=None, parts=None, tables=None):
    """Makes a font with a glyph for each letter.

    @param shapes  for a letter, the letter of SHAPES whose outline it has; its own by default
    @param cubic   makes CFF outlines instead of TrueType ones
    @param wider   makes the font variable: units added to each letter's width at weight 900
    @param parts   further glyphs, without characters: for a name, the letter of SHAPES whose outline it has
    @param tables  further tables: their bytes by tag
    @return the font's bytes
    """
    shapes = {**(shapes or {}), **(parts or {})}
    order = [".notdef", "space"] + list(letters) + list(parts or {})
    builder = FontBuilder(1000, isTTF=not cubic)
    builder.setupGlyphOrder(order)
    builder.setupCharacterMap({32: "space", **{ord(letter): letter for letter in letters}})
    glyphs = {}
    for name in order:
        pen = T2CharStringPen(STEP, None) if cubic else TTGlyphPen(None)
        if shapes.get(name, name) in SHAPES:
            draw(pen, SHAPES[shapes.get(name, name)])
        glyphs[name] = pen.getCharString() if cubic else pen.glyph()
    if cubic:
        builder.setupCFF("OrvTiny", {"FullName": "Orv Tiny"}, glyphs, {})
    else:
        builder.setupGlyf(glyphs)
    builder.setupHorizontalMetrics({name: (STEP, 100) for name in order})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable({"familyName": "Orv Tiny", "styleName": "Regular", "psName": "OrvTiny"})
    builder.setupOS2(sTypoAscender=800, sTypoDescender=-200, usWinAscent=800, usWinDescent=200, sxHeight=x_height,
                     sCapHeight=700)
    builder.setupPost()
    if wider:
        # Only points right of the middle move. The four last deltas are those of the phantom points: the second one
        # changes the advance.
        builder.setupFvar([("wght", 400, 400, 900, "Weight")], [])
        variations = {}
        for name in letters:
            points = [point for contour in SHAPES[shapes.get(name, name)] for point in contour]
            change = [(wider if x > 450 else 0, 0) for x, _ in points]
            variations[name] = [TupleVariation({"wght": (0, 1, 1)}, change + [(0, 0), (wider, 0), (0, 0), (0, 0)])]
        builder.setupGvar(variations)
    font = builder.font
    for tag, data in (tables or {}).items():
        font[tag] = DefaultTable(tag)
        font[tag].data = data
    font["head"].created = font["head"].modified = 0
    font.recalcTimestamp = False
    font.flavor = flavor
    data = io.BytesIO()
    font.save(data)
    return data.getvalue()


def svg_table(*documents):
    """Makes the table "SVG ".

    @param documents  (first glyph, last glyph, text or bytes); A to C are the glyphs 2 to 4
    """
    records, data = b"", b""
    for first, last, document in documents:
        document = document if isinstance(document, bytes) else document.encode()
        at = 2 + 12 * len(documents) + len(data)
        records += struct.pack(">HHLL", first, last, at, len(document))
        data += document
    return struct.pack(">HLLH", 0, 10, 0, len(documents)) + records + data


def glyph_document(content, attributes=""):
    return f'<svg xmlns="http://www.w3.org/2000/svg"{attributes}>{content}</svg>'


DISC = '<circle cx="450" cy="-350" r="350" fill="red"/>'
BARS = '<path d="M100-700h700v250h-700z" fill="{}"/><path d="M100-250h700v250h-700z" fill="{}"/>'

FONTS = {
    "kTrueType": make(),
    "kOpenType": make(cubic=True),
    "kWoff": make(flavor="woff"),
    "kWoff2": make(flavor="woff2"),
    "kOpenTypeWoff2": make(cubic=True, flavor="woff2"),
    "kOnlyA": make("A"),
    "kSquareForB": make("B", {"B": "A"}),
    "kVaried": make(wider=1200),
    "kSvgGlyphs": make(tables={"SVG ": svg_table((2, 2, glyph_document('<g id="glyph2">' + DISC + "</g>")))}),
    "kSvgBomb": make(tables={"SVG ": svg_table((2, 2, glyph_document("".join(
        f'<g id="{level}">' + f'<use href="#{level + 1}"/>' * 10 + "</g>" for level in range(9)) +
        '<rect id="9" width="9" height="9"/><use id="glyph2" href="#0"/>')))}),
}


def address(data, kind="ttf"):
    return f"data:font/{kind};base64," + base64.b64encode(data).decode()


def header(path):
    with open(path, "w", encoding="ascii") as out:
        out.write("// SPDX-License-Identifier: Apache-2.0\n// Written by tiny_fonts.py, which tells what they look like.\n"
                  "#pragma once\n\nnamespace tiny_fonts {\n\n")
        for name, data in {**FONTS, "kPainted": painted(), "kLayered": layered()}.items():
            text = base64.b64encode(data).decode()
            out.write(f"inline constexpr char {name}[] =\n")
            lines = [text[i:i + 96] for i in range(0, len(text), 96)]
            out.write("\n".join(f'    "{line}"' for line in lines) + ";\n")
        out.write("\n}  // namespace tiny_fonts\n")


def face(family="t", source="", more=""):
    return f"@font-face{{font-family:{family};src:{source};{more}}}"


def url(font, kind="ttf", form=""):
    return f"url({address(FONTS[font], kind)})" + (f" format('{form}')" if form else "")


def documents(folder):
    plain = url("kTrueType")
    facts = {
        "truetype": ("a TrueType font of a data URI", face(source=plain), "t", "ABC", ""),
        "opentype": ("an OpenType font of cubic outlines", face(source=url("kOpenType", "otf", "opentype")), "t", "ABC",
                     ""),
        "woff": ("a WOFF font", face(source=url("kWoff", "woff", "woff")), "t", "ABC", ""),
        "woff2": ("a WOFF2 font", face(source=url("kWoff2", "woff2", "woff2")), "t", "ABC", ""),
        "woff2-of-opentype": ("a WOFF2 font of cubic outlines", face(source=url("kOpenTypeWoff2", "woff2")), "t", "ABC",
                              ""),
        "next-source": ("sources that cannot be read are passed over",
                        face(source="url(lost.ttf), url(data:font/ttf;base64,AAEAAAAB), local('No Such Font'), " + plain),
                        "t", "ABC", ""),
        "unknown-format": ("sources of unknown formats are passed over",
                           face(source=url("kSquareForB", form="embedded-opentype") + "," + plain), "t", "ABC", ""),
        "family-in-quotes": ("names of families: quotes, case, and runs of blanks do not count",
                             face("'My  Font'", plain), "MY FONT", "ABC", ""),
        "next-family": ("characters that the font has not come from the next family",
                        face("a", url("kOnlyA")) + face("b", url("kSquareForB")), "a, b", "AB", ""),
        "behind-installed": ("an installed family before it counts first",
                             face("b", plain), "'DejaVu Sans', b", "A", ""),
        "unicode-range": ("fonts of a family for ranges of characters each",
                          face("t", plain) + face("t", url("kSquareForB"), "unicode-range:U+42-43"), "t", "AB", ""),
        "weights": ("the nearest weight of a family",
                    face("t", url("kSquareForB"), "font-weight:700") + face("t", plain, "font-weight:400"), "t", "B",
                    "font-weight='300'"),
        "bold-is-imitated": ("bold where the family has none", face(source=plain), "t", "BC", "font-weight='bold'"),
        "italic-is-imitated": ("slanted where the family has nothing that is", face(source=plain), "t", "AC",
                               "font-style='italic'"),
        "variable": ("a font that varies, in the range that the rule states",
                     face(source=url("kVaried"), more="font-weight:400 650"), "t", "AB", "font-weight='900'"),
        "in-media": ("a rule for print counts, one for screens does not",
                     "@media print{" + face(source=plain) + "}@media screen{" +
                     face(source=url("kSquareForB")) + "}", "t", "ABC", ""),
    }
    for name, (title, sheet, family, text, more) in facts.items():
        with open(os.path.join(folder, name + ".svg"), "w", encoding="ascii") as out:
            out.write('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 40" width="100" height="40">\n'
                      f"  <title>{title[0].upper() + title[1:]}</title>\n  <style>{sheet}</style>\n"
                      f'  <text x="5" y="32" font-family="{family}" font-size="32" {more}>{text}</text>\n</svg>\n'.replace(" >", ">"))


def painted():
    """Makes a font with colour glyphs A to M: solid colours, gradients, layers, transforms, composites.

    @return the font's bytes
    """
    from fontTools.colorLib.builder import buildCOLR, buildCPAL
    from fontTools.ttLib.tables.otTables import PaintFormat as Format

    font = TTFont(io.BytesIO(make("ABCDEFGHIJKLM", {letter: "A" for letter in "ABCDEFGHIJKLM"},
                                  parts={"square": "A", "triangle": "B"})))

    def solid(index, alpha=1.0):
        return {"Format": Format.PaintSolid, "PaletteIndex": index, "Alpha": alpha}

    def within(glyph, paint):
        return {"Format": Format.PaintGlyph, "Glyph": glyph, "Paint": paint}

    def line(*stops, extend="pad"):
        return {"ColorStop": [{"StopOffset": at, "PaletteIndex": index, "Alpha": 1.0} for at, index in stops],
                "Extend": extend}

    def linear(colours, x0=100, y0=0, x1=800, y1=0, x2=100, y2=700):
        return {"Format": Format.PaintLinearGradient, "ColorLine": colours, "x0": x0, "y0": y0, "x1": x1, "y1": y1,
                "x2": x2, "y2": y2}

    def composite(mode):
        return {"Format": Format.PaintComposite, "CompositeMode": mode,
                "SourcePaint": within("square", solid(0)), "BackdropPaint": within("triangle", solid(1))}

    square = within("square", solid(1))
    glyphs = {
        "A": within("triangle", solid(0)),
        "B": within("square", linear(line((0, 0), (1, 1)))),
        "C": within("square", {"Format": Format.PaintRadialGradient, "ColorLine": line((0, 1), (1, 0)),
                               "x0": 450, "y0": 350, "r0": 0, "x1": 450, "y1": 350, "r1": 350}),
        "D": within("square", {"Format": Format.PaintSweepGradient, "ColorLine": line((0, 0), (0.5, 1), (1, 2)),
                               "centerX": 450, "centerY": 350, "startAngle": 0, "endAngle": 360}),
        "E": {"Format": Format.PaintColrLayers, "Layers": [square, within("triangle", solid(0xFFFF))]},
        "F": {"Format": Format.PaintRotateAroundCenter, "angle": 45, "centerX": 450, "centerY": 350,
              "Paint": {"Format": Format.PaintScaleAroundCenter, "scaleX": 0.5, "scaleY": 0.25, "centerX": 450,
                        "centerY": 350, "Paint": square}},
        "G": {"Format": Format.PaintTranslate, "dx": 0, "dy": 100,
              "Paint": {"Format": Format.PaintColrGlyph, "Glyph": "A"}},
        "H": composite("src_in"),
        "I": composite("src_out"),
        "J": composite("multiply"),
        "K": within("square", linear(line((0.25, 0), (0.5, 1), extend="reflect"))),
        "L": within("square", {"Format": Format.PaintTransform, "Transform": (1, 0, 0.5, 1, 0, 0),
                               "Paint": within("triangle", solid(2))}),
        "M": {"Format": Format.PaintSkew, "xSkewAngle": -20, "ySkewAngle": 0, "Paint": square},
    }
    font["COLR"] = buildCOLR(glyphs, version=1, glyphMap=font.getReverseGlyphMap())
    font["CPAL"] = buildCPAL([[(0.9, 0.1, 0.1, 1.0), (0.1, 0.6, 0.2, 1.0), (0.1, 0.2, 0.9, 1.0)]])
    data = io.BytesIO()
    font.save(data)
    return data.getvalue()


def layered():
    """Makes a font whose A has two layers, a red square and a green triangle; B and C are plain.

    @return the font's bytes
    """
    from fontTools.colorLib.builder import buildCOLR, buildCPAL

    font = TTFont(io.BytesIO(make(parts={"square": "A", "triangle": "B"})))
    font["COLR"] = buildCOLR({"A": [("square", 0), ("triangle", 1)]}, version=0, glyphMap=font.getReverseGlyphMap())
    font["CPAL"] = buildCPAL([[(1.0, 0.0, 0.0, 1.0), (0.0, 1.0, 0.0, 1.0)]])
    data = io.BytesIO()
    font.save(data)
    return data.getvalue()


def varied(path):
    with open(path, "wb") as out:
        out.write(FONTS["kVaried"])


def drawings(folder):
    shades = ('<linearGradient id="g" x1="0" y1="0" x2="0" y2="1"><stop stop-color="red"/>'
              '<stop offset="1" stop-color="blue"/></linearGradient>')
    overlapping = ('<g id="glyph2"><circle cx="300" cy="-350" r="250" fill="red"/>'
                   '<circle cx="600" cy="-350" r="250" fill="blue"/></g>')
    facts = {
        "shapes": ("a glyph of shapes with a gradient", [(2, 2, glyph_document(
            f'<defs>{shades}</defs><g id="glyph2"><circle cx="450" cy="-350" r="350" fill="url(#g)"/></g>'))], "A", ""),
        "compressed": ("a document that is compressed", [(2, 2, gzip.compress(glyph_document(
            f'<g id="glyph2">{DISC}</g>').encode(), mtime=0))], "A", ""),
        "only-its-element": ("one document for several glyphs: each is one element of it", [(2, 4, glyph_document(
            '<g id="glyph2">' + DISC + '</g><path id="glyph3" fill="lime" d="M100 0 450-700 800 0z"/>'
            '<g id="glyph4">' + BARS.format("blue", "aqua") + "</g>"))], "BCA", ""),
        "view-box": ("the view box covers the em square", [(2, 2, glyph_document(
            '<circle id="glyph2" cx="45" cy="-35" r="35" fill="red"/>', ' viewBox="0 0 100 100"'))], "A", ""),
        "root": ("the document as a whole is the glyph", [(2, 2, glyph_document(
            DISC, ' id="glyph2" overflow="visible"'))], "A", ""),
        "ancestors": ("styles of ancestors count, their transforms do not", [(2, 2, glyph_document(
            '<style>.a { fill: orange }</style><g class="a" transform="scale(.2)">'
            '<path id="glyph2" transform="translate(0 -100)" d="M100 0 450-600 800 0z"/></g>'))], "A", ""),
        "current-color": ("the colour of the text", [(2, 2, glyph_document(
            '<g id="glyph2">' + BARS.format("currentColor", "red") + "</g>"))], "A", " color='green'"),
        "context-paints": ("fill and stroke of the text", [(2, 2, glyph_document(
            '<g id="glyph2">' + BARS.format("context-fill", "context-stroke") + "</g>"))], "A", " stroke='purple'"),
        "context-opacity": ("the opacity of the fill counts once", [(2, 2, glyph_document(
            '<g id="glyph2">' + BARS.format("context-fill", "gold") + "</g>"))], "A", " fill-opacity='.4'"),
        "palette": ("colours of the palette have a fallback", [(2, 2, glyph_document(
            '<g id="glyph2">' + BARS.format("var(--color0, teal)", "red") + "</g>"))], "A", ""),
        "opacity": ("the opacity of the fill is that of the glyph", [(2, 2, glyph_document(overlapping))], "A",
                    " fill-opacity='.4'"),
        "outline-instead": ("the outline stands in where an element or a document is missing",
                            [(2, 2, glyph_document('<g id="glyph3"/>')), (3, 3, "<svg")], "ABC", ""),
        "span-and-spacing": ("glyphs are where those of outlines are", [(2, 2, glyph_document(
            f'<g id="glyph2">{DISC}</g>'))], "A<tspan dy='-8' font-size='20'>AB</tspan>", " letter-spacing='2'"),
    }
    for name, (title, table, text, more) in facts.items():
        source = address(make(tables={"SVG ": svg_table(*table)}))
        with open(os.path.join(folder, name + ".svg"), "w", encoding="ascii") as out:
            out.write('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 100 40" width="100" height="40">\n'
                      f"  <title>Glyphs that are drawings: {title}</title>\n"
                      f"  <style>{face(source='url(' + source + ')')}</style>\n"
                      f"  <text x='2' y='34' font-family='t' font-size='36' fill='gold'{more}>{text}</text>\n</svg>\n")


def colours(folder):
    facts = {"solid": "A", "linear-gradient": "B", "radial-gradient": "C", "sweep-gradient": "D", "layers": "E",
             "rotate-and-scale": "F", "glyph-of-colours": "G", "source-in": "H", "source-out": "I", "multiply": "J",
             "reflect": "K", "outline-in-outline": "L", "skew": "M"}
    source = address(painted())
    for name, letter in facts.items():
        with open(os.path.join(folder, name + ".svg"), "w", encoding="ascii") as out:
            out.write('<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 40 40" width="40" height="40">\n'
                      f"  <title>Painted glyphs: {name.replace('-', ' ')}</title>\n"
                      f"  <style>{face(source='url(' + source + ')')}</style>\n"
                      f'  <text x="2" y="34" font-family="t" font-size="40" fill="gold">{letter}</text>\n</svg>\n')


if __name__ == "__main__":
    {"colours": colours, "drawings": drawings, "header": header, "documents": documents, "varied": varied}[sys.argv[1]](sys.argv[2])
