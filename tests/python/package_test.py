#!/usr/bin/env python3
"""Tests of the Python package wenlolib. Arguments: the folder that holds the package, and the path
of the wenlolib command."""

import collections
import gc
import gzip
import hashlib
import inspect
import json
import os
import pathlib
import random
import re
import signal
import sqlite3
import subprocess
import sys
import tarfile
import textwrap
import threading
import time
import typing
import unittest

import jsonschema

sys.dont_write_bytecode = True  # the folder of the tests stays as it is
if len(sys.argv) < 3:
    sys.exit("usage: package_test.py FOLDER COMMAND [unittest's arguments]")
PACKAGE, COMMAND = (os.path.abspath(sys.argv.pop(1)) for _ in range(2))
project = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [PACKAGE, str(project / "tests/tools")]

import rows_test
import skips
import wenlolib
from rows_corpus import COLUMNS, contents_of, is_well_formed, said, shown, without_references
from survey_documents import IDENTIFIER, header, printer_document, wrapped

rows_test.COMMAND = COMMAND
golden = rows_test.GoldenTest()  # an instance, so that its own tests do not run here
DATE, SOUND, tar_of, without_place = (rows_test.DATE, rows_test.SOUND, rows_test.tar_of,
                                      rows_test.without_place)  # fmt: skip
NEVER_NONE = ("schema", "source", "fault", "layer", "trusted")
schema = json.loads((project / "tools/schema/rows-1.json").read_text())
TYPES = {"integer": int, "boolean": bool, "string": str, "null": type(None)}
# How long a call that must not block may take on a busy machine.
PATIENCE = 120


def setUpModule():
    golden.setUpClass()
    unittest.addModuleCleanup(golden.doClassCleanups)


def as_dicts(rows):
    return [row._asdict() for row in rows]


def types_in_schema(part):
    """The Python types that a column's values may have."""
    if "enum" in part or "const" in part:
        return {type(value) for value in part.get("enum", [part.get("const")])}
    kinds = part["type"]
    return {TYPES[kind] for kind in ([kinds] if isinstance(kinds, str) else kinds)}


def large_document(mebibytes):
    """Sound; its contents are that many MiB of NUL characters, so the payload is the key."""
    key = hashlib.md5(DATE.encode()).hexdigest().upper()
    payload = key * (mebibytes << 16)
    return wrapped("OrvanQXApplication", header(DATE, "", "") + f'<Encrypted C="X">{payload}</Encrypted>')


def of_process(kind):
    """What the system lists of this process: "fd" or "task"."""
    try:
        return set(os.listdir(f"/proc/self/{kind}"))
    except FileNotFoundError:
        raise unittest.SkipTest("there is no /proc/self here")


class PackageTest(rows_test.RowsTest):
    """What other test classes share: a folder of its own for each test, and child processes."""

    def check_types(self, rows):
        super().check_types(as_dicts(rows))
        for row in rows:
            self.assertIs(type(row), wenlolib.Row)

    def listed(self, *call, **options):
        """All rows, after a check of their types."""
        rows = list(wenlolib.rows(*call, **options))
        self.check_types(rows)
        return rows

    def single(self, *call, **options):
        """The only row, and the complaint."""
        rows = wenlolib.rows(*call, **options)
        (row,) = rows
        self.check_types([row])
        return row, rows.complaint

    def child(self, code, *arguments, output=b"", locpath=None, **options):
        """Runs code in a process of its own. It must end by itself and print just this."""
        start = "import gc, os, random, signal, sys, threading, time\nimport wenlolib\n"
        environment = dict(os.environ, PYTHONPATH=PACKAGE, PYTHONDONTWRITEBYTECODE="1")
        if locpath:
            environment["LOCPATH"] = locpath
        result = subprocess.run([sys.executable, "-X", "faulthandler", "-c", start + textwrap.dedent(code), *arguments],
                                capture_output=True, timeout=PATIENCE, env=environment, **options)  # fmt: skip
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, output, b""))


# --- The corpus ---


class GoldenRowsTest(PackageTest):
    def check(self, rows, sources=None, members=None):
        self.check_types(rows)
        golden.check(as_dicts(rows), sources, members)

    def test_the_corpus_is_large(self):
        kinds = collections.Counter(file.kind for file in golden.files)
        for kind, least in rows_test.LEAST.items():
            self.assertGreaterEqual(kinds[kind], least, kind)

    def test_a_folder(self):
        for jobs in (1, 4):
            self.check(list(wenlolib.rows(golden.golden, jobs)))

    def test_archives(self):
        members = golden.members()
        names = [shown(name) for name, _ in members]
        for form in rows_test.FORMATS:
            data = tar_of(members, form)
            for ending, packed in ((".tar", data), (".tar.gz", gzip.compress(data, 1))):
                path = self.write("archive" + ending, packed)
                for jobs in (1, 4):
                    self.check(list(wenlolib.rows(path, jobs=jobs)), [shown(path)] * len(names), names)
                os.unlink(path)

    def test_an_archive_of_zstd(self):
        members = golden.members()
        path = self.write("archive.tar.zst", rows_test.zstd(tar_of(members)))
        self.check(list(wenlolib.rows(path, 4)), [shown(path)] * len(members), [shown(name) for name, _ in members])

    def test_the_command_writes_the_same_rows(self):
        tar = self.write("a.tar", tar_of(golden.members()))
        for place in (golden.golden, tar):
            for redact in ([], ["--redact"]):
                result = rows_test.run("rows", *redact, place)
                self.assertEqual(result.returncode, 1)
                written = [json.loads(line) for line in result.stdout.decode().split("\n")[:-1]]
                for jobs in (1, 4):
                    rows = self.listed(place, jobs=jobs, redact=bool(redact))
                    self.assertEqual(as_dicts(rows), written)


class GoldenExamineTest(PackageTest):
    def expected(self, data, row):
        """The report: the row's, with the values as bytes."""
        layers = ("none", "checksum", "contents")
        trusted = row["layer"] in layers and row["fault"] != "altered"
        report = {"fault": row["fault"], "layer": row["layer"], "offset": row["offset"] or 0,
                  "field": row["field"] or "", "trusted": trusted, "layout": row["layout"], "values": {},
                  "cipher": row["cipher"], "contents": None}  # fmt: skip
        document = said(data, row)
        if document is None:
            return report
        _, values, marker, digits = document
        for name, value in values.items():
            if name != "Date" and is_well_formed(value):
                value = without_references(value)
            report["values"][name] = value.decode("utf-8", "surrogateescape")
        columns = contents_of(marker, digits, values.get("Date", b""))
        if columns.get("contents_hex") is not None:
            report["contents"] = bytes.fromhex(columns["contents_hex"])
        elif columns.get("contents") is not None:
            report["contents"] = columns["contents"].encode()
        return report

    def test_every_report(self):
        seen = collections.Counter()
        for file, row in zip(golden.files, golden.expected, strict=True):
            report = wenlolib.examine(file.data)
            expected = self.expected(file.data, row)
            found = {name: getattr(report, name) for name in expected}
            self.assertEqual(found, expected, f"{file.kind}: {file.data[:300]}")
            self.check_form(report)
            for name, value in file.known.items():
                self.assertEqual(getattr(report, name), value, f"{file.kind}: {file.data[:300]}")
            whole = re.match(rb'(?s)(?:<\?xml[^>]*\?>)?<\w+ SUM="([0-9A-F]{32})">', file.data)
            if report.trusted:
                self.assertEqual(report.checksum, whole[1].decode())
            seen.update({"repaired": report.fault == "repaired", "foreign": report.layout is None,
                         "checksum": report.checksum != "",
                         "surrogates": re.search("[\udc80-\udcff]", "".join(report.values.values())) is not None,
                         "not UTF-8": shown(report.contents or b"").encode() != (report.contents or b""),
                         "no key": report.cipher is not None and report.contents is None})  # fmt: skip
        for what in ("repaired", "foreign", "checksum", "surrogates", "not UTF-8", "no key"):
            self.assertGreater(seen[what], 0, what)

    def check_form(self, report):
        self.assertIs(type(report), wenlolib.Report)
        self.assertEqual({type(report.trusted), type(report.sound)}, {bool})
        self.assertEqual({type(text) for text in (report.fault, report.layer, report.field, report.explanation,
                                                  report.checksum)}, {str})  # fmt: skip
        self.assertIs(type(report.offset), int)
        self.assertIn(type(report.contents), (bytes, type(None)))
        self.assertEqual(report.sound, report.layer == "none")
        self.assertEqual(report.explanation == "", report.sound)

    def test_all_that_holds_bytes(self):
        for file in golden.files[::25]:
            report = wenlolib.examine(file.data)
            twice = memoryview(bytes(byte for byte in file.data for _ in range(2)))
            backwards = memoryview(file.data[::-1])
            for data in (bytearray(file.data), memoryview(file.data), memoryview(bytearray(file.data)),
                         twice[::2], backwards[::-1]):  # fmt: skip
                self.assertEqual(wenlolib.examine(data), report)
        self.assertFalse(twice[::2].contiguous)

    def test_nothing(self):
        for data in (b"", bytearray(), memoryview(b""), memoryview(SOUND)[:0], memoryview(SOUND)[::-1][:0]):
            report = wenlolib.examine(data)
            self.assertEqual((report.fault, report.layer, report.offset, report.values, report.contents),
                             ("truncated", "xml", 0, {}, None))  # fmt: skip

    def test_what_is_not_bytes(self):
        for wrong in ("text", 5, None, [1, 2], [], 1.5, object(), pathlib.Path("a"), True):
            with self.assertRaises(TypeError):
                wenlolib.examine(wrong)
        with self.assertRaises(TypeError):
            wenlolib.examine()

    def test_bytes_that_change_meanwhile(self):
        whole = large_document(8)
        report = wenlolib.examine(whole)
        self.assertTrue(report.sound)
        examining = threading.Event()

        def change(data):
            examining.wait()
            time.sleep(0.02)
            in_the_middle.append(examining.is_set())
            data[-100:] = bytes(50)  # would raise BufferError if they were in use

        for _ in range(20):
            in_the_middle, data = [], bytearray(whole)
            thread = threading.Thread(target=change, args=[data])
            thread.start()
            examining.set()
            found = wenlolib.examine(data)
            examining.clear()
            thread.join()
            if not found.sound:  # the change came first
                continue
            self.assertEqual(len(data), len(whole) - 50)
            self.assertEqual(found, report)
            if in_the_middle[0]:
                return
        self.fail("the other thread never changed the bytes in the middle")


class AnyBytesTest(PackageTest):
    def test_bytes_of_any_kind(self):
        self.child("""
            made = random.Random(17)
            golden, folder = (os.fsencode(path) for path in sys.argv[1:])
            bases = []
            for parent, _, names in os.walk(golden):
                for name in sorted(names):
                    with open(os.path.join(parent, name), "rb") as file:
                        bases.append(file.read()[:3000])
            bases.sort()

            def mutated(data):
                for _ in range(made.randint(1, 8)):
                    at, size = made.randrange(len(data) + 1), made.choice([0, 1, 1, 2, 30])
                    data = data[:at] + made.choice([b"", made.randbytes(size), data[:size]]) + data[at + size:]
                return data

            def any_bytes(number):
                if number % 4 == 0:
                    return made.randbytes(made.choice([0, 1, 5, 600, 3000]))
                return mutated(made.choice(bases))

            faults = {"none": 0, "truncated": 0, "damaged": 0, "altered": 0, "repaired": 0, "foreign": 0}
            sample = []
            for number in range(20000):
                data = any_bytes(number)
                report = wenlolib.examine(data)
                faults[report.fault] += 1
                assert 0 <= report.offset <= len(data)
                assert type(report.contents) in (bytes, type(None)) and type(report.values) is dict
                if number % 20 == 0:
                    sample.append((data, report.fault))
            assert sum(faults.values()) == 20000 and min(faults.values()) > 10, faults

            # The same as rows, and archives that are broken in any way.
            for number, (data, fault) in enumerate(sample):
                path = os.path.join(folder, b"%04d.PLM" % number)
                with open(path, "wb") as file:
                    file.write(data)
            assert [row.fault for row in wenlolib.rows(folder, 4)] == [fault for _, fault in sample]
            with open(os.path.join(golden, b"..", os.path.basename(golden)) + b".tar", "rb") as file:
                tar = file.read()
            path, unreadable = os.path.join(folder, b"a.tar"), 0
            for number in range(300):
                with open(path, "wb") as file:
                    file.write(mutated(tar) if number % 3 else made.randbytes(4000))
                rows = list(wenlolib.rows(path, 1 + number % 2))
                assert len(rows) <= 40, len(rows)
                unreadable += sum(row.fault == "unreadable" for row in rows)
            assert unreadable > 100, unreadable
            """, *self.with_archive())

    def with_archive(self):
        """The corpus folder, with a small archive next to it, and an empty folder."""
        path = os.fsdecode(golden.golden)
        with open(path + ".tar", "wb") as file:
            file.write(tar_of([(file.path, file.data[:1500]) for file in golden.files[:30]]))
        self.addCleanup(os.unlink, path + ".tar")
        return path, os.fsdecode(self.folder)


# --- Paths and arguments ---


class Named:
    """A path-like object that is not a Path."""

    def __init__(self, path):
        self.path = path

    def __fspath__(self):
        return self.path


class PathsTest(PackageTest):
    def test_one_path(self):
        path = self.write("é_1.PLM")
        for one in (path, os.fsdecode(path), pathlib.Path(os.fsdecode(path)), Named(path), Named(os.fsdecode(path))):
            row, complaint = self.single(one)
            self.assertEqual((row.source, row.name, row.number, row.fault, complaint),
                             (path.decode(), "é", 1, "none", ""))  # fmt: skip

    def test_several_paths(self):
        paths = [self.write(f"{number}.PLM") for number in range(5)]
        mixed = [paths[4], os.fsdecode(paths[0]), pathlib.Path(os.fsdecode(paths[2]))]
        for several in (mixed, tuple(mixed), iter(mixed), (path for path in mixed), dict.fromkeys(mixed)):
            self.assertEqual([row.name for row in self.listed(several)], ["4", "0", "2"])
        self.assertEqual([row.name for row in self.listed([paths[1]] * 3, 2)], ["1"] * 3)
        self.assertEqual(len(self.listed([self.folder, paths[0]])), 6)

    def test_no_path(self):
        for nothing in ([], (), iter([])):
            for jobs in (1, 4):
                self.assertEqual(self.listed(nothing, jobs), [])

    def test_a_folder_of_nothing(self):
        for jobs in (1, 4):
            self.assertEqual(self.listed(self.folder, jobs), [])
        self.write("notes.txt")
        self.write("a.tar", tar_of([(b"readme", b"x")]))
        self.assertEqual(self.listed(self.folder), [])

    def test_what_cannot_be_read(self):
        pipe, sound = self.path("p_3.PLM"), self.write("s.PLM")
        os.mkfifo(pipe)
        for jobs in (1, 4):
            rows = wenlolib.rows([self.path("missing_7.PLM"), sound, self.folder, b""], jobs)
            self.assertEqual(rows.complaint, "")
            found = []
            for row in rows:
                self.check_types([row])
                found.append((row.fault, row.name, row.number, rows.complaint))
                if row.fault == "unreadable":
                    present = {name for name in COLUMNS if getattr(row, name) is not None}
                    self.assertLessEqual(present, {"schema", "source", "name", "number", "fault", "layer", "trusted"})
                    self.assertEqual((row.layer, row.trusted), ("none", False))
            self.assertEqual(found, [
                ("unreadable", "missing", 7, "No such file or directory"), ("none", "s", None, ""),
                ("unreadable", "p", 3, "skipped: it is a pipe, not a regular file"), ("none", "s", None, ""),
                ("unreadable", None, None, "the path is empty")])  # fmt: skip

    def test_a_file_that_is_named_like_standard_input(self):
        self.write("-", SOUND)
        self.child("""
            digests = [row.sha256 for row in wenlolib.rows("-")]
            digests += [row.sha256 for row in wenlolib.rows(["-", "-"], jobs=2)]
            assert digests == [sys.argv[1]] * 3, digests
            assert sys.stdin.read() == "still there"
            os.unlink("-")
            (row,) = wenlolib.rows("-")
            assert row.fault == "unreadable", row
            os.mkdir("-")
            with open("-/a.PLM", "wb"):
                pass
            (row,) = wenlolib.rows("-")
            assert (row.source, row.bytes) == ("./-/a.PLM", 0), row
            """, hashlib.sha256(SOUND).hexdigest(), cwd=self.folder, input=b"still there")  # fmt: skip

    def test_names_that_are_not_utf_8(self):
        path = self.write(b"\xff\xe9_5.PLM")
        for one in (path, os.fsdecode(path), self.folder):
            row, _ = self.single(one)
            self.assertEqual((row.source, row.name, row.number, row.fault), (shown(path), "\ufffd\ufffd", 5, "none"))

    def test_names_that_lead_upwards(self):
        row, _ = self.single(os.path.join(self.folder, b"..", os.path.basename(self.write("x/a.PLM")[:-8]), b"x/../x"))
        self.assertIn("/../", row.source)
        names = [b"../../evil_1.PLM", b"/etc/evil_2.PLM", b"a/../../evil_3.ALM"]
        tar = self.write("b.tar", tar_of([(name, SOUND) for name in names]))
        before = self.tree()
        rows = self.listed(tar)
        self.assertEqual([row.member for row in rows], [name.decode() for name in names])
        self.assertEqual([(row.fault, row.name) for row in rows], [("none", "evil")] * 3)
        self.assertEqual(self.tree(), before)

    def test_arguments_that_are_refused(self):
        path = self.write("a.PLM")
        for wrong in (b"a\0b", "a\0", ["a", b"\0"], Named("\0")):
            with self.assertRaises(ValueError):
                wenlolib.rows(wrong)
        for jobs in (0, -1, 257, 1 << 40, -(1 << 70)):
            with self.assertRaises(ValueError):
                wenlolib.rows(path, jobs)
        for jobs in ("2", None, 1.5, [1]):
            with self.assertRaises(TypeError):
                wenlolib.rows(path, jobs)
        for wrong in (None, 5, [5], [None], [path, 1.5], bytearray(path), [bytearray(path)]):
            with self.assertRaises(TypeError):
                wenlolib.rows(wrong)
        for jobs in (1, 2, 256):
            self.assertEqual(len(self.listed(path, jobs)), 1)

    def test_nothing_is_opened_before_the_first_row(self):
        rows = wenlolib.rows(self.folder)
        self.write("a.PLM")
        self.assertEqual(len(list(rows)), 1)


class RedactionTest(PackageTest):
    def test_redaction_in_every_column(self):
        bare = IDENTIFIER[1:-1]
        contents = f"{IDENTIFIER.lower()} qx200-0004711 {bare}"
        whole = printer_document(DATE, contents, device=f"SERN:qx200-0004711;{bare}",
                                 rom=f"{bare.lower()}-QX200-0004711")  # fmt: skip
        documents = {"sound": whole, "altered": whole.replace(b"1.0", b"1.1"), "cut": whole[:-3],
                     "broken": whole.replace(b"<Locale>", b"<QX200-0004711>"),
                     "field": whole.replace(b"</Printer>", b"</Printer><QX200-0004711/>"),
                     "surrounded": whole.replace(b"<Printer>", f'<Printer A="{bare}">'.encode())}  # fmt: skip
        for kind, data in documents.items():
            name = f"{kind} {bare} QX200-0004711_5.PLM".encode()
            for place in (self.write(name, data), self.write("a.tar", tar_of([(name, data)]))):
                for jobs in (1, 2):
                    row, complaint = self.single(place, jobs, redact=True)
                    text = json.dumps([*row, complaint]).lower()
                    self.assertIn("[redacted]", text)
                    self.assertNotIn("4711", text)
                    self.assertNotIn(bare.lower(), text)
                    self.assertEqual((row.id, row.sn), (None, None))
                    plain, _ = self.single(place, jobs)
                    self.assertIn("QX200-0004711", json.dumps(plain))


class BrokenArchiveTest(PackageTest):
    def setUp(self):
        super().setUp()
        self.members = [(b"%d_1.PLM" % number, SOUND.replace(b"QX200-0004711", b"S%d" % number)) for number in range(8)]
        self.tar = tar_of(self.members, "ustar")
        self.piece = 512 + -(-len(self.members[0][1]) // 512) * 512

    def check(self, data, intact, complaint, name="a.tar"):
        """This number of intact documents, then one that is unreadable, and why."""
        path = self.write(name, data)
        for jobs in (1, 4):
            rows = wenlolib.rows([path, self.write("after.PLM")], jobs)
            found = []
            for row in rows:
                self.check_types([row])
                found.append((row.fault == "unreadable", rows.complaint))
            self.assertEqual([bad for bad, _ in found], [False] * intact + [True, False])
            self.assertRegex(found[intact][1], complaint)
            self.assertEqual({told for bad, told in found if not bad}, {""})

    def test_an_archive_that_is_cut_off(self):
        self.check(self.tar[: 5 * self.piece + 700], 5, "^the archive is broken or cut off here: Truncated tar")
        self.check(self.tar[: 5 * self.piece + 100], 5, "^the archive is broken or cut off: Truncated tar")
        self.check(gzip.compress(self.tar)[:-60], 0, "^the archive cannot be read: truncated gzip input", "a.tgz")

    def test_an_archive_that_is_broken(self):
        header = bytearray(self.tar)
        header[3 * self.piece + 10] ^= 0x55
        self.check(bytes(header), 3, "^the archive is broken or cut off")
        for data in (b"", b"not an archive", SOUND, bytes(range(256)) * 20):
            self.check(data, 0, "^the archive ")
            self.check(gzip.compress(data), 0, "^the archive ", "a.tar.gz")

    def test_a_member_that_unpacks_to_much(self):
        members = [(b"large_1.PLM", bytes(65 << 20)), (b"b_1.PLM", SOUND)]
        path = self.write("a.tar.gz", gzip.compress(tar_of(members), 1))
        self.assertLess(os.path.getsize(path), 1 << 20)
        for jobs in (1, 4):
            rows = wenlolib.rows(path, jobs)
            large = next(rows)
            self.assertEqual((large.fault, large.member, rows.complaint),
                             ("unreadable", "large_1.PLM",
                              "larger than 64 MiB, too large for an archive's member; unpack it first"))  # fmt: skip
            self.assertEqual([(row.fault, row.member, row.sha256) for row in rows],
                             [("none", "b_1.PLM", hashlib.sha256(SOUND).hexdigest())])  # fmt: skip


# --- The iterator ---


class RowsObjectTest(PackageTest):
    def test_closing_in_the_middle(self):
        for jobs in (1, 4):
            rows = wenlolib.rows(golden.golden, jobs)
            self.assertIs(iter(rows), rows)
            self.assertEqual([next(rows) for _ in range(50)], self.all[:50])
            rows.close()
            self.assertEqual(list(rows), [])
            with self.assertRaises(StopIteration):
                next(rows)
            rows.close()

    @classmethod
    def setUpClass(cls):
        cls.all = list(wenlolib.rows(golden.golden))

    def test_the_end_stays_the_end(self):
        for jobs in (1, 4):
            rows = wenlolib.rows(golden.golden, jobs)
            self.assertEqual(list(rows), self.all)
            self.assertEqual(list(rows), [])
            self.assertEqual(next(rows, "nothing"), "nothing")

    def test_with(self):
        for jobs in (1, 4):
            with wenlolib.rows(golden.golden, jobs) as rows:
                self.assertEqual(next(rows), self.all[0])
            self.assertEqual(list(rows), [])
            with self.assertRaises(ZeroDivisionError):
                with wenlolib.rows(golden.golden, jobs) as rows:
                    next(rows)
                    1 / 0
            self.assertEqual(list(rows), [])

    def test_what_is_dropped_ends_its_threads_and_files(self):
        tar = self.write("a.tar", tar_of(golden.members()))
        gc.collect()
        threads, files = of_process("task"), of_process("fd")

        def closed(rows):
            rows.close()

        def left(rows):
            with rows:
                next(rows)

        for ended in (closed, left, list, lambda rows: None):
            for place in (golden.golden, tar):
                rows = wenlolib.rows(place, jobs=4)
                self.assertEqual(next(rows).sha256, self.all[0].sha256)
                self.assertEqual(len(of_process("task") - threads), 4)
                ended(rows)
                if ended is not closed and ended is not left:
                    del rows
                    gc.collect()
                self.assertEqual((of_process("task"), of_process("fd")), (threads, files))

    def test_dropped_in_a_cycle(self):
        threads = of_process("task")
        rows = wenlolib.rows(golden.golden, jobs=4)
        next(rows)
        rows.itself = rows
        del rows
        gc.collect()
        self.assertEqual(of_process("task"), threads)

    def test_two_at_the_same_time(self):
        for jobs in (1, 4):
            first, second = (wenlolib.rows(golden.golden, jobs) for _ in range(2))
            self.assertEqual(list(zip(first, second, strict=True)), list(zip(self.all, self.all)))

    def test_four_threads_share_one(self):
        for jobs in (1, 4):
            for place in (golden.golden, self.write("a.tar", tar_of(golden.members()))):
                rows, taken = wenlolib.rows([place] * 3, jobs), [[] for _ in range(4)]
                threads = [threading.Thread(target=lambda mine: mine.extend(rows), args=[mine]) for mine in taken]
                for thread in threads:
                    thread.start()
                for thread in threads:
                    thread.join(PATIENCE)
                    self.assertFalse(thread.is_alive())
                expected = list(wenlolib.rows([place] * 3))
                self.assertEqual(sum(len(mine) for mine in taken), len(expected))
                self.assertEqual(collections.Counter(row for mine in taken for row in mine),
                                 collections.Counter(expected))  # fmt: skip
                self.check_types([row for mine in taken for row in mine])

    def test_a_thread_closes_what_another_one_reads(self):
        for jobs in (1, 4):
            for _ in range(20):
                rows, taken = wenlolib.rows(golden.golden, jobs), []
                thread = threading.Thread(target=taken.extend, args=[rows])
                thread.start()
                time.sleep(random.random() / 20)
                rows.close()
                thread.join(PATIENCE)
                self.assertFalse(thread.is_alive())
                self.assertEqual(taken, self.all[: len(taken)])

    def test_a_process_that_is_forked_off(self):
        self.child("""
            rows = wenlolib.rows(sys.argv[1], jobs=4)
            begun = [next(rows) for _ in range(10)]
            for end in ("drop", "close", "leave", "exit"):
                child = os.fork()
                if child == 0:
                    signal.alarm(60)  # ends the process
                    for _ in range(2):
                        try:
                            next(rows)
                            os._exit(2)
                        except RuntimeError:
                            pass
                    if end == "close":
                        rows.close()
                        assert list(rows) == []
                    if end == "leave":
                        with rows:
                            pass
                    if end == "drop":
                        del rows
                        gc.collect()
                    # Its own rows work.
                    if len(list(wenlolib.rows(sys.argv[1], jobs=4))) != int(sys.argv[2]):
                        os._exit(3)
                    sys.exit(0)
                status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
                assert status == 0, (end, status)
                begun.append(next(rows))
            begun += rows
            assert begun == list(wenlolib.rows(sys.argv[1]))
            """, golden.golden, str(len(self.all)))  # fmt: skip

    def test_forked_off_while_a_thread_waits_for_a_row(self):
        pipe = self.path("pipe")
        os.mkfifo(pipe)
        self.child("""
            rows = wenlolib.rows([sys.argv[1]])
            found = []
            thread = threading.Thread(target=found.extend, args=[rows], daemon=True)
            thread.start()
            time.sleep(0.3)  # it waits by now, if this machine is not very busy
            for close in (True, False):
                child = os.fork()
                if child == 0:
                    signal.alarm(60)  # ends the process
                    try:
                        next(rows)
                        os._exit(2)
                    except RuntimeError:
                        if close:
                            rows.close()
                            list(rows)
                        os._exit(0)
                status = os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])
                assert status == 0, status
            with open(sys.argv[1], "wb") as out:
                out.write(b"<a/>")
            thread.join(60)
            assert [row.fault for row in found] == ["foreign"], found
            """, pipe)  # fmt: skip

    def test_rows_cannot_be_copied(self):
        self.child("""
            import copy, pickle
            rows = wenlolib.rows(sys.argv[1])
            for copied in (copy.copy, copy.deepcopy, pickle.dumps):
                try:
                    copied(rows)
                    os._exit(2)
                except TypeError:
                    pass
            assert len(list(rows)) == int(sys.argv[2])
            """, golden.golden, str(len(self.all)))  # fmt: skip

    def test_a_length_that_is_not_true(self):
        self.child("""
            class Bytes(bytes):
                def __len__(self):
                    return 10**9

            assert wenlolib.examine(Bytes(b"<a/>")) == wenlolib.examine(b"<a/>")
            """)

    def test_names_do_not_depend_on_the_locale(self):
        """A program may choose one in which the bytes of a name mean other characters."""
        made = subprocess.run(["localedef", "-i", "de_DE", "-f", "ISO-8859-1", self.path("de_DE.ISO-8859-1")],
                              capture_output=True)
        if made.returncode > 1 or not os.path.exists(self.path("de_DE.ISO-8859-1")):
            self.skipTest("there are no definitions of locales here (locales)")
        members = [("\u00e9_1.PLM".encode(), b""), ("\u8cc7_2.PLM".encode(), b"x")]
        tars = [self.write(form + ".tar", rows_test.tar_of(members, form)) for form in rows_test.FORMATS]
        self.child("""
            import locale
            before = [(row.member, row.name, row.number) for row in wenlolib.rows(sys.argv[1:])]
            locale.setlocale(locale.LC_ALL, "de_DE.ISO-8859-1")
            after = [(row.member, row.name, row.number) for row in wenlolib.rows(sys.argv[1:])]
            assert after == before, (before, after)
            assert before == 3 * [("\u00e9_1.PLM", "\u00e9", 1), ("\u8cc7_2.PLM", "\u8cc7", 2)], before
            assert locale.localeconv()["decimal_point"] == ","
            """, *tars, locpath=self.path(""))

    def test_a_signal_handler_closes_what_it_interrupts(self):
        self.child("""
            rows = wenlolib.rows([sys.argv[1]] * 200)
            asked = []

            def handle(*_):
                try:
                    next(rows)
                except (RuntimeError, StopIteration) as error:
                    asked.append(type(error))
                rows.close()

            next(rows)
            signal.signal(signal.SIGALRM, handle)
            signal.setitimer(signal.ITIMER_REAL, 0.05)
            taken = sum(1 for _ in rows)
            assert asked and taken < 200 * int(sys.argv[2]), (asked, taken)
            assert list(rows) == []
            """, golden.golden, str(len(self.all)))  # fmt: skip

    def test_a_signal_while_a_pipe_has_no_writer(self):
        for name in ("pipe", "pipe_1.PLM"):
            pipe = self.path(name)
            os.mkfifo(pipe)
            self.child("""
                signal.signal(signal.SIGALRM, lambda *_: None)
                signal.setitimer(signal.ITIMER_REAL, 0.2, 0.05)

                def write():
                    time.sleep(0.5)
                    with open(sys.argv[1], "wb") as out:
                        time.sleep(0.2)
                        out.write(b"<a/>")

                thread = threading.Thread(target=write)
                thread.start()
                (row,) = wenlolib.rows(sys.argv[1])
                assert row.fault == "foreign", row
                thread.join()
                """, pipe)  # fmt: skip

    def test_an_interpreter_that_ends_in_the_middle(self):
        for rest in ("", "sys.exit(0)", "kept = [rows]; kept.append(kept)"):
            self.child("""
                rows = wenlolib.rows(sys.argv[1], jobs=4)
                next(rows)
                %s
                """ % rest, golden.golden)  # fmt: skip


# --- Beside others in the process ---


class OtherThreadsTest(PackageTest):
    def test_another_thread_writes_what_a_row_is_read_from(self):
        """If the interpreter's lock were held while the pipe is read, nobody could write."""
        pipe = self.path("pipe")
        os.mkfifo(pipe)
        for jobs in ("1", "4"):
            self.child("""
                def write():
                    time.sleep(0.2)  # the reader should wait by then
                    with open(sys.argv[1], "wb") as out:
                        for at in range(0, len(data), 1000):
                            out.write(data[at : at + 1000])

                data = sys.stdin.buffer.read()
                thread = threading.Thread(target=write)
                thread.start()
                (row,) = wenlolib.rows([sys.argv[1]], jobs=int(sys.argv[2]))
                thread.join()
                assert (row.fault, row.bytes) == ("none", len(data)), row
                """, pipe, jobs, input=printer_document(DATE, "x" * 20000))  # fmt: skip

    def test_another_thread_counts_while_a_document_is_examined(self):
        """The interpreter does not take the lock away from a thread here. The other thread gets it,
        for one count, when it is given up: a few times between the calls of C; while a call
        runs without the lock, many times."""
        path = self.write("large.ALM", large_document(24))
        self.child("""
            with open(sys.argv[1], "rb") as file:
                document = file.read()
            sys.setswitchinterval(1000)
            count, ended = 0, False

            def counting():
                global count
                while not ended:
                    count += 1
                    time.sleep(0.001)

            thread = threading.Thread(target=counting)
            thread.start()
            most = {}
            for name, work in (("examine", lambda: wenlolib.examine(document).sound),
                               ("rows", lambda: next(wenlolib.rows(sys.argv[1])).fault == "none")):
                most[name] = 0
                for _ in range(20):
                    before = count
                    assert work()
                    most[name] = max(most[name], count - before)
                    if most[name] > 60:
                        break
            ended = True
            thread.join()
            assert min(most.values()) > 60, most
            """, path)  # fmt: skip


class ShortageTest(PackageTest):
    def test_little_memory(self):
        of_process("task")
        path = self.write("large.ALM", large_document(32))
        self.child("""
            import resource

            with open(sys.argv[1], "rb") as file:
                document = file.read()
            with open("/proc/self/statm") as file:
                used = int(file.read().split()[0]) * resource.getpagesize()
            resource.setrlimit(resource.RLIMIT_AS, (used + (20 << 20),) * 2)
            for work, error in ((lambda: wenlolib.examine(document), MemoryError),
                                (lambda: wenlolib.rows(".", jobs=256), RuntimeError)):
                try:
                    work()
                    sys.exit("there was enough")
                except error:
                    pass
            rows = wenlolib.rows(sys.argv[1])
            (row,) = rows
            assert (row.fault, rows.complaint) == ("unreadable", "too large for the available memory"), row
            assert wenlolib.examine(document[:1000]).fault == "truncated"
            assert len(os.listdir("/proc/self/task")) == 1
            """, path)  # fmt: skip


class ProcessTest(PackageTest):
    """What the process has, and the library must leave alone."""

    def test_nothing_of_the_process_changes(self):
        tar = self.write("broken.tar", tar_of(golden.members())[:200000])
        self.child("""
            import ctypes, locale, resource, tempfile
            setlocale = ctypes.CDLL(None).setlocale
            setlocale.restype = ctypes.c_char_p

            def state():
                mask = os.umask(0o22)
                os.umask(mask)
                return {"locale": setlocale(locale.LC_ALL, None), "folder": os.getcwd(), "umask": mask,
                        "environment": dict(os.environ),
                        "blocked": signal.pthread_sigmask(signal.SIG_BLOCK, []),
                        "handlers": [signal.getsignal(number) for number in signal.valid_signals()],
                        "descriptors": os.listdir("/proc/self/fd") if os.path.exists("/proc") else None,
                        "signals": [line for line in open("/proc/self/status") if line.startswith("Sig")]
                                   if os.path.exists("/proc") else None,
                        "files": sorted(os.listdir()), "random": random.getstate()}

            # The C library takes a signal for itself with the first thread.
            threading.Thread(target=int).start()
            for name in sys.argv[4:]:
                locale.setlocale(locale.LC_ALL, name)
            for blocked in (set(), {signal.SIGTERM, signal.SIGUSR2}):
                signal.pthread_sigmask(signal.SIG_SETMASK, blocked)
                before = state()
                assert before["blocked"] == blocked
                for jobs in (1, 4):
                    rows = wenlolib.rows(sys.argv[1:4], jobs)
                    next(rows)
                    assert state()["blocked"] == blocked
                    for row in rows:
                        pass
                    half = wenlolib.rows(sys.argv[1:4], jobs, redact=True)
                    next(half)
                    half.close()
                with open(sys.argv[2], "rb") as file:
                    wenlolib.examine(file.read())
                for wrong in (0, 257):
                    try:
                        wenlolib.rows(".", jobs=wrong)
                    except ValueError:
                        pass
                after = state()
                for name, value in before.items():
                    assert after[name] == value, (name, value, after[name])
            """, golden.golden, tar, self.path("missing"), "C.UTF-8", cwd=self.folder)  # fmt: skip

    def test_worker_threads_block_all_signals(self):
        of_process("task")
        self.child("""
            before = set(os.listdir("/proc/self/task"))
            rows = wenlolib.rows(sys.argv[1], jobs=4)
            next(rows)
            threads = set(os.listdir("/proc/self/task")) - before
            assert len(threads) == 4
            everything = sum(1 << (number - 1) for number in signal.valid_signals()
                             if number not in (signal.SIGKILL, signal.SIGSTOP))
            for thread in threads:
                with open(f"/proc/self/task/{thread}/status") as status:
                    (blocked,) = [int(line.split()[1], 16) for line in status if line.startswith("SigBlk")]
                assert blocked & everything == everything, hex(blocked)
            """, golden.golden)  # fmt: skip

    def test_an_interrupt_from_outside(self):
        code = """if True:
            import os, signal, sys, threading
            import wenlolib

            seen = []
            handler = signal.getsignal(signal.SIGINT)

            def note(number, frame):
                seen.append(threading.current_thread() is threading.main_thread())
                handler(number, frame)

            signal.signal(signal.SIGINT, note)
            interrupts, count = 0, 0
            rows = wenlolib.rows([sys.argv[1]] * 1000, jobs=4)
            next(rows)
            while interrupts < 5:
                try:
                    print("reading", flush=True)
                    for row in rows:
                        count += 1
                    break
                except KeyboardInterrupt:
                    interrupts += 1
            rows.close()
            assert interrupts == 5 and seen == [True] * 5, (interrupts, seen, count)
            """
        with subprocess.Popen([sys.executable, "-c", code, golden.golden], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, env=dict(os.environ, PYTHONPATH=PACKAGE)) as child:  # fmt: skip
            alarm = threading.Timer(PATIENCE, child.kill)
            alarm.start()
            for _ in range(5):
                self.assertEqual(child.stdout.readline(), b"reading\n")
                child.send_signal(signal.SIGINT)
            output, errors = child.communicate()
            alarm.cancel()
        self.assertEqual((child.returncode, output, errors), (0, b"", b""))

    def test_a_signal_whose_handler_returns_costs_no_row(self):
        self.child("""
            seen = []
            signal.signal(signal.SIGALRM, lambda *_: seen.append(threading.current_thread()))
            expected = list(wenlolib.rows([sys.argv[1]] * 3))
            for jobs in (1, 4):
                del seen[:]
                signal.setitimer(signal.ITIMER_REAL, 0.001, 0.001)
                found = list(wenlolib.rows([sys.argv[1]] * 3, jobs))
                signal.setitimer(signal.ITIMER_REAL, 0)
                assert found == expected
                assert len(seen) > 3 and set(seen) == {threading.main_thread()}, seen
            """, golden.golden)  # fmt: skip


# --- Types ---


class TypesTest(PackageTest):
    def test_type_hints(self):
        self.assertTrue((pathlib.Path(wenlolib.__file__).parent / "py.typed").is_file())
        row = typing.get_type_hints(wenlolib.Row)
        self.assertEqual(row, {name: kind if name in NEVER_NONE else typing.Optional[kind]
                               for name, kind in COLUMNS.items()})  # fmt: skip
        self.assertEqual(list(row), list(COLUMNS))
        self.assertEqual(wenlolib.Row._fields, tuple(schema["properties"]))
        report = typing.get_type_hints(wenlolib.Report)
        self.assertEqual((report["fault"], report["offset"], report["trusted"], report["contents"]),
                         (str, int, bool, typing.Optional[bytes]))  # fmt: skip
        self.assertEqual(typing.get_type_hints(wenlolib.examine)["return"], wenlolib.Report)
        rows = typing.get_type_hints(wenlolib.rows)
        self.assertEqual((rows["jobs"], rows["redact"], rows["return"]), (int, bool, wenlolib.Rows))
        self.assertEqual(typing.get_type_hints(wenlolib.Rows.__next__)["return"], wenlolib.Row)
        for function in (wenlolib.examine, wenlolib.rows, wenlolib.Rows.__init__, wenlolib.Rows.close):
            hints = typing.get_type_hints(function)
            self.assertLessEqual({*inspect.signature(function).parameters} - {"self"}, {*hints}, function)

    def test_values_have_the_types_of_their_hints(self):
        hints = typing.get_type_hints(wenlolib.Report)
        seen = {name: set() for name in hints}
        for file in golden.files[::7]:
            report = wenlolib.examine(file.data)
            for name, hint in hints.items():
                seen[name].add(type(getattr(report, name)))
        for name, hint in hints.items():
            allowed = {dict} if name == "values" else {*typing.get_args(hint)} or {hint}
            self.assertEqual(seen[name], allowed, name)

    def test_documentation(self):
        self.assertTrue(wenlolib.__doc__)
        self.assertEqual(wenlolib.__all__, sorted(wenlolib.__all__))
        for name in wenlolib.__all__:
            made = getattr(wenlolib, name)
            self.assertTrue(made.__doc__, name)
            self.assertNotRegex(made.__doc__, rf"^{name}\(", name)  # as a data class would write it
            for member, value in vars(made).items() if isinstance(made, type) else []:
                if not member.startswith("_") and (callable(value) or isinstance(value, property)):
                    self.assertTrue(value.__doc__, f"{name}.{member}")

    def test_the_version_is_that_of_the_command(self):
        told = rows_test.run("--version").stdout.decode()
        self.assertIn(f" {wenlolib.__version__}", told.splitlines()[0])

    def test_batches_of_any_kind_have_the_types_of_the_schema(self):
        kinds = {name: types_in_schema(part) for name, part in schema["properties"].items()}
        validator = jsonschema.Draft202012Validator({**schema, "additionalProperties": False})
        made = random.Random(11)
        unreadable = [self.path("missing.PLM"), self.write("broken.tar", b"\x1f\x8b"), self.path("pipe.PLM")]
        os.mkfifo(unreadable[2])
        unreadable[2] = self.folder  # its pipe cannot be read
        paths = [os.path.join(golden.golden, file.path) for file in golden.files]
        broken = [path for path, row in zip(paths, golden.expected) if not row["trusted"]] + unreadable[:2]
        faults = set()
        for batch in range(60):
            several = [paths + unreadable, broken, unreadable][batch % 3]
            chosen = made.sample(several, made.randrange(1, min(len(several), 29) + 1))
            rows = self.listed(chosen, jobs=made.choice([1, 4]), redact=made.random() < 0.3)
            self.assertGreaterEqual(len(rows), len(chosen))
            for row in rows:
                if batch % 3:
                    self.assertFalse(row.trusted)
                faults.add(row.fault)
                for name, value in row._asdict().items():
                    self.assertIn(type(value), kinds[name], name)
                validator.validate(row._asdict())
        self.assertEqual(faults, set(schema["properties"]["fault"]["enum"]))


# --- Very many ---


TARS, IN_EACH = 20, 10000
PLANTED = {("none", "none"): 88, ("none", "contents"): 1, ("truncated", "xml"): 3, ("altered", "checksum"): 2,
           ("damaged", "white_space"): 2, ("damaged", "hexadecimal"): 1, ("repaired", "checksum"): 2,
           ("foreign", "xml"): 1}  # fmt: skip


def planted(number, fault, layer):
    """A document with this fault, unlike that of any other number."""
    data = printer_document("" if layer == "contents" else DATE, f"n={number}", serial=f"S{number % 500}")
    if fault == "truncated":
        return data[: -1 - number % 150]
    if fault == "altered":
        return data.replace(b"M.6", b"M.7")
    if layer == "white_space":
        return data.replace(b"<Locale>", b" <Locale>")
    if layer == "hexadecimal":
        return data.replace(b"</PLI>", b"g</PLI>")
    if fault == "repaired":
        body = data[data.index(b">") + 1 : data.rindex(b"<")].decode().replace("QX 200", "QX & 200")
        return wrapped("OrvanQXPrinter", body).replace(b"QX & 200", b"QX &amp; 200")
    return b"text %d" % number if fault == "foreign" else data


class ManyTest(PackageTest):
    def setUp(self):
        super().setUp()
        made = random.Random(3)
        self.planted = collections.Counter()
        for tar in range(TARS):
            with open(self.path(f"{tar:02}.tar"), "wb") as out:
                for number in range(tar * IN_EACH, (tar + 1) * IN_EACH):
                    (kind,) = made.choices(list(PLANTED), PLANTED.values())
                    self.planted[kind] += 1
                    data = planted(number, *kind)
                    entry = tarfile.TarInfo(f"{number % 500:03}/QX200_{number}.PLM")
                    entry.size = len(data)
                    out.write(entry.tobuf(tarfile.USTAR_FORMAT) + data + bytes(-len(data) % 512))
                out.write(bytes(1024))

    def test_two_hundred_thousand_documents_are_counted_right(self):
        self.assertEqual(self.planted.total(), TARS * IN_EACH)
        self.assertEqual(set(self.planted), set(PLANTED))
        faults = collections.Counter()
        for (fault, _), count in self.planted.items():
            faults[fault] += count
        sources, digests, kinds, counted = collections.Counter(), set(), collections.Counter(), collections.Counter()
        for row in wenlolib.rows(self.folder, jobs=2):
            sources[row.source] += 1
            digests.add(row.sha256)
            kinds[row.fault, row.layer] += 1
            counted[row.fault] += 1
        self.assertEqual(kinds, self.planted)
        self.assertEqual(counted, faults)
        self.assertEqual(sources, {self.path(f"{tar:02}.tar").decode(): IN_EACH for tar in range(TARS)})
        self.assertEqual(len(digests), TARS * IN_EACH)

        database = self.path("fleet.db")
        result = rows_test.run("collect", "--jobs", "2", self.folder, "--into", database)
        self.assertEqual((result.returncode, result.stderr), (1, b""))
        connection = sqlite3.connect(os.fsdecode(database))
        self.addCleanup(connection.close)
        self.assertEqual(dict(connection.execute("SELECT fault, count(*) FROM documents GROUP BY fault")), dict(faults))
        self.assertEqual({(fault, layer): count for fault, layer, count in connection.execute(
            "SELECT fault, layer, count(*) FROM documents GROUP BY fault, layer")}, dict(self.planted))  # fmt: skip


if __name__ == "__main__":
    skips.main()
