"""A shortage while a host uses the library, the C++ library and local time for the first time. The
record fails, the host goes on, and its later records are right.

  shortage_test.py SHORTAGE_HOST SHARED_OBJECT
"""

import os
import subprocess
import sys
import tempfile
import unittest

from plugin_world import PluginWorld

# A zone file for a zone five hours east of GMT, in the system's format.
ZONE = (b"TZif" + bytes(16) + bytes(20 - 1) + b"\x01" + b"\0\0\0\x04" + (18000).to_bytes(4, "big") +
        b"\0\0" + b"XST\0")


class ShortageTest(unittest.TestCase):
    def told(self, shortage):
        with tempfile.TemporaryDirectory() as home:
            world = PluginWorld(home)
            zone = os.path.join(home, "zone")
            world.write(zone, ZONE)
            result = subprocess.run([HOST, LIBRARY, shortage], capture_output=True, timeout=60,
                                    env={"HOME": home, "TZ": ":" + zone})
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            document = world.read(world.application_file())
            return result.stdout.split(), document

    def test_no_descriptors(self):
        answers, document = self.told("descriptors")
        self.assertEqual(answers, [b"0", b"1", b"18000"])
        self.assertIn(b"+05:00</Date>", document)

    def test_no_memory(self):
        answers, document = self.told("memory")
        self.assertEqual(answers, [b"0", b"1", b"18000"])
        self.assertIn(b"+05:00</Date>", document)


if __name__ == "__main__":
    LIBRARY, HOST = sys.argv.pop(), sys.argv.pop()
    unittest.main()
