#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Makes hostile documents for mutated_documents.py: mutations of other documents, and bombs.

The same seed and number give the same document.
"""

import base64
import gzip
import re
import struct
import zlib

HEAD = '<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
NUMBERS = [b"0", b"-0", b"-1", b"1e308", b"-1e308", b"1e-308", b"9e999", b"nan", b"inf", b"2147483648", b"4294967296",
           b"18446744073709551616", b"1e9", b"99999", b"0.0000001", b"1e", b"-", b".", b"1e309%", b"100%", b"1in", b"5e5mm",
           b"1" * 400, b"0." + b"0" * 400 + b"1"]
NUMBER = re.compile(rb"(?<=[\"', (:])-?\d+(\.\d+)?")
ATTRIBUTE = re.compile(rb"\s([A-Za-z:-]+)=(\"[^\"]*\"|'[^']*')")
ELEMENT = re.compile(rb"<([A-Za-z]+)[^<>]*/>")
LARGEST_INPUT = 4 << 20  # bytes of a document; larger ones reveal no more


# ---- images --------------------------------------------------------------------------------------------------------


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, depth=8, colour=2, interlaced=0, rows=None):
    """Returns an image of zeros. `rows` is the number of rows actually present, by default all."""
    channels = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[colour]
    row = 1 + (width * channels * depth + 7) // 8
    packer = zlib.compressobj(9)
    data = b"".join(packer.compress(bytes(row)) for _ in range(height if rows is None else rows)) + packer.flush()
    palette = chunk(b"PLTE", bytes(3 * 256)) if colour == 3 else b""
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, interlaced)) +
            palette + chunk(b"IDAT", data) + chunk(b"IEND", b""))


def bmp(width, height, bits, compression, data):
    colours = bytes(4 << bits) if bits <= 8 else b""
    offset = 54 + len(colours)
    return (b"BM" + struct.pack("<IHHI", offset + len(data), 0, 0, offset) +
            struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, compression, len(data), 0, 0, 0, 0) + colours + data)


def noise(random, size):
    return random.getrandbits(8 * size).to_bytes(size, "little") if size else b""


def some_image(random):
    """Returns a small image of any format, one that claims to be large, or noise."""
    return random.choice([
        lambda: png(random.randint(1, 40), random.randint(1, 40), *random.choice([(8, 2), (16, 6), (1, 0), (8, 3), (4, 3)]),
                    random.randint(0, 1)),
        lambda: png(random.choice([30000, 60000, 2**31 - 1]), random.choice([30000, 2**31 - 1]), 1, 0, 0, 3),
        lambda: png(20000, 13000, 1, 0),
        lambda: bmp(random.choice([9, 40000, -5, 2**31 - 1]), random.choice([9, -9, 40000]), random.choice([1, 4, 8, 24, 32]),
                    random.choice([0, 1, 2, 3]), noise(random, 300)),
        lambda: b"\xff\xd8\xff\xc0\0\x11\x08" + struct.pack(">HH", random.choice([8, 65500]), random.choice([8, 65500])) +
        b"\x03\x01\x22\0\x02\x11\x01\x03\x11\x01" + b"\xff\xda\0\x0c\x03\x01\0\x02\x11\x03\x11\0\x3f\0" + noise(random, 200),
        lambda: noise(random, 64),
    ])()


def reference(image):
    kind = b"bmp" if image.startswith(b"BM") else b"jpeg" if image.startswith(b"\xff\xd8") else b"png"
    return b"data:image/" + kind + b";base64," + base64.b64encode(image)


# ---- mutations -----------------------------------------------------------------------------------------------------


def place(random, text):
    return random.randrange(len(text) + 1)


def pick(random, pattern, text):
    found = list(pattern.finditer(text))
    return random.choice(found) if found else None


def flip_bytes(random, text, _):
    changed = bytearray(text)
    for _ in range(random.choice([1, 1, 2, 8, 64]) if text else 0):
        changed[random.randrange(len(changed))] = random.randrange(256)
    return bytes(changed)


def cut_chunk(random, text, _):
    start = place(random, text)
    return text[:start] + text[start + random.choice([1, 2, 10, 100, 1000]):]


def cut_end(random, text, _):
    return text[:place(random, text)]


def repeat_chunk(random, text, _):
    start = place(random, text)
    piece = text[start:start + random.choice([1, 5, 50, 500])]
    return text[:start] + piece * random.choice([1, 2, 10, 1000]) + text[start:]


def splice(random, text, others):
    other = random.choice(others)
    return text[:place(random, text)] + other[place(random, other):]


def insert_from(random, text, others):
    other, at, start = random.choice(others), place(random, text), 0
    start = place(random, other)
    return text[:at] + other[start:start + random.choice([10, 100, 1000])] + text[at:]


def change_numbers(random, text, _):
    share = random.choice([0.02, 0.2, 1.0])
    return NUMBER.sub(lambda match: random.choice(NUMBERS) if random.random() < share else match[0], text)


def change_letters(random, text, _):
    found = pick(random, ATTRIBUTE, text)
    if not found or found[1].startswith(b"xmlns"):
        return text
    value = bytearray(found[2][1:-1])
    for _ in range(random.choice([1, 2, 5])):
        at = random.randrange(len(value) + 1)
        value[at:at + random.choice([0, 1, 1, 4])] = random.choice([b"", b" ", b",", b".", b"-", b"%", b"#", b"e9", b"9", b"(", b";",
                                                                    b"url(", b"z", b"A", b"M", b"\xc3\xa9"])
    return text[:found.start(2) + 1] + bytes(value) + text[found.end(2) - 1:]


def repeat_attribute(random, text, _):
    found = pick(random, ATTRIBUTE, text)
    if not found:
        return text
    many = b"".join(b" a%d=%s" % (i, found[2]) for i in range(random.choice([1, 10, 3000])))
    return text[:found.end()] + random.choice([found[0], many]) + text[found.end():]


def lengthen_value(random, text, _):
    found = pick(random, ATTRIBUTE, text)
    if not found:
        return text
    value = found[2][1:-1] or b"1"
    longer = random.choice([b" ", b",", b";", b""]).join([value] * random.choice([2, 100, 20000]))[:1 << 20]
    return text[:found.start(2)] + b'"' + longer.replace(b'"', b"") + b'"' + text[found.end(2):]


def exchange_values(random, text, _):
    one, other = pick(random, ATTRIBUTE, text), pick(random, ATTRIBUTE, text)
    if not one or one.start() >= other.start():
        return text
    return (text[:one.start(2)] + other[2] + text[one.end(2):other.start(2)] + one[2] + text[other.end(2):])


def repeat_element(random, text, _):
    found = pick(random, ELEMENT, text)
    return text[:found.start()] + found[0] * random.choice([2, 100, 20000]) + text[found.end():] if found else text


def nest(random, text, _):
    found = pick(random, ELEMENT, text)
    if not found:
        return text
    depth = random.choice([3, 200, 1000, 1020, 5000])
    tag = random.choice([b"g", b"a", b"svg", b"symbol", b"defs", b"text", b"marker", b"pattern", b"x"])
    attributes = random.choice([b"", b' opacity="0.9"', b' transform="rotate(1)"', b' id="a"', b' style="fill:red"',
                                b' viewBox="0 0 9 9" width="9" height="9"'])
    return text[:found.start()] + (b"<" + tag + attributes + b">") * depth + found[0] + \
        (b"</" + tag + b">") * depth + text[found.end():]


def redirect(random, text, _):
    ids = re.findall(rb'\bid="([^"]*)"', text) or [b"a"]
    return re.sub(rb'(href="#|url\(#)[^")]*', lambda match: match[1] + random.choice(ids), text)


def exchange_images(random, text, _):
    image = some_image(random)
    if random.random() < 0.5:
        image = flip_bytes(random, image, None)
    return re.sub(rb'xlink:href="(data:[^"]*|[^"#]*\.(png|jpe?g|bmp))"', b'xlink:href="' + reference(image) + b'"', text)


def add_entities(random, text, _):
    levels, fan = random.choice([(3, 10), (9, 10), (2, 3000), (30, 2)])
    value = random.choice(["1 ", "<rect width='9' height='9'/>", "M1 1L9 9 ", "A" * 1000])
    lines = [f'<!ENTITY e0 "{value}">'] + [f'<!ENTITY e{i} "{f"&e{i - 1};" * fan}">' for i in range(1, levels)]
    doctype = "<!DOCTYPE svg [" + "".join(lines) + "]>"
    body = re.sub(rb"<\?xml.*?\?>|<!DOCTYPE[^\[>]*(\[.*?\])?>", b"", text, flags=re.S)
    found = pick(random, ELEMENT, body)
    inside = b"&e%d;" % (levels - 1)
    at = found.start() if found else len(body)
    return doctype.encode() + body[:at] + inside + body[at:]


def add_default(random, text, _):
    name = random.choice(["path d", "g transform", "rect style", "text x", "svg viewBox", "use xlink:href", "polygon points"])
    value = random.choice(["M0 0L9 9", "#a", "0 0 9 9", "1 " * 9000, "fill:red"])
    return f'<!DOCTYPE svg [<!ATTLIST {name} CDATA "{value}">]>'.encode() + re.sub(rb"<\?xml.*?\?>", b"", text)


def change_encoding(random, text, _):
    plain = re.sub(rb"<\?xml.*?\?>", b"", text).decode(errors="replace")
    name = random.choice(["utf-16", "utf-16-be", "latin-1", "utf-8-sig", "utf-32", "utf-7", "cp037"])
    says = f'<?xml version="1.0" encoding="{random.choice([name, "UTF-8", "UTF-16", "x"])}"?>' if random.random() < 0.7 else ""
    return (says + plain).encode(name, errors="replace")


def strange_text(random, text, _):
    letters = random.choice(["\u0301", "\u202e\u05d0", "\u0e33\u0e49", "\U0001f468\u200d", "\ufffd", "\u0627\u0644", "\u200b", "a\u0308"])
    line = (f'<text x="9" y="9" font-size="{random.choice(["9", "1e-9", "1e30", "0"])}" '
            f'letter-spacing="{random.choice(["0", "1e9"])}">a{letters * random.choice([3, 100, 5000])}</text>').encode()
    at = text.rfind(b"</svg>")
    return text[:at] + line + text[at:] if at >= 0 else text


def compress(random, text, others):
    packed = gzip.compress(text, mtime=0)
    return random.choice([lambda: packed, lambda: packed * 3, lambda: flip_bytes(random, packed, others),
                          lambda: packed[:-random.randrange(1, 20)], lambda: gzip.compress(packed, mtime=0)])()


# The first mostly destroy the XML. The others mostly keep it well-formed, so that more of the document is read.
OF_BYTES = [flip_bytes, cut_chunk, cut_end, repeat_chunk, splice, insert_from, repeat_attribute, change_encoding]
OF_VALUES = [change_numbers, change_numbers, change_letters, change_letters, lengthen_value, exchange_values, repeat_element,
             nest, redirect, exchange_images, add_entities, add_default, strange_text]


def changed(random, sources):
    """Returns one of the sources after one, two or four mutations."""
    text = random.choice(sources)
    for _ in range(random.choice([1, 1, 1, 2, 4])):
        kind = OF_BYTES if random.random() < 0.2 else OF_VALUES
        text = random.choice(kind)(random, text, sources)[:LARGEST_INPUT]
    return compress(random, text, sources) if random.random() < 0.05 else text


# ---- bombs ---------------------------------------------------------------------------------------------------------


def drawing(content, size=400):
    return f'{HEAD}width="{size}" height="{size}">{content}</svg>'.encode()


def fan(levels, width, attributes="", leaf="<rect width='9' height='9' fill='red'/>"):
    text = f"<defs><g id='d0'>{leaf}</g></defs>"
    for i in range(1, levels):
        text += f"<defs><g id='d{i}'>" + f"<use xlink:href='#d{i - 1}' {attributes}/>" * width + "</g></defs>"
    return drawing(text + f"<use xlink:href='#d{levels - 1}' {attributes}/>")


def image(data, width=400, height=400, more=""):
    return drawing(f'<image width="{width}" height="{height}" {more} xlink:href="{reference(data).decode()}"/>')


def zigzag(count, size=400):
    return " ".join(f"{i * 37 % size},{i * 91 % size}" for i in range(count))


def curves(count):
    return "M0 0" + "".join(f"C{i % 400} {i * 7 % 400} {i * 3 % 400} 9 {i * 11 % 400} {i % 300}" for i in range(count))


# Name and function; each bomb exhausts another resource.
BOMBS = {
    "uses": lambda random: fan(random.choice([5, 12, 40]), random.choice([2, 10])),
    "painted uses": lambda random: fan(random.choice([5, 12]), 10, "fill='blue' stroke='red' transform='rotate(1)'"),
    "uses of text": lambda random: fan(6, 8, "", "<text y='20' font-size='20'>Text</text>"),
    "uses of images": lambda random: fan(5, 8, "", f'<image width="400" height="400" '
                                         f'xlink:href="{reference(png(64, 64)).decode()}"/>'),
    "huge shapes": lambda random: drawing("<rect width='400' height='400' fill='red' opacity='0.5'/>" * 20000),
    "wide strokes": lambda random: drawing("<path d='M0 0L400 400' stroke='red' stroke-width='900' opacity='0.3'/>" * 5000),
    "dashes": lambda random: drawing(f"<polyline points='{zigzag(20000)}' fill='none' stroke='red' stroke-linecap='round' "
                                     f"stroke-dasharray='{random.choice(['0.001', '1 2', '1e-9 1e-9', '3'])}'/>"),
    "dashed curves": lambda random: drawing(f"<path d='{curves(20000)}' fill='none' stroke='red' stroke-dasharray='0.1'/>"),
    "crossings": lambda random: drawing(f"<polygon points='{zigzag(300000)}' fill='red' fill-rule='evenodd'/>"),
    "round joins": lambda random: drawing(f"<polyline points='{zigzag(50000)}' stroke='red' fill='none' "
                                          "stroke-linejoin='round' stroke-linecap='round' stroke-width='200'/>"),
    "arcs": lambda random: drawing("<path d='M0 0" + "A1e9 1 0 0 1 9 9A1 1e9 0 1 0 400 400" * 20000 + "'/>"),
    "markers": lambda random: drawing("<marker id='m'>" + "<circle r='30' fill='red'/>" * 50 + "</marker>"
                                      f"<polyline points='{zigzag(20000)}' marker-mid='url(#m)'/>"),
    "pattern": lambda random: drawing(
        f'<pattern id="p" patternUnits="userSpaceOnUse" width="1" height="1"><image width="1" height="1" '
        f'xlink:href="{reference(png(1, 1)).decode()}"/></pattern>' + "<rect width='400' height='400' fill='url(#p)'/>" * 3000),
    "large png": lambda random: image(png(20000, 13000, 1, 0)),
    "larger png": lambda random: image(png(60000, 60000, 1, 0, 0, 5)),
    "interlaced png": lambda random: image(png(9000, 9000, 8, 0, 1, 9000)),
    "many images": lambda random: drawing("".join(
        f'<image width="9" height="9" xlink:href="{reference(png(3000 + i, 3000, 1, 0)).decode()}"/>' for i in range(60))),
    "stretched noise": lambda random: drawing("".join(
        f'<image width="400" height="400" transform="rotate({i})" '
        f'xlink:href="{reference(bmp(40, 40, 24, 0, noise(random, 4800))).decode()}"/>' for i in range(200))),
    "run lengths": lambda random: image(bmp(20000, 20000, 8, 1, b"\xff\x01" * 50000 + b"\0\1")),
    "large page": lambda random: drawing("<circle r='9e4' fill='red'/>", random.choice([20000, 60000, 1e6])),
    "many pages": lambda random: (HEAD + ">" + "<svg width='9' height='9'><rect width='5' height='5'/></svg>" * 20000 +
                                  "</svg>").encode(),
    "long text": lambda random: drawing(f"<text y='20' font-size='{random.choice([1, 20, 900])}'>" +
                                        random.choice(["word ", "\u0e20\u0e32", "\u05d0\u05d1 1", "fi"]) * 60000 + "</text>"),
    "marks": lambda random: drawing("<text y='20'>a" + "\u0301" * 80000 + "</text>"),
    "outlined text": lambda random: drawing("<text y='200' font-size='90' fill='none' stroke='red' stroke-width='500'>" +
                                            "WM" * 3000 + "</text>"),
    "many texts": lambda random: drawing("".join(f"<text y='{i % 400}' font-size='{i % 99}.{i}' "
                                                 f"font-family='F{i},serif'>t{i}</text>" for i in range(20000))),
    "one attribute": lambda random: drawing(f"<rect id='{'x' * (3 << 20)}' width='9' height='9'/>"),
    "many attributes": lambda random: drawing("<rect " + " ".join(f"a{i}='1'" for i in range(100000)) + "/>"),
    "many links": lambda random: drawing("".join(f"<a xlink:href='#l{i}'><rect id='l{i + 1}' width='9' height='9'/></a>"
                                                 for i in range(30000))),
    "declarations": lambda random: drawing("<rect width='9' height='9' style='" + "fill:red;stroke:blue;" * 100000 + "'/>"),
    "transforms": lambda random: drawing("<rect width='9' height='9' transform='" + "rotate(1)scale(1.0001)" * 100000 + "'/>"),
    "identifiers": lambda random: drawing("<defs>" + "".join(f"<g id='i{i}'/>" for i in range(50000)) + "</defs>" + "".join(
        f"<use xlink:href='#i{i}'/>" for i in range(50000))),
    "same identifiers": lambda random: drawing("<g id='a'>" * 900 + "<rect id='a'/>" * 30000 + "</g>" * 900),
    "chain": lambda random: drawing("<defs><g id='c0'><rect width='9' height='9'/></g>" + "".join(
        f"<use id='c{i}' xlink:href='#c{i - 1}'/>" for i in range(1, 60000)) + "</defs><use xlink:href='#c59999'/>"),
    "nested svg": lambda random: drawing("<svg width='90%' viewBox='0 0 9 9' height='9'>" * 1000 + "<rect width='9' height='9'/>" +
                                         "</svg>" * 1000),
    "depth": lambda random: b"<a>" * 200000,
    "entities": lambda random: add_entities(random, drawing("<rect/>"), None),
    "gzip of blanks": lambda random: gzip.compress(drawing(" " * (64 << 20)), mtime=0),
    "gzip of zeros": lambda random: gzip.compress(bytes(1 << 28), mtime=0),
    "gzip of shapes": lambda random: gzip.compress(drawing("<rect/>" * 2000000), mtime=0),
    "gzip in gzip": lambda random: gzip.compress(gzip.compress(bytes(1 << 26), mtime=0), mtime=0),
    "comments": lambda random: b"<!--" + b"-" * 9 + b"<!-- -->" * 200000 + HEAD.encode() + b"/>",
    "colours": lambda random: drawing("".join(f"<rect fill='#{i:06x}' width='400' height='400'/>" for i in range(20000))),
    # Features of standard SVG.
    "gradients of gradients": lambda random: drawing("".join(
        f"<linearGradient id='g{i}' xlink:href='#g{(i + 1) % 30000}'/>" for i in range(30000)) + "".join(
            f"<rect width='9' height='9' fill='url(#g{i})'/>" for i in range(30000))),
    "stops": lambda random: drawing("<linearGradient id='g'>" + "<stop/>" * 100000 + "</linearGradient>" +
                                    "<rect width='9' height='9' fill='url(#g)'/>" * 1000),
    "tiles": lambda random: drawing(
        f"<pattern id='p' width='{random.choice(['2', '.01'])}' height='2' patternUnits='userSpaceOnUse'><circle r='1'/></pattern>" +
        "<rect width='400' height='400' fill='url(#p)'/>" * 100),
    "masks of masks": lambda random: drawing("".join(
        f"<mask id='m{i}'>" + f"<rect width='400' height='400' mask='url(#m{i + 1})'/>" * 5 + "</mask>" for i in range(9)) +
        "<rect width='400' height='400' mask='url(#m0)'/>"),
    "clips of clips": lambda random: drawing("".join(
        f"<clipPath id='c{i}'>" + f"<rect width='400' height='400' clip-path='url(#c{i + 1})'/>" * 10 + "</clipPath>"
        for i in range(9)) + "<rect width='400' height='400' clip-path='url(#c0)'/>"),
    "selectors": lambda random: drawing("<style>" + "".join(
        random.choice(["rect:not(.q{}){{fill:red}}", "rect ~ .q{} ~ rect{{fill:red}}", "g g * .q{}{{fill:red}}"]).format(i)
        for i in range(2000)) + "</style><g><g>" + "<rect width='1' height='1'/>" * 20000 + "</g></g>"),
    "variables": lambda random: drawing("<g style='--a0:red;" + "".join(
        f"--a{i}:" + f"var(--a{i - 1}) " * 10 + ";" for i in range(1, 30)) + "'>" +
        "<rect width='9' height='9' style='fill:var(--a29)'/>" * 10000 + "</g>"),
    "drawings in drawings": lambda random: drawing("<image id='i' width='9' height='9' xlink:href='data:image/svg+xml;base64," +
        base64.b64encode(drawing("<rect width='9' height='9'/>" * 1000)).decode() + "'/>" + "<use xlink:href='#i'/>" * 5000),
    "layers": lambda random: drawing("<g style='opacity:.9;mix-blend-mode:multiply'><rect width='400' height='400'/>" * 300 +
                                     "</g>" * 300),
    "opacity": lambda random: drawing("<g opacity='0.5'>" * 900 + "<rect width='400' height='400'/>" * 3000 + "</g>" * 900),
}


def bomb(random, number):
    """Returns name and content of a bomb. Consecutive numbers give all kinds in turn."""
    name = list(BOMBS)[number % len(BOMBS)]
    return name, BOMBS[name](random)
