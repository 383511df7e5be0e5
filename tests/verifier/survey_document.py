"""Reads survey documents strictly, and says what is wrong with those that are not sound.

A document is one element without white space between its parts:

    <WRAPPER SUM="checksum">CONTENT</WRAPPER>

The checksum is the MD5 digest of CONTENT, byte for byte as in the file. The payload is encrypted
with RC4 (marker R) or a cycling XOR (marker X). The key is the MD5 digest of the <Date> text.
"""

import datetime
import hashlib
import re
import xml.parsers.expat
from dataclasses import dataclass, field

from rc4 import cycling_xor, rc4

WRAPPERS = {
    "application": b"OrvanQXApplication",
    "printer": b"OrvanQX2Application",
    "printer-older": b"OrvanQXPrinter",
}
HEADER = [b"Version", b"OSVersion", b"Date", b"Locale", b"ID"]
IDENTITY = [b"DeviceID", b"SN", b"ROMVER"]
DATE = re.compile(rb"(\d{4,})-(\d\d)-(\d\d)T(\d\d):(\d\d):(\d\d)[+-](\d\d):([0-5]\d)")


class Unsound(Exception):
    """What is wrong with a document."""


@dataclass
class Document:
    layout: str
    checksum: bytes
    marker: str
    contents: bytes
    values: dict = field(default_factory=dict)


class Cursor:
    """Walks through a text and checks every byte of it."""

    def __init__(self, text):
        self.text = text
        self.position = 0

    def expect(self, literal):
        if not self.text.startswith(literal, self.position):
            found = self.text[self.position : self.position + len(literal)]
            raise Unsound(f"at byte {self.position}: {shown(literal)} expected, {shown(found)} found")
        self.position += len(literal)

    def until(self, delimiter):
        end = self.text.find(delimiter, self.position)
        if end < 0:
            raise Unsound(f"at byte {self.position}: no {shown(delimiter)} follows")
        value = self.text[self.position : end]
        self.position = end
        return value

    def element(self, name):
        self.expect(b"<" + name + b">")
        value = self.until(b"<")
        self.expect(b"</" + name + b">")
        return value

    def payload(self, name):
        self.expect(b"<" + name + b' C="')
        marker = self.until(b'"')
        self.expect(b'">')
        digits = self.until(b"<")
        self.expect(b"</" + name + b">")
        return marker, digits

    def end(self):
        if self.position != len(self.text):
            raise Unsound(f"at byte {self.position}: something follows the end")


def shown(data):
    return repr(bytes(data[:40]).decode("utf-8", "backslashreplace"))


def parse(data):
    """Checks a whole document; answers a Document or raises Unsound."""
    check_well_formed(data)
    layout = layout_of(data)
    wrapper = Cursor(data)
    wrapper.expect(b"<" + WRAPPERS[layout] + b' SUM="')
    checksum = wrapper.until(b'"')
    wrapper.expect(b'">')
    closing = b"</" + WRAPPERS[layout] + b">"
    if not data.endswith(closing):
        raise Unsound(f"the document does not end in {shown(closing)}")
    content = data[wrapper.position : len(data) - len(closing)]
    check_checksum(checksum, content)
    values, marker, digits = parse_content(content, layout)
    check_date(values["Date"])
    contents = decrypt(marker, payload_bytes(digits), values["Date"])
    check_utf8(contents, "the contents")
    return Document(layout, checksum, marker.decode(), contents, values)


def layout_of(data):
    for layout, name in WRAPPERS.items():
        if data.startswith(b"<" + name + b" "):
            return layout
    raise Unsound(f"begins with {shown(data)}, which is not the wrapper of a survey document")


def parse_content(content, layout):
    cursor = Cursor(content)
    values = {name.decode(): cursor.element(name) for name in HEADER}
    if layout == "printer-older":
        cursor.expect(b"<Printer>")
        values.update((name.decode(), cursor.element(name)) for name in IDENTITY)
        marker, digits = cursor.payload(b"PLI")
        cursor.expect(b"</Printer>")
    else:
        marker, digits = cursor.payload(b"Encrypted")
    cursor.end()
    return values, marker, digits


def check_well_formed(data):
    check_utf8(data, "the document")
    parser = xml.parsers.expat.ParserCreate("UTF-8")
    try:
        parser.Parse(data, True)
    except xml.parsers.expat.ExpatError as error:
        raise Unsound(f"not well-formed XML: {error}") from None


def check_utf8(data, what):
    try:
        data.decode("utf-8")
    except UnicodeDecodeError as error:
        raise Unsound(f"{what}: not UTF-8 at byte {error.start}") from None


def check_checksum(checksum, content):
    expected = hashlib.md5(content, usedforsecurity=False).hexdigest().upper().encode()
    if checksum != expected:
        raise Unsound(f"the checksum is {shown(checksum)}, the content's is {shown(expected)}")


def check_date(date):
    match = DATE.fullmatch(date)
    if match is None:
        raise Unsound(f"{shown(date)} is not a date in the document's form")
    year, month, day, hour, minute, second, offset_hours, _ = map(int, match.groups())
    try:
        # The calendar repeats every 400 years; Python's ends after 9999.
        datetime.datetime(2000 + year % 400, month, day, hour, minute, min(second, 59))
    except ValueError as error:
        raise Unsound(f"{shown(date)}: {error}") from None
    if second > 60 or offset_hours > 24:
        raise Unsound(f"{shown(date)} has a field out of range")


def payload_bytes(digits):
    if len(digits) % 2 != 0:
        raise Unsound(f"the payload has {len(digits)} digits, an odd number")
    other = digits.translate(None, b"0123456789ABCDEF")
    if other:
        raise Unsound(f"the payload holds {shown(other)}, which are not upper-case digits")
    return bytes.fromhex(digits.decode())


def decrypt(marker, payload, date):
    key = hashlib.md5(date, usedforsecurity=False).digest()
    if marker == b"R":
        return rc4(key, payload)
    if marker == b"X":
        return cycling_xor(key, payload)
    raise Unsound(f"the cipher marker is {shown(marker)}")
