#!/usr/bin/env python3
"""Holds the rows that the C functions give to those worked out without the library.

    rows_in_c_test.py PROGRAM COMMAND
"""
import os
import pathlib
import subprocess
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tools"))
import rows_test
import skips
from rows_corpus import COLUMNS

rows_test.COMMAND = os.path.abspath(sys.argv.pop())
program = os.path.abspath(sys.argv.pop())
KINDS = {"i": int, "t": bool, "x": str}


def value_of(word, kind):
    if word == "n":
        return None
    assert KINDS[word[0]] is kind, word
    if kind is str:
        return bytes.fromhex(word[1:]).decode()
    assert kind is int or word in ("t0", "t1"), word
    return kind(int(word[1:]))


class RowsInC(rows_test.GoldenTest):
    def rows_in_c(self, *paths):
        run = subprocess.run([program, *paths], capture_output=True, text=True, timeout=300)
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        names, *lines = [line.split() for line in run.stdout.splitlines()]
        self.assertEqual(names, list(COLUMNS))
        return [{name: value_of(word, COLUMNS[name]) for name, word in zip(names, line, strict=True)}
                for line in lines]

    def test_files_in_folders(self):
        self.check(self.rows_in_c(self.golden))

    def test_an_archive(self):
        tar = self.write("golden.tar", rows_test.tar_of([(file.path, file.data) for file in self.files]))
        rows = self.rows_in_c(tar)
        self.assertEqual(rows_test.without_place(rows), self.expected)
        self.assertEqual({row["source"] for row in rows}, {os.fsdecode(tar)})


def load_tests(loader, _, __):
    return unittest.TestSuite(RowsInC(name) for name in ("test_files_in_folders", "test_an_archive"))


skips.main()
