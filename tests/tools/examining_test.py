#!/usr/bin/env python3
"""Tests of `wenlolib explain` and `doctor`. Argument: the path of the wenlolib command."""

import os
import plistlib
import shutil
import subprocess
import sys
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)

import skips
from json_schema import object_in, objects_in
from tool_world import (CONFIGURATION, HOME, HOST_BUNDLE, IDENTIFIER, PREFERENCES, VERSION_LIST,
                       ToolTest, days_ago, tree)

GATES = ["os_version", "library_version", "support_list", "mode", "preferences",
         "installation_date", "period", "preferences", "agreement"]


class Explain(ToolTest):
    def explained(self, status, *call):
        """What a call with --json says, which must be one object on one line."""
        finished = self.expect(status, "explain", *call, "--json")
        self.assertEqual(finished.stderr, b"")
        self.assertEqual(finished.stdout.count(b"\n"), 1)
        return object_in(finished.stdout)

    def reason(self, status, *call):
        explanation = self.explained(status, *call)
        self.assertEqual(explanation["allowed"], status == 0)
        refused = [step for step in explanation["steps"] if step["state"] == "refused"]
        self.assertEqual(len(refused), status)
        return explanation["reason"]

    def test_every_reason_has_its_code_and_status(self):
        self.install()
        new = ["--os", "10.17.0"]
        self.write(VERSION_LIST, {"1001.0": "10.17.0"})
        listed = self.write("/Eleven.plist", {"1001.0": "11.0.0"})
        eleven = ["--support-list", listed, "--library-version", "1.0.0"]
        for reason, call in [
                ("allowed", ["app", "--option", "1"]),
                ("allowed", ["app"]),
                ("allowed", ["app", "--option", "2"]),
                ("allowed", ["app", "--option", "2", *new]),
                ("allowed", ["printer"]),
                ("os_version_unknown", ["app", "--os", "unknown"]),
                ("os_version_unknown", ["printer", "--os", "unknown"]),
                ("library_version_unknown", ["app", *new, "--library-version", "unknown"]),
                ("library_version_unknown", ["app", *new, "--library-version", "0.9"]),
                ("library_version_unknown", ["printer", *new]),
                ("allowed", ["printer", *new, "--library-version", "1.0.0"]),
                ("not_in_support_list", ["printer", *new, "--library-version", "1.1.0"]),
                ("not_in_support_list", ["app", "--option", "2", "--os", "10.17.1"]),
                ("allowed", ["printer", *eleven, "--os", "11.0"]),
                ("allowed", ["printer", *eleven, "--os", "11.0.0"]),
                ("not_in_support_list", ["printer", *eleven, "--os", "11.0.1"]),
                ("not_in_support_list", ["printer", *eleven, "--os", "11.1"]),
                ("mode_refused", ["app", "--option", "3"]),
                ("mode_refused", ["app", "--option", "4294967295"])]:
            self.assertEqual(self.reason(0 if reason == "allowed" else 1, *call), reason, call)

    def test_preferences_decide_as_they_are(self):
        self.install()
        for reason, preferences in [
                ("no_preferences", None),
                ("no_preferences", b"broken"),
                ("no_installation_date", {"LatestSelectedAgreement": True}),
                ("no_installation_date", {"InstalledDate": "2026-01-01"}),
                ("period_over", {"InstalledDate": days_ago(1441)}),
                ("no_agreement", {"InstalledDate": days_ago(1439)}),
                ("no_agreement",
                 {"InstalledDate": days_ago(1), "LatestSelectedAgreement": "YES"}),
                ("allowed", {"InstalledDate": days_ago(1439), "LatestSelectedAgreement": 2})]:
            os.remove(self.path(PREFERENCES))
            if preferences is not None:
                self.write(PREFERENCES, preferences)
            for option in ["0", "1", "17"]:
                self.assertEqual(self.reason(0 if reason == "allowed" else 1, "app", "--option",
                                             option), reason)
            if preferences is None:
                self.write(PREFERENCES, b"")

    def test_files_from_elsewhere_are_replayed(self):
        file = self.write("/elsewhere/Pref.plist", {"InstalledDate": days_ago(1),
                                                    "LatestSelectedAgreement": True})
        self.assertEqual(self.reason(1, "app", "--option", "1"), "no_preferences")
        explanation = self.explained(0, "app", "--option", "1", "--preferences", file)
        sources = [step["source"] for step in explanation["steps"] if step.get("key")]
        self.assertEqual(sources, [file, file])
        later = (days_ago(-1500)).isoformat() + "Z"
        self.assertEqual(self.reason(1, "app", "--preferences", file, "--date", later),
                         "period_over")
        self.assertEqual(self.reason(0, "printer", "--preferences", file, "--date", later),
                         "allowed")
        versions = self.write("/elsewhere/List.plist", {"1003.1": "10.17.2"})
        call = ["app", "--option", "2", "--library-version", "3.1.9", "--support-list", versions]
        self.assertEqual(self.reason(0, *call, "--os", "10.17.2"), "allowed")
        self.assertEqual(self.reason(1, *call, "--os", "10.17.3"), "not_in_support_list")

    def test_steps_say_what_was_read_expected_and_found(self):
        self.install(agreement="YES")
        explanation = self.explained(1, "app", "--option", "16")
        self.assertEqual([explanation[key] for key in ["record", "option", "mode"]],
                         ["application", 16, 0])
        steps = explanation["steps"]
        self.assertEqual([step["gate"] for step in steps], GATES)
        self.assertEqual([step["state"] for step in steps],
                         ["passed", "not_needed", "not_needed"] + ["passed"] * 5 + ["refused"])
        self.assertEqual([step["reading"] for step in steps if step["reading"]], [1, 2])
        self.assertEqual(steps[-1]["source"], self.path(PREFERENCES))
        self.assertEqual(steps[-1]["key"], "LatestSelectedAgreement")
        self.assertEqual(steps[-1]["found"], 'text "YES"')
        self.assertIn("agree", steps[-1]["remedy"])
        installed = steps[5]["found"]
        self.assertRegex(installed, r"^date \d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+09:00$")

    def test_the_text_names_outcome_and_folder_and_stays_within_its_lines(self):
        self.install(agreement=False)
        text = self.expect(1, "explain", "app", "--option", "1").stdout.decode()
        lines = text.splitlines()
        self.assertEqual(lines[0], "Application usage, option 1 (mode 1)")
        self.assertEqual(lines[1], "refused: Agreement (no_agreement)")
        self.assertEqual(lines[3], "QMR is " + self.path())
        self.assertLessEqual(max(map(len, lines[4:])), 80)
        self.assertIn(f"      read      QMR/{PREFERENCES}\n"
                      "      key       LatestSelectedAgreement\n", text)
        self.assertNotIn("\x1b", text)

    def test_nothing_is_written(self):
        self.install()
        before = tree(self.root)
        self.expect(0, "explain", "app")
        self.expect(0, "explain", "printer", "--json")
        self.assertEqual(tree(self.root), before)

    def test_colours_are_for_a_terminal_and_not_with_no_color(self):
        self.install()
        status, output = self.on_terminal("explain", "app")
        self.assertEqual(status, 0, output)
        self.assertIn(b"\x1b[", output)
        self.environment["NO_COLOR"] = "1"
        _, output = self.on_terminal("explain", "app")
        self.assertIn(b"allowed", output)
        self.assertNotIn(b"\x1b[", output)

    def test_wrong_usage(self):
        for word, call in [("app or printer", []),
                           ("not an OS version", ["app", "--os", "ten"]),
                           ("not a date", ["app", "--date", "2026-02-30"]),
                           ("give a day such as 2026-11-21, or a time",
                            ["app", "--date", "today"]),
                           ("such as 1.0.0, or unknown", ["app", "--library-version", "1.x"]),
                           ("such as 10.17.0, or unknown", ["printer", "--os", "10"]),
                           ("not an option word", ["app", "--option", "one"]),
                           ("--option", ["printer", "--option", "1"]),
                           ("more", ["app", "more"])]:
            self.expect_usage_error(word, "explain", *call)

    def test_a_file_that_cannot_be_read_is_no_replayed_case(self):
        self.install()
        for call, word in [(["--preferences", "/none"], "No such file or directory"),
                           (["--support-list", self.root], "not a file that can be read")]:
            self.expect_unreadable(word, "explain", "app", *call)

    def test_a_replayed_value_is_named_as_the_source(self):
        self.install()
        self.write(VERSION_LIST, {"1001.0": "10.17.0"})
        steps = self.explained(0, "app", "--os", "10.17.0", "--library-version", "1.0.0",
                               "--date", days_ago(0).isoformat() + "Z")["steps"]
        sources = {step["gate"]: (step["source"], step["key"]) for step in steps}
        self.assertEqual(sources["os_version"], ("--os", None))
        self.assertEqual(sources["library_version"], ("--library-version", None))
        self.assertEqual(sources["period"], ("--date and InstalledDate", None))
        self.assertIn("with --os", self.remedy("app", "--os", "unknown"))
        self.assertIn("with --library-version",
                      self.remedy("app", "--os", "10.17.0", "--library-version", "unknown"))

    def test_a_refusal_says_nothing_of_writing_unless_something_is_in_the_way(self):
        self.install(agreement=False)
        self.assertNotIn(b"Writing the record", self.expect(1, "explain", "app").stdout)
        os.rmdir(self.path("ALM"))
        self.assertIn(b"Writing the record", self.expect(1, "explain", "app").stdout)

    def remedy(self, *call):
        steps = self.explained(1, *call)["steps"]
        return [step["remedy"] for step in steps if step["state"] == "refused"][0]

    def test_a_missing_and_a_broken_file_have_remedies_of_their_own(self):
        self.install()
        new = ["app", "--option", "2", "--os", "10.17.0"]
        self.assertIn("must provide this file", self.remedy(*new))
        self.write(VERSION_LIST, b"broken")
        self.assertIn("must replace this file", self.remedy(*new))
        self.write(VERSION_LIST, {"1001.0": "10.16.0"})
        self.assertIn("must list 10.17.0 or later under this key", self.remedy(*new))
        self.write(PREFERENCES, b"broken")
        self.assertIn("Move it away and let the host write", self.remedy("app"))
        file = self.write("/Pref.plist", b"broken")
        self.assertIn("with --preferences", self.remedy("app", "--preferences", file))
        os.remove(self.path(PREFERENCES))
        self.assertIn("To make a sample, run wenlolib init", self.remedy("app"))
        os.mkdir(self.path(PREFERENCES))
        self.assertIn("Move it away and let the host write", self.remedy("app"))

    def told_about(self, gate, check, *call):
        """What explain found at a gate, and its remedy, which must be that of doctor's check."""
        who = self.unprivileged()
        steps = object_in(self.expect(1, "explain", *call, "--json", **who).stdout)["steps"]
        (step,) = [step for step in steps if step["gate"] == gate and step["state"] == "refused"]
        findings = objects_in(self.call("doctor", "--json", **who).stdout)
        (finding,) = [finding for finding in findings if finding["check"] == check]
        if check == "preferences":
            self.assertTrue(finding["message"].startswith(step["found"] + ", so"), finding)
        if finding["level"] != "ok":  # without the list nothing is amiss on the OS at hand
            self.assertEqual(finding["remedy"], step["remedy"])
        return step["found"], step["remedy"]

    def test_missing_unreadable_and_broken_files_are_told_apart_with_doctors_remedies(self):
        denied = "not readable: opening the file failed: Permission denied"
        access = "Let this user read it and enter the folders above it."
        self.install()
        for folder, _, _ in os.walk(self.root):
            os.chmod(folder, 0o755)
        for name, preface, call in [
                (PREFERENCES, "", ["preferences", "preferences", "app"]),
                (VERSION_LIST, "no list: the file is ",
                 ["support_list", "support_list", "app", "--os", "10.17.0"])]:
            if name == VERSION_LIST:
                self.write(PREFERENCES, {})
            os.chmod(self.write(name, b""), 0)
            self.assertEqual(self.told_about(*call), (preface + denied, access))
            os.chmod(self.path(name), 0o644)
            broken = self.told_about(*call)
            self.assertEqual(broken[0], preface + "empty")
            os.remove(self.path(name))
            missing = self.told_about(*call)
            self.assertEqual(missing[0], preface + "missing")
            self.assertEqual(len({broken[1], access, missing[1]}), 3)
            os.chmod(self.path(), 0)
            self.assertEqual(self.told_about(*call), (preface + denied, access))
            os.chmod(self.path(), 0o755)

    def test_the_remedy_of_a_broken_preference_file_works(self):
        self.install()
        self.write(PREFERENCES, b"broken")
        self.assertEqual(self.reason(1, "app"), "no_preferences")
        os.rename(self.path(PREFERENCES), self.path("away"))
        self.expect(0, "init", "--sample-preferences", "--agree")
        self.assertEqual(self.reason(0, "app"), "allowed")

    def afterwards(self, *call):
        """The obstacles, which the text must tell as well: the record fails at the first."""
        found = self.explained(0, *call)["afterwards"]
        text = self.expect(0, "explain", *call).stdout.decode()
        stops = bool(found) and found[0]["stops"]
        self.assertEqual("\nallowed, but it cannot be written: see below\n" in text, stops)
        self.assertEqual("nothing stands in its way" in text, not found)
        for obstacle in found:
            self.assertIn(obstacle["remedy"].split()[0], text)
            self.assertLessEqual(max(map(len, text.splitlines()[4:])), 80)
        return [(obstacle["code"], obstacle["path"]) for obstacle in found]

    def test_what_would_stop_the_record_is_told_beside_the_decision(self):
        self.install()
        self.assertEqual(self.afterwards("app"), [])
        self.assertEqual(self.afterwards("printer"), [])
        os.rmdir(self.path("ALM"))
        self.assertEqual(self.afterwards("app"), [("folder_missing", self.path("ALM"))])
        self.assertEqual(self.afterwards("printer"), [])
        self.write("ALM", b"")
        self.assertEqual(self.afterwards("app"), [("not_a_folder", self.path("ALM"))])
        for number in range(1, 1000):
            self.write(f"PLM/Q_{number}.PLM", b"")
        self.assertEqual(self.afterwards("printer"), [("numbers_full", self.path("PLM/Q_*.PLM"))])
        replayed = self.explained(0, "app", "--date", days_ago(0).isoformat() + "Z")
        self.assertIsNone(replayed["afterwards"])

    def test_a_folder_that_may_not_be_written_in_is_told(self):
        self.install()
        for name in [PREFERENCES, CONFIGURATION]:
            os.chmod(self.path(name), 0o644)
        for name in ["PLM", "ALM", "Config"]:
            os.chmod(self.path(name), 0o555)
        told = self.expect(0, "explain", "app", "--json", **self.unprivileged()).stdout
        self.assertEqual([obstacle["code"] for obstacle in object_in(told)["afterwards"]],
                         ["not_writable"])
        for name in ["PLM", "ALM", "Config"]:
            os.chmod(self.path(name), 0o755)


class NarrowTerminal(ToolTest):
    def test_text_is_broken_between_words_to_fit(self):
        self.install(agreement=False)
        for call in (["explain", "app"], ["doctor"], ["preview", "app", "--name", "Album"]):
            for columns, widest in ((40, 40), (80, 80), (200, 80), (0, 80)):
                _, output = self.on_terminal(*call, "--color", "never", columns=columns)
                lines = [line for line in output.decode().replace("\r\n", "\n").split("\n")
                         if "/" not in line and "<" not in line and "QMR" not in line]
                self.assertLessEqual(max(map(len, lines)), widest, (call, columns))


class Doctor(ToolTest):
    def examined(self, status=0, **others):
        """Findings by check and subject. Every line must be one object with the known keys."""
        finished = self.expect(status, "doctor", "--json", **others)
        self.assertEqual(finished.stderr, b"")
        findings = objects_in(finished.stdout)
        for finding in findings:
            self.assertEqual(finding["remedy"] is None, finding["level"] == "ok", finding)
        levels = [finding["level"] for finding in findings]
        self.assertEqual("error" in levels, status == 1)
        return findings

    def faults(self, status=0, **others):
        """Level and check of every finding that is not "ok"."""
        return [(finding["level"], finding["check"]) for finding in self.examined(status, **others)
                if finding["level"] != "ok"]

    def one(self, check, status=0):
        found = [finding for finding in self.examined(status) if finding["check"] == check]
        self.assertEqual(len(found), 1, found)
        return found[0]

    def test_a_sound_installation_has_no_faults(self):
        self.install(LatestSelectedLanguage="de_DE")
        before = tree(self.root)
        self.assertEqual(self.faults(), [])
        self.assertEqual(tree(self.root), before)
        text = self.expect(0, "doctor").stdout.decode()
        self.assertTrue(text.endswith("\nAll is well.\n"), text)
        self.assertNotIn(IDENTIFIER, text)
        self.assertNotIn("\x1b", text)

    def test_after_init_only_the_preferences_are_missed(self):
        self.expect(0, "init")
        self.assertEqual(set(self.faults()), {("warning", "preferences"), ("warning", "decision")})
        self.expect(0, "init", "--sample-preferences")
        self.assertEqual(self.faults(), [])

    def test_without_folders_there_are_errors(self):
        faults = self.faults(1)
        self.assertEqual(faults[:3], [("error", "folder")] * 3)
        text = self.expect(1, "doctor").stdout.decode()
        self.assertIn("error    QMR/PLM: missing\n"
                      "         remedy: Run wenlolib init to make it.\n", text)
        self.assertRegex(text, r"\n3 errors, \d warnings\.\n$")
        self.install()
        os.rmdir(self.path("ALM"))
        self.assertTrue(self.expect(1, "doctor").stdout.endswith(b"\n1 error.\n"))
        os.mkdir(self.path("ALM"))
        os.chmod(self.path("ALM"), 0o755)
        self.assertTrue(self.expect(0, "doctor").stdout.endswith(b"\n1 warning.\n"))
        long = [line for line in text.splitlines()[1:] if len(line) > 80 and self.root not in line]
        self.assertEqual(long, [])

    def test_permissions_of_folders(self):
        self.install()
        for mode, word in [(0o755, "look into it"), (0o770, "write in it"), (0o702, "write in it"),
                           (0o701, "look into it")]:
            os.chmod(self.path("PLM"), mode)
            finding = [f for f in self.examined() if f["subject"] == self.path("PLM")][0]
            self.assertEqual(finding["level"], "warning")
            self.assertIn(word, finding["message"])
            self.assertIn(f"mode 0{mode:o}", finding["message"])
        os.chmod(self.path("PLM"), 0)
        told = self.call("doctor").stdout.decode()
        os.chmod(self.path("PLM"), 0o700)
        self.assertIn("mode 0000", told)

    def test_folders_that_are_none(self):
        self.install()
        os.rmdir(self.path("ALM"))
        self.write("ALM", b"")
        self.assertIn(("error", "folder"), self.faults(1))

    def test_a_folder_that_this_user_cannot_use(self):
        self.install()
        for folder, _, _ in os.walk(self.root):
            os.chmod(folder, 0o755)
        self.addCleanup(os.chmod, self.path("PLM"), 0o700)
        for mode, cause in [(0o555, "nothing can be written in it: making the file failed: "
                                    "Permission denied, mode 0555"),
                            (0o333, "this user may not look into it, mode 0333")]:
            os.chmod(self.path("PLM"), mode)
            self.assertIn((self.path("PLM"), cause),
                          [(f["subject"], f["message"])
                           for f in self.examined(1, **self.unprivileged())])

    def test_files_in_a_folder_that_cannot_be_searched(self):
        self.install()
        for folder, _, _ in os.walk(self.root):
            os.chmod(folder, 0o755)
        os.chmod(self.path("Config"), 0o600)
        self.addCleanup(os.chmod, self.path("Config"), 0o700)
        findings = {f["check"]: f for f in self.examined(1, **self.unprivileged())}
        self.assertEqual(findings["preferences"]["level"], "error")
        self.assertIn("not readable: opening the file failed: Permission denied", findings["preferences"]["message"])

    def test_preferences_of_the_wrong_types(self):
        self.install()
        for check, level, change in [
                ("preferences", "error", b"broken"),
                ("preferences", "error", plistlib.dumps([1])),
                ("installed_date", "error", {"InstalledDate": "2026-01-01"}),
                ("installed_date", "error", {"InstalledDate": None}),
                ("installed_date", "warning", {"InstalledDate": days_ago(-2)}),
                ("agreement", "error", {"LatestSelectedAgreement": "YES"}),
                ("agreement", "ok", {"LatestSelectedAgreement": False}),
                ("agreement", "ok", {"LatestSelectedAgreement": None}),
                ("language", "warning", {"LatestSelectedLanguage": 7}),
                ("language", "ok", {"LatestSelectedLanguage": None})]:
            if isinstance(change, dict):
                sound = {"InstalledDate": days_ago(1), "LatestSelectedAgreement": True,
                         "LatestSelectedLanguage": "de_DE", **change}
                change = {key: value for key, value in sound.items() if value is not None}
            self.write(PREFERENCES, change)
            finding = self.one(check, 1 if level == "error" else 0)
            self.assertEqual(finding["level"], level, finding)

    def test_an_old_installation_is_told_by_the_decisions(self):
        self.install(days=2000)
        messages = {f["subject"]: f["message"] for f in self.examined() if f["check"] == "decision"}
        self.assertEqual(messages, {"Application usage, mode 0": "refused now (period_over)",
                                    "Application usage, mode 1": "refused now (period_over)",
                                    "Application usage, mode 2": "allowed now",
                                    "Printer logs": "allowed now"})

    def test_entries_of_the_support_list(self):
        self.install()
        self.write(VERSION_LIST, {"1001.0": "10.17.3", "1001.1": 10.17, "1.0": "10.17.0",
                                  "1001": "10.17.0", "1002.0": "soon"})
        levels = {f["subject"]: f["level"] for f in self.examined()
                  if f["check"] == "support_list_entry"}
        self.assertEqual(levels, {"1001.0": "ok", "1001.1": "warning", "1.0": "warning",
                                  "1001": "warning", "1002.0": "warning"})
        self.write(VERSION_LIST, b"broken")
        self.assertEqual(self.one("support_list")["level"], "warning")

    def test_the_identifier(self):
        self.install()
        for level, word, configuration in [
                ("ok", "is stored", {"WENLIBUUID": IDENTIFIER}),
                ("ok", "no identifier yet", {"WENLIBUUID": "NOTDETERMINED"}),
                ("ok", "no identifier yet", {"WENLIBUUID": 7}),
                ("ok", "no identifier yet", {}),
                ("warning", "is empty", {"WENLIBUUID": ""}),
                ("warning", "usual form", {"WENLIBUUID": "mine"}),
                ("warning", "neither XML nor binary", b"broken"),
                ("warning", "empty", b""),
                ("warning", "damaged: a key has no value (line 2)",
                 b"<plist><dict>\n<key>k</key></dict></plist>"),
                ("warning", "the file's frame is damaged, or cut off (byte 0)", b"bplist00"),
                ("warning", "without a dictionary at its root", b"<plist><array/></plist>"),
                ("warning", "some values cannot be read",
                 b"<plist><dict><key>WENLIBUUID</key><string>x</string>"
                 b"<key>k</key><real>1e999</real></dict></plist>"),
                ("error", "every record has another identifier",
                 b"<plist><dict><key>k</key><real>1e999</real></dict></plist>")]:
            self.write(CONFIGURATION, configuration)
            finding = self.one("identifier", 1 if level == "error" else 0)
            self.assertEqual(finding["level"], level, finding)
            self.assertIn(word, finding["message"])
        os.remove(self.path(CONFIGURATION))
        self.assertIn("no identifier yet", self.one("identifier")["message"])

    def test_bundles_and_their_versions(self):
        self.install()
        self.assertEqual(self.one("host_bundle")["message"], "not installed")
        information = HOST_BUNDLE + "/Contents/Info.plist"
        self.write(information, {"CFBundleShortVersionString": "2.1.4"})
        self.assertEqual(self.one("host_bundle")["message"], "version 2.1.4")
        self.assertEqual(self.one("printer_log_version")["message"], "2.1")
        self.write(information, {"CFBundleVersion": "2.1.4"})
        self.assertEqual(self.one("host_bundle")["level"], "warning")

    def test_leftovers_are_told_by_their_age(self):
        self.install()
        self.assertEqual(self.one("leftover")["message"], "none")
        os.mkdir(self.path("PLM/sub"))
        old, new = "PLM/sub/.wenlolib-0123.tmp", "ALM/.wenlolib-4567.tmp"
        for name in [old, new, "PLM/.wenlolib-89.txt", "PLM/A.tmp"]:
            self.write(name, b"x" * 2048)
        three_days = time.time() - 3 * 86400
        os.utime(self.path(old), (three_days, three_days))
        found = {f["subject"]: f for f in self.examined() if f["check"] == "leftover"}
        self.assertEqual(set(found), {self.path(old), self.path(new)})
        self.assertEqual(found[self.path(old)]["level"], "warning")
        self.assertEqual(found[self.path(old)]["message"], "unfinished, 2.0 KiB, 3 days old")
        self.assertEqual(found[self.path(new)]["level"], "ok")

    def leftover(self, name, hours):
        """A file that was last changed this many hours ago."""
        path = self.write(name, b"x" * 2048)
        moment = time.time() - hours * 3600
        os.utime(path, (moment, moment))
        return path

    def cleaned(self, status=0, **others):
        """What --clean says about leftovers: level, check and message by subject."""
        finished = self.expect(status, "doctor", "--json", "--clean", **others)
        findings = objects_in(finished.stdout)
        return {found["subject"]: (found["level"], found["check"], found["message"])
                for found in findings if found["check"].startswith("leftover")}

    def expect_gone(self, before, paths):
        """Checks that these files are gone and everything else is unchanged."""
        left = {path: kept for path, kept in before.items() if path not in paths}
        self.assertEqual(len(left), len(before) - len(paths))
        self.assertEqual(tree(self.root), left)

    def test_clean_removes_what_killed_programs_have_left_a_day_ago(self):
        self.install()
        os.mkdir(self.path("PLM/sub"))
        old = [self.leftover(name, 25) for name in [
            "PLM/.wenlolib-0123456789abcdef0123456789abcdef.tmp", "ALM/.wenlolib-4567.tmp",
            "Config/.wenlolib-89ab.tmp", "PLM/sub/.wenlolib-cdef.tmp", "PLM/.wenlolib-.tmp",
            "PLM/.wenlolib-QX200_7.PLM.tmp", "ALM/.wenlolib- \n\u00e9\x1b[31m.tmp"]]
        before = tree(self.root)
        found = self.cleaned()
        self.expect_gone(before, old)
        self.assertEqual(set(found), set(old))
        for path in old:
            self.assertEqual(found[path], ("ok", "leftover_removed",
                                           "unfinished, 2.0 KiB, 25 hours old: removed"))
        after = tree(self.root)
        finding = ("ok", "leftover", "none")
        self.assertEqual(self.cleaned(), {"Unfinished files": finding})
        self.assertEqual(tree(self.root), after)

    def test_clean_says_what_it_has_removed(self):
        self.install()
        self.leftover("PLM/.wenlolib-0.tmp", 72)
        self.leftover("PLM/.wenlolib-1.tmp", 5)
        def told(*options):
            return " ".join(self.expect(0, "doctor", *options).stdout.decode().split())

        remedy = "remedy: A program was killed while writing. wenlolib doctor --clean removes it"
        self.assertEqual(told().count(remedy), 2)
        cleaned = told("--clean")
        self.assertIn("PLM/.wenlolib-0.tmp: unfinished, 2.0 KiB, 3 days old: removed", cleaned)
        self.assertIn("PLM/.wenlolib-1.tmp unfinished, 2.0 KiB, 5 hours old: left, less than a "
                      f"day old {remedy} once it is at least a day old.", cleaned)

    def test_clean_leaves_what_is_not_a_day_old(self):
        self.install()
        ages = {"0.02": "ok", "0.9": "ok", "1.1": "warning", "23.9": "warning", "-1000": "ok"}
        paths = {self.leftover(f"PLM/.wenlolib-{age}.tmp", float(age)): level
                 for age, level in ages.items()}
        before = tree(self.root)
        found = self.cleaned()
        self.assertEqual(tree(self.root), before)
        for path, level in paths.items():
            self.assertEqual(found[path][:2], (level, "leftover"), path)
            self.assertIn(": left, ", found[path][2])

    def test_clean_touches_nothing_else(self):
        self.install()
        for name in ["PLM/.wenlolib-0.txt", "PLM/A.tmp", "PLM/wenlolib-0.tmp", "PLM/A_1.PLM",
                     "PLM/.wenlolib-0.tmp.bak", "PLM/.wenlolib-0.TMP", "ALM/x.wenlolib-0.tmp",
                     ".wenlolib-0.tmp", "PlugIns/.wenlolib-0.tmp", "/away/.wenlolib-0.tmp",
                     "/linked/.wenlolib-0.tmp"]:
            self.leftover(name, 100)
        os.symlink(self.path("/away"), self.path("PLM/away"))
        before = tree(self.root)
        self.assertEqual(self.cleaned(), {"Unfinished files": ("ok", "leftover", "none")})
        self.assertEqual(tree(self.root), before)

    def test_clean_leaves_what_is_no_regular_file_and_says_so(self):
        self.install()
        target = self.leftover("/away/.wenlolib-0.tmp", 100)
        os.symlink(target, self.path("PLM/.wenlolib-link.tmp"))
        os.symlink("nowhere", self.path("PLM/.wenlolib-dangling.tmp"))
        os.symlink(self.path("/away"), self.path("PLM/.wenlolib-way.tmp"))
        os.mkdir(self.path("ALM/.wenlolib-folder.tmp"))
        os.mkfifo(self.path("Config/.wenlolib-pipe.tmp"))
        others = ["PLM/.wenlolib-link.tmp", "PLM/.wenlolib-dangling.tmp", "PLM/.wenlolib-way.tmp",
                  "ALM/.wenlolib-folder.tmp", "Config/.wenlolib-pipe.tmp"]
        for name in others:
            os.utime(self.path(name), (0, 0), follow_symlinks=False)
        os.link(self.leftover("/other-name", 100), self.path("PLM/.wenlolib-hard.tmp"))
        before = tree(self.root)
        found = self.cleaned()
        self.expect_gone(before, [self.path("PLM/.wenlolib-hard.tmp")])
        for name in others:
            self.assertEqual(found[self.path(name)],
                             ("warning", "leftover", "not a regular file: left"), name)
        self.assertEqual(len(found), len(others) + 1)

    def test_clean_tells_what_it_could_not_remove(self):
        self.install()
        path = self.leftover("PLM/.wenlolib-0.tmp", 100)
        for folder, _, _ in os.walk(self.path(HOME)):
            os.chmod(folder, 0o555)
        self.addCleanup(lambda: [os.chmod(f, 0o755) for f, _, _ in os.walk(self.path(HOME))])
        before = tree(self.root)
        found = self.cleaned(1, **self.unprivileged())
        self.assertEqual(found, {path: ("error", "leftover", "unfinished, 2.0 KiB, 4 days old: "
                                        "cannot be removed: Permission denied")})
        self.assertEqual(tree(self.root), before)

    def test_clean_removes_more_than_it_lists(self):
        self.install()
        paths = [self.leftover(f"PLM/.wenlolib-{number:02}.tmp", 30) for number in range(40)]
        kept = [self.leftover(f"PLM/.wenlolib-{number:02}.tmp", 2) for number in range(40, 47)]
        told = self.one_more()
        self.assertEqual(told, [("warning", "leftover", "27")])
        before = tree(self.root)
        self.assertEqual(self.one_more("--clean"), [("ok", "leftover_removed", "20 removed"),
                                                    ("warning", "leftover", "7 left")])
        self.expect_gone(before, paths)
        self.assertTrue(all(os.path.exists(path) for path in kept))

    def one_more(self, *options):
        """What is said about leftovers when there are too many to list."""
        findings = objects_in(self.expect(0, "doctor", "--json", *options).stdout)
        return [(found["level"], found["check"], found["message"]) for found in findings
                if found["subject"] == "More unfinished files"]

    def test_nothing_is_removed_unless_clean_is_asked_for(self):
        self.install()
        self.leftover("PLM/.wenlolib-0.tmp", 100)
        before = tree(self.root)
        self.assertEqual(self.faults(), [("warning", "leftover")])
        for wrong in [["--clean", "more"], ["--clean=maybe"], ["--cleanup"], ["clean"]]:
            self.expect(2, "doctor", *wrong)
        self.assertEqual(tree(self.root), before)

    def test_numbers_of_printer_logs_that_run_out(self):
        self.install()
        for number in range(1, 900):
            self.write(f"PLM/A_{number}.PLM", b"")
        for name in ["B_900.PLM", "A_1000.PLM", "A_0.PLM", "A_x.PLM", "A_900.ALM", "A_9 0.PLM"]:
            self.write("PLM/" + name, b"")
        self.assertEqual(self.one("printer_log_numbers")["level"], "ok")
        self.write("PLM/A_900.PLM", b"")
        finding = self.one("printer_log_numbers")
        self.assertEqual(finding["level"], "warning")
        self.assertEqual(finding["message"], "900 of 999 numbers are taken")

    def test_room_on_the_disk_is_told(self):
        self.install()
        self.assertRegex(self.one("disk")["message"], r"^[\d.,]+ ([KMGT]i)?B free")

    def mounted(self, options):
        """Mounts a small file system of its own on the support folder."""
        def mount(*call):
            return subprocess.run(call, capture_output=True, text=True, check=False)

        if os.geteuid() != 0:
            self.skipTest("only root may mount a file system")
        done = mount("mount", "-t", "tmpfs", "-o", options, "tmpfs", self.path())
        if done.returncode != 0:
            self.skipTest(f"no file system may be mounted here: mount ends with {done.returncode}")
        self.addCleanup(mount, "umount", "--lazy", self.path())
        return mount

    def test_a_disk_with_little_room(self):
        self.install()
        for size, level in [("200m", "ok"), ("64m", "warning"), ("512k", "error")]:
            mount = self.mounted(f"size={size},mode=0700")
            for name in ["PLM", "ALM", "Config"]:
                os.mkdir(self.path(name), 0o700)
            finding = self.one("disk", 1 if level == "error" else 0)
            self.assertEqual((finding["level"], finding["subject"]), (level, self.path()))
            self.assertEqual(mount("umount", self.path()).returncode, 0)

    def test_a_disk_without_room_for_another_file(self):
        self.install()
        self.mounted("size=200m,nr_inodes=4,mode=0700")
        for name in ["PLM", "ALM", "Config"]:
            os.mkdir(self.path(name), 0o700)
        finding = self.one("disk", 1)
        self.assertEqual(finding["level"], "error")
        self.assertIn("no inodes for another file", finding["message"])

    def test_a_disk_that_is_read_only(self):
        self.install()
        mount = self.mounted("size=200m,mode=0700")
        self.assertEqual(self.one("disk", 1)["level"], "ok")
        self.assertEqual(mount("mount", "-o", "remount,ro", self.path()).returncode, 0)
        finding = self.one("disk", 1)
        self.assertEqual((finding["level"], finding["message"]),
                         ("error", "on a read-only file system"))

    def test_the_cause_of_a_folder_that_is_read_only_is_that_of_a_record(self):
        self.install()

        def read_only(command):
            return subprocess.run(
                ["unshare", "-Urm", "sh", "-c", 'mount --bind -o ro "$0" "$0" && exec "$@"',
                 self.path(), *command], input=b"x", capture_output=True, timeout=60,
                cwd=self.outside, env={**os.environ, **self.environment}, check=False)

        if not shutil.which("unshare") or read_only(["true"]).returncode != 0:
            self.skipTest("no folder may be mounted read-only here")
        told = read_only(self.arguments(["record", "app", "--name", "A", "--option", "2"]))
        cause = "making the file failed: Read-only file system"
        remedy = "Remount the disk read-write."
        self.assertTrue(told.stderr.decode().endswith(f": not written: {cause}. {remedy}\n"), told)
        findings = objects_in(read_only(self.arguments(["doctor", "--json"])).stdout)
        self.assertEqual([(f["message"].split(", mode")[0], f["remedy"]) for f in findings
                          if f["check"] == "folder"],
                         [("nothing can be written in it: " + cause, remedy)] * 3)
        told = object_in(read_only(self.arguments(["explain", "printer", "--json"])).stdout)
        self.assertEqual([(each["found"], each["remedy"]) for each in told["afterwards"]],
                         [("nothing can be written in it: " + cause, remedy)])

    def test_wrong_usage(self):
        self.expect_usage_error("more", "doctor", "more")
        self.expect_usage_error("--fix", "doctor", "--fix")


if __name__ == "__main__":
    ToolTest.command = os.path.abspath(sys.argv.pop())
    skips.main()
