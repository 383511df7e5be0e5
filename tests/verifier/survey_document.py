"""Reads survey documents strictly, and says what is wrong with those that are not sound.

A document is one element without white space between its parts:

    <WRAPPER SUM="checksum">CONTENT</WRAPPER>

An XML declaration may stand before it. The checksum is the MD5 digest of CONTENT, byte for byte as
in the file. The payload is encrypted with RC4 (marker R) or a cycling XOR (marker X). The key is the
MD5 digest of the <Date> text.
"""

import datetime
import hashlib
import itertools
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


class Repaired(Unsound):
    """Markup was escaped after the checksum was made. The document can be relied on."""


class Foreign(Unsound):
    """It is not a survey document at all."""


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
    if is_foreign(data):
        raise Foreign("it shows no sign of a survey document")
    check_well_formed(data)
    data = data[declaration_length(data) :]
    layout = layout_of(data)
    wrapper = Cursor(data)
    wrapper.expect(b"<" + WRAPPERS[layout] + b' SUM="')
    checksum = wrapper.until(b'"')
    wrapper.expect(b'">')
    closing = b"</" + WRAPPERS[layout] + b">"
    if not data.endswith(closing):
        raise Unsound(f"the document does not end in {shown(closing)}")
    content = data[wrapper.position : len(data) - len(closing)]
    if digest(content) != checksum:
        problem = f"the checksum is {shown(checksum)}, the content's is {shown(digest(content))}"
        raise (Repaired if is_repaired(content, checksum, layout) else Unsound)(problem)
    values, marker, digits = parse_content(content, layout)
    check_date(values["Date"])
    contents = decrypt(marker, payload_bytes(digits), values["Date"])
    check_utf8(contents, "the contents")
    return Document(layout, checksum, marker.decode(), contents, values)


def declaration(data):
    """The XML declaration, or whatever looks like one, that a text begins with."""
    match = re.match(rb"<\?xml.*?\?>", data[:256], re.DOTALL)
    return match[0] if match else b""


def declaration_length(data):
    """0 for a declaration that is malformed or names another encoding than UTF-8."""
    text = declaration(data)
    encodings = []
    parser = xml.parsers.expat.ParserCreate("UTF-8")
    parser.XmlDeclHandler = lambda version, encoding, standalone: encodings.append(encoding)
    try:
        parser.Parse(text + b"<a/>", True)
    except xml.parsers.expat.ExpatError:
        return 0
    return len(text) if encodings and (encodings[0] or "utf-8").lower() == "utf-8" else 0


# --- Documents whose markup was escaped ---

ESCAPES = {b"&lt;": b"<", b"&amp;": b"&", b"&gt;": b">"}
ESCAPE = re.compile(b"&lt;|&amp;|&gt;")


def is_repaired(content, checksum, layout):
    """Whether some of the escaped characters, turned back, give a content of this checksum. More
    than six of them are turned back value by value, and no more than 64 contents are tried."""
    try:
        _, marker, digits = parse_content(content, layout)
        payload_bytes(digits)
    except Unsound:
        return False
    if marker not in (b"R", b"X"):
        return False
    pieces = re.split(rb"(<[^>]*>)", content[: content.rindex(b' C="')])
    rest = content[content.rindex(b' C="') :]
    places = [(i, match.span()) for i, piece in enumerate(pieces) if not piece.startswith(b"<")
              for match in ESCAPE.finditer(piece)]
    units = [[place] for place in places]
    if len(units) > 6:
        units = [list(group) for _, group in itertools.groupby(places, key=lambda place: place[0])]
    choices = [[True] * len(units)]
    if 0 < len(units) <= 6:
        choices = itertools.product([True, False], repeat=len(units))
    return any(digest(turned_back(pieces, itertools.chain(*itertools.compress(units, chosen))) + rest)
               == checksum for chosen in choices if any(chosen))  # fmt: skip


def turned_back(pieces, places):
    pieces = list(pieces)
    for i, (begin, end) in sorted(places, reverse=True):
        pieces[i] = pieces[i][:begin] + ESCAPES[pieces[i][begin:end]] + pieces[i][end:]
    return b"".join(pieces)


# --- Files of another kind ---

SIGNS = [b"<OrvanQX", b"</OrvanQX", b"<OSVersion>", b'<Encrypted C="', b'<PLI C="']


def is_foreign(data):
    """Whether nothing in a file is that of a survey document, and it cannot be the beginning of one
    either. An empty file is such a beginning."""
    rest = data.removeprefix(b"\xef\xbb\xbf").lstrip(b" \t\r\n")
    rest = rest[len(declaration(rest)) :].lstrip(b" \t\r\n")
    if rest[:14].lower() == b"<!doctype html" or rest[:5].lower() == b"<html":
        return True
    if any(sign in data for sign in SIGNS):
        return False
    if not rest:
        return data != b"" and b"<" not in data
    if b"<?xml".startswith(rest) or (rest.startswith(b"<?xml") and b"?>" not in rest):
        return False
    return not any((b"<" + name).startswith(rest) for name in WRAPPERS.values())


# --- What can be found of a document that is not sound ---


@dataclass
class Found:
    layout: str
    values: dict  # name: (offset, bytes as they stand)
    marker: bytes  # b"" if there is no payload with a marker
    digits: tuple  # (offset, bytes)


def search(data):
    """What can be found, with nothing to vouch for it; None if no layout or nothing is found."""
    layout = layout_found(data)
    if layout is None:
        return None
    older = layout == "printer-older"
    values = {}
    for name in HEADER + (IDENTITY if older else []):
        match = re.search(b"<" + name + b">([^<]*)<", data)
        if match:
            values[name.decode()] = (match.start(1), match[1])
    start = b"<PLI" if older else b"<Encrypted"
    at = data.find(start + b' C="')
    match = re.compile(start + rb' C="([RX])">((?:[0-9A-F]{2})*)').match(data, max(at, 0))
    if not values and not match:
        return None
    marker, digits = (match[1], (match.start(2), match[2])) if match else (b"", (0, b""))
    return Found(layout, values, marker, digits)


def layout_found(data):
    for start, end in [(b"<", b" "), (b"</", b"")]:
        for layout, name in WRAPPERS.items():
            if start + name + end in data:
                return layout
    return "printer-older" if b"<PLI " in data else None


# --- The parts of a document ---


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


def digest(content):
    return hashlib.md5(content, usedforsecurity=False).hexdigest().upper().encode()


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
