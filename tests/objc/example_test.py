#!/usr/bin/env python3
"""Runs the example host in Objective-C in a HOME of its own and verifies what it recorded.

    example_test.py HOST BUNDLE EXAMPLES [WENLOLIB]

If the command WENLOLIB is given, it must accept the documents too."""

import datetime
import os
import plistlib
import stat
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
for folder in ["verifier", "tools"]:
    sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", folder))

import skips
from verify_document import verify

SUPPORT = "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
host = bundle = examples = ""
wenlolib = None


def read(*parts):
    with open(os.path.join(*parts), "rb") as file:
        return file.read()


class ExampleHost(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.support = os.path.join(folder.name, SUPPORT)
        for name in ["PLM", "ALM", "Config"]:
            os.makedirs(os.path.join(cls.support, name))
        today = datetime.date.today().isoformat()
        preferences = read(examples, "preferences.plist").replace(b"@TODAY@", today.encode())
        with open(os.path.join(cls.support, "Config/com.orvan.printing.Quillmere.Pref.plist"),
                  "wb") as file:
            file.write(preferences)
        cls.usage, cls.log = (os.path.join(examples, "data", name)
                              for name in ["application-usage.txt", "printer-log.txt"])
        cls.finished = subprocess.run([host, bundle, cls.usage, cls.log], capture_output=True,
                                      env={**os.environ, "HOME": folder.name}, umask=0o077)

    def path(self, name):
        return os.path.join(self.support, name)

    def document(self, name, layout, contents):
        self.assertEqual(stat.S_IMODE(os.stat(self.path(name)).st_mode), 0o666, name)
        document = verify(read(self.path(name)), layout, read(contents))
        self.assertEqual(document.values["Locale"], b"en_US")
        self.assertEqual(document.values["ID"].decode(),
                         plistlib.loads(read(self.path(
                             "Config/com.orvan.printing.WENLOLIB.Conf.plist")))["WENLIBUUID"])
        return document

    def documents(self):
        month, = os.listdir(self.path("ALM"))
        return ["ALM/" + month, "PLM/QX500_1.PLM", "PLM/QX200_1.PLM"]

    def test_the_host_records_all_three_and_complains_of_nothing(self):
        self.assertEqual(self.finished.stderr.decode(), "")
        self.assertEqual(self.finished.stdout.decode().count(" recorded\n"), 3)
        self.assertEqual(self.finished.returncode, 0)

    def test_the_documents_are_sound_and_hold_the_contents(self):
        usage, newer, older = self.documents()
        document = self.document(usage, "application", self.usage)
        self.assertEqual(document.values["Version"], b"1.0")
        self.document(newer, "printer", self.log)
        document = self.document(older, "printer-older", self.log)
        self.assertEqual(document.values["SN"], b"QX200-0004711")

    def test_nothing_else_is_left(self):
        self.assertEqual(sorted(os.listdir(self.path("PLM"))), ["QX200_1.PLM", "QX500_1.PLM"])
        self.assertEqual(len(os.listdir(self.path("Config"))), 2)

    def test_the_command_accepts_the_documents(self):
        if wenlolib is None:
            self.skipTest("the command wenlolib is not built")
        finished = subprocess.run([wenlolib, "verify", *map(self.path, self.documents())],
                                  capture_output=True)
        self.assertEqual(finished.returncode, 0, finished.stdout + finished.stderr)
        damaged = self.path("damaged")
        with open(damaged, "wb") as file:
            file.write(read(self.path(self.documents()[0])).replace(b"<Locale>en", b"<Locale>de"))
        finished = subprocess.run([wenlolib, "verify", damaged], capture_output=True)
        os.remove(damaged)
        self.assertNotEqual(finished.returncode, 0)


if __name__ == "__main__":
    host, bundle, examples = sys.argv[1:4]
    wenlolib = sys.argv[4] if len(sys.argv) > 4 else None
    skips.main(argv=sys.argv[:1])
