#!/usr/bin/env python3
"""Writes property lists to standard output, one after the other: a line with the name, one with the
size, the bytes.

    stream_lists.py small    those that the fuzzer starts from
    stream_lists.py all      and those made to do harm; only the smaller ones if WENLOLIB_DAMAGED
                             asks for few damaged files, too"""

import os
import sys

PROJECT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../..")
sys.path[:0] = [os.path.join(PROJECT, "fuzz"), os.path.join(PROJECT, "tests/plist")]

from hostile_lists import MIB, hostile_binary, hostile_xml
from make_property_list_corpus import corpus


def lists(which):
    for number, content in enumerate(corpus(), 1):
        yield f"corpus {number}", content
    largest = 16 * MIB if int(os.environ.get("WENLOLIB_DAMAGED", 0)) > 100000 else MIB * 3
    if which == "all":
        for form, files in (("XML", hostile_xml()), ("binary", hostile_binary())):
            for name, _, content in files:
                if len(content) <= largest:
                    yield f"{form}: {name}", content


for name, content in lists(sys.argv[1]):
    sys.stdout.buffer.write(b"%s\n%d\n" % (name.encode(), len(content)))
    sys.stdout.buffer.write(content)
