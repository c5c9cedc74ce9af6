#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Maintains the feature tree: documents with one fact each, and reference images of their pages.

    feature_tree.py --tool ORVPRINT draw [--again] [PATH...]   draws missing reference images; with --again, all
    feature_tree.py --tool ORVPRINT sheet FILE.png [PATH...]   draws pages of all programs side by side, for review
    feature_tree.py --tool ORVPRINT agree [PATH...]            updates agreement.txt

PATH is a folder or a document in the tree; default: all documents. Each --also NAME=COMMAND adds a program besides
rsvg-convert: COMMAND is run with pairs of document and PNG file as arguments.
"""
import argparse
import os
import shlex
import subprocess
import sys
import tempfile

from PIL import Image, ImageChops, ImageDraw, ImageFilter

TREE = os.path.dirname(os.path.abspath(__file__))
BESIDE = "files"  # name of folders with files that documents refer to
WIDEST = 100  # maximum width of a reference image in pixels
HEAD = """# Which other programs draw a document of the tree as its reference shows it. Written by feature_tree.py.
# Edges and letters may differ a little; "none" is where orvprint follows the standard, or its own documentation, alone.
"""


def documents(paths):
    """Returns the paths of documents, relative to the tree and without extension."""
    found = []
    for path in paths or [TREE]:
        path = os.path.abspath(path)
        if not os.path.isdir(path):
            found.append(path)
        for folder, folders, files in os.walk(path):
            folders[:] = [name for name in folders if name != BESIDE]
            found += [os.path.join(folder, name) for name in files if name.endswith(".svg")]
    return sorted(os.path.splitext(os.path.relpath(path, TREE))[0] for path in found)


def source(path):
    return os.path.join(TREE, path + ".svg")


def reference(path):
    return os.path.join(TREE, path + ".png")


def run_tool(tool, path, output, dpi):
    command = [tool, source(path), "-o", output, "--pages", "1", "--interpreter", "svg2", "--quiet", "--dpi", str(dpi)]
    done = subprocess.run(command, capture_output=True, text=True, timeout=60)
    if done.returncode:
        print(done.stderr.strip(), file=sys.stderr)
    return done.returncode == 0


def draw_page(tool, path, output):
    """Draws the first page at 96 dots per inch, or at 48 if it is wider than a reference image may be."""
    if run_tool(tool, path, output, 96) and Image.open(output).width > WIDEST:
        run_tool(tool, path, output, 48)


def draw_others(programs, paths, folder):
    """Draws documents with other programs, to FOLDER/NUMBER.PROGRAM.png."""
    for name, command in programs:
        pairs = [word for i, path in enumerate(paths) for word in (source(path), f"{folder}/{i}.{name}.png")]
        if command:
            for start in range(0, len(pairs), 400):
                subprocess.run(shlex.split(command) + pairs[start:start + 400], timeout=600)
            continue
        for i in range(0, len(pairs), 2):
            subprocess.run(["rsvg-convert", "--background-color=white", pairs[i], "-o", pairs[i + 1]],
                           stderr=subprocess.DEVNULL, timeout=60)


def read_page(file, size=None):
    """Returns the page in a file, at half its size if it is twice as large as `size`; None if there is no file."""
    if not os.path.exists(file) or os.path.getsize(file) == 0:
        return None
    image = Image.open(file).convert("RGBA")
    page = Image.new("RGB", image.size, "white")
    page.paste(image, mask=image)
    if size and page.size != size and max(abs(page.width - 2 * size[0]), abs(page.height - 2 * size[1])) <= 1:
        page = page.resize(size, Image.Resampling.BOX)
    return page


def agrees(page, expected):
    """Returns whether at most one percent of the pixels differ by more than antialiasing of edges explains."""
    if page is None or max(abs(page.width - expected.width), abs(page.height - expected.height)) > 1:
        return False
    if page.size != expected.size:
        page = page.crop((0, 0) + expected.size)
    soft = [image.filter(ImageFilter.BoxBlur(1)) for image in (page, expected)]
    bands = ImageChops.difference(*soft).split()
    worst = ImageChops.lighter(ImageChops.lighter(bands[0], bands[1]), bands[2])
    others = sum(worst.histogram()[41:])
    return others <= page.width * page.height // 100


def draw(arguments, paths):
    for path in paths:
        if arguments.again or not os.path.exists(reference(path)):
            draw_page(arguments.tool, path, reference(path))


def read_table():
    """Returns the rows of agreement.txt whose documents still exist."""
    with open(os.path.join(TREE, "agreement.txt"), encoding="utf-8") as table:
        rows = [line.split(" ", 1) for line in table.read().splitlines() if line and not line.startswith("#")]
    return {path: names for path, names in rows if os.path.exists(source(path))}


def agree(arguments, paths):
    with tempfile.TemporaryDirectory() as folder:
        draw_others(arguments.programs, paths, folder)
        rows = read_table()
        for i, path in enumerate(paths):
            expected = read_page(reference(path))
            if expected is None:
                print(f"{path}: no reference", file=sys.stderr)
                continue
            names = [name for name, _ in arguments.programs
                     if agrees(read_page(f"{folder}/{i}.{name}.png", expected.size), expected)]
            rows[path] = ' '.join(names) or 'none'
    with open(os.path.join(TREE, "agreement.txt"), "w", encoding="utf-8") as table:
        table.write(HEAD + "".join(f"{path} {names}\n" for path, names in sorted(rows.items())))


def sheet(arguments, paths):
    cell, gap, columns = 100, 14, 4
    programs = [("orvprint", "")] + arguments.programs
    wide, high = (cell + 2) * len(programs) + 8, cell + gap
    page = Image.new("RGB", (wide * columns, high * -(-len(paths) // columns)), "#ccc")
    pen = ImageDraw.Draw(page)
    with tempfile.TemporaryDirectory() as folder:
        draw_others(arguments.programs, paths, folder)
        for i, path in enumerate(paths):
            x, y = i % columns * wide, i // columns * high
            draw_page(arguments.tool, path, f"{folder}/{i}.orvprint.png")
            own = read_page(f"{folder}/{i}.orvprint.png")
            odd = False
            for place, (name, _) in enumerate(programs):
                image = read_page(f"{folder}/{i}.{name}.png", own.size if own else None)
                odd = odd or not (own and agrees(image, own))
                if image:
                    image.thumbnail((cell, cell))
                    page.paste(image, (x + place * (cell + 2), y + gap))
            pen.text((x, y), "/".join(path.split("/")[1:])[-52:], fill="#c00" if odd else "#000")
    page.save(arguments.file)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--tool", required=True)
    parser.add_argument("--also", action="append", default=[], metavar="NAME=COMMAND")
    commands = parser.add_subparsers(dest="command", required=True)
    one = commands.add_parser("draw")
    one.add_argument("--again", action="store_true")
    one.add_argument("paths", nargs="*")
    one = commands.add_parser("sheet")
    one.add_argument("file")
    one.add_argument("paths", nargs="*")
    one = commands.add_parser("agree")
    one.add_argument("paths", nargs="*")
    arguments = parser.parse_args()
    arguments.programs = [("librsvg", "")] + [tuple(text.split("=", 1)) for text in arguments.also]
    {"draw": draw, "sheet": sheet, "agree": agree}[arguments.command](arguments, documents(arguments.paths))


if __name__ == "__main__":
    main()
