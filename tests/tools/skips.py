"""Runs a script's tests and tells which of them were skipped: a test that looks at nothing is not
to pass in silence."""

import os
import re
import sys
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is


def pseudo_terminal():
    """Both ends of a new one; where the system has none to give, the test is skipped."""
    try:
        return os.openpty()
    except OSError as error:
        raise unittest.SkipTest(f"no pseudo-terminal can be had: {error.strerror}") from error


def script_name():
    return os.path.splitext(os.path.basename(sys.argv[0]))[0]


def lines_of(result):
    """A line for each skipped test of a result."""
    for test, reason in result.skipped:
        name = re.sub(r"^__main__\.\w+\.", "", test.id())
        yield f"SKIPPED {script_name()}.{name}: {' '.join(reason.split())}"


class TellingRunner(unittest.TextTestRunner):
    """The usual runner, which then tells of the skipped tests on standard output."""

    def run(self, test):
        result = super().run(test)
        for line in lines_of(result):
            print(line, flush=True)
        return result


def main(**options):
    """As unittest.main(), the exit status included."""
    unittest.main(testRunner=TellingRunner, **options)
