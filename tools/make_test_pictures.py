#!/usr/bin/env python3
"""Writes the small bitmaps and the icon of tests/conformance/pictures/.

Every bitmap is 3 x 2 pixels, top row red green blue, bottom row white black grey (0x80), at 1, 4, 8, 24 and 32 bits
(at 1 bit: white black white over black white black; at 32 bits alpha is 0x40 in the top row, 0xFF in the bottom row).
The icon has a 16 x 16 picture of 32 bits, half-transparent green, and a 32 x 32 one of 8 bits, red with a transparent
left half.

Usage: tools/make_test_pictures.py folder
"""
import pathlib
import struct
import sys

COLORS = [(255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255), (0, 0, 0), (128, 128, 128)]
TOP, BOTTOM = [0, 1, 2], [3, 4, 5]


def pack_bits(indices, bits):
    value = 0
    for index in indices:
        value = value << bits | index
    total = (len(indices) * bits + 31) // 32 * 32
    return (value << total - len(indices) * bits).to_bytes(total // 8, "big")


def header(width, height, bits, used=0):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, 0, 0, 0, used, 0)


def palette(colors):
    return b"".join(bytes((b, g, r, 0)) for r, g, b in colors)


def row_24(indices):
    row = b"".join(bytes(reversed(COLORS[i])) for i in indices)
    return row + bytes(-len(row) % 4)


def row_32(indices, alpha):
    return b"".join(bytes(reversed(COLORS[i])) + bytes((alpha,)) for i in indices)


def dib(bits):
    if bits == 1:
        return header(3, 2, 1) + palette([(0, 0, 0), (255, 255, 255)]) + pack_bits([0, 1, 0], 1) + pack_bits([1, 0, 1], 1)
    if bits == 24:
        return header(3, 2, 24) + row_24(BOTTOM) + row_24(TOP)
    if bits == 32:
        return header(3, 2, 32) + row_32(BOTTOM, 0xFF) + row_32(TOP, 0x40)
    return header(3, 2, bits, 6) + palette(COLORS) + pack_bits(BOTTOM, bits) + pack_bits(TOP, bits)


def bmp(bits):
    content = dib(bits)
    used = {1: 2, 4: 6, 8: 6}.get(bits, 0)
    return b"BM" + struct.pack("<IHHI", 14 + len(content), 0, 0, 14 + 40 + 4 * used) + content


def icon():
    small = header(16, 32, 32) + bytes((0, 255, 0, 128)) * 256 + bytes(4 * 16)
    mask = (b"\xFF\xFF\x00\x00") * 32
    large = header(32, 64, 8, 1) + palette([(255, 0, 0)]) + bytes(32 * 32) + mask
    offset = 6 + 2 * 16
    entries = struct.pack("<BBBBHHII", 16, 16, 0, 0, 1, 32, len(small), offset)
    entries += struct.pack("<BBBBHHII", 32, 32, 1, 0, 1, 8, len(large), offset + len(small))
    return struct.pack("<HHH", 0, 1, 2) + entries + small + large


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for bits in (1, 4, 8, 24, 32):
        (folder / f"flag{bits}.bmp").write_bytes(bmp(bits))
    (folder / "two.ico").write_bytes(icon())


main()
