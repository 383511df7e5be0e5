#!/usr/bin/env python3
"""Builds the hosts in C, C++ and Objective-C that stand in the documentation, and runs them in a home
where they may record.

    examples_test.py BUILD_FOLDER
"""
import datetime
import os
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile
import unittest

project = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(project / "tests/tools"))

import skips

build = pathlib.Path(sys.argv.pop()).resolve()
plugin = build / "WENLOLIB.bundle/Contents/Linux/WENLOLIB"
objc_bundle = build / "objc/WENLOLIB.bundle"
support = "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"


class Examples(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = pathlib.Path(folder.name)
        os.symlink(plugin, self.work / "libWENLOLIB.so.1")
        for name in ("ALM", "PLM", "Config"):
            (self.work / support / name).mkdir(parents=True)
        preferences = self.work / support / "Config/com.orvan.printing.Quillmere.Pref.plist"
        preferences.write_bytes(plistlib.dumps(
            {"InstalledDate": datetime.datetime.now(), "LatestSelectedAgreement": True}))

    def built(self, page, language, *command):
        """The program in the first block of this language on a page."""
        source = re.search(rf"```{language}\n(.*?)```", (project / page).read_text(), re.DOTALL)[1]
        file = self.work / ("host.m" if language == "objc" else f"host.{language}")
        file.write_text(source)
        program = self.work / "host"
        libraries = {"c": ["-ldl"], "cpp": [plugin], "objc": ["-lgnustep-base", "-lobjc"]}[language]
        subprocess.run([*command, "-Wall", "-Wextra", "-Werror", "-I", project / "include", file,
                        "-o", program, *libraries], check=True)
        return program

    def recorded_by(self, program, *arguments):
        environment = {"HOME": str(self.work), "LD_LIBRARY_PATH": str(self.work),
                       "PATH": os.environ["PATH"]}
        run = subprocess.run([program, *arguments], env=environment, capture_output=True, text=True)
        self.assertEqual((run.returncode, run.stderr), (0, ""), run.stdout)
        return sorted(path.name for path in (self.work / support).glob("?LM/*"))

    def test_hosts_in_c(self):
        for page in ("README.md", "docs/host-guide.md"):
            program = self.built(page, "c", "cc", "-std=c11")
            self.assertTrue(self.recorded_by(program, plugin), page)

    def test_hosts_in_cpp(self):
        for page in ("README.md", "docs/host-guide.md"):
            program = self.built(page, "cpp", "c++", "-std=c++20")
            self.assertTrue(self.recorded_by(program), page)

    @unittest.skipUnless(objc_bundle.exists(), "built without GNUstep")
    def test_host_in_objective_c(self):
        program = self.built("docs/host-guide.md", "objc", "gcc", "-x", "objective-c",
                             "-fobjc-exceptions", "-fconstant-string-class=NSConstantString",
                             "-D_NATIVE_OBJC_EXCEPTIONS", "-isystem", "/usr/include/GNUstep")
        self.assertTrue(self.recorded_by(program, objc_bundle))


skips.main()
