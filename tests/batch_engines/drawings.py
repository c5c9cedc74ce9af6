# SPDX-License-Identifier: Apache-2.0
"""Generates small drawings of many kinds. They are always the same, and a few are broken."""

import random

FOLDERS = 20
BROKEN_EVERY = 997  # drawings

BROKEN = [
    ("<svg width='90' height='90'>\n <g><rect width='9' height='9'/></svg>\n", "elements that do not match"),
    ("", "an empty file"),
    ("no drawing\n", "no XML"),
    ("<html><p>a page</p></html>\n", "no svg element"),
]


def colour(chance):
    return f"#{chance.randrange(1 << 24):06x}"


def rectangles(chance, size):
    return "".join(f"<rect x='{chance.randrange(size)}' y='{chance.randrange(size)}' "
                   f"width='{chance.randrange(1, 60)}' height='{chance.randrange(1, 60)}' fill='{colour(chance)}'/>\n"
                   for _ in range(chance.randrange(3, 25)))


def circles(chance, size):
    return "".join(f"<circle cx='{chance.randrange(size)}' cy='{chance.randrange(size)}' "
                   f"r='{chance.randrange(1, 30)}' fill='none' stroke='{colour(chance)}'/>\n"
                   for _ in range(chance.randrange(3, 25)))


def path(chance, size):
    steps = "".join(f"L{chance.uniform(0, size):.2f} {chance.uniform(0, size):.2f}"
                    for _ in range(chance.randrange(10, 80)))
    curve = " ".join(f"{chance.uniform(0, size):.1f}" for _ in range(6))
    return (f"<path d='M0 0{steps}' fill='none' stroke='{colour(chance)}'/>\n"
            f"<path d='M0 0C{curve}' fill='{colour(chance)}'/>\n")


def words(chance, size):
    letters = "abcdefghijklmnopqrstuvwxyzäöü"
    lines = []
    for line in range(chance.randrange(1, 5)):
        text = "".join(chance.choice(letters) for _ in range(chance.randrange(3, 30)))
        lines.append(f"<text x='5' y='{20 + 14 * line}' font-size='{chance.choice([9, 11, 14])}' "
                     f"font-family='{chance.choice(['Liberation Sans', 'DejaVu Sans'])}'>{text}</text>\n")
    return "".join(lines)


def groups(chance, size):
    inner = rectangles(chance, 60)
    return "".join(f"<g transform='translate({chance.randrange(size)} {chance.randrange(size)}) "
                   f"rotate({chance.randrange(360)})'>{inner}</g>\n" for _ in range(chance.randrange(1, 4)))


KINDS = [rectangles, circles, path, words, groups]


def drawing(number):
    if number % BROKEN_EVERY == BROKEN_EVERY - 1:
        return BROKEN[number // BROKEN_EVERY % len(BROKEN)][0]
    chance = random.Random(number)
    size = chance.randrange(100, 800)
    content = "".join(chance.choice(KINDS)(chance, size) for _ in range(2))
    return (f"<svg xmlns='http://www.w3.org/2000/svg' width='{size}' height='{size}'>\n"
            f"<title>Drawing {number}</title>\n{content}</svg>\n")


def make(folder, count):
    """Writes drawings to folders below `folder`. Returns their paths relative to it."""
    names = []
    for number in range(count):
        name = f"drawings/{number % FOLDERS:02}/{number:05}.svg"
        target = folder / name
        if number < FOLDERS:
            target.parent.mkdir(parents=True)
        target.write_text(drawing(number), encoding="utf-8")
        names.append(name)
    return names
