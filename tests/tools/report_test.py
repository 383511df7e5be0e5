#!/usr/bin/env python3
"""Tests of `wenlolib report`, some of them in the browser Chromium. Argument: the path of the
wenlolib command."""

import html.parser
import os
import re
import resource
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)

import skips
from survey_documents import IDENTIFIER, application_document, printer_document
from tool_world import ToolTest

CHROMIUM = shutil.which("chromium")
POLICY = "default-src 'none'; style-src 'unsafe-inline'"
MARK = "document.documentElement.setAttribute('data-hostile','ran')"
SERIAL = "QX200-0004711"


def hostile_values(port):
    """Values that run a script or fetch something where they are taken for markup."""
    there = f"http://127.0.0.1:{port}"
    return [f"<script>{MARK}</script>",
            f"</style><script>{MARK}</script><style>@import url({there}/style);",
            f"<img src='{there}/image' onerror=\"{MARK}\">",
            f"\"><svg onload={MARK}>' onfocus='{MARK}' autofocus x=\"",
            f"</pre></details></bdi></title><iframe src={there}/frame></iframe>",
            f"<link rel=stylesheet href={there}/link><meta http-equiv=refresh content='0;{there}/'>",
            "&lt;script&gt;&#60;b&#62;&amp;", "\u202egnp.exe\u2066\u200b", "<!--", "]]><![CDATA["]


class Server:
    """Counts who calls."""

    def __init__(self):
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]
        self.calls = []
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        while True:
            try:
                caller, _ = self.socket.accept()
            except OSError:
                return
            with caller:
                self.calls.append(caller.recv(200))

    def close(self):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.socket.close()


class Elements(html.parser.HTMLParser):
    """What a page is made of."""

    def __init__(self, page):
        super().__init__()
        self.names, self.attributes, self.ids, self.links, self.text = [], set(), [], [], ""
        self.feed(page)

    def handle_starttag(self, tag, attrs):
        self.names.append(tag)
        for name, value in attrs:
            self.attributes.add(name)
            if name == "id":
                self.ids.append(value)
            if name == "href":
                self.links.append(value)

    def handle_data(self, data):
        self.text += data


ELEMENTS = {"html", "head", "meta", "title", "style", "body", "header", "h1", "h2", "h3", "p", "nav",
            "ul", "ol", "li", "a", "main", "section", "details", "summary", "b", "span", "div", "dl",
            "dt", "dd", "bdi", "time", "pre"}
ATTRIBUTES = {"lang", "charset", "http-equiv", "content", "name", "aria-label", "href", "id", "class",
              "dir"}


class Report(ToolTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.page = os.path.join(self.folder, "recorded.html")

    def report(self, *call, status=0):
        self.expect(status, "report", "--force", self.page, *call)
        with open(self.page, encoding="utf-8", newline="") as file:
            return file.read()

    def install_three(self):
        self.install()
        self.write("PLM/QX200_1.PLM", printer_document("2026-10-31T23:30:00+00:00", "jobs=1"))
        self.write("PLM/QX200_2.PLM", printer_document("2026-11-02T00:00:00+09:00", "jobs=2")[:-9])
        self.write("ALM/Quillmere_Log_Album_2611.ALM",
                   application_document("2026-11-01T12:00:00+09:00", f"launches=14 {SERIAL}"))

    def install_hostile(self, port, count=60):
        self.install()
        values = hostile_values(port)
        for i in range(count):
            value = values[i % len(values)]
            date = f"2026-11-{i % 28 + 1:02d}T12:00:00+09:00"
            document = (printer_document(date, value, value, value + str(i), value, value) if i % 2
                        else application_document(date, value, value, value))
            name = value.replace("/", "|")[:60]
            place = f"PLM/{name}_{i}.PLM" if i % 2 else f"ALM/Quillmere_Log_{name}{i}_2611.ALM"
            self.write(place, document if i % 7 else document[:-3])
        self.write("PLM/" + values[2].replace("/", "|"), b"")


class Page(Report):
    def test_it_has_what_is_recorded_and_what_is_allowed(self):
        self.install_three()
        page = self.report()
        elements = Elements(page)
        text = " ".join(elements.text.split())
        for said in ["3 records (", "2 sound, 1 truncated", "Application usageallowed",
                     "Printer logsallowed", "jobs=1", "launches=14", "not sound",
                     "QX 200 " + SERIAL, IDENTIFIER, "2026-11", self.path("PLM/QX200_2.PLM")]:
            self.assertTrue(said in text, said)
        self.assertEqual([name for name in elements.ids if re.fullmatch(r"r\d+", name)],
                         ["r0", "r1", "r2"])
        self.assertLessEqual({link[1:] for link in elements.links}, set(elements.ids))
        self.assertEqual(page.count('class="record bad"'), 1)

    def test_what_is_found_of_a_record_that_is_not_sound_is_shown_with_a_warning(self):
        date = "2026-11-02T00:00:00+09:00"
        sound = printer_document(date, "jobs=2")
        for data, warned, seen in [
                (sound, False, "jobs=2"), (sound[:-9], True, "jobs=2"),
                (sound.replace(b"<Locale>", b"<Lokale>"), True, "jobs=2"),
                (sound.replace(b"2.14", b"2.15"), True, "jobs=2"),
                (sound.replace(date.encode(), b""), True, "The contents cannot be decrypted."),
                (sound[:sound.index(b"<PLI")], True, "The contents cannot be read."),
                (sound[:15] + b" ", False, "The contents cannot be read.")]:
            self.write("PLM/QX200_1.PLM", data)
            text = Elements(self.report()).text
            self.assertEqual("Nothing vouches for these values" in text, warned, data)
            self.assertIn(seen, text)
            self.assertEqual("ROMVER2.1" in text, b"<ROMVER>" in data, data)

    def test_redacted_it_shows_nothing_of_a_record_in_which_a_secret_was_not_found(self):
        sound = printer_document("2026-11-02T00:00:00+09:00", f"{SERIAL} {IDENTIFIER} jobs=2")
        for lost in [b"<ID>", b"<SN>"]:
            self.write("PLM/QX200_1.PLM", sound.replace(lost, b"<Q>"))
            page = self.report("--redact")
            self.assertIn("All of it is left out: an identifier or serial number may be", page)
            for secret in [IDENTIFIER[1:-1], SERIAL, "jobs=2"]:
                self.assertNotIn(secret, page)

    def test_a_refusal_is_told_with_its_step(self):
        self.install(agreement=False)
        text = " ".join(Elements(self.report()).text.split())
        self.assertIn("refused: Agreement (no_agreement)", text)
        self.assertIn("Application usage, mode 2allowed", text)

    def test_values_are_text_whatever_they_hold(self):
        self.install_hostile(1)
        elements = Elements(self.report())
        self.assertLessEqual(set(elements.names), ELEMENTS)
        self.assertLessEqual(elements.attributes, ATTRIBUTES)
        self.assertTrue(all(link.startswith("#") for link in elements.links))
        for value in hostile_values(1):
            shown = re.sub("[\u202e\u2066\u200b]", lambda c: f"\\u{{{ord(c[0]):04X}}}", value)
            self.assertTrue(shown in elements.text, shown)

    def test_it_has_the_policy_and_no_script(self):
        page = self.report()
        meta = f'<meta http-equiv="Content-Security-Policy" content="{POLICY}">'
        self.assertTrue(meta in page.split("<title>")[0])
        self.assertNotIn("script", Elements(page).names)

    def test_redacted_it_names_neither_user_nor_device(self):
        self.install_three()
        plain = self.report()
        page = self.report("--redact")
        for secret in [IDENTIFIER, IDENTIFIER[1:-1], SERIAL, self.root]:
            self.assertEqual((secret in plain, secret in page), (True, False), secret)
        self.assertTrue("launches=14 [redacted]" in page)

    def test_long_contents_are_cut_at_a_character(self):
        self.install()
        self.write("ALM/Quillmere_Log_Album_2611.ALM",
                   application_document("2026-11-01T12:00:00+09:00", "\u00e4" * 200_000 + "x"))
        page = self.report()
        self.assertEqual(re.findall(r"And ([\d.]+ KiB) more", page), ["134.6 KiB"])
        self.assertEqual(page.count("\\x"), 0)
        self.assertEqual(page.count("\u00e4"), 128 << 10)

    def test_only_its_owner_may_read_it_and_nothing_is_replaced_unasked(self):
        self.install()
        self.expect(0, "report", self.page)
        self.assertEqual(os.stat(self.page).st_mode & 0o777, 0o600)
        with open(self.page, "w", encoding="utf-8") as file:
            file.write("mine")
        self.assertIn(b"--force", self.expect(3, "report", self.page).stderr)
        with open(self.page, encoding="utf-8") as file:
            self.assertEqual(file.read(), "mine")
        self.assertEqual(os.listdir(self.folder), ["recorded.html"])
        link = os.path.join(self.folder, "link.html")
        os.symlink(self.page, link)
        self.assertIn(b"not a regular file", self.expect(3, "report", "--force", link).stderr)
        self.expect(3, "report", self.folder + "/none/recorded.html")

    def test_a_page_that_does_not_fit_is_not_left_in_part(self):
        self.install_three()

        def no_room():
            signal.signal(signal.SIGXFSZ, signal.SIG_DFL)  # ends a process that does not mind
            resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096))

        finished = self.expect(3, "report", self.page, preexec_fn=no_room)
        self.assertIn(b"recorded.html: File too large", finished.stderr)
        self.assertEqual(os.listdir(self.folder), [])
        self.assertIn(b"not a regular file", self.expect(3, "report", "/dev/full").stderr)

    def test_wrong_usage(self):
        self.expect_usage_error("FILE", "report")
        self.expect_usage_error("the page needs the name of a file", "report", "-")


@unittest.skipUnless(CHROMIUM, "chromium is not installed")
class Browser(Report):
    def setUp(self):
        super().setUp()
        self.server = Server()
        self.addCleanup(self.server.close)
        self.profile = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(self.profile.cleanup)

    def browse(self, *arguments):
        """Opens the page from the disk."""
        call = [CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
                "--disable-dev-shm-usage", "--virtual-time-budget=3000",
                "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1",
                f"--user-data-dir={self.profile.name}", *arguments, "file://" + self.page]
        return subprocess.run(call, capture_output=True, timeout=180, check=True,
                              env={"HOME": self.profile.name,
                                   "PATH": os.environ["PATH"]}).stdout.decode()

    def expect_harmless(self, records):
        shown = self.browse("--dump-dom")
        self.assertEqual(shown.count('<details id="r'), records)
        self.assertTrue(shown.rstrip().endswith("</html>"), shown[-200:])
        self.assertNotIn("data-hostile=", shown.split(">", 2)[1])
        self.assertEqual(self.server.calls, [])

    def test_a_page_without_these_precautions_runs_and_fetches(self):
        with open(self.page, "w", encoding="utf-8") as file:
            file.write("<!DOCTYPE html><html><body>" + "".join(hostile_values(self.server.port)[:3]))
        self.assertIn('data-hostile="ran"', self.browse("--dump-dom"))
        self.assertTrue(self.server.calls)

    def test_no_record(self):
        self.install()
        self.report()
        self.expect_harmless(0)

    def test_three_records(self):
        self.install_three()
        self.report()
        self.expect_harmless(3)

    def test_two_thousand_hostile_records(self):
        self.install_hostile(self.server.port, 2000)
        self.report()
        self.expect_harmless(2000)

    def test_printed_it_shows_the_contents(self):
        self.install_three()
        self.report()
        printed = os.path.join(self.folder, "recorded.pdf")
        self.browse("--no-pdf-header-footer", f"--print-to-pdf={printed}")
        if not shutil.which("pdftotext"):
            self.skipTest("pdftotext is not installed")
        text = subprocess.run(["pdftotext", printed, "-"], capture_output=True, check=True).stdout
        self.assertIn(b"launches=14", text)


if __name__ == "__main__":
    Report.command = os.path.abspath(sys.argv.pop())
    skips.main()
