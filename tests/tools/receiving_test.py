#!/usr/bin/env python3
"""Tests of `wenlolib verify`, `decode` and `diff`. Argument: the path of the wenlolib command."""

import fcntl
import hashlib
import os
import random
import re
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import threading
import time
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.path.insert(0, os.path.join(HERE, "..", "verifier"))
EXAMPLES = os.path.join(HERE, "..", "..", "examples", "documents")

import skips
from json_schema import object_in, objects_in
from rc4 import cycling_xor, rc4
from survey_document import WRAPPERS, parse

COMMAND = ""
DATE = "2024-03-15T09:05:07+09:00"
ID = "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"
PRINTER = {"DeviceID": "MFG:Orvan;MDL:QX 200;", "SN": "QX200-0004711", "ROMVER": "2.14"}


def document(contents=b"jobs=3\n", layout="application", marker="R", date=DATE, **values):
    """A document with a matching checksum, whatever it holds."""
    key = hashlib.md5(date.encode()).digest()
    payload = (rc4 if marker == "R" else cycling_xor)(key, contents).hex().upper()
    fields = {"Version": "1.0", "OSVersion": "M.6.1.55", "Date": date, "Locale": "en_US", "ID": ID}
    if layout == "printer-older":
        fields.update(PRINTER)
    fields.update(values)
    texts = [f"<{name}>{value}</{name}>" for name, value in fields.items()]
    if layout == "printer-older":
        content = "".join(texts[:5]) + "<Printer>" + "".join(texts[5:])
        content += f'<PLI C="{marker}">{payload}</PLI></Printer>'
    else:
        content = "".join(texts) + f'<Encrypted C="{marker}">{payload}</Encrypted>'
    return wrapped(content, layout)


def wrapped(content, layout="application"):
    name = WRAPPERS[layout].decode()
    checksum = hashlib.md5(content.encode()).hexdigest().upper()
    return f'<{name} SUM="{checksum}">{content}</{name}>'.encode()


def edited(old, new, data=None):
    """A document whose content was changed before its checksum was made."""
    text = (data or document()).decode()
    content = text[text.index('">') + 2 : text.rindex("</")]
    assert old in content
    return wrapped(content.replace(old, new, 1))


def repaired():
    """What is stored if a value holds an ampersand that begins no reference."""
    return document(Locale="a&b").replace(b"a&b", b"a&amp;b")


SOUND = document()
CHECKSUM_AT = SOUND.index(b'"') + 1
PAYLOAD_AT = SOUND.index(b'C="R">') + 6

# name: bytes, fault, layer
BROKEN = {
    "end missing": (SOUND[:-5], "truncated", "xml"),
    "cut in a field": (SOUND[: SOUND.index(b"<Locale>") + 9], "truncated", "xml"),
    "nothing": (b"", "truncated", "xml"),
    "end tag broken": (SOUND.replace(b"</Version>", b"</Versi0n>"), "damaged", "xml"),
    "not UTF-8": (SOUND.replace(b"en_US", b"en\xffUS"), "damaged", "xml"),
    "line break after": (SOUND + b"\n", "damaged", "white_space"),
    "blank between": (edited("<Date>", " <Date>"), "damaged", "white_space"),
    "field missing": (edited("<Locale>en_US</Locale>", ""), "damaged", "layout"),
    "other XML": (b"<a><b></b></a>", "foreign", "layout"),
    "archive": (b"\x1f\x8b\x08\0", "foreign", "xml"),
    "serialised": (document(Locale="a>b").replace(b"a>b", b"a&gt;b"), "repaired", "checksum"),
    "marker": (edited('C="R"', 'C="Q"'), "damaged", "cipher_marker"),
    "small digits": (edited('C="R">', 'C="R">ab'), "damaged", "hexadecimal"),
    "odd digits": (edited('C="R">', 'C="R">A'), "damaged", "hexadecimal"),
    "another payload": (
        SOUND[:PAYLOAD_AT] + b"00" + SOUND[PAYLOAD_AT + 2 :],
        "altered",
        "checksum",
    ),
    "another checksum": (
        SOUND[:CHECKSUM_AT] + bytes([SOUND[CHECKSUM_AT] ^ 1]) + SOUND[CHECKSUM_AT + 1 :],
        "altered",
        "checksum",
    ),
    "repaired": (repaired(), "repaired", "checksum"),
    "contents not UTF-8": (document(b"a\xff\xfe"), "damaged", "contents"),
    "no date": (document(b"\0\0", date=""), "none", "contents"),
}


def status_for(fault):
    """A repaired document counts as sound."""
    return 0 if fault == "repaired" else 1


def word_for(fault):
    """The word for people: a document without a date is not damaged, but it is not sound either."""
    return "illegible" if fault == "none" else fault


def run(*arguments, **options):
    environment = dict(os.environ, TERM="xterm", **options.pop("environment", {}))
    return subprocess.run(
        [COMMAND, *arguments],
        input=options.pop("input", b""),
        stdout=options.pop("stdout", subprocess.PIPE),
        stderr=subprocess.PIPE,
        env=environment,
        timeout=120,
        **options,
    )


def start_on_terminal(*arguments, stdout=None, columns=80, ignored=(), **variables):
    """Starts the command on a pseudo-terminal; answers the process and our end of the terminal."""
    ours, theirs = skips.pseudo_terminal()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
    environment = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
    environment.update({"TERM": "xterm"}, **variables)
    child = subprocess.Popen(
        [COMMAND, *arguments], stdin=theirs, stdout=stdout or theirs, stderr=theirs, env=environment,
        preexec_fn=lambda: [signal.signal(sign, signal.SIG_IGN) for sign in ignored],
    )  # fmt: skip
    os.close(theirs)
    return child, ours


def pieces_sent(ours):
    """Everything that is sent to the terminal, piece by piece."""
    deadline = time.monotonic() + 120
    while time.monotonic() < deadline and select.select([ours], [], [], 120)[0]:
        try:
            yield os.read(ours, 65536)
        except OSError:  # the other end is closed
            break
    os.close(ours)


def handles(process, sign):
    """Whether the process has a handler for the signal."""
    with open(f"/proc/{process}/status") as status:
        (caught,) = [int(line.split()[1], 16) for line in status if line.startswith("SigCgt:")]
    return caught >> (sign - 1) & 1 == 1


def shown(pieces):
    return b"".join(pieces).decode("utf-8", "replace").replace("\r\n", "\n")


def on_terminal(*arguments, pauses=0, **options):
    """Runs the command on a pseudo-terminal, which reads slowly at first if there are pauses.
    Answers the exit status and what was sent to the terminal."""
    child, ours = start_on_terminal(*arguments, **options)
    sent = []
    for piece in pieces_sent(ours):
        sent.append(piece)
        if len(sent) <= pauses:
            time.sleep(0.15)
    return child.wait(timeout=120), shown(sent)


def on_terminal_into_slow_pipe(*arguments, until):
    """The same with the output in a pipe. The pipe is read slowly until the expected text was sent
    to the terminal, so that no machine is too fast to show it."""
    reading, writing = os.pipe()
    child, ours = start_on_terminal(*arguments, stdout=writing)
    os.close(writing)
    seen = threading.Event()

    def drain():
        while os.read(reading, 65536):
            seen.wait(0.15)
        os.close(reading)

    drained = threading.Thread(target=drain)
    drained.start()
    sent = []
    for piece in pieces_sent(ours):
        sent.append(piece)
        if re.search(until, shown(sent)):
            seen.set()
    drained.join()
    return child.wait(timeout=120), shown(sent)


class ReceivingTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        os.chmod(self.folder, 0o755)

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, data=SOUND):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(data)
        return path

    def good(self, *arguments, status=0, **options):
        """Runs the command and answers its output. There may be no complaint."""
        result = run(*arguments, **options)
        self.assertEqual(result.stderr, b"")
        self.assertEqual(result.returncode, status, result.stdout)
        return result.stdout.decode()

    def lines(self, *arguments, **options):
        return self.good(*arguments, **options).split("\n")[:-1]

    def objects(self, *arguments, **options):
        return [object_in(line) for line in self.lines(*arguments, **options)]

    def misused(self, *arguments, message):
        return self.refused(*arguments, message=message, status=2)

    def refused(self, *arguments, message, status=3):
        result = run(*arguments)
        self.assertEqual(result.returncode, status)
        self.assertRegex(result.stderr.decode(), message)
        return result.stdout.decode()

    def many(self, number, data=SOUND, name="many"):
        """A folder with this many documents, whose names have the same length. They are links to as
        few files as the file system allows."""
        original, folder = self.path("original"), self.path(name)
        os.mkdir(folder)
        place = os.open(folder, os.O_DIRECTORY)
        for i in range(number):
            if i % 60000 == 0:
                self.write("original", data)
            os.link(original, f"{i:06}.ALM", dst_dir_fd=place)
            if i % 60000 == 59999 or i == number - 1:
                os.unlink(original)
        os.close(place)
        return folder


class VerifyTest(ReceivingTest):
    def test_the_examples_are_sound(self):
        output = self.good("verify", EXAMPLES)
        lines = output.splitlines()
        self.assertEqual(
            sorted(lines[:-1]),
            [f"sound      {EXAMPLES}/{name}" for name in sorted(os.listdir(EXAMPLES))],
        )
        self.assertEqual(lines[-1], "3 documents: 3 sound")

    def test_documents_made_here_are_sound_to_both_readers(self):
        for layout in WRAPPERS:
            for marker in "RX":
                for contents in (b"", b"x", "東京 🖨\r\n\0".encode(), bytes(range(128)) * 20):
                    data = document(contents, layout, marker)
                    self.assertEqual(parse(data).contents, contents)
                    self.good("verify", self.write("a.PLM", data))

    def test_every_kind_of_fault_in_json(self):
        for name, (data, fault, layer) in BROKEN.items():
            with self.subTest(name):
                path = self.write("a.ALM", data)
                (found,) = self.objects("verify", "--json", path, status=status_for(fault))
                self.assertEqual((found["fault"], found["layer"]), (fault, layer), found)
                self.assertEqual((found["path"], found["bytes"]), (path, len(data)))
                self.assertIs(found["sound"], False)
                self.assertLessEqual(found["offset"], len(data))
                self.assertTrue(found["explanation"])

    def test_every_kind_of_fault_takes_one_line_for_a_person(self):
        for name, (data, fault, layer) in BROKEN.items():
            with self.subTest(name):
                path = self.write("a.ALM", data)
                line, summary = self.good("verify", path, status=status_for(fault)).splitlines()
                word = word_for(fault)
                self.assertTrue(line.startswith(f"{word:<11}{path}: "), line)
                self.assertLessEqual(line.count("byte "), 1)
                self.assertEqual(" at byte " in line, name != "nothing" and fault != "foreign", line)
                self.assertEqual(summary, f"1 document: 1 {word}")

    def test_where_it_broke(self):
        path = self.write("a.ALM", SOUND[:PAYLOAD_AT] + b"x" + SOUND[PAYLOAD_AT + 1 :])
        (found,) = self.objects("verify", "--json", path, status=1)
        self.assertEqual((found["offset"], found["field"]), (PAYLOAD_AT, "Encrypted"))
        line = self.good("verify", path, status=1).splitlines()[0]
        self.assertEqual(line, f"damaged    {path}: at byte {PAYLOAD_AT}, Encrypted: The payload holds "
                               "something other than digits 0 to 9 and A to F.")

    def test_each_verdict_says_a_thing_once(self):
        lines = {
            SOUND[:-5]: f"truncated  PATH: at byte {len(SOUND) - 5}, OrvanQXApplication: "
                        "The document ends here; the rest is missing.",
            b"": "truncated  PATH: The file is empty.",
            b"%PDF-1.4": "foreign    PATH: The file is not a survey document: it looks like a PDF document.",
            SOUND + b"\n": f"damaged    PATH: at byte {len(SOUND)}: "
                           "There is white space after the end of the document.",
            SOUND.replace(b"</Version>", b"</Versi0n>"):
                f"damaged    PATH: at byte {SOUND.index(b'</Version>') + 7}, Version: The document is not "
                'well-formed XML: the parser reports "mismatched tag".',
        }  # fmt: skip
        for data, expected in lines.items():
            path = self.write("a.ALM", data)
            line = self.good("verify", path, status=1).splitlines()[0]
            self.assertEqual(line, expected.replace("PATH", path))

    def test_a_checksum_that_does_not_hold_is_shown_with_the_computed_one(self):
        altered = SOUND.replace(b"en_US", b"en_UK")
        content = altered[altered.index(b'">') + 2 : altered.rindex(b"</")]
        computed = hashlib.md5(content).hexdigest().upper()
        found = SOUND[CHECKSUM_AT : CHECKSUM_AT + 32].decode()
        line = self.good("verify", self.write("a.ALM", altered), status=1).splitlines()[0]
        self.assertIn(f": at byte {CHECKSUM_AT}, SUM: The checksum is {found}, but that of the content "
                      f"is {computed}.", line)  # fmt: skip

    def test_a_sound_document_in_json(self):
        path = self.write("a.ALM")
        (found,) = self.objects("verify", "--json", path)
        self.assertEqual(
            found,
            {"schema": 1, "type": "verdict", "path": path, "bytes": len(SOUND), "sound": True,
             "fault": "none", "layer": "none", "offset": None, "field": None, "explanation": None},
        )  # fmt: skip

    def test_quiet_shows_only_what_is_not_sound(self):
        good, bad = self.write("a.ALM"), self.write("b.ALM", SOUND[:-1])
        self.assertEqual(self.good("verify", "--quiet", good), "")
        output = self.good("verify", "-q", good, bad, status=1)
        self.assertEqual(len(output.splitlines()), 1)
        self.assertIn(bad, output)
        self.assertEqual(len(self.objects("verify", "-q", "--json", good, bad, status=1)), 1)

    def test_the_summary_counts_each_kind(self):
        data = {"1": SOUND, "2": SOUND, "3": SOUND[:-1], "4": SOUND + b" ", "5": repaired()}
        paths = [self.write(f"{name}.ALM", bytes_) for name, bytes_ in data.items()]
        summary = self.good("verify", *paths, status=1).splitlines()[-1]
        self.assertEqual(summary, "5 documents: 2 sound, 1 truncated, 1 damaged, 1 repaired")

    def test_a_folder_is_searched_with_all_that_is_in_it(self):
        wanted = {self.write(name) for name in ("f/a.ALM", "f/b.PLM", "f/g/h/i/c.PLM", "f/.d.ALM")}
        for other in ("f/notes.txt", "f/a.alm", "f/ALM", "f/.wenlolib-0123.tmp", "f/g/b.PLM.bak"):
            self.write(other, b"no document")
        found = self.objects("verify", "--json", self.path("f"))
        self.assertEqual({one["path"] for one in found}, wanted)
        found = self.objects("verify", "--json", self.path("f") + "/")
        self.assertEqual({one["path"] for one in found}, wanted)

    def test_a_named_file_is_examined_whatever_its_name(self):
        self.good("verify", self.write("notes.txt"), self.write(".wenlolib-0123.tmp"))

    def nothing_in(self, folder, *call, passed=""):
        """The output of a call that must complain of a folder without documents."""
        result = run(*call)
        self.assertEqual(result.returncode, 1)
        self.assertEqual(
            result.stderr.decode(),
            f"wenlolib {call[0]}: {folder}: no documents: there is no *.PLM and no *.ALM in this folder"
            f"{passed}\n",
        )
        return result.stdout.decode()

    def test_an_empty_folder_is_told_of(self):
        self.assertEqual(self.nothing_in(self.folder, "verify", self.folder), "0 documents\n")
        for call in (["verify", "--json"], ["verify", "-q"], ["verify", "-l"], ["decode"]):
            self.assertEqual(self.nothing_in(self.folder, *call, self.folder), "")
        empty = self.path("empty")
        os.mkdir(empty)
        good = self.write("f/a.ALM")
        self.assertIn(f"sound      {good}\n1 document: 1 sound\n",
                      self.nothing_in(empty, "verify", self.path("f"), empty))

    def test_what_was_passed_over_is_counted_by_reason(self):
        for other in ("f/notes.txt", "f/a.alm", "f/.wenlolib-0123.tmp", "f/g/b.PLM.bak"):
            self.write(other, b"")
        os.symlink(self.path("f"), self.path("f/g/loop"))
        passed = "passed over: 3 files with another ending, 1 link to a folder, 1 file that is unfinished"
        folder = self.path("f")
        for call in ("verify", "decode"):
            output = self.nothing_in(folder, call, folder, passed=f"; {passed}")
            self.assertEqual(output, "0 documents\n" if call == "verify" else "")
        self.write("f/g/c.ALM")
        self.assertEqual(self.lines("verify", folder)[-1], f"1 document: 1 sound; {passed}")

    def test_an_empty_path_is_told(self):
        for call in (["verify", ""], ["decode", ""], ["diff", "", ""]):
            result = run(*call)
            self.assertEqual(result.returncode, 3)
            self.assertIn(f"wenlolib {call[0]}: '': the path is empty\n", result.stderr.decode())

    def test_json_steers_no_terminal(self):
        odd = "a\x7fb\u0080c\u009bd\u009fe\u00a0f\u00bfg"
        path = self.write("a.ALM", document(odd.encode()))
        result = run("decode", "--json", path)
        self.assertIn(rb"a\u007fb\u0080c\u009bd\u009fe" + "\u00a0f\u00bfg".encode(), result.stdout)
        self.assertEqual(object_in(result.stdout)["contents"], odd)

    def test_folders_are_read_in_the_order_of_the_bytes_of_names(self):
        names = ["B.PLM", "a.PLM", "a/x.PLM", "a/\u00e9.PLM", "a-b.PLM", "b/c/d.ALM", "b.ALM", "\u00e9.ALM",
                 "10.ALM", "9.ALM"]  # fmt: skip
        for name in names:
            self.write(f"f/{name}")
        expected = sorted(names, key=lambda name: [part.encode() for part in name.split("/")])
        found = self.objects("verify", "--json", self.path("f"))
        self.assertEqual([os.path.relpath(one["path"], self.path("f")) for one in found], expected)
        self.assertNotEqual(names, expected)

    def test_a_missing_path_keeps_nobody_else_from_being_examined(self):
        good, missing = self.write("a.ALM"), self.path("missing")
        output = self.refused(
            "verify", missing, good, message=f"^wenlolib verify: {missing}: No such file or directory\n$"
        )
        self.assertIn(f"sound      {good}\n1 document: 1 sound; 1 could not be read\n", output)

    def test_unreadable_outweighs_unsound(self):
        bad, missing = self.write("a.ALM", b""), self.path("missing")
        for paths in ((bad, missing), (missing, bad)):
            self.refused("verify", *paths, message="No such file")

    def test_a_file_and_a_folder_without_permission(self):
        file, folder = self.write("a.ALM"), self.path("closed")
        os.mkdir(folder)
        os.chmod(file, 0)
        os.chmod(folder, 0)
        # Root can read everything, so another user must try.
        somebody = {"user": 65534} if os.geteuid() == 0 else {}
        try:
            result = run("verify", self.folder, **somebody)
        except PermissionError:
            self.skipTest("nobody else can run the command here")
        self.assertEqual(result.returncode, 3)
        for path in (file, folder):
            self.assertIn(f"wenlolib verify: {path}: Permission denied", result.stderr.decode())

    def test_pipes_in_folders_and_devices_are_skipped_with_a_message(self):
        fifo = self.path("f.PLM")
        os.mkfifo(fifo)
        good = self.write("a.ALM")
        output = self.refused(
            "verify", self.folder, message=f"^wenlolib verify: {fifo}: skipped: it is a pipe"
        )
        self.assertIn(f"sound      {good}\n", output)
        self.refused("verify", "/dev/zero", message="skipped: it is a device")

    def test_whoever_writes_to_a_pipe_is_left_waiting_for_a_real_reader(self):
        fifo = self.path("f.PLM")
        os.mkfifo(fifo)
        writer = subprocess.Popen(["sh", "-c", f"echo x > {fifo}"], stderr=subprocess.DEVNULL)
        time.sleep(0.2)
        self.assertEqual(run("verify", self.folder).returncode, 3)
        time.sleep(0.2)
        self.assertIsNone(writer.poll())
        with open(fifo, "rb") as file:
            self.assertEqual(file.read(), b"x\n")
        self.assertEqual(writer.wait(timeout=10), 0)

    def test_a_named_pipe_is_read(self):
        fifo = self.path("f.PLM")
        os.mkfifo(fifo)
        data = document(b"x" * 100000)
        writer = threading.Thread(target=lambda: self.write("f.PLM", data))
        writer.start()
        (found,) = self.objects("verify", "--json", fifo)
        writer.join()
        self.assertEqual((found["bytes"], found["sound"]), (len(data), True))

    def test_standard_input(self):
        for size in (0, 1, 65535 // 2 - 163, 200000):
            data = document(b"x" * size)
            result = run("verify", "--json", "-", input=data)
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            self.assertEqual(object_in(result.stdout)["bytes"], len(data))
            result = run("decode", "--contents", "-", input=data)
            self.assertEqual(result.stdout, b"x" * size)
        result = run("verify", "-", self.write("a.ALM"), input=SOUND[:-1])
        self.assertRegex(result.stdout.decode(), r"^truncated  -: .*\nsound      .*a.ALM\n2 documents")
        result = run("diff", "-", self.path("a.ALM"), input=SOUND)
        self.assertEqual((result.returncode, result.stdout), (0, b"No differences.\n"))
        self.assertIn("The file is empty", self.good("verify", "-", status=1))
        os.rename(self.path("a.ALM"), self.path("-"))
        (found,) = self.objects("verify", "--json", "./-", cwd=self.folder)
        self.assertEqual((found["path"], found["sound"]), ("./-", True))

    def test_a_previewed_document_goes_through_a_pipe(self):
        call = [COMMAND, "preview", "app", "--name", "Album", "--bytes", "-"]
        preview = subprocess.run(call, input=b"pages=12", capture_output=True)
        self.assertEqual(preview.returncode, 0, preview.stderr)
        result = run("decode", "--json", "-", input=preview.stdout)
        self.assertEqual(object_in(result.stdout)["contents"], "pages=12")

    def test_paths_from_a_file(self):
        a, b = self.write("a.ALM"), self.write("b\n.ALM", SOUND[:-1])
        folder = self.path("f")
        self.write("f/c.PLM")
        lines = self.write("lines", f"{a}\n\n{folder}".encode())
        nuls = self.write("nuls", f"{a}\0{b}\0".encode())
        found = self.objects("verify", "--json", "--files-from", lines)
        self.assertEqual([one["path"] for one in found], [a, f"{folder}/c.PLM"])
        found = self.objects("decode", "--json", "-0", "--files-from", nuls, folder, status=1)
        self.assertEqual([one["path"] for one in found], [f"{folder}/c.PLM", a, b])
        result = run("verify", "--json", "--files-from", "-", input=f"{a}\n{a}".encode())
        self.assertEqual(len(result.stdout.splitlines()), 2)
        (found,) = self.objects("verify", "--json", "--files-from", self.write("dash", b"-"),
                                cwd=os.path.dirname(self.write("g/-")))  # fmt: skip
        self.assertEqual((found["path"], found["sound"]), ("./-", True))
        for names in (b"", b"\n\n"):
            result = run("verify", "--files-from", self.write("none", names))
            self.assertEqual(result.returncode, 1)
            self.assertIn(b"none: there is no path in it", result.stderr)
        self.refused("verify", "--files-from", self.path("missing"), message="missing: No such file")

    def test_only_the_paths_of_what_is_not_sound(self):
        a = self.write("f/a.ALM", SOUND[:-1])
        b = self.write("f/b\n\x1b.ALM", SOUND[:-2])
        self.write("f/c.ALM")
        self.write("f/d.ALM", repaired())
        folder = self.path("f")
        self.assertEqual(self.good("verify", "-l", folder, status=1), f"{a}\n{b}\n")
        self.assertEqual(self.good("verify", "--list", "-0", folder, status=1), f"{a}\0{b}\0")
        self.assertEqual(self.good("verify", "-lq", self.path("f/c.ALM")), "")
        self.assertIn("\\n\\x1B.ALM\n", on_terminal("verify", "-l", folder)[1])
        again = run("verify", "--files-from", "-", "-l0", input=run("verify", "-l0", folder).stdout)
        self.assertEqual(again.stdout.decode(), f"{a}\0{b}\0")

    def test_links_lead_to_documents_but_not_round_in_circles(self):
        document_path = self.write("f/g/a.ALM")
        os.symlink(document_path, self.path("f/link.ALM"))
        os.symlink(self.path("f"), self.path("f/g/loop"))
        os.symlink(self.path("f"), self.path("f/g/loop.ALM"))
        found = self.objects("verify", "--json", self.path("f"))
        self.assertEqual({one["path"] for one in found}, {document_path, self.path("f/link.ALM")})
        os.symlink(self.path("f"), self.path("named"))
        self.assertEqual(len(self.objects("verify", "--json", self.path("named"))), 2)

    def test_a_link_that_leads_nowhere_is_told_of(self):
        os.symlink("nowhere", self.path("a.ALM"))
        self.refused("verify", self.folder, message="a.ALM: No such file")

    def test_several_jobs_answer_in_the_same_order(self):
        made = random.Random(4)
        kinds = [SOUND] + [data for data, _, _ in BROKEN.values()]
        for i in range(700):
            padding = made.choice((0, 10, 3000))
            data = made.choice(kinds) if padding == 0 else document(b"x" * padding)
            self.write(f"{i % 7}/{i}.ALM", data)
        os.mkfifo(self.path("3/pipe.ALM"))
        for call in (["verify"], ["verify", "--json"], ["verify", "-q"], ["decode"],
                     ["decode", "--json", "--redact"], ["decode", "--contents"]):  # fmt: skip
            one = run(*call, self.folder)
            self.assertEqual(one.returncode, 3)
            self.assertGreater(len(one.stdout), 1000)
            for jobs in ("4", "16"):
                several = run(*call, "--jobs", jobs, self.folder)
                self.assertEqual(several.returncode, 3)
                self.assertEqual(several.stdout, one.stdout)
                self.assertEqual(several.stderr, one.stderr)

    def test_paths_are_taken_as_they_stand_whatever_the_root_is(self):
        here, root = self.write("a.ALM", document(b"here")), self.path("root")
        # Below the root, the same path leads to another document, and one more path exists.
        self.write("root" + here, document(b"there")[:-1])
        below = f"/{os.path.basename(self.folder)}.ALM"  # nothing is there outside the root
        self.write("root" + below)
        for place in ([], ["--root", root]):
            (found,) = self.objects(*place, "verify", "--json", here)
            self.assertEqual((found["path"], found["sound"]), (here, True))
            (found,) = self.objects("decode", "--json", here, *place)
            self.assertEqual(found["contents"], "here")
            self.good("diff", *place, here, here)
            self.refused("verify", *place, below, message=f"^wenlolib verify: {below}: No such file")
        (found,) = self.objects("--root", root, "verify", "--json", "a.ALM", cwd=self.folder)
        self.assertEqual((found["path"], found["sound"]), ("a.ALM", True))

    def test_wrong_usage_says_what_is_wrong(self):
        path = self.write("a.ALM")
        self.misused("verify", message="PATH is required")
        self.misused("verify", "--list", "--json", path, message="--list: cannot be used with --json")
        self.misused("verify", "-0", path, message="--null: needs --list or --files-from")
        self.misused("decode", "-0", path, message="--null: needs --files-from")
        for twice in (["verify", "-", "-"], ["decode", "-", "--files-from", "-"], ["diff", "-", "-"]):
            self.misused(*twice, message="standard input can be read only once")
        self.misused("verify", "--color", "red", path, message="--color")
        self.misused("verify", "--jobs", "0", path, message="--jobs")
        self.misused("verify", "--jobs", "many", path, message="--jobs")
        self.misused("verify", "--nonsense", path, message="--nonsense")
        self.misused("decode", message="PATH is required")
        self.misused("decode", "--contents", "--json", path, message="--contents: cannot be used")
        self.misused("decode", "--contents", "--redact", path, message="--contents: cannot be used")
        self.misused("diff", path, message="B is required")
        self.misused("diff", path, path, path, message="a.ALM: one argument too many")

    def test_help_ends_with_examples_within_80_columns(self):
        for call in ("verify", "decode", "diff"):
            output = self.good(call, "--help")
            self.assertRegex(output, rf"Examples:\n(  .*wenlolib {call} .*\n)+\n*$")
            self.assertLessEqual(max(map(len, output.splitlines())), 80)

    def test_a_full_disk_is_no_success(self):
        with open("/dev/full", "wb") as full:
            result = run("verify", self.write("a.ALM"), stdout=full)
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"standard output: No space left", result.stderr)


class TerminalTest(ReceivingTest):
    def test_a_pipe_gets_neither_colours_nor_progress(self):
        folder = self.many(30000)
        for call in (["verify"], ["decode"], ["decode", "--json"]):
            result = run(*call, folder)
            self.assertEqual(result.stderr, b"")
            self.assertNotIn(b"\x1b", result.stdout)

    def test_a_terminal_gets_colours(self):
        good, bad = self.write("a.ALM"), self.write("b.ALM", SOUND[:-1])
        status, sent = on_terminal("verify", good, bad)
        self.assertEqual(status, 1)
        self.assertIn(f"\x1b[32msound      \x1b[0m{good}\n", sent)
        self.assertIn("\x1b[31mtruncated  \x1b[0m", sent)
        self.assertIn("\x1b[33mrepaired", on_terminal("verify", self.write("c.ALM", repaired()))[1])
        self.assertIn("\x1b[", on_terminal("decode", good)[1])
        self.assertIn("\x1b[31m- ", on_terminal("diff", good, self.write("d.ALM", repaired()))[1])

    def test_no_color_and_terminals_without(self):
        paths = [self.write("a.ALM"), self.write("b.ALM", repaired())]
        for call in ("verify", "decode", "diff"):
            for variables in ({"NO_COLOR": "1"}, {"TERM": "dumb"}):
                sent = on_terminal(call, *paths, **variables)[1]
                self.assertNotIn("\x1b[", sent)
                self.assertIn("b.ALM", sent)
            self.assertIn("\x1b[", on_terminal(call, *paths, NO_COLOR="")[1])

    def test_colours_as_asked_for(self):
        paths = [self.write("a.ALM"), self.write("b.ALM", repaired())]
        for call in ("verify", "decode", "diff"):
            for place in ([call, "--color"], ["--color"]):
                end = [] if place[0] == call else [call]
                told = run(*place, "always", *end, *paths, environment={"NO_COLOR": "1"})
                self.assertIn(b"\x1b[", told.stdout)
                self.assertNotIn("\x1b[", on_terminal(*place, "never", *end, *paths)[1])
                self.assertIn("\x1b[", on_terminal(*place, "auto", *end, *paths)[1])
                self.assertNotIn(b"\x1b[", run(*place, "auto", *end, *paths).stdout)

    def test_lines_are_broken_for_the_terminal_alone(self):
        path = self.write("a.ALM", SOUND[:-1])
        self.assertEqual(len(self.good("verify", path, status=1).splitlines()), 2)
        for columns in (50, 80):
            for call in ("verify", "decode"):
                sent = on_terminal(call, path, columns=columns, NO_COLOR="1")[1]
                longest = max(
                    (len(line) for line in sent.splitlines() if " " in line.strip()), default=0
                )
                room = max(columns, len(path) + 13, len(ID) + 13)  # words are never broken
                self.assertLessEqual(longest, room, sent)

    def test_progress_with_count_and_rate(self):
        folder = self.many(20000, data=SOUND[:-1])
        for call in (["verify", "--quiet"], ["decode", "--json"], ["verify", "--jobs", "2"]):
            bar = r"\r\x1b\[K\[#* *\] +\d+%  [\d,]+ of 20,000 documents, "
            status, sent = on_terminal_into_slow_pipe(*call, folder, until=bar)
            self.assertEqual(status, 1)
            self.assertRegex(sent, bar)
            self.assertRegex(sent, r"documents, [\d,]+ a second")
            self.assertTrue(sent.endswith("\r\x1b[K"), sent[-100:])  # gone at the end

    def test_progress_stays_in_sight_while_output_goes_elsewhere(self):
        folder = self.many(20000)
        bar = r"of 20,000 documents, "
        sent = on_terminal_into_slow_pipe("decode", "--json", folder, until=bar)[1]
        lines = sent.split("\r\x1b[K")
        # The first is what was sent before the first line, the last what follows its removal.
        self.assertEqual([line for line in lines[1:-1] if " documents, " not in line], [], sent)
        with open(self.path("output"), "wb") as output:
            sent = on_terminal("decode", "--json", self.many(60000, name="more"), stdout=output)[1]
        self.assertIn(" documents, ", sent)

    def interrupted(self, sign, *arguments, seen=b"documents, ", **options):
        """Sends a signal once this is on the terminal; answers the status and the last line sent."""
        child, ours = start_on_terminal(*arguments, **options)
        sent = b""
        for piece in pieces_sent(ours):
            sent += piece
            if seen in sent:
                child.send_signal(sign)
                seen = b"never"
        return child.wait(timeout=120), sent.decode().replace("\r\n", "\n").split("\x1b[K")[-1]

    def test_an_interrupt_says_how_far_it_came(self):
        folder, waiting = self.many(100000, data=document(b"x" * 4000)), self.path("pipe")
        os.mkfifo(waiting)  # so that no machine is through before the signal
        for sign in (signal.SIGINT, signal.SIGTERM):
            for options in (["verify"], ["verify", "--jobs", "2"], ["decode", "--json"]):
                with open(self.path("output"), "wb") as output:
                    status, last = self.interrupted(sign, *options, folder, waiting, stdout=output)
                self.assertEqual(status, -sign)
                told = re.fullmatch(rf"wenlolib {options[0]}: interrupted after ([\d,]+) (?:of 100,001 )?"
                                    r"documents\n", last)  # fmt: skip
                self.assertTrue(told, last)
                with open(self.path("output"), "rb") as output:
                    written = output.read().splitlines()
                self.assertEqual(len(written), int(told[1].replace(",", "")))
                self.assertTrue(written[-1].endswith(b".ALM" if options[0] == "verify" else b"}"))

    def test_an_interrupt_ends_what_waits(self):
        os.mkfifo(self.path("pipe"))
        # Without its alarm the command must end at once by itself; a thread that waits needs it.
        for ignored, call in [((signal.SIGALRM,), ["verify", "-"]),
                              ((signal.SIGALRM,), ["verify", "--files-from", "-"]),
                              ((), ["decode", self.path("pipe")]),
                              ((), ["decode", "--jobs", "2", self.path("pipe")])]:  # fmt: skip
            child, ours = start_on_terminal(*call, ignored=ignored)
            while not handles(child.pid, signal.SIGTERM):
                time.sleep(0.01)
            time.sleep(0.1)
            child.send_signal(signal.SIGTERM)
            self.assertEqual(child.wait(timeout=20), -signal.SIGTERM)
            self.assertEqual(shown(pieces_sent(ours)),
                             f"\r\x1b[Kwenlolib {call[0]}: interrupted after 0 documents\n")

    def test_a_signal_that_is_ignored_stays_ignored(self):
        path = self.path("pipe")
        os.mkfifo(path)
        child = subprocess.Popen(
            [COMMAND, "verify", path], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))  # fmt: skip
        while not handles(child.pid, signal.SIGTERM):
            time.sleep(0.01)
        child.send_signal(signal.SIGINT)
        self.write("pipe")
        self.assertIn(b"1 sound", child.communicate(timeout=60)[0])

    def test_progress_does_not_stand_between_the_lines(self):
        folder = self.many(20000)
        sent = on_terminal("verify", folder, pauses=5, NO_COLOR="1")[1]
        self.assertRegex(sent, r"\r\x1b\[K[^\n]* a second")
        left = re.sub(r"[^\n]*\r\x1b\[K", "", sent)
        lines = left.splitlines()
        self.assertEqual(len(lines), 20001)
        self.assertEqual(lines[-1], "20,000 documents: 20,000 sound")
        for line in lines[:-1]:
            self.assertRegex(line, r"^sound      .*\.ALM$")

    def test_names_cannot_steer_the_terminal(self):
        path = self.write("a\x1b[31m\nb\u202e.ALM")
        for call in ("verify", "decode"):
            output = self.good(call, path)
            self.assertIn(r"a\x1B[31m\nb\u{202E}.ALM", output)
            self.assertNotIn("\x1b", output)
        result = run("verify", self.path("\x1bmissing"))
        self.assertIn(rb"\x1Bmissing: No such file", result.stderr)


class DecodeTest(ReceivingTest):
    def test_fields_and_contents_for_a_person(self):
        path = self.write("a.PLM", document(b"ink C71\nM64\n", "printer-older", "X", Locale=""))
        output = self.good("decode", path, environment={"TZ": "Asia/Tokyo"})
        self.assertEqual(
            output,
            f"{path}\n"
            "  Verdict    sound\n"
            f"  Size       {os.path.getsize(path)} B\n"
            "  Kind       printer log, older tag type\n"
            "  Version    1.0\n"
            "  OSVersion  M.6.1.55\n"
            f"  Date       {DATE}\n"
            "  Locale     (empty)\n"
            f"  ID         {ID}\n"
            "  DeviceID   MFG:Orvan;MDL:QX 200;\n"
            "  SN         QX200-0004711\n"
            "  ROMVER     2.14\n"
            "  Cipher     XOR\n"
            "  Contents   12 B\n"
            "  | ink C71\n"
            "  | M64\n"
            "\n",
        )

    def test_dates_from_elsewhere_are_shown_in_local_time_too(self):
        output = self.good("decode", self.write("a.ALM"), environment={"TZ": "America/St_Johns"})
        self.assertIn(f"  Date       {DATE} (here 2024-03-14 21:35:07 -02:30)\n", output)
        for odd in ("yesterday", "2024-13-01T00:00:00+00:00", "2024-03-15T09:05:07"):
            output = self.good("decode", self.write("a.ALM", document(date=odd)))
            self.assertIn(f"  Date       {odd}\n", output)
        self.assertIn(
            "(here 2024-03-15 00:05:07 +00:00)",
            self.good("decode", self.write("a.ALM", document(date=DATE[:-3] + "00")),
                      environment={"TZ": "UTC"}),
        )  # fmt: skip

    def test_control_characters_are_made_visible(self):
        contents = b"a\x1b[31mred\x07\r\n\tb\x00c\x7f" + "\u202e\u009b\u200d東".encode()
        output = self.good("decode", self.write("a.ALM", document(contents)))
        self.assertIn("  | a\\x1B[31mred\\x07\\x0D\n", output)
        self.assertIn("  | \tb\\x00c\\x7F\\u{202E}\\u{009B}\\u{200D}東\n", output)

    def test_values_that_nobody_can_see_are_spelled_out(self):
        hidden = {"Locale": "\u200b\u2066", "OSVersion": "\u202e" * 20, "Version": "&#x9;\u00ad"}
        output = self.good("decode", self.write("a.ALM", document(**hidden)))
        self.assertTrue(all(line.isprintable() for line in output.split("\n")), output)
        self.assertIn("  Version    \\t\\u{00AD}\n", output)
        self.assertIn("  OSVersion  " + "\\u{202E}" * 20 + "\n", output)
        self.assertIn("  Locale     \\u{200B}\\u{2066}\n", output)

    def test_long_contents_are_whole(self):
        lines = [f"line {i}: " + "x" * (i % 200) for i in range(20000)]
        path = self.write("a.ALM", document("\n".join(lines).encode()))
        output = self.good("decode", path).splitlines()
        self.assertEqual([line[4:] for line in output if line.startswith("  | ")], lines)

    def test_json_of_every_layout(self):
        for layout in WRAPPERS:
            data = document("Début\0 \u2028".encode(), layout, Version="A&amp;B")
            path = self.write("a.PLM", data)
            (found,) = self.objects("decode", "--json", path)
            fields = {"version": "A&B", "os_version": "M.6.1.55", "date": DATE, "locale": "en_US",
                      "id": ID}  # fmt: skip
            if layout == "printer-older":
                fields.update(device_id=PRINTER["DeviceID"], sn=PRINTER["SN"], romver="2.14")
            expected = {"schema": 1, "type": "document", "path": path, "bytes": len(data), "sound": True, "fault": "none",
                        "layer": "none", "offset": None, "field": None, "explanation": None,
                        "redacted": False, "trusted": True, "layout": layout.replace("-older", "_older_tag"),
                        "fields": fields, "cipher": "RC4", "contents": "Début\0 \u2028",
                        "contents_bytes": 11}  # fmt: skip
            self.assertEqual(found, expected)

    def test_json_of_every_broken_document(self):
        for name, (data, fault, layer) in BROKEN.items():
            with self.subTest(name):
                path = self.write("a.ALM", data)
                (found,) = self.objects("decode", "--json", path, status=status_for(fault))
                self.assertEqual((found["fault"], found["layer"]), (fault, layer))
                legible = fault != "foreign" and name != "nothing"
                self.assertEqual(found["layout"], "application" if legible else None)
                trusted = layer == "contents" or fault == "repaired"
                self.assertIs(found["trusted"], trusted)
                if legible and name != "cut in a field":
                    self.assertEqual(found["fields"]["id"], ID)
                text = self.good("decode", path, status=status_for(fault))
                self.assertEqual("  Nothing vouches for these values" in text, legible and not trusted)
                self.assertIn(f"  Verdict    {word_for(fault)}: ", text)

    def test_what_an_unsound_document_says_is_shown(self):
        (found,) = self.objects("decode", "--json", self.write("a.ALM", repaired()))
        self.assertEqual((found["contents"], found["fields"]["locale"]), ("jobs=3\n", "a&b"))
        (found,) = self.objects("decode", "--json", self.write("b.ALM", document(b"\xff!")), status=1)
        self.assertEqual((found["contents"], found["contents_hex"]), (None, "FF21"))
        path = self.write("c.ALM", document(b"\0\0", date=""))
        (found,) = self.objects("decode", "--json", path, status=1)
        self.assertEqual((found["contents"], found["contents_bytes"]), (None, 2))
        self.assertIn("there is no date, and so no key", self.good("decode", path, status=1))

    def test_a_document_with_one_thing_broken_is_read_all_the_same(self):
        checksum = SOUND[CHECKSUM_AT : CHECKSUM_AT + 32]
        for data in (b" " + SOUND, SOUND + b"\n", b"\xef\xbb\xbf" + SOUND, SOUND[:-1],
                     b'<?xml version="1.0"?>\n' + SOUND, SOUND.replace(checksum, checksum.lower()),
                     edited("</Encrypted>", "A</Encrypted>")):  # fmt: skip
            path = self.write("a.ALM", data)
            (found,) = self.objects("decode", "--json", path, status=1)
            self.assertEqual((found["sound"], found["trusted"]), (False, False))
            self.assertEqual(found["fields"], {"version": "1.0", "os_version": "M.6.1.55", "date": DATE,
                                               "locale": "en_US", "id": ID})  # fmt: skip
            self.assertEqual((found["contents"], found["contents_bytes"]), ("jobs=3\n", 7))
            text = self.good("decode", path, status=1)
            self.assertIn("  Nothing vouches for these values: they are only what was found in the file.\n"
                          "  | jobs=3\n", text)  # fmt: skip
            result = run("decode", "--contents", path)
            self.assertEqual((result.returncode, result.stdout), (1, b"jobs=3\n"))
        (found,) = self.objects("decode", "--json", self.write("a.ALM", SOUND[: PAYLOAD_AT - 1]), status=1)
        self.assertEqual((found["cipher"], found["contents"], found["contents_bytes"]), (None,) * 3)

    def test_a_declaration_is_the_choice_of_the_serialiser(self):
        path = self.write("a.ALM", b'<?xml version="1.0" encoding="UTF-8"?>' + SOUND)
        (found,) = self.objects("decode", "--json", path)
        self.assertEqual((found["sound"], found["contents"]), (True, "jobs=3\n"))

    def test_redaction_shows_nothing_if_a_hidden_value_was_not_found(self):
        data = document(ID.encode(), "printer-older", SN="S123456")
        for lost in (b"<ID>", b"<SN>"):
            path = self.write("a.PLM", data.replace(lost, b"<XX>"))
            (found,) = self.objects("decode", "--redact", "--json", path, status=1)
            self.assertEqual((found["fields"], found["contents"]), (None, None))
            self.assertIs(found["explanation"], None)
            text = self.good("decode", "--redact", path, status=1)
            self.assertNotIn("Locale", text)
        path = self.write("a.PLM", data + b"\n")
        (found,) = self.objects("decode", "--redact", "--json", path, status=1)
        self.assertEqual((found["fields"]["id"], found["contents"]), (None, "{[redacted]}"))

    def test_a_file_that_cannot_be_read_has_a_line_in_json(self):
        good, missing = self.write("a.ALM"), self.path("missing")
        expected = {"schema": 1, "type": "verdict", "path": missing, "bytes": None, "sound": False,
                    "fault": "unreadable", "layer": "none", "offset": None, "field": None,
                    "explanation": "No such file or directory"}  # fmt: skip
        for call in (["verify"], ["verify", "--quiet"], ["verify", "--jobs", "2"], ["decode"],
                     ["decode", "--redact"]):  # fmt: skip
            found = objects_in(self.refused(*call, "--json", missing, good, message="missing: No such"))
            self.assertEqual(found[0], expected)
            self.assertEqual([each["sound"] for each in found[1:]], [] if "--quiet" in call else [True])
        for pair in ([missing, good], [good, missing]):
            (found,) = objects_in(self.refused("diff", "--json", *pair, message="missing: No such"))
            self.assertEqual(found, expected)
        empty = self.write("b.ALM", b"")
        (found,) = objects_in(self.refused("diff", "--json", good, empty, message="b.ALM: truncated"))
        self.assertEqual((found["type"], found["path"], found["fault"]), ("verdict", empty, "truncated"))

    def test_a_name_that_is_not_utf8_in_json(self):
        path = os.fsencode(self.folder) + b"/\xff.ALM"
        with open(path, "wb") as file:
            file.write(SOUND)
        (found,) = self.objects("verify", "--json", self.folder)
        self.assertEqual((found["path"], found["path_hex"]), (None, path.hex().upper()))

    def test_contents_alone_to_the_byte(self):
        all_contents = [b"", b"x", b"a\r\n\tb\n\n", "\ufeff東京 🖨\0".encode(), b"\n" * 70000]
        paths = []
        for i, contents in enumerate(all_contents):
            for marker in "RX":
                paths.append(self.write(f"{i}{marker}.ALM", document(contents, marker=marker)))
                result = run("decode", "--contents", paths[-1])
                self.assertEqual((result.returncode, result.stdout, result.stderr), (0, contents, b""))
        result = run("decode", "--contents", *paths)
        self.assertEqual(result.stdout, b"".join(c + c for c in all_contents))

    def test_contents_alone_of_documents_that_are_not_sound(self):
        for data, contents, status in ((repaired(), b"jobs=3\n", 0), (document(b"a\xff"), b"a\xff", 1),
                                       (b"", b"", 1)):
            path = self.write("a.ALM", data)
            result = run("decode", "--contents", path)
            self.assertEqual((result.returncode, result.stdout), (status, contents))
            self.assertRegex(result.stderr.decode(), f"^wenlolib decode: {path}: [a-z]+: .*\n$")

    def test_redaction_leaves_neither_value_anywhere(self):
        bare = ID[1:-1]
        data = document(
            f"serial {PRINTER['SN']}, account {ID}, {bare.lower()}\n".encode(),
            "printer-older",
            DeviceID="MFG:Orvan;SERN:qx200-0004711;",
        )
        altered = data.replace(b"2.14", b"2.15")
        broken = data.replace(b"</SN>", b"</SM>")
        for document_ in (data, altered, broken, data[:-9]):
            path = self.write("QX200-0004711_1.PLM", document_)
            plain = run("decode", path).stdout.decode().lower()
            for options in ([], ["--json"]):
                result = run("decode", "--redact", *options, path)
                output = (result.stdout + result.stderr).decode().lower()
                if document_ in (data, altered, broken, data[:-9]):
                    self.assertIn(bare.lower(), plain)
                    self.assertIn("[redacted]_1.plm", output)
                    self.assertNotIn(PRINTER["SN"].lower(), output)
                self.assertNotIn(bare.lower(), output)
                self.assertIn("verdict" if not options else "fault", output)
        (found,) = self.objects("decode", "--redact", "--json", self.write("a.PLM", data))
        self.assertIs(found["redacted"], True)
        self.assertEqual((found["fields"]["id"], found["fields"]["sn"]), (None, None))
        self.assertEqual(found["fields"]["device_id"], "MFG:Orvan;SERN:[redacted];")
        self.assertEqual(
            found["contents"], "serial [redacted], account {[redacted]}, [redacted]\n"
        )

    def test_redaction_of_values_too_short_to_search_for(self):
        data = document(b"pages=12", "printer-older", SN="12", ID="")
        (found,) = self.objects("decode", "--redact", "--json", self.write("a.PLM", data))
        self.assertEqual((found["fields"]["id"], found["fields"]["sn"]), (None, None))
        self.assertEqual(found["contents"], "pages=12")
        self.assertIn("  SN         (redacted)\n", self.good("decode", "--redact", self.path("a.PLM")))

    def test_memory_grows_with_the_number_of_documents_only_by_names(self):
        with open(COMMAND, "rb") as program:
            if b"__asan_init" in program.read():
                self.skipTest("the address sanitizer keeps what was freed")
        numbers = (10000, 200000)
        folders = [self.many(number, name=f"{number:06}") for number in numbers]
        for call in (["decode", "--json"], ["verify"]):
            for options in ([], ["--jobs", "4"]):
                peaks = [self.peak(number, *call, *options, folder)
                         for number, folder in zip(numbers, folders)]  # fmt: skip
                grown = (peaks[1] - peaks[0]) * 1024 / (numbers[1] - numbers[0])
                self.assertLess(grown, 400, (call, options, peaks))

    def peak(self, number, *arguments):
        """The most memory, in KiB, that a run over these documents takes. It is looked up while the
        command waits for its last output to be read, since wait4 would count this process too."""
        *call, folder = arguments
        # All documents are alike, so all lines are; the summary comes after them.
        line = self.lines(*call, f"{folder}/000000.ALM")[0] + "\n"
        reading, writing = os.pipe()
        fcntl.fcntl(writing, fcntl.F_SETPIPE_SZ, 4096)
        with (
            open(reading, "rb") as output,
            subprocess.Popen([COMMAND, *arguments], stdout=writing) as child,
        ):
            os.close(writing)
            left = number * len(line) - 32768
            while left > 0 and (piece := output.read(min(left, 1 << 20))):
                left -= len(piece)
            with open(f"/proc/{child.pid}/status") as status:
                (peak,) = [int(line.split()[1]) for line in status if line.startswith("VmHWM:")]
            rest = output.read().decode()
        self.assertEqual(child.returncode, 0)
        summary = f"{number:,} documents: {number:,} sound\n" if call[0] == "verify" else ""
        self.assertEqual(len(rest), 32768 + len(summary))
        self.assertTrue(rest.endswith(summary), rest[-200:])
        return peak


class DiffTest(ReceivingTest):
    def differ(self, a, b, *options, status=1):
        return self.good("diff", *options, self.write("a.PLM", a), self.write("b.PLM", b), status=status)

    def test_the_same(self):
        self.assertEqual(self.differ(SOUND, SOUND, status=0), "No differences.\n")
        found = object_in(self.differ(SOUND, SOUND, "--json", status=0))
        self.assertEqual(found["same"], True)
        self.assertEqual((found["differences"], found["contents"]), ([], {"same": True, "changes": []}))

    def test_field_by_field(self):
        output = self.differ(document(Locale=""), document(layout="printer-older", marker="X"))
        self.assertEqual(
            output,
            f"--- {self.path('a.PLM')}\n+++ {self.path('b.PLM')}\n"
            "Layout\n- OrvanQXApplication\n+ OrvanQXPrinter\n"
            "Locale\n- (empty)\n+ en_US\n"
            "DeviceID\n- (missing)\n+ MFG:Orvan;MDL:QX 200;\n"
            "SN\n- (missing)\n+ QX200-0004711\n"
            "ROMVER\n- (missing)\n+ 2.14\n"
            "Cipher\n- RC4\n+ XOR\n"
            "Contents: the same, 7 B\n",
        )
        found = object_in(self.differ(document(Locale=""), document(Locale="ja"), "--json"))
        self.assertEqual(found["differences"], [{"name": "locale", "a": "", "b": "ja"}])

    def test_contents_as_text(self):
        lines = [f"line {i}\n" for i in range(30)]
        changed = lines[:9] + ["new\x1b\n"] + lines[10:20] + lines[21:] + ["last"]
        output = self.differ(document("".join(lines).encode()), document("".join(changed).encode()))
        self.assertEqual(
            output.split("Contents: ")[1],
            "230 B and 224 B\n"
            "@@ -7,7 +7,7 @@\n line 6\n line 7\n line 8\n-line 9\n+new\\x1B\n line 10\n line 11\n line 12\n"
            "@@ -18,7 +18,6 @@\n line 17\n line 18\n line 19\n-line 20\n line 21\n line 22\n line 23\n"
            "@@ -28,3 +27,4 @@\n line 27\n line 28\n line 29\n+last\n\\ no line break at the end\n",
        )

    def test_a_line_that_is_not_utf8_stands_in_json_as_digits(self):
        a, b = document(b"one\n\xff\xfe\nthree\n"), document(b"one\ntwo\nthree\n")
        hidden = [{"line": None, "line_hex": "FFFE0A"}]
        for first, second, removed, added in [(a, b, hidden, ["two\n"]), (b, a, ["two\n"], hidden)]:
            found = object_in(self.differ(first, second, "--json"))
            self.assertEqual(found["contents"]["changes"],
                             [{"a_line": 2, "b_line": 2, "removed": removed, "added": added}])

    def test_changes_lead_from_the_one_text_to_the_other(self):
        made = random.Random(7)
        sizes = []
        for _ in range(60):
            a = [made.choice("abcd") + "\n" for _ in range(made.randrange(40))]
            b = [line for line in a if made.random() > 0.2]
            for _ in range(made.randrange(6)):
                b.insert(made.randrange(len(b) + 1), made.choice("abcde") + "\n")
            same = a == b
            found = object_in(self.differ(document("".join(a).encode()), document("".join(b).encode()),
                                           "--json", status=0 if same else 1))  # fmt: skip
            changes = found["contents"]["changes"]
            self.assertEqual(applied(a, changes), b)
            edits = sum(len(change["removed"]) + len(change["added"]) for change in changes)
            self.assertEqual(edits, len(a) + len(b) - 2 * common_length(a, b))
            sizes.append(edits)
        self.assertGreater(max(sizes), 10)

    def test_texts_that_have_nothing_in_common(self):
        a, b = ([f"{side}{i}\n" for i in range(20000)] for side in "ab")
        found = object_in(self.differ(document("".join(a).encode()), document("".join(b).encode()),
                                       "--json"))  # fmt: skip
        self.assertEqual(applied(a, found["contents"]["changes"]), b)

    def test_repaired_differs_from_sound_only_in_the_verdict(self):
        found = object_in(self.differ(repaired(), document(Locale="a&amp;b"), "--json"))
        self.assertEqual(found["differences"], [{"name": "fault", "a": "repaired", "b": "none"},
                                                {"name": "layer", "a": "checksum", "b": "none"}])

    def test_contents_that_nobody_can_decrypt(self):
        unknown = document(b"\0\0", date="")
        self.assertEqual(self.differ(unknown, unknown, status=0), "No differences.\n")
        for other, size in ((SOUND, 7), (document(b"\0\0\0", date=""), 3)):
            expected = f"Contents: 2 B and {size} B, at least one cannot be decrypted\n"
            self.assertIn(expected, self.differ(unknown, other))

    def test_what_is_not_sound_is_compared_as_far_as_it_can_be_read(self):
        good, bad = self.write("a.ALM"), self.write("b.ALM", SOUND[:-1])
        result = run("diff", good, bad)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"\nVerdict\n- sound\n+ truncated\nContents: the same, 7 B\n", result.stdout)
        self.assertRegex(result.stderr.decode(), f"^wenlolib diff: {bad}: truncated: at byte .*; the rest is "
                         "missing. Compared as far as it can be read; nothing vouches for its values.\n$")
        found = object_in(run("diff", "--json", good, bad).stdout)
        self.assertEqual((found["a_trusted"], found["b_trusted"]), (True, False))

    def test_what_cannot_be_compared_is_trouble(self):
        good = self.write("a.ALM")
        for bad in (b"", b"<a>", b"<OrvanQXApplication"):
            path = self.write("b.ALM", bad)
            for pair in ((good, path), (path, good), (path, path)):
                output = self.refused("diff", *pair, message=f"^wenlolib diff: {path}: ")
                self.assertEqual(output, "")
        self.refused("diff", good, self.path("missing"), message="missing: No such file")
        self.refused("diff", self.folder, good, message="it is a folder")


def applied(a, changes):
    """`a` after the changes."""
    result, at = [], 0
    for change in changes:
        first = change["a_line"] - 1
        result += a[at:first] + change["added"]
        assert a[first : first + len(change["removed"])] == change["removed"]
        assert len(result) == change["b_line"] - 1 + len(change["added"])
        at = first + len(change["removed"])
    return result + a[at:]


def common_length(a, b):
    """The length of the longest common subsequence."""
    row = [0] * (len(b) + 1)
    for line in a:
        before = row[:]
        for j, other in enumerate(b):
            row[j + 1] = before[j] + 1 if line == other else max(before[j + 1], row[j])
    return row[-1]


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit("usage: receiving_test.py COMMAND [unittest's arguments]")
    COMMAND = os.path.abspath(sys.argv.pop(1))
    skips.main()
