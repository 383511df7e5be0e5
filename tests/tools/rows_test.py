#!/usr/bin/env python3
"""Tests of `wenlolib rows`. Argument: the path of the wenlolib command."""

import collections
import contextlib
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
import sqlite3
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
from survey_documents import IDENTIFIER, application_document, printer_document, wrapped

COMMAND = ""
FORMATS = {"ustar": tarfile.USTAR_FORMAT, "pax": tarfile.PAX_FORMAT, "gnu": tarfile.GNU_FORMAT}
DATE = "2026-11-02T10:00:00+09:00"
SOUND = printer_document(DATE, "pages=3\n")
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

    def tree(self):
        """Every file below the folder, its mode, digest and time of change."""
        found = {}
        for parent, folders, names in os.walk(self.folder):
            for path in (os.path.join(parent, name) for name in names + folders):
                status = os.stat(path)
                with contextlib.nullcontext() if os.path.isdir(path) else open(path, "rb") as file:
                    digest = file and hashlib.sha256(file.read()).hexdigest()
                found[path] = (status.st_mode, digest, status.st_mtime_ns)
        return found

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

    def test_the_table_of_collect(self):
        rows = self.rows(self.golden, status=1)
        first = {}
        for row in rows:
            first.setdefault(row["sha256"], row)
        self.assertGreater(len(first), 900)
        for jobs in ("1", "3"):
            database = self.path(f"{jobs}.db")
            result = run("collect", "--jobs", jobs, self.golden, "--into", database)
            self.assertEqual((result.returncode, result.stderr), (1, b""))
            connection = sqlite3.connect(os.fsdecode(database))
            self.assertEqual([name for _, name, *_ in connection.execute("PRAGMA table_info(documents)")],
                             list(COLUMNS))  # fmt: skip
            stored = connection.execute("SELECT * FROM documents ORDER BY rowid").fetchall()
            self.assertEqual([dict(zip(COLUMNS, values)) for values in stored], list(first.values()))
            for name, kind in COLUMNS.items():
                types = {type_ for (type_,) in connection.execute(f"SELECT DISTINCT typeof({name}) FROM documents")}
                self.assertLessEqual(types, {"null", "text" if kind is str else "integer"}, name)
            connection.close()

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
        text = run("rows", "--csv", self.write("a.PLM", printer_document(DATE, 'a"\r\n,')))
        self.assertTrue(text.stdout.endswith(b',"XOR","a""\r\n,",,5\r\n'), text.stdout)
        text = run("rows", "--csv", self.write("a.PLM", printer_document(DATE, "")))
        self.assertTrue(text.stdout.endswith(b',"XOR","",,0\r\n'), text.stdout)

    def test_csv_of_nothing_is_the_heading(self):
        self.assertEqual(run("rows", "--csv", self.folder).stdout.decode(), ",".join(COLUMNS) + "\r\n")
        self.assertEqual(run("rows", self.folder).stdout, b"")

    def test_null_is_nothing_and_empty_is_empty(self):
        row = self.row(self.write("a.PLM", printer_document(DATE, "", "", "", "", "")))
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
            self.write(name, application_document(DATE, contents))
        for jobs in ("1", "2", "7", "64"):
            rows = self.rows("--jobs", jobs, self.folder)
            self.assertEqual([os.path.basename(row["source"]) for row in rows], names)

    def test_redaction_in_every_column_and_form(self):
        bare = IDENTIFIER[1:-1]
        contents = f"{IDENTIFIER.lower()} qx200-0004711 {bare}"
        whole = printer_document(DATE, contents, device=f"SERN:qx200-0004711;{bare}",
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

    def test_redaction_takes_time_in_proportion_to_the_text(self):
        """A search that starts anew at each byte would take hours."""
        half = 1 << 20
        document = printer_document(DATE, "x", device="a" * 2 * half, serial="b" + "a" * half)
        row = self.row("--redact", self.write("a_1.PLM", document))
        self.assertEqual((row["trusted"], row["device_id"]), (True, "a" * 2 * half))

    def test_redaction_where_a_value_is_empty_or_has_blanks_around_it(self):
        plain = IDENTIFIER.strip("{}")
        document = printer_document(DATE, "x", device=f"a {plain} b", identifier=f" {IDENTIFIER}\t")
        row = self.row("--redact", self.write("a_1.PLM", document))
        self.assertEqual((row["trusted"], row["device_id"]), (True, "a [redacted] b"))
        short = printer_document(DATE, "x", device="  a\tb\n", serial="  a\tb\n")
        row = self.row("--redact", self.write("d_1.PLM", short))
        self.assertEqual(row["device_id"], "[redacted]")
        twice = printer_document(DATE, "x", device="MDL;QX200-4712").replace(
            b"<SN>QX200-0004711</SN>", b"<SN></SN><SN>QX200-4712</SN>")
        row = self.row("--redact", self.write("b_1.PLM", twice), status=1)
        self.assertEqual((row["fault"], row["device_id"], row["layout"]), ("damaged", None, None))
        empty = printer_document(DATE, "x", serial="")  # nothing is wrong with this one
        self.assertIsNotNone(self.row("--redact", self.write("c_1.PLM", empty))["device_id"])

    def test_redaction_that_splits_a_character(self):
        whole = application_document(DATE, "\u00e9abc def")
        path = self.write("a.ALM", whole.replace(IDENTIFIER.encode(), b"\xa9abc"))
        row = self.row("--redact", path, status=1)
        self.assertEqual((row["contents"], row["contents_hex"]), (None, (b"\xc3[redacted] def").hex().upper()))


VIEWS = ["jobs_by_printer_and_month", "applications_by_month", "versions", "faults", "broken_by_printer"]


class CollectTest(RowsTest):
    def setUp(self):
        super().setUp()
        self.database = self.path("fleet.db")

    def collect(self, *call, status=0, message=b"", into=None, **options):
        result = run("collect", *call, "--into", into or self.database, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        self.assertRegex(result.stderr, message or b"^$")
        return result.stdout.decode()

    def told(self, *call, **options):
        """The numbers of documents, of new ones and of files not read again."""
        match = re.fullmatch(r".*fleet.db: ([\d,]+) documents?, ([\d,]+) new; ([\d,]+) unchanged files? "
                             "not read again\n", self.collect(*call, **options))  # fmt: skip
        return tuple(int(number.replace(",", "")) for number in match.groups())

    def asked(self, sql, database=None):
        connection = sqlite3.connect(os.fsdecode(database or self.database))
        try:
            return connection.execute(sql).fetchall()
        finally:
            connection.close()

    def stored(self):
        """The rows of the table, as `rows` would write them."""
        rows = [dict(zip(COLUMNS, values)) for values in self.asked("SELECT * FROM documents ORDER BY rowid")]
        for row in rows:
            self.assertIn(row["trusted"], (0, 1))
            row["trusted"] = bool(row["trusted"])
        self.check_types(rows)
        return rows

    def document(self, number, serial="QX200-1"):
        return printer_document(DATE, f"n={number}", serial=serial)

    def several(self, count=40, folder="in"):
        """Documents as files and in two archives; answers how many distinct ones there are."""
        for i in range(count // 4):
            self.write(f"{folder}/a{i:05}_1.PLM", self.document(i))
        for name, start in (("b.tar", count // 4), ("c.tar.gz", count // 2)):
            data = tar_of([(b"%05d_1.PLM" % i, self.document(i)) for i in range(start, start + count // 2)], "ustar")
            self.write(f"{folder}/{name}", gzip.compress(data, 1) if name.endswith("gz") else data)
        return count

    def check_whole(self, count):
        """The database holds these documents, each once, and every view agrees."""
        self.assertEqual(self.asked("PRAGMA integrity_check"), [("ok",)])
        self.assertEqual(sorted(contents for (contents,) in self.asked("SELECT contents FROM documents")),
                         sorted(f"n={i}" for i in range(count)))  # fmt: skip
        self.assertEqual(self.asked("SELECT printer, month, documents FROM jobs_by_printer_and_month"),
                         [("QX200-1", "2026-11", count)])  # fmt: skip
        self.assertEqual(self.asked("SELECT * FROM faults"), [("none", "none", count)])
        self.assertEqual(self.asked("SELECT * FROM broken_by_printer"), [])

    # --- What is read ---

    def test_an_unchanged_file_is_not_read_again(self):
        path, other = self.write("in/a.PLM", self.document(1)), self.write("in/b.PLM", self.document(2))
        tar = self.write("in/c.tar", tar_of([(b"c.PLM", self.document(3))], "ustar"))
        folder = self.path("in")
        self.assertEqual(self.told(folder), (3, 3, 0))
        self.assertEqual(self.told(folder), (3, 0, 3))
        self.assertEqual(self.told(path, tar, "--jobs", "3"), (3, 0, 2))
        for place, data in ((path, self.document(8)), (tar, tar_of([(b"c.PLM", self.document(9))], "ustar"))):
            status = os.stat(place)
            with open(place, "r+b") as file:  # in place, so that it stays the same file
                file.write(data)
            os.utime(place, ns=(status.st_atime_ns, status.st_mtime_ns))
        self.assertEqual(self.told(folder), (3, 0, 3))
        for place in (path, tar):
            os.utime(place, ns=(0, os.stat(place).st_mtime_ns + 1))
        self.assertEqual(self.told(folder), (5, 2, 1))
        with open(other, "ab") as file:
            file.write(b" ")
        self.assertEqual(self.told(folder, status=1), (6, 1, 2))
        moved = self.path("in/z.PLM")
        os.rename(other, moved)
        self.write("in/b.PLM", self.document(2))
        self.assertEqual(self.told(folder, status=1), (6, 0, 2))

    def test_what_arrives_is_added(self):
        for i in range(4):
            self.write(f"in/{i}.PLM", self.document(i))
            self.assertEqual(self.told(self.path("in")), (i + 1, 1, i))
        self.assertEqual(self.told("-", input=tar_of([(b"9.PLM", self.document(9))])), (5, 1, 0))
        self.assertEqual(self.told("-", input=tar_of([(b"9.PLM", self.document(9))])), (5, 0, 0))

    def test_the_same_bytes_count_once(self):
        for name in ("a_1.PLM", "b_2.PLM", "sub/c_3.PLM"):
            self.write("in/" + name, self.document(1))
        self.write("in/d.tar", tar_of([(b"x.PLM", self.document(1)), (b"y.PLM", self.document(1))]))
        self.assertEqual(len(self.rows(self.path("in"))), 5)
        for jobs in ("1", "3"):
            self.assertEqual(self.told(self.path("in"), "--jobs", jobs)[0], 1)
        (row,) = self.stored()
        self.assertEqual((row["name"], row["number"]), ("a", 1))

    def test_what_could_not_be_read_is_tried_again(self):
        self.write("in/a.PLM", self.document(1))
        pipe = self.path("in/b.PLM")
        os.mkfifo(pipe)
        for read_before in (0, 1):
            self.assertEqual(self.told(self.path("in"), status=3, message=b"b.PLM: skipped: it is a pipe"),
                             (1, 1 - read_before, read_before))  # fmt: skip
        os.unlink(pipe)
        self.write("in/b.PLM", self.document(2))
        self.assertEqual(self.told(self.path("in")), (2, 1, 1))

    def test_a_broken_archive_keeps_what_it_gave(self):
        whole = tar_of([(b"%d.PLM" % i, self.document(i)) for i in range(5)], "ustar")
        tar = self.write("a.tar", whole[: 3 * 1024 + 700])
        for new in (3, 0):  # it is tried again: the rest may have been on its way
            self.assertEqual(self.told(tar, status=3, message=b"3.PLM: the archive is broken or cut off here"),
                             (3, new, 0))  # fmt: skip
        self.write("a.tar", whole)
        self.assertEqual(self.told(tar), (5, 2, 0))

    def test_redaction_in_the_database(self):
        data = printer_document(DATE, f"QX200-0004711 {IDENTIFIER}", device="SERN:QX200-0004711")
        tar = self.write("QX200-0004711.tar", tar_of([(b"QX200-0004711_1.PLM", data)]))
        path = self.write("QX200-0004711_2.PLM", data.replace(b"1.0", b"1.1"))
        self.collect("--redact", tar, path, status=1)
        for row in self.stored():
            self.assertIn("[redacted]", row["name"])
            self.assertNotIn("4711", json.dumps(row))
            self.assertNotIn(IDENTIFIER[1:-1], json.dumps(row))

    def test_an_archive_that_could_not_be_read_to_its_end_is_tried_again(self):
        members = [(b"%d.PLM" % i, self.document(i)) for i in range(300)]
        tar = self.write("a.tar", tar_of(members, "ustar"))
        fail = ["strace", "-o", self.path("trace"), "-P", tar, "-e", "inject=read:error=EIO:when=4"]
        try:
            result = subprocess.run([*fail, COMMAND, "collect", tar, "--into", self.database], capture_output=True)
        except FileNotFoundError:
            self.skipTest("there is no strace here to make reading fail")
        if result.returncode == 1:
            self.skipTest(f"strace is not allowed here: {result.stderr.decode()[:100]}")
        self.assertEqual(result.returncode, 3)
        self.assertRegex(result.stderr, b"^wenlolib collect: .*a.tar: the archive .*: Input/output error\n$")
        (kept,) = self.asked("SELECT count(*) FROM documents")[0]
        self.assertGreater(kept, 100)
        self.assertEqual(self.told(tar), (300, 300 - kept, 0))

    # --- Counting ---

    def test_the_views_count_twenty_thousand_documents_right(self):
        made = random.Random(2)
        members, expected = [], {view: collections.Counter() for view in VIEWS}
        for i in range(20000):
            month, version = f"2026-{made.randrange(1, 13):02}", made.choice(["1.0", "1.1", "2.0"])
            date = f"{month}-{made.randrange(2, 28):02}T10:00:00+0{made.randrange(10)}:00"
            identifier = f"{{{made.randrange(500):08}}}"
            printer, fault = made.random() < 0.6, made.choices(["none", "truncated", "altered", "damaged", "foreign"],
                                                              [90, 4, 3, 2, 1])[0]  # fmt: skip
            name, serial = f"N{made.randrange(40)}", made.choice(["", f"S{made.randrange(99):04}"])
            data = (printer_document(date, f"n={i}", "MDL:QX;", serial, identifier=identifier) if printer else
                    application_document(date, f"n={i}", identifier=identifier))  # fmt: skip
            body = data[data.index(b">") + 1 : data.rindex(b"<")].replace(b"1.0", version.encode(), 1).decode()
            data = wrapped("OrvanQXPrinter" if printer else "OrvanQXApplication", body)
            layout, layer = "printer_older_tag" if printer else "application", "none"
            if fault == "truncated":
                data, layer = data[:-8], "xml"
            elif fault == "altered":
                data, layer = data.replace(b"M.6", b"M.7"), "checksum"
            elif fault == "damaged":
                data, layer = data.replace(b"<Locale>", b" <Locale>"), "white_space"
            elif fault == "foreign":
                data, layer, serial = b"text %d" % i, "xml", ""
            file = f"{name}_{i}.PLM" if printer else f"Quillmere_Log_{name}_{i}.ALM"
            members.append((file.encode(), data))
            serial = serial if printer else ""
            expected["faults"][fault, layer] += 1
            if fault != "none":
                expected["broken_by_printer"][serial or name, fault, layer] += 1
                continue
            expected["versions"][layout, version, "M.6.1.55"] += 1
            expected["jobs_by_printer_and_month" if printer else "applications_by_month"][serial or name, month] += 1
        chosen = made.sample(members, 2000)  # some come twice
        tars = [self.write("a.tar", tar_of(members[:12000], "ustar")),
                self.write("b.tgz", gzip.compress(tar_of(members[12000:] + chosen, "ustar"), 1))]
        self.assertEqual(self.told(*tars, "--jobs", "2", status=1), (20000, 20000, 0))
        columns = {"jobs_by_printer_and_month": "printer, month", "applications_by_month": "application, month",
                   "versions": "layout, version, os_version", "faults": "fault, layer",
                   "broken_by_printer": "printer, fault, layer"}  # fmt: skip
        for view, keys in columns.items():
            rows = self.asked(f"SELECT {keys}, documents FROM {view}")
            self.assertEqual({tuple(key): count for *key, count in rows}, dict(expected[view]), view)
            self.assertEqual(len(rows), len(expected[view]))
        self.assertEqual(self.told(*tars), (20000, 0, 2))
        shown_ = run("collect", "--show", "--into", self.database).stdout.decode()
        for view in VIEWS:
            self.assertIn(f"({view})\n", shown_)
        for (fault, layer), count in expected["faults"].items():
            self.assertRegex(shown_, rf"(?m)^  {fault} +{layer} +{count}$")

    def test_what_no_key_opens_is_not_sound(self):
        undated = printer_document("", "x")
        self.collect(self.write("a_1.PLM", undated), self.write("b_1.PLM"), status=1)
        self.assertEqual(self.asked("SELECT fault, layer, documents FROM broken_by_printer"), [("none", "contents", 1)])

    # --- Ends of all kinds ---

    def check_after_a_crash(self, count, folder):
        """After the next run all is there."""
        self.assertEqual(self.told(folder)[0], count)
        self.check_whole(count)
        self.assertEqual(self.told(folder), (count, 0, count // 4 + 2))

    def remove_database(self):
        for ending in ("", "-wal", "-shm", "-journal"):
            if os.path.exists(self.database + ending.encode()):
                os.unlink(self.database + ending.encode())

    def test_killed_at_every_call(self):
        count, folder = self.several(8), self.path("in")
        base = ["strace", "-f", "-o", self.path("trace")]
        collect = [COMMAND, "collect", folder, "--into", self.database]
        try:
            traced = subprocess.run([*base, *collect], capture_output=True, timeout=120)
        except FileNotFoundError:
            self.skipTest("there is no strace here to end the command at a call")
        if traced.returncode != 0:
            self.skipTest(f"strace is not allowed here: {traced.stderr.decode()[:100]}")
        with open(self.path("trace")) as trace:
            made = collections.Counter(re.findall(r"(?m)^\d+ +(\w+)\(", trace.read()))
        del made["execve"]  # strace's own
        self.assertGreater(made.total(), 300)
        killed = 0
        for call in made:
            for when in range(1, made[call] + 1):
                self.remove_database()
                inject = f"inject={call}:signal=KILL:when={when}"
                ended = subprocess.run([*base, "-e", inject, *collect], capture_output=True, timeout=120)
                killed += ended.returncode == -signal.SIGKILL  # strace ends as the command does
                with self.subTest(call=call, when=when):
                    self.check_after_a_crash(count, folder)
        # Where memory lies differs from run to run, and so do a few of the calls that ask for it.
        self.assertGreater(killed, 0.95 * made.total())

    def test_killed_at_any_time(self):
        count, folder = self.several(24000), self.path("in")
        made = random.Random()
        began = time.monotonic()
        self.told(folder)
        taken = time.monotonic() - began
        self.remove_database()
        for kill in range(12):
            with subprocess.Popen([COMMAND, "collect", folder, "--into", self.database],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as child:  # fmt: skip
                time.sleep(made.random() * taken)
                child.kill()
            if kill % 6 == 5:
                self.check_after_a_crash(count, folder)
                self.remove_database()

    def test_an_interrupt_and_again(self):
        count, folder = self.several(4000), self.path("in")
        with subprocess.Popen([COMMAND, "collect", folder, "-", "--into", self.database], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:  # fmt: skip
            time.sleep(1)
            child.send_signal(signal.SIGINT)
            errors = child.communicate(timeout=60)[1]
        self.assertEqual(child.returncode, -signal.SIGINT)
        self.assertRegex(errors, rb"^wenlolib collect: interrupted after [\d,]+ documents\n$")
        self.check_after_a_crash(count, folder)

    def test_any_name_is_a_file(self):
        count, folder = self.several(8), self.path("in")
        for name in (":memory:", "file:x.db", "file:x.db?mode=memory"):
            for _ in range(2):
                run("collect", folder, "--into", name, cwd=self.folder)
            self.database = self.path(name)
            self.check_whole(count)

    def test_two_at_once(self):
        count, folder = self.several(8000), self.path("in")
        for attempt in range(6):
            children = [subprocess.Popen([COMMAND, "collect", folder, "--jobs", str(1 + i), "--into", self.database],
                                         stdout=subprocess.PIPE, stderr=subprocess.PIPE) for i in range(2)]  # fmt: skip
            new = 0
            for child in children:
                output, errors = child.communicate(timeout=120)
                self.assertEqual(child.returncode, 0, errors)
                self.assertRegex(errors, b"^(|wenlolib collect: .*: another process is writing to it; waiting\n)$")
                new += int(re.search(r" ([\d,]+) new;", output.decode())[1].replace(",", ""))
            self.assertEqual(new, count)
            self.check_whole(count)
            self.remove_database()

    def test_one_that_waits_says_so_once(self):
        self.told(self.write("a.PLM", self.document(0)))
        writer = sqlite3.connect(os.fsdecode(self.database), isolation_level=None)
        writer.execute("BEGIN IMMEDIATE")
        with subprocess.Popen([COMMAND, "collect", self.write("b.PLM", self.document(1)), "--into", self.database],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:  # fmt: skip
            time.sleep(1)
            self.assertIsNone(child.poll())
            writer.execute("COMMIT")
            writer.close()
            output, errors = child.communicate(timeout=60)
        self.assertEqual(child.returncode, 0)
        self.assertEqual(errors.decode().count("fleet.db: another process is writing to it; waiting\n"), 1)
        self.check_whole(2)

    # --- What is not a database of collect ---

    def refused(self, message, database=None, **options):
        """Nothing changes, and the message says what and where, for collecting and for --show."""
        database = database or self.database
        document = self.write("a.PLM", self.document(0))
        before = self.tree()
        for call in ([document], ["--show"]):
            result = run("collect", *call, "--into", database, **options)
            self.assertEqual((result.returncode, result.stdout), (3, b""), result.stderr)
            self.assertRegex(result.stderr, b"^wenlolib collect: %s: .*%s.*\n$" % (re.escape(database), message))
            self.assertEqual(self.tree(), before)

    def test_a_database_of_something_else(self):
        for journal in ("delete", "wal"):
            self.remove_database()
            for sql in (f"PRAGMA journal_mode={journal}", "CREATE TABLE documents (x)", "INSERT INTO documents VALUES (1)"):
                self.asked_to(sql)
            self.refused(b"not a database of wenlolib collect; name another file")
        self.remove_database()
        self.asked_to("PRAGMA application_id = 5")
        self.refused(b"not a database of wenlolib collect; name another file")

    def asked_to(self, sql):
        connection = sqlite3.connect(os.fsdecode(self.database))
        with connection:
            connection.execute(sql)
        connection.close()

    def test_a_database_of_another_version(self):
        for journal in ("wal", "delete"):
            self.remove_database()
            self.told(self.write("a.PLM", self.document(0)))
            self.asked_to(f"PRAGMA journal_mode={journal}")
            self.asked_to("PRAGMA user_version = 2")
            self.refused(b"made by another version of wenlolib; collect into a new file")

    def test_what_is_not_a_database(self):
        self.write("fleet.db", b"These are notes, not a database, and longer than a page's header is.\n" * 99)
        self.refused(b"file is not a database")
        os.unlink(self.database)
        os.mkdir(self.database)
        self.refused(b"[Ii]t is a folder|unable to open")
        os.rmdir(self.database)
        self.refused(b"No such file or directory|unable to open", self.path("missing/fleet.db"))

    def test_a_database_cut_short(self):
        self.told(self.write("a.PLM", self.document(0)))
        os.truncate(self.database, 5000)
        result = run("collect", self.path("a.PLM"), "--into", self.database)
        self.assertEqual(result.returncode, 3)
        self.assertRegex(result.stderr, b"fleet.db: database disk image is malformed")

    def unprivileged(self):
        if os.geteuid() != 0:
            return {}
        try:
            probe = subprocess.run([COMMAND, "--version"], user=65534, group=65534, capture_output=True)
        except PermissionError:
            self.skipTest("the command lies where an unprivileged user cannot run it")
        self.assertEqual(probe.returncode, 0)
        return {"user": 65534, "group": 65534, "extra_groups": []}

    def test_a_folder_that_cannot_be_written_to(self):
        user = self.unprivileged()
        os.chmod(self.folder, 0o755)
        self.refused(b"Permission denied|unable to open", **user)
        self.told(self.path("a.PLM"))
        os.chmod(self.database, 0o644)
        path = self.write("b.PLM", self.document(1))
        before = self.tree()
        result = run("collect", path, "--into", self.database, **user)
        self.assertEqual((result.returncode, result.stdout), (3, b""))
        self.assertRegex(result.stderr, b"fleet.db: Permission denied")
        self.assertEqual(self.tree(), before)

    def test_a_database_is_for_its_owner_alone(self):
        self.told(self.write("a.PLM", self.document(0)))
        self.assertEqual(os.stat(self.database).st_mode & 0o777, 0o600)

    def test_a_full_disk(self):
        count, folder = self.several(8000), self.path("in")
        os.mkdir(self.path("disk"))
        kept = self.path("fleet.db")
        script = 'mount -t tmpfs -o size=$1 none "$2" || exit 99; "$3" collect "$4" --into "$2/fleet.db"; status=$?; ' \
                 'cp "$2/fleet.db"* "$5"; exit $status'
        for size in ("16k", "64k", "300k", "1m", "2m"):
            self.remove_database()
            try:
                result = subprocess.run(["unshare", "-Urm", "sh", "-c", script, "sh", size, self.path("disk"), COMMAND,
                                         folder, self.folder], capture_output=True, timeout=120)  # fmt: skip
            except FileNotFoundError:
                self.skipTest("there is no unshare here to make a small disk")
            if result.returncode in (1, 99) and b"collect" not in result.stderr:
                self.skipTest(f"a small disk cannot be made here: {result.stderr.decode()[:100]}")
            self.assertEqual(result.returncode, 3, (size, result))
            self.assertRegex(result.stderr, b"^wenlolib collect: .*fleet.db: (database or disk is full|disk I/O error)\n$")
            self.assertEqual(os.listdir(self.path("disk")), [])
            self.check_after_a_crash(count, folder)  # with room

    def test_large_documents_are_not_all_in_memory(self):
        if is_instrumented():
            self.skipTest("the address sanitizer keeps what was freed")
        large = self.write("in/1.ALM", application_document(DATE, "x" * (1 << 20)))
        for i in range(300):
            os.link(large, self.path(f"in/2-{i:03}.ALM"))
        os.mkfifo(self.path("pipe.PLM"))  # the answers for the others wait for it
        for jobs in ("1", "4"):
            self.remove_database()
            with subprocess.Popen([COMMAND, "collect", "--jobs", jobs, self.path("pipe.PLM"), self.path("in"),
                                   "--into", self.database], stdout=subprocess.PIPE) as child:  # fmt: skip
                with open(self.path("pipe.PLM"), "wb") as pipe:
                    time.sleep(3)
                    with open(f"/proc/{child.pid}/status") as status:
                        (peak,) = [int(line.split()[1]) for line in status if line.startswith("VmHWM:")]
                    pipe.write(self.document(1))
                self.assertIn(b": 2 documents, 2 new;", child.communicate(timeout=60)[0])
            self.assertLess(peak, 150 << 10, jobs)

    def test_wrong_usage(self):
        path = self.write("a.PLM")
        for call, message in (([path], b"--into is required"), (["--into", self.database], b"PATH is required"),
                              (["--show", path, "--into", self.database], b"--show: takes no documents"),
                              ([path, "-0", "--into", self.database], b"--null: needs --files-from")):  # fmt: skip
            result = run("collect", *call)
            self.assertEqual(result.returncode, 2)
            self.assertIn(message, result.stderr)
        self.assertFalse(os.path.exists(self.database))


class BadInputTest(RowsTest):
    def setUp(self):
        super().setUp()
        self.members = [(b"%d_1.PLM" % i, printer_document(DATE, f"n={i}"))
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

    def test_archives_one_after_the_other(self):
        other = tar_of([(b"other_1.PLM", printer_document(DATE, "n=9"))])
        for data in (self.tar + other, gzip.compress(self.tar) + gzip.compress(other)):
            rows = self.rows(self.write("joined.tar", data))
            self.assertEqual((rows[-1]["member"], len(rows)), ("other_1.PLM", len(self.rows(self.write("a.tar", self.tar))) + 1))

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
                    (tarfile.LNKTYPE, "hard.PLM", b""), (tarfile.LNKTYPE, "whole.PLM", SOUND),
                    (tarfile.SYMTYPE, "soft.PLM", b""),
                    (tarfile.FIFOTYPE, "pipe.PLM", b""), (tarfile.CHRTYPE, "device.PLM", b""),
                    (tarfile.REGTYPE, ".wenlolib-1.tmp", SOUND), (tarfile.REGTYPE, "a_1.PLM", SOUND)]:  # fmt: skip
                entry = tarfile.TarInfo(name)
                entry.type, entry.size, entry.linkname = kind, len(data), "/etc/passwd"
                entry.pax_headers = {"comment": "a link may bring its contents"}
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

    def test_members_with_holes_that_are_small_one_by_one(self):
        """Each fits; together they would unpack to far more than the archive has."""
        one = self.sparse(64 << 20).rstrip(b"\0")
        one += bytes(-len(one) % 512)
        rows = self.rows("-", input=one * 30, status=3, message="it unpacks to more than 200 times its size")
        self.assertEqual(rows[-1]["fault"], "unreadable")
        self.assertLess(len(rows), 2 * 20)

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

    def test_memory_is_bounded_if_names_are_long(self):
        if is_instrumented():
            self.skipTest("the address sanitizer keeps what was freed")
        one = tar_of([(b"x" * 500_000 + b"_1.PLM", b"")]).rstrip(b"\0")
        one += bytes(-len(one) % 512 + 512)
        with subprocess.Popen([COMMAND, "rows", "--jobs", "8", "-"], stdin=subprocess.PIPE,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as child:  # fmt: skip
            for _ in range(800):
                child.stdin.write(one)
            child.stdin.close()
            _, status, usage = os.wait4(child.pid, 0)
            child.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(child.returncode, 1)  # the documents are empty
        self.assertLess(usage.ru_maxrss, 250 << 10)

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
