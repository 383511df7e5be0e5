#!/usr/bin/env python3
"""Writes the corpus that the property lists' fuzzer starts from: lists of every form and type.

    make_property_list_corpus.py FOLDER"""

import datetime
import os
import plistlib
import sys

NESTED = {"k": []}
for _ in range(20):
    NESTED = {"k": [NESTED, 1]}

VALUES = [
    {},
    {"WENLIBUUID": "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"},
    {"InstalledDate": datetime.datetime(2024, 2, 29, 23, 59, 59), "LatestSelectedAgreement": True,
     "LatestSelectedLanguage": "fr_FR"},
    {"integers": [0, -1, 127, 255, 65536, 2**32, 2**63 - 1, 2**64 - 1, -(2**63)]},
    {"reals": [0.0, -1.5, 1e300, 5e-324, float("inf"), float("nan")]},
    {"texts": ["", "a<b>&\"'", "é€\U0001f600", "line\nline\ttab", "x" * 20]},
    {"data": [b"", b"\0\1\2\xff", bytes(range(100))], "": False},
    {"rows": [{"name": "same", "value": True}] * 5},
    NESTED,
]

# Documents that no writer makes.
DOCUMENTS = [
    b"<plist><dict/></plist>",
    b"<dict><key>k</key><true></true></dict>",
    b"<plist a=\"b\"><dict><key>k</key><integer> 0x1F </integer></dict></plist>",
    b"<!DOCTYPE plist [<!ENTITY e 'x'>]><plist><dict><key>&e;</key><true/></dict></plist>",
    b"<plist><dict><key>k</key><string>a<![CDATA[<b>]]>&#233;</string></dict></plist>",
    b"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><dict><key>\xe9</key><real>nan</real></dict>",
    "<plist><dict><key>k</key><array><false/></array></dict></plist>".encode("utf-16"),
    b"<plist><dict><key>k</key><string>]]&gt;\r\n</string></dict></plist>\n\n",
]


# What is just beyond the plain form.
EDGES = [b"\r", b"\r\n", b">", b"]]>", b"'", b"\x7f", b"\0", b"&#9;", b"<!-- -->", b"\xc3\xa9", b"<a/>"]


def corpus():
    for edge in EDGES:
        yield b"<plist><dict><key>k</key><string>a" + edge + b"b</string></dict></plist>"
    yield from DOCUMENTS
    for value in VALUES:
        document = plistlib.dumps(value)
        yield document
        yield document[document.index(b"<plist"):]
        yield plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
    yield plistlib.dumps({"uids": [plistlib.UID(1), plistlib.UID(2**40)]}, fmt=plistlib.FMT_BINARY)


def main(folder):
    os.makedirs(folder, exist_ok=True)
    count = 0
    for count, document in enumerate(corpus(), 1):
        with open(os.path.join(folder, str(count)), "wb") as file:
            file.write(document)
    print(f"{count} documents to start from")


if __name__ == "__main__":
    main(sys.argv[1])
