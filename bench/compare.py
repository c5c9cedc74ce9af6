#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Compares whole processes: runs orvprint and the other installed converters in turn on the same documents.

    bench/compare.py [--tool build/release/bin/orvprint] [--runs 5] [--corpora build/bench/corpora] [SECTION...]

Sections: pdf, png150, png600, small, cold, typical, growth, standard (default: all). Absolute times mean little on a
busy machine, so the tables show ratios within one run: the programs take turns, in a new order each turn (--seed); a
ratio is computed per turn, and the median is printed.

A program whose page is blank, or differs from that of the reference renderer (rsvg-convert, else mutool), is not timed,
and the comparison exits with 1.

The section cold measures a start after a long pause: before each run, the program, its libraries and the document are
dropped from the page cache as far as the kernel allows, and the cache folder is new. Files that other processes have
mapped (the C library) stay cached.

Peak memory below that of Python itself (about 16 MB) cannot be measured.

The section standard compares the interpreter of standard SVG with the default one and, on features that only standard
SVG has, with the other programs. It prints the minimum of all turns, and subtracts an empty node process from resvg.

If its node package is installed, resvg runs inside a node process (bench/resvg.cjs). Its time and memory are those of
the whole process; an empty node process is measured as well.
"""

import argparse
import math
import os
import random
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
UNITS_PER_INCH = 90
RESVG = HERE.parent / "build/bench/node/node_modules/@resvg/resvg-js"
PAGE = 1000  # user units of the generated pages' sides


class Run:
    """One run of a program: wall clock and processor time in seconds, peak memory in MB."""

    def __init__(self, command, environment=None):
        start = time.perf_counter()
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env=environment)
        self.errors = process.stderr.read().decode(errors="replace")
        _, status, usage = os.wait4(process.pid, 0)
        self.wall = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        self.code = process.returncode
        self.cpu = usage.ru_utime + usage.ru_stime
        self.memory = usage.ru_maxrss / 1024


def pixels(dpi):
    return round(PAGE * dpi / UNITS_PER_INCH)


def programs(tool, interpreter="svg"):
    """Returns (name, command, formats) of installed programs; command(input, output, dpi) has dpi None for PDF.

    @param interpreter  that of orvprint
    """

    def ours(source, target, dpi):
        return [tool, "--interpreter", interpreter, source, "-o", target] + ([] if dpi is None else ["--dpi", str(dpi)])

    def rsvg(source, target, dpi):
        options = ["-f", "pdf"] if dpi is None else ["-z", str(dpi / UNITS_PER_INCH)]
        return ["rsvg-convert", "--unlimited", *options, "-o", target, source]

    def mutool(source, target, dpi):
        if dpi is None:
            return ["mutool", "convert", "-F", "pdf", "-O", "compress", "-o", target, source]
        return ["mutool", "draw", "-w", str(pixels(dpi)), "-h", str(pixels(dpi)), "-o", target, source]

    def mutool_plain(source, target, dpi):
        return ["mutool", "convert", "-F", "pdf", "-o", target, source]

    def resvg(source, target, dpi):
        return ["resvg", "-z", str(dpi / UNITS_PER_INCH), source, target]

    def resvg_in_node(source, target, dpi):
        return ["node", str(HERE / "resvg.cjs"), str(RESVG), source, target, str(dpi / UNITS_PER_INCH)]

    found = [("orvprint", ours, {"pdf", "png"})]
    if shutil.which("rsvg-convert"):
        found.append(("rsvg-convert", rsvg, {"pdf", "png"}))
    if shutil.which("mutool"):
        found.append(("mutool", mutool, {"pdf", "png"}))
        found.append(("mutool, plain", mutool_plain, {"pdf"}))
    if shutil.which("resvg"):
        found.append(("resvg", resvg, {"png"}))
    if shutil.which("node") and RESVG.is_dir():
        found.append(("resvg in node", resvg_in_node, {"png"}))
    return found


def in_turns(names, runs, options):
    """Yields all names once per turn, each turn in a random order, so that none always profits from its predecessor."""
    order = random.Random(options.seed)
    for _ in range(runs):
        turn = list(names)
        order.shuffle(turn)
        yield from turn


# Pages are compared at this size in pixels: fine enough to detect missing content, coarse enough to ignore edges and
# fonts.
COMPARED = 100
# Largest mean difference over all channels, from 0 to 1, at which two pages count as the same drawing.
# Matching pages in this benchmark differ by less than 0.05, mostly because of edges and fonts.
LARGEST_DIFFERENCE = 0.06


def as_image(path, folder):
    """Converts a file to an image of the size for comparison. @return its path, or None"""
    source = path
    if path.endswith(".pdf"):
        source = f"{folder}/page.png"
        page = ["pdftoppm", "-scale-to", str(10 * COMPARED), "-singlefile", "-png", path, f"{folder}/page"]
        subprocess.run(page, check=False, capture_output=True)
    image = f"{folder}/{abs(hash(path))}.ppm"
    size = f"{COMPARED}x{COMPARED}!"
    made = subprocess.run(
        ["convert", source, "-background", "white", "-alpha", "remove", "-filter", "box", "-resize", size, image],
        check=False,
        capture_output=True,
    )
    return image if made.returncode == 0 else None


def shows_something(image):
    """Whether a page is not all of one colour."""
    told = subprocess.run(
        ["identify", "-format", "%[fx:standard_deviation]", image], check=False, capture_output=True, text=True
    ).stdout
    try:
        return float(told) > 1e-4
    except ValueError:
        return False


def difference(image, reference):
    """Returns the mean difference of two images, from 0 to 1; infinite if `compare` fails."""
    told = subprocess.run(["compare", "-metric", "MAE", image, reference, "null:"], check=False, capture_output=True, text=True)
    found = re.search(r"\(([0-9.e+-]+)\)", told.stderr)
    return float(found.group(1)) if found else math.inf


class Failures:
    """Counts the programs that failed or drew a wrong page."""

    count = 0


def same_drawings(files, source, folder):
    """Returns the difference from the reference for each program that drew the document, and reports the others.

    @param files  output file by program name
    """
    reference = as_image(reference_page(source, folder), folder)
    found = {}
    for name, path in files.items():
        image = as_image(path, folder) if os.path.exists(path) else None
        if not image or not shows_something(image):
            print(f"  {name}: drew nothing")
        elif reference and (far := difference(image, reference)) > LARGEST_DIFFERENCE:
            print(f"  {name}: drew something else (mean difference from the reference {far:.3f})")
        else:
            found[name] = difference(image, reference) if reference else math.nan
            continue
        Failures.count += 1
    return found


def reference_page(source, folder):
    """Renders the document with another project's program. @return the path of the image"""
    page = f"{folder}/reference.png"
    commands = [
        ["rsvg-convert", "--unlimited", "--background-color", "white", "-o", page, source],
        ["mutool", "draw", "-o", page, source],
    ]
    for command in commands:
        if shutil.which(command[0]) and subprocess.run(command, check=False, capture_output=True).returncode == 0:
            break
    return page


def corpus(folder, name):
    subprocess.run([sys.executable, HERE / "corpora.py", folder, name], check=True)
    return str(Path(folder) / (name if name == "typical" else f"{name}.svg"))


def median(values):
    return statistics.median(values) if values else math.nan


def compare(title, source, ending, dpi, options, interpreter="svg"):
    """Runs all programs on a document and prints a table of time, memory and file size."""
    with tempfile.TemporaryDirectory() as folder:
        commands, targets = {}, {}
        print(f"\n{title}\n")
        for name, command, kinds in programs(options.tool, interpreter):
            if ending not in kinds:
                continue
            target = f"{folder}/{len(targets)}.{ending}"
            trial = Run(command(source, target, dpi))
            if trial.code != 0:
                print(f"  {name}: failed ({trial.errors.strip()[:80] or 'no message'})")
                Failures.count += 1
                continue
            commands[name], targets[name] = command(source, target, dpi), target
        differences = same_drawings(targets, source, folder)
        sizes = {name: os.path.getsize(targets[name]) for name in differences}
        runs = {name: [] for name in differences}
        for name in in_turns(runs, options.runs, options):
            runs[name].append(Run(commands[name]))
        print("| program | wall s | CPU s | memory MB | file KB | wall, times orvprint | CPU | memory | file | difference |")
        print("|---|---|---|---|---|---|---|---|---|---|")
        ours = runs.get("orvprint", [])
        for name, own in runs.items():
            ratios = [
                median([getattr(a, what) / max(getattr(b, what), 1e-4) for a, b in zip(own, ours)])
                for what in ("wall", "cpu", "memory")
            ]
            ratios.append(sizes[name] / sizes["orvprint"] if ours else math.nan)
            figures = [median([getattr(run, what) for run in own]) for what in ("wall", "cpu", "memory")]
            print(
                f"| {name} | {figures[0]:.3f} | {figures[1]:.3f} | {figures[2]:.0f} | {sizes[name] / 1024:.0f} | "
                + " | ".join(f"{ratio:.2f}" for ratio in ratios)
                + f" | {differences[name]:.3f} |"
            )


def files_of(command):
    """Returns the files that a command reads: the program, its libraries and those installed with it, its arguments."""
    program = shutil.which(command[0]) or command[0]
    told = subprocess.run(["ldd", program], check=False, capture_output=True, text=True).stdout
    files = {os.path.realpath(program)} | {os.path.realpath(path) for path in re.findall(r"(/\S+) \(0x", told)}
    beside = Path(os.path.realpath(program)).parent.parent / "lib"
    files |= {str(path) for path in beside.glob("lib*orv*.so*")} | {str(path) for path in beside.glob("libORV*.so")}
    return files | {argument for argument in command[1:] if os.path.isfile(argument)}


def forget(files):
    """Drops files from the page cache."""
    for path in files:
        try:
            descriptor = os.open(path, os.O_RDONLY)
        except OSError:
            continue
        os.posix_fadvise(descriptor, 0, 0, os.POSIX_FADV_DONTNEED)
        os.close(descriptor)


def cold(options):
    """Compares a run with a cold cache with the run after it."""
    source = corpus(options.corpora, "small")
    for ending, dpi in (("pdf", None), ("png", 150)):
        with tempfile.TemporaryDirectory() as folder:
            commands = {
                name: command(source, f"{folder}/out.{ending}", dpi)
                for name, command, kinds in programs(options.tool)
                if ending in kinds
            }
            files = {name: files_of(command) for name, command in commands.items()}
            first, second = {name: [] for name in commands}, {name: [] for name in commands}
            for number, name in enumerate(in_turns(commands, options.runs, options)):
                environment = dict(os.environ, XDG_CACHE_HOME=f"{folder}/cache-{number}")
                os.mkdir(environment["XDG_CACHE_HOME"])
                os.sync()  # dirty pages cannot be dropped
                forget(files[name])
                first[name].append(Run(commands[name], environment))
                second[name].append(Run(commands[name], environment))
            print(f"\nA drawing of 1 KB to {ending.upper()}: page cache given up, no index of fonts; and once more\n")
            print("| program | first: wall s | CPU s | second: wall s | CPU s | first wall, times orvprint |")
            print("|---|---|---|---|---|---|")
            for name in commands:
                figures = [median([getattr(run, what) for run in runs[name]]) for runs in (first, second) for what in ("wall", "cpu")]
                ratio = median([a.wall / b.wall for a, b in zip(first[name], first["orvprint"])])
                print(f"| {name} | " + " | ".join(f"{figure:.4f}" for figure in figures) + f" | {ratio:.2f} |")


def growth(options):
    """Prints how time and memory grow with the document. The exponents should be 1."""
    families = {
        "shapes": [("shapes-1k", 1), ("shapes-10k", 10), ("shapes-100k", 100), ("shapes-1m", 1000)],
        "paths": [("paths-20", 1), ("paths-200", 10), ("paths-2000", 100)],
        "texts": [("texts-200", 1), ("texts-2k", 10), ("texts-20k", 100)],
        "uses": [("uses-1k", 1), ("uses-10k", 10), ("uses-100k", 100)],
        "colours": [("colours-10k", 1), ("colours-100k", 10), ("colours-1m", 100)],
        "families": [("families-1", 1), ("families-50", 50)],
        "nesting": [("groups-10", 1), ("groups-100", 10), ("groups-1000", 100)],
        "identifiers": [("identifiers-1k", 1), ("identifiers-10k", 10), ("identifiers-100k", 100)],
    }
    print("\nGrowth of orvprint to PDF: CPU seconds and memory, and the exponent of the time from step to step\n")
    print("| document | CPU s | memory MB | exponent |")
    print("|---|---|---|---|")
    with tempfile.TemporaryDirectory() as folder:
        base = median([Run([options.tool, "--version"]).cpu for _ in range(options.runs)])
        for steps in families.values():
            before = None
            for name, size in steps:
                source = corpus(options.corpora, name)
                runs = [Run([options.tool, source, "-o", f"{folder}/out.pdf"]) for _ in range(options.runs)]
                cpu = median([run.cpu for run in runs])
                exponent = ""
                if before and cpu - base > 0.02:  # smaller times are dominated by the clock's resolution
                    exponent = f"{math.log((cpu - base) / max(before[0] - base, 1e-3)) / math.log(size / before[1]):.2f}"
                print(f"| {name} | {cpu:.3f} | {median([run.memory for run in runs]):.0f} | {exponent} |")
                before = (cpu, size)


def typical(options):
    """Converts many drawings of common sizes, one process each."""
    folder = corpus(options.corpora, "typical")
    drawings = sorted(str(path) for path in Path(folder).glob("*.svg"))[:: max(1, 500 // options.drawings)]
    print(f"\n{len(drawings)} typical drawings of 5 to 200 KB to PDF, a process each\n")
    print("| program | wall s | CPU s | largest memory MB | wall, times orvprint |")
    print("|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as target:
        totals = {}
        kinds = [(name, command) for name, command, formats in programs(options.tool) if "pdf" in formats]
        order = random.Random(options.seed)
        for drawing in drawings:
            for name, command in order.sample(kinds, len(kinds)):
                totals.setdefault(name, []).append(Run(command(drawing, f"{target}/out.pdf", None)))
        ours = sum(run.wall for run in totals["orvprint"])
        for name, runs in totals.items():
            wall = sum(run.wall for run in runs)
            print(
                f"| {name} | {wall:.2f} | {sum(run.cpu for run in runs):.2f} | {max(run.memory for run in runs):.0f} | {wall / ours:.2f} |"
            )


def take_turns(commands, options):
    """Runs commands in turn. @return the least CPU seconds and the least MB of each name"""
    runs = {name: [] for name in commands}
    for name in in_turns(commands, options.runs, options):
        run = Run(commands[name])
        if run.code != 0:
            sys.exit(f"{' '.join(commands[name])}: {run.errors.strip()[:200]}")
        runs[name].append(run)
    return {name: (min(run.cpu for run in own), min(run.memory for run in own)) for name, own in runs.items()}


def standard(options):
    """Compares the interpreter of standard SVG with the default one and with other programs."""
    with tempfile.TemporaryDirectory() as folder:
        print("\nStandard SVG and the default interpreter: least CPU seconds, MB, and ratios\n")
        print("| document | SVG | SVG2 | CPU ratio | memory ratio |")
        print("|---|---|---|---|---|")
        documents = [("100,000 shapes", "shapes-100k"), ("100,000 uses", "uses-100k"), ("20,000 texts", "texts-20k")]
        for title, name in documents:
            source = corpus(options.corpora, name)
            for target, dpi in (("pdf", []), ("png", ["--dpi", "150"])):
                command = lambda which: [options.tool, "--quiet", "--interpreter", which, source, "-o", f"{folder}/{which}.{target}", *dpi]
                found = take_turns({which: command(which) for which in ("svg", "svg2")}, options)
                (first, first_memory), (second, second_memory) = found["svg"], found["svg2"]
                print(
                    f"| {title}, {target.upper()} | {first:.3f} s, {first_memory:.0f} MB | {second:.3f} s, {second_memory:.0f} MB | "
                    f"{second / first:.2f} | {second_memory / first_memory:.2f} |"
                )
        print("\nStandard SVG and other programs, PNG at 150 dpi: least CPU seconds and MB\n")
        print("| document | orvprint | rsvg-convert | resvg in node, less an empty process |")
        print("|---|---|---|---|")
        zoom = str(150 / 96)
        for title, name in [("1,000 gradients", "gradients-1k"), ("1,000 masked groups", "masks-1k"), ("1,000 clipped groups", "clips-1k")]:
            source = corpus(options.corpora, name)
            commands = {"orvprint": [options.tool, "--quiet", "--interpreter", "svg2", source, "-o", f"{folder}/a.png", "--dpi", "150"]}
            if shutil.which("rsvg-convert"):
                commands["rsvg"] = ["rsvg-convert", "--unlimited", "-z", zoom, "-o", f"{folder}/b.png", source]
            if shutil.which("node") and RESVG.is_dir():
                commands["resvg"] = ["node", str(HERE / "resvg.cjs"), str(RESVG), source, f"{folder}/c.png", zoom]
                commands["node"] = ["node", "-e", f"require({str(RESVG)!r})"]
            found = take_turns(commands, options)
            if "node" in found:
                found["resvg"] = (found["resvg"][0] - found["node"][0], found["resvg"][1] - found["node"][1])
            cell = lambda program: "" if program not in found else (
                f"{found[program][0]:.3f} s, {found[program][1]:.0f} MB"
                + ("" if program == "orvprint" else f" (orvprint takes {found['orvprint'][0] / max(found[program][0], 1e-3):.2f} times its CPU)")
            )
            print(f"| {title} | {cell('orvprint')} | {cell('rsvg')} | {cell('resvg')} |")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", default=str(HERE.parent / "build/release/bin/orvprint"))
    parser.add_argument("--corpora", default=str(HERE.parent / "build/bench/corpora"))
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--drawings", type=int, default=500, help="how many of the typical drawings")
    parser.add_argument("--seed", type=int, default=1, help="of the order of programs within a turn")
    parser.add_argument("sections", nargs="*", metavar="SECTION")
    options = parser.parse_args()
    known = ["small", "cold", "pdf", "png150", "png600", "typical", "growth", "standard"]
    wanted = options.sections or known
    if unknown := set(wanted) - set(known):
        parser.error(f"no such section: {', '.join(sorted(unknown))}")
    if not os.access(options.tool, os.X_OK):
        parser.error(f"{options.tool} is not there; ./dev build makes it")

    print(f"{time.strftime('%Y-%m-%d')}, {os.cpu_count()} cores, median of {options.runs} turns")
    if any(name == "resvg in node" for name, _, _ in programs(options.tool)):
        empty = [Run(["node", "-e", f"require({str(RESVG)!r})"]) for _ in range(options.runs)]
        print(
            f"A process of node with resvg loaded and nothing drawn: {median([run.wall for run in empty]):.3f} s, "
            f"{median([run.memory for run in empty]):.0f} MB"
        )
    large = [("100,000 shapes", "shapes-100k"), ("2,000 paths of 2,000 points", "paths-2000"), ("20,000 texts", "texts-20k")]
    if "small" in wanted:
        compare("A drawing of 1 KB to PDF", corpus(options.corpora, "small"), "pdf", None, options)
        compare("A drawing of 1 KB to PNG at 150 dpi", corpus(options.corpora, "small"), "png", 150, options)
    if "cold" in wanted:
        cold(options)
    if "pdf" in wanted:
        for title, name in [*large, ("200 nested groups", "groups-200")]:
            compare(f"{title} to PDF", corpus(options.corpora, name), "pdf", None, options)
        # The default interpreter fills what is used with the colour of the use element, not with that of its content.
        uses = corpus(options.corpora, "uses-100k")
        compare("100,000 uses of 10,000 definitions to PDF, as standard SVG", uses, "pdf", None, options, "svg2")
    for dpi in (150, 600):
        if f"png{dpi}" in wanted:
            for title, name in large:
                compare(f"{title} to PNG at {dpi} dpi", corpus(options.corpora, name), "png", dpi, options)
    if "typical" in wanted:
        typical(options)
    if "growth" in wanted:
        growth(options)
    if "standard" in wanted:
        standard(options)
    if Failures.count:
        sys.exit(f"{Failures.count} pages were not what they should be; see above")


if __name__ == "__main__":
    main()
