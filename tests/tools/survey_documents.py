"""Sound documents, made without the library: for tests that need many of them, or values that the
library would not write."""

import hashlib
from xml.sax.saxutils import escape

IDENTIFIER = "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"


def exclusive_or(date, contents):
    """The payload of the cipher "X", as digits."""
    key = hashlib.md5(date.encode()).digest()
    return bytes(byte ^ key[i % 16] for i, byte in enumerate(contents.encode())).hex().upper()


def wrapped(name, body):
    digest = hashlib.md5(body.encode()).hexdigest().upper()
    return f'<{name} SUM="{digest}">{body}</{name}>'.encode()


def header(date, locale, identifier):
    return (f"<Version>1.0</Version><OSVersion>M.6.1.55</OSVersion><Date>{date}</Date>"
            f"<Locale>{escape(locale)}</Locale><ID>{escape(identifier)}</ID>")


def application_document(date, contents, locale="en_US", identifier=IDENTIFIER):
    return wrapped("OrvanQXApplication", header(date, locale, identifier) +
                   f'<Encrypted C="X">{exclusive_or(date, contents)}</Encrypted>')


def printer_document(date, contents, device="MFG:Orvan;MDL:QX 200;", serial="QX200-0004711",
                     rom="2.14", identifier=IDENTIFIER):
    return wrapped("OrvanQXPrinter", header(date, "", identifier) +
                   f"<Printer><DeviceID>{escape(device)}</DeviceID><SN>{escape(serial)}</SN>"
                   f"<ROMVER>{escape(rom)}</ROMVER>"
                   f'<PLI C="X">{exclusive_or(date, contents)}</PLI></Printer>')
