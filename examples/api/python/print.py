#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Lists the pages of a drawing and renders them: print.py DRAWING OUTPUT [KEY=VALUE]..."""

import sys

import orvprint


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    drawing, output, *options = sys.argv[1:]
    try:
        with orvprint.open(drawing) as document:
            for number, page in enumerate(document.pages, 1):
                print(f'page {number}: {page.width:.1f} x {page.height:.1f} pt "{page.title}"')
            document.render_file(output, **dict(option.split("=", 1) for option in options))
            print(f"{document.check()['total']} findings")
    except orvprint.Error as error:
        print(error, file=sys.stderr)
        sys.exit(error.result)


if __name__ == "__main__":
    main()
