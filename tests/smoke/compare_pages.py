# SPDX-License-Identifier: Apache-2.0
"""How far a page is from what another renderer shows, for documents of which the check says nothing.

What is printed wrong without a word, up to a page that is blank, shows as a difference. Edges are smoothed otherwise and
fonts hinted otherwise everywhere, so that small differences say nothing: what counts is the mean over the page. Documents
that differ by more, for a reason that is known, stand by name in known_differences.txt. Needs python3-pil.
"""

from pathlib import Path

from PIL import Image, ImageChops, ImageStat

KNOWN = Path(__file__).resolve().parent / "known_differences.txt"
LONGEST_SIDE = 400  # pixels
UNITS_PER_INCH = 90
# Percent of the whole range: of a document that is not known (0.80 was measured), and over all that are not (0.022).
MOST_OF_ONE = 1.0
MOST_OF_ALL = 0.05
FEWEST_FOR_A_MEAN = 20
DONE = 0


def known_differences():
    """File name to the most that it may differ, in percent."""
    rows = [line.split(None, 2) for line in KNOWN.read_text().splitlines() if line and not line.startswith("#")]
    return {name: float(most) for name, most, _ in rows}


def is_known(name):
    return name in known_differences()


def fault_of(name, difference):
    """What is wrong with a difference; nothing where all is well."""
    most = known_differences().get(name, MOST_OF_ONE)
    if difference is None or difference <= most:
        return ""
    return f"differs by {difference:.2f} % from what rsvg-convert shows, more than {most} %, and the check says nothing"


def opened(path, size=None):
    with Image.open(path) as image:
        page = Image.new("RGBA", image.size, "white")
        page.alpha_composite(image.convert("RGBA"))
    page = page.convert("RGB")
    return page.resize(size, Image.BILINEAR) if size and page.size != size else page


def is_blank(page):
    """Whether nothing but one colour is there, or next to nothing else."""
    return all(most - least < 8 for least, most in page.getextrema())


def difference(tool, document, folder, run):
    """The mean difference of the first page in percent. None where there is nothing to compare: nothing is
    printed, or the other renderer refuses. `run` runs a command and gives its code."""
    page, other = Path(folder) / "compared.png", Path(folder) / "other.png"
    if run([tool, str(document), "-o", str(page), "--pages", "1"]) != DONE:
        return None
    # Large enough that a page's size in whole pixels is near to its size, whichever way it was rounded.
    with Image.open(page) as image:
        dpi = UNITS_PER_INCH * LONGEST_SIDE / max(image.size)
    if run([tool, str(document), "-o", str(page), "--pages", "1", "--dpi", f"{dpi:.6f}"]) != DONE:
        return None
    own = opened(page)
    width, height = own.size
    # The same number of pixels: a unit is 1/90 inch here, 1/96 inch there, and of no account.
    if run(["rsvg-convert", "-w", str(width), "-h", str(height), "-b", "white", str(document), "-o", str(other)]) != 0:
        return None
    if not other.is_file():
        return None
    other_page = opened(other, own.size)
    # Little may be drawn, and all of it be lost.
    if is_blank(own) and not is_blank(other_page):
        return 100.0
    means = ImageStat.Stat(ImageChops.difference(own, other_page)).mean
    return 100 * sum(means) / len(means) / 255
