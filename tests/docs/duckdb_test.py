#!/usr/bin/env python3
"""Loads rows into DuckDB as the page for receivers says, and asks its question.
DuckDB is fetched once, into $WENLOLIB_CACHE/duckdb, or build/duckdb without that variable.

    duckdb_test.py COMMAND
"""
import fcntl
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
project = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(project / "tests/tools"))
import rows_test
import skips
from rows_corpus import COLUMNS
from survey_documents import printer_document

VERSION = "1.5.6-r.1"
TYPES = {int: "BIGINT", bool: "BOOLEAN", str: "VARCHAR"}
rows_test.COMMAND = os.path.abspath(sys.argv.pop())
table = (project / "tools/schema/rows-1.sql").read_text()
section = (project / "docs/receiving.md").read_text().split("\n## DuckDB\n", 1)[1].split("\n## ", 1)[0]
load_json, load_csv, question = re.findall(r"^```sql\n(.*?)^```$", section, re.DOTALL | re.MULTILINE)


def modules():
    """The folder of Node's modules with DuckDB, which has another name until it is complete."""
    kept = pathlib.Path(os.environ.get("WENLOLIB_CACHE") or project / "build") / "duckdb"
    for program in ("node", "npm"):
        if not shutil.which(program):
            raise unittest.SkipTest(f"there is no {program} to run DuckDB with")
    kept.mkdir(parents=True, exist_ok=True)
    complete, partial = kept / VERSION, kept / "partial"
    with open(kept / "lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not complete.exists():
            shutil.rmtree(partial, ignore_errors=True)
            fetch = subprocess.run(
                ["npm", "install", "--prefix", partial, "--no-audit", "--no-fund", "--ignore-scripts",
                 "--loglevel=error", "--no-update-notifier", "--fetch-retries=1",
                 f"@duckdb/node-api@{VERSION}"], capture_output=True, text=True, timeout=600)
            if fetch.returncode:
                shutil.rmtree(partial, ignore_errors=True)
                why = re.search(r"code (\w+)", fetch.stderr)
                raise unittest.SkipTest(f"npm cannot fetch DuckDB: {why[1] if why else fetch.returncode}")
            partial.rename(complete)
    return complete / "node_modules"


def as_json(query):
    """The query, with its rows as JSON: Node's DuckDB would drop U+FEFF from the start of a text."""
    return f"SELECT to_json(answer) AS row FROM ({query.rstrip().rstrip(';')}) answer"


class DuckDB(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.modules = modules()
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        golden = rows_test.GoldenTest
        golden.setUpClass()
        cls.addClassCleanup(golden.doClassCleanups)
        (cls.folder / "broken").mkdir()
        broken = [file for file, row in zip(golden.files, golden.expected, strict=True)
                  if row["layout"] is None]
        for number, file in enumerate(broken):
            (cls.folder / f"broken/{number:04}.PLM").write_bytes(file.data)
        cls.sources = {"golden": [golden.golden], "broken": sorted((cls.folder / "broken").iterdir())}
        cls.expected = {}
        for batch, paths in cls.sources.items():
            cls.expected[batch] = rows_test.rows_in(rows_test.run("rows", *paths).stdout)
        assert rows_test.without_place(cls.expected["golden"]) == golden.expected
        assert len(cls.expected["broken"]) > 20

    def ask(self, batch, *statements):
        """What DuckDB answers to each statement, in a folder with the rows of this batch."""
        for name, options in {"rows.jsonl": [], "rows.csv": ["--csv"]}.items():
            with open(self.folder / name, "wb") as rows:
                rows_test.run("rows", *options, *self.sources[batch], stdout=rows)
        return self.run_sql(*statements)

    def run_sql(self, *statements):
        names = []
        for number, statement in enumerate(statements):
            names.append(f"{number}.sql")
            (self.folder / names[-1]).write_text(statement)
        run = self.node(*names)
        self.assertEqual(run.returncode, 0, run.stderr)
        answers = [json.loads(line) for line in run.stdout.splitlines()]
        self.assertEqual(len(answers), len(statements))
        return [[json.loads(row["row"]) for row in answer if "row" in row] for answer in answers]

    def node(self, *names):
        return subprocess.run(["node", project / "tests/docs/duckdb.mjs", self.modules, *names],
                              cwd=self.folder, capture_output=True, text=True, timeout=300)

    def check(self, batch, load):
        *_, described, rows = self.ask(batch, table, load, as_json("DESCRIBE documents"),
                                       as_json("FROM documents"))
        self.assertEqual({column["column_name"]: column["column_type"] for column in described},
                         {name: TYPES[kind] for name, kind in COLUMNS.items()})
        self.assertEqual(len(rows), len(self.expected[batch]))
        for row, expected in zip(rows, self.expected[batch], strict=True):
            self.assertEqual(list(row.items()), list(expected.items()))

    def test_json_gives_the_same_types_and_values_for_every_batch(self):
        for batch in self.sources:
            with self.subTest(batch):
                self.check(batch, load_json)

    def test_csv_gives_the_same_types_and_values_for_every_batch(self):
        for batch in self.sources:
            with self.subTest(batch):
                self.check(batch, load_csv)

    def test_guessed_types_differ_from_batch_to_batch(self):
        guess = as_json("DESCRIBE FROM read_json_auto('rows.jsonl')")
        self.assertNotEqual(self.ask("golden", guess), self.ask("broken", guess))

    def test_columns_of_a_later_version_are_passed_over(self):
        row = self.expected["golden"][0]
        (self.folder / "rows.jsonl").write_text(json.dumps({"later": [1], **row}) + "\n")
        *_, (loaded,) = self.run_sql(table, load_json, as_json("FROM documents"))
        self.assertEqual((list(loaded), loaded["sha256"]), (list(COLUMNS), row["sha256"]))

    def test_csv_takes_a_row_that_is_too_large_for_json(self):
        large = self.folder / "large_1.PLM"
        large.write_bytes(printer_document("2026-11-02T10:00:00+09:00", "", device="x" * (40 << 20)))
        self.addCleanup(large.unlink)
        self.sources = {"large": [large]}
        *_, (answer,) = self.ask("large", table, load_csv,
                                 as_json("SELECT length(device_id) AS size FROM documents"))
        self.assertEqual(answer, {"size": 40 << 20})
        (self.folder / "json.sql").write_text(load_json)
        failed = self.node("0.sql", "json.sql")
        self.assertEqual(failed.returncode, 1)
        self.assertIn("maximum_object_size", failed.stderr)

    def test_the_question(self):
        *_, answer = self.ask("golden", table, load_json, load_csv, as_json(question))
        seen = {}
        for row in self.expected["golden"]:
            if row["trusted"] and row["sn"]:
                month = row["date_utc"] and row["date_utc"][:7]
                printers, digests = seen.setdefault((month, row["romver"]), (set(), set()))
                printers.add(row["sn"])
                digests.add(row["sha256"])
        self.assertGreater(len(seen), 10)
        self.assertEqual({(row["month"], row["romver"]): (row["printers"], row["documents"])
                          for row in answer},
                         {key: (len(printers), len(digests)) for key, (printers, digests) in seen.items()})


skips.main()
