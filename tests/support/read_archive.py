# SPDX-License-Identifier: MIT
"""Prints the object graph of a keyed archive, read without any code of this project."""
import plistlib
import sys


def shown(value):
    if isinstance(value, plistlib.UID):
        return "@" + shown(objects[value.data]) if value.data else "nil"
    if isinstance(value, list):
        return "[" + " ".join(shown(element) for element in value) + "]"
    if not isinstance(value, dict):
        return repr(value)
    chain = objects[value["$class"].data]
    assert chain["$classname"] == chain["$classes"][0]
    fields = [f"{key}={shown(field)}" for key, field in value.items() if key != "$class"]
    return ":".join(chain["$classes"]) + "{" + " ".join(fields) + "}"


sys.stdout.reconfigure(encoding="utf-8")
with open(sys.argv[1], "rb") as file:
    archive = plistlib.load(file)
objects = archive["$objects"]
assert set(archive) == {"$version", "$archiver", "$top", "$objects"}
assert (archive["$version"], archive["$archiver"]) == (100000, "NSKeyedArchiver")
assert objects[0] == "$null"
print(shown(objects[archive["$top"]["root"].data]))
