#!/usr/bin/env python3
"""Tests of `wenlolib record`, `preview` and `init`. Argument: the path of the wenlolib command."""

import os
import plistlib
import re
import resource
import signal
import stat
import subprocess
import sys
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)
sys.path.insert(0, os.path.join(HERE, "..", "verifier"))

import skips
from tool_world import (CONFIGURATION, HOME, IDENTIFIER, PREFERENCES, ToolTest, days_ago, tree)
from verify_document import verify

CONTENTS = "Usage of a month: Größe A4, 印刷 12, 𝄞\n<&> \"'\0end".encode()
IDENTITY = ["--device-id", "MFG:Orvan;MDL:QX 200;", "--sn", "4711", "--romver", "2.14"]
EXAMPLE = b"{00000000-0000-4000-8000-000000000000}"


class Recording(ToolTest):
    def recorded(self, finished):
        """The verified document at the path that a call has printed, and the path."""
        told = re.search(r"^recorded in (.*)$", finished.stdout.decode(), re.MULTILINE)
        self.assertTrue(told, finished.stdout)
        path = told.group(1)
        self.assertTrue(path.startswith(self.path()), path)
        with open(path, "rb") as file:
            document = verify(file.read())
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o666)
        return document, path

    def test_application_usage_is_recorded_and_verifies(self):
        self.install()
        contents = self.write("/contents", CONTENTS)
        for option in ["0", "1", "2", "18"]:
            finished = self.expect(0, "record", "app", "--name", "Album", "--option", option,
                                   contents)
            document, path = self.recorded(finished)
            self.assertEqual(document.layout, "application")
            self.assertEqual(document.contents, CONTENTS)
            self.assertEqual(document.values["Version"], b"1.0")
            self.assertEqual(document.values["ID"].decode(), IDENTIFIER)
            self.assertRegex(document.values["Date"], rb"\+09:00$")
            self.assertRegex(os.path.basename(path), r"^Quillmere_Log_Album_\d{4}\.ALM$")
            self.assertEqual(finished.stderr, b"")

    def test_printer_logs_are_numbered_and_carry_the_printer(self):
        self.install()
        finished = self.expect(0, "record", "printer", "--name", "Q", *IDENTITY, stdin=CONTENTS)
        document, path = self.recorded(finished)
        self.assertEqual(os.path.basename(path), "Q_1.PLM")
        self.assertEqual(document.layout, "printer-older")
        self.assertEqual(document.contents, CONTENTS)
        self.assertEqual([document.values[key] for key in ["DeviceID", "SN", "ROMVER"]],
                         [b"MFG:Orvan;MDL:QX 200;", b"4711", b"2.14"])
        finished = self.expect(0, "record", "printer", "--name", "Q", "--new-tag-type", "-",
                               "--option", "3", stdin=b"")
        document, path = self.recorded(finished)
        self.assertEqual(os.path.basename(path), "Q_2.PLM")
        self.assertEqual((document.layout, document.contents), ("printer", b""))

    def test_the_first_record_makes_an_identifier(self):
        self.install()
        os.remove(self.path(CONFIGURATION))
        document, _ = self.recorded(self.expect(0, "record", "app", "--name", "A", stdin=b"x"))
        with open(self.path(CONFIGURATION), "rb") as file:
            self.assertEqual(plistlib.load(file)["WENLIBUUID"].encode(), document.values["ID"])
        self.assertNotEqual(document.values["ID"], EXAMPLE)

    def test_a_refusal_is_explained_as_explain_does(self):
        self.install(agreement=False)
        before = tree(self.root)
        finished = self.expect(1, "record", "app", "--name", "A", "--option", "1", stdin=b"x")
        self.assertEqual(finished.stdout, b"")
        self.assertIn(b"wenlolib record: A: refused (no_agreement)\n", finished.stderr)
        explained = self.expect(1, "explain", "app", "--option", "1").stdout.decode()
        # The same except for the time at which each looked.
        without_time = re.compile(r"found +\d.*")
        self.assertIn(without_time.sub("", explained),
                      without_time.sub("", finished.stderr.decode()))
        self.assertEqual(tree(self.root), before)

    def test_a_record_that_cannot_be_written_says_what_is_in_the_way(self):
        self.install()
        os.mkdir(self.path("PLM/sub"))
        os.rmdir(self.path("ALM"))
        for word, call in [("folder is missing", ["app", "--name", "A"]),
                           ("leads into a sub-folder", ["printer", "--name", "none/A"]),
                           ("Choose a shorter name", ["printer", "--name", "n" * 300])]:
            finished = self.expect(1, "record", *call, stdin=b"x")
            self.assertTrue(finished.stderr.startswith(b"wenlolib record: " + self.root.encode()))
            self.assertIn("not written: ", finished.stderr.decode())
            self.assertIn(word, finished.stderr.decode())
        _, path = self.recorded(self.expect(0, "record", "printer", "--name", "sub/A", stdin=b"x"))
        self.assertEqual(path, self.path("PLM/sub/A_1.PLM"))
        os.mkdir(self.path("ALM"))
        _, month = self.recorded(self.expect(0, "record", "app", "--name", "A", stdin=b"x"))
        os.remove(month)
        os.mkdir(month)
        finished = self.expect(1, "record", "app", "--name", "A", stdin=b"x")
        self.assertIn("A folder is in its place: move it away.", finished.stderr.decode())

    def test_a_limit_that_stands_in_the_way_is_told(self):
        self.install()
        for limit, most, reason in [
                (resource.RLIMIT_NOFILE, 4, b"making the file failed: Too many open files. "
                                            b"Raise the limit on open files (ulimit -n).\n"),
                (resource.RLIMIT_FSIZE, 99, b"writing the file failed: File too large. "
                                            b"Raise the limit on file sizes (ulimit -f).\n")]:
            finished = self.expect(1, "record", "app", "--name", "A", stdin=b"x",
                                   preexec_fn=lambda: resource.setrlimit(limit, (most, most)))
            self.assertTrue(finished.stderr.endswith(reason), finished.stderr)

    def test_a_folder_that_may_not_be_written_to_is_told(self):
        self.install()
        for folder, _, _ in os.walk(self.path(HOME)):
            os.chmod(folder, 0o555)
        self.addCleanup(lambda: [os.chmod(f, 0o755) for f, _, _ in os.walk(self.path(HOME))])
        finished = self.expect(1, "record", "printer", "--name", "A", stdin=b"x",
                               **self.unprivileged())
        self.assertIn(b"making the file failed: Permission denied. Let this user write in its folder.", finished.stderr)

    def test_a_replaced_record_is_told_and_kept_if_wanted(self):
        self.install()
        app = ["app", "--name", "A"]
        first = self.expect(0, "record", *app, "--keep", stdin=b"first")
        self.assertNotIn(b"replaced", first.stdout)
        before = tree(self.root)
        self.expect_complaint(1, "not recorded: it would replace the older record of this "
                                     "month", "record", *app, "--keep", stdin=b"second")
        told = self.expect(0, "preview", *app, stdin=b"second").stdout
        self.assertIn(b"\nreplaces    the older record of this month\n", told)
        told = self.expect(0, "preview", *app, "--bytes", stdin=b"second")
        self.assertEqual(verify(told.stdout).contents, b"second")
        self.assertRegex(told.stderr, rb"^wenlolib preview: /.*/Quillmere_Log_A_\d{4}\.ALM: record "
                                      rb"would replace the older record of this month\n$")
        self.assertEqual(tree(self.root), before)
        told = self.expect(0, "record", *app, stdin=b"second")
        self.assertIn(b"\n  replaced the older record of this month\n", told.stdout)
        self.assertEqual(self.recorded(told)[0].contents, b"second")

    def test_the_last_log_is_replaced_or_kept_when_all_numbers_are_taken(self):
        self.install()
        for number in range(1, 1000):
            self.write(f"PLM/Q_{number}.PLM", b"older")
        log = ["printer", "--name", "Q"]
        self.expect_complaint(1, "all 999 numbers are taken", "record", *log, "--keep", stdin=b"x")
        with open(self.path("PLM/Q_999.PLM"), "rb") as file:
            self.assertEqual(file.read(), b"older")
        self.assertIn(b"all 999 numbers are taken", self.expect(0, "preview", *log,
                                                                stdin=b"x").stdout)
        told = self.expect(0, "record", *log, stdin=b"x")
        self.assertIn(b"replaced the older log", told.stdout)
        self.assertEqual(self.recorded(told)[1], self.path("PLM/Q_999.PLM"))

    def test_a_record_that_was_written_is_recorded_whatever_becomes_of_the_report(self):
        self.install()
        for number, (streams, complaint) in enumerate([
                (">/dev/full", b"recorded, but not reported: standard output: No space left"),
                (">&-", b"recorded, but not reported: standard output: Bad file descriptor"),
                ("| true", None), (">/dev/full 2>&1", None)]):
            script = f'"$0" "$@" {streams}; exit "${{PIPESTATUS[0]}}"'
            finished = subprocess.run(
                ["bash", "-c", script, *self.arguments(["record", "printer", "--name", "A"])],
                input=b"x", capture_output=True, timeout=60, cwd=self.outside,
                env=self.environment)
            self.assertEqual(finished.returncode, 0, (streams, finished.stderr))
            self.assertTrue(os.path.exists(self.path(f"PLM/A_{number + 1}.PLM")), streams)
            if complaint is not None:
                self.assertIn(complaint, finished.stderr)

    def test_a_value_that_cannot_be_mended_leaves_no_file_and_is_told(self):
        self.install()
        before = tree(self.root)
        for call in ["record", "preview"]:
            finished = self.expect(1, call, "printer", "--name", "A", "--sn", "<b>", stdin=b"x")
            self.assertTrue(finished.stderr.startswith(f"wenlolib {call}: --sn: ".encode()))
            self.assertIn(b"the library could not write this value. Leave out", finished.stderr)
            self.assertEqual(finished.stderr.count(b"\n"), 1)
            self.assertEqual(finished.stdout, b"")
        finished = self.expect(1, "record", "printer", "--name", "A", "--device-id", "a\x01",
                               "--sn", "4711", "--romver", "<b>", stdin=b"x")
        self.assertEqual([line.split(b": ")[1] for line in finished.stderr.splitlines()],
                         [b"--device-id", b"--romver"])
        self.assertEqual(tree(self.root), before)

    def test_values_that_the_layout_has_no_place_for_are_told(self):
        self.install()
        for call in ["record", "preview"]:
            finished = self.expect(0, call, "printer", "--name", "A", "--new-tag-type", "--sn",
                                   "4711", stdin=b"x")
            self.assertEqual(finished.stderr.decode(),
                             f"wenlolib {call}: --sn: left out: the layout of --new-tag-type has no "
                             "place for it\n")

    def test_a_value_that_can_be_mended_is_and_reads_as_it_was(self):
        self.install()
        serial = "a ]]> b & c < d"
        finished = self.expect(0, "record", "printer", "--name", "A", "--sn", serial, stdin=b"x")
        path = re.search(r"^recorded in (.*)$", finished.stdout.decode(), re.MULTILINE).group(1)
        with open(path, "rb") as file:
            self.assertIn(b"<SN>a ]]&gt; b &amp; c &lt; d</SN>", file.read())
        told = self.expect(0, "decode", "--json", path).stdout.decode()
        self.assertIn(f'"{serial}"', told)
        self.assertIn("repaired", told)

    def test_contents_that_will_not_do_are_unreadable(self):
        self.install()
        before = tree(self.root)
        large = self.write("/large", b"")
        os.truncate(large, 1 << 31)
        for word, call, stdin in [
                ("not UTF-8 at byte 2", [], b"ab\xff"),
                ("not UTF-8 at byte 0", ["-"], b"\xed\xa0\x80"),
                ("No such file", [self.root + "/none"], b""),
                ("it is a folder", [self.root], b""),
                ("smaller than 2.0 GiB", [large], b"")]:
            for kind in ["app", "printer"]:
                for call_name in ["record", "preview"]:
                    self.expect_unreadable(word, call_name, kind, "--name", "A", *call,
                                           stdin=stdin)
        os.remove(large)
        self.assertEqual(tree(self.root), before)

    def test_a_file_that_may_not_be_read_is_told(self):
        self.install()
        secret = self.write("/secret", b"x")
        os.chmod(secret, 0)
        self.expect_unreadable("Permission denied", "record", "printer", "--name", "A", secret,
                               **self.unprivileged())

    def test_standard_input_that_is_closed_is_told(self):
        self.install()
        script = 'exec "$0" "$@" <&-'
        finished = subprocess.run(["sh", "-c", script, *self.arguments(
            ["record", "printer", "--name", "A"])], env=self.environment, cwd=self.outside,
            capture_output=True, timeout=60)
        self.assertEqual(finished.returncode, 3, finished)
        self.assertIn(b"Bad file descriptor", finished.stderr)

    def started(self):
        """A call that waits for more contents."""
        process = subprocess.Popen(self.arguments(["record", "printer", "--name", "A"]),
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, env=self.environment, cwd=self.outside)
        self.addCleanup(process.kill)
        process.stdin.write(b"first ")
        process.stdin.flush()
        time.sleep(0.3)
        return process

    def test_an_interrupted_call_leaves_nothing(self):
        self.install()
        before = tree(self.root)
        process = self.started()
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=60)
        self.assertEqual(process.returncode, -signal.SIGINT)
        self.assertEqual(tree(self.root), before)

    def test_a_call_that_was_stopped_meanwhile_records_everything(self):
        self.install()
        process = self.started()
        process.send_signal(signal.SIGSTOP)
        time.sleep(0.1)
        process.send_signal(signal.SIGCONT)
        output, _ = process.communicate(b"second", timeout=60)
        finished = subprocess.CompletedProcess([], process.returncode, output)
        self.assertEqual(self.recorded(finished)[0].contents, b"first second")

    def test_wrong_usage(self):
        self.install()
        before = tree(self.root)
        for call_name in ["record", "preview"]:
            for word, call in [("app or printer", []),
                               ("--name is required", ["app"]),
                               ("--name", ["app", "--name"]),
                               ("not an option word", ["app", "--name", "A", "--option", "-1"]),
                               ("not an option word", ["app", "--name", "A", "--option", "4294967296"]),
                               ("not an option word", ["printer", "--name", "A", "--option", "0x1"]),
                               ("--sn", ["app", "--name", "A", "--sn", "1"]),
                               ("--nonsense", ["printer", "--name", "A", "--nonsense"]),
                               ("not UTF-8", ["app", "--name", b"\xff"]),
                               ("not UTF-8", ["printer", "--name", "A", "--sn", b"\xc0\x80"]),
                               ("more", ["app", "--name", "A", "-", "more"])]:
                self.expect_usage_error(word, call_name, *call, stdin=b"x")
        self.assertEqual(tree(self.root), before)

    def test_at_a_terminal_the_contents_must_be_named(self):
        self.install()
        status, output = self.on_terminal("record", "app", "--name", "A")
        self.assertEqual(status, 2, output)
        self.assertIn(b"standard input is a terminal", output)


class Preview(ToolTest):
    def test_the_bytes_are_a_document_and_nothing_is_written(self):
        self.install()
        before = tree(self.root)
        for layout, call in [("application", ["app", "--name", "A", "--option", "2"]),
                             ("printer-older", ["printer", "--name", "A", *IDENTITY]),
                             ("printer", ["printer", "--name", "A", "--new-tag-type"])]:
            finished = self.expect(0, "preview", *call, "--bytes", "-", stdin=CONTENTS)
            document = verify(finished.stdout, layout, CONTENTS)
            self.assertEqual(document.values["ID"].decode(), IDENTIFIER)
            self.assertEqual(finished.stderr, b"")
        self.assertEqual(tree(self.root), before)

    def test_the_readable_form_holds_the_same_document(self):
        self.install()
        text = self.expect(0, "preview", "printer", "--name", "A", *IDENTITY,
                           stdin=CONTENTS).stdout.decode()
        head, folded, _ = text.split("\n\n")
        lines = folded.splitlines()
        self.assertTrue(all(line.startswith("  ") and len(line) <= 80 for line in lines), folded)
        verify("".join(line[2:] for line in lines).encode(), "printer-older", CONTENTS)
        self.assertIn(f"path        {self.path('PLM/A_1.PLM')}\n", head)
        self.assertRegex(head, r"size +\d{3} B; ")
        self.assertRegex(head, r"recording +allowed")

    def test_the_readable_form_spells_out_what_nobody_can_see(self):
        self.install()
        hidden = "\u202e\u200b\u2066\u009b" * 20
        text = self.expect(0, "preview", "printer", "--name", "A", "--device-id", hidden,
                           stdin=CONTENTS).stdout.decode()
        self.assertTrue(all(line.isprintable() for line in text.split("\n")), text)
        lines = text.split("\n\n")[1].splitlines()
        self.assertTrue(all(len(line) <= 80 for line in lines), text)
        told = r"\u{202E}\u{200B}\u{2066}\u{009B}" * 20
        self.assertIn(f"<DeviceID>{told}</DeviceID>", "".join(line[2:] for line in lines))

    def test_record_takes_the_path_that_was_shown(self):
        self.install()
        call = ["printer", "--name", "A"]
        shown = self.expect(0, "preview", *call, stdin=b"x").stdout.decode().splitlines()[0]
        told = self.expect(0, "record", *call, stdin=b"x").stdout.decode().splitlines()[0]
        self.assertEqual(shown.split(None, 1)[1], told.removeprefix("recorded in "))

    def test_without_an_identifier_the_one_shown_is_marked(self):
        self.install()
        os.remove(self.path(CONFIGURATION))
        before = tree(self.root)
        readable = self.expect(0, "preview", "app", "--name", "A", stdin=b"x").stdout
        self.assertIn(b"identifier  an EXAMPLE, " + EXAMPLE, readable)
        finished = self.expect(0, "preview", "app", "--name", "A", "--bytes", stdin=b"x")
        self.assertEqual(verify(finished.stdout).values["ID"], EXAMPLE)
        self.assertIn(b"its identifier is an example", finished.stderr)
        self.assertEqual(tree(self.root), before)

    def test_works_without_any_folder_and_says_so(self):
        finished = self.expect(0, "preview", "app", "--name", "A", stdin=b"x")
        self.assertIn(b"missing: record would fail now", finished.stdout)
        self.assertIn(b"refused: Preference file (no_preferences)", finished.stdout)
        self.assertEqual(tree(self.root), {})

    def test_large_contents_are_cut_in_the_readable_form_alone(self):
        self.install()
        large = b"0123456789abcdef" * 65536
        finished = self.expect(0, "preview", "app", "--name", "A", stdin=large)
        self.assertLess(len(finished.stdout), 4000)
        self.assertRegex(finished.stdout, rb"\(2,09\d,\d{3} bytes more\)")
        finished = self.expect(0, "preview", "app", "--name", "A", "--bytes", stdin=large)
        self.assertEqual(len(verify(finished.stdout).contents), len(large))

    def test_at_a_terminal_the_contents_may_be_left_out(self):
        self.install()
        status, output = self.on_terminal("preview", "app", "--name", "A")
        self.assertEqual(status, 0, output)
        self.assertIn(b'<Encrypted C="R"></Encrypted>', output)


    def test_shows_the_contents_in_clear(self):
        self.install()
        shown = self.expect(0, "preview", "app", "--name", "A", stdin=CONTENTS).stdout.decode()
        self.assertIn("\ncontents in clear\n  | Usage of a month: Größe A4, 印刷 12, 𝄞\n", shown)
        large = ("ö" * 100000).encode()
        shown = self.expect(0, "preview", "app", "--name", "A", stdin=large).stdout.decode()
        self.assertIn(f"  | {'ö' * 1024}\n  (197,952 bytes more)\n", shown)
        shown = self.expect(0, "preview", "app", "--name", "A", stdin=b"").stdout.decode()
        self.assertTrue(shown.endswith("\ncontents in clear\n  (none)\n"), shown)


class Init(ToolTest):
    FOLDERS = ["PLM", "ALM", "Config"]

    def test_makes_the_folders_and_nothing_else(self):
        finished = self.expect(0, "init")
        self.assertEqual(finished.stdout.decode(),
                         "".join(f"made          {self.path(name)}\n" for name in self.FOLDERS))
        self.assertEqual(sorted(os.listdir(self.path())), sorted(self.FOLDERS))
        for name in self.FOLDERS:
            self.assertEqual(os.listdir(self.path(name)), [])
            self.assertEqual(stat.S_IMODE(os.stat(self.path(name)).st_mode), 0o700)

    def test_twice_changes_nothing_the_second_time(self):
        self.expect(0, "init", "--sample-preferences", "--agree")
        before = tree(self.root)
        finished = self.expect(0, "init", "--sample-preferences", "--agree")
        names = [*self.FOLDERS, PREFERENCES]
        self.assertEqual(finished.stdout.decode(),
                         "".join(f"already there {self.path(name)}\n" for name in names))
        self.assertEqual(tree(self.root), before)

    def test_sample_preferences_are_of_now_and_without_agreement(self):
        for agree in [[], ["--agree"]]:
            self.expect(0, "init", "--sample-preferences", *agree)
            with open(self.path(PREFERENCES), "rb") as file:
                preferences = plistlib.load(file)
            age = (days_ago(0) - preferences.pop("InstalledDate")).total_seconds()
            self.assertTrue(-5 < age < 60, age)
            self.assertEqual(preferences, {"LatestSelectedAgreement": bool(agree),
                                           "LatestSelectedLanguage": "de_DE"})
            self.expect(0 if agree else 1, "explain", "app", "--option", "1")
            os.remove(self.path(PREFERENCES))

    def test_without_a_locale_there_is_no_language(self):
        self.environment["LANG"] = "C"
        self.expect(0, "init", "--sample-preferences")
        with open(self.path(PREFERENCES), "rb") as file:
            self.assertNotIn("LatestSelectedLanguage", plistlib.load(file))

    def test_overwrites_neither_a_broken_file_nor_a_link(self):
        self.write(PREFERENCES, b"broken")
        self.expect(0, "init", "--sample-preferences")
        with open(self.path(PREFERENCES), "rb") as file:
            self.assertEqual(file.read(), b"broken")
        os.remove(self.path(PREFERENCES))
        os.symlink("/nowhere", self.path(PREFERENCES))
        self.expect(0, "init", "--sample-preferences")
        self.assertEqual(os.readlink(self.path(PREFERENCES)), "/nowhere")

    def test_a_file_in_the_place_of_a_folder_is_left_and_told(self):
        self.write("ALM", b"mine")
        finished = self.expect(1, "init")
        self.assertIn(f"{self.path('ALM')}: not made: something else is in its place",
                      finished.stderr.decode())
        with open(self.path("ALM"), "rb") as file:
            self.assertEqual(file.read(), b"mine")
        self.assertTrue(os.path.isdir(self.path("Config")))

    def test_a_root_that_may_not_be_written_to_is_told(self):
        os.chmod(self.root, 0o555)
        finished = self.expect(1, "init", **self.unprivileged())
        self.assertIn(f"{self.path('PLM')}: not made: making the folder failed: Permission denied. "
                      "Let this user write in its folder.\n", finished.stderr.decode())

    def test_wrong_usage(self):
        self.expect_usage_error("more", "init", "more")
        self.expect_usage_error("--force can be used only with --agree", "init", "--force")
        self.expect_usage_error("--force", "init", "--force", "--sample-preferences")
        self.assertEqual(tree(self.root), {})

    def test_agree_makes_the_file_and_says_if_it_leaves_one(self):
        self.expect(0, "init", "--agree")
        with open(self.path(PREFERENCES), "rb") as file:
            self.assertTrue(plistlib.load(file)["LatestSelectedAgreement"])
        self.write(PREFERENCES, {"InstalledDate": days_ago(3), "LatestSelectedAgreement": False})
        before = tree(self.root)
        finished = self.expect(1, "init", "--agree")
        self.assertIn(f"{self.path(PREFERENCES)}: already there, and not changed: its agreement is "
                      "boolean false. Add --force", finished.stderr.decode())
        self.assertEqual(tree(self.root), before)

    def test_forced_agreement_keeps_the_rest_of_the_file(self):
        others = {"InstalledDate": days_ago(3), "LatestSelectedLanguage": "zh_Hans",
                  "Other": {"list": [1, 2.5, b"data"], "text": "Größe"}}
        self.write(PREFERENCES, {**others, "LatestSelectedAgreement": False})
        os.chmod(self.path(PREFERENCES), 0o640)
        finished = self.expect(0, "init", "--agree", "--force")
        self.assertIn(f"changed       {self.path(PREFERENCES)}\n", finished.stdout.decode())
        with open(self.path(PREFERENCES), "rb") as file:
            self.assertEqual(plistlib.load(file), {**others, "LatestSelectedAgreement": True})
        self.assertEqual(stat.S_IMODE(os.stat(self.path(PREFERENCES)).st_mode), 0o640)
        before = tree(self.root)
        self.expect(0, "init", "--agree", "--force")
        self.assertEqual(tree(self.root), before)

    def test_forced_agreement_loses_nothing_that_cannot_be_read(self):
        elsewhere = self.write("/Pref.plist", {"LatestSelectedAgreement": False})
        self.write(PREFERENCES, b"broken")
        partial = plistlib.dumps({"LatestSelectedAgreement": False, "Other": 7}).replace(
            b"<integer>7<", b"<integer>99999999999999999999<")
        for word, prepare in [
                ("neither XML nor binary", lambda: None),
                ("some values cannot be read", lambda: self.write(PREFERENCES, partial)),
                ("not a regular file", lambda: (os.remove(self.path(PREFERENCES)), os.symlink(
                    os.path.relpath(elsewhere, self.path("Config")), self.path(PREFERENCES))))]:
            prepare()
            self.expect(0, "init")
            before = tree(self.root)
            finished = self.expect(1, "init", "--agree", "--force")
            self.assertIn("nothing is changed, because", finished.stderr.decode())
            self.assertIn(word, finished.stderr.decode())
            self.assertEqual(tree(self.root), before)


class Help(ToolTest):
    CALLS = ["explain", "explain app", "explain printer", "preview", "preview app",
             "preview printer", "record", "record app", "record printer", "doctor", "init"]

    def test_every_call_has_examples_within_eighty_columns(self):
        for call in self.CALLS:
            text = self.expect(0, *call.split(), "--help").stdout.decode()
            self.assertIn("Examples:\n  wenlolib ", text.replace("  echo", "  wenlolib echo"), call)
            self.assertLessEqual(max(map(len, text.splitlines())), 80, text)


if __name__ == "__main__":
    ToolTest.command = os.path.abspath(sys.argv.pop())
    skips.main()
