#!/usr/bin/env python3
"""Tests of scripts/check-mac with fake tools: its report and exit status, and that it runs what
docs/macos.md says."""
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True  # the folder of the tests stays as it is
project = pathlib.Path(__file__).resolve().parents[3]
TOOLS = ["uname", "sw_vers", "cmake", "clang", "clang++", "nm", "python3", "arch", "codesign",
         "leaks", "plutil", "sudo"]
GROUP = "Library/Group Containers/K7MW2PL9QD.QX.common"
ALL = ["--own-home", "--installed-copy", "--identity", "Developer"]

# Every tool, and every program that it makes: what it does depends on the name it is called by, and
# on the answers in a file.
FAKE = r'''#!PYTHON -IS
import datetime, hashlib, json, os, shutil, sys

mac = json.load(open("MAC"))
name, arguments = os.path.basename(sys.argv[0]), sys.argv[1:]
if "FAKE_ARCH" not in os.environ:  # otherwise it is part of another call
    with open("LOG", "a") as log:
        log.write(json.dumps([name if name in mac["tools"] else sys.argv[0], *arguments]) + "\n")


def document(wrapper, marker, contents, inside="%s"):
    sys.path.insert(0, "PROJECT/tests/verifier")
    sys.dont_write_bytecode = True
    from rc4 import cycling_xor, rc4
    date = b"2026-11-22T10:00:00+00:00"
    key = hashlib.md5(date).digest()
    payload = (rc4 if marker == "R" else cycling_xor)(key, contents).hex().upper()
    tag = "PLI" if "Printer" in wrapper else "Encrypted"
    content = ("<Version></Version><OSVersion></OSVersion><Date>%s</Date><Locale></Locale><ID></ID>"
               % date.decode() + inside % f'<{tag} C="{marker}">{payload}</{tag}>')
    checksum = hashlib.md5(content.encode()).hexdigest().upper()
    return mac["document"] % f'<{wrapper} SUM="{checksum}">{content}</{wrapper}>'


def container():
    home = os.environ.get("CFFIXED_USER_HOME") if mac["follows"] else None
    return (home or mac["home"]) + "/GROUP"


def host():
    bundle, usage, log = arguments
    if not mac["loads"] or name == "strict" and mac["validates"]:
        sys.exit("The bundle cannot be loaded.")
    print("Loaded WENLOLIB", mac["plugin"])
    answers = mac["answers"]
    folder = container() + "/Library/Application Support/QMR"
    if usage == "none" or "/Outside.app/" in sys.argv[0] and mac["sandbox"]:
        answers = ["refused"] * 3
    elif not os.path.exists(folder + "/Config/com.orvan.printing.Quillmere.Pref.plist"):
        sys.exit("nothing is provided in " + folder)
    usage, log = (b"" if each == "none" else open(each, "rb").read() for each in (usage, log))
    written = [("ALM/Quillmere_Log_PhotoAlbum_2611.ALM", "OrvanQXApplication", usage, "%s"),
               ("PLM/QX500_1.PLM", "OrvanQX2Application", log, "%s"),
               ("PLM/QX200_1.PLM", "OrvanQXPrinter", log, "<Printer><DeviceID></DeviceID>"
                "<SN></SN><ROMVER></ROMVER>%s</Printer>")]
    words = ["application usage, Photo Album", "printer log, newer tag type",
             "printer log, older tag type"]
    for word, answer, (path, wrapper, contents, inside) in zip(words, answers, written):
        print("  %-34s %s" % (word, answer))
        if answer == "recorded":
            if path.endswith("_1.PLM") and os.path.exists(f"{folder}/{path}"):
                path = path.replace("_1", "_2")
            with open(f"{folder}/{path}", "w") as file:
                file.write(document(wrapper, mac["marker"], contents, inside))


def probe():
    if mac["crashes"]:
        os.abort()
    if arguments[0] == "container":
        print(container())
    elif arguments[0] == "version":
        print("10.16.0" if "SYSTEM_VERSION_COMPAT" in os.environ else mac["gestalt"])
    elif arguments[0] == "architecture":
        print(10 if os.environ.get("FAKE_ARCH") == "x86_64" else mac["processor"])
    else:
        print(mac["declaration"] + arguments[1].replace("R&D", mac["repaired"]))


if name == "uname":
    print(mac["system"] if arguments == ["-s"] else mac["machine"])
elif name == "sw_vers":
    print(mac["version"])
elif name == "cmake":
    print(mac["warning"], file=sys.stderr)
    if "--build" in arguments and mac["builds"]:
        os.makedirs("build/mac/WENLOLIB.bundle/Contents/MacOS", exist_ok=True)
        open("build/mac/WENLOLIB.bundle/Contents/MacOS/WENLOLIB", "w").close()
    elif not mac["builds"]:
        sys.exit("error: it does not compile")
elif name in ("clang", "clang++"):
    shutil.copy(sys.argv[0], arguments[arguments.index("-o") + 1])
elif name == "nm":
    for each in mac["names"]:
        print("0000000000001234 T", each)
elif name == "python3":
    if "bundle_inspection_test.py" in arguments[0]:
        sys.exit(mac["inspection"])
    os.execv("PYTHON", ["PYTHON", *arguments])
elif name == "arch":
    if arguments[0][1:] not in mac["runs"]:
        sys.exit(1)
    if arguments[1] != "true":
        os.environ["FAKE_ARCH"] = arguments[0][1:]
        os.execv(arguments[1], arguments[1:])
elif name == "codesign":
    if "--display" in arguments:
        print("TeamIdentifier=" + mac["team"], file=sys.stderr)
elif name == "leaks":
    print("leaks Report Version: 4.0\nProcess 7: %d leaks for 0 total leaked bytes." % mac["leaks"])
elif name in ("host", "strict", "lenient"):
    host()
elif name == "probe":
    probe()
'''


def exported():
    lines = (project / "product/exports.txt").read_text().split("\n")
    names = ["_" + line for line in lines if re.fullmatch(r"\w+", line)]
    return names + [f"_OBJC_{kind}_$_{name}" for name in ("WENLOLIB", "CommonTooWenlolib")
                    for kind in ("CLASS", "METACLASS")]


class CheckMac(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name).resolve()
        self.tree = self.folder / "tree"
        self.tools = self.folder / "tools"
        self.home = self.folder / "own home"
        for each in (self.tree, self.tools, self.home):
            each.mkdir()
        for path in project.iterdir():
            if not path.name.startswith((".", "build")):
                (self.tree / path.name).symlink_to(path)
        fake = FAKE
        for word, value in (("PYTHON", sys.executable), ("MAC", self.folder / "mac"),
                            ("LOG", self.folder / "log"), ("PROJECT", project), ("GROUP", GROUP)):
            fake = fake.replace(word, str(value))
        for tool in TOOLS:
            (self.tools / tool).write_text(fake)
            (self.tools / tool).chmod(0o755)
        header = (project / "include/wenlolib/version.h").read_text()
        self.mac = {
            "tools": TOOLS, "home": str(self.home), "system": "Darwin", "machine": "arm64",
            "version": "15.1", "gestalt": "15.1.0", "processor": 20, "runs": ["arm64", "x86_64"],
            "builds": True, "warning": "", "names": exported(), "inspection": "OK",
            "declaration": "", "repaired": "R&amp;D", "loads": True, "validates": True,
            "plugin": re.search(r'_VERSION "(.*)"', header)[1], "crashes": False,
            "follows": True, "answers": ["recorded"] * 3, "marker": "R",
            "document": "%s", "leaks": 0, "sandbox": True, "team": "K7MW2PL9QD",
        }

    def run_script(self, *options, trace=None, **differences):
        (self.folder / "mac").write_text(json.dumps({**self.mac, **differences}))
        environment = {"HOME": str(self.home), "PATH": f"{self.tools}:{os.environ['PATH']}",
                       "TMPDIR": str(self.folder)}
        command = [str(self.tree / "scripts/check-mac"), *options]
        if trace is None:
            return subprocess.run(command, env=environment, capture_output=True, text=True)
        with open(trace, "w") as file:
            environment["BASH_XTRACEFD"] = str(file.fileno())
            return subprocess.run(["bash", "-x", *command], env=environment, capture_output=True,
                                  text=True, pass_fds=[file.fileno()])

    def lines(self, run, verdict):
        """The texts of the report's lines with this verdict. The report is printed and kept."""
        report = (self.tree / "build/mac/report.txt").read_text()
        for line in report.splitlines():
            self.assertIn(line, run.stdout.splitlines())
        return [line[len(verdict):].strip() for line in report.splitlines()
                if line.startswith(verdict + " ")]

    def with_everything(self, **differences):
        """Allows everything. The copy at the fixed path, which the fake sudo does not make, is not
        needed on this system."""
        return self.run_script(*ALL, version="10.15.7", gestalt="10.15.7", **differences)


class Report(CheckMac):
    def test_has_only_same_lines_if_all_is_as_expected(self):
        run = self.with_everything()
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        self.assertEqual(self.lines(run, "DIFFERS") + self.lines(run, "not checked"), [])
        self.assertEqual(self.lines(run, "not here"),
                         ["systems before 10.10, 10.9 and 10.8: this is macOS 10.15.7"])
        same = self.lines(run, "same")
        self.assertEqual(len(same), 46, run.stdout)  # a check that no longer runs is noticed
        self.assertIn("leaks: expected 0, found 0", same)
        self.assertEqual(run.stdout.splitlines()[-1].strip(), "46 same, 0 differ, 0 not checked")

    def test_fails_for_a_single_difference(self):
        run = self.with_everything(leaks=1)
        self.assertEqual(run.returncode, 1)
        self.assertEqual(run.stdout.splitlines()[-1].strip(), "45 same, 1 differ, 0 not checked")

    def assert_differing(self, run, *beginnings):
        self.assertEqual(run.returncode, 1, run.stdout + run.stderr)
        differing = self.lines(run, "DIFFERS")
        for beginning in beginnings:
            with self.subTest(beginning):
                self.assertTrue([line for line in differing if line.startswith(beginning + ": ")],
                                run.stdout + run.stderr)
        self.assertEqual(len(differing), len(beginnings), run.stdout)

    def test_names_what_differs(self):
        self.assert_differing(
            self.run_script(warning="a.cpp:1:1: warning: what is this?", inspection="FAILED",
                            names=exported()[1:] + ["_more"], gestalt="15.2.0", processor=10,
                            declaration="<?xml?>", plugin="0.9.0", validates=False, leaks=3,
                            answers=["refused"] * 3, runs=["arm64"]),
            "warnings of the build", "the inspection",
            "exported names of arm64 that differ from the list",
            "exported names of x86_64 that differ from the list",
            "Gestalt's version, in a program of today", "Gestalt's architecture",
            "NSXMLDocument's output for a sound document", "NSXMLDocument's output for a stray &",
            "a host loads the arm64 half", "a hardened host of no team", "leaks",
            "the arm64 host records application usage",
            "the arm64 host's document, layout application")

    def test_names_what_differs_in_documents(self):
        document = "the arm64 host's document, layout application"
        self.assert_differing(self.run_script(marker="X", document=" %s", runs=["arm64"]),
                              document, document + ", its cipher", document + ", its beginning")

    def test_notices_a_plugin_that_does_not_load(self):
        run = self.run_script(loads=False, repaired="none")
        differing = "\n".join(self.lines(run, "DIFFERS"))
        for what in ("a host loads the arm64 half", "a host loads the x86_64 half",
                     "the same without library validation",
                     "NSXMLDocument's output for a stray &"):
            self.assertIn(what + ": ", differing)

    def test_says_which_names_differ(self):
        run = self.run_script(names=exported()[1:] + ["_more"])
        self.assertIn(f"exported names of arm64 that differ from the list: expected none, "
                      f"found {exported()[0]} +_more", self.lines(run, "DIFFERS"))

    def test_says_what_a_sandboxed_host_must_not_do(self):
        run = self.run_script("--own-home", sandbox=False)
        self.assertIn("a sandboxed host outside the group: "
                      "expected Loaded, refused, refused, refused, "
                      "found Loaded, recorded, recorded, recorded", self.lines(run, "DIFFERS"))

    def test_says_what_was_not_checked(self):
        run = self.run_script()
        self.assertEqual(run.returncode, 1)
        self.assertEqual(self.lines(run, "DIFFERS"), [])
        self.assertEqual(self.lines(run, "not checked"), [
            *(f"the {arch} host records printer logs: they need a copy in /Library, "
              "made with sudo; --installed-copy allows it" for arch in ("arm64", "x86_64")),
            "the sandbox: it would use your own home folder; --own-home allows it"])

    def test_says_what_needs_another_mac_or_team(self):
        run = self.run_script(*ALL, team="ABCDE12345", runs=["arm64"])
        self.assertEqual(self.lines(run, "not here"), [
            "systems before 10.10, 10.9 and 10.8: this is macOS 15.1.0",
            "a host loads the x86_64 half: this Mac does not run x86_64 programs",
            "a sandboxed host in the group: only team K7MW2PL9QD can sign it; "
            "the team of Developer is ABCDE12345"])

    def test_goes_on_after_a_crash(self):
        run = self.run_script("--own-home", crashes=True)
        self.assertEqual(run.returncode, 1)
        self.assertIn("Gestalt's architecture: expected 20, found nothing",
                      self.lines(run, "DIFFERS"))
        self.assertIn("the container, the records, leaks: the container is in neither home folder: "
                      "none", self.lines(run, "not checked"))
        self.assertIn("a sandboxed host outside the group: "
                      "expected Loaded, refused, refused, refused, found Loaded, refused, refused, refused", self.lines(run, "same"))

    def test_names_missing_tools(self):
        (self.tools / "leaks").unlink()
        run = self.run_script()
        self.assertEqual(run.returncode, 1)
        self.assertIn("leaks: there is no leaks here", self.lines(run, "not checked"))

    def test_ends_where_nothing_can_be_built(self):
        run = self.run_script(builds=False)
        self.assertEqual(run.returncode, 1)
        self.assertIn("the plug-in is built, exit status: expected 0, found 1",
                      self.lines(run, "DIFFERS"))
        self.assertEqual(self.lines(run, "not checked"), [
            "everything else: the build failed; see build/mac/build.log and hosts.log"])
        calls = (self.folder / "log").read_text()
        self.assertIn('["cmake", "-S"', calls)
        self.assertNotIn('["nm"', calls)
        self.assertNotIn('["cmake", "--build"', calls, "a step ends at its first failure")


class OwnFolders(CheckMac):
    def left(self):
        return [str(path.relative_to(self.home)) for path in self.home.rglob("*")]

    def test_stay_empty_without_permission(self):
        for follows in (True, False):
            run = self.run_script(follows=follows)
            self.assertEqual(self.left(), [], run.stdout)
        self.assertIn("the container, the records, leaks: the container does not follow "
                      "CFFIXED_USER_HOME; it would use your own home folder; --own-home allows it",
                      self.lines(run, "not checked"))
        self.assertEqual(list(self.folder.glob("tmp*")), [], "the temporary home is removed")

    def test_are_cleaned_up(self):
        run = self.run_script("--own-home", follows=False)
        self.assertIn("the arm64 host records application usage: expected recorded, found recorded",
                      self.lines(run, "same"))
        self.assertNotIn(GROUP, self.left())

    def test_are_left_alone_if_they_are_in_use(self):
        (self.home / GROUP).mkdir(parents=True)
        (self.home / GROUP / "mine").write_text("kept")
        for follows in (True, False):
            run = self.run_script("--own-home", follows=follows)
            self.assertEqual(run.returncode, 1)
            self.assertIn("exists; move it away first", "".join(self.lines(run, "not checked")))
            self.assertEqual(os.listdir(self.home / GROUP), ["mine"])

    def test_sudo_is_called_only_if_allowed(self):
        self.run_script()
        self.assertNotIn('["sudo"', (self.folder / "log").read_text())
        self.run_script("--installed-copy")
        self.assertIn('["sudo", "cp", "-R"', (self.folder / "log").read_text())


class Refusals(CheckMac):
    def assert_refused(self, run, message):
        self.assertEqual((run.returncode, run.stdout, run.stderr), (2, "", message + "\n"))
        self.assertFalse((self.tree / "build").exists())

    def test_on_another_system(self):
        self.assert_refused(self.run_script(system="Linux"),
                            "scripts/check-mac runs only on a Mac; this is Linux.")

    def test_of_wrong_use(self):
        usage = "usage: scripts/check-mac [--own-home] [--installed-copy] [--identity NAME]"
        for options in (["--help"], ["more"], ["--identity"]):
            self.assert_refused(self.run_script(*options), usage)
        self.assert_refused(self.run_script("--identity", "Developer"),
                            "--identity needs --own-home.")


def commands_of_the_page():
    """The commands in the list of docs/macos.md, each with a pattern for a call of it. Expansions
    stand for anything; assignments before a command, and redirections, are left out."""
    section = (project / "docs/macos.md").read_text().split("## What to check on a Mac\n")[1]
    commands = []
    for text in re.findall(r"^ {7}(.*?(?:\\\n.*?)*)$", section, re.MULTILINE):
        command = re.split(" >", text.replace("\\\n", ""))[0]
        call = " ".join(shlex.split(re.sub(r"^(env -u \w+ )?([A-Z_]+=\S+ +)*", "", command)))
        pattern = re.sub(r"\\\$\\\(.*?\\\)|\\\$\w+|\\\*", ".*", re.escape(call))
        commands.append((text, re.compile(r"(env .* )?" + pattern)))
    return commands


class Page(CheckMac):
    def test_lists_what_is_run(self):
        trace = self.folder / "trace"
        run = self.run_script(*ALL, trace=trace)
        self.assertIn("records application usage", run.stdout)
        traced = [" ".join(shlex.split(line.lstrip("+ ")))
                  for line in trace.read_text().splitlines()
                  if line.startswith("+") and line.count("'") % 2 == 0]
        commands = commands_of_the_page()
        self.assertGreater(len(commands), 35)
        for text, pattern in commands:
            self.assertTrue([line for line in traced if pattern.fullmatch(line)], text)

    def test_leaves_out_nothing_that_is_run(self):
        self.run_script(*ALL)
        patterns = [pattern for _, pattern in commands_of_the_page()]
        patterns += [re.compile(each) for each in (r"uname -[sm]", r"arch -\w+ true")]
        calls = [" ".join(json.loads(line))
                 for line in (self.folder / "log").read_text().splitlines()]
        self.assertGreater(len(calls), 40)
        for call in calls:
            self.assertTrue([each for each in patterns if each.fullmatch(call)], call)


if shutil.which("bash") is None:
    sys.exit("there is no bash")
unittest.main()
