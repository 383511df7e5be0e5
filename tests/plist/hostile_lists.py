"""Property lists made to do harm: each with a name, the tool's word for it and its bytes."""

import struct

MIB = 1 << 20


def binary_file(objects, reference_width=4):
    body = b"bplist00"
    offsets = []
    for item in objects:
        offsets.append(len(body))
        body += item
    table = b"".join(offset.to_bytes(4, "big") for offset in offsets)
    trailer = bytes(6) + bytes([4, reference_width]) + struct.pack(">QQQ", len(objects), 0, len(body))
    return body + table + trailer


def container(kind, references, entries, width=4):
    head = bytes([kind << 4 | 15, 0x12]) + struct.pack(">I", entries)
    return head + b"".join(reference.to_bytes(width, "big") for reference in references)


def root_with(objects, width=4):
    return binary_file([container(0xD, [1, 2], 1, width), b"\x51k"] + objects, width)


def filled(start, unit, end, size=16 * MIB):
    return start + unit * ((size - len(start) - len(end)) // len(unit)) + end


def distinct_keys(size=16 * MIB):
    entries = []
    length = 0
    number = 0
    while length < size - 100:
        entry = b"<key>%x</key><dict/>" % number
        entries.append(entry)
        length += len(entry)
        number += 1
    return b"<plist><dict>" + b"".join(entries) + b"</dict></plist>"


def hostile_xml():
    in_array = (b"<plist><dict><key>k</key><array>", b"</array></dict></plist>")
    in_string = (b"<plist><dict><key>k</key><string>", b"</string></dict></plist>")
    latin = b'<?xml version="1.0" encoding="ISO-8859-1"?>'
    attributes = b" ".join(b"a%x=''" % number for number in range(16 * MIB // 12))
    defaults = b" ".join(b"a%x CDATA ''" % number for number in range(8 * MIB // 17))
    yield "empty dictionaries", "unwritable", filled(in_array[0], b"<dict/>", in_array[1])
    yield "empty arrays", "unwritable", filled(in_array[0], b"<array/>", in_array[1])
    yield "booleans", "unwritable", filled(in_array[0], b"<true/>", in_array[1])
    yield "empty texts", "unwritable", filled(in_array[0], b"<string/>", in_array[1])
    yield "short texts", "unwritable", filled(in_array[0], b"<string>0123456789abcdef</string>", in_array[1])
    yield "nested dictionaries", "unwritable", filled(in_array[0], b"<dict><key>k</key><dict/></dict>", in_array[1])
    yield "distinct keys", "unwritable", distinct_keys()
    yield "one long text", "unwritable", filled(in_string[0], b"x", in_string[1])
    yield "one long text in Latin-1", "unwritable", filled(latin + in_string[0], b"\xe9", in_string[1])
    yield "character references", "read", filled(in_string[0], b"&#1114111;", in_string[1])
    yield "escapes that grow when written", "unwritable", filled(in_string[0], b"\"'>", in_string[1])
    yield "one long datum", "unwritable", filled(in_array[0] + b"<data>", b"AAAA", b"</data>" + in_array[1])
    yield "blanks in data", "read", filled(in_array[0] + b"<data>", b"    ", b"</data>" + in_array[1])
    yield "one long integer", "partial", filled(in_array[0] + b"<integer>", b"9", b"</integer>" + in_array[1])
    yield "one long real", "read", filled(in_array[0] + b"<real>0.", b"1", b"</real>" + in_array[1])
    yield "one long date", "partial", filled(in_array[0] + b"<date>", b"9", b"</date>" + in_array[1])
    yield "one long comment", "read", filled(b"<plist><!--", b"x", b"--><dict/></plist>")
    yield "one long name", "unreadable", filled(b"<plist><", b"x", b"/></plist>")
    yield "one long attribute", "read", filled(b"<plist a='", b"x", b"'><dict/></plist>")
    yield "many attributes", "read", b"<plist " + attributes + b"><dict/></plist>"
    yield "attributes in the document", "unreadable", b"<!DOCTYPE plist [<!ATTLIST true " + defaults + b">]><plist/>"
    yield "many comments", "read", filled(in_array[0], b"<!---->", in_array[1])
    yield "many processing instructions", "read", filled(in_array[0], b"<?a?>", in_array[1])
    yield "many CDATA sections", "read", filled(in_string[0], b"<![CDATA[]]>", in_string[1])
    start, end = [part.decode().encode("utf-16-le") for part in in_string]
    yield "one long text in UTF-16", "unwritable", filled(b"\xff\xfe" + start, b"\xac\x20", end)
    yield "open angle brackets", "unreadable", filled(b"<plist>", b"<", b"")
    yield "open arrays", "unreadable", filled(in_array[0], b"<array>", b"")
    yield "100,000 levels", "unreadable", in_array[0] + b"<array>" * 100000 + b"</array>" * 100000 + in_array[1]
    yield "nested deep, then wide", "unwritable", filled(
        b"<plist>" + b"<dict><key>k</key>" * 510 + b"<array>",
        b"<true/>",
        b"</array>" + b"</dict>" * 510 + b"</plist>",
    )
    yield "an entity bomb", "unreadable", (
        b"<!DOCTYPE plist [<!ENTITY a '" + b"x" * 1000 + b"'>"
        + b"".join(b"<!ENTITY %c '%s'>" % (98 + i, b"&%c;" % (97 + i) * 50) for i in range(10))
        + b"]><plist><dict><key>k</key><string>&k;</string></dict></plist>"
    )


def hostile_binary():
    yield "four million booleans", "unwritable", filled_binary(b"\x09", 1)
    yield "four million empty dictionaries", "unwritable", filled_binary(b"\xd0", 1)
    yield "four million empty arrays", "unwritable", filled_binary(b"\xa0", 1)
    yield "a million UIDs and more", "unwritable", filled_binary(b"\x80\x01", 3)
    yield "two million short texts", "unwritable", filled_binary(b"\x5f\x10\x10" + b"x" * 16, 2)
    yield "dictionaries of one entry", "unwritable", filled_binary(container(0xD, [1, 1], 1, 3), 3)
    yield "a circle", "unreadable", root_with([container(0xA, [2], 1)])
    yield "a circle through the root", "unreadable", root_with([container(0xA, [0], 1)])
    yield "a wide circle", "unreadable", root_with([container(0xA, [3] * 1000000 + [2], 1000001), b"\x09"])
    chain = [container(0xA, [number + 1], 1) for number in range(2, 100002)]
    yield "100,000 levels", "unreadable", root_with(chain + [b"\xa0"])
    doubled = [container(0xA, [number + 1] * 2, 2) for number in range(2, 402)]
    yield "400 arrays of twice the next", "unreadable", root_with(doubled + [b"\xa0"])
    tens = [container(0xA, [number + 1] * 1000, 1000) for number in range(2, 102)]
    yield "100 arrays of a thousand times the next", "unreadable", root_with(tens + [b"\xd0"])
    wide = container(0xA, [3] * 3000000, 3000000, 4)
    yield "one long array that holds itself first", "unreadable", root_with([wide[:6] + b"\0\0\0\2" + wide[10:], b"\x09"])
    text = b"\x5f\x12" + struct.pack(">I", 8 * MIB) + b"x" * (8 * MIB)
    yield "a long text three times", "unwritable", root_with([container(0xA, [3] * 3, 3), text])
    yield "a long text a million times", "unreadable", root_with([container(0xA, [3] * 1000000, 1000000), text])
    units = b"\x6f\x12" + struct.pack(">I", 5 * MIB) + b"\x20\xac" * (5 * MIB)
    yield "a long UTF-16 text a million times", "unreadable", root_with([container(0xA, [3] * 1000000, 1000000), units])
    data = b"\x4f\x12" + struct.pack(">I", 8 * MIB) + b"x" * (8 * MIB)
    yield "long data a million times", "unreadable", root_with([container(0xA, [3] * 1000000, 1000000), data])
    yield "a huge count", "unreadable", root_with([b"\xaf\x13" + b"\x7f" + b"\xff" * 7])
    yield "a long key a million times", "unreadable", binary_file(
        [container(0xD, [1] * 1000000 + [2] * 1000000, 1000000), text, b"\x09"]
    )


def filled_binary(item, nodes):
    """An array that refers to `item`, of `nodes` keys and values, as often as the bounds allow."""
    count = (4 * MIB - 10) // nodes
    return root_with([container(0xA, [3] * count, count, 3), item], 3)
