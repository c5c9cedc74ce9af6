#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Converts many drawings with orvprint and the other installed converters, and prints drawings per second.

    bench/throughput.py [--tool build/release/bin/orvprint] [--count 1000] [--browser-count 100] [CORPUS...]

A corpus is `small` (the drawings of the batch tests without the broken ones, 2 KB), `typical` (5 to 200 KB) or
`floor-plan` (copies of the example, 23 KB); default: all three. Each program runs as suits many drawings best: orvprint
as a batch, and as one process per drawing; rsvg-convert as one process per drawing, two at a time with xargs; resvg
inside one node process; Chromium as one process that prints each drawing to PDF (fewer drawings).

Results are per second of processor time ("a second and core"), which a busy machine affects little.
"""

import argparse
import base64
import resource
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent
RESVG = ROOT / "build/bench/node/node_modules/@resvg/resvg-js"
FONTS = ["/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"]

sys.path += [str(HERE), str(ROOT / "tests/batch_engines"), str(ROOT / "tests/apps")]


def small(folder, count):
    import drawings

    for number in range(count):
        if number % drawings.BROKEN_EVERY != drawings.BROKEN_EVERY - 1:
            (folder / f"{number:06}.svg").write_text(drawings.drawing(number), encoding="utf-8")


def typical(folder, count):
    import corpora

    for number in range(count):
        with open(folder / f"{number:06}.svg", "w", encoding="utf-8") as file:
            corpora.typical(number)(file)


def floor_plan(folder, count):
    for number in range(count):
        shutil.copy(ROOT / "examples/floor-plan.svg", folder / f"{number:06}.svg")


CORPORA = {"small": small, "typical": typical, "floor-plan": floor_plan}


class Used:
    """Measures wall clock and processor time of the child processes that end within a `with` block."""

    def __enter__(self):
        self.start, self.before = time.perf_counter(), resource.getrusage(resource.RUSAGE_CHILDREN)
        return self

    def __exit__(self, *_):
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.wall = time.perf_counter() - self.start
        self.cpu = after.ru_utime + after.ru_stime - self.before.ru_utime - self.before.ru_stime


def run(command, names):
    subprocess.run([str(word) for word in command], input="\n".join(map(str, names)) + "\n", text=True, check=False,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def print_by_browser(program, names, target):
    from drive_browser import Browser

    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as profile:
        browser = Browser(program, profile)
        for name in names:
            browser.session = None
            browser.open(str(name))
            page = browser.order("Page.printToPDF", printBackground=True)["data"]
            (target / f"{name.name}.pdf").write_bytes(base64.b64decode(page))
            session, browser.session = browser.session, None
            browser.order("Target.detachFromTarget", sessionId=session)
        browser.order("Browser.close")
        browser.process.wait()


def ways(options, target):
    """Yields each way to convert: its name, and a function that converts drawings into the folder `target`."""

    def batch(form, *more):
        command = [options.tool, "--files-from", "-", "--out-dir", target, "-f", form, "-j", "2", "--quiet", "--keep-going"]
        return lambda names: run([*command, *more], names)

    def each(*command):
        return lambda names: run(["xargs", "-P2", "-I{}", *command], [name.stem for name in names])

    source = target.parent / "drawings"
    yield "orvprint -j 2, PDF", batch("pdf")
    yield "orvprint -j 2, PDF, with a report", batch("pdf", "--report", target / "report.jsonl")
    yield "orvprint -j 2, SVG2, PDF", batch("pdf", "--interpreter", "svg2")
    yield "orvprint, a process each, PDF", each(options.tool, f"{source}/{{}}.svg", "-o", f"{target}/{{}}.pdf")
    if shutil.which("rsvg-convert"):
        yield "rsvg-convert, a process each, PDF", each("rsvg-convert", "-f", "pdf", "-o", f"{target}/{{}}.pdf", f"{source}/{{}}.svg")
    chromium = shutil.which("chromium")
    if chromium and options.browser_count > 0:
        yield "Chromium, one process, PDF", lambda names: print_by_browser(chromium, names[: options.browser_count], target)
    yield "orvprint -j 2, PNG", batch("png")
    yield "orvprint -j 2, SVG2, PNG", batch("png", "--interpreter", "svg2")
    if shutil.which("rsvg-convert"):
        yield "rsvg-convert, a process each, PNG", each("rsvg-convert", "-o", f"{target}/{{}}.png", f"{source}/{{}}.svg")
    if shutil.which("node") and options.resvg.is_dir():
        yield "resvg, one process of node, PNG", lambda names: run(
            ["node", HERE / "resvg_many.cjs", options.resvg, target, *FONTS], names)


def measure(corpus, options):
    with tempfile.TemporaryDirectory() as folder:
        source, target = Path(folder) / "drawings", Path(folder) / "out"
        source.mkdir()
        CORPORA[corpus](source, options.count)
        names = sorted(source.iterdir())
        size = sum(name.stat().st_size for name in names) / len(names)
        print(f"\n{len(names)} drawings, {corpus}, {size / 1000:.1f} KB each\n")
        print("| program | drawings | wall s | CPU s | drawings a second and core | KB an output |")
        print("|---|---|---|---|---|---|")
        for name, convert in ways(options, target):
            shutil.rmtree(target, ignore_errors=True)
            target.mkdir()
            with Used() as used:
                convert(names)
            sizes = [path.stat().st_size for path in target.iterdir() if path.suffix in (".pdf", ".png")]
            print(f"| {name} | {len(sizes)} | {used.wall:.1f} | {used.cpu:.2f} | {len(sizes) / used.cpu:.0f} | "
                  f"{sum(sizes) / max(len(sizes), 1) / 1000:.1f} |", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", default=ROOT / "build/release/bin/orvprint")
    parser.add_argument("--resvg", type=Path, default=RESVG, help="folder of the module @resvg/resvg-js")
    parser.add_argument("--count", type=int, default=1000)
    parser.add_argument("--browser-count", type=int, default=100)
    parser.add_argument("corpora", nargs="*", choices=[*CORPORA, []])
    options = parser.parse_args()
    for corpus in options.corpora or CORPORA:
        measure(corpus, options)


if __name__ == "__main__":
    main()
