#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compares pages of standard SVG with the reference images that come with the documents.

    tests/smoke/compare_references.py --tool build/release/bin/orvprint [--keep FOLDER] FOLDER...

For every X.svg below the folders that has a X-ref.png beside it, draws the document with SVG2 at the size of the
reference and counts the pixels that differ. Differences at edges do not count, nor do those where there is text: its
font depends on what is installed. Documents that are known to differ are listed in known_references.txt, with the
reason. Exits with 1 when another document differs, or when a listed one does not. Needs python3-numpy and python3-pil.
"""

import argparse
import concurrent.futures
import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy
from PIL import Image

import compare_findings

KNOWN = Path(__file__).resolve().parent / "known_references.txt"
PATIENCE = 60        # seconds
FEWEST_PIXELS = 20   # fewer differing pixels are rounding
MOST_TEXT = 0.6      # of the page; with more text, too little is left to compare
# Shares of a text's width and of its font size (estimated from the width and the number of characters), by which
# another font may exceed the text on each side.
WIDER, HIGHER = 0.3, 1.4
AVERAGE_ADVANCE = 0.5  # of the font size


def known_references():
    """Maps the documents that differ, as paths below a folder, to the reason."""
    rows = [line.split(None, 1) for line in KNOWN.read_text().splitlines() if line and not line.startswith("#")]
    return dict(rows)


def reference_of(document):
    return document.with_name(document.stem + "-ref.png")


def texts_of(node):
    """Yields every text in a tree written by the command `inspect`."""
    if isinstance(node, dict):
        if node.get("kind") == "text":
            yield node
        for value in node.values():
            yield from texts_of(value)
    elif isinstance(node, list):
        for value in node:
            yield from texts_of(value)


def where_no_text_is(page, size):
    """Returns which pixels are compared: a boolean array (height, width) for a page of `size` (width, height)."""
    counts = numpy.ones((size[1], size[0]), dtype=bool)
    scale = size[0] / page["size"][0]
    for text in texts_of(page["content"]):
        xx, yx, xy, yy, x, y = (value * scale for value in text["toPage"])
        width = text["advance"]
        height = HIGHER * width / (AVERAGE_ADVANCE * max(len(text["text"]), 1))
        corners = [(x + xx * u + xy * v, y + yx * u + yy * v)
                   for u in (-WIDER * width - height, (1 + WIDER) * width + height) for v in (-height, height)]
        left, top = (max(int(min(corner[axis] for corner in corners)), 0) for axis in (0, 1))
        right, bottom = (max(int(max(corner[axis] for corner in corners)) + 1, 0) for axis in (0, 1))
        counts[top:bottom, left:right] = False
    return counts


class Comparison:
    def __init__(self, tool, folder):
        self.tool, self.folder = tool, Path(folder)

    def run(self, *command):
        return subprocess.run([self.tool, *command], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=PATIENCE, check=False)

    def where_no_text_is(self, document, size):
        if b"text" not in document.read_bytes():
            return numpy.ones((size[1], size[0]), dtype=bool)
        tree = self.run("inspect", "--json", "--interpreter", "svg2", str(document))
        return where_no_text_is(json.loads(tree.stdout)["pages"][0], size)

    def fault(self, name, document):
        """Returns what is wrong with the page; "" if nothing is, None if it cannot be compared."""
        with Image.open(reference_of(document)) as reference:
            size = reference.size
        output = self.folder / (name.replace("/", "_") + ".png")
        drawn = self.run(str(document), "--interpreter", "svg2", "--quiet", "--force", "-o", str(output),
                         "--width", str(size[0]), "--height", str(size[1]))
        if drawn.returncode != 0:
            return f"is not drawn: {drawn.stderr.strip()[:100]}"
        counts = self.where_no_text_is(document, size)
        if counts.mean() < 1 - MOST_TEXT:
            return None
        page, reference = (compare_findings.load(path, size) for path in (output, reference_of(document)))
        differs = compare_findings.distance(page, reference) > compare_findings.CONTRAST
        pixels = int((differs & counts).sum())
        return f"differs in {pixels} pixels" if pixels >= FEWEST_PIXELS else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--keep", metavar="FOLDER", help="keep the pages there")
    parser.add_argument("folders", nargs="+", metavar="FOLDER", type=Path)
    options = parser.parse_args()

    documents = {str(document.relative_to(folder)): document
                 for folder in options.folders for document in sorted(folder.rglob("*.svg"))
                 if reference_of(document).is_file()}
    if not documents:
        sys.exit("no document with a reference image")
    if options.keep:
        Path(options.keep).mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as scratch:
        comparison = Comparison(options.tool, options.keep or scratch)
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            faults = dict(zip(documents, pool.map(comparison.fault, documents.keys(), documents.values())))

    known = known_references()
    wrong = [f"{name} {fault}" for name, fault in faults.items() if fault and name not in known]
    wrong += [f"{name} is listed in {KNOWN.name}, and does not differ" for name in known if faults.get(name) == ""]
    wrong += [f"{name} is listed in {KNOWN.name}, and is not there" for name in known if name not in faults]
    alike = sum(fault == "" for fault in faults.values())
    print(f"{len(faults)} documents: {alike} like their references, {len(known)} known to differ, "
          f"{sum(fault is None for fault in faults.values())} with too much text to compare")
    for line in wrong:
        print(line)
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
