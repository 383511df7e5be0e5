#!/usr/bin/env python3
"""Runs hosts with two copies of the plug-in, one of them changed to another version. Each must
answer with its own version, and write it in its records.

    plugin_copies_test.py HOST LINKED_HOST SHARED_OBJECT
"""

import os
import plistlib
import shutil
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "verifier"))

from plugin_world import PluginWorld
from verify_document import verify

host = ""
linked_host = ""
shared_object = ""


def information_of(bundle):
    with open(os.path.join(bundle, "Contents", "Info.plist"), "rb") as file:
        return plistlib.load(file)


def original_bundle():
    return os.path.dirname(os.path.dirname(os.path.dirname(shared_object)))


def own_version():
    return information_of(original_bundle())["CFBundleShortVersionString"]


def copy_of_version(folder, version):
    """A copy of the bundle in `folder`, changed to another version of the same length."""
    original = original_bundle()
    bundle = os.path.join(folder, "WENLOLIB.bundle")
    shutil.copytree(original, bundle, symlinks=True)
    information = os.path.join(bundle, "Contents", "Info.plist")
    entries = information_of(bundle)
    own = own_version()
    assert len(own) == len(version)
    with open(information, "wb") as file:
        plistlib.dump({**entries, "CFBundleShortVersionString": version,
                       "CFBundleVersion": version}, file)
    path = os.path.join(bundle, os.path.relpath(shared_object, original))
    with open(path, "rb") as file:
        code = file.read()
    assert own.encode() + b"\0" in code
    with open(path, "wb") as file:
        file.write(code.replace(own.encode() + b"\0", version.encode() + b"\0"))
    return path


class PluginCopies(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.copy = copy_of_version(folder.name, "9.8.7")

    def records(self, program, scope, pairs):
        with tempfile.TemporaryDirectory() as home:
            world = PluginWorld(home)
            words = [word for pair in pairs for word in pair]
            finished = world.launch(program, scope, *words)
            self.assertEqual(finished.stderr.decode(), "")
            self.assertEqual(finished.returncode, 0)
            versions = {}
            for name in os.listdir(world.path("ALM")):
                document = verify(world.read("ALM/" + name), "application", b"contents")
                versions[name.split("_")[2]] = document.values["Version"].decode()
        short = [version.rsplit(".", 1)[0] for _, version in pairs]
        self.assertEqual(versions,
                         {"First": short[0], "Second": short[1], "Remaining": short[1]})

    def in_both_orders(self, program):
        own, other = (shared_object, own_version()), (self.copy, "9.8.7")
        for scope in ["local", "global"]:
            for pairs in [(own, other), (other, own)]:
                with self.subTest(scope=scope, first=pairs[0][1]):
                    self.records(program, scope, pairs)

    def test_both_loaded_by_a_host(self):
        self.in_both_orders(host)

    def test_one_of_them_linked(self):
        self.in_both_orders(linked_host)


if __name__ == "__main__":
    shared_object = os.path.realpath(sys.argv.pop())
    linked_host = sys.argv.pop()
    host = sys.argv.pop()
    unittest.main()
