#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Verifies the check: if a page differs from what other programs show, the check must have a finding.

    tests/smoke/compare_findings.py --tool build/release/bin/orvprint FOLDER|FILE...

Draws each document with the command, with librsvg and, where its package for node is installed (see ./dev bench),
with resvg, all with the same number of pixels, because a unit is 1/90 inch here and 1/96 inch elsewhere. A pixel counts
as different if it differs from all other programs that draw the document, and if these agree with each other.
Differences at the edges of shapes do not count. Then it runs the check and lists

    silent  documents that differ although the check has no finding
    noisy   documents that do not differ although the check has a finding

Exits with 1 if there are silent documents, except those in known_differences.txt. Needs python3-numpy and python3-pil.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy
from PIL import Image

import compare_pages

HERE = Path(__file__).resolve().parent
RESVG = HERE.parent.parent / "build/bench/node/node_modules/@resvg/resvg-js"
LONGEST_SIDE = 400  # pixels
UNITS_PER_INCH = 90
PATIENCE = 60       # seconds
REACH = 5           # side, in pixels, of the square in which a colour may have moved
CONTRAST = 40       # of 255: smaller differences are due to rounding
# These findings depend on the installed fonts, and so do the pages of the other programs.
OF_FONTS = {"font-fallback", "font-missing", "font-unspecified", "missing-glyph"}


def run(*command):
    try:
        return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=PATIENCE, check=False)
    except subprocess.TimeoutExpired:
        return None


def page_size(tool, document):
    """Returns the size of a document's only page in user units; None unless there is exactly one, of usable size."""
    done = run(tool, "info", "--json", document)
    if not done or done.returncode != 0:
        return None
    pages = json.loads(done.stdout)["pages"]
    if len(pages) != 1 or not 0 < pages[0]["width"] < 1e5 or not 0 < pages[0]["height"] < 1e5:
        return None
    return pages[0]["width"], pages[0]["height"]


def findings_of(tool, document):
    done = run(tool, "check", "--json", document)
    if not done or done.returncode not in (0, 1):
        return None
    return json.loads(done.stdout)[0]["counts"]


def load(path, size=None):
    with Image.open(path) as image:
        image = image.convert("RGBA")
        page = Image.new("RGBA", image.size, "white")
        page.alpha_composite(image)
        page = page.convert("RGB")
    return page.resize(size, Image.BILINEAR) if size and page.size != size else page


def spread(values, pick):
    """Replaces each pixel by the minimum or the maximum, as `pick` says, of the square around it."""
    for axis in (0, 1):
        padding = [(REACH // 2, REACH // 2) if one == axis else (0, 0) for one in range(3)]
        padded, length = numpy.pad(values, padding, mode="edge"), values.shape[axis]
        values = numpy.take(padded, range(length), axis)
        for offset in range(1, REACH):
            values = pick(values, numpy.take(padded, range(offset, offset + length), axis))
    return values


def distance(page, other):
    """Returns for each pixel how far it is from all colours nearby in the other page: the larger of both directions."""
    def one_way(a, b):
        return numpy.maximum(a - spread(b, numpy.maximum), spread(b, numpy.minimum) - a).max(axis=2)

    page, other = (numpy.asarray(image, dtype=numpy.int16) for image in (page, other))
    if numpy.abs(page - other).max() <= CONTRAST:
        return numpy.zeros(page.shape[:2], dtype=numpy.int16)
    return numpy.maximum(one_way(page, other), one_way(other, page))


def difference(page, others):
    """Returns the number of pixels where `page` differs from all others and these agree with each other."""
    differs = distance(page, others[0]) > CONTRAST
    if not differs.any():
        return 0
    for other in others[1:]:
        differs &= distance(page, other) > CONTRAST
        # Where the others disagree, none of them can be the reference.
        differs &= distance(others[0], other) <= CONTRAST
    return int(differs.sum())


def draw_with_resvg(document, page, width):
    """Returns the page, or None if it was not drawn."""
    if RESVG.is_dir():
        subprocess.run(["node", HERE / "resvg_pages.cjs", RESVG], input=f"{document}\t{page}\t{width}\n", text=True,
                       check=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=PATIENCE)
    return page if page.is_file() else None


class Comparison:
    def __init__(self, tool, folder):
        self.tool, self.folder = tool, Path(folder)
        self.sizes = {}

    def draw(self, item):
        """Draws the page, also with librsvg.

        Returns findings, size and exit code; None if there is nothing to compare.
        """
        number, document = item
        size = page_size(self.tool, document)
        if not size:
            return None
        dpi = UNITS_PER_INCH * LONGEST_SIDE / max(size)
        page = self.folder / f"{number}.orv.png"
        done = run(self.tool, document, "-o", page, "--dpi", f"{dpi:.6f}")
        if not done or not page.is_file():
            return None
        with Image.open(page) as image:
            width, height = image.size
        run("rsvg-convert", "-w", str(width), "-h", str(height), "-b", "white", document, "-o",
            self.folder / f"{number}.rsvg.png")
        findings = findings_of(self.tool, document)
        return None if findings is None else (findings, (width, height), done.returncode)

    def draw_with_resvg(self, documents, drawn):
        if not RESVG.is_dir():
            return
        work = [f"{document}\t{self.folder / f'{number}.resvg.png'}\t{result[1][0]}\n"
                for (number, document), result in zip(documents, drawn) if result]
        while work:
            done = subprocess.run(["node", HERE / "resvg_pages.cjs", RESVG], input="".join(work), text=True,
                                  check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
            # Some documents crash resvg. Another process draws those that follow.
            begun = done.stdout.count("\n")
            work = work[max(begun, 1):]

    def compare(self, number, size):
        others = [load(path, size) for name in ("rsvg", "resvg")
                  if (path := self.folder / f"{number}.{name}.png").is_file()]
        return difference(load(self.folder / f"{number}.orv.png"), others) if others else None


def documents_of(names):
    for name in names:
        path = Path(name)
        yield from sorted(path.rglob("*.svg")) if path.is_dir() else [path]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--least", type=int, default=20, help="pixels that make a difference")
    parser.add_argument("--keep", metavar="FOLDER", help="keep the pages there, by number")
    parser.add_argument("--noisy", action="store_true", help="list the noisy ones, too")
    parser.add_argument("places", nargs="+", metavar="FOLDER|FILE")
    options = parser.parse_args()

    documents = [(number, document) for number, document in enumerate(documents_of(options.places))]
    if options.keep:
        Path(options.keep).mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as scratch:
        comparison = Comparison(options.tool, options.keep or scratch)
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            drawn = list(pool.map(comparison.draw, documents))
        comparison.draw_with_resvg(documents, drawn)

        counts, noise = collections.Counter(), collections.Counter()
        for (number, document), result in zip(documents, drawn):
            sys.stdout.flush()
            pixels = comparison.compare(number, result[1]) if result else None
            if pixels is None:
                counts["not compared"] += 1
                continue
            findings = result[0]
            told = set(findings) - OF_FONTS
            differs = pixels >= options.least
            # An exit code of failure counts as a finding.
            kind = {(True, True): "told", (True, False): "silent", (False, True): "noisy",
                    (False, False): "equal"}[differs, bool(told) or result[2] != 0]
            if kind == "silent" and findings:
                kind = "of fonts"
            if kind == "silent" and compare_pages.is_known(document.name):
                kind = "known"
            counts[kind] += 1
            if kind == "noisy":
                noise.update(told)
            if kind == "silent" or (kind == "noisy" and options.noisy):
                print(f"{kind} {number} {document}: {pixels} pixels; {', '.join(sorted(findings)) or 'nothing found'}")
        print(f"{len(documents)} documents:", ", ".join(f"{count} {kind}" for kind, count in sorted(counts.items())))
        if noise:
            print("found where nothing differs:", ", ".join(f"{code} {count}" for code, count in noise.most_common()))
    if counts["silent"]:
        sys.exit(f"{counts['silent']} documents differ, and the check says nothing")


if __name__ == "__main__":
    main()
