#!/usr/bin/env python3
"""Verifies every document that the end-to-end tests have left in a folder, using its manifest.

    verify_written.py FOLDER [AT_LEAST]

Each line of FOLDER/manifest.txt names a document, a file with the contents that it must hold (empty
if any will do), its layout and its cipher's marker, separated by tabs. The exit status is 0 if all
documents are sound. It is 1 if one is not, if there are fewer than AT_LEAST (1), or if a layout
does not appear with both markers."""

import os
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "verifier"))

from survey_document import WRAPPERS, Unsound
from verify_document import verify


def read(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def problem_of(folder, document, contents, layout, marker):
    """What is wrong with one document; None if it is sound."""
    try:
        expected = read(folder, contents) if contents else None
        found = verify(read(folder, document), layout, expected)
    except (Unsound, OSError) as problem:
        return str(problem)
    if found.marker != marker:
        return f"its marker is {found.marker}, not {marker}"
    return None


def main(folder, at_least=1):
    lines = read(folder, "manifest.txt").decode().splitlines()
    entries = sorted({tuple(line.split("\t")) for line in lines})
    sound = 0
    for entry in entries:
        problem = problem_of(folder, *entry)
        if problem is None:
            sound += 1
        else:
            print(f"{entry[0]}: not sound: {problem}")
    print(f"{sound} of {len(entries)} documents are sound")
    kinds = {entry[2:] for entry in entries}
    missing = [f"{layout} {marker}" for layout in WRAPPERS for marker in "RX"
               if (layout, marker) not in kinds]
    if missing:
        print(f"no document at all of these kinds: {', '.join(missing)}")
    complete = len(entries) >= at_least and not missing
    return 0 if sound == len(entries) and complete else 1


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        print("usage: verify_written.py FOLDER [AT_LEAST]", file=sys.stderr)
        sys.exit(2)
    sys.exit(main(sys.argv[1], *map(int, sys.argv[2:])))
