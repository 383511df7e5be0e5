#!/usr/bin/env python3
"""Does what README, host guide, the page for the people who are recorded and the page for receivers
tell a reader to do, as it stands there: saves the programs, types the commands, one after the other
in one shell, in a home of its own with the folders and the preference file of a host.

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
from postgresql import postgresql

build = pathlib.Path(sys.argv.pop()).resolve()
with_objc = (build / "objc/WENLOLIB.bundle").exists()
support = "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
saved_as = {"c": "host.c", "cpp": "host.cpp", "objc": "host.m"}


def blocks_of(page):
    """(language, text) of what is set off on a page."""
    return re.findall(r"^```(\w*)\n(.*?)^```$", (project / page).read_text(),
                      re.DOTALL | re.MULTILINE)


def steps(page):
    """A shell script of what the page says: programs saved, commands typed."""
    blocks = blocks_of(page)
    script = ["set -euo pipefail", f"cd '{project}'"]
    for language, text in blocks:
        if language == "cmake" and "find_package" in text:
            language, file = "", "CMakeLists.txt"
        else:
            receivers = {"Receiver.h": "receiver.cpp", "receiver_c.h": "receiver.c",
                         "import wenlolib": "receiver.py"}
            file = next((name for word, name in receivers.items() if word in text),
                        saved_as.get(language))
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
                 "FILE.html": self.work / "page.html", "fleet.db": self.work / "fleet.db"}
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

    def test_receiving(self):
        """Types the commands of the page in an empty folder, those for programs that are there."""
        self.work.parent.chmod(0o755)
        (self.work / "prefix/share").mkdir(parents=True)
        (self.work / "prefix/share/wenlolib").symlink_to(project / "tools/schema")
        with postgresql(self.work.parent / "server") as server:
            missing = [] if server else ["psql"]
            separate = ["scheduler.json"]  # dask_test.py runs these
            missing += [] if shutil.which("sqlite3") else ["sqlite3"]
            script = ["set -euo pipefail", f"cd '{self.work}'", f"PATH='{build / 'tools'}':$PATH"]
            script += [text for language, text in blocks_of("docs/receiving.md")
                       if language == "sh" and not any(word in text for word in missing + separate)]
            run = subprocess.run(["bash", "-c", "\n".join(script)], capture_output=True, text=True,
                                 env={"HOME": str(self.home), "PATH": os.environ["PATH"],
                                      "PREFIX": str(self.work / "prefix"), **(server or {})})
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertIn("fleet.db: 5 documents, 5 new; 0 unchanged files not read again\n"
                      "fleet.db: 5 documents, 0 new; 1 unchanged file not read again\n", run.stdout)
        for name in ("rows.jsonl", "day.jsonl", "redacted.jsonl"):
            self.assertEqual(len((self.work / name).read_text().splitlines()), 5, name)
        self.assertEqual((self.work / "rows.csv").read_bytes().count(b"\r\n"), 6)
        if "sqlite3" not in missing:
            self.assertIn("segments/2026-11-22T14.tar.gz|./QX200_4.PLM|truncated|xml\n", run.stdout)
        if server:
            self.assertIn("INSERT 0 5\n", run.stdout)
        if missing:
            self.skipTest("without " + " and ".join(missing))

    def test_host_guide(self):
        for name in ("ALM", "PLM", "Config"):
            (self.home / support / name).mkdir(parents=True)
        preferences = self.home / support / "Config/com.orvan.printing.Quillmere.Pref.plist"
        preferences.write_bytes(plistlib.dumps(
            {"InstalledDate": datetime.datetime.now(), "LatestSelectedAgreement": True}))
        lines = self.follow("docs/host-guide.md")
        self.assertEqual(lines.count("recorded"), 2 if with_objc else 1, lines)
        self.assertEqual(lines.count("usage: 1, printer log: 1"), 2, lines)
        self.assertEqual(sum(line.startswith("sha256=") for line in lines), len(self.recorded()))
        self.assertEqual(sum(line.startswith("none ") for line in lines), len(self.recorded()))
        self.assertEqual(sum(line.startswith("contents: ") for line in lines), 1)
        self.tell_what_was_left_out()


skips.main()
