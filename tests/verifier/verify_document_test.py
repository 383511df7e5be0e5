"""Tests of the verifier, on documents that are built here without its code."""

import contextlib
import hashlib
import io
import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True

import verify_document
from rc4 import keystream, rc4
from survey_document import Foreign, Repaired, Unsound, search

WRAPPER = {
    "application": "OrvanQXApplication",
    "printer": "OrvanQX2Application",
    "printer-older": "OrvanQXPrinter",
}
DATE = "2024-03-15T09:05:07+09:00"


def encrypted(contents, date, marker):
    """Another RC4 and XOR, one byte at a time."""
    key = hashlib.md5(date.encode()).digest()
    if marker == "X":
        return bytes(byte ^ key[i % 16] for i, byte in enumerate(contents))
    box, j = list(range(256)), 0
    for i in range(256):
        j = (j + box[i] + key[i % 16]) % 256
        box[i], box[j] = box[j], box[i]
    result, i, j = [], 0, 0
    for byte in contents:
        i = (i + 1) % 256
        j = (j + box[i]) % 256
        box[i], box[j] = box[j], box[i]
        result.append(byte ^ box[(box[i] + box[j]) % 256])
    return bytes(result)


def build(layout="application", marker="R", contents=b"some contents", date=DATE, edit=None):
    """A sound document; `edit` changes its content before the checksum is made."""
    payload = encrypted(contents, date, marker).hex().upper()
    content = (
        f"<Version>1.0</Version><OSVersion>M.6.1.0</OSVersion><Date>{date}</Date>"
        "<Locale>de_DE</Locale><ID>{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}</ID>"
    )
    if layout == "printer-older":
        content += "<Printer><DeviceID>QX 200</DeviceID><SN></SN><ROMVER>2.14</ROMVER>"
        content += f'<PLI C="{marker}">{payload}</PLI></Printer>'
    else:
        content += f'<Encrypted C="{marker}">{payload}</Encrypted>'
    return wrapped(edit(content) if edit else content, WRAPPER[layout])


def wrapped(content, name):
    checksum = hashlib.md5(content.encode()).hexdigest().upper()
    return f'<{name} SUM="{checksum}">{content}</{name}>'.encode()


def replacing(old, new):
    def edit(content):
        assert old in content, old
        return content.replace(old, new, 1)

    return edit


def edited(old, new, **arguments):
    return build(edit=replacing(old, new), **arguments)


def undated(date):
    return build(date=date)


class SoundDocuments(unittest.TestCase):
    def test_all_layouts_and_markers(self):
        for layout in WRAPPER:
            for marker in "RX":
                for contents in [b"", b"x", "Grüße 𝄞 \0 end".encode(), bytes(range(128)) * 40]:
                    with self.subTest(layout=layout, marker=marker, size=len(contents)):
                        data = build(layout, marker, contents)
                        document = verify_document.verify(data, layout, contents)
                        self.assertEqual(document.layout, layout)
                        self.assertEqual(document.marker, marker)
                        self.assertEqual(document.contents, contents)

    def test_header_values_come_back(self):
        document = verify_document.verify(build("printer-older"))
        self.assertEqual(document.values["Version"], b"1.0")
        self.assertEqual(document.values["Locale"], b"de_DE")
        self.assertEqual(document.values["DeviceID"], b"QX 200")
        self.assertEqual(document.values["SN"], b"")

    def test_dates_of_all_zones_and_centuries(self):
        for date in ["2024-02-29T23:59:59-03:30", "2100-01-01T00:00:00+05:45",
                     "2016-12-31T23:59:60+00:00", "10000-01-01T00:00:00+14:00"]:
            with self.subTest(date=date):
                self.assertEqual(verify_document.verify(undated(date)).contents, b"some contents")


# What is wrong, the document, and part of what the verifier must say about it.
BROKEN = [
    ("nothing at all", b"", "not well-formed"),
    ("cut short", build()[:-1], "not well-formed"),
    ("another wrapper", build().replace(b"OrvanQXApplication", b"Other"), "not the wrapper"),
    ("an empty wrapper of another name", wrapped("", "Other"), "no sign of a survey document"),
    ("the wrapper of another layout", build("printer-older").replace(
        b"OrvanQXPrinter", b"OrvanQX2Application"), "'<Encrypted C=\"' expected"),
    ("older layout without its printer element", wrapped(
        build().split(b'">', 1)[1].rsplit(b"</", 1)[0].decode(), "OrvanQXPrinter"),
     "'<Printer>' expected"),
    ("a second attribute", build().replace(b' SUM="', b' A="" SUM="'), "expected"),
    ("a declaration and a line end", b'<?xml version="1.0"?>\n' + build(), "not the wrapper"),
    ("another encoding", b'<?xml version="1.0" encoding="latin1"?>' + build(), "not the wrapper"),
    ("two declarations", b'<?xml version="1.0"?>' * 2 + build(), "not well-formed"),
    ("a byte order mark", b"\xef\xbb\xbf" + build(), "not the wrapper"),
    ("a line end after the document", build() + b"\n", "does not end in"),
    ("a comment after the document", build() + b"<!-- -->", "does not end in"),
    ("white space before the first element", edited("<Version>", " <Version>"), "expected"),
    ("white space between elements", edited("</Date>", "</Date>\n"), "expected"),
    ("white space in a tag", edited("</Date>", "</Date >"), "expected"),
    ("white space after the last element", edited("</Encrypted>", "</Encrypted> "),
     "follows the end"),
    ("two elements exchanged", edited(
        "<Version>1.0</Version><OSVersion>M.6.1.0</OSVersion>",
        "<OSVersion>M.6.1.0</OSVersion><Version>1.0</Version>"), "expected"),
    ("an element missing", edited("<Locale>de_DE</Locale>", ""), "expected"),
    ("an empty element closed at once", edited("<SN></SN>", "<SN/>", layout="printer-older"),
     "expected"),
    ("one element too many", edited("</ID>", "</ID><More></More>"), "expected"),
    ("an element in a value", edited("de_DE", "<b>de</b>"), "expected"),
    ("identity in another order", edited("<SN></SN><ROMVER>2.14</ROMVER>",
                                         "<ROMVER>2.14</ROMVER><SN></SN>",
                                         layout="printer-older"), "expected"),
    ("a changed value", build().replace(b"de_DE", b"de_AT"), "the checksum is"),
    ("a checksum in lower case", build().replace(
        build()[25:57], build()[25:57].lower()), "the checksum is"),
    ("a checksum of nothing", wrapped("", "OrvanQXApplication"), "expected"),
    ("another marker", edited('C="R"', 'C="Y"'), "marker is 'Y'"),
    ("a marker in lower case", edited('C="R"', 'C="r"'), "marker is 'r'"),
    ("no marker", edited('C="R"', 'C=""'), "marker is ''"),
    ("the other cipher's marker", edited('C="R"', 'C="X"'), "contents"),
    ("an odd number of digits", edited("</Encrypted>", "A</Encrypted>"), "odd number"),
    ("digits in lower case", edited("</Encrypted>", "ab</Encrypted>"), "not upper-case digits"),
    ("no digits", edited("</Encrypted>", "GH</Encrypted>"), "not upper-case digits"),
    ("a blank among the digits", edited("</Encrypted>", " A</Encrypted>"), "not upper-case"),
    ("one byte of contents too many", edited("</Encrypted>", "00</Encrypted>"), "contents"),
    ("a date that does not match the key", edited("09:05:07", "09:05:08"), "contents"),
    ("not a date", undated(""), "not a date"),
    ("a date without its offset's colon", undated("2024-03-15T09:05:07+0900"), "not a date"),
    ("a date without an offset", undated("2024-03-15T09:05:07"), "not a date"),
    ("a date with a blank", undated("2024-03-15 09:05:07+09:00"), "not a date"),
    ("a date with a Z", undated("2024-03-15T09:05:07Z"), "not a date"),
    ("a month 13", undated("2024-13-15T09:05:07+09:00"), "month"),
    ("a 30 February", undated("2024-02-30T09:05:07+09:00"), "day"),
    ("a 29 February in a common year", undated("2023-02-29T09:05:07+09:00"), "day"),
    ("a second 61", undated("2024-02-28T09:05:61+09:00"), "out of range"),
    ("an offset of 25 hours", undated("2024-02-28T09:05:59+25:00"), "out of range"),
    ("an offset of 60 minutes", undated("2024-02-28T09:05:59+09:60"), "not a date"),
    ("not UTF-8", build().replace(b"de_DE", b"de\xff"), "the document: not UTF-8"),
    ("contents that are not UTF-8", build(contents=b"a\xffb"), "the contents: not UTF-8"),
    ("other contents of the same length", build(contents=b"same contents"), "differ from byte 1"),
    ("a stray ampersand", edited("de_DE", "de & DE"), "not well-formed"),
]


class BrokenDocuments(unittest.TestCase):
    def test_each_is_found_out(self):
        for name, data, expected in BROKEN:
            with self.subTest(name):
                with self.assertRaises(Unsound) as raised:
                    verify_document.verify(data, contents=b"some contents")
                self.assertIn(expected, str(raised.exception))

    def test_a_layout_that_was_not_expected(self):
        with self.assertRaisesRegex(Unsound, "layout is printer, not application"):
            verify_document.verify(build("printer"), layout="application")


class SerialisedDocuments(unittest.TestCase):
    def test_a_declaration_is_sound(self):
        for start in [b'<?xml version="1.0"?>', b"<?xml version='1.0' encoding='utf-8' ?>"]:
            self.assertEqual(verify_document.verify(start + build()).contents, b"some contents")

    def test_escaped_markup_is_told_from_other_changes(self):
        sound = build(edit=replacing("de_DE", "a>b &amp; c"))
        for value in [b"a&gt;b &amp; c", b"a&gt;b &amp;amp; c"]:
            with self.assertRaises(Repaired):
                verify_document.verify(sound.replace(b"a>b &amp; c", value))
        many = build(edit=replacing("de_DE", "x" + ">" * 40)).replace(b"x" + b">" * 40, b"x" + b"&gt;" * 40)
        with self.assertRaises(Repaired):
            verify_document.verify(many)
        for value in [b"a&gt;c &amp; c", b"a>b & c", b"a&#62;b &amp; c"]:
            with self.assertRaises(Unsound) as raised:
                verify_document.verify(sound.replace(b"a>b &amp; c", value))
            self.assertNotIsInstance(raised.exception, Repaired)


class ForeignFiles(unittest.TestCase):
    def test_files_of_another_kind(self):
        for data in [b"text", b"<html/>", b"\n<!DOCTYPE html><OrvanQXApplication", b"<a/>", b" \n",
                     b"\0" * 9, b"\x1f\x8b", build().decode().encode("utf-16"), b"<a"]:
            with self.subTest(data=data[:20]):
                with self.assertRaises(Foreign):
                    verify_document.verify(data)

    def test_beginnings_and_damaged_documents_are_not(self):
        whole = b'<?xml version="1.0"?>' + build()
        beginnings = [whole[:length] for length in range(len(whole))]
        for data in beginnings + [build().replace(b"OrvanQX", b""), b"x" + build(), b""]:
            with self.assertRaises(Unsound) as raised:
                verify_document.verify(data)
            self.assertNotIsInstance(raised.exception, Foreign, data)


class FoundValues(unittest.TestCase):
    def test_all_are_found_around_one_broken_thing(self):
        data = build("printer-older")
        checksum = data.split(b'"')[1]
        for changed in [b" " + data, data + b"\n", b"\xef\xbb\xbf" + data, data[:-1],
                        data.replace(checksum, checksum.lower()), data.replace(b"<Orv", b"<0rv")]:
            found = search(changed)
            self.assertEqual(found.layout, "printer-older")
            self.assertEqual(len(found.values), 8)
            for offset, value in found.values.values():
                self.assertEqual(changed[offset : offset + len(value)], value)
            self.assertEqual(found.values["DeviceID"][1], b"QX 200")
            self.assertEqual((found.marker, len(found.digits[1])), (b"R", 26))

    def test_a_cut_value_and_digits_after_a_wrong_one_are_not(self):
        data = build()
        self.assertNotIn("Locale", search(data[: data.index(b"_DE")]).values)
        digits = data.index(b'C="R">') + 6
        found = search(data[: digits + 5] + b"g" + data[digits + 6 :])
        self.assertEqual(found.digits, (digits, data[digits : digits + 4]))
        self.assertEqual(search(data.replace(b'C="R"', b'C="Z"')).marker, b"")
        self.assertIsNone(search(b"<OrvanQXApplication"))
        self.assertIsNone(search(b"<OSVersion></OSVersion>"))


class Ciphers(unittest.TestCase):
    def test_published_keystreams(self):
        # RFC 6229, the first 16 bytes and those from offset 4096 of the 40- and 128-bit keys.
        forty, whole = bytes(range(1, 6)), bytes(range(1, 17))
        self.assertEqual(keystream(forty, 16).hex(), "b2396305f03dc027ccc3524a0a1118a8")
        self.assertEqual(keystream(forty, 4112)[4096:].hex(), "ff25b58995996707e51fbdf08b34d875")
        self.assertEqual(keystream(whole, 16).hex(), "9ac7cc9a609d1ef7b2932899cde41b97")
        self.assertEqual(keystream(whole, 4112)[4096:].hex(), "a36a4c301ae8ac13610ccbc12256cacc")

    def test_twice_gives_the_source_back(self):
        self.assertEqual(rc4(b"key", rc4(b"key", b"source")), b"source")


class CommandLine(unittest.TestCase):
    def run_main(self, *arguments):
        output = io.StringIO()
        with contextlib.redirect_stdout(output), contextlib.redirect_stderr(output):
            try:
                status = verify_document.main(list(arguments))
            except SystemExit as stop:
                status = stop.code
        return status, output.getvalue()

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.sound = self.file("sound", build())
        self.broken = self.file("broken", build()[:-1])
        self.contents = self.file("contents", b"some contents")

    def file(self, name, data):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(data)
        return path

    def test_sound(self):
        status, output = self.run_main("--contents-file", self.contents, "--layout",
                                       "application", self.sound)
        self.assertEqual(status, 0)
        self.assertEqual(output,
                         f"{self.sound}: application, R, 13 bytes of contents, sound\n")

    def test_one_of_two_broken(self):
        status, output = self.run_main(self.broken, self.sound)
        self.assertEqual(status, 1)
        self.assertIn(f"{self.broken}: not sound: not well-formed", output)
        self.assertIn("  Locale, not vouched for: 'de_DE'\n", output)
        self.assertIn("contents, sound", output)

    def test_the_word_for_other_files(self):
        foreign = self.file("foreign", b"text")
        self.assertEqual(self.run_main(foreign),
                         (1, f"{foreign}: foreign: it shows no sign of a survey document\n"))
        escaped = build(edit=replacing("de_DE", "a>b")).replace(b"a>b", b"a&gt;b")
        self.assertIn(": repaired: the checksum is ", self.run_main(self.file("r", escaped))[1])

    def test_other_contents(self):
        status, output = self.run_main("--contents-file", self.sound, self.sound)
        self.assertEqual(status, 1)
        self.assertIn("bytes of contents, not", output)

    def test_other_layout(self):
        self.assertEqual(self.run_main("--layout", "printer", self.sound)[0], 1)

    def test_missing_file(self):
        status, output = self.run_main(os.path.join(self.folder, "none"))
        self.assertEqual(status, 2)
        self.assertIn("No such file", output)

    def test_wrong_usage(self):
        self.assertEqual(self.run_main()[0], 2)
        self.assertEqual(self.run_main("--layout", "other", self.sound)[0], 2)


if __name__ == "__main__":
    unittest.main()
