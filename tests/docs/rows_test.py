#!/usr/bin/env python3
"""Holds what `wenlolib rows` and `wenlolib collect` write to what is said about it: the JSON Schema,
the table in SQL and the columns in `man 5 wenlolib`. Argument: the command's path."""
import csv
import io
import json
import pathlib
import re
import sqlite3
import subprocess
import sys
import tempfile
import unittest

import jsonschema

sys.dont_write_bytecode = True
project = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(project / "tests/tools"))
import skips
from survey_documents import printer_document

DATE = "2024-03-15T09:05:07+09:00"
command = sys.argv.pop()
schema = json.loads((project / "tools/schema/rows-1.json").read_text())
table = (project / "tools/schema/rows-1.sql").read_text()


def documents(folder):
    """A document in each state; those that come last cannot be read."""
    sound = printer_document(DATE, "jobs=212")
    for name, data in {
            "sound_1.PLM": sound,
            "Quillmere_Log_Album_2403.ALM": (project / "examples/documents/application-rc4.ALM")
                                            .read_bytes(),
            "not-text_1.PLM": printer_document(DATE, "a\0b"),
            "undated_1.PLM": printer_document("", "jobs=212"),
            "year_1.PLM": printer_document("0000-01-01T00:00:00+23:59", "jobs=212"),
            "altered_1.PLM": sound.replace(b"2.14", b"2.15"),
            "damaged_1.PLM": sound.replace(b"2.14", b"2.\xff").replace(b"MFG", b"M\0G"),
            "truncated_1.PLM": sound[:200],
            "foreign_1.PLM": b"<html></html>"}.items():
        (folder / name).write_bytes(data)
    (folder / "gone_1.PLM").symlink_to(folder / "nowhere")
    (folder / "broken.tar").write_bytes(b"\x1f\x8b")


def columns_on_the_man_page():
    """(name, type), in order."""
    page = (project / "tools/man/wenlolib.5").read_text()
    rows = page.split(".Ss Rows\n", 1)[1].split("\n.El\n", 1)[0]
    return [(name, kind) for names, kind in re.findall(r"^\.It (.*) Pq (\w+)$", rows, re.MULTILINE)
            for name in names.split(" , ")]


class Rows(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "in").mkdir()
        documents(self.folder / "in")

    def run_in_folder(self, *arguments):
        run = subprocess.run([command, *arguments], cwd=self.folder, capture_output=True)
        self.assertEqual(run.returncode, 3, run.stderr)
        return run.stdout.decode()

    def rows(self, *options):
        return [json.loads(line)
                for line in self.run_in_folder("rows", "in", *options).splitlines()]

    def test_every_row_follows_the_schema(self):
        closed = {**schema, "additionalProperties": False}
        self.assertEqual(closed["required"], list(closed["properties"]))
        jsonschema.Draft202012Validator.check_schema(closed)
        rows = self.rows() + self.rows("--redact")
        self.assertEqual({row["fault"] for row in rows},
                         set(schema["properties"]["fault"]["enum"]) - {"repaired"})
        for row in rows:
            jsonschema.Draft202012Validator(closed).validate(row)

    def test_schema_table_and_man_page_have_the_columns_of_a_row(self):
        found = list(self.rows()[0])
        self.assertEqual(list(schema["properties"]), found)
        self.assertEqual([name for name, _ in columns_on_the_man_page()], found)
        with sqlite3.connect(":memory:") as database:
            database.executescript(table)
            described = database.execute("PRAGMA table_info(documents)").fetchall()
        self.assertEqual([column[1] for column in described], found)
        types = {"BIGINT": "integer", "BOOLEAN": "truth", "TEXT": "text"}
        self.assertEqual([(column[1], types[column[2]]) for column in described],
                         columns_on_the_man_page())

    def test_csv_and_the_table_hold_the_same_as_json(self):
        def told(value):
            if isinstance(value, bool):
                return "true" if value else "false"
            return "" if value is None else str(value)

        text = self.run_in_folder("rows", "--csv", "in")
        heading, *records = csv.reader(io.StringIO(text, newline=""))
        rows = self.rows()
        self.assertEqual(heading, list(rows[0]))
        self.assertEqual(records, [[told(value) for value in row.values()] for row in rows])
        with sqlite3.connect(":memory:") as database:
            database.executescript(table)
            marks = ",".join("?" * len(heading))
            database.executemany(f"INSERT INTO documents VALUES ({marks})",
                                 [list(row.values()) for row in rows])
            kept = database.execute("SELECT * FROM documents").fetchall()
        self.assertEqual(kept, [tuple(row.values()) for row in rows])

    def test_the_database_has_the_columns_marks_and_views_of_the_man_page(self):
        self.run_in_folder("collect", "in", "--into", "fleet.db")
        page = (project / "tools/man/wenlolib.5").read_text()
        section = page.split(".Ss Database of collect\n", 1)[1].split("\n.Sh ", 1)[0]
        with sqlite3.connect(self.folder / "fleet.db") as database:
            def value(sql):
                return database.execute(sql).fetchone()[0]

            self.assertIn(f"the application_id {value('PRAGMA application_id')} and the "
                          f"user_version {value('PRAGMA user_version')}.", section)
            names = [name for name, in database.execute(
                "SELECT name FROM sqlite_schema WHERE type IN ('table', 'view') ORDER BY 1")]
            self.assertEqual(names, sorted(re.findall(r"^\.It (\w+)$", section, re.MULTILINE)))
            for name in names:
                about = section.split(f".It {name}\n", 1)[1].split("\n.It ", 1)[0]
                told = re.findall(r"^\.Ql (\w+)", about.split("\n.El\n", 1)[0], re.MULTILINE)
                found = [column[0] for column in
                         database.execute(f"SELECT * FROM {name}").description]
                self.assertEqual(found, list(self.rows()[0]) if name == "documents" else told)
            queries = re.search(r"\.Bd .*?\n(.*?)\.Ed", section, re.DOTALL)[1].split(";")[:-1]
            self.assertEqual(len(queries), 2)
            for query in queries:
                self.assertTrue(database.execute(query).fetchall(), query)


skips.main()
