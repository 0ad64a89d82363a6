# SPDX-License-Identifier: MIT
"""house.py ROOT: checks every include of the sources under ROOT against the rooms and arrows that
house.txt beside this file declares. Tests and benchmarks may include whatever they need."""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
TOOLKIT = re.compile(r"Q[A-Z]|Qt|q[a-z]+\.h$|ui_")


def declared(lines):
    """The rooms with their arrows, and the set of rooms that may use the toolkit."""
    arrows, toolkit = {}, set()
    for line in lines:
        if line.startswith("-"):
            toolkit = set(arrows)
        elif line.strip() and not line.startswith("#"):
            room, _, others = line.partition(":")
            arrows[room] = set(others.split())
    return arrows, toolkit


def faults_of(arrows, toolkit, sources):
    order = list(arrows)
    for room, others in arrows.items():
        for other in sorted(others):
            if other not in arrows or order.index(other) <= order.index(room):
                yield f"{room}: {other} is not below it"
    unused = {(room, other) for room, others in arrows.items() for other in others}
    for path, text in sources:
        room = path if path in arrows else path.rpartition("/")[0]
        if room not in arrows:
            yield f"{path}: {room} is not a declared room"
            continue
        for mark, header in INCLUDE.findall(text):
            target = header.rpartition("/")[0]
            if TOOLKIT.match(header):
                if room not in toolkit:
                    yield f"{path}: includes the toolkit's {header}"
            elif mark == '"' and target not in ("", room):
                unused.discard((room, target))
                if target not in arrows[room]:
                    yield f"{path}: {room} may not include {header}"
    for room, other in sorted(unused):
        yield f"{room}: nothing includes {other}"


def main(root):
    here = pathlib.Path(__file__).parent
    arrows, toolkit = declared((here / "house.txt").read_text().splitlines())
    sources = [
        (path.relative_to(root).as_posix(), path.read_text())
        for folder in {room.split("/")[0] for room in arrows}
        for path in sorted(root.glob(f"{folder}/**/*"))
        if path.suffix in (".h", ".cpp")
    ]
    faults = list(faults_of(arrows, toolkit, sources))
    # The check must itself find these four faults.
    assert len(list(faults_of({"a": {"b"}, "b": set()}, set(), [
        ("b/x.h", '#include "a/y.h"\n#include <QString>\n'), ("c/z.h", "")]))) == 4
    print("\n".join(faults) or f"{len(sources)} sources in {len(arrows)} rooms")
    return 1 if faults or len(sources) < 100 else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
