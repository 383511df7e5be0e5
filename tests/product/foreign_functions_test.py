#!/usr/bin/env python3
"""Runs a host whose functions have the same names as functions of the library, or of a library
built into it. None of the host's functions may be called.

    foreign_functions_test.py [ARGUMENT...] HOST

The arguments are the host's, before the file of contents.
"""

import os
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "verifier"))

from host_documents import sound_documents
from plugin_world import PluginWorld

command = []


class ForeignFunctions(unittest.TestCase):
    def records_with(self, encoding):
        with tempfile.TemporaryDirectory() as home:
            world = PluginWorld(home)
            world.write_preferences(encoding)
            finished = world.run(*command)
            self.assertEqual(finished.stderr.decode(), "")
            self.assertEqual(finished.stdout.decode(), "")
            self.assertEqual(finished.returncode, 0)
            documents = sound_documents(world)
            self.assertEqual(documents["usage"].values["Locale"], b"zh_Hans")
            self.assertEqual(documents["usage"].values["Version"], b"1.0")

    def test_every_kind_of_record_is_sound(self):
        self.records_with("UTF-8")

    def test_preferences_that_need_the_whole_parser_are_read(self):
        self.records_with("UTF-16")


if __name__ == "__main__":
    command = [sys.argv.pop()] + sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
