#!/usr/bin/env python3
"""Renders the suite's icons from the shapes below into multi-size .ico files.

Usage: render_icons.py OUTPUT_FOLDER
Each icon is a list of layers: a rounded square, circles or polygons in a 0..1 square, with a colour.
Pixels are sampled 4 x 4 times, so edges are smooth at 16 pixels too. Sizes up to 48 are stored as
32-bit DIBs, 256 as PNG, which is what the shell expects.
"""
import struct
import sys
import zlib
from pathlib import Path

SIZES = [16, 20, 24, 32, 40, 48, 64, 256]


def rounded_square(inset, radius):
    def inside(x, y):
        lo, hi = inset + radius, 1 - inset - radius
        dx = max(lo - x, 0, x - hi)
        dy = max(lo - y, 0, y - hi)
        return dx * dx + dy * dy <= radius * radius and inset <= x <= 1 - inset and inset <= y <= 1 - inset
    return inside


def polygon(points):
    def inside(x, y):
        result = False
        j = len(points) - 1
        for i, (xi, yi) in enumerate(points):
            xj, yj = points[j]
            if (yi > y) != (yj > y) and x < (xj - xi) * (y - yi) / (yj - yi) + xi:
                result = not result
            j = i
        return result
    return inside


def circle(cx, cy, r):
    return lambda x, y: (x - cx) ** 2 + (y - cy) ** 2 <= r * r


# The suite's mark: a white V on a deep teal tile, with a lighter facet on its right arm.
LOGO = [
    (rounded_square(0.03, 0.2), (0x0E, 0x5A, 0x6B, 255)),
    (polygon([(0.18, 0.22), (0.36, 0.22), (0.50, 0.62), (0.64, 0.22), (0.82, 0.22), (0.58, 0.82), (0.42, 0.82)]),
     (255, 255, 255, 255)),
    (polygon([(0.64, 0.22), (0.82, 0.22), (0.58, 0.82), (0.54, 0.70)]), (0xB8, 0xE6, 0xEC, 255)),
]

ICONS = {"veldrake-logo-ai.ico": LOGO}


def render(layers, size):
    samples = 4
    pixels = []
    for py in range(size):
        row = []
        for px in range(size):
            acc = [0.0, 0.0, 0.0, 0.0]
            for sy in range(samples):
                for sx in range(samples):
                    x = (px + (sx + 0.5) / samples) / size
                    y = (py + (sy + 0.5) / samples) / size
                    colour = (0, 0, 0, 0)
                    for inside, c in layers:
                        if inside(x, y):
                            colour = c
                    a = colour[3] / 255.0
                    acc[0] += colour[0] * a
                    acc[1] += colour[1] * a
                    acc[2] += colour[2] * a
                    acc[3] += a
            n = samples * samples
            alpha = acc[3] / n
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
    colour = b"".join(bytes((p[2], p[1], p[0], p[3])) for row in reversed(pixels) for p in row)
    mask_row = ((size + 31) // 32) * 4
    mask = bytes(mask_row * size)  # alpha decides; the AND mask stays clear
    return header + colour + mask


def ico(layers):
    images = []
    for size in SIZES:
        pixels = render(layers, size)
        images.append((size, png(pixels) if size >= 256 else dib(pixels)))
    out = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, data in images:
        out += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    return out + b"".join(data for _, data in images)


def main():
    folder = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent)
    for name, layers in ICONS.items():
        (folder / name).write_bytes(ico(layers))
        print(folder / name)


if __name__ == "__main__":
    main()
