#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints hostile documents: mutations of drawings, and bombs.

    tests/smoke/mutated_documents.py --tool build/release/bin/orvprint [--count 10000] [FOLDER...]

Mutates the documents of the tests, the examples, the drawings of feature_documents.py and those below FOLDERs (bytes
changed, parts removed and repeated, values exchanged, extreme numbers, entities, encodings, compression, images...).
Every hundredth document is a bomb instead. Each is printed to PDF and to PNG, checked and listed, with default limits;
every fourth document and every bomb is also processed as standard SVG. In any case, the command must terminate by
itself, within limits of processor time and memory, with a page or with one line that says why there is none. If a page
is empty and the check finds nothing, it must also be empty in another renderer (librsvg, and resvg if its package for
node is installed).

The same --seed gives the same documents. Exits with 1 if documents broke a rule; these are kept in the folder --keep.
"""

import argparse
import collections
import os
import random
import signal
import struct
import sys
import tempfile
from pathlib import Path

import compare_findings
import compare_pages
import feature_documents
import hostile_documents
import print_documents

ROOT = Path(__file__).resolve().parent.parent.parent
BOMB_EVERY = 100
LARGEST_SOURCE = 64 << 10  # bytes
# Processor time of a run. Documents within the default limits take at most a minute: see docs/reliability.md.
MOST_SECONDS = 75
PATIENCE = 900  # seconds of wall-clock time, even on a busy machine
MOST_MEMORY = 1024  # MB; the command limits itself to 900 MiB
LARGEST_COMPARED = 16 << 20  # pixels; larger pages are not compared with other renderers
DONE, FOUND = 0, 1
STANDARD_EVERY = 4  # documents
ENDS = {"pdf": {DONE} | print_documents.REFUSALS, "png": {DONE} | print_documents.REFUSALS,
        "check": {DONE, FOUND} | print_documents.REFUSALS, "info": {DONE} | print_documents.REFUSALS}
STANDARD = "standard "  # prefix of runs as standard SVG
ENDS |= {STANDARD + way: ENDS[way] for way in ("pdf", "png", "check")}


def sources_of(folders):
    paths = [path for folder in [ROOT / "tests/documents/cases", ROOT / "examples", ROOT / "fuzz/regressions/document"]
             for path in sorted(folder.glob("*")) if path.suffix in (".svg", ".qvxml", "")]
    paths += print_documents.documents_below(folders)
    texts = [path.read_bytes() for path in paths if path.is_file() and 0 < path.stat().st_size <= LARGEST_SOURCE]
    image = feature_documents.png(16, 16)
    for _, content in feature_documents.drawings():
        texts.append(feature_documents.document_of(content.replace("$PNG", image)).encode())
    return texts


def document_number(number, seed, sources):
    """Returns the kind of a document and its content."""
    generator = random.Random(f"{seed} {number}")
    if number % BOMB_EVERY == BOMB_EVERY - 1:
        return hostile_documents.bomb(generator, number // BOMB_EVERY)
    return "mutation", hostile_documents.changed(generator, sources)


def command_of(tool, way, document, folder):
    standard = ["--interpreter", "svg2"] if way.startswith(STANDARD) else []
    way = way.removeprefix(STANDARD)
    if way in ("check", "info"):
        return [tool, way, *standard, str(document)]
    pages = ["--pages", "1"] if way == "png" else []
    return [tool, *standard, str(document), "-o", str(output_of(folder, way)), *pages]


def output_of(folder, way):
    return Path(folder) / f"page.{way.removeprefix(STANDARD)}"


def ways_of(number):
    is_standard = number % STANDARD_EVERY == 0 or number % BOMB_EVERY == BOMB_EVERY - 1
    return [way for way in ENDS if is_standard or not way.startswith(STANDARD)]


def fault_of(done, way, folder):
    if done.code < 0 or done.code > 128:
        return f"ended by a signal ({done.code}): {done.said[-300:]}"
    if done.code == print_documents.TIMED_OUT or done.seconds > MOST_SECONDS:
        return f"took {done.seconds:.1f} s"
    if done.megabytes > MOST_MEMORY:
        return f"took {done.megabytes:.0f} MB"
    if done.code not in ENDS[way]:
        return f"ended with {done.code}: {done.said[:300]}"
    is_check = way.removeprefix(STANDARD) == "check"
    if done.code in print_documents.REFUSALS and not done.said.startswith("orvprint: ") and not is_check:
        return f"ended with {done.code} and did not say why: {done.said[:300]}"
    output = output_of(folder, way)
    has_page = output.is_file() and output.stat().st_size > 0
    # If a page has no area, the others are printed nevertheless.
    may_have_page = done.code == DONE or "has no area" in done.said
    if way.endswith(("pdf", "png")) and (has_page and not may_have_page or done.code == DONE and not has_page):
        return f"ended with {done.code} and {'a' if has_page else 'no'} page"
    if list(Path(folder).glob(".*")):
        return "left a temporary file"
    return ""


def is_large(page):
    with open(page, "rb") as file:
        width, height = struct.unpack(">16xII", file.read(24))
    return width * height > LARGEST_COMPARED


def is_lost(tool, document, folder):
    """Returns whether the page is empty although other renderers draw something."""
    page = Path(folder) / "page.png"
    if not page.is_file() or is_large(page) or not compare_pages.is_blank(compare_pages.opened(page)):
        return False
    code = lambda command: print_documents.measure(["prlimit", "--as=4000000000", "--cpu=20", *command]).code
    if compare_pages.difference(tool, document, folder, code) != 100.0:
        return False
    # With such numbers, a single renderer may be wrong.
    other = compare_findings.draw_with_resvg(document, Path(folder) / "resvg.png", 400)
    return not other or not compare_pages.is_blank(compare_pages.opened(other))


class Figures:
    """Statistics: the runs that took the most time and memory, and the exit codes of all."""

    KEPT = 8

    def __init__(self):
        self.ends = {way: collections.Counter() for way in ENDS}
        self.slowest, self.largest = [], []

    def take(self, what, way, done):
        self.ends[way][done.code] += 1
        name = f"{what} ({way}, ends with {done.code})"
        self.slowest = sorted([*self.slowest, (done.seconds, name)], reverse=True)[:self.KEPT]
        self.largest = sorted([*self.largest, (done.megabytes, name)], reverse=True)[:self.KEPT]

    def show(self):
        for way, ends in self.ends.items():
            print(f"{way}:", ", ".join(f"{count} ended with {code}" for code, count in sorted(ends.items())))
        print("longest:", "; ".join(f"{seconds:.1f} s {name}" for seconds, name in self.slowest))
        print("largest:", "; ".join(f"{size:.0f} MB {name}" for size, name in self.largest))


def faults_of(tool, text, ways, take):
    """Returns what is wrong with the runs of a document. Calls `take` with each run."""
    found, ends = [], {}
    with tempfile.TemporaryDirectory() as folder:
        document = Path(folder) / "document.svg"
        document.write_bytes(text)
        def take_all(some_ways):
            for way in some_ways:
                output_of(folder, way).unlink(missing_ok=True)
                done = print_documents.measure(["timeout", str(PATIENCE), *command_of(tool, way, document, folder)])
                take(way, done)
                ends[way] = done.code
                if fault := fault_of(done, way, folder):
                    found.append(f"({way}): {fault}")

        take_all([way for way in ways if not way.startswith(STANDARD)])
        if ends["png"] == DONE and ends["check"] == DONE and is_lost(tool, document, folder):
            found.append("is printed as an empty page, and the check says nothing")
        take_all([way for way in ways if way.startswith(STANDARD)])
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--tool", required=True)
    parser.add_argument("--count", type=int, default=10000)
    parser.add_argument("--first", type=int, default=0, help="number of the first document")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--keep", default=str(ROOT / "build/mutated"), metavar="FOLDER")
    parser.add_argument("folders", nargs="*", metavar="FOLDER")
    options = parser.parse_args()

    sources, figures, keep = sources_of(options.folders), Figures(), Path(options.keep)
    keep.mkdir(parents=True, exist_ok=True)
    faults = 0
    for ending in (signal.SIGINT, signal.SIGTERM):
        signal.signal(ending, lambda number, frame: sys.exit(128 + number))
    try:
        for number in range(options.first, options.first + options.count):
            what, text = document_number(number, options.seed, sources)
            for fault in faults_of(options.tool, text, ways_of(number), lambda *run: figures.take(f"{what} {number}", *run)):
                faults += 1
                (keep / f"{number}.svg").write_bytes(text)
                print(f"{keep / f'{number}.svg'} ({what}) {fault}", flush=True)
            if number % 1000 == 999:
                print(f"{number + 1} documents", file=sys.stderr, flush=True)
    finally:
        figures.show()
    if faults:
        sys.exit(f"{faults} runs broke a rule")


if __name__ == "__main__":
    os.environ.setdefault("LC_ALL", "C.UTF-8")
    main()
