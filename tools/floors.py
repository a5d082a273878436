#!/usr/bin/env python3
"""Counts the includes that run upward through the source floors.

The floors, ground first: a file may include headers of its own floor and of the floors below it.
Prints every include that reaches a higher floor and the count; exits 1 when there is one.
"""
import os
import re
import sys

FLOORS = ["core", "support", "model", "binding", "tabs", "dialogs", "preview", "host"]
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src")


def floor_of(path):
    first = os.path.relpath(path, ROOT).split(os.sep)[0]
    return FLOORS.index(first) if first in FLOORS else None


def main():
    headers = {}
    for folder, _, files in os.walk(ROOT):
        for name in files:
            if name.endswith((".h", ".hpp")):
                headers.setdefault(name, []).append(os.path.join(folder, name))
    upward = []
    include = re.compile(r'^\s*#\s*include\s+"([^"]+)"')
    for folder, _, files in os.walk(ROOT):
        for name in sorted(files):
            if not name.endswith((".h", ".hpp", ".cpp")):
                continue
            path = os.path.join(folder, name)
            own = floor_of(path)
            if own is None:
                continue
            with open(path, encoding="utf-8") as f:
                for number, line in enumerate(f, 1):
                    m = include.match(line)
                    if not m:
                        continue
                    for target in headers.get(os.path.basename(m.group(1)), []):
                        other = floor_of(target)
                        if other is not None and other > own:
                            upward.append(f"{os.path.relpath(path, ROOT)}:{number}: {m.group(1)} "
                                          f"({FLOORS[own]} -> {FLOORS[other]})")
    for line in upward:
        print(line)
    print(f"upward includes: {len(upward)}")
    return 1 if upward else 0


if __name__ == "__main__":
    sys.exit(main())
