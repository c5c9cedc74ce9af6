#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Reports the share of lines that the tests ran, and requires a minimum for each part of the tree.

    tests/line_coverage.py [--html] BUILD-FOLDER

Reads the counts that `./dev coverage` collected (BUILD-FOLDER/counts). Exits with 1 if a part is below its minimum.
"""

import collections
import json
import os
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
# Thresholds in percent: the coverage reached, rounded down. Raise them when it grows.
FLOORS = {"interpreters/svg": 98, "interpreters/svg2": 93, "platform": 94, "generators": 97, "library": 94, "apps": 94}
LONGEST_LIST = 20


def llvm(tool, *arguments):
    return subprocess.run([f"llvm-{tool}-14", *map(str, arguments)], check=True, capture_output=True, text=True).stdout


def counted_images(build):
    """Returns the programs and libraries that have counts, in files named after them."""
    names = {path.stem for path in (build / "counts").glob("*.profraw")}
    return [path for folder in ("bin", "lib") for path in sorted((build / folder).iterdir()) if path.name in names]


def main():
    build = Path(sys.argv[-1]).resolve()
    images = counted_images(build)
    if not images:
        sys.exit(f"line_coverage: nothing was counted in {build}")
    counts = build / "counts" / "all.profdata"
    llvm("profdata", "merge", "-sparse", *sorted((build / "counts").glob("*.profraw")), "-o", counts)
    objects = [images[0], *(f"-object={image}" for image in images[1:])]
    shared = [*objects, f"-instr-profile={counts}", f"-num-threads={os.cpu_count()}",
              r"-ignore-filename-regex=/(tests|fuzz|bench)/|^/usr/"]

    lines, ran, gaps = collections.Counter(), collections.Counter(), []
    for file in json.loads(llvm("cov", "export", *shared, "-summary-only"))["data"][0]["files"]:
        name = Path(file["filename"]).relative_to(ROOT)
        summary = file["summary"]["lines"]
        part = next((part for part in FLOORS if name.is_relative_to(part)), name.parts[0])
        lines[part] += summary["count"]
        ran[part] += summary["covered"]
        if summary["count"] > summary["covered"]:
            gaps.append((summary["count"] - summary["covered"], summary["count"], str(name)))

    print("Files with the most lines that no test runs:")
    for missing, count, name in sorted(gaps, key=lambda gap: (-gap[0], gap[2]))[:LONGEST_LIST]:
        print(f"{missing:5} of {count:4}  {name}")
    below = []
    for part, floor in FLOORS.items():
        percent = 100 * ran[part] / lines[part] if lines[part] else 0
        print(f"{part:17} {ran[part]:6} of {lines[part]:6} lines, {percent:.2f} % (at least {floor})")
        if percent < floor:
            below.append(part)
    if "--html" in sys.argv:
        llvm("cov", "show", *shared, "-format=html", f"-output-dir={build / 'report'}")
        print(f"Line by line: {build / 'report' / 'index.html'}")
    if below:
        sys.exit(f"too many lines that no test runs: {', '.join(below)}; ./dev coverage --html shows them")


if __name__ == "__main__":
    main()
