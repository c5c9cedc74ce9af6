#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints the sources to lint after a change, one per line.

    tests/lint_selection.py [--product] [--most N]
    tests/lint_selection.py --headers

Selects sources that differ from where the branch left main, or from the previous commit if there is no branch; and for
each header that differs, sources that include it. With --most, changed sources come first, then one source for each
header, then the others; the number of sources left out is printed on standard error. Without a history, selects all
sources. With --headers, prints only the headers that differ.
"""

import argparse
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FOLDERS = ["apps", "bench", "fuzz", "generators", "library", "platform", "interpreters", "tests", "examples"]
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)


def git(*arguments):
    done = subprocess.run(["git", "-C", str(ROOT), *arguments], capture_output=True, text=True)
    return done.stdout.strip() if done.returncode == 0 else ""


def base():
    head = git("rev-parse", "HEAD")
    for main in ("origin/HEAD", "origin/main", "main"):
        common = git("merge-base", "HEAD", main)
        if common and common != head:
            return common
    return git("rev-parse", "--verify", "-q", "HEAD^")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--most", type=int)
    parser.add_argument("--product", action="store_true", help="neither tests, fuzzers nor benchmarks")
    parser.add_argument("--headers", action="store_true", help="only headers that differ")
    options = parser.parse_args()

    files = {str(path.relative_to(ROOT)): path for folder in FOLDERS for kind in ("*.cpp", "*.h")
             for path in (ROOT / folder).rglob(kind)}
    sources = sorted(name for name in files if name.endswith(".cpp"))
    start = base()
    if start:
        differing = git("diff", "--name-only", "--diff-filter=d", start).splitlines()
        differing += git("ls-files", "-o", "--exclude-standard").splitlines()
        changed = [name for name in sources if name in differing]
    else:
        differing, changed = list(files), sources
    changed_headers = sorted(name for name in files if name.endswith(".h") and name in differing)
    if options.headers:
        print(*changed_headers, sep="\n", end="\n" if changed_headers else "")
        return

    includers = {}
    for name, path in files.items():
        for header in INCLUDE.findall(path.read_text(errors="replace")):
            includers.setdefault(header, []).append(name)

    def sources_of(header):
        """Returns sources that include a header directly; if there are none, those that do through other headers."""
        seen, waiting = {header}, [header]
        while waiting:
            names = sorted(name for one in waiting for name in includers.get(one, ()))
            direct = [name for name in names if name.endswith(".cpp")]
            if direct:
                return direct
            waiting = [name for name in names if name not in seen]
            seen.update(waiting)
        return []

    first, others = [], []
    for header in changed_headers:
        found = sources_of(header)
        if found and not any(name in changed or name in first for name in found):
            first.append(found[0])
        others += found
    # The sources in examples/api are compiled against an installation, by the tests.
    chosen = [name for name in dict.fromkeys([*changed, *first, *others]) if not name.startswith("examples/api/")]
    if options.product:
        chosen = [name for name in chosen if name.split("/")[0] not in ("tests", "fuzz", "bench")]
    if options.most and len(chosen) > options.most:
        print(f"lint: {len(chosen) - options.most} of {len(chosen)} sources are left to ./dev lint all", file=sys.stderr)
        chosen = chosen[:options.most]
    for name in chosen:
        print(name)


if __name__ == "__main__":
    main()
