"""A corpus of survey documents, sound and unsound, each with what is known about it.

Every document is a sound one after a change whose outcome is known. Only the "mutated" ones are
changed at random. The same call gives the same corpus every time.
"""

import hashlib
import random
from dataclasses import dataclass, replace

DATE = "2024-03-15T09:05:07+09:00"
WRAPPERS = {"application": "OrvanQXApplication", "printer": "OrvanQX2Application",
            "older": "OrvanQXPrinter"}
HEADER = {"Version": "1.0", "OSVersion": "M.6.1.55", "Date": DATE, "Locale": "de_DE",
          "ID": "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"}
IDENTITY = {"DeviceID": "MFG:Orvan;MDL:QX 200;", "SN": "QX200-0004711", "ROMVER": "2.14"}
CONTENTS = {
    "empty": b"",
    "one character": b"x",
    "plain": b"launches=14\nprints=3\n",
    "not ASCII": "Größe A4, 日本語, 𝄞, \u202eright to left".encode(),
    "NUL bytes": b"\0before\0\0after\0",
    "controls": bytes(range(128)) * 3,
    "4 KiB": "Zeile für Zeile.\n".encode() * 228,
    "64 KiB": b"0123456789abcdef" * 4096,
}


@dataclass(frozen=True)
class Case:
    """A document, and what the receiver must find; None if that is not known."""

    kind: str
    name: str
    data: bytes
    layer: str | None = None
    fault: str | None = None
    offset: int | None = None
    field: str | None = None


@dataclass(frozen=True)
class Plan:
    """What a document is made from; `values` are in their stored form."""

    layout: str = "application"
    marker: str = "R"
    contents: bytes = b"some contents"
    values: tuple = ()

    def value(self, name):
        return dict(self.values).get(name, {**HEADER, **IDENTITY}[name])

    def having(self, **values):
        return replace(self, values=(*self.values, *values.items()))


def cipher_bytes(key, count):
    """RC4's key stream."""
    box = list(range(256))
    j = 0
    for i in range(256):
        j = (j + box[i] + key[i % 16]) & 255
        box[i], box[j] = box[j], box[i]
    stream = bytearray(count)
    j = 0
    for at in range(count):
        i = (at + 1) & 255
        j = (j + box[i]) & 255
        box[i], box[j] = box[j], box[i]
        stream[at] = box[(box[i] + box[j]) & 255]
    return bytes(stream)


def payload(plan):
    key = hashlib.md5(plan.value("Date").encode()).digest()
    count = len(plan.contents)
    stream = cipher_bytes(key, count) if plan.marker == "R" else (key * (count // 16 + 1))[:count]
    mixed = int.from_bytes(stream, "big") ^ int.from_bytes(plan.contents, "big")
    return mixed.to_bytes(count, "big").hex().upper()


def elements(plan, names):
    return "".join(f"<{name}>{plan.value(name)}</{name}>" for name in names)


def content(plan):
    text = elements(plan, HEADER)
    if plan.layout != "older":
        text += f'<Encrypted C="{plan.marker}">{payload(plan)}</Encrypted>'
    else:
        text += "<Printer>" + elements(plan, IDENTITY)
        text += f'<PLI C="{plan.marker}">{payload(plan)}</PLI></Printer>'
    return text.encode()


def sealed(layout, inner, checked=None):
    """The wrapper around a content, with the checksum of `checked`, if given, instead."""
    name = WRAPPERS[layout]
    checksum = hashlib.md5(inner if checked is None else checked).hexdigest().upper()
    return f'<{name} SUM="{checksum}">'.encode() + inner + f"</{name}>".encode()


def document(plan):
    return sealed(plan.layout, content(plan))


def plans():
    for layout in WRAPPERS:
        for marker in "RX":
            yield Plan(layout, marker)


def payload_field(plan):
    return "PLI" if plan.layout == "older" else "Encrypted"


def sound():
    for plan in plans():
        for name, contents in CONTENTS.items():
            yield f"{plan.layout} {plan.marker}, {name}", document(replace(plan, contents=contents))
        values = {"empty": "", "escaped": "A&amp;B &lt;C&gt; &#x6771;", "not ASCII": "東京 é",
                  "blanks": "  a\tb\n", "long": "v" * 5000}
        for name, value in values.items():
            changed = plan.having(Version=value, Locale=value, DeviceID=value, SN=value)
            yield f"{plan.layout} {plan.marker}, values {name}", document(changed)
        for start in [b'<?xml version="1.0"?>',
                      b"<?xml version='1.0' encoding='utf-8' standalone='yes' ?>"]:
            yield f"{plan.layout} {plan.marker}, declared", start + document(plan)


def truncated():
    for plan in plans():
        whole = document(plan)
        for length in range(len(whole)):
            yield f"{plan.layout} {plan.marker} to {length}", whole[:length]
        large = document(replace(plan, contents=CONTENTS["4 KiB"]))
        for length in range(400, len(large), 397):
            yield f"{plan.layout} {plan.marker}, 4 KiB to {length}", large[:length]


def edited(plan, old, new):
    """The document after a change in its content, with a matching checksum; and the place."""
    inner = content(plan)
    at = inner.index(old)
    whole = sealed(plan.layout, inner[:at] + new + inner[at + len(old) :])
    return whole, whole.index(b'">') + 2 + at


def damaged():
    """Documents whose content is malformed, with a matching checksum."""
    for plan in plans():
        digits = payload(plan).encode()
        field = payload_field(plan)
        opening = f'{field} C="{plan.marker}">'.encode()
        version, older = b"<Version>1.0</Version>", b"<OSVersion>M.6.1.55</OSVersion>"
        changes = [  # old, new, layer, offset from the start of the change, field
            (digits, digits[:5] + b"g" + digits[6:], "hexadecimal", 5, field),
            (digits, digits[:4].lower() + b"ab" + digits[6:], "hexadecimal", None, field),
            (digits, digits[:-1], "hexadecimal", len(digits) - 1, field),
            (digits, b" " + digits, "hexadecimal", 0, field),
            (digits, digits[:7] + b"<a/>" + digits[7:], "layout", None, None),
            (opening, opening.replace(b'="' + plan.marker.encode(), b'="Z'), "cipherMarker",
             len(field) + 4, "C"),
            (opening, opening.replace(plan.marker.encode() + b'"', b'"'), "cipherMarker", None,
             "C"),
            (opening, opening.replace(b'">', b'" D="">'), "layout", None, None),
            (opening, opening.replace(b" C=", b" c="), "layout", None, None),
            (version, b"", "layout", None, None),
            (version, version + version, "layout", None, None),
            (version + older, older + version, "layout", None, None),
            (version, version + b"\n", "whiteSpace", len(version), "OSVersion"),
            (version, b" " + version, "whiteSpace", 0, "Version"),
            (version, b"<Version/>", "layout", None, None),
            (version, b"<Version><!-- --></Version>", "layout", None, None),
            (version, b"<Version>1.0</version>", "xml", None, None),
            (version, b"<Version>A&B</Version>", "xml", None, "Version"),
            (version, b"<Version>A<B</Version>", "xml", None, None),
            (version, b"<Version>\xff</Version>", "xml", 9, "Version"),
            (version, b"<Version>\0</Version>", "xml", 9, "Version"),
            (b"</ID>", b"</ID>more", "layout", None, None),
        ]
        for number, (old, new, layer, place, name) in enumerate(changes):
            whole, at = edited(plan, old, new)
            yield Case("damaged", f"{plan.layout} {plan.marker}, change {number}", whole, layer,
                       "damaged", None if place is None else at + place, name)


def surrounded():
    """Documents with something before, after or in their wrapper."""
    for plan in plans():
        whole = document(plan)
        name = WRAPPERS[plan.layout].encode()
        for number, (layer, data) in enumerate([
                ("whiteSpace", whole + b"\n"), ("whiteSpace", b" " + whole),
                ("whiteSpace", b'<?xml version="1.0"?>\n' + whole),
                ("layout", whole + b"<!-- -->"), ("layout", b"\xef\xbb\xbf" + whole),
                ("layout", b'<?xml version="1.0" encoding="latin1"?>' + whole),
                ("layout", b'\xef\xbb\xbf<?xml version="1.0"?>' + whole),
                ("xml", b'<?xml version="1.0"?><?xml version="1.0"?>' + whole),
                ("layout", b"<!DOCTYPE a [<!ENTITY b 'c'>]>" + whole),
                ("layout", whole.replace(b' SUM="', b' A="" SUM="')),
                ("layout", whole.replace(b' SUM="', b'  SUM="')),
                ("layout", whole.replace(b' SUM="', b' Sum="')),
                ("layout", whole.replace(name, b"Other")),
                ("xml", whole + b"x"), ("xml", whole + whole), ("xml", whole + b"\0"),
                ("hexadecimal", whole.replace(b'SUM="', b'SUM="0', 1)),
                ("hexadecimal", b'<%s SUM="">' % name + whole.split(b'">', 1)[1])]):
            yield Case("damaged", f"{plan.layout} {plan.marker}, around {number}", data, layer,
                       "damaged")


def altered():
    """Documents changed after the checksum was made, and still well formed."""
    for plan in plans():
        whole = document(plan)
        digits = payload(plan).encode()
        checksum = whole.split(b'"')[1]
        other = b"0" if digits[:1] != b"0" else b"1"
        for old, new in [(b"1.0<", b"1.1<"), (b"de_DE", b"en_US"), (b"de_DE", b""),
                         (b"2024-03-15", b"2024-03-16"), (b"3F2A", b"3F2B"),
                         (digits, other + digits[1:]), (digits, digits + b"00"), (digits, b""),
                         (checksum, checksum[::-1]), (checksum, b"0" * 32),
                         (f'C="{plan.marker}"'.encode(),
                          f'C="{"X" if plan.marker == "R" else "R"}"'.encode())]:
            yield f"{plan.layout} {plan.marker}, {old[:12]} {new[:12]}", whole.replace(old, new, 1)


def undecodable():
    for plan in plans():
        for good, bad in [(b"", b"\xff"), (b"0123456789abcdef", b"\xc3"), (b"ok", b"\xed\xa0\x80"),
                          ("é日".encode(), b"\xf4\x90\x80\x80 and more")]:
            data = document(replace(plan, contents=good + bad))
            at = data.index(f'C="{plan.marker}">'.encode()) + 6 + 2 * len(good)
            yield Case("undecodable", f"{plan.layout} {plan.marker}, {bad}", data, "contents",
                       "damaged", at, payload_field(plan))
        undated = document(plan.having(Date=""))
        yield Case("undecodable", f"{plan.layout} {plan.marker}, no date", undated, "contents",
                   "none", undated.index(b"<Date>") + 6, "Date")


def repaired():
    """Documents whose stray markup was escaped after the checksum was made."""
    for layout in WRAPPERS:
        for name in {**HEADER, **(IDENTITY if layout == "older" else {})}:
            if name == "Date":
                continue
            for stray in ["A&B", "a < b", "&&", "&amp; & <", "x &lt;&", "]]]>&"]:
                plan = Plan(layout)
                before = content(plan.having(**{name: stray}))
                # Two of them begin with text that was a reference from the start.
                kept = 5 if stray.startswith("&amp;") else 6 if stray.startswith("x &lt;") else 0
                mended = stray[kept:].replace("&", "&amp;").replace("<", "&lt;")
                mended = mended.replace("]]>", "]]&gt;")
                after = content(plan.having(**{name: stray[:kept] + mended}))
                data = sealed(layout, after, before)
                yield Case("repaired", f"{layout} {name} {stray}", data, "checksum", "repaired",
                           data.index(b'SUM="') + 5, "SUM")


def serialised():
    """Documents whose every ">" in a value was escaped after the checksum was made."""
    for layout in WRAPPERS:
        for value in ["A>B", "a -> b & c", ">" * 40, "&gt;>", "]]>"]:
            before = content(Plan(layout).having(Version=value, Locale=value))
            kept = 4 if value.startswith("&gt;") else 0
            mended = value[kept:].replace("&", "&amp;").replace(">", "&gt;")
            escaped = value[:kept] + mended
            after = content(Plan(layout).having(Version=escaped, Locale=escaped))
            for start in [b"", b'<?xml version="1.0" encoding="UTF-8"?>']:
                data = start + sealed(layout, after, before)
                yield Case("repaired", f"{layout} {value}", data, "checksum", "repaired",
                           data.index(b'SUM="') + 5, "SUM")


def foreign():
    """Files of other kinds."""
    whole = document(Plan())
    for layer, data in [
            ("xml", b"\x1f\x8b\x08\0\0"), ("xml", b"%PDF-1.4\n"), ("xml", b"\x89PNG\r\n\x1a\n"),
            ("xml", b"\xff\xd8\xff\xe0"), ("xml", b"GIF89a"), ("xml", b"PK\x03\x04"), ("xml", bytes(500)),
            ("xml", b" \r\n\t"), ("xml", b"text\n"), ("xml", "Größe\n".encode()), ("xml", b"\x01\x02"),
            ("xml", whole.decode().encode("utf-16")), ("xml", whole.decode().encode("utf-16-le")),
            ("xml", whole.decode().encode("utf-16-be")), ("layout", b"<!DOCTYPE html><p>"),
            ("layout", b"<html><body/></html>"), ("xml", b"<HTML><BODY>" + whole), ("layout", b"<a/>"),
            ("layout", b'<?xml version="1.0"?><plist/>'), ("xml", b"<a"), ("xml", b"<a><b></a>"),
            ("layout", b"<!DOCTYPE a><a/>"), ("xml", b"{}"), ("xml", b"\xef\xbb\xbf")]:
        yield Case("foreign", repr(data[:20]), data, layer, "foreign", 0, "")


def misdated():
    """Sound to the receiver, which uses the date only as the text that gives the key."""
    for plan in plans():
        for date in ["2024-03-15T09:05:07+0900", "2024-02-30T00:00:00+00:00", "yesterday", " "]:
            yield f"{plan.layout} {plan.marker}, {date}", document(plan.having(Date=date))


def mutated(count=6000):
    """Sound documents with a few random changes, half of them with a matching checksum."""
    dice = random.Random(20240315)
    bases = [(plan.layout, content(replace(plan, contents=CONTENTS[name])))
             for plan in plans() for name in ("plain", "empty", "not ASCII")]
    pieces = [b"<", b">", b"&", b"/", b'"', b" ", b"\n", b"\0", b"\xff", b"]]>", b"&amp;", b"<!--",
              b"<Date>", b"</Date>", b"A", b"0", b"g", b"\xc3\xa9"]
    for number in range(count):
        layout, inner = dice.choice(bases)
        changed = bytearray(inner)
        for _ in range(dice.randint(1, 3)):
            at = dice.randrange(len(changed) + 1)
            removed = dice.choice([0, 0, 1, 1, 2, 20])
            changed[at : at + removed] = dice.choice([b"", bytes([dice.randrange(256)]),
                                                      dice.choice(pieces)])
        checked = None if number % 2 == 0 else inner
        yield f"number {number}", sealed(layout, bytes(changed), checked)


def cases():
    """The whole corpus."""
    for name, data in sound():
        yield Case("sound", name, data, "none", "none")
    for name, data in truncated():
        yield Case("truncated", name, data, "xml", "truncated", len(data))
    yield from damaged()
    yield from surrounded()
    for name, data in altered():
        yield Case("altered", name, data, "checksum", "altered", data.index(b'SUM="') + 5, "SUM")
    yield from undecodable()
    yield from repaired()
    yield from serialised()
    yield from foreign()
    for name, data in misdated():
        yield Case("misdated", name, data, "none", "none")
    for name, data in mutated():
        yield Case("mutated", name, data)
