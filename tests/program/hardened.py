# SPDX-License-Identifier: MIT
"""hardened.py FILE...: holds each built program or module against what Debian asks of its own:
position-independent, relocations read-only and bound at the start, no executable stack, stacks
guarded."""
import subprocess
import sys


def readelf(option, file):
    return subprocess.run(["readelf", "--wide", option, file], check=True, capture_output=True,
                          text=True).stdout


def lacks(file):
    segments = readelf("--program-headers", file)
    stack = [line for line in segments.splitlines() if "GNU_STACK" in line]
    has = {
        "a position-independent file": "DYN" in readelf("--file-header", file),
        "read-only relocations": "GNU_RELRO" in segments,
        "relocations bound at the start": "NOW" in readelf("--dynamic", file),
        "a stack that is not executable": stack and "RWE" not in stack[0],
        "guarded stacks": "__stack_chk_fail" in readelf("--dyn-syms", file),
    }
    return [what for what, found in has.items() if not found]


def main(files):
    faults = [f"{file} lacks {what}" for file in files for what in lacks(file)]
    print("\n".join(faults) or f"{len(files)} files are hardened")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
