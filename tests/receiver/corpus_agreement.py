#!/usr/bin/env python3
"""Compares the receiver with the verifier, which shares no code with it, on a corpus of documents.

    corpus_agreement.py VERDICTS

VERDICTS is a program that prints what the receiver finds in each named file. The two must agree on
whether each document is sound, repaired or foreign, and on the values that can be found of one whose
form is broken. If a document's fault is known, the receiver must report it."""

import collections
import os
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [HERE, os.path.join(HERE, "..", "verifier")]

from corpus import cases
from survey_document import Foreign, Repaired, Unsound, check_date, parse, search

# The least number of documents of each kind: a corpus that has shrunk proves nothing.
LEAST = {"sound": 90, "truncated": 2000, "damaged": 228, "altered": 66, "undecodable": 30,
         "repaired": 120, "foreign": 24, "misdated": 24, "mutated": 6000}


def receivers_findings(verdicts, corpus):
    """(layer, fault, offset, field) for each case, found in files."""
    lines = []
    with tempfile.TemporaryDirectory() as folder:
        names = []
        for number, case in enumerate(corpus):
            names.append(str(number))
            with open(os.path.join(folder, names[-1]), "wb") as file:
                file.write(case.data)
        for begin in range(0, len(names), 2000):
            told = subprocess.run([verdicts, *names[begin : begin + 2000]], cwd=folder,
                                  capture_output=True, text=True, check=True)
            lines += told.stdout.splitlines()
    assert len(lines) == len(corpus), f"{len(lines)} verdicts on {len(corpus)} documents"
    return [finding(line) for line in lines]


def finding(line):
    """Layer, fault, offset, field, and what was found."""
    if line == "sound":
        return "none", "none", None, None, None
    verdict, _, found = line.partition("\t")
    layer, fault, offset, field = verdict.split(" ", 3)
    return layer, fault, int(offset), field, found or None


def verifiers_complaint(data):
    """What the verifier finds wrong with a document, or None; and whether that is the form of the
    date, which a receiver need not check."""
    try:
        parse(data)
        return None, False
    except Unsound as problem:
        return problem, is_misdated(data)


def kind(complaint):
    return {Foreign: "foreign", Repaired: "repaired"}.get(type(complaint), "other")


def found_differently(data, told):
    """What of the receiver's search is not that of the verifier; None if all is the same."""
    found = search(data)
    if (found is None) != (told is None):
        return "only one of the two found something"
    if found is None:
        return None
    layout, marker, offset, count, *values = told.split(" ")
    digits = (int(offset), int(count)) if marker != "-" else (0, 0)
    if (layout, marker) != (found.layout, found.marker.decode() or "-"):
        return f"found {found.layout} {found.marker}"
    if digits != (found.digits[0], len(found.digits[1])):
        return f"found digits at {found.digits[0]}, {len(found.digits[1])} of them"
    expected = [(name, str(at)) for name, (at, _) in found.values.items()]
    if list(zip(values[::3], values[1::3])) != expected:
        return f"found {expected}"
    for (name, (_, value)), text in zip(found.values.items(), values[2::3]):
        if b"&" not in value and bytes.fromhex(text[1:]) != value:
            return f"found {name} {value!r}"
    return None


def is_misdated(data):
    date = data.split(b"<Date>", 1)[-1].split(b"<", 1)[0]
    try:
        check_date(date)
        return False
    except Unsound:
        return date != b""


def disagreement(case, found):
    """What is wrong with the receiver's finding, or None."""
    sound = found[0] == "none"
    complaint, misdated = verifiers_complaint(case.data)
    if sound and complaint and not misdated:
        return f"sound to the receiver; the verifier: {complaint}"
    if not sound and complaint is None:
        return "sound to the verifier, but not to the receiver"
    told = found[1] if found[1] in ("foreign", "repaired") else "other"
    if not sound and told != kind(complaint):
        return f"the verifier: {kind(complaint)}, {complaint}"
    if found[0] not in ("none", "checksum", "contents") and found[1] != "foreign":
        problem = found_differently(case.data, found[4])
        if problem:
            return f"the verifier: {problem}"
    if case.kind == "misdated" and complaint is None:
        return "the verifier accepts the date"
    for what, expected, actual in zip(["layer", "fault", "offset", "field"],
                                      [case.layer, case.fault, case.offset, case.field], found):
        if expected is not None and expected != actual:
            return f"{what} {expected} expected"
    return None


def main(verdicts):
    corpus = list(cases())
    findings = receivers_findings(os.path.abspath(verdicts), corpus)
    wrong = 0
    kinds, outcomes = collections.Counter(), collections.Counter()
    for case, found in zip(corpus, findings):
        kinds[case.kind] += 1
        outcomes[f"{found[0]} {found[1]}"] += 1
        problem = disagreement(case, found)
        if problem:
            wrong += 1
            print(f"{case.kind}, {case.name}: {problem}; found {found}: {case.data[:400]!r}")
    for kind, least in LEAST.items():
        if kinds[kind] < least:
            wrong += 1
            print(f"{kind}: {kinds[kind]} documents, there should be at least {least}")
    print("made:  " + ", ".join(f"{count} {kind}" for kind, count in kinds.items()))
    print("found: " + ", ".join(f"{count} {name}" for name, count in sorted(outcomes.items())))
    print(f"{len(corpus)} documents, {wrong} on which something is wrong")
    return 1 if wrong else 0


sys.exit(main(sys.argv[1]))
