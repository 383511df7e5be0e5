"""Runs the servers in C and C++, which perform one operation at a time while one thing goes
wrong."""

import collections
import json
import os
import re
import subprocess

Fault = collections.namedtuple("Fault", "kind index error onwards", defaults=(0, 0, False))
UNDISTURBED = Fault("none")
ERRORS = {name: getattr(__import__("errno"), name) for name in [
    "EINTR", "EAGAIN", "ENOMEM", "EMFILE", "ENFILE", "EIO", "ENOSPC", "EDQUOT", "EACCES", "ENOENT"]}
ERROR_NAMES = {number: name for name, number in ERRORS.items()}
# Errors by which the system answers: it has looked, and found nothing, or nothing for this user.
ANSWERS = {ERRORS["EACCES"], ERRORS["ENOENT"]}

# Where a host runs: its variable TZ; the zone's offsets; a command to start it with; and whether
# that command replaces the system's password file by one with the host's home. Then the host has no
# HOME.
Place = collections.namedtuple("Place", "zone winter summer command passwords",
                               defaults=(3600, 7200, (), False))
BERLIN = Place("Europe/Berlin")

SECONDS = 15  # after which a call counts as hanging


def text_of(digits):
    return bytes.fromhex(digits).decode("utf-8", "replace")


class Result:
    """The result of one operation."""

    def __init__(self, line):
        self.__dict__.update(json.loads(line))
        self.text = text_of(self.answer) if self.answered else None
        self.path = text_of(self.path)
        self.shown = text_of(self.shown)


class FaultyHost:
    """A running server. The `program` "host" loads the plug-in; "classes" is linked with it."""

    def __init__(self, build, program, home, place=BERLIN, shown=True):
        folder = build / "tests" / "torture"
        plugin = build / "WENLOLIB.bundle/Contents/Linux/WENLOLIB"
        environment = {"LANG": "de_DE.UTF-8", "PATH": "/usr/sbin:/usr/bin:/sbin:/bin"}
        if place.zone is not None:
            environment["TZ"] = place.zone
        if place.passwords:
            environment["PASSWORDS"] = password_file(home)
        else:
            environment["HOME"] = str(home)
        self.process = subprocess.Popen(
            [*place.command, folder / f"torture_{program}", plugin, str(place.winter),
             str(place.summer), "shown" if shown else "first"],
            env=environment, cwd=home, text=True, umask=0o027,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.operations = self.process.stdout.readline().split()

    def perform(self, operation, fault=UNDISTURBED, without=0, seconds=SECONDS):
        print(operation, fault.kind, fault.index, fault.error, int(fault.onwards), without,
              seconds, file=self.process.stdin, flush=True)
        line = self.process.stdout.readline()
        if not line:
            raise RuntimeError(f"the server of {operation} has ended")
        return Result(line)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait(timeout=30)
        self.process.stdout.close()


def password_file(home):
    """A password file next to `home`, which gives `home` as the user's home."""
    path = f"{home}.passwd"
    with open(path, "w", encoding="ascii") as file:
        file.write(f"daemon:x:1:1:::\nhost:x:0:0:Host:{home}:/bin/sh\n")
    os.chmod(path, 0o644)
    return path


def call_of(result):
    return CALL_NAMES.get(result.number) if result.struck else None


def call_names():
    """The names of the system calls, by number, from the system's header."""
    for header in ["/usr/include/x86_64-linux-gnu/asm/unistd_64.h", "/usr/include/asm/unistd_64.h"]:
        if os.path.exists(header):
            with open(header, encoding="ascii") as file:
                pairs = re.findall(r"#define __NR_(\w+) (\d+)", file.read())
            return {int(number): name for name, number in pairs}
    return {}


CALL_NAMES = call_names()


def place_of_call(result):
    name = CALL_NAMES.get(result.number, f"call {result.number}")
    if name == "newfstatat" and not result.path:
        return "fstat"
    return f"{name} {os.path.basename(result.path)}".strip()


def place_of_allocation(places):
    """Where an allocation was made: the innermost functions of the library."""
    named = []
    for file, offset in places[2:]:
        if "torture_" in os.path.basename(file):
            break
        named.append(symbol(file, offset - 1))
    return " < ".join(name for name in named if name)[:400]


_symbols = {}


def symbol(file, offset):
    if (file, offset) not in _symbols:
        found = subprocess.run(["addr2line", "-Cfe", file, hex(offset)], capture_output=True,
                               text=True, check=False).stdout.split("\n")
        name = re.sub(r"\(.*|\[abi.*", "", found[0]) if found else "??"
        where = os.path.basename(found[1].split(" ")[0]) if len(found) > 1 else ""
        known = name not in ("??", "") or not where.startswith("??")
        _symbols[file, offset] = (f"{name} ({where})" if known
                                  else f"{os.path.basename(file)}+{offset:#x}")
    return _symbols[file, offset]
