#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Groups sources that can be compiled as one.

    cmake/joined_sources.py SOURCE...

Prints a line "GROUP SOURCE" each. Two sources that define the same name outside of classes and functions never share a
group: such names are mostly local to their sources, and would be defined twice. What counts as a name is read generously.
"""

import re
import sys
from pathlib import Path

MOST_LINES = 1600  # of a group: larger ones leave processors idle at the end of a build
# Definitions begin in the first column, whatever namespace they stand in.
DEFINITION = re.compile(
    r"^(?:#define\s+(\w+)"
    r"|(?:struct|class|enum(?: class)?|union)\s+(\w+)[^;()\n]*$"
    r"|(?:using|namespace)\s+(\w+)\s*="
    r"|(?!using |return |friend |typedef |namespace |extern |template|static_assert)"
    r"[A-Za-z_][\w:<>,*& \[\]]*?[ *&](\w+) ?[({=;\[])",
    re.MULTILINE)
# Several constants of one definition.
CONSTANT = re.compile(r"\b(k[A-Z]\w*)(?:\[\w*\])? ?[={]")


def names_of(text):
    names = {name for match in DEFINITION.finditer(text) for name in match.groups() if name}
    return names.union(CONSTANT.findall(text))


def main():
    groups = []  # of the lines in it and the names that its sources define
    for source in sys.argv[1:]:
        text = Path(source).read_text()
        names, lines = names_of(text), text.count("\n")
        for number, (taken_lines, taken) in enumerate(groups):
            if taken_lines + lines <= MOST_LINES and taken.isdisjoint(names):
                break
        else:
            number = len(groups)
            groups.append((0, set()))
        groups[number] = (groups[number][0] + lines, groups[number][1] | names)
        print(f"{number} {source}")


if __name__ == "__main__":
    main()
