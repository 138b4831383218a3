#!/usr/bin/env python3
"""Renders the suite's icons from their SVG sources in this folder into multi-size .ico files.

Usage: render_icons.py [OUTPUT_FOLDER] [--preview FOLDER]

Each icon NAME has a vector source NAME.svg drawn on a 256 grid whose coordinates are multiples of 8,
so that 32 pixels land on whole pixels, and may have NAME-16.svg, drawn on the 16-pixel grid, for the
sizes up to 24 where the large drawing would blur. The sources use a small part of SVG: rect (with rx),
circle and polygon, each with a solid fill; fill="transparent" cuts a hole through what lies below.
Pixels are sampled 4 x 4 times (2 x 2 at 256). Sizes up to 64 are stored as 32-bit DIBs, 256 as PNG,
which is what the shell expects. --preview also writes each size as NAME-SIZE.png.
"""
import math
import struct
import sys
import xml.etree.ElementTree as ElementTree
import zlib
from pathlib import Path

SIZES = [16, 20, 24, 32, 40, 48, 64, 256]
NAMES = ["veldrake-logo-ai", "tessary_indexing-complete", "tessary_indexing-in-progress", "tessary_indexing-problem"]
SOURCE = Path(__file__).resolve().parent
SVG = "{http://www.w3.org/2000/svg}"


def rounded_rect(x, y, w, h, r):
    r = min(r, w / 2, h / 2)

    def inside(px, py):
        if not (x <= px <= x + w and y <= py <= y + h):
            return False
        dx = max(x + r - px, 0, px - (x + w - r))
        dy = max(y + r - py, 0, py - (y + h - r))
        return dx * dx + dy * dy <= r * r
    return inside


def circle(cx, cy, r):
    return lambda px, py: (px - cx) ** 2 + (py - cy) ** 2 <= r * r


def polygon(points):
    def inside(px, py):
        result = False
        j = len(points) - 1
        for i, (xi, yi) in enumerate(points):
            xj, yj = points[j]
            if (yi > py) != (yj > py) and px < (xj - xi) * (py - yi) / (yj - yi) + xi:
                result = not result
            j = i
        return result
    return inside


def colour(text):
    if text in ("transparent", "none"):
        return (0, 0, 0, 0)
    text = text.lstrip("#")
    return (int(text[0:2], 16), int(text[2:4], 16), int(text[4:6], 16), 255)


def load(path):
    """The layers of an SVG source, in a unit square: (inside(x, y), rgba) in painting order."""
    root = ElementTree.parse(path).getroot()
    view = [float(v) for v in root.get("viewBox").split()]
    unit = view[2]
    layers = []
    for element in root.iter():
        tag = element.tag.replace(SVG, "")
        number = lambda name, default=0.0: float(element.get(name, default)) / unit
        if tag == "rect":
            shape = rounded_rect(number("x"), number("y"), number("width"), number("height"), number("rx"))
        elif tag == "circle":
            shape = circle(number("cx"), number("cy"), number("r"))
        elif tag == "polygon":
            values = [float(v) / unit for v in element.get("points").replace(",", " ").split()]
            shape = polygon(list(zip(values[0::2], values[1::2])))
        else:
            continue
        layers.append((shape, colour(element.get("fill", "#000000"))))
    return layers


def render(layers, size):
    samples = 4 if size <= 64 else 2
    pixels = []
    for py in range(size):
        row = []
        for px in range(size):
            acc = [0.0, 0.0, 0.0, 0.0]
            for sy in range(samples):
                for sx in range(samples):
                    x = (px + (sx + 0.5) / samples) / size
                    y = (py + (sy + 0.5) / samples) / size
                    c = (0, 0, 0, 0)
                    for inside, layer_colour in layers:
                        if inside(x, y):
                            c = layer_colour
                    a = c[3] / 255.0
                    acc[0] += c[0] * a
                    acc[1] += c[1] * a
                    acc[2] += c[2] * a
                    acc[3] += a
            alpha = acc[3] / (samples * samples)
            if alpha > 0:
                row.append(tuple(round(acc[i] / acc[3]) for i in range(3)) + (round(alpha * 255),))
            else:
                row.append((0, 0, 0, 0))
        pixels.append(row)
    return pixels


def png(pixels):
    size = len(pixels)
    raw = b"".join(b"\0" + bytes(v for p in row for v in p) for row in pixels)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def dib(pixels):
    size = len(pixels)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    data = b"".join(bytes((p[2], p[1], p[0], p[3])) for row in reversed(pixels) for p in row)
    mask_row = ((size + 31) // 32) * 4
    # The AND mask marks the fully transparent pixels, for readers that ignore alpha.
    mask = b""
    for row in reversed(pixels):
        bits = bytearray(mask_row)
        for x, p in enumerate(row):
            if p[3] == 0:
                bits[x // 8] |= 0x80 >> (x % 8)
        mask += bytes(bits)
    return header + data + mask


def source_for(name, size):
    small = SOURCE / f"{name}-16.svg"
    return small if size <= 24 and small.exists() else SOURCE / f"{name}.svg"


def main():
    args = sys.argv[1:]
    preview = None
    if "--preview" in args:
        at = args.index("--preview")
        preview = Path(args[at + 1])
        del args[at:at + 2]
    folder = Path(args[0]) if args else SOURCE.parent
    for name in NAMES:
        images = []
        for size in SIZES:
            pixels = render(load(source_for(name, size)), size)
            images.append((size, png(pixels) if size >= 256 else dib(pixels)))
            if preview:
                preview.mkdir(parents=True, exist_ok=True)
                (preview / f"{name}-{size}.png").write_bytes(png(pixels))
        out = struct.pack("<HHH", 0, 1, len(images))
        offset = 6 + 16 * len(images)
        for size, data in images:
            out += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
            offset += len(data)
        (folder / f"{name}.ico").write_bytes(out + b"".join(data for _, data in images))
        print(folder / f"{name}.ico")


if __name__ == "__main__":
    main()
