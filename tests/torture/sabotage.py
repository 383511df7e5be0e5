"""Disturbs hosts and files on purpose, and checks that the judges notice it each time."""

import os

import world
from faulty_host import ERRORS, Fault
from scenarios import record
from tries import Bench

RECORD = record("host", "WENLOLIB_writeAppInfoWithContents", "others")

HOST = ["crash", "exit", "hang", "mask", "locale", "folder", "handler", "signals", "environment",
        "descriptor", "cancellation", "child", "print", "zone"]


def change(path):
    """Changes the last digit of a payload, or the last character of anything else."""
    def meddle(files):
        mode, data = files.tree()[path]
        at = max(data.rfind(b"</Encrypted>"), 1) - 1
        other = b"1" if data[at:at + 1] == b"0" else b"0"
        files.put(path, mode, data[:at] + other + data[at + 1:])
    return meddle


def remove(path):
    return lambda files: os.unlink(os.path.join(files.home, path))


def add(path):
    return lambda files: files.put(path, 0o644, b"?")


FAILING = Fault("error", 1, ERRORS["EIO"], True)  # the record is refused
# Nothing fails, but it is judged as if the system had answered: other values are right, unsound
# documents are not.
ANSWERED = Fault("none", 0, ERRORS["ENOENT"])
NOTHING = Fault("none")
HIDDEN = f"{world.SUPPORT}/ALM/.wenlolib-0123456789abcdef.tmp"

FILES = [
    (NOTHING, change(world.APPLICATION)),
    (ANSWERED, change(world.APPLICATION)),
    (NOTHING, remove(world.APPLICATION)),
    (NOTHING, change(world.FIRST_PRINTER_LOG)),
    (NOTHING, change(world.PREFERENCES)),
    (NOTHING, change(world.CONFIGURATION)),
    (NOTHING, remove(world.CONFIGURATION)),
    (ANSWERED, change(world.CONFIGURATION)),
    (NOTHING, add(HIDDEN)),
    (NOTHING, add("stray")),
    (FAILING, change(world.APPLICATION)),
    (FAILING, change(world.CONFIGURATION)),
    (FAILING, add(f"{world.SUPPORT}/ALM/Quillmere_Log_Other_2603.ALM")),
]


def unnoticed(campaign):
    """How many disturbances were tried, and how many of them were not noticed."""
    missed = []
    with Bench(campaign.build, RECORD, campaign.scratch) as bench:
        for fault in (NOTHING, ANSWERED, FAILING):
            if bench.outcome(fault)[1]:
                raise RuntimeError(f"{fault}: something is wrong even without a disturbance")
        for name in HOST:
            if not bench.outcome(Fault(f"!{name}"), 1 if name == "hang" else 15)[1]:
                missed.append(name)
        for number, (fault, meddle) in enumerate(FILES):
            if not bench.outcome(fault, meddle=meddle)[1]:
                missed.append(f"change {number} of the files")
    for name in missed:
        campaign.report(f"NOT NOTICED: {name}")
    return len(HOST) + len(FILES), len(missed)
