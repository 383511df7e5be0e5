#!/usr/bin/env python3
"""Tests of macho.py with images in the forms of Apple's linker: lists of methods as pointers and
as distances, pointers as addresses and as links of a chain."""
import struct
import sys
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is

import macho

CLASS_LIST, CLASS, META, DATA, META_DATA, METHODS, SELECTOR, TEXTS = range(0x200, 0x600, 0x80)
NAME, FIRST, TYPES = TEXTS, TEXTS + 16, TEXTS + 32
LINK = 2 << 51  # the distance to the next link of a chain
IMPORTED = 1 << 63


def image(relative, chained):
    """An image of one class A with one method "go", in one segment that begins at the address 0."""
    data = bytearray(0x600)
    link = LINK if chained else 0

    def put(at, form, *values):
        struct.pack_into(form, data, at, *values)

    def pointers(at, *addresses):
        put(at, f"<{len(addresses)}Q", *(each | link if each else 0 for each in addresses))

    def command(at, number, body):
        put(at, "<II", number, 8 + len(body))
        data[at + 8:at + 8 + len(body)] = body
        return at + 8 + len(body)

    put(0, "<5I", 0xFEEDFACF, 0x0100000C, 0, macho.BUNDLE, 2 if chained else 1)
    section = struct.pack("<16s16sQQ", b"__objc_classlist", b"__DATA", CLASS_LIST, 8) + bytes(32)
    end = command(32, macho.SEGMENT, struct.pack("<16s4Q4I", b"__DATA", 0, len(data), 0, len(data),
                                                 3, 3, 1, 0) + section)
    if chained:
        command(end, macho.CHAINED_FIXUPS, bytes(8))
    pointers(CLASS_LIST, CLASS)
    pointers(CLASS, META, 0, 0, 0, DATA)
    if chained:
        put(CLASS + 8, "<Q", IMPORTED)  # the superclass
    pointers(META, 0, 0, 0, 0, META_DATA)
    pointers(DATA + 24, NAME, METHODS)
    pointers(META_DATA + 24, NAME)
    data[TEXTS:TEXTS + 40] = b"A".ljust(16, b"\0") + b"go".ljust(16, b"\0") + b"v16@0:8\0"
    if relative:
        put(METHODS, "<II", macho.RELATIVE_METHODS | 12, 1)
        put(METHODS + 8, "<iii", SELECTOR - METHODS - 8, TYPES - METHODS - 12, 0)
        pointers(SELECTOR, FIRST)
    else:
        put(METHODS, "<II", 24, 1)
        pointers(METHODS + 8, FIRST, TYPES, 0)
    return bytes(data)


class Image(unittest.TestCase):
    def test_has_the_same_classes_in_every_form(self):
        expected = {"A": {"+": {}, "-": {"go": "v16@0:8"}, "variables": [], "categories": {}}}
        for relative in (False, True):
            for chained in (False, True):
                with self.subTest(relative=relative, chained=chained):
                    self.assertEqual(macho.Image(image(relative, chained)).classes(), expected)

    def test_refuses_lists_of_another_form(self):
        data = bytearray(image(False, False))
        struct.pack_into("<I", data, METHODS, macho.RELATIVE_METHODS | 24)
        with self.assertRaisesRegex(ValueError, "another form"):
            macho.Image(bytes(data)).classes()


unittest.main()
