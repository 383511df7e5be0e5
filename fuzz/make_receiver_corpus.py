#!/usr/bin/env python3
"""Writes the corpus that the receiver's fuzzer starts from: documents of every kind and layout.

    make_receiver_corpus.py FOLDER"""

import hashlib
import os
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests",
                                "receiver"))

from corpus import cases

LARGEST = 4096
# Of the kinds with very many documents only every nth: the fuzzer makes more of them itself.
EVERY = {"truncated": 7, "mutated": 10}


def main(folder):
    os.makedirs(folder, exist_ok=True)
    seen = {}
    written = 0
    for case in cases():
        seen[case.kind] = seen.get(case.kind, 0) + 1
        if len(case.data) > LARGEST or seen[case.kind] % EVERY.get(case.kind, 1) != 0:
            continue
        name = case.kind + "-" + hashlib.sha1(case.data, usedforsecurity=False).hexdigest()
        with open(os.path.join(folder, name), "wb") as file:
            file.write(case.data)
        written += 1
    print(f"{written} documents to start from")


main(sys.argv[1])
