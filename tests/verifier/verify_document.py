#!/usr/bin/env python3
"""Verifies survey documents and prints a line for each file. Of a document that is not sound, prints
what can be found as well, with nothing to vouch for it.

The exit status is 0 if all are sound, 1 if one is not, 2 for wrong usage or an unreadable file."""

import argparse
import os
import sys

sys.dont_write_bytecode = True  # the folder of the tests stays as it is
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

from survey_document import WRAPPERS, Foreign, Repaired, Unsound, parse, search, shown


def verify(data, layout=None, contents=None):
    """Parses `data`, which must be a sound document, and must have this layout and these contents
    if they are given. Answers the document or raises Unsound."""
    document = parse(data)
    if layout is not None and document.layout != layout:
        raise Unsound(f"its layout is {document.layout}, not {layout}")
    if contents is not None and document.contents != contents:
        raise Unsound(difference(document.contents, contents))
    return document


def difference(found, expected):
    if len(found) != len(expected):
        return f"it holds {len(found)} bytes of contents, not {len(expected)}"
    first = next(i for i in range(len(found)) if found[i] != expected[i])
    return f"its contents differ from byte {first} on"


WORDS = {Foreign: "foreign", Repaired: "repaired"}


def report(path, layout, contents):
    """Prints the line for one file. Answers whether it is sound."""
    with open(path, "rb") as file:
        data = file.read()
    try:
        document = verify(data, layout, contents)
    except Unsound as problem:
        print(f"{path}: {WORDS.get(type(problem), 'not sound')}: {problem}")
        found = None if isinstance(problem, (Foreign, Repaired)) else search(data)
        for name, (_, value) in (found.values if found else {}).items():
            print(f"  {name}, not vouched for: {shown(value)}")
        return False
    size = len(document.contents)
    print(f"{path}: {document.layout}, {document.marker}, {size} bytes of contents, sound")
    return True


def main(arguments):
    parser = argparse.ArgumentParser(description="Verifies survey documents.")
    parser.add_argument("--contents-file", help="a file with the contents that each must hold")
    parser.add_argument("--layout", choices=list(WRAPPERS), help="the layout that each must have")
    parser.add_argument("files", nargs="+", metavar="FILE")
    options = parser.parse_args(arguments)
    try:
        contents = None
        if options.contents_file is not None:
            with open(options.contents_file, "rb") as file:
                contents = file.read()
        results = [report(path, options.layout, contents) for path in options.files]
    except OSError as error:
        print(f"{error.filename}: {error.strerror}", file=sys.stderr)
        return 2
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
