#!/usr/bin/env python3
"""Compares man page and completions with what `wenlolib --help` says. Argument: the command's path.

All of them must have every option of a call, and no others. The gates of the decision are compared
too, in man page and host guide. And the scripts of tests must report which tests they skipped."""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

HERE = os.path.dirname(os.path.abspath(__file__))
sys.dont_write_bytecode = True
sys.path.insert(0, HERE)
ROOT = os.path.join(HERE, "..", "..")
TOOLS = os.path.join(ROOT, "tools")

import skips

SIMPLE = ["verify", "decode", "rows", "collect", "diff", "list", "report", "forget", "path", "doctor", "init", "help"]
WITH_KINDS = ["explain", "preview", "record"]
CALLS = SIMPLE + [f"{call} {kind}" for call in WITH_KINDS for kind in ["app", "printer"]]
EVERYWHERE = {"--root", "--color", "--exit-zero", "--help"}
COMMAND = ""


def text_of(name):
    with open(os.path.join(TOOLS, name), encoding="utf-8") as file:
        return file.read()


def helped(call):
    """The options in the help of a call, long and short, except those that every call has."""
    told = subprocess.run([COMMAND, *call.split(), "--help"], capture_output=True, text=True,
                          check=True).stdout
    options = set()
    for line in told.split("\nOptions:\n")[1].split("\n\n")[0].splitlines():
        names = re.match(r" {1,4}((?:--?[a-z0-9][a-z-]*,?)+)", line)
        if names:
            options.update(names[1].split(","))
    assert "--help" in options, told
    return options - EVERYWHERE - {"-h"}


def flags(line):
    """The options in a line of the man page's source."""
    found = set()
    macro = ""
    for word in line.lstrip(".").split():
        if re.fullmatch("[A-Z][a-z]", word):
            macro = word
        elif macro == "Fl" and word.strip("|,"):
            found.add("-" + word)
    return found


def on_the_man_page():
    """{call: its options}, from the man page."""
    page = text_of("man/wenlolib.1")
    items = page.split(".Bl -tag -width Ds\n", 1)[1].split(".El", 1)[0].splitlines()
    found, heads = {}, []
    for line in items:
        if line.startswith(".It Cm "):
            if heads and heads[-1][1]:
                heads = []
            call = " ".join(re.match(r"\.It Cm ((?:[a-z]+ ?)+)", line)[1].split())
            heads.append([call, False])
            found[call] = flags(line)
        else:
            for head in heads:
                head[1] = True
                found[head[0]] |= flags(line)
    return found


def from_bash(call, current="--"):
    """What bash offers after a call."""
    words = ["wenlolib", *call.split(), current]
    script = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _wenlolib;'
              ' printf "%s\\n" "${COMPREPLY[@]}"')
    source = os.path.join(TOOLS, "completion/wenlolib.bash")
    told = subprocess.run(["bash", "-c", script, "bash", source, *words], capture_output=True,
                          text=True, check=True, cwd="/")
    assert told.stderr == "", told.stderr
    return set(told.stdout.split())


def from_fish(line):
    """What fish offers after a line."""
    source = os.path.join(TOOLS, "completion/wenlolib.fish")
    with tempfile.TemporaryDirectory() as folder:
        open(os.path.join(folder, "document"), "w").close()
        told = subprocess.run(["fish", "--no-config", "-c",
                               f"source '{source}'; complete -C '{line}'"],
                              capture_output=True, text=True, check=True, cwd=folder,
                              env={**os.environ, "HOME": folder})
    assert told.stderr == "", told.stderr
    return {offered.split("\t")[0] for offered in told.stdout.splitlines()}


def from_zsh():
    """{call: what the completion for zsh offers}."""
    source = text_of("completion/_wenlolib").replace("\\\n", " ")
    lists = {name: set(re.findall(r"'(--[a-z-]+)\[", body))
             for name, body in re.findall(r"(\w+)=\((.*?)\)\n", source, re.DOTALL)}
    found = {}
    for call, body in re.findall(r"'([a-z]+ (?:app|printer)?)'\*?\) _arguments (.*?) ;;", source):
        options = set(re.findall(r"'(--[a-z-]+)\[", body))
        for name in re.findall(r"\$(\w+)", body):
            options |= lists[name]
        found[call.strip()] = options
    return found


def rows_of(name, path):
    """The texts in each row of a table in the source, in order."""
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        body = re.search(rf"> {name}\(\{{\n(.*?)\n\}}\);", file.read(), re.DOTALL)[1]
    return [re.findall(r'"([^"]*)"', row) for row in body.splitlines()]


def gate_names():
    """(reason, gate), in the order of the decision's gates."""
    return [(reason, code) for code, _, reason in rows_of("gateNames",
                                                          "src/policy/RecordingGates.h")]


def state_codes():
    return [code for code, _ in rows_of("stateNames", "tools/explain/Explanation.cpp")]


def in_the_host_guide():
    """(reason, gate) of the steps that are gates, in the order of the host guide."""
    with open(os.path.join(ROOT, "docs/host-guide.md"), encoding="utf-8") as file:
        steps = file.read().split("\n## Why is my record missing?\n", 1)[1].split("\n\n| ", 1)[1]
    rows = [row.split("|") for row in steps.split("\n\n", 1)[0].splitlines()[2:]]
    return [(row[4].strip(" `"), row[3].strip(" `")) for row in rows if row[3].strip()]


def table_on_the_man_page(head):
    """The rows of the man page's table whose first column has this head, without the head."""
    page = text_of("man/wenlolib.1")
    rows = page.split(f".It Sy {head} Ta ", 1)[1].split("\n.El\n", 1)[0].splitlines()[1:]
    return [tuple(row.removeprefix(".It ").split(" Ta ")) for row in rows]


class Documentation(unittest.TestCase):
    maxDiff = None

    def test_the_man_page_has_the_default_of_the_option_word(self):
        told = subprocess.run([COMMAND, "record", "app", "--help"], capture_output=True, text=True,
                              check=True).stdout
        (default,) = re.findall(r"--option N=(\d+) ", told)
        self.assertIn(f"as a decimal number; {default} is the default.\n", text_of("man/wenlolib.1"))

    def test_the_man_page_has_every_option_and_no_other(self):
        found = on_the_man_page()
        self.assertEqual(sorted(found), sorted(CALLS))
        for call in CALLS:
            self.assertEqual(found[call], helped(call), call)

    def test_the_man_page_has_what_every_call_takes(self):
        synopsis = text_of("man/wenlolib.1").split("SYNOPSIS\n", 1)[1].split(".Sh", 1)[0]
        named = set().union(*map(flags, synopsis.splitlines()))
        self.assertEqual(named, EVERYWHERE | {"--version", "-V"})

    def test_the_version_names_what_is_built_in(self):
        lines = subprocess.run([COMMAND, "--version"], capture_output=True, text=True,
                               check=True).stdout.splitlines()
        self.assertRegex(lines[0], r"^wenlolib \d+\.\d+\.\d+$")
        self.assertEqual(lines[1], "built in:")
        self.assertEqual([re.sub(r" \d+\.\d+\.\d+( \(.+\))?$", "", line) for line in lines[2:]],
                         ["expat", "mbedTLS"])

    def test_bash_offers_every_option_and_no_other(self):
        for call in CALLS:
            long = {option for option in helped(call) if option.startswith("--")}
            self.assertEqual(from_bash(call), long | EVERYWHERE, call)
        self.assertEqual(from_bash(""), EVERYWHERE | {"--version"})

    def test_bash_offers_calls_and_kinds(self):
        calls = {call.split()[0] for call in CALLS}
        self.assertEqual({word for word in from_bash("", "") if word[0] != "-"}, calls)
        for call in WITH_KINDS:
            self.assertEqual(from_bash(call, ""), {"app", "printer"} | EVERYWHERE)
            self.assertEqual(from_bash(call, "p"), {"printer"})

    def test_bash_offers_files_only_where_a_call_takes_some(self):
        for call in ["verify", "decode --json", "diff", "preview app", "record printer --name A",
                     "explain app --preferences", "doctor --plugin", "init --root"]:
            self.assertIn("tmp", from_bash(call, "t"), call)
        for call in ["", "explain", "explain app", "preview", "doctor", "init", "help",
                     "record app --name"]:
            self.assertNotIn("tmp", from_bash(call, "t"), call)
        self.assertIn("verify", from_bash("help", "v"))

    @unittest.skipUnless(shutil.which("fish"), "no fish")
    def test_fish_offers_every_option_and_no_other(self):
        for call in CALLS:
            long = {option for option in helped(call) if option.startswith("--")}
            self.assertEqual(from_fish(f"wenlolib {call} --"), long | EVERYWHERE, call)
        self.assertEqual(from_fish("wenlolib --"), EVERYWHERE | {"--version"})

    @unittest.skipUnless(shutil.which("fish"), "no fish")
    def test_fish_offers_calls_and_kinds_and_files_where_a_call_takes_some(self):
        self.assertEqual(from_fish("wenlolib "), {call.split()[0] for call in CALLS})
        for call in WITH_KINDS:
            self.assertEqual(from_fish(f"wenlolib {call} "), {"app", "printer"})
        for call in ["verify ", "decode --json ", "record app --name A ",
                     "explain app --preferences ", "doctor --plugin "]:
            self.assertEqual(from_fish(f"wenlolib {call}"), {"document"}, call)
        for call in ["explain app ", "doctor ", "init ", "record app --name ", "verify --jobs "]:
            self.assertEqual(from_fish(f"wenlolib {call}"), set(), call)

    def test_zsh_offers_every_option_and_no_other(self):
        found = from_zsh()
        self.assertEqual(sorted(found), sorted(CALLS))
        for call in CALLS:
            long = {option for option in helped(call) if option.startswith("--")}
            self.assertEqual(found[call], long | EVERYWHERE, call)

    def test_the_man_page_has_every_code_of_explain_and_no_other(self):
        gates = table_on_the_man_page("reason")
        self.assertEqual([row[:2] for row in gates], gate_names())
        states = table_on_the_man_page("state")
        self.assertEqual([row[0] for row in states], state_codes())
        for row in gates + states:
            self.assertTrue(row[-1].strip(), row)
        self.assertEqual({len(row) for row in gates}, {3})
        self.assertEqual({len(row) for row in states}, {2})

    def test_the_host_guide_has_every_gate_in_order_and_no_other(self):
        gates = gate_names()
        self.assertEqual(gates[0], ("allowed", "none"))
        self.assertEqual(in_the_host_guide(), gates[1:])

    def test_guides_name_the_periods(self):
        with open(os.path.join(ROOT, "src/policy/RecordingGates.h"), encoding="utf-8") as file:
            application, printer = re.findall(r"std::chrono::days\((\d+)\)", file.read())
        guide = "docs/host-guide.md"
        for name, told in [
                (guide, f"installation less than {application} days ago"),
                (guide, f"installation date less than {printer} days ago"),
                (guide, f"at exactly {application} or {printer} days it is over"),
                (guide, f"the installation was less than {application} days ago "
                        f"(printer logs: {printer})")]:
            with open(os.path.join(ROOT, name), encoding="utf-8") as file:
                self.assertTrue(told in " ".join(file.read().split()), f"{name}: {told}")

    def test_calls_that_take_paths_as_they_stand_say_so(self):
        page = " ".join(text_of("man/wenlolib.1").split())
        self.assertIn(".Cm verify , .Cm decode , .Cm rows , .Cm collect , .Cm diff and .Cm report use "
                      "their paths as given; "
                      ".Fl -root does not apply to them.", page)
        for call in CALLS:
            told = subprocess.run([COMMAND, *call.split(), "--help"], capture_output=True,
                                  text=True, check=True).stdout
            said = re.search(r" used as given; --root does not apply to (it|them)\.",
                             " ".join(told.split())) is not None
            self.assertEqual(said,
                             call in ["verify", "decode", "rows", "collect", "diff", "report"], call)

    def test_help_fits_into_80_columns(self):
        for call in ["", *CALLS]:
            told = subprocess.run([COMMAND, *call.split(), "--help"], capture_output=True,
                                  text=True, check=True).stdout
            self.assertLessEqual(max(map(len, told.splitlines())), 80, call)

    def test_the_first_screen_names_every_call(self):
        told = subprocess.run([COMMAND, "--help"], capture_output=True, text=True,
                              check=True).stdout
        named = set(re.findall(r"^  wenlolib ([a-z]+)", told, re.MULTILINE))
        self.assertEqual(named, {call.split()[0] for call in CALLS})


SOME_SKIPPED = """
import unittest, skips

class Some(unittest.TestCase):
    def test_a(self):
        self.skipTest("no\\n  printer")

    @unittest.skip("no ink")
    def test_b(self):
        pass

    def test_c(self):
        with self.subTest(paper="A4"):
            self.skipTest("no paper")

    def test_d(self):
        self.assertEqual(4, %d)

skips.main()
"""


class Skips(unittest.TestCase):
    def test_each_is_told_on_a_line_and_the_exit_status_stays(self):
        for number, status in [(4, 0), (5, 1)]:
            with tempfile.TemporaryDirectory() as folder:
                script = os.path.join(folder, "some_test.py")
                with open(script, "w", encoding="utf-8") as file:
                    file.write(SOME_SKIPPED % number)
                finished = subprocess.run(
                    [sys.executable, script], capture_output=True, text=True,
                    env={**os.environ, "PYTHONPATH": HERE, "PYTHONDONTWRITEBYTECODE": "1"})
            self.assertEqual(finished.returncode, status, finished.stderr)
            self.assertEqual(finished.stdout, "SKIPPED some_test.test_a: no printer\n"
                                              "SKIPPED some_test.test_b: no ink\n"
                                              "SKIPPED some_test.test_c (paper='A4'): no paper\n")

    def test_one_that_needs_a_pseudo_terminal_is_where_there_is_none(self):
        for error in [FileNotFoundError(2, "No such file"), OSError(28, "No space left")]:
            with unittest.mock.patch("os.openpty", side_effect=error):
                with self.assertRaisesRegex(unittest.SkipTest, f"pseudo-terminal.*{error.strerror}"):
                    skips.pseudo_terminal()

    def test_every_script_here_tells_them(self):
        for name in sorted(os.listdir(HERE)):
            if name.endswith("_test.py"):
                with open(os.path.join(HERE, name), encoding="utf-8") as file:
                    source = file.read()
                self.assertTrue(source.endswith("    skips.main()\n"), name)

    def test_every_script_that_skips_tells_it(self):
        tests = os.path.dirname(HERE)
        scripts = []
        for folder, _, names in os.walk(tests):
            scripts += [os.path.join(folder, name) for name in names if name.endswith(".py")]
        telling = set()
        for script in scripts:
            with open(script, encoding="utf-8") as file:
                source = file.read()
            skipping = re.search(r"\.skipTest\(|unittest\.skip|SkipTest", source)
            if skipping and os.path.basename(script) != "skips.py":
                self.assertNotRegex(source, r"unittest\.main\(", script)
                if re.search(r"skips\.main\(", source):
                    telling.add(os.path.relpath(script, tests))
        self.assertLessEqual({"docs/pages_test.py", "objc/example_test.py"}, telling)


if __name__ == "__main__":
    COMMAND = os.path.abspath(sys.argv.pop())
    skips.main()
