#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the documents for the comparisons of whole processes. The same arguments give the same bytes.

    bench/corpora.py FOLDER [NAME...]      default: all
    bench/corpora.py --list
"""

import random
import sys
from pathlib import Path

HEAD = (
    '<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
    'width="{0}" height="{1}" viewBox="0 0 {0} {1}">\n'
)


def head(width=1000, height=1000):
    return HEAD.format(width, height)


def shape(draw, width=1000.0, height=1000.0):
    """One small shape, with elements and attributes as drawing programs write them."""
    x, y = draw.uniform(0, width), draw.uniform(0, height)
    paint = f'fill="#{draw.randrange(1 << 24):06x}" stroke="#{draw.randrange(1 << 24):06x}" stroke-width="0.5"'
    kind = draw.randrange(5)
    if kind == 0:
        return f'<rect x="{x:.2f}" y="{y:.2f}" width="{draw.uniform(1, 9):.2f}" height="{draw.uniform(1, 9):.2f}" {paint}/>\n'
    if kind == 1:
        return f'<circle cx="{x:.2f}" cy="{y:.2f}" r="{draw.uniform(1, 5):.2f}" {paint}/>\n'
    if kind == 2:
        return (
            f'<line x1="{x:.2f}" y1="{y:.2f}" x2="{x + draw.uniform(-9, 9):.2f}" '
            f'y2="{y + draw.uniform(-9, 9):.2f}" stroke="#{draw.randrange(1 << 24):06x}" stroke-width="0.7"/>\n'
        )
    if kind == 3:
        points = " ".join(f"{x + draw.uniform(-6, 6):.2f},{y + draw.uniform(-6, 6):.2f}" for _ in range(4))
        return f'<polygon points="{points}" {paint}/>\n'
    return (
        f'<path d="M{x:.2f} {y:.2f}c{draw.uniform(-5, 5):.2f} {draw.uniform(-5, 5):.2f} '
        f'{draw.uniform(-5, 5):.2f} {draw.uniform(-5, 5):.2f} {draw.uniform(-5, 5):.2f} {draw.uniform(-5, 5):.2f}z" '
        f'style="fill:#{draw.randrange(1 << 24):06x};stroke:none"/>\n'
    )


def shapes(count):
    def write(file):
        draw = random.Random(1)
        file.write(head())
        for _ in range(count):
            file.write(shape(draw))
        file.write("</svg>\n")

    return write


def paths(count, points):
    def write(file):
        draw = random.Random(2)
        file.write(head())
        for _ in range(count):
            x, y = draw.uniform(100, 900), draw.uniform(100, 900)
            data = [f"M{x:.3f},{y:.3f}"]
            for _ in range(points - 1):
                x = min(max(x + draw.uniform(-3, 3), 0), 1000)
                y = min(max(y + draw.uniform(-3, 3), 0), 1000)
                data.append(f"L{x:.2f},{y:.2f}")
            colour = draw.randrange(1 << 24)
            file.write(f'<path fill="none" stroke="#{colour:06x}" stroke-width="0.3" d="{"".join(data)}"/>\n')
        file.write("</svg>\n")

    return write


WORDS = (
    "valve pump tank sensor flange bearing shaft motor relay cable drawing section detail scale material "
    "tolerance surface thread bolt washer housing cover seal spring 12.5 45° Ø30 ±0.1 R5 M8×1.25"
).split()


FAMILIES = ("sans-serif", "Liberation Serif, serif", "DejaVu Sans, sans-serif", "monospace")


def texts(count, families=FAMILIES):
    def write(file):
        draw = random.Random(3)
        file.write(head())
        for _ in range(count):
            line = " ".join(draw.choice(WORDS) for _ in range(draw.randrange(1, 6)))
            family = draw.choice(families)
            file.write(
                f'<text x="{draw.uniform(0, 900):.2f}" y="{draw.uniform(10, 1000):.2f}" '
                f'font-family="{family}" font-size="{draw.choice((6, 8, 10, 12))}" fill="#202020">{line}</text>\n'
            )
        file.write("</svg>\n")

    return write


def nested(depth, leaves):
    def write(file):
        draw = random.Random(4)
        file.write(head())
        for level in range(depth):
            file.write(f'<g id="g{level}" transform="translate(0.5,0.5)">\n')
            for _ in range(leaves):
                file.write(shape(draw))
        file.write("</g>" * depth + "</svg>\n")

    return write


def uses(count, definitions):
    def write(file):
        draw = random.Random(5)
        file.write(head() + "<defs>\n")
        for number in range(definitions):
            file.write(
                f'<g id="d{number}"><rect width="6" height="4" fill="#{draw.randrange(1 << 24):06x}"/>'
                f'<circle cx="3" cy="2" r="{draw.uniform(0.5, 2):.2f}" fill="none" stroke="black" stroke-width="0.3"/></g>\n'
            )
        file.write("</defs>\n")
        for _ in range(count):
            file.write(
                f'<use xlink:href="#d{draw.randrange(definitions)}" x="{draw.uniform(0, 990):.2f}" y="{draw.uniform(0, 990):.2f}"/>\n'
            )
        file.write("</svg>\n")

    return write


def filled_by_gradients(count):
    """Shapes, each with its own gradient in objectBoundingBox units, alternately linear and radial."""

    def write(file):
        draw = random.Random(7)
        colour = lambda: f"#{draw.randrange(1 << 24):06x}"
        file.write(head() + "<defs>\n")
        for number in range(count):
            stops = f'<stop offset="0" stop-color="{colour()}"/><stop offset="1" stop-color="{colour()}" stop-opacity="0.7"/>'
            kind = ("linearGradient", ' x2="1" y2="1"') if number % 2 else ("radialGradient", ' fx="0.3"')
            file.write(f'<{kind[0]} id="g{number}"{kind[1]}>{stops}</{kind[0]}>\n')
        file.write("</defs>\n")
        for number in range(count):
            file.write(
                f'<rect x="{draw.uniform(0, 900):.1f}" y="{draw.uniform(0, 900):.1f}" width="{draw.uniform(20, 100):.1f}" '
                f'height="{draw.uniform(20, 100):.1f}" rx="5" fill="url(#g{number})"/>\n'
            )
        file.write("</svg>\n")

    return write


def cut_groups(count, element, attribute):
    """Groups of two shapes, each with one of 100 circular masks or clips in objectBoundingBox units."""

    def write(file):
        draw = random.Random(8)
        file.write(head() + "<defs>\n")
        units = f"{element}ContentUnits" if element == "mask" else f"{element}Units"
        for number in range(100):
            file.write(
                f'<{element} id="c{number}" {units}="objectBoundingBox">'
                f'<circle cx="0.5" cy="0.5" r="{draw.uniform(0.3, 0.6):.3f}" fill="#fff" fill-opacity="0.8"/></{element}>\n'
            )
        file.write("</defs>\n")
        for number in range(count):
            x, y = draw.uniform(0, 900), draw.uniform(0, 900)
            file.write(
                f'<g {attribute}="url(#c{number % 100})"><rect x="{x:.1f}" y="{y:.1f}" width="80" height="60" fill="#8ac"/>'
                f'<path d="M{x:.1f} {y:.1f}l80 60" stroke="#235" stroke-width="4"/></g>\n'
            )
        file.write("</svg>\n")

    return write


def colours(count):
    def write(file):
        file.write(head())
        for i in range(count):
            file.write(f'<rect x="{i % 1000}" y="{i // 1000 % 1000}" width="1" height="1" fill="#{i * 16 % (1 << 24):06x}"/>\n')
        file.write("</svg>\n")

    return write


def identifiers(count):
    def write(file):
        file.write(head() + "<defs>\n")
        for i in range(count):
            file.write(f'<rect id="part-{i}" width="3" height="3" fill="#406080"/>\n')
        file.write("</defs>\n")
        for i in range(count):
            file.write(f'<use xlink:href="#part-{(i * 7919) % count}" x="{i % 997}" y="{i // 997}"/>\n')
        file.write("</svg>\n")

    return write


def typical(seed):
    """A typical office drawing: 5 to 200 KB of groups, shapes, paths and texts."""

    def write(file):
        draw = random.Random(1000 + seed)
        size = int(5_000 * 40 ** draw.random())
        file.write(head(1190, 842))
        written = 0
        while written < size:
            part = [f'<g id="part{written}" transform="translate({draw.uniform(0, 300):.1f},{draw.uniform(0, 200):.1f})">\n']
            for _ in range(draw.randrange(3, 30)):
                part.append(shape(draw, 800, 600))
            if draw.random() < 0.7:
                part.append(
                    f'<text x="{draw.uniform(0, 800):.1f}" y="{draw.uniform(10, 600):.1f}" font-family="sans-serif" '
                    f'font-size="9">{draw.choice(WORDS)} {draw.choice(WORDS)}</text>\n'
                )
            x, y = draw.uniform(0, 800), draw.uniform(0, 600)
            data = f"M{x:.1f},{y:.1f}" + "".join(
                f"l{draw.uniform(-20, 20):.1f},{draw.uniform(-20, 20):.1f}" for _ in range(draw.randrange(2, 60))
            )
            part.append(f'<path d="{data}" fill="none" stroke="black" stroke-width="0.4"/>\n</g>\n')
            text = "".join(part)
            written += len(text)
            file.write(text)
        file.write("</svg>\n")

    return write


def small():
    def write(file):
        draw = random.Random(6)
        file.write(head(200, 100))
        for _ in range(7):
            file.write(shape(draw, 200, 100))
        file.write("</svg>\n")

    return write


CORPORA = {
    "small": small(),
    "shapes-1k": shapes(1_000),
    "shapes-10k": shapes(10_000),
    "shapes-100k": shapes(100_000),
    "shapes-1m": shapes(1_000_000),
    "paths-20": paths(20, 2_000),
    "paths-200": paths(200, 2_000),
    "paths-2000": paths(2_000, 2_000),
    "texts-200": texts(200),
    "texts-2k": texts(2_000),
    "texts-20k": texts(20_000),
    # Families that are not installed, so that each needs a search.
    "families-1": texts(20_000, ["Family 0, sans-serif"]),
    "families-50": texts(20_000, [f"Family {i}, sans-serif" for i in range(50)]),
    "groups-10": nested(10, 50),
    "groups-100": nested(100, 50),
    "groups-200": nested(200, 50),
    "groups-1000": nested(1000, 50),
    "uses-1k": uses(1_000, 100),
    "uses-10k": uses(10_000, 1_000),
    "uses-100k": uses(100_000, 10_000),
    "colours-10k": colours(10_000),
    "colours-100k": colours(100_000),
    "colours-1m": colours(1_000_000),
    "gradients-1k": filled_by_gradients(1_000),
    "masks-1k": cut_groups(1_000, "mask", "mask"),
    "clips-1k": cut_groups(1_000, "clipPath", "clip-path"),
    "identifiers-1k": identifiers(1_000),
    "identifiers-10k": identifiers(10_000),
    "identifiers-100k": identifiers(100_000),
}


def main():
    if len(sys.argv) < 2 or sys.argv[1] == "--list":
        print("\n".join([*CORPORA, "typical"]))
        return
    if sys.argv[1].startswith("-"):
        print(__doc__.strip())
        return
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name in sys.argv[2:] or [*CORPORA, "typical"]:
        if name == "typical":
            (folder / "typical").mkdir(exist_ok=True)
            targets = [(folder / "typical" / f"{i:03}.svg", typical(i)) for i in range(500)]
        else:
            targets = [(folder / f"{name}.svg", CORPORA[name])]
        for path, write in targets:
            if path.exists():
                continue
            unfinished = path.with_suffix(".part")
            with open(unfinished, "w", encoding="utf-8") as file:
                write(file)
            unfinished.rename(path)


if __name__ == "__main__":
    main()
