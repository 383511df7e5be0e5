#!/usr/bin/env python3
"""Writes property lists to standard output, one after the other: a line with the name, one with the
size, the bytes.

    stream_lists.py small    those that the fuzzer starts from
    stream_lists.py all      and those made to do harm"""

import os
import sys

PROJECT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../..")
sys.path[:0] = [os.path.join(PROJECT, "fuzz"), os.path.join(PROJECT, "tests/plist")]

from hostile_lists import hostile_binary, hostile_xml
from make_property_list_corpus import corpus


def lists(which):
    for number, content in enumerate(corpus(), 1):
        yield f"corpus {number}", content
    if which == "all":
        for form, files in (("XML", hostile_xml()), ("binary", hostile_binary())):
            for name, _, content in files:
                yield f"{form}: {name}", content


for name, content in lists(sys.argv[1]):
    sys.stdout.buffer.write(b"%s\n%d\n" % (name.encode(), len(content)))
    sys.stdout.buffer.write(content)
