#!/usr/bin/env python3
"""Tests of `wenlolib rows`. Argument: the path of the wenlolib command."""

import collections
import csv
import fcntl
import gzip
import hashlib
import io
import json
import os
import random
import re
import signal
import subprocess
import sys
import tarfile
import tempfile
import threading
import time
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))

import skips
from rows_corpus import COLUMNS, TRUTH, files, row_of, shown
from survey_documents import IDENTIFIER, application_document, printer_document

COMMAND = ""
FORMATS = {"ustar": tarfile.USTAR_FORMAT, "pax": tarfile.PAX_FORMAT, "gnu": tarfile.GNU_FORMAT}
SOUND = printer_document("2026-11-02T10:00:00+09:00", "pages=3\n")
# The least number of documents of each kind: a corpus that has shrunk proves nothing.
LEAST = {"sound": 90, "truncated": 50, "damaged": 228, "altered": 66, "undecodable": 30,
         "repaired": 120, "foreign": 24, "misdated": 24, "mutated": 100, "hostile": 300,
         "dated": 100, "unshowable": 100}


def run(*call, **options):
    environment = dict(os.environ, TERM="xterm", **options.pop("environment", {}))
    return subprocess.run([COMMAND, *call], capture_output="stdout" not in options, timeout=300,
                          env=environment, **options)


def is_instrumented():
    with open(COMMAND, "rb") as program:
        return b"__asan_init" in program.read()


def tar_of(members, form="pax"):
    """A tar with these members, each a name in bytes and its contents."""
    made = io.BytesIO()
    with tarfile.open(fileobj=made, mode="w", format=FORMATS[form], errors="surrogateescape") as tar:
        for name, data in members:
            entry = tarfile.TarInfo(os.fsdecode(name))
            entry.size = len(data)
            tar.addfile(entry, io.BytesIO(data))
    return made.getvalue()


def zstd(data):
    try:
        return subprocess.run(["zstd", "-q", "-c"], input=data, capture_output=True, check=True).stdout
    except FileNotFoundError:
        raise unittest.SkipTest("there is no zstd here to make the archive")


def without_place(rows):
    return [{name: value for name, value in row.items() if name not in ("source", "member")}
            for row in rows]


def rows_in(text):
    """The rows of JSON Lines, each with the columns in their order."""
    rows = [json.loads(line) for line in text.decode().split("\n")[:-1]]
    for row in rows:
        assert list(row) == list(COLUMNS), list(row)
    return rows


def values_in_csv(text):
    """Each record's values as they stand: null is None, all texts are quoted."""
    assert text.endswith(b"\r\n")
    record, value, at = [], None, 0
    text = text.decode()
    while at < len(text):
        if text[at] == '"':
            value = ""
            while True:
                end = text.index('"', at + 1)
                value += text[at + 1 : end]
                at = end + 1
                if at == len(text) or text[at] != '"':
                    break
                value += '"'
            value = ("text", value)
        elif text[at] == ",":
            record, value, at = [*record, value], None, at + 1
        elif text.startswith("\r\n", at):
            yield [*record, value]
            record, value, at = [], None, at + 2
        else:
            end = re.compile(",|\r\n").search(text, at).start()
            value, at = ("bare", text[at:end]), end


def rows_in_csv(text):
    """The rows of CSV, read in two ways."""
    records = list(values_in_csv(text))
    heading, rest = text.split(b"\r\n", 1)
    assert heading.decode() == ",".join(COLUMNS), heading
    plain = list(csv.DictReader(io.StringIO(text.decode(), newline="")))
    rows = []
    for record, other in zip(records[1:], plain, strict=True):
        row = {}
        for (name, kind), value in zip(COLUMNS.items(), record, strict=True):
            assert other[name] == ("" if value is None else value[1]), (name, value, other[name])
            assert value is None or value[0] == ("text" if kind is str else "bare"), (name, value)
            row[name] = None if value is None else typed(kind, value[1])
        rows.append(row)
    return rows


def typed(kind, text):
    return {"true": True, "false": False}[text] if kind is TRUTH else kind(text)


class RowsTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.fsencode(folder.name)

    def path(self, name):
        return os.path.join(self.folder, name if isinstance(name, bytes) else name.encode())

    def write(self, name, data=SOUND):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(data)
        return path

    def rows(self, *call, status=0, message=None, **options):
        """Calls `rows`; answers the rows in JSON. There must be this message, or none."""
        result = run("rows", *call, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        if message is None:
            self.assertEqual(result.stderr, b"")
        else:
            self.assertRegex(result.stderr.decode(), message)
        rows = rows_in(result.stdout)
        self.check_types(rows)
        return rows

    def row(self, *call, **options):
        (row,) = self.rows(*call, **options)
        return row

    def check_types(self, rows):
        for row in rows:
            for name, kind in COLUMNS.items():
                self.assertIn(type(row[name]), (kind, type(None)), (name, row[name]))
                if kind is str and row[name] is not None:
                    self.assertNotIn("\0", row[name])
            for name in ("schema", "source", "fault", "layer", "trusted"):
                self.assertIsNotNone(row[name])
            self.assertTrue(row["contents"] is None or row["contents_hex"] is None, row)


class GoldenTest(RowsTest):
    """The same documents in every way that they can come, and the rows that they must have."""

    @classmethod
    def setUpClass(cls):
        cls.kept = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.kept.cleanup)
        cls.golden = os.fsencode(cls.kept.name)
        cls.files = files()
        for file in cls.files:
            path = os.path.join(cls.golden, file.path)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "wb") as stored:
                stored.write(file.data)
        cls.expected = [row_of(file.path, file.data, verdict)
                        for file, verdict in zip(cls.files, cls.verdicts(), strict=True)]  # fmt: skip

    @classmethod
    def verdicts(cls):
        """What `verify` says, where what is known of a document leaves something open."""
        told = run("verify", "--json", cls.golden).stdout.decode().splitlines()
        for file, line in zip(cls.files, told, strict=True):
            said = json.loads(line)
            yield {"fault": said["fault"], "layer": said["layer"], "offset": said["offset"],
                   "field": said["field"] or None, **cls.known(file)}  # fmt: skip

    @staticmethod
    def known(file):
        known = dict(file.known)
        if known.get("fault") == "none" and known["layer"] == "none":
            known.update(offset=None, field=None)
        return {**known, **({"field": None} if known.get("field") == "" else {})}

    def check(self, rows, sources=None, members=None):
        for row, expected, file in zip(without_place(rows), self.expected, self.files, strict=True):
            self.assertEqual(row, expected, f"{file.kind}: {file.data[:300]}")
        places = [(row["source"], row["member"]) for row in rows]
        sources = sources or [shown(os.path.join(self.golden, file.path)) for file in self.files]
        members = members or [None] * len(rows)
        self.assertEqual(places, list(zip(sources, members, strict=True)))

    def members(self):
        """Names as they may stand in an archive, with folders that lead anywhere."""
        starts = [b"", b"../../", b"./", b"/", b"a/../../b/", "資料/".encode()]
        return [(starts[i % len(starts)] + file.path, file.data) for i, file in enumerate(self.files)]

    def test_the_corpus_holds_all_kinds(self):
        kinds = collections.Counter(file.kind for file in self.files)
        for kind, least in LEAST.items():
            self.assertGreaterEqual(kinds[kind], least, kind)
        found = {(row["fault"], row["trusted"]) for row in self.expected}
        for fault in ("truncated", "damaged", "altered", "foreign"):
            self.assertIn((fault, False), found)
        for fault in ("none", "repaired"):
            self.assertIn((fault, True), found)
        for name in COLUMNS:
            if name not in ("source", "member"):
                self.assertTrue([row for row in self.expected if row[name] is not None], name)
        for name, kind in COLUMNS.items():  # each text can be empty, if a document can say that
            if name in ("version", "os_version", "locale", "id", "device_id", "sn", "contents"):
                self.assertTrue([row for row in self.expected if row[name] == ""], name)
                self.assertTrue([row for row in self.expected if row[name] is None], name)

    def test_a_folder(self):
        self.check(self.rows(self.golden, status=1))
        for jobs in ("2", "3", "8"):
            self.check(self.rows("--jobs", jobs, self.golden, status=1))

    def test_named_files_and_lists_of_them(self):
        paths = [os.path.join(self.golden, file.path) for file in self.files]
        self.check(self.rows(*paths, status=1))
        named = self.write("list", b"\n".join(paths) + b"\n")
        self.check(self.rows("--files-from", named, "--jobs", "3", status=1))
        self.check(self.rows("--files-from", "-", "-0", status=1, input=b"\0".join(paths)))

    def test_documents_one_by_one_on_standard_input(self):
        for file, expected in list(zip(self.files, self.expected))[:: len(self.files) // 40]:
            row = self.row("-", status=0 if expected["fault"] in ("none", "repaired") and
                           expected["layer"] in ("none", "checksum") else 1, input=file.data)  # fmt: skip
            self.assertEqual((row["source"], row["member"], row["name"], row["number"]), ("-",) + (None,) * 3)
            self.assertEqual(without_place([{**row, "name": expected["name"],
                                             "number": expected["number"]}]), [expected])  # fmt: skip

    def check_archive(self, data, ending):
        members = [shown(name) for name, _ in self.members()]
        path = self.write("archive" + ending, data)
        for call in ([path], ["--jobs", "3", path], [self.folder]):
            self.check(self.rows(*call, status=1), [shown(path)] * len(members), members)
        with open(path, "rb") as archive:
            rows = self.rows("-", status=1, stdin=archive)
        self.check(rows, ["-"] * len(members), members)
        rows = self.rows("-", "--jobs", "2", status=1, input=data)  # through a pipe
        self.check(rows, ["-"] * len(members), members)
        for locale in ("C", "C.UTF-8", "nonsense"):
            rows = self.rows(path, status=1, environment={"LC_ALL": locale})
            self.check(rows, [shown(path)] * len(members), members)
        os.unlink(path)

    def test_archives(self):
        for form in FORMATS:
            data = tar_of(self.members(), form)
            with self.subTest(form):
                self.check_archive(data, ".tar")
                self.check_archive(gzip.compress(data, 1), ".tar.gz")
                self.check_archive(gzip.compress(data, 1), ".tgz")

    def test_archives_of_zstd(self):
        for form in FORMATS:
            with self.subTest(form):
                self.check_archive(zstd(tar_of(self.members(), form)), ".tar.zst")

    def test_names_longer_than_old_archives_can_hold(self):
        name = "長い名前".encode() * 20 + b"_12.PLM"
        for form in ("pax", "gnu"):
            path = self.write("a.tar", tar_of([(name, SOUND)], form))
            row = self.row(path, environment={"LC_ALL": "C"})
            self.assertEqual((row["member"], row["name"], row["number"]),
                             (name.decode(), "長い名前" * 20, 12))  # fmt: skip

    def test_csv(self):
        for call in ([self.golden], ["--jobs", "3", self.golden]):
            result = run("rows", "--csv", *call)
            self.assertEqual((result.returncode, result.stderr), (1, b""))
            self.check(rows_in_csv(result.stdout))
        members = [shown(name) for name, _ in self.members()]
        result = run("rows", "--csv", "-", input=gzip.compress(tar_of(self.members()), 1))
        self.check(rows_in_csv(result.stdout), ["-"] * len(members), members)

    def test_types_in_batches_of_any_kind(self):
        made = random.Random(11)
        broken = [i for i, row in enumerate(self.expected) if not row["trusted"]]
        for batch in range(40):
            chosen = made.sample(broken if batch % 2 else range(len(self.files)), made.randrange(1, 30))
            paths = [os.path.join(self.golden, self.files[i].path) for i in chosen]
            result = run("rows", *paths)
            rows = rows_in(result.stdout)
            self.check_types(rows)
            self.assertEqual(without_place(rows), [self.expected[i] for i in chosen])
            text = run("rows", "--csv", *paths).stdout
            self.assertEqual(rows_in_csv(text), rows)


class MeaningTest(RowsTest):
    def test_csv_to_the_byte(self):
        path = self.write("=1_2.PLM", printer_document("", 'a"\r\n,', device="", serial="=1+1"))
        text = run("rows", "--csv", path).stdout
        heading, row, rest = text.split(b"\r\n", 2)
        self.assertEqual(heading.decode(), ",".join(COLUMNS))
        self.assertEqual((row + b"\r\n" + rest).count(b"\r\n"), 1)
        self.assertTrue(row.endswith(b',"","=1+1","2.14","XOR",,,5'), row)
        self.assertTrue(row.startswith(b'1,"%s",,"=1",2,"' % path), row)
        self.assertIn(b',"contents",', row)
        self.assertIn(b',true,"printer_older_tag","1.0","M.6.1.55","",,,"","{3F2A', row)
        text = run("rows", "--csv", self.write("a.PLM", printer_document("2026-11-02T10:00:00+09:00", 'a"\r\n,')))
        self.assertTrue(text.stdout.endswith(b',"XOR","a""\r\n,",,5\r\n'), text.stdout)
        text = run("rows", "--csv", self.write("a.PLM", printer_document("2026-11-02T10:00:00+09:00", "")))
        self.assertTrue(text.stdout.endswith(b',"XOR","",,0\r\n'), text.stdout)

    def test_csv_of_nothing_is_the_heading(self):
        self.assertEqual(run("rows", "--csv", self.folder).stdout.decode(), ",".join(COLUMNS) + "\r\n")
        self.assertEqual(run("rows", self.folder).stdout, b"")

    def test_null_is_nothing_and_empty_is_empty(self):
        row = self.row(self.write("a.PLM", printer_document("2026-11-02T10:00:00+09:00", "", "", "", "", "")))
        for name in ("locale", "id", "device_id", "sn", "romver", "contents"):
            self.assertEqual(row[name], "", name)
        row = self.row(self.write("a.PLM", b"<OrvanQXPrinter SUM="), status=1)
        for name in ("locale", "id", "device_id", "sn", "romver", "contents", "date_text", "cipher"):
            self.assertIsNone(row[name], name)

    def test_what_cannot_be_shown_is_replaced_and_not_trusted(self):
        for bad, shown_ in [(b"a\0b", "a\ufffdb"), (b"\xff\xfe", "\ufffd\ufffd"), (b"\xe3\x81", "\ufffd\ufffd")]:
            row = self.row(self.write("a.PLM", SOUND.replace(b"QX200-0004711", bad)), status=1)
            self.assertEqual((row["sn"], row["trusted"], row["contents"]), (shown_, False, "pages=3\n"))

    def test_what_cannot_be_read_has_a_row(self):
        self.write("b.PLM")
        os.mkfifo(self.path("a_3.PLM"))
        missing, folder = self.path("c_4.PLM"), self.path("")
        rows = self.rows(folder, missing, status=3, message=r"a_3.PLM: skipped: it is a pipe")
        self.assertEqual([(row["fault"], row["name"], row["number"]) for row in rows],
                         [("unreadable", "a", 3), ("none", "b", None), ("unreadable", "c", 4)])
        for row in (rows[0], rows[2]):
            null = set(COLUMNS) - {"schema", "source", "name", "number", "fault", "layer", "trusted"}
            self.assertEqual({name for name in COLUMNS if row[name] is None}, null)
            self.assertEqual((row["layer"], row["trusted"]), ("none", False))
        result = run("rows", "--csv", missing)
        self.assertEqual(result.returncode, 3)
        (row,) = rows_in_csv(result.stdout)
        self.assertEqual(row, rows[2])

    def test_the_order_is_that_of_the_walk(self):
        made = random.Random(5)
        names = [f"{number:04}.ALM" for number in range(400)]
        for name in names:
            contents = "x" * made.choice([1, 10, 200000])
            self.write(name, application_document("2026-11-02T10:00:00+09:00", contents))
        for jobs in ("1", "2", "7", "64"):
            rows = self.rows("--jobs", jobs, self.folder)
            self.assertEqual([os.path.basename(row["source"]) for row in rows], names)

    def test_redaction_in_every_column_and_form(self):
        bare = IDENTIFIER[1:-1]
        contents = f"{IDENTIFIER.lower()} qx200-0004711 {bare}"
        whole = printer_document("2026-11-02T10:00:00+09:00", contents, device=f"SERN:qx200-0004711;{bare}",
                                 rom=f"{bare.lower()}-QX200-0004711")  # fmt: skip
        documents = {"sound": whole, "altered": whole.replace(b"1.0", b"1.1"), "cut": whole[:-3],
                     "broken": whole.replace(b"<Locale>", b"<QX200-0004711>"), "not found": whole[:-400],
                     "field": whole.replace(b"</Printer>", b"</Printer><QX200-0004711/>"),
                     "surrounded": whole.replace(b"<Printer>", f'<Printer A="{bare}">'.encode())}
        for name, data in documents.items():
            name = name + f" {bare} QX200-0004711_5.PLM"
            path = self.write(name if "not found" not in name else "a.PLM", data)
            tar = self.write("a.tar", tar_of([(os.path.basename(path), data)]))
            for place in (path, tar):
                for form in ([], ["--csv"]):
                    plain = run("rows", *form, place).stdout.decode().lower()
                    hidden = run("rows", "--redact", *form, place).stdout.decode().lower()
                    if "not found" not in name:
                        self.assertIn("qx200-0004711", plain)
                        self.assertIn("[redacted]", hidden)
                    self.assertNotIn("qx200-0004711", hidden)
                    self.assertNotIn(bare.lower(), hidden)

    def test_redaction_that_splits_a_character(self):
        whole = application_document("2026-11-02T10:00:00+09:00", "\u00e9abc def")
        path = self.write("a.ALM", whole.replace(IDENTIFIER.encode(), b"\xa9abc"))
        row = self.row("--redact", path, status=1)
        self.assertEqual((row["contents"], row["contents_hex"]), (None, (b"\xc3[redacted] def").hex().upper()))


class BadInputTest(RowsTest):
    def setUp(self):
        super().setUp()
        self.members = [(b"%d_1.PLM" % i, printer_document("2026-11-02T10:00:00+09:00", f"n={i}"))
                        for i in range(6)]  # fmt: skip
        self.tar = tar_of(self.members, "ustar")

    def broken(self, data, count, message, name="a.tar"):
        """Rows for this many whole documents and then one for what is broken, in a file and on
        standard input."""
        path = self.write(name, data)
        for call, options in ([[path], {}], [["--jobs", "3", path], {}], [["-"], {"input": data}]):
            rows = self.rows(*call, status=3, message=message, **options)
            self.assertEqual([row["fault"] for row in rows], ["none"] * count + ["unreadable"])
            self.assertEqual([row["contents"] for row in rows[:count]], [f"n={i}" for i in range(count)])
            self.assertEqual(rows[-1]["source"], call[-1] if call[-1] == "-" else shown(path))
        return rows[-1]

    def test_a_tar_that_ends_in_the_middle(self):
        for rest in (1, 200, 511):
            row = self.broken(self.tar[: 3072 + rest], 3, "a.tar: the archive is broken or cut off: |-: the ")
            self.assertIsNone(row["member"])
        for rest in (0, 1, 400):
            row = self.broken(self.tar[: 3 * 1024 + 512 + rest], 3, "3_1.PLM: the archive is broken or cut off here: ")
            self.assertEqual((row["member"], row["name"], row["number"]), ("3_1.PLM", "3", 1))

    def test_a_gzip_that_ends_in_the_middle(self):
        made = random.Random(3)
        members = [(b"%d.PLM" % i, made.randbytes(1000)) for i in range(500)]
        packed = gzip.compress(tar_of(members, "ustar"), 1)
        for length in (20, 30000, len(packed) // 2, len(packed) - 20000):
            path = self.write("a.tgz", packed[:length])
            for call in ([path], ["--jobs", "3", path]):
                rows = self.rows(*call, status=3, message="the archive .*: truncated gzip input")
                self.assertEqual([row["fault"] for row in rows],
                                 ["foreign"] * (len(rows) - 1) + ["unreadable"])  # fmt: skip
                # What the last 64 KiB would have unpacked to is lost.
                self.assertGreater(1536 * len(rows), length - (66 << 10))
                self.assertEqual([row["member"] for row in rows[:-1]], [f"{i}.PLM" for i in range(len(rows) - 1)])

    def test_a_tar_that_ends_within_its_first_header(self):
        for length in (0, 1, 100, 261, 262, 400, 511):
            row = self.row(self.write("a.tar", self.tar[:length]), status=3, message="a.tar: the archive ")
            self.assertEqual(row["fault"], "unreadable", length)

    def test_a_tar_whose_header_is_damaged(self):
        self.broken(self.tar[:2048] + b"garbage" + self.tar[2055:], 2, "the archive is broken or cut off: Damaged tar")

    def test_a_gzip_that_is_damaged(self):
        data = bytearray(gzip.compress(self.tar, 9))
        data[len(data) // 2] ^= 255
        rows = self.rows(self.write("a.tgz", data), status=3, message="a.tgz: .*the archive is broken or cut off")
        self.assertEqual(rows[-1]["fault"], "unreadable")

    def test_what_is_not_a_tar(self):
        for data in (b"no tar", SOUND, b"", b"x" * 2000):
            row = self.row("-", input=gzip.compress(data), status=3, message="-: the archive .*")
            self.assertEqual((row["fault"], row["source"]), ("unreadable", "-"))

    def test_a_tar_of_nothing(self):
        for data in (tar_of([]), gzip.compress(tar_of([])), tar_of([(b"readme", b"x")])):
            path = self.write("a.tar", data)
            message = r"^wenlolib rows: .*: no documents: there is no \*.PLM and no \*.ALM in this archive\n$"
            for call in ([path], [self.folder]):
                self.assertEqual(self.rows(*call, status=1, message=message), [])

    def test_only_regular_members_that_are_named_like_documents(self):
        made = io.BytesIO()
        with tarfile.open(fileobj=made, mode="w") as tar:
            for kind, name, data in [
                    (tarfile.DIRTYPE, "folder.PLM", b""), (tarfile.REGTYPE, "x.tar", self.tar),
                    (tarfile.LNKTYPE, "hard.PLM", b""), (tarfile.SYMTYPE, "soft.PLM", b""),
                    (tarfile.FIFOTYPE, "pipe.PLM", b""), (tarfile.CHRTYPE, "device.PLM", b""),
                    (tarfile.REGTYPE, ".wenlolib-1.tmp", SOUND), (tarfile.REGTYPE, "a_1.PLM", SOUND)]:  # fmt: skip
                entry = tarfile.TarInfo(name)
                entry.type, entry.size, entry.linkname = kind, len(data), "/etc/passwd"
                tar.addfile(entry, io.BytesIO(data))
        row = self.row(self.write("a.tar", made.getvalue()))
        self.assertEqual((row["member"], row["fault"]), ("a_1.PLM", "none"))

    def after_large(self, data, message):
        """Two rows: the large member's and that of the document after it; in little memory and time."""
        began = time.monotonic()
        rows = self.rows("-", input=data, status=3, message=message)
        self.assertLess(time.monotonic() - began, 60)
        self.assertEqual([(row["member"], row["fault"]) for row in rows],
                         [("large_1.PLM", "unreadable"), ("b_1.PLM", "none")])  # fmt: skip

    def test_a_large_member(self):
        message = "large_1.PLM: larger than 64 MiB, too large for an archive's member; unpack it first"
        members = [(b"large_1.PLM", bytes(65 << 20)), (b"b_1.PLM", SOUND)]
        self.after_large(tar_of(members), message)
        self.after_large(gzip.compress(tar_of(members), 1), message)
        fits = [(b"a_1.PLM", bytes(64 << 20)), (b"b_1.PLM", SOUND)]
        rows = self.rows("-", input=gzip.compress(tar_of(fits), 1), status=1)
        self.assertEqual([(row["fault"], row["bytes"]) for row in rows], [("foreign", 64 << 20), ("none", len(SOUND))])

    def sparse(self, size, pieces=((0, b"<a>"),)):
        """A member of this size that holds almost nothing but a hole."""
        listed = b"%d\n" % len(pieces) + b"".join(b"%d\n%d\n" % (at, len(data)) for at, data in pieces)
        data = listed.ljust(512, b"\0") + b"".join(data for _, data in pieces)
        made = io.BytesIO()
        with tarfile.open(fileobj=made, mode="w", format=tarfile.PAX_FORMAT) as tar:
            entry = tarfile.TarInfo("GNUSparseFile.0/large_1.PLM")
            entry.size = len(data)
            entry.pax_headers = {"GNU.sparse.major": "1", "GNU.sparse.minor": "0",
                                 "GNU.sparse.name": "large_1.PLM", "GNU.sparse.realsize": str(size)}
            tar.addfile(entry, io.BytesIO(data))
            entry = tarfile.TarInfo("b_1.PLM")
            entry.size = len(SOUND)
            tar.addfile(entry, io.BytesIO(SOUND))
        return made.getvalue()

    def test_a_member_with_a_hole(self):
        message = "large_1.PLM: larger than 64 MiB"
        for size in (10 << 30, 1 << 62):
            self.after_large(self.sparse(size), message)
            self.after_large(self.sparse(size, [(0, b"<a>"), (size - 3, b"</>")]), message)
            self.after_large(self.sparse(1000, [(0, b"<a>"), (size - 3, b"</>")]), message)
        rows = self.rows("-", input=self.sparse(5000, [(10, b"<a>"), (4000, b"<b>")]), status=1)
        expected = bytes(10) + b"<a>" + bytes(3987) + b"<b>" + bytes(997)
        self.assertEqual(rows[0]["sha256"], hashlib.sha256(expected).hexdigest())

    def test_a_member_that_is_declared_larger_than_the_archive(self):
        header = bytearray(self.tar[3072:3584])
        header[124:136] = b"%011o\0" % (8 << 30) if (8 << 30) < 8**11 else b"77777777777\0"
        header[148:156] = b" " * 8
        header[148:156] = b"%06o\0 " % sum(header)
        data = self.tar[:3072] + header + self.tar[3584:]
        row = self.broken(data, 3, "3_1.PLM: the archive is broken or cut off here: Truncated tar")
        self.assertEqual(row["member"], "3_1.PLM")

    def zeros_in(self, name, gigabytes):
        """A gzip with a sound document, then a member of zeros, piece by piece."""
        entry = tarfile.TarInfo(name)
        entry.size = gigabytes << 30
        packed = io.BytesIO()
        with gzip.open(packed, "wb", 1) as out:
            out.write(tar_of([(b"a_1.PLM", SOUND)], "ustar")[: 512 + -(-len(SOUND) // 512) * 512])
            out.write(entry.tobuf(tarfile.GNU_FORMAT))
        # A gzip may consist of several members, and this one is made only once.
        return packed.getvalue(), gzip.compress(bytes(64 << 20), 9), 16 * gigabytes

    def feed(self, start, piece, times, *call):
        """Gives the command more than it wants to read."""
        with subprocess.Popen([COMMAND, *call], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as child:  # fmt: skip
            given = 0
            try:
                child.stdin.write(start)
                for given in range(1, times + 1):
                    child.stdin.write(piece)
            except BrokenPipeError:
                pass
            output, errors = child.communicate()
        return child.returncode, output, errors.decode(), given

    def test_ten_gigabytes_of_zeros(self):
        for name, place in (("large_1.PLM", ": large_1.PLM"), ("other", "")):
            status, output, errors, given = self.feed(*self.zeros_in(name, 10), "rows", "-")
            self.assertEqual(status, 3, errors)
            self.assertRegex(errors, f"^wenlolib rows: -{place}: .*unpacks to more than 200 times its size\n$")
            rows = rows_in(output)
            self.assertEqual([row["fault"] for row in rows], ["none", "unreadable"])
            self.assertLess(given, 40)  # not all 160

    def test_a_full_disk_is_no_success(self):
        path = self.write("a.PLM")
        for call in ([path], ["--csv", path], ["--jobs", "3", self.folder]):
            with open("/dev/full", "wb") as full:
                result = run("rows", *call, stdout=full, stderr=subprocess.PIPE)
            self.assertEqual(result.returncode, 3)
            self.assertIn(b"standard output: No space left", result.stderr)

    def test_nobody_reads(self):
        path = self.write("a.tar", tar_of(self.members * 2000))
        for jobs in ("1", "3"):
            with subprocess.Popen([COMMAND, "rows", "--jobs", jobs, path], stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE) as child:  # fmt: skip
                self.assertEqual(json.loads(child.stdout.readline())["schema"], 1)
                child.stdout.close()
                self.assertNotEqual(child.wait(timeout=60), 0)
                self.assertNotIn(b"terminate", child.stderr.read())

    def test_an_interrupt_keeps_the_rows_until_then(self):
        start = self.tar[: 6 * 1024]
        for jobs in ("1", "3"):
            with subprocess.Popen([COMMAND, "rows", "--jobs", jobs, "-"], stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:  # fmt: skip
                child.stdin.write(start * 10)  # what they give fits in a pipe
                child.stdin.flush()
                time.sleep(0.5)
                child.send_signal(signal.SIGINT)
                output, errors = child.communicate(timeout=60)
            self.assertEqual(child.returncode, -signal.SIGINT)
            self.assertRegex(errors.decode(), r"^wenlolib rows: interrupted after [\d,]+ documents\n$")
            told = int(errors.split()[4].replace(b",", b""))
            self.assertEqual(len(rows_in(output)), told)
            self.assertEqual(told, 60 if jobs == "1" else 0)  # several jobs look far ahead

    def test_memory_stays_the_same_however_many_documents_come(self):
        if is_instrumented():
            self.skipTest("the address sanitizer keeps what was freed")
        for call in (["rows", "-"], ["rows", "--jobs", "3", "-"]):
            few, many = (self.peak(count, *call) for count in (10000, 200000))
            self.assertLess(many - few, 3 << 10, call)

    def peak(self, count, *call):
        """The most memory, in KiB, by the time that this many documents were read."""
        thousand = self.tar[:1024] * 1000
        with subprocess.Popen([COMMAND, *call], stdin=subprocess.PIPE, stdout=subprocess.PIPE) as child:
            lines = []
            reader = threading.Thread(target=lambda: lines.append(sum(1 for _ in child.stdout)))
            reader.start()
            for _ in range(count // 1000):
                child.stdin.write(thousand)
            child.stdin.flush()
            with open(f"/proc/{child.pid}/status") as status:
                (peak,) = [int(line.split()[1]) for line in status if line.startswith("VmHWM:")]
            child.stdin.write(bytes(1024))
            child.stdin.close()
            reader.join()
        self.assertEqual((child.returncode, lines), (0, [count]))
        return peak


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: rows_test.py COMMAND [unittest's arguments]")
    COMMAND = os.path.abspath(sys.argv.pop(1))
    skips.main()
