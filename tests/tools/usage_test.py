#!/usr/bin/env python3
"""Tests of the help, of what is said about wrong command lines, and of what every subcommand takes.
Argument: the path of the wenlolib command."""

import os
import subprocess
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)

import skips
from documentation_test import CALLS, WITH_KINDS
from tool_world import ToolTest, tree


class Usage(ToolTest):
    def test_help_of_a_call_is_its_own(self):
        for call in ["", *CALLS, *WITH_KINDS]:
            asked = self.expect(0, *call.split(), "--help").stdout.decode()
            self.assertEqual(self.expect(0, "help", *call.split()).stdout.decode(), asked, call)

    def test_help_of_something_else_is_a_usage_error(self):
        for word, call in [("verfy: no such subcommand. Did you mean verify?", ["verfy"]),
                           ("nonsense: no such subcommand\n", ["nonsense"]),
                           ("ap: no such subcommand. Did you mean app?", ["record", "ap"]),
                           ("more: no such subcommand", ["verify", "more"]),
                           ("--json: no such option here", ["--json"])]:
            self.expect_usage_error(word, "help", *call)

    def test_the_version_has_a_short_option(self):
        told = self.expect(0, "--version").stdout
        self.assertTrue(told.startswith(b"wenlolib "), told)
        self.assertEqual(self.expect(0, "-V").stdout, told)

    def test_help_and_version_that_cannot_be_written_are_told(self):
        for call in ["--version", "--help", "help", "help verify", "verify --help"]:
            with open("/dev/full", "wb") as full:
                finished = subprocess.run(self.arguments(call.split()), stdout=full, timeout=60,
                                          stderr=subprocess.PIPE, cwd=self.outside,
                                          env=self.environment)
            self.assertEqual((finished.returncode, finished.stderr),
                             (3, b"wenlolib: standard output: No space left on device\n"), call)

    def said(self, *call):
        """The two lines about a wrong command line."""
        finished = self.expect(2, *call)
        self.assertEqual(finished.stdout, b"")
        lines = finished.stderr.decode().splitlines()
        self.assertEqual(len(lines), 2, lines)
        return [line.removeprefix("wenlolib: ") for line in lines]

    def test_what_is_wrong_is_said_plainly_with_the_calls_own_help(self):
        for expected, helps, call in [
                ("verfy: no such subcommand. Did you mean verify?", "", "verfy ."),
                ("frobnicate: no such subcommand", "", "frobnicate"),
                ("--jsn: no such option here. Did you mean --json?", " verify", "verify --jsn ."),
                ("--jsn: no such option here. Did you mean --json?", " verify", "verify --jsn"),
                ("--rot=/: no such option here. Did you mean --root?", " doctor", "doctor --rot=/"),
                ("--verson: no such option here. Did you mean --version?", "", "--verson"),
                ("--nonsense: no such option here", " init", "init --nonsense"),
                ("--nmae: no such option here. Did you mean --name?", " record app",
                 "record app --nmae A -"),
                ("PATH is required", " verify", "verify"),
                ("B is required", " diff", "diff a"),
                ("--name is required", " record printer", "record printer -"),
                ("--name needs a value: TEXT", " record app", "record app --name"),
                ("--jobs: 0 is not a number from 1 to 256", " decode", "decode . --jobs 0"),
                ("--jobs: x is not a number from 1 to 256", " decode", "decode . -j x"),
                ("explain: name the kind of record, app or printer", " explain", "explain"),
                ("ap: not a kind of record; give app or printer. Did you mean app?", " explain", "explain ap"),
                ("more: one argument too many", " explain app", "explain app more"),
                ("--clean takes no value", " doctor", "doctor --clean=maybe"),
                ("--clean takes no value", " doctor", "doctor --clean=true"),
                ("--keep takes no value", " record app", "record app --keep=false --name=A=B -"),
                ("--exit-zero takes no value", " path", "path --exit-zero=1"),
                ("--json takes no value", " list", "list --json="),
                ("--force can be used only with --agree", " init", "init --force"),
                ("--root: /none is not a folder", " init", "init --root /none"),
                ("--color: sometimes is not auto, always or never", " init", "init --color sometimes"),
                ("--option: -1 is not an option word; give a decimal number from 0 to 4294967295",
                 " explain app", "explain app --option -1"),
                ("--option: 0x11 is not an option word; give a decimal number from 0 to 4294967295",
                 " preview printer", "preview printer --name A --option 0x11"),
                ("--os: ten is not an OS version: give two or three numbers, such as 10.17.0, or "
                 "unknown", " explain printer", "explain printer --os ten")]:
            self.assertEqual(self.said(*call.split()),
                             [expected, f"Try wenlolib{helps} --help."], call)

    def test_an_option_that_is_given_twice_is_told(self):
        self.assertEqual(self.said("record", "app", "--name", "A", "--name", "B")[0],
                         "--name can be given only once")

    def test_exit_zero_hides_what_is_not_good_and_nothing_else(self):
        self.install(agreement=False)
        broken = self.write("/broken.ALM", b"broken")
        before = tree(self.root)
        for call in [["explain", "app"], ["verify", broken], ["decode", broken],
                     ["record", "app", "--name", "A"]]:
            refused = self.expect(1, *call)
            for order in [["--exit-zero", *call], [*call, "--exit-zero"]]:
                finished = self.expect(0, *order)
                self.assertEqual(finished.stderr.split(b"found")[0],
                                 refused.stderr.split(b"found")[0])
        self.expect(2, "--exit-zero", "explain", "appp")
        self.expect(3, "--exit-zero", "verify", "/none")
        self.assertEqual(tree(self.root), before)


if __name__ == "__main__":
    ToolTest.command = os.path.abspath(sys.argv.pop())
    skips.main()
