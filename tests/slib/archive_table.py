#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""archive_table.py FILE: prints the records of a keyed archive, a line each, in the order of its
object table and of their keys, with what they refer to in place; another record is its slot."""
import plistlib
import sys

with open(sys.argv[1], "rb") as file:
    table = plistlib.load(file)["$objects"]


def text_of(value):
    if isinstance(value, plistlib.UID):
        target = table[value.data]
        return f"slot {value.data}" if isinstance(target, dict) else "-> " + text_of(target)
    return value.hex() if isinstance(value, bytes) else ascii(value)


for slot, record in enumerate(table):
    if isinstance(record, dict) and "$class" in record:
        classes = " ".join(table[record.pop("$class").data]["$classes"])
        print(f"{slot} {classes}:", ", ".join(f"{key} {text_of(value)}" for key, value in record.items()))
