#!/usr/bin/env python3
"""Tests of `wenlolib list`, `path` and `forget`. Argument: the path of the wenlolib command."""

import os
import plistlib
import re
import subprocess
import sys
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)

import skips
from json_schema import object_in, objects_in
from survey_documents import application_document, printer_document
from tool_world import CONFIGURATION, IDENTIFIER, NOBODY, ToolTest, tree

ALBUM = "ALM/Quillmere_Log_Album_2611.ALM"
NEWER = "PLM/QX200_2.PLM"
OLDER = "PLM/QX200_1.PLM"


class OwnRecords(ToolTest):
    def install_records(self):
        """Three records, oldest to newest: OLDER, ALBUM, NEWER."""
        self.install()
        self.write(OLDER, printer_document("2026-10-31T23:30:00+00:00", "jobs=1",
                                           serial="QX200-0004711"))
        self.write(ALBUM, application_document("2026-11-01T12:00:00+09:00", "launches=14"))
        self.write(NEWER, printer_document("2026-11-02T00:00:00+09:00", "jobs=2",
                                           serial="QX200-0004712"))

    def install_others(self):
        """What must stay. Returns the places."""
        os.symlink(self.path(ALBUM), self.path("ALM/Quillmere_Log_Link_2611.ALM"))
        os.makedirs(self.root + "/elsewhere")
        self.write("/elsewhere/QX300_1.PLM", application_document("2026-11-01T12:00:00Z", "x"))
        os.symlink(self.root + "/elsewhere", self.path("PLM/linked"))
        os.mkfifo(self.path("PLM/pipe.PLM"))
        self.write("PLM/page.PLM", b"<html><OrvanQXPrinter></OrvanQXPrinter></html>")
        self.write("PLM/empty.PLM", b"")
        self.write("ALM/notes.txt", b"mine")
        self.write("ALM/.wenlolib-1.tmp", application_document("2026-11-01T12:00:00Z", "x"))
        return ["ALM/.wenlolib-1.tmp", "ALM/Quillmere_Log_Link_2611.ALM", "ALM/notes.txt",
                "PLM/empty.PLM", "PLM/linked", "PLM/page.PLM", "PLM/pipe.PLM"]

    def there(self):
        """Places of all files below the folders of records."""
        return sorted(os.path.relpath(os.path.join(parent, name), self.path())
                      for kind in ["ALM", "PLM"] for parent, _, names in os.walk(self.path(kind))
                      for name in names)


class List(OwnRecords):
    def listed(self, *call, status=0, **others):
        finished = self.expect(status, "list", "--json", *call, **others)
        return objects_in(finished.stdout)

    def places(self, *call):
        return [os.path.relpath(record["path"], self.path()) for record in self.listed(*call)]

    def test_records_come_newest_first_in_the_readers_time(self):
        self.install_records()
        records = self.listed()
        self.assertEqual([record["date"] for record in records],
                         ["2026-11-02T00:00:00+09:00", "2026-11-01T12:00:00+09:00",
                          "2026-11-01T08:30:00+09:00"])
        self.assertEqual(records[0], {
            "schema": 1, "type": "record", "path": self.path(NEWER),
            "bytes": os.path.getsize(self.path(NEWER)), "sound": True, "fault": "none",
            "layer": "none", "offset": None, "field": None, "explanation": None,
            "date": "2026-11-02T00:00:00+09:00", "date_of": "document", "record": "printer",
            "name": "QX200", "device_id": "MFG:Orvan;MDL:QX 200;", "sn": "QX200-0004712",
            "trusted": True, "contents": None})
        self.assertEqual(self.places(), [NEWER, ALBUM, OLDER])

    def test_json_of_what_is_not_sound_and_of_what_cannot_be_read(self):
        self.install()
        data = printer_document("2026-11-02T00:00:00+09:00", "jobs=2")
        self.write(NEWER, data[:-9])
        for name in ["PLM", "ALM"]:
            os.chmod(self.path(name), 0o755)
        os.mkdir(self.path("PLM/closed"), mode=0)
        (record, other) = self.listed("--contents", status=3, **self.unprivileged())
        self.assertEqual((record["fault"], record["trusted"], record["record"]),
                         ("truncated", False, "printer"))
        self.assertEqual((record["date"], record["sn"], record["contents"]),
                         ("2026-11-02T00:00:00+09:00", "QX200-0004711", "jobs=2"))
        self.assertEqual((other["type"], other["fault"], other["explanation"]),
                         ("verdict", "unreadable", "Permission denied"))
        self.assertEqual(other["path"].rstrip("/"), self.path("PLM/closed"))

    def test_choices(self):
        self.install_records()
        for places, call in [([NEWER, ALBUM, OLDER], ["--since", "2026-11-01"]),
                             ([NEWER], ["--since", "2026-11-01T12:00:01"]),
                             ([NEWER, ALBUM], ["--since", "2026-11-01T03:00:00Z"]),
                             ([ALBUM, OLDER], ["--until", "2026-11-01"]),
                             ([OLDER], ["--until", "2026-11-01T11:59:59"]),
                             ([ALBUM, OLDER], ["--until", "2026-11-01T12:00:00"]),
                             ([], ["--until", "2026-10-31"]),
                             ([ALBUM], ["--kind", "app"]),
                             ([NEWER, OLDER], ["--kind", "printer"]),
                             ([OLDER], ["--printer", "0004711"]),
                             ([NEWER, OLDER], ["--printer", "mdl:qx"]),
                             ([NEWER, OLDER], ["--printer", "qx200"]),
                             ([], ["--printer", "Album"]),
                             ([], ["--kind", "app", "--printer", "qx200"])]:
            self.assertEqual(self.places(*call), places, call)

    def test_the_text_has_every_column_and_says_what_is_not_shown(self):
        self.install_records()
        self.install_others()
        self.write("PLM/QX300_1.PLM", printer_document("2026-11-03T00:00:00+09:00", "x")[:90])
        os.utime(self.path("PLM/QX300_1.PLM"), (1e9, 1e9))
        text = self.expect(0, "list").stdout.decode()
        lines = text.splitlines()
        self.assertEqual(lines[0].split(), ["Date", "Kind", "Name", "Printer", "Size", "Verdict",
                                            "Path"])
        self.assertRegex(lines[1], r"^2026-11-02 00:00   printer log  QX200  QX 200 QX200-0004712 +"
                                   rf"\d+ B  sound      {re.escape(self.path(NEWER))}$")
        self.assertRegex(lines[4], r"^2001-09-09 10:46~  printer log  QX300  - +\d+ B  truncated ")
        self.assertIn("~ The document's date cannot be read", text)
        told = " ".join(text.split())
        self.assertIn("4 records. Not shown: 2 files (a link), 1 file (empty), "
                      "1 file (not a document of this library), "
                      "1 file (not a regular file), 1 file (not named *.PLM or *.ALM), "
                      "1 file (unfinished; wenlolib doctor --clean removes it once it is a day "
                      "old).", told)

    def test_only_a_terminal_cuts_long_names(self):
        self.install()
        name, serial = "N" * 60, "S" * 60
        self.write(f"PLM/{name}_1.PLM",
                   printer_document("2026-11-02T00:00:00+09:00", "x", serial=serial))
        text = self.expect(0, "list").stdout.decode()
        self.assertIn(f"  {name}  QX 200 {serial}  ", text)
        self.environment["PAGER"] = ""
        shown = self.on_terminal("list")[1].decode()
        self.assertNotIn(f" {name} ", shown)
        self.assertIn("... ", shown)

    def test_the_number_of_those_that_match(self):
        self.install_records()
        for told, kind in [(b"1 record matches.\n", "app"), (b"2 records match.\n", "printer")]:
            self.assertTrue(self.expect(0, "list", "--kind", kind).stdout.endswith(told))

    def test_a_damaged_log_whose_printer_is_not_known_is_told(self):
        self.install_records()
        self.write("PLM/QX300_1.PLM", printer_document("2026-11-03T00:00:00+09:00", "x")[:90])
        told = b"1 file (damaged, so its printer is not known)."
        for call, expected in [(["--printer", "4711"], True), (["--printer", "QX300"], False),
                               (["--kind", "app"], False)]:
            listed = b" ".join(self.expect(0, "list", *call).stdout.split())
            self.assertEqual(told in listed, expected, listed)

    def test_contents(self):
        self.install_records()
        self.assertEqual([record["contents"] for record in self.listed("--contents")],
                         ["jobs=2", "launches=14", "jobs=1"])
        text = self.expect(0, "list", "--contents").stdout.decode()
        self.assertLess(text.index("  | jobs=2\n"), text.index("  | launches=14\n"))

    def test_nothing_recorded(self):
        for install in [lambda: None, self.install]:
            install()
            self.assertEqual(self.expect(0, "list").stdout, b"No records.\n")
            self.assertEqual(self.listed(), [])
        self.assertEqual(self.expect(0, "list", "--kind", "app").stdout,
                         b"No records match.\n")

    def test_what_cannot_be_read_is_told_and_the_rest_is_listed(self):
        self.install_records()
        for parent, folders, files in os.walk(self.root):
            for name in folders + files:
                os.chown(os.path.join(parent, name), NOBODY, NOBODY)
        os.chmod(self.path(OLDER), 0)
        os.mkdir(self.path("ALM/locked"), 0)
        finished = self.call("list", **self.unprivileged())
        self.assertEqual(finished.returncode, 3, finished)
        told = finished.stderr.decode()
        self.assertIn(self.path(OLDER) + ": Permission denied", told)
        self.assertIn(self.path("ALM/locked") + ": Permission denied", told)
        self.assertIn(b"Not shown: 1 file (Permission denied), 1 folder (Permission denied).",
                      b" ".join(finished.stdout.split()))
        self.assertIn(self.path(NEWER), finished.stdout.decode())

    def test_it_is_paged_on_a_terminal_only(self):
        self.install_records()
        self.environment["PAGER"] = "sed s/^/paged:/"
        status, output = self.on_terminal("list")
        self.assertEqual(status, 0)
        self.assertIn(b"paged:", output)
        self.assertIn(b"QX200-0004712", output)
        self.assertNotIn(b"paged:", self.expect(0, "list").stdout)
        self.environment["PAGER"] = ""
        self.assertNotIn(b"paged:", self.on_terminal("list")[1])

    def test_without_a_pager_that_runs_the_list_is_on_the_terminal(self):
        self.install()
        for number in range(1, 600):
            self.write(f"PLM/QX200_{number}.PLM", printer_document("2026-11-02T00:00:00Z", "x"))
        self.environment["PAGER"] = ""
        _, whole = self.on_terminal("list")
        for pager in ["/none/pager -R", "exit 127", f"'{self.path(CONFIGURATION)}'"]:
            self.environment["PAGER"] = pager
            status, output = self.on_terminal("list")
            self.assertEqual(status, 0, output)
            told, shown = output.split(b"wenlolib list: PAGER: it could not be run; the list is "
                                       b"shown without it\r\n")
            self.assertLessEqual(told.count(b"\n"), 1, told)  # of the shell
            self.assertEqual(shown, whole)

    def test_leaving_the_pager_is_no_error(self):
        self.install()
        for number in range(1, 600):
            self.write(f"PLM/QX200_{number}.PLM", printer_document("2026-11-02T00:00:00Z", "x"))
        self.environment["PAGER"] = "head -n 1"
        status, output = self.on_terminal("list")
        self.assertEqual(status, 0, output)
        self.assertNotIn(b"Broken pipe", output)
        self.assertLess(output.count(b"\n"), 5)

    def test_nothing_is_changed(self):
        self.install_records()
        before = tree(self.root)
        self.expect(0, "list", "--contents")
        self.assertEqual(tree(self.root), before)

    def test_wrong_usage(self):
        for word, call in [("not a date", ["--since", "yesterday"]),
                           ("not a date", ["--until", "2026-02-30"]),
                           ("wrong way round", ["--since", "2026-11-02", "--until", "2026-11-01"]),
                           ("wrong way round", ["--until", "2026-11-01", "--since", "2026-11-02"]),
                           ("app or printer", ["--kind", "all"]),
                           ("empty", ["--printer", ""])]:
            self.expect_usage_error(word, "list", *call)

    def test_a_single_day_is_not_the_wrong_way_round(self):
        self.install_records()
        self.assertEqual(self.places("--since", "2026-11-01", "--until", "2026-11-01"),
                         [ALBUM, OLDER])

    def test_path_prints_both_folders(self):
        told = self.expect(0, "path").stdout.decode()
        self.assertEqual(told, f"{self.path('PLM')}\n{self.path('ALM')}\n")


class Forget(OwnRecords):
    def test_all_takes_records_only_and_says_what_it_left(self):
        self.install_records()
        self.write("PLM/below/QX300_1.PLM", printer_document("2026-11-03T00:00:00Z", "x")[:-9])
        left = self.install_others()
        told = self.expect(1, "forget", "--all", "--yes").stdout.decode()
        self.assertEqual(self.there(), [place for place in left if place != "PLM/linked"])
        self.assertTrue(os.path.islink(self.path("PLM/linked")))
        self.assertEqual(os.listdir(self.root + "/elsewhere"), ["QX300_1.PLM"])
        self.assertIn("deleted: 4 records\n", told)
        for place in left:
            word = "left" if place.endswith(".tmp") else "not a record"
            self.assertIn(f"{word}: {self.path(place)}: ", told)
        self.assertIn("Nothing was deleted.", self.expect(1, "forget", "--all").stdout.decode())
        os.remove(self.path("ALM/.wenlolib-1.tmp"))
        self.assertIn("There is nothing to delete.", self.expect(0, "forget", "--all").stdout.decode())

    def test_a_choice_is_told_only_of_what_may_have_been_meant(self):
        self.install_records()
        self.install_others()
        told = self.expect(0, "forget", "--kind", "app", "--yes").stdout.decode()
        self.assertNotIn("left: ", told)
        self.assertNotIn("not a record: ", told)
        damaged = self.write("PLM/QX300_1.PLM",
                             printer_document("2026-11-03T00:00:00+09:00", "x")[:90])
        told = self.expect(1, "forget", "--printer", "4711", "--yes").stdout.decode()
        self.assertIn(f"left: {damaged}: damaged", told)
        self.assertIn("deleted: 1 record\n", told)
        self.assertEqual(told.count("left: "), 1)

    def test_what_could_not_be_looked_at_is_not_nothing(self):
        self.install_records()
        for folder, _, _ in os.walk(self.root):
            os.chmod(folder, 0o755)
        others = self.unprivileged()
        for locked, call in [("PLM", ["--kind", "printer"]), ("", ["--all"]),
                             ("Config", ["--identifier"])]:
            os.chmod(self.path(locked), 0)
            finished = self.expect(3, "forget", *call, "--yes", **others)
            os.chmod(self.path(locked), 0o755)
            self.assertIn(b"Permission denied", finished.stderr)
            self.assertEqual(finished.stdout, b"Nothing was deleted; something could not be read.\n")
        os.chmod(self.path(CONFIGURATION), 0)
        self.expect(3, "forget", "--identifier", "--yes", **others)

    def test_what_was_deleted_is_told_even_if_it_cannot_be_printed(self):
        self.install_records()
        for call, what in [(["--kind", "app"], b"deleted 1 record"),
                           (["--all", "--identifier"], b"deleted 2 records and the identifier")]:
            with open("/dev/full", "wb") as full:
                finished = subprocess.run(
                    self.arguments(["forget", *call, "--yes"]), stdout=full,
                    stderr=subprocess.PIPE, timeout=60, cwd=self.outside, env=self.environment)
            self.assertEqual(finished.returncode, 3)
            self.assertIn(what + b", but not reported: standard output: No space left",
                          finished.stderr)
        self.assertEqual(self.there(), [])

    def test_choices_take_what_list_shows(self):
        for call in [["--kind", "app"], ["--printer", "4711"], ["--until", "2026-11-01"],
                     ["--since", "2026-11-01T12:00:00"]]:
            with self.subTest(call=call):
                self.setUp()
                self.install_records()
                shown = self.expect(0, "list", "--json", *call).stdout.splitlines()
                gone = {os.path.relpath(object_in(line)["path"], self.path()) for line in shown}
                self.assertTrue(gone)
                self.expect(0, "forget", *call, "--yes")
                self.assertEqual(self.there(), sorted({ALBUM, NEWER, OLDER} - gone))

    def test_without_a_terminal_it_wants_yes(self):
        self.install_records()
        before = tree(self.root)
        finished = self.expect(2, "forget", "--all", stdin=b"y\n")
        self.assertIn(b"--yes", finished.stderr)
        self.assertIn(self.path(ALBUM).encode(), finished.stdout)
        self.assertEqual(tree(self.root), before)

    def test_on_a_terminal_it_asks(self):
        self.install_records()
        for answer, status, left in [(b"\n", 1, 3), (b"n\n", 1, 3), (b"\x04", 1, 3), (b"y\n", 0, 0)]:
            finished, output = self.on_terminal("forget", "--all", typed=answer)
            self.assertIn(b"Delete 3 records (", output)
            self.assertEqual((finished, len(self.there())), (status, left), (answer, output))

    def test_every_answer_ends_its_line(self):
        self.install_records()
        for answer, status in [(b"n\n", 1), (b"\x04", 1), (b"n\x04\x04", 1), (b"\x03", -2)]:
            finished, output = self.on_terminal("forget", "--all", typed=answer)
            self.assertEqual(finished, status, output)
            self.assertRegex(output.decode(), r"\[y/N\] (n|\^C|\^D|\x08)*\r\nNothing was deleted.\r\n$")
        self.assertEqual(len(self.there()), 3)

    def test_a_folder_that_is_a_link_keeps_its_records(self):
        self.install_records()
        os.rename(self.path("ALM"), self.path("Moved"))
        os.symlink(self.path("Moved"), self.path("ALM"))
        finished = self.expect(1, "forget", "--kind", "app", "--yes")
        self.assertIn(b"left: its folder is a link", finished.stderr)
        self.assertEqual(len(os.listdir(self.path("Moved"))), 1)

    def test_a_record_that_changes_before_the_answer_is_left(self):
        self.install_records()

        def change():
            with open(self.path(ALBUM), "ab") as file:
                file.write(b"\n")

        status, output = self.on_terminal("forget", "--all", typed=b"y\n", before_typing=change)
        self.assertEqual(status, 1, output)
        self.assertIn(b"left: changed since it was shown", output)
        self.assertEqual(self.there(), [ALBUM])

    def test_the_identifier_goes_and_the_other_entries_stay(self):
        self.install_records()
        for form in [plistlib.FMT_XML, plistlib.FMT_BINARY]:
            others = {"Mine": {"deep": [1, True, b"\x00"]}}
            self.write(CONFIGURATION, plistlib.dumps({"WENLIBUUID": IDENTIFIER, **others},
                                                     fmt=form))
            os.chmod(self.path(CONFIGURATION), 0o640)
            told = self.expect(0, "forget", "--identifier", "--yes").stdout.decode()
            self.assertIn("the next record makes another one", told)
            with open(self.path(CONFIGURATION), "rb") as file:
                self.assertEqual(plistlib.load(file), others)
            self.assertEqual(os.stat(self.path(CONFIGURATION)).st_mode & 0o777, 0o640)
            self.assertEqual(len(self.there()), 3)
        self.expect(0, "record", "app", "--name", "Album", "--option", "1", "-", stdin=b"x")
        with open(self.path(CONFIGURATION), "rb") as file:
            anew = plistlib.load(file)
        self.assertEqual(anew.pop("WENLIBUUID") == IDENTIFIER, False)
        self.assertEqual(anew, others)

    def test_an_identifier_in_a_strange_file_is_left(self):
        self.install()
        for data, why in [(b"broken", "neither XML nor binary"),
                          (b'<plist><dict><key>WENLIBUUID</key><string>x</string><key>a</key>'
                           b'<integer>99999999999999999999999</integer></dict></plist>',
                           "other entries would be lost")]:
            self.write(CONFIGURATION, data)
            before = tree(self.root)
            finished = self.expect(1, "forget", "--identifier", "--yes")
            self.assertIn("left: ", finished.stderr.decode())
            self.assertEqual(tree(self.root), before)
        os.rename(self.path(CONFIGURATION), self.path("real.plist"))
        os.symlink(self.path("real.plist"), self.path(CONFIGURATION))
        before = tree(self.root)
        self.assertIn(b"not a regular file",
                      self.expect(1, "forget", "--identifier", "--yes").stderr)
        self.assertEqual(tree(self.root), before)

    def test_without_an_identifier_there_is_nothing_to_delete(self):
        told = self.expect(0, "forget", "--identifier", "--yes").stdout
        self.assertEqual(told, b"There is nothing to delete.\n")

    def test_wrong_usage(self):
        self.expect_usage_error("--all", "forget")
        self.expect_usage_error("--all", "forget", "--yes")
        self.expect_usage_error("--all", "forget", "--all", "--kind", "app")


if __name__ == "__main__":
    OwnRecords.command = os.path.abspath(sys.argv.pop())
    skips.main()
