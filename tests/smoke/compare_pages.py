# SPDX-License-Identifier: Apache-2.0
"""Compares a page with another renderer's, for documents in which the check finds nothing.

Silent errors, up to a blank page, appear as differences. Renderers differ in antialiasing and hinting, so small
differences mean nothing; the mean over the page counts. Documents that differ by more for a known reason are listed in
known_differences.txt. Needs python3-pil.
"""

from pathlib import Path

from PIL import Image, ImageChops, ImageStat

KNOWN = Path(__file__).resolve().parent / "known_differences.txt"
LONGEST_SIDE = 400  # pixels
UNITS_PER_INCH = 90
# In percent of the range of colours, for documents that are not listed: for each (0.80 was measured), and for the mean
# of all (0.022).
MOST_OF_ONE = 1.0
MOST_OF_ALL = 0.05
FEWEST_FOR_A_MEAN = 20
DONE = 0


def known_differences():
    """Maps file names to the difference allowed, in percent."""
    rows = [line.split(None, 2) for line in KNOWN.read_text().splitlines() if line and not line.startswith("#")]
    return {name: float(most) for name, most, _ in rows}


def is_known(name):
    return name in known_differences()


def fault_of(name, difference):
    """Returns what is wrong with a difference; "" if nothing is."""
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
    """Returns whether the whole page has nearly the same colour."""
    return all(most - least < 8 for least, most in page.getextrema())


def difference(tool, document, folder, run):
    """Returns the mean difference of the first page in percent.

    Returns None if there is nothing to compare, because one of the programs fails. `run` runs a command and
    returns its exit code.
    """
    page, other = Path(folder) / "compared.png", Path(folder) / "other.png"
    if run([tool, str(document), "-o", str(page), "--pages", "1"]) != DONE:
        return None
    # Large enough that rounding the page to whole pixels hardly changes its size.
    with Image.open(page) as image:
        dpi = UNITS_PER_INCH * LONGEST_SIDE / max(image.size)
    if run([tool, str(document), "-o", str(page), "--pages", "1", "--dpi", f"{dpi:.6f}"]) != DONE:
        return None
    own = opened(page)
    width, height = own.size
    # The same number of pixels, because a unit is 1/90 inch here and 1/96 inch there.
    if run(["rsvg-convert", "-w", str(width), "-h", str(height), "-b", "white", str(document), "-o", str(other)]) != 0:
        return None
    if not other.is_file():
        return None
    other_page = opened(other, own.size)
    # If a drawing has little content, losing all of it hardly changes the mean.
    if is_blank(own) and not is_blank(other_page):
        return 100.0
    means = ImageStat.Stat(ImageChops.difference(own, other_page)).mean
    return 100 * sum(means) / len(means) / 255
