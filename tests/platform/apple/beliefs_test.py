#!/usr/bin/env python3
"""Every function that stands in for one of Apple's says how what it does is known: "Seen: TEST."
names a test that passes on Apple's own Core Foundation (see scripts/check-corefoundation),
"Assumed: WHAT." a line of the list in docs/macos.md."""
import pathlib
import re
import unittest

project = pathlib.Path(__file__).resolve().parents[3]
stubs = project / "tests/apple_stubs"
MARK = re.compile(r"(Seen|Assumed): ([^.]+(?:\.\w+)?)\.")
ONLY_ON_STUBS = {"RefusalTest.cpp", "AppleFilesTest.cpp", "FoundationTest.cpp"}


def declared():
    """The functions in the stub headers, and those that Objective-C provides."""
    names = set()
    for header in list((stubs / "headers").rglob("*.h")) + [
            stubs / "linux/CommonCrypto/CommonDigest.h",
            project / "src/platform/apple/Foundation.h"]:
        if header.parent.name != "Foundation":
            names |= set(re.findall(r"^[A-Za-z\[].*?[ *](\w+)\(", header.read_text(), re.MULTILINE))
    return names - {"stubConstantString"}


def marks():
    """(function, comment above it) of each definition."""
    for path in sorted(stubs.glob("bodies/*.cpp")):
        for comment, name in re.findall(r"((?:^//.*\n)*)^[A-Za-z].*?[ *](\w+)\([^;]*?\) \{$",
                                        path.read_text(), re.MULTILINE):
            yield name, MARK.findall(comment)


class Beliefs(unittest.TestCase):
    def test_each_function_is_marked(self):
        found = dict(marks())
        names = declared()
        self.assertGreater(len(names), 30)
        self.assertEqual({name for name in names if not found.get(name)}, set())

    def test_what_was_seen_is_tested_on_core_foundation(self):
        tests = set()
        for folder in ("tests/platform/apple", "tests/corefoundation"):
            for path in (project / folder).glob("*Test.cpp"):
                if path.name not in ONLY_ON_STUBS:
                    tests |= {f"{suite}.{name}" for suite, name in
                              re.findall(r"TEST(?:_F)?\((\w+), (\w+)\)", path.read_text())}
        seen = {what for _, found in marks() for kind, what in found if kind == "Seen"}
        self.assertGreater(len(seen), 10)
        self.assertEqual(seen - tests, set())

    def test_what_is_assumed_is_listed(self):
        page = (project / "docs/macos.md").read_text()
        listed = set(re.findall(r"^\| ([^|]+?) \| assumed \|", page, re.MULTILINE))
        text = "".join(path.read_text() for path in stubs.rglob("*") if path.suffix in (".h", ".cpp"))
        assumed = {what for kind, what in MARK.findall(text) if kind == "Assumed"}
        self.assertGreater(len(assumed), 8)
        self.assertEqual(assumed, listed)


if __name__ == "__main__":
    unittest.main()
