"""Documents of all kinds, and the row that each must have, worked out without the library."""

import codecs
import datetime
import hashlib
import os
import re
import sys
import xml.parsers.expat
from dataclasses import dataclass, replace

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "..", "receiver"), os.path.join(HERE, "..", "verifier")]

import corpus
from rc4 import cycling_xor, rc4
from survey_document import declaration_length, layout_of, parse_content, search

INTEGER, TRUTH, TEXT = int, bool, str
COLUMNS = {
    "schema": INTEGER, "source": TEXT, "member": TEXT, "name": TEXT, "number": INTEGER,
    "sha256": TEXT, "bytes": INTEGER, "fault": TEXT, "layer": TEXT, "offset": INTEGER,
    "field": TEXT, "trusted": TRUTH, "layout": TEXT, "version": TEXT, "os_version": TEXT,
    "date_text": TEXT, "date_utc": TEXT, "offset_minutes": INTEGER, "locale": TEXT, "id": TEXT,
    "device_id": TEXT, "sn": TEXT, "romver": TEXT, "cipher": TEXT, "contents": TEXT,
    "contents_hex": TEXT, "contents_bytes": INTEGER,
}  # fmt: skip
VALUES = {"Version": "version", "OSVersion": "os_version", "Date": "date_text",
          "Locale": "locale", "ID": "id", "DeviceID": "device_id", "SN": "sn", "ROMVER": "romver"}
LAYERS = {"whiteSpace": "white_space", "cipherMarker": "cipher_marker"}
TEXTS = ['quotes "', '""', '"', "a,b,,", "line\nbreak", "a\r\nb\rc", "=1+1", "+1", "-1", "@SUM(A1)",
         "\ttab", "null", "NULL", "0", "true", "1e5", " ", "", "'", ";", "\\", "\\n", "%s",
         "\ufeffx", "日本語 𝄞", "\u202eleft", "\x7f", "x" * 5000]
DATES = ["0000-01-01T00:00:00+00:00", "0001-01-01T00:00:00+14:00", "9999-12-31T23:59:59-01:00",
         "9999-12-31T23:59:59+00:00", "2016-12-31T23:59:60+00:00", "2024-02-29T12:00:00-09:30",
         "2023-02-29T12:00:00+00:00", "2024-03-15T24:00:00+00:00", "2024-03-15T00:10:00+23:59",
         "2024-03-15T00:00:00-00:00", "2024-03-15T09:05:07", "2024-03-15T09:05:07Z",
         "2024-03-15 09:05:07+09:00", "2024-03-15T09:05:07+09:60", "1969-12-31T23:59:59+00:00",
         "2024-13-01T00:00:00+00:00", "2024-03-15T09:05:07+09:00x", "20240-03-15T09:05:07+09:00"]


def hostile():
    """Texts that are hard to write down, in values and as contents."""
    for number, plan in enumerate(corpus.plans()):
        for text in TEXTS:
            stored = text.replace("\r", "&#13;") if number % 2 == 0 else text
            values = {name: stored for name in VALUES if name != "Date"}
            yield "hostile", corpus.document(plan.having(**values))
            yield "hostile", corpus.document(replace(plan, contents=text.encode()))
        for contents in [b"\0", b"a\0b\r\n", b"\xff", b"ok\xc3", b"\xed\xa0\x80"]:
            yield "hostile", corpus.document(replace(plan, contents=contents))
        for date in DATES:
            yield "dated", corpus.document(plan.having(Date=date))
    for plan in corpus.plans():
        whole = corpus.document(plan)
        for name in VALUES:
            tag = f"<{name}>".encode()
            if tag in whole:
                for bad in [b"\0", b"\xff", b"\0\xfe\0=1", b"\xe3\x81"]:
                    yield "unshowable", whole.replace(tag, tag + bad)


def cases():
    """About 1,500 documents, as (kind, bytes, what is known of the verdict)."""
    kept = {"truncated": 0, "mutated": 0}
    for case in corpus.cases():
        if case.kind in kept:
            kept[case.kind] += 1
            if case.kind == "truncated" and kept["truncated"] % 40 != 1:
                continue
            if case.kind == "mutated" and kept["mutated"] > 100:
                break
        known = {"fault": case.fault, "layer": LAYERS.get(case.layer, case.layer),
                 "offset": case.offset, "field": case.field}
        yield case.kind, case.data, {name: value for name, value in known.items() if value is not None}
    for kind, data in hostile():
        yield kind, data, {}


# --- The row of a document ---


def utc(text):
    """The instant and its offset from UTC in minutes, if there is one in the years 1 to 9999."""
    match = re.fullmatch(rb"(\d+)-(\d\d)-(\d\d)T(\d\d):(\d\d):(\d\d)([+-])(\d\d):?(\d\d)", text)
    if match is None:
        return None, None
    year, month, day, hour, minute, second = (int(part) for part in match.groups()[:6])
    east, west = int(match[8]), int(match[9])
    offset = (east * 60 + west) * (-1 if match[7] == b"-" else 1)
    if year > 9999 or second > 60 or east > 23 or west > 59:
        return None, None
    try:  # the calendar repeats every 400 years, and Python's lacks the year 0
        local = datetime.datetime(2000 + year % 400, month, day, hour, minute, min(second, 59))
    except ValueError:
        return None, None
    instant = local + datetime.timedelta(seconds=second - min(second, 59), minutes=-offset)
    shown = instant.year - 2000 - year % 400 + year
    if not 1 <= shown <= 9999:
        return None, None
    return f"{shown:04}-{instant:%m-%dT%H:%M:%SZ}", offset


codecs.register_error("each byte", lambda error: ("\ufffd", error.start + 1))


def shown(data):
    """A text with U+FFFD for each byte that is not UTF-8, and for each U+0000."""
    return data.decode("utf-8", "each byte").replace("\0", "\ufffd")


def is_showable(data):
    return b"\0" not in data and shown(data).encode() == data


def is_well_formed(value):
    try:
        xml.parsers.expat.ParserCreate("UTF-8").Parse(b"<v>" + value + b"</v>", True)
        return True
    except xml.parsers.expat.ExpatError:
        return False


def without_references(value):
    named = {b"lt": b"<", b"gt": b">", b"amp": b"&", b"quot": b'"', b"apos": b"'"}

    def character(match):
        if match[1].startswith(b"#x"):
            return chr(int(match[1][2:], 16)).encode()
        return chr(int(match[1][1:])).encode() if match[1].startswith(b"#") else named[match[1]]

    return re.sub(rb"&(#x[0-9A-Fa-f]+|#[0-9]+|lt|gt|amp|quot|apos);", character, value)


def said(data, verdict):
    """Layout, values as they stand, marker and digits; or None."""
    if verdict["fault"] == "foreign":
        return None
    if verdict["layer"] in ("none", "checksum", "contents"):
        whole = data[declaration_length(data) :]
        content = whole[whole.index(b'">') + 2 : whole.rindex(b"</")]
        return layout_of(whole), *parse_content(content, layout_of(whole))
    found = search(data)
    if found is None:
        return None
    values = {name: value for name, (_, value) in found.values.items()}
    return found.layout, values, found.marker, found.digits[1]


def row_of(path, data, verdict):
    """All columns but source and member."""
    row = dict.fromkeys(COLUMNS)
    del row["source"], row["member"]
    row.update(schema=1, sha256=hashlib.sha256(data).hexdigest(), bytes=len(data), trusted=False)
    row.update(verdict)
    row.update(zip(("name", "number"), name_and_number(path)))
    document = said(data, verdict)
    if document is None:
        return row
    layout, values, marker, digits = document
    row["layout"] = layout.replace("printer-older", "printer_older_tag")
    row["trusted"] = verdict["layer"] in ("none", "checksum", "contents") and verdict["fault"] != "altered"
    for name, value in values.items():
        if name != "Date" and is_well_formed(value):
            value = without_references(value)
        row[VALUES[name]] = shown(value)
        row["trusted"] = row["trusted"] and is_showable(value)
    row["date_utc"], row["offset_minutes"] = utc(values.get("Date", b""))
    row.update(contents_of(marker, digits, values.get("Date", b"")))
    return row


def contents_of(marker, digits, date):
    if not marker:
        return {}
    columns = {"cipher": {b"R": "RC4", b"X": "XOR"}[marker], "contents_bytes": len(digits) // 2}
    if date:
        decrypt = rc4 if marker == b"R" else cycling_xor
        contents = decrypt(hashlib.md5(date).digest(), bytes.fromhex(digits.decode()))
        if is_showable(contents):
            columns["contents"] = contents.decode()
        else:
            columns["contents_hex"] = contents.hex().upper()
    return columns


def name_and_number(path):
    file = path.rsplit(b"/", 1)[-1]
    match = re.fullmatch(rb"(?:(.*)_([0-9]+)|(.*))\.(PLM|ALM)", file, re.DOTALL)
    name = match[3] if match[1] is None else match[1]
    if match[4] == b"ALM":
        return shown(name.removeprefix(b"Quillmere_Log_")), None
    number = int(match[2]) if match[2] else None
    return shown(name), number if number is not None and number < 1 << 63 else None


# --- Files ---


@dataclass(frozen=True)
class File:
    path: bytes
    kind: str
    data: bytes
    known: dict


def path_of(number):
    folder = b"%02d/" % (number // 100)
    return folder + [
        b"%04d QX200_%d.PLM" % (number, number),
        "%04d プリンタ_%d.PLM".encode() % (number, number),
        b"%04d Album_2611.ALM" % number,
        b"%04d_99999999999999999999.PLM" % number,
        b"long folder, %04d " % number + b"x" * 60 + b"/" + b"y" * 80 + b"_7.PLM",
        b"%04d.PLM" % number,
        b"Quillmere_Log_%04d_2611.ALM" % number,
        b"%04d \xff\xfe_3.PLM" % number if number % 5 == 0 else b"%04d, \"=\".ALM" % number,
    ][number % 8]


def files():
    """The documents, in the order of the bytes of their names."""
    made = [File(path_of(i), *case) for i, case in enumerate(cases())]
    return sorted(made, key=lambda file: file.path)
