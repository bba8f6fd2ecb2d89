#!/usr/bin/env python3
"""Writes compositions.inc: pairs of a letter and a combining mark with the one character they make,
for Latin, Greek and Cyrillic, from Python's character database."""
import sys
import unicodedata

pairs = []
for code in list(range(0xC0, 0x250)) + list(range(0x370, 0x530)) + list(range(0x1E00, 0x2000)):
    parts = unicodedata.decomposition(chr(code)).split()
    if len(parts) != 2 or parts[0].startswith("<"):
        continue
    base, mark = (int(p, 16) for p in parts)
    if unicodedata.combining(chr(mark)) and unicodedata.normalize("NFC", chr(base) + chr(mark)) == chr(code):
        pairs.append((base, mark, code))
pairs.sort()

lines = ["// Made by make_compositions.py: base, mark, composed; sorted."]
row = ""
for base, mark, code in pairs:
    item = "{0x%04x, 0x%04x, 0x%04x}," % (base, mark, code)
    if len(row) + len(item) > 98:
        lines.append(row)
        row = ""
    row += (" " if row else "") + item
lines.append(row)
with open(sys.argv[1] if len(sys.argv) > 1 else "compositions.inc", "w") as out:
    out.write("\n".join(lines) + "\n")
