"""What the torture's stages share with the program that runs them."""

import collections
import os
import pathlib
import sys
import tempfile

Row = collections.namedtuple("Row", "what count wrong")


class Campaign:
    """One run of the torture. `build` is the build folder; `long` is true for the long form and
    false for the short one."""

    def __init__(self, build, long):
        self.build = pathlib.Path(build).resolve()
        self.long = long
        self.scratch = None
        self.skipped = []

    def scratch_folder(self):
        """A temporary folder, in memory if possible, since thousands of files are made and
        removed."""
        memory = "/dev/shm"
        usable = os.access(memory, os.W_OK | os.X_OK)
        return tempfile.TemporaryDirectory(prefix="torture-", dir=memory if usable else None)

    def report(self, text):
        """Prints the details of a wrong result."""
        print(text, file=sys.stderr, flush=True)

    def skip(self, text):
        """Notes something that cannot be tried on this machine."""
        if text not in self.skipped:
            self.skipped.append(text)
