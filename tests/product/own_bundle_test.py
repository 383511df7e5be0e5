#!/usr/bin/env python3
"""Runs the host in C against copies of the plug-in whose Info.plist is spoilt. The library's own
version is then unknown, and everything else works.

    own_bundle_test.py HOST SHARED_OBJECT
"""

import os
import plistlib
import shutil
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "verifier"))

from plugin_world import CONTENTS, PluginWorld
from verify_document import verify

host = ""
shared_object = ""


def rewrite(path, data):
    with open(path, "wb") as file:
        file.write(data)


def truncate(path):
    os.truncate(path, os.path.getsize(path) // 2)


def make_pipe(path):
    os.remove(path)
    os.mkfifo(path)


def make_folder(path):
    os.remove(path)
    os.mkdir(path)


def make_sparse(path):
    os.truncate(path, 1 << 30)


def make_rootless(path):
    rewrite(path, plistlib.dumps(["CFBundleShortVersionString", "1.0.0"]))


def make_number(path):
    rewrite(path, plistlib.dumps({"CFBundleShortVersionString": 1.5}))


def leave(_):
    pass


class OwnBundle(unittest.TestCase):
    def version_after(self, spoil):
        """The version in a document written by a plug-in with a spoilt Info.plist."""
        with tempfile.TemporaryDirectory() as folder:
            bundle = os.path.join(folder, "WENLOLIB.bundle")
            original = os.path.dirname(os.path.dirname(os.path.dirname(shared_object)))
            shutil.copytree(original, bundle, symlinks=True)
            spoil(os.path.join(bundle, "Contents", "Info.plist"))
            home = os.path.join(folder, "home")
            os.mkdir(home)
            world = PluginWorld(home)
            copy = os.path.join(bundle, os.path.relpath(shared_object, original))
            finished = world.run(host, copy)  # records, and expects true each time
            self.assertEqual((finished.returncode, finished.stdout, finished.stderr), (0, b"", b""))
            verify(world.read("PLM/Host_1.PLM"), "printer", CONTENTS)
            verify(world.read("PLM/Host_2.PLM"), "printer-older", CONTENTS)
            document = verify(world.read(world.application_file()), "application", CONTENTS)
            return document.values["Version"]

    def test_left_as_it_is_it_has_the_version(self):
        self.assertEqual(self.version_after(leave), b"1.0")

    def test_spoilt_it_leaves_the_version_unknown(self):
        for spoil in [truncate, make_pipe, make_folder, make_sparse, os.remove, make_rootless,
                      make_number]:
            with self.subTest(spoil.__name__):
                self.assertEqual(self.version_after(spoil), b"")


if __name__ == "__main__":
    shared_object = os.path.realpath(sys.argv.pop())
    host = sys.argv.pop()
    unittest.main()
