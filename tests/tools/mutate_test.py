#!/usr/bin/env python3
"""Tests of scripts/mutate, on a tiny project."""

import contextlib
import importlib.machinery
import importlib.util
import io
import os
import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is

import skips

SCRIPT = str(pathlib.Path(__file__).resolve().parents[2] / "scripts/mutate")
LOADER = importlib.machinery.SourceFileLoader("mutate", SCRIPT)
mutate = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", LOADER))
LOADER.exec_module(mutate)

FILES = {
    "CMakeLists.txt": """cmake_minimum_required(VERSION 3.20)
project(sample CXX)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY tests)
add_executable(sample_tests sample.cpp test.cpp)
""",
    "sample.cpp": """#include <cstdio>
bool isAdult(int age) {
  std::fputs("1 < 2", stderr);  // 3 < 4, and no test reads it
  std::fputs("asked", stderr);
  return age >= 18;
}
int halved(int number) {
  while (number > 8) number /= 2;
  return number;
}
int& first(int* numbers) {
  return numbers[0];
}
""",
    "test.cpp": """bool isAdult(int age);
int halved(int number);
int& first(int* numbers);
int main() {
  int numbers[] = {1, 2};
  const bool isHalved = halved(24) == 6 && halved(8) == 8 && halved(9) == 4;
  return isAdult(18) && !isAdult(17) && isHalved && first(numbers) == 1 ? 0 : 1;
}
""",
}
CODE = FILES["sample.cpp"]


def change(old, new, begin=0):
    start = CODE.index(old, begin)
    return ("sample.cpp", (start, start + len(old), new))


class Mutate(unittest.TestCase):
    def test_lists_the_change_that_no_test_notices_and_no_other(self):
        with tempfile.TemporaryDirectory() as folder, contextlib.redirect_stdout(
                io.StringIO()) as output:
            source = pathlib.Path(folder, "source")
            source.mkdir()
            for name, text in FILES.items():
                (source / name).write_text(text)
            copy = mutate.Copy(source, FILES, pathlib.Path(folder), lambda _: ["sample_tests"], 2)
            outcomes = mutate.mutate(copy, ["sample.cpp"], 1000, 1)
            for root in [source, copy.project]:
                for name, text in FILES.items():
                    self.assertEqual((root / name).read_text(), text)
        self.assertEqual(outcomes["unnoticed"], [change('  std::fputs("asked", stderr);', ";")])
        early = CODE.index("  return numbers")
        self.assertEqual(outcomes["did not compile"],
                         [("sample.cpp", (early, early, "  return {};\n"))])
        self.assertIn(change(" >= ", " > "), outcomes["noticed"])
        self.assertIn(change("2", "1", CODE.index("/=")), outcomes["noticed"])  # never ends
        tried = sum(map(len, outcomes.values()))
        self.assertEqual(
            output.getvalue(),
            'sample.cpp:4: no test notices this\n  - std::fputs("asked", stderr);\n  + ;\n'
            f"{tried} of {tried} changes tried: {tried - 2} noticed, 1 did not compile, "
            "1 unnoticed\n")

    def test_changes_nothing_in_texts_comments_and_lines_of_the_preprocessor(self):
        self.assertEqual(list(mutate.changes('#if 1 < 2\nf("1 == 2", \'1\');  // 1 + 1\n')), [])

    def test_knows_each_kind_of_change(self):
        for old, new in [("  if (a) return b;\n", "  if (!(a)) return b;\n"),
                         ("  a.call(b);\n", ";\n"), ("a && b", "a || b"), ("a - b", "a + b"),
                         ("return 0x10U;", "return 17U;"), ("return 0x10U;", "return 15U;"),
                         ("void f() {\n}", "void f() {\n  return;\n}"),
                         ("int f() {\n}", "int f() {\n  return {};\n}")]:
            made = [old[:start] + text + old[end:] for start, end, text in mutate.changes(old)]
            self.assertIn(new, made)

    def test_every_file_of_the_code_has_its_tests(self):
        self.assertEqual(mutate.tests_of("src/platform/posix/WholeFile.cpp"),
                         ["apple_tests", "port_tests"])
        self.assertEqual(mutate.tests_of("tools/calls/main.cpp")[0], "tool_tests")
        with self.assertRaisesRegex(SystemExit, "no known tests cover"):
            mutate.tests_of("bench/bench.cpp")


if __name__ == "__main__":
    sys.argv.pop()  # the command wenlolib, which is not needed here
    skips.main()
