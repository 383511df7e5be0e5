#!/usr/bin/env python3
"""Tests of how `wenlolib doctor` examines the plug-in. Argument: the path of the wenlolib command, in
a build folder with the plug-in."""

import os
import plistlib
import shutil
import subprocess
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)

import skips
from json_schema import objects_in
from tool_world import ToolTest

INSIDE = "Contents/Linux/WENLOLIB"
INFORMATION = "Contents/Info.plist"

CRASHES = """#include <stdlib.h>
__attribute__((constructor)) static void crash(void) { abort(); }
"""
PRINTS = """#include <stdio.h>
#include <unistd.h>
const char* WENLOLIB_version(void) { puts("stray"); fflush(stdout); return "9.9.9"; }
"""
ENDS = """#include <unistd.h>
__attribute__((constructor)) static void end(void) { _exit(0); }
"""
WAITS = """#include <unistd.h>
__attribute__((constructor)) static void wait(void) { for (;;) pause(); }
"""


class Plugin(ToolTest):
    def setUp(self):
        super().setUp()
        self.built = os.path.join(os.path.dirname(self.command), "..", "WENLOLIB.bundle")
        self.built = os.path.normpath(self.built)
        if not os.path.exists(os.path.join(self.built, INSIDE)):
            self.skipTest("the plug-in is not built")
        self.install()

    def findings(self, status, *call):
        """(level, message) of each finding on the plug-in, by check."""
        finished = self.expect(status, "doctor", "--json", *call)
        self.assertEqual(finished.stderr, b"")
        found = objects_in(finished.stdout)
        return {one["check"]: (one["level"], one["message"]) for one in found
                if one["check"].startswith("plugin")}

    def copy(self, replacements=()):
        """A copy of the built bundle with other bytes in its shared object."""
        bundle = os.path.join(self.root, "WENLOLIB.bundle")
        shutil.rmtree(bundle, ignore_errors=True)
        shutil.copytree(self.built, bundle)
        path = os.path.join(bundle, INSIDE)
        with open(path, "rb") as file:
            data = file.read()
        for old, new in replacements:
            self.assertIn(old, data)
            data = data.replace(old, new)
        with open(path, "wb") as file:
            file.write(data)
        return bundle

    def compiled(self, source):
        if shutil.which("cc") is None:
            self.skipTest("no C compiler")
        path = os.path.join(self.root, "plugin.so")
        subprocess.run(["cc", "-shared", "-fPIC", "-x", "c", "-", "-o", path], check=True,
                       input=source.encode())
        return path

    def version(self):
        with open(os.path.join(self.built, INFORMATION), "rb") as file:
            return plistlib.load(file)["CFBundleVersion"]

    def test_the_plugin_of_this_build_is_found_and_healthy(self):
        version = self.version()
        self.assertEqual(self.findings(0), {
            "plugin": ("ok", f"version {version}, loads"),
            "plugin_information": ("ok", f"version {version}"),
            "plugin_version": ("ok", f"both {version}")})
        text = self.expect(0, "doctor").stdout.decode()
        self.assertIn(os.path.join(self.built, INSIDE), text)

    def test_a_bundle_and_its_shared_object_are_the_same(self):
        bundle = self.copy()
        self.assertEqual(self.findings(0, "--plugin", bundle),
                         self.findings(0, "--plugin", os.path.join(bundle, INSIDE)))

    def test_a_plugin_that_is_missing_is_an_error(self):
        self.assertEqual(self.findings(1, "--plugin", self.root + "/none"),
                         {"plugin": ("error", "there is nothing at this path")})
        self.assertIn(b"Name a bundle", self.expect(1, "doctor", "--plugin", "none").stdout)
        self.assertEqual(self.findings(1, "--plugin", self.root)["plugin"], ("error", "missing"))

    def test_without_an_installation_there_is_nothing_to_examine(self):
        alone = os.path.join(self.root, "wenlolib")
        shutil.copy(self.command, alone)
        os.chmod(alone, 0o755)
        finished = subprocess.run([alone, "--root", self.root, "doctor"], capture_output=True,
                                  text=True, env=self.environment, cwd=self.outside)
        self.assertEqual(finished.returncode, 0, finished.stdout)
        self.assertIn("none is installed with this command", finished.stdout)

    def test_an_information_file_of_another_version_is_an_error(self):
        bundle = self.copy()
        path = os.path.join(bundle, INFORMATION)
        for key in ["CFBundleShortVersionString", "CFBundleVersion"]:
            with open(os.path.join(self.built, INFORMATION), "rb") as file:
                information = plistlib.load(file)
            information[key] = "0.9.9"
            with open(path, "wb") as file:
                plistlib.dump(information, file)
            level, message = self.findings(1, "--plugin", bundle)["plugin_information"]
            self.assertEqual(level, "error")
            self.assertIn(f"{key} {'is ' if 'Short' in key else ''}0.9.9", message)
        os.remove(path)
        self.assertEqual(self.findings(1, "--plugin", bundle)["plugin_information"],
                         ("error", "missing, so records have no version"))

    def test_a_plugin_of_another_version_than_the_command_is_a_warning(self):
        version = self.version()
        bundle = self.copy([(version.encode() + b"\0", b"9" * len(version) + b"\0")])
        other = "9" * len(version)
        self.write("/" + os.path.relpath(os.path.join(bundle, INFORMATION), self.root),
                   {"CFBundleShortVersionString": other, "CFBundleVersion": other})
        self.assertEqual(self.findings(0, "--plugin", bundle)["plugin_version"],
                         ("warning", f"the plug-in is {other}, this command {version}"))

    def test_missing_libraries_are_named(self):
        bundle = self.copy([(b"\0libstdc++.so.6\0", b"\0libabsent.so.6\0"),
                            (b"\0libgcc_s.so.1\0", b"\0libgone.so.11\0")])
        level, message = self.findings(1, "--plugin", bundle)["plugin"]
        self.assertEqual(level, "error")
        self.assertTrue(message.startswith("cannot be loaded: the system does not find "), message)
        self.assertIn("libabsent.so.6", message)
        self.assertIn("libgone.so.11", message)

    def test_what_is_not_a_plugin_is_told(self):
        foreign = self.write("/plugin.so", b"not a library")
        level, message = self.findings(1, "--plugin", foreign)["plugin"]
        self.assertEqual(level, "error")
        self.assertIn("cannot be used: ", message)
        self.assertIn("it has no function WENLOLIB_version",
                      self.findings(1, "--plugin", self.compiled("int one;"))["plugin"][1])

    def test_a_plugin_that_crashes_or_ends_harms_nothing_but_itself(self):
        self.assertIn("it crashed: Aborted",
                      self.findings(1, "--plugin", self.compiled(CRASHES))["plugin"][1])
        self.assertIn("it ended the process",
                      self.findings(1, "--plugin", self.compiled(ENDS))["plugin"][1])

    def test_a_plugin_that_never_answers_is_given_up(self):
        self.assertIn("it did not answer in time",
                      self.findings(1, "--plugin", self.compiled(WAITS))["plugin"][1])

    def test_what_a_plugin_prints_is_not_shown(self):
        finished = self.expect(1, "doctor", "--plugin", self.compiled(PRINTS))
        self.assertNotIn(b"stray", finished.stdout + finished.stderr)
        self.assertIn(b"9.9.9", finished.stdout)


if __name__ == "__main__":
    ToolTest.command = os.path.abspath(sys.argv.pop())
    skips.main()
