"""A root folder with a user's home for the command `wenlolib`, and ways to call it there."""

import datetime
import errno
import fcntl
import os
import plistlib
import select
import stat
import struct
import subprocess
import sys
import tempfile
import termios
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is

import skips

HOME = "/home/user"
SUPPORT = HOME + "/Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
PREFERENCES = "Config/com.orvan.printing.Quillmere.Pref.plist"
VERSION_LIST = "Config/com.orvan.printing.Quillmere.SupportVersionList.plist"
CONFIGURATION = "Config/com.orvan.printing.WENLOLIB.Conf.plist"
HOST_BUNDLE = "/Applications/Orvan Utilities/Quillmere/Quillmere.app"
IDENTIFIER = "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"
NOBODY = 65534


def days_ago(days):
    now = datetime.datetime.now(datetime.timezone.utc).replace(tzinfo=None, microsecond=0)
    return now - datetime.timedelta(days=days)


def content_of(path, status):
    """What tells a file or link from another: where the link leads, or the bytes; of large files,
    which may be sparse, size and time of change."""
    if stat.S_ISLNK(status.st_mode):
        return os.readlink(path)
    if not stat.S_ISREG(status.st_mode):
        return None
    if status.st_size >= 1 << 20:
        return (status.st_size, status.st_mtime_ns)
    with open(path, "rb") as file:
        return file.read()


def tree(folder):
    """The mode and contents of everything below a folder."""
    found = {}
    for parent, folders, files in os.walk(folder):
        for name in folders + files:
            path = os.path.join(parent, name)
            status = os.lstat(path)
            found[path] = (status.st_mode, content_of(path, status))
    return found


def real_homes():
    """What the library may touch of the homes outside every root: that of the calls' environment,
    and that of the user who runs them."""
    found = {}
    for home in [HOME, os.path.expanduser("~")]:
        library = os.path.join(home, "Library")
        found[home] = (os.path.lexists(home), os.path.lexists(library), tree(library))
    return found


class ToolTest(unittest.TestCase):
    """Every call runs in an empty working folder, and must leave it and the real homes unchanged."""

    command = ""
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        os.chmod(folder.name, 0o755)
        self.root = os.path.join(folder.name, "root")
        self.outside = os.path.join(folder.name, "outside")
        os.mkdir(self.root)
        os.mkdir(self.outside)
        self.homes = real_homes()
        self.environment = {"HOME": HOME, "TMPDIR": self.outside, "TZ": "EAST-9",
                            "LANG": "de_DE.UTF-8", "TERM": "xterm"}

    def tearDown(self):
        self.assertEqual(os.listdir(self.outside), [])
        self.assertEqual(real_homes(), self.homes)

    def path(self, name=""):
        """A path below the support folder, or the folder itself for ""; absolute paths are below
        the root."""
        return self.root + os.path.join(SUPPORT, name).rstrip("/")

    def arguments(self, call):
        return [self.command, "--root", self.root, *call]

    def call(self, *call, stdin=b"", **others):
        try:
            return subprocess.run(self.arguments(call), input=stdin, capture_output=True,
                                  timeout=60, cwd=self.outside, env=self.environment, **others)
        except PermissionError:
            if "user" not in others:
                raise
            self.skipTest("the command lies where an unprivileged user cannot run it")

    def expect(self, status, *call, **others):
        """The finished call, which must have this exit status."""
        finished = self.call(*call, **others)
        told = finished.stdout.decode(errors="replace") + finished.stderr.decode(errors="replace")
        self.assertEqual(finished.returncode, status, f"{call}: {told[-2000:]}")
        return finished

    def expect_complaint(self, status, word, *call, **others):
        """Checks for this exit status, no standard output, and a message that says what is wrong."""
        finished = self.expect(status, *call, **others)
        self.assertEqual(finished.stdout, b"")
        complaint = finished.stderr.decode(errors="replace")
        self.assertTrue(complaint.startswith("wenlolib"), complaint)
        self.assertIn(word, complaint)

    def expect_usage_error(self, word, *call, **others):
        self.expect_complaint(2, word, *call, **others)

    def expect_unreadable(self, word, *call, **others):
        self.expect_complaint(3, word, *call, **others)

    def write(self, name, data):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(data if isinstance(data, bytes) else plistlib.dumps(data))
        return path

    def install(self, agreement=True, days=100, **others):
        """Sets up what a host provides, with its user's agreement and an identifier."""
        for name in ["PLM", "ALM", "Config"]:
            os.makedirs(self.path(name))
            os.chmod(self.path(name), 0o700)
        self.write(PREFERENCES, {"InstalledDate": days_ago(days),
                                 "LatestSelectedAgreement": agreement, **others})
        self.write(CONFIGURATION, {"WENLIBUUID": IDENTIFIER})

    def on_terminal(self, *call, typed=None, before_typing=lambda: None, columns=0):
        """Exit status and output of a call whose three streams are its terminal. `typed` answers a
        question."""
        ours, theirs = skips.pseudo_terminal()
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

        def take_terminal():
            os.setsid()
            fcntl.ioctl(0, termios.TIOCSCTTY, 0)

        child = subprocess.Popen(self.arguments(call), stdin=theirs, stdout=theirs, stderr=theirs,
                                 cwd=self.outside, env=self.environment, preexec_fn=take_terminal)
        os.close(theirs)
        output = b""
        while select.select([ours], [], [], 30)[0]:
            try:
                piece = os.read(ours, 65536)
            except OSError as error:
                if error.errno != errno.EIO:
                    raise
                break
            if not piece:
                break
            output += piece
            if typed is not None and output.rstrip().endswith(b"[y/N]"):
                before_typing()
                os.write(ours, typed)
                typed = None
        os.close(ours)
        return child.wait(timeout=60), output

    def unprivileged(self):
        """Arguments for a call as a user who is bound by permissions."""
        if os.geteuid() != 0:
            return {}
        return {"user": NOBODY, "group": NOBODY, "extra_groups": []}
