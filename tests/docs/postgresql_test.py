#!/usr/bin/env python3
"""Loads rows into PostgreSQL as the page for receivers says. Argument: the command's path."""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
project = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(project / "tests/tools"))
import rows_test
import skips
from postgresql import postgresql
from rows_corpus import COLUMNS

rows_test.COMMAND = os.path.abspath(sys.argv.pop())
TYPES = {int: "bigint", bool: "boolean", str: "text"}
LOAD = "\\copy documents FROM rows.csv (FORMAT csv, HEADER match)"  # the page's, but straight into the table


class PostgreSQL(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.folder.chmod(0o755)
        server = postgresql(self.folder / "server")
        self.server = server.__enter__()
        self.addCleanup(server.__exit__, None, None, None)
        if not self.server:
            self.skipTest("there is no PostgreSQL server (postgresql)")
        self.psql("-f", project / "tools/schema/rows-1.sql")

    def psql(self, *arguments):
        run = subprocess.run(["psql", "-v", "ON_ERROR_STOP=1", "-q", "-A", "-t", *arguments],
                             cwd=self.folder, env={**os.environ, **self.server}, capture_output=True,
                             text=True)
        self.assertEqual(run.returncode, 0, run.stderr)
        return run.stdout

    def load(self, *paths):
        with open(self.folder / "rows.csv", "wb") as rows:
            rows_test.run("rows", "--csv", *paths, stdout=rows)
        self.psql("-c", LOAD)
        answer = self.psql("-c", "SELECT row_to_json(d) FROM documents d")
        return [json.loads(line) for line in answer.splitlines()]  # in no order

    def check_types(self):
        answer = self.psql("-c", "SELECT column_name, data_type FROM information_schema.columns "
                                 "WHERE table_name = 'documents' ORDER BY ordinal_position")
        self.assertEqual([tuple(line.split("|")) for line in answer.splitlines()],
                         [(name, TYPES[kind]) for name, kind in COLUMNS.items()])

    def test_the_page_has_this_load(self):
        self.assertIn(LOAD.replace("documents", "arrived"),
                      (project / "docs/receiving.md").read_text())

    def test_rows_are_those_worked_out_without_the_library(self):
        golden = rows_test.GoldenTest
        golden.setUpClass()
        self.addCleanup(golden.doClassCleanups)
        rows = self.load(golden.golden)
        self.assertGreater(len(rows), 1000)
        self.assertEqual(sorted(rows_test.without_place(rows), key=json.dumps),
                         sorted(golden.expected, key=json.dumps))
        self.check_types()

    def test_a_batch_in_which_all_are_broken(self):
        for number in range(5):
            (self.folder / f"{number}_1.PLM").write_bytes(b"<" * number)
        rows = self.load(*(self.folder / f"{number}_1.PLM" for number in range(5)))
        self.assertEqual(sorted(row["bytes"] for row in rows), list(range(5)))
        self.assertEqual({row["trusted"] for row in rows}, {False})
        self.check_types()


skips.main()
