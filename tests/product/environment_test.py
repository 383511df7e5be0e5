#!/usr/bin/env python3
"""Runs the host in C with every variable set that one of the built-in libraries might read. Nothing
may be printed, and the documents must be the same.

    environment_test.py HOST SHARED_OBJECT
"""

import os
import re
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "verifier"))

from host_documents import sound_documents
from plugin_world import PluginWorld

CONFIGURATION = b"""<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>WENLIBUUID</key>
<string>{0F8FAD5B-D9CB-469F-A165-70867728950E}</string></dict></plist>"""
KNOWN = ["EXPAT_ACCOUNTING_DEBUG", "EXPAT_ENTITY_DEBUG", "EXPAT_ENTROPY_DEBUG",
         "EXPAT_MALLOC_DEBUG", "NETTLE_FAT_VERBOSE", "NETTLE_FAT_OVERRIDE"]

host = ""
shared_object = ""


def variables():
    """The known variables, and everything in the shared object that looks like another one."""
    with open(shared_object, "rb") as file:
        found = re.findall(rb"\b(?:EXPAT|NETTLE|MBEDTLS|UUID)_[A-Z_]{4,}", file.read())
    return sorted(set(KNOWN) | {name.decode() for name in found})


class Environment(unittest.TestCase):
    def values_under(self, value):
        """What the documents say, except for their dates, with this value in every variable."""
        environment = {} if value is None else dict.fromkeys(variables(), value)
        with tempfile.TemporaryDirectory() as home:
            world = PluginWorld(home)
            world.write("Config/com.orvan.printing.WENLOLIB.Conf.plist", CONFIGURATION)
            finished = world.run(host, shared_object, variables=environment)
            self.assertEqual(finished.stderr.decode(), "")
            self.assertEqual(finished.stdout.decode(), "")
            self.assertEqual(finished.returncode, 0)
            documents = sound_documents(world)
        return {name: (document.marker, document.contents,
                       {key: text for key, text in document.values.items() if key != "Date"})
                for name, document in documents.items()}

    def test_no_variable_changes_or_prints_anything(self):
        expected = self.values_under(None)
        for value in ["", "0", "1", "2", "3", "none", "vendor:intel,aesni,sha_ni"]:
            with self.subTest(value):
                self.assertEqual(self.values_under(value), expected)


if __name__ == "__main__":
    shared_object = sys.argv.pop()
    host = sys.argv.pop()
    unittest.main()
