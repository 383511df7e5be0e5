#!/usr/bin/env python3
"""Runs the host in C against the plug-in in a HOME of its own and verifies what it recorded.

    plugin_host_test.py HOST SHARED_OBJECT
"""

import os
import plistlib
import re
import stat
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "verifier"))

from plugin_world import CONTENTS, PluginWorld
from verify_document import verify

host = ""
shared_object = ""


class PluginHost(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.world = PluginWorld(folder.name)
        cls.finished = cls.world.run(host, shared_object)

    def path(self, name):
        return self.world.path(name)

    def document(self, name, layout, contents=CONTENTS):
        self.assertEqual(stat.S_IMODE(os.stat(self.path(name)).st_mode), 0o666, name)
        document = verify(self.world.read(name), layout, contents)
        self.assertEqual(document.marker, "R")
        self.assertRegex(document.values["OSVersion"], rb"^M\.\d+\.\d+\.\d+$")
        self.assertEqual(document.values["Locale"], b"zh_Hans")
        self.assertRegex(document.values["Date"], rb"\+05:45$")
        self.assertEqual(document.values["ID"].decode(), self.identifier())
        return document

    def identifier(self):
        configuration = self.world.read("Config/com.orvan.printing.WENLOLIB.Conf.plist")
        return plistlib.loads(configuration)["WENLIBUUID"]

    def test_the_host_finds_everything_as_it_should_and_the_plugin_prints_nothing(self):
        self.assertEqual(self.finished.stderr.decode(), "")
        self.assertEqual(self.finished.stdout.decode(), "")
        self.assertEqual(self.finished.returncode, 0)

    def test_application_usage(self):
        name = self.world.application_file()
        self.assertTrue(re.fullmatch(r"ALM/Quillmere_Log_Host_\d{4}\.ALM", name), name)
        document = self.document(name, "application")
        self.assertEqual(document.values["Version"], b"1.0")

    def test_printer_log_of_the_new_tag_type(self):
        self.document("PLM/Host_1.PLM", "printer")

    def test_printer_log_of_the_older_tag_type(self):
        document = self.document("PLM/Host_2.PLM", "printer-older")
        self.assertEqual(document.values["DeviceID"], b"QX 200")
        self.assertEqual(document.values["SN"], b"4711")
        self.assertEqual(document.values["ROMVER"], b"2.14")

    def test_printer_log_without_identity(self):
        document = self.document("PLM/Host_3.PLM", "printer-older", b"")
        self.assertEqual(document.values["DeviceID"], b"")

    def test_printer_log_of_an_identity_beyond_ascii(self):
        document = self.document("PLM/Host_4.PLM", "printer-older")
        self.assertEqual(document.values["DeviceID"], "Größe &amp; &#233;".encode())

    def test_nothing_else_is_left(self):
        self.assertEqual(sorted(os.listdir(self.path("PLM"))),
                         [f"Host_{number}.PLM" for number in range(1, 5)])
        self.assertEqual(len(os.listdir(self.path("Config"))), 2)
        self.assertEqual(sorted(os.listdir(self.world.support)), ["ALM", "Config", "PLM"])

    def test_the_identifier_has_its_form(self):
        self.assertRegex(self.identifier(), r"^\{[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB]"
                                            r"[0-9A-F]{3}-[0-9A-F]{12}\}$")


class SmallStack(unittest.TestCase):
    STACK = 32 << 10

    def recorded(self, write):
        """The entries of the configuration file after a host has recorded on a small stack."""
        name = "Config/com.orvan.printing.WENLOLIB.Conf.plist"
        with tempfile.TemporaryDirectory() as folder:
            world = PluginWorld(folder)
            write(lambda data: world.write(name, data))
            finished = world.run(host, shared_object, more=[str(self.STACK)])
            self.assertEqual((finished.returncode, finished.stderr), (0, b""))
            return plistlib.loads(world.read(name))

    def test_is_enough_to_record(self):
        self.assertEqual(list(self.recorded(lambda write: None)), ["WENLIBUUID"])

    def test_is_enough_with_arrays_inside_each_other(self):
        sys.setrecursionlimit(10000)  # plistlib writes nested arrays by recursion
        entries = {"other": "kept", "deep": []}
        for _ in range(510):
            entries["deep"] = [entries["deep"]]
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            left = self.recorded(lambda write: write(plistlib.dumps(entries, fmt=form)))
            self.assertEqual(len(left.pop("WENLIBUUID")), 38)
            self.assertEqual(plistlib.dumps(left), plistlib.dumps(entries))


if __name__ == "__main__":
    shared_object = sys.argv.pop()
    host = sys.argv.pop()
    unittest.main()
