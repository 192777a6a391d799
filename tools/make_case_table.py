#!/usr/bin/env python3
"""Writes platform/base/case_table.inc: how CharUpperW maps each character.

Source: UnicodeData.txt (Debian package unicode-data), fields 12 and 13, the simple upper and lower case mappings.
Windows upper-cases only where the way back exists: a character changes when its upper case is one character whose lower
case is the character itself. So 'ÿ' changes, but dotless i, long s, the micro sign and the title-case digraphs stay.
A character that takes two units changes its second unit only: the table says so by a check here.

Usage: tools/make_case_table.py [UnicodeData.txt] > platform/base/case_table.inc
"""
import sys


def read_mappings(path):
    upper, lower = {}, {}
    with open(path, encoding="ascii") as data:
        for line in data:
            fields = line.rstrip("\n").split(";")
            unit = int(fields[0], 16)
            if fields[12]:
                upper[unit] = int(fields[12], 16)
            if fields[13]:
                lower[unit] = int(fields[13], 16)
    return upper, lower


def reversible(upper, lower):
    result = {c: u for c, u in upper.items() if lower.get(u) == c}
    # The same length in units, and for pairs the same first unit.
    assert all(c >> 16 == u >> 16 and (c < 0x10000 or c >> 10 == u >> 10) for c, u in result.items())
    return result


def runs(mapping):
    """Runs of characters with one step (1 or 2) and one distance: [first, last, step, distance]."""
    result = []
    for unit in sorted(mapping):
        distance = mapping[unit] - unit
        if result and result[-1][3] == distance:
            first, last, step, _ = result[-1]
            gap = unit - last
            if gap in (1, 2) and (first == last or gap == step):
                result[-1] = [first, unit, gap, distance]
                continue
        result.append([unit, unit, 1, distance])
    return result


def main():
    path = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/unicode/UnicodeData.txt"
    print("// Made by tools/make_case_table.py from UnicodeData.txt; do not edit.")
    print("// First character, last character, step, distance to the upper-case character; sorted by the first.")
    for first, last, step, distance in runs(reversible(*read_mappings(path))):
        print("{0x%04X, 0x%04X, %d, %d}," % (first, last, step, distance))


main()
