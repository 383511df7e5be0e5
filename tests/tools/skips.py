"""Runs a script's tests and prints which of them were skipped: a test that checks nothing must not
pass in silence."""

import os
import re
import sys
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is


def pseudo_terminal():
    """Both ends of a new pseudo-terminal. If the system has none, the test is skipped."""
    try:
        return os.openpty()
    except OSError as error:
        raise unittest.SkipTest(f"no pseudo-terminal can be had: {error.strerror}") from error


def script_name():
    return os.path.splitext(os.path.basename(sys.argv[0]))[0]


def lines_of(result):
    """One line for each skipped test in a result."""
    for test, reason in result.skipped:
        name = re.sub(r"^__main__\.\w+\.", "", test.id())
        yield f"SKIPPED {script_name()}.{name}: {' '.join(reason.split())}"


class TellingRunner(unittest.TextTestRunner):
    """The usual runner, which then prints the skipped tests on standard output."""

    def run(self, test):
        result = super().run(test)
        for line in lines_of(result):
            print(line, flush=True)
        return result


def main(**options):
    """Like unittest.main(), including the exit status."""
    unittest.main(testRunner=TellingRunner, **options)
