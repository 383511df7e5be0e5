#!/usr/bin/env python3
"""Does what README, host guide and the page for the people who are recorded tell a reader to do, as it stands there: saves the programs, types
the commands, one after the other in one shell, in a home of its own with the folders and the
preference file of a host.

    pages_test.py BUILD_FOLDER
"""
import datetime
import os
import pathlib
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
project = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(project / "tests/tools"))
import skips

build = pathlib.Path(sys.argv.pop()).resolve()
with_objc = (build / "objc/WENLOLIB.bundle").exists()
support = "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
saved_as = {"c": "host.c", "cpp": "host.cpp", "objc": "host.m"}


def steps(page):
    """A shell script of what the page says: programs saved, commands typed."""
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", (project / page).read_text(),
                        re.DOTALL | re.MULTILINE)
    script = ["set -euo pipefail", f"cd '{project}'"]
    for language, text in blocks:
        if language == "cmake" and "find_package" in text:
            language, file = "", "CMakeLists.txt"
        else:
            file = "receiver.cpp" if "Receiver.h" in text else saved_as.get(language)
        if not with_objc and (language == "objc" or "gnustep" in text):
            continue
        if file:
            script += ['cd "$WORK"', f"cat > {file} <<'END OF FILE'\n{text}END OF FILE"]
        elif language == "sh":
            script.append(text)
    return "\n".join(script)


class Pages(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name) / "home"
        self.work = pathlib.Path(folder.name) / "work"
        self.work.mkdir()
        self.home.mkdir()
        shutil.rmtree(project / "build/prefix", ignore_errors=True)

    def follow(self, page):
        run = subprocess.run(["bash", "-c", steps(page)], capture_output=True, text=True,
                             env={"HOME": str(self.home), "WORK": str(self.work),
                                  "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8"})
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        return run.stdout.splitlines()

    def recorded(self):
        return sorted(path.name.split("_")[0] for path in (self.home / support).glob("?LM/*"))

    def tell_what_was_left_out(self):
        if not with_objc:
            self.skipTest("the hosts in Objective-C: built without GNUstep")

    def call(self, line):
        """The exit status of one of the calls that README names, with real files for its words."""
        document = sorted((self.home / support).glob("PLM/*"))[0]
        words = {"FOLDER": self.home, "FILE": document, "A": document, "B": document,
                 "FILE.html": self.work / "page.html"}
        command, *arguments = (str(words.get(word, word)) for word in line.split())
        if arguments[0] == "forget":
            arguments.append("--yes")  # there is no terminal to answer on
        return subprocess.run([project / "build/prefix/bin" / command, *arguments],
                              env={"HOME": str(self.home)}, capture_output=True).returncode

    def test_readme(self):
        lines = self.follow("README.md")
        self.assertEqual(lines.count("recorded"), 3 if with_objc else 2, lines)
        self.assertEqual(self.recorded(),
                         ["QX200", "QX200", "Quillmere"] if with_objc else ["QX200", "Quillmere"])
        calls = re.findall(r"`(wenlolib [a-z][^`]*)`", (project / "README.md").read_text())
        self.assertGreater(len(calls), 8)
        for line in calls:
            if "SUBCOMMAND" not in line:
                self.assertEqual(self.call(line), 0, line)
        self.tell_what_was_left_out()

    def test_what_is_recorded(self):
        """Types the commands that are set off from the text, as if each were answered with yes."""
        page = (project / "docs/what-is-recorded.md").read_text()
        calls = re.findall(r"^(?:    )?(wenlolib .*)$", page, re.MULTILINE)
        self.assertEqual({line.split()[1] for line in calls},
                         {"path", "list", "report", "forget", "explain", "doctor"})
        script = ["set -euo pipefail", f"cd '{self.work}'", f"PATH='{build / 'tools'}':$PATH",
                  "wenlolib init --sample-preferences --agree",
                  "echo jobs=1 | wenlolib record printer --name QX200 --sn QX200-0004711 -"]
        script += [line + (" --yes" if " forget " in line else "") for line in calls]
        run = subprocess.run(["bash", "-c", "\n".join(script)], capture_output=True, text=True,
                             env={"HOME": str(self.home), "PATH": os.environ["PATH"]})
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertEqual(self.recorded(), [])
        self.assertTrue((self.work / "recorded.html").exists())

    def test_host_guide(self):
        for name in ("ALM", "PLM", "Config"):
            (self.home / support / name).mkdir(parents=True)
        preferences = self.home / support / "Config/com.orvan.printing.Quillmere.Pref.plist"
        preferences.write_bytes(plistlib.dumps(
            {"InstalledDate": datetime.datetime.now(), "LatestSelectedAgreement": True}))
        lines = self.follow("docs/host-guide.md")
        self.assertEqual(lines.count("recorded"), 2 if with_objc else 1, lines)
        self.assertEqual(lines.count("usage: 1, printer log: 1"), 2, lines)
        self.tell_what_was_left_out()


skips.main()
