#!/usr/bin/env python3
"""Compares the property-list reader and writer with other implementations.

Usage: property_lists_second_opinion.py PLIST_ROUNDTRIP [--no-memory-limit]

plistlib writes random dictionaries in both forms, the tool converts them, and plistlib reads them
again; plistutil, if installed, reads the tool's output too. Then valid files are changed at random,
and files made to do harm are tried: the tool must always end by itself, in bounded time and memory.
--no-memory-limit is for builds with a sanitizer, which reserve address space.
"""

import datetime
import math
import os
import plistlib
import random
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
from xml.parsers import expat as xml_parser

from hostile_lists import MIB, hostile_binary, hostile_xml

SEED = 20240229
MEMORY_LIMIT = 1024 * MIB
SECONDS_LIMIT = 60
DOCUMENTS = 400
MUTATIONS = 6000
BATCH = 200
# Without this, a sanitizer's finding would give the same status as a refused file.
SANITIZER_STATUS = {name + "_OPTIONS": "exitcode=99" for name in ("ASAN", "UBSAN", "LSAN")}


class Failure(Exception):
    pass


class Tool:
    def __init__(self, path, folder, limited):
        self.path = path
        self.folder = folder
        self.limited = limited
        self.peak = 0
        self.seconds = 0.0

    def _limits(self):
        resource.setrlimit(resource.RLIMIT_CPU, (SECONDS_LIMIT, SECONDS_LIMIT))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        if self.limited:
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))

    def run(self, arguments):
        """The exit status and output of a run; remembers its time and memory."""
        with tempfile.TemporaryFile(dir=self.folder) as output:
            process = subprocess.Popen(
                [self.path] + arguments,
                stdout=output,
                stderr=subprocess.PIPE,
                preexec_fn=self._limits,
                env=os.environ | SANITIZER_STATUS,
            )
            error = process.stderr.read()
            _, status, usage = os.wait4(process.pid, 0)
            process.stderr.close()
            process.returncode = os.waitstatus_to_exitcode(status)
            # This includes the interpreter's memory at the fork, so small peaks mean nothing.
            self.peak = usage.ru_maxrss * 1024
            self.seconds = usage.ru_utime + usage.ru_stime
            output.seek(0)
            if process.returncode not in (0, 1) or b"bad_alloc" in error:
                raise Failure(f"exit status {process.returncode}: {error[-2000:]!r}")
            return process.returncode, output.read()

    def write(self, name, content):
        path = os.path.join(self.folder, name)
        with open(path, "wb") as file:
            file.write(content)
        return path

    def through(self, content):
        """The XML form of a file, or None if the tool refuses it."""
        status, output = self.run([self.write("single", content)])
        return output if status == 0 else None

    def batch(self, contents):
        """For each file: "read", "partial", "unreadable" or "unwritable", and its XML."""
        paths = [self.write(f"batch{i}", content) for i, content in enumerate(contents)]
        for path in paths:
            if os.path.exists(path + ".xml"):
                os.remove(path + ".xml")
        status, output = self.run(["--batch"] + paths)
        words = output.decode().split()
        if status != 0 or len(words) != len(paths):
            raise Failure(f"exit status {status} after {len(words)} of {len(paths)} files")
        results = []
        for word, path in zip(words, paths):
            xml = None
            if word in ("read", "partial"):
                with open(path + ".xml", "rb") as file:
                    xml = file.read()
            results.append((word, xml))
        return results


# Random values


def random_text(rng, binary):
    alphabet = "abcXYZ 0189<>&\"']\t\n\u00e9\u20ac\u2028\ud7ff\ue000\ufffd\U0001f600\U0010ffff\x7f\x85"
    if binary:
        alphabet += "\r"  # plistlib turns it into a line feed in XML.
    return "".join(rng.choice(alphabet) for _ in range(rng.choice([0, 1, 3, 14, 15, 16, 300])))


def random_integer(rng):
    edges = [0, 1, -1, 127, 128, 255, 256, 65535, 65536, 2**31, 2**32, 2**63 - 1, 2**63, 2**64 - 1, -(2**63)]
    return rng.choice(edges + [rng.randint(-(2**63), 2**64 - 1), rng.randint(-1000, 1000)])


def random_real(rng):
    edges = [0.0, -0.0, 1.0, 0.1, 1e22, 1e-7, 5e-324, 1.7976931348623157e308, math.inf, -math.inf, math.nan]
    bits = struct.unpack(">d", struct.pack(">Q", rng.getrandbits(64)))[0]
    return rng.choice(edges + [bits, bits, rng.random()])


def random_date(rng):
    start = datetime.datetime(1, 1, 1)
    return start + datetime.timedelta(seconds=rng.randint(0, 9998 * 365 * 86400))


def random_scalar(rng, binary):
    kind = rng.randrange(7 if binary else 6)
    if kind == 0:
        return rng.random() < 0.5
    if kind == 1:
        return random_integer(rng)
    if kind == 2:
        return random_real(rng)
    if kind == 3:
        return random_text(rng, binary)
    if kind == 4:
        return random_date(rng)
    if kind == 5:
        return rng.randbytes(rng.choice([0, 1, 2, 3, 14, 15, 57, 200]))
    return plistlib.UID(rng.choice([0, 255, 65536, 2**32 - 1, rng.getrandbits(63)]))


def random_value(rng, depth, binary):
    kind = rng.randrange(6)
    if depth == 0 or kind > 1:
        return random_scalar(rng, binary)
    if kind == 0:
        return [random_value(rng, depth - 1, binary) for _ in range(rng.choice([0, 1, 3, 20]))]
    return random_dictionary(rng, depth - 1, binary)


def random_dictionary(rng, depth, binary):
    count = rng.choice([0, 1, 3, 20])
    return {random_text(rng, binary): random_value(rng, depth, binary) for _ in range(count)}


def as_expected(value):
    """`value` as it must come back: a UID becomes the dictionary that stands for it in XML."""
    if isinstance(value, plistlib.UID):
        return {"CF$UID": value.data}
    if isinstance(value, dict):
        return {key: as_expected(item) for key, item in value.items()}
    if isinstance(value, list):
        return [as_expected(item) for item in value]
    return value


def difference(left, right, where="root"):
    """The first place where two values differ in value or type; None if they are wholly the same.
    NaN equals itself, 0.0 differs from -0.0."""
    found = f"at {where}: {left!r:.200} became {right!r:.200}"
    if type(left) is not type(right):
        return found
    if isinstance(left, dict):
        if left.keys() != right.keys():
            return f"keys {found}"
        pairs = [(left[key], right[key], f"{where}/{key!r:.20}") for key in left]
    elif isinstance(left, list):
        if len(left) != len(right):
            return found
        pairs = [(left[i], right[i], f"{where}/{i}") for i in range(len(left))]
    elif isinstance(left, float):
        return None if repr(left) == repr(right) else found
    else:
        return None if left == right else found
    return next((inner for inner in (difference(*pair) for pair in pairs) if inner), None)


def expect_same(left, right, what):
    found = difference(left, right)
    if found:
        raise Failure(f"{what}: {found}")


def is_part(whole, part):
    """Whether `part` is `whole`, except for values that were left out."""
    if type(whole) is not type(part):
        return False
    if isinstance(whole, dict):
        return all(key in whole and is_part(whole[key], part[key]) for key in part)
    if isinstance(whole, list):
        rest = iter(whole)
        return all(any(is_part(item, wanted) for item in rest) for wanted in part)
    return difference(whole, part) is None


def expect_part(whole, part, what):
    if not is_part(whole, part) or difference(whole, part) is None:
        raise Failure(f"{what}: {part!r:.500} of {whole!r:.500}")


# Comparisons


def dumped(value, binary):
    return plistlib.dumps(value, fmt=plistlib.FMT_BINARY if binary else plistlib.FMT_XML)


def check_random_documents(tool, rng):
    for binary in (False, True):
        values = [random_dictionary(rng, 5, binary) for _ in range(DOCUMENTS)]
        for start in range(0, DOCUMENTS, BATCH):
            part = values[start : start + BATCH]
            files = [dumped(value, binary) for value in part]
            for content, (word, xml) in zip(files, tool.batch(files)):
                if word != "read":
                    raise Failure(f"{word}: {content!r:.2000}")
                # What plistlib reads back, since the binary form stores 0.0 and -0.0 as one.
                value = as_expected(plistlib.loads(content))
                back = plistlib.loads(xml, fmt=plistlib.FMT_XML)
                expect_same(value, back, "plistlib reads the tool's output as other values")
    print(f"plistlib: {2 * DOCUMENTS} random dictionaries, in both forms, came back as they were")


def for_plistutil(value):
    """Leaves out what plistutil is known not to keep: reals that are not finite or need all their
    digits, integers and dates near the ends of their ranges, carriage returns, an empty key."""
    if isinstance(value, dict):
        kept = {key.replace("\r", ""): for_plistutil(item) for key, item in value.items()}
        return {key: item for key, item in kept.items() if item is not None and key}
    if isinstance(value, list):
        return [item for item in map(for_plistutil, value) if item is not None]
    if isinstance(value, float):
        return float(round(value * 64)) / 64 if math.isfinite(value) and abs(value) < 1e6 else None
    if isinstance(value, datetime.datetime):
        return value if 1971 <= value.year <= 2037 else None
    if isinstance(value, str):
        return value.replace("\r", "")
    return value


def check_sharing(tool):
    """The writers of the binary form store equal scalars once, and refer to them many times."""
    row = {"name": "a name", "true": True, "data": b"data", "uid": plistlib.UID(7), "real": 1.5}
    columns = [[item] * 20000 for item in row.values()]
    for value in ({"rows": [dict(row) for _ in range(5000)]}, {"columns": columns}, {"k": [{}] * 9}):
        content = dumped(value, True)
        xml = tool.through(content)
        if xml is None:
            raise Failure(f"refused: {content!r:.200}")
        expect_same(as_expected(value), plistlib.loads(xml), "shared values came back changed")
    print("plistlib: lists that refer to the same scalars many times came back as they were")


def check_plistutil(tool, rng):
    if shutil.which("plistutil") is None:
        print("SKIPPED property_lists_second_opinion.check_plistutil: plistutil is not installed")
        return
    count = 60
    for number in range(count):
        value = for_plistutil(random_dictionary(rng, 4, False))
        xml = tool.through(dumped(value, False))
        source = tool.write("for_plistutil.plist", xml)
        target = os.path.join(tool.folder, "by_plistutil.plist")
        subprocess.run(["plistutil", "-i", source, "-o", target, "-f", "bin"], check=True, timeout=60)
        with open(target, "rb") as file:
            binary = file.read()
        expect_same(value, plistlib.loads(binary),
                    "plistutil reads the tool's output as other values")
        back = tool.through(binary)
        if back != xml:
            raise Failure(f"plistutil's binary form of document {number} was read as other values")
    print(f"plistutil: {count} random dictionaries came back as they were")


def mutated(rng, content):
    content = bytearray(content)
    for _ in range(rng.choice([1, 1, 1, 2, 5])):
        where = rng.randrange(len(content)) if content else 0
        what = rng.randrange(5)
        if what == 0 and content:
            content[where] ^= 1 << rng.randrange(8)
        elif what == 1 and content:
            content[where] = rng.choice([0, 1, 0x0F, 0x7F, 0x80, 0xD1, 0xAF, 0xFF, ord("<"), ord("&")])
        elif what == 2:
            del content[where : where + rng.choice([1, 2, 10, 100])]
        elif what == 3:
            content[where:where] = rng.randbytes(rng.choice([1, 2, 8]))
        else:
            start = rng.randrange(len(content)) if content else 0
            content[where:where] = content[start : start + rng.choice([1, 5, 50])]
    return bytes(content)


def mutated_trailer(rng, content):
    """Changes a binary file where its widths, counts and offsets are."""
    content = bytearray(content)
    content[len(content) - 1 - rng.randrange(60)] = rng.choice([0, 1, 2, 8, 9, 0x7F, 0x80, 0xFF])
    return bytes(content)


def check_mutations(tool, rng):
    counts = {"read": 0, "partial": 0, "unreadable": 0, "unwritable": 0}
    readable_elsewhere = partly_elsewhere = 0
    for binary in (False, True):
        originals = [dumped(random_dictionary(rng, 3, binary), binary) for _ in range(40)]
        for _ in range(MUTATIONS // BATCH):
            changed = []
            for _ in range(BATCH):
                change = mutated_trailer if binary and rng.random() < 0.3 else mutated
                changed.append(change(rng, rng.choice(originals)))
            for content, (word, xml) in zip(changed, tool.batch(changed)):
                counts[word] += 1
                if word == "read":
                    readable_elsewhere += agrees(content, xml, expect_same)
                if word == "partial":
                    partly_elsewhere += agrees(content, xml, expect_part)
    if min(counts["read"], counts["partial"], counts["unreadable"], readable_elsewhere) < 100:
        raise Failure(f"too few mutations were read or refused: {counts}, {readable_elsewhere}")
    if partly_elsewhere == 0:
        raise Failure("plistlib could read no list of which the tool left something out")
    print(f"mutations: {2 * MUTATIONS} ended by themselves: {counts};")
    print(f"  {readable_elsewhere} of those read were read by plistlib as well, all as the same values,")
    print(f"  and {partly_elsewhere} of those read in part, all as part of those values")


def agrees(content, xml, expect):
    """1 if plistlib reads `content` too, and `expect` agrees; 0 if plistlib refuses it. What the tool
    wrote must be XML in any case, and a property list if plistlib takes `content` for one."""
    try:
        xml_parser.ParserCreate().Parse(xml, True)
    except xml_parser.ExpatError as error:
        raise Failure(f"the tool wrote malformed XML ({error}): {xml!r:.2000}") from error
    try:
        value = as_expected(plistlib.loads(content))
    except (Exception, RecursionError):
        return 0
    try:
        written = plistlib.loads(xml, fmt=plistlib.FMT_XML)
    except (Exception, RecursionError) as error:
        raise Failure(f"plistlib refuses what the tool wrote ({error!r}): {xml!r:.2000}") from error
    # plistlib keeps fractions of a second and larger numbers, and is less strict with base64.
    expect(without_fractions(value), written, f"plistlib reads other values from {content!r:.2000}")
    return 1


def without_fractions(value):
    if isinstance(value, dict):
        return {key: without_fractions(item) for key, item in value.items()}
    if isinstance(value, list):
        return [without_fractions(item) for item in value]
    return value.replace(microsecond=0) if isinstance(value, datetime.datetime) else value


# Files made to do harm


def check_hostile_files(tool):
    worst_seconds = worst_peak = 0
    for files in (hostile_xml(), hostile_binary()):
        for name, expected, content in files:
            if len(content) > 16 * MIB:
                raise Failure(f"{name}: over 16 MiB, so it would be refused for its size alone")
            ((word, _),) = tool.batch([content])
            print(
                f"  {name}: {len(content) / MIB:.1f} MiB, {word},"
                f" {tool.seconds:.2f} s, peak {tool.peak // MIB} MiB"
            )
            if word != expected:
                raise Failure(f"{name}: {word}, not {expected}")
            worst_seconds = max(worst_seconds, tool.seconds)
            worst_peak = max(worst_peak, tool.peak)
    print(f"hostile files: at worst {worst_seconds:.2f} s and a peak of {worst_peak // MIB} MiB")


def main():
    arguments = sys.argv[1:]
    limited = "--no-memory-limit" not in arguments
    paths = [argument for argument in arguments if not argument.startswith("--")]
    if len(paths) != 1:
        print(__doc__, file=sys.stderr)
        return 2
    rng = random.Random(SEED)
    with tempfile.TemporaryDirectory() as folder:
        tool = Tool(os.path.abspath(paths[0]), folder, limited)
        try:
            check_random_documents(tool, rng)
            check_sharing(tool)
            check_plistutil(tool, rng)
            check_mutations(tool, rng)
            check_hostile_files(tool)
        except Failure as failure:
            print(f"FAILED: {failure}")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
