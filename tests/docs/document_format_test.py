#!/usr/bin/env python3
"""Runs the receiver shown in docs/document-format.md on the example documents, and compares its
output with the output on the page."""
import pathlib
import re
import subprocess
import sys
import unittest

project = pathlib.Path(__file__).resolve().parents[2]
page = (project / "docs/document-format.md").read_text()
documents = project / "examples/documents"


def unfolded(lines):
    """The output as the page shows it, with its folded lines joined again."""
    text = "".join(line.removeprefix("    ") + "\n" for line in lines)
    return re.sub(r"\n +", " ", text)


class DocumentFormat(unittest.TestCase):
    def test_the_receiver_reads_the_examples_as_the_page_says(self):
        receiver = re.search(r"```python\n(.*?)```", page, re.DOTALL)[1]
        names = sorted(path.name for path in documents.iterdir())
        self.assertEqual(len(names), 3)
        run = subprocess.run([sys.executable, "-c", receiver, *names], cwd=documents,
                             capture_output=True, text=True, check=True)
        shown = re.search(r"it prints \(.*?\n\n((?:    [^\n]*\n)+)", page, re.DOTALL)[1]
        self.assertEqual(run.stdout, unfolded(shown.splitlines()))

    def test_the_whole_documents_on_the_page_are_the_files(self):
        for name in ("application-rc4.ALM", "printer-older-xor.PLM"):
            text = (documents / name).read_text()
            self.assertIn(text, re.sub(r"\n *", "", page), name)


unittest.main()
