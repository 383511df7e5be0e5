#!/usr/bin/env python3
"""Does what the page for receivers says about many machines, with the program given there: a
scheduler and three workers in processes of their own, one of which is killed while it reads.

    dask_test.py FOLDER_OF_THE_PYTHON_PACKAGE COMMAND
"""
import collections
import contextlib
import glob
import hashlib
import importlib.util
import io
import json
import os
import pathlib
import re
import signal
import sqlite3
import subprocess
import sys
import tarfile
import tempfile
import time
import unittest

sys.dont_write_bytecode = True
project = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(project / "tests/tools"))
import rows_test
import skips
from rows_corpus import COLUMNS
from survey_documents import printer_document

command = os.path.abspath(sys.argv.pop())
package = os.path.abspath(sys.argv.pop())
rows_test.COMMAND = command
TARS, DOCUMENTS, COPIES = 20, 10000, 25
SECONDS = 240
# How many documents of the first tar are not sound. Each further tar has one more of each kind.
PLANTED = {"truncated": 101, "damaged": 67, "altered": 45, "foreign": 23, "repaired": 89}


def blocks(language):
    section = (project / "docs/receiving.md").read_text().split("\n## Many machines\n", 1)[1]
    return re.findall(rf"^```{language}\n(.*?)^```$", section.split("\n## ", 1)[0],
                      re.DOTALL | re.MULTILINE)


def document(number, fault):
    """A document that has this fault; no other number gives the same bytes."""
    rom = f"{number} & <b" if fault == "repaired" else "2.14"
    sound = printer_document(f"2026-11-{1 + number % 28:02}T10:00:00+09:00", f"jobs={number}", rom=rom)
    if fault == "truncated":
        return sound[:-20]
    if fault == "damaged":
        return sound + b"\n"
    if fault == "altered":
        return sound.replace(b">2.14<", b">2.15<")
    if fault == "foreign":
        return b"<html>%d</html>" % number
    if fault == "repaired":  # the sum is that of the text before it was escaped
        plain = sound.replace(b"&amp; &lt;b", b"& <b")
        body = plain[plain.index(b">") + 1 : plain.rindex(b"</")]
        digest = hashlib.md5(body).hexdigest().upper().encode()
        return re.sub(rb'SUM="\w+"', b'SUM="%s"' % digest, sound, count=1)
    return sound


def plant(folder):
    """Writes the segments. Gives back how many different documents have each fault."""
    planted = collections.Counter()
    first = []
    for tar in range(TARS):
        faults = [fault for fault, count in PLANTED.items() for _ in range(count + tar)]
        faults += ["none"] * (DOCUMENTS - len(faults))
        made = io.BytesIO()
        for position, fault in enumerate(faults):
            data = document(tar * DOCUMENTS + position * 7919 % DOCUMENTS, fault)
            append(made, position, data)
            planted[fault] += 1
            if tar == 0 and position % 400 == 0:
                first.append(data)
        if tar % 4 == 3:  # these documents came twice, with other names
            for position, data in enumerate(first):
                append(made, DOCUMENTS + position, data)
        made.write(bytes(1024))
        (folder / f"2026-11-{tar + 1:02}.tar").write_bytes(made.getvalue())
    (folder / "2026-12-01.tar").write_bytes(b"\x1f\x8b")
    (folder / "2026-12-02.tar.part").write_bytes(made.getvalue())
    assert len(first) == COPIES
    return {**planted, "unreadable": 1}


def append(made, number, data):
    entry = tarfile.TarInfo(f"{number % 500:03}/QX200_{number}.PLM")
    entry.size = len(data)
    made.write(entry.tobuf(tarfile.USTAR_FORMAT) + data + bytes(-len(data) % 512))


def processes_with(path):
    """The processes that have this file open."""
    found = set()
    for name in glob.glob("/proc/[0-9]*/fd/*"):
        with contextlib.suppress(OSError):
            if os.readlink(name) == str(path):
                found.add(int(name.split("/")[2]))
    return found


@unittest.skipUnless(importlib.util.find_spec("distributed"),
                     "there is no Dask Distributed (python3-distributed)")
class ManyMachines(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.shared = pathlib.Path(folder.name).resolve() / "shared"
        self.home = self.shared.parent / "home"
        self.segments = self.shared / "segments"
        for made in (self.home, self.segments, self.shared / "prefix/share"):
            made.mkdir(parents=True)
        (self.shared / "prefix/share/wenlolib").symlink_to(project / "tools/schema")
        (self.program,) = blocks("python")
        self.scheduler, self.worker, self.reading = blocks("sh")
        (self.shared / "fleet.py").write_text(self.program)
        self.machines = []

    def environment(self):
        return {"HOME": str(self.home), "TMPDIR": str(self.home), "LC_ALL": "C.UTF-8",
                "PATH": "/usr/bin:/bin",  # another python3 need not have Dask
                "PYTHONPATH": package, "PYTHONDONTWRITEBYTECODE": "1",
                "PREFIX": str(self.shared / "prefix"), "ADDRESS": "127.0.0.1", "WORKERS": "1"}

    def start(self, script):
        """Runs a call of the page in a session of its own, as if on another machine."""
        log = open(self.home / f"log{len(self.machines)}", "wb")
        with log:
            machine = subprocess.Popen(
                ["setpriv", "--pdeathsig", "KILL", "bash", "-ec", "exec " + script],
                cwd=self.shared, env=self.environment(), stdin=subprocess.DEVNULL, stdout=log,
                stderr=log, start_new_session=True)
        self.machines.append(machine)
        self.addCleanup(self.kill, machine)
        return machine

    def kill(self, machine):
        with contextlib.suppress(ProcessLookupError):
            os.killpg(machine.pid, signal.SIGKILL)
        machine.wait()

    def logs(self):
        return "\n".join(path.read_text() for path in sorted(self.home.glob("log*")))

    def start_machines(self):
        self.start(self.scheduler)
        workers = [self.start(self.worker) for _ in range(3)]
        self.wait_until(lambda: self.logs().count("Registered to:") == 3, "three workers")
        return workers

    def wait_until(self, done, what):
        end = time.monotonic() + SECONDS
        while time.monotonic() < end:
            if answer := done():
                return answer
            time.sleep(0.01)
        self.fail(f"still waiting for {what} after {SECONDS} seconds:\n{self.logs()}")

    def finish(self, reading):
        """What the program printed: the counts of each database, and those of all."""
        try:
            status = reading.wait(timeout=SECONDS)
        except subprocess.TimeoutExpired:
            status = "it did not end"
        self.assertEqual(status, 0, self.logs())
        printed = (self.home / f"log{self.machines.index(reading)}").read_text()
        told = dict(re.findall(r"^(\S+) (\{.*\})$", printed, re.MULTILINE))
        told = {name: json.loads(counts.replace("'", '"')) for name, counts in told.items()}
        return told, told.pop("all")

    def databases(self):
        return sorted((self.shared / "databases").iterdir())

    def rows_of(self, database):
        with contextlib.closing(sqlite3.connect(f"file:{database}?mode=ro", uri=True)) as connection:
            cursor = connection.execute("SELECT * FROM documents ORDER BY rowid")
            self.assertEqual([column[0] for column in cursor.description], list(COLUMNS))
            return cursor.fetchall()

    def kill_one_at_work(self, workers):
        """Kills a machine that has written some, but not all, of a database."""
        groups = {machine.pid: machine for machine in workers}

        def owner():
            for partial in (self.shared / "databases").glob("*.part"):
                with contextlib.suppress(FileNotFoundError):
                    if partial.stat().st_size > 4 << 20:
                        for process in processes_with(partial):
                            return groups[os.getpgid(process)], partial

        machine, partial = self.wait_until(owner, "database that grows")
        self.kill(machine)
        self.assertTrue(partial.exists())  # it was not complete, so it has not got its final name
        database = partial.with_name(partial.name.split(".db.")[0] + ".db")
        self.assertFalse(database.exists())
        return database.name

    def test_a_worker_is_killed_and_the_counts_are_right(self):
        begin = time.monotonic()
        planted = plant(self.segments)
        made = time.monotonic()
        workers = self.start_machines()
        reading = self.start(self.reading)
        lost = self.kill_one_at_work(workers)
        killed = time.monotonic()
        told, total = self.finish(reading)
        print(f"{made - begin:.1f} s to make the segments, {killed - made:.1f} s until the kill, "
              f"{time.monotonic() - killed:.1f} s to the end", file=sys.stderr)

        self.assertEqual(total, planted)
        self.assertEqual(sum(planted.values()), TARS * DOCUMENTS + 1)
        self.assertEqual([path.name for path in self.databases()], sorted(told))
        self.assertEqual(len(told), 6)
        self.assertIn(lost, told)
        digests, unreadable = {}, 0
        for database in self.databases():
            with contextlib.closing(sqlite3.connect(database)) as connection:
                found = connection.execute("SELECT sha256, fault FROM documents").fetchall()
            self.assertEqual(collections.Counter(fault for _, fault in found), told[database.name])
            unreadable += sum(digest is None for digest, _ in found)
            digests.update(row for row in found if row[0])
        self.assertEqual({**collections.Counter(digests.values()), "unreadable": unreadable}, planted)
        # Copies in the same database as the originals were left out at once.
        self.assertEqual(sum(sum(faults.values()) for faults in told.values()),
                         sum(planted.values()) + 4 * COPIES)

    def test_the_rows_are_those_worked_out_without_the_library(self):
        golden = rows_test.GoldenTest
        golden.setUpClass()
        self.addCleanup(golden.doClassCleanups)
        self.assertGreater(len(golden.files), 1000)
        documents = list(zip(golden.files, golden.expected, strict=True))
        parts = [documents[i::5] for i in range(5)]
        for number, part in enumerate(parts):
            data = rows_test.tar_of([(file.path, file.data) for file, _ in part])
            (self.segments / f"{number}.tar").write_bytes(data)
        self.start_machines()
        first = self.finish(self.start(self.reading))
        self.check(parts)
        self.assertEqual(self.finish(self.start(self.reading)), first)  # once more changes nothing
        self.check(parts)

    def check(self, parts):
        self.assertEqual([path.name for path in self.databases()], ["0.tar.db", "4.tar.db"])
        for database, some in zip(self.databases(), (parts[:4], parts[4:])):
            expected = {}
            for part in some:
                for _, row in part:
                    expected.setdefault(row["sha256"], row)
            rows = [dict(zip(COLUMNS, values)) for values in self.rows_of(database)]
            self.assertEqual(rows_test.without_place(rows), list(expected.values()))
            for row in rows:
                self.assertEqual(pathlib.Path(row["source"]).parent, self.segments)


skips.main()
