"""Judges whether a result is right or wrong after a fault.

If the system could not answer, either the record fails and nothing on disk changes, or the record
is the undisturbed one. If the system answered that something is missing or may not be read, the
record may also have empty or other values."""

import hashlib
import os
import plistlib
import re

import world
from faulty_host import ANSWERS, call_of
from survey_document import Unsound
from verify_document import verify

FAILING = {None, "", "0", "-1"}
IDENTIFIER = re.compile(r"\{[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}\}")
CONTENTS = world.contents()


def complaint(scenario, fault, result, before, after, reference):
    """What is wrong, or None. `reference` is the undisturbed operation's (result, files)."""
    host = of_host(result)
    if host and not result.change:
        return host
    record = (of_files(scenario, fault, result, before, after, reference)
              or of_answer(scenario, fault, result, reference))
    return "; ".join(filter(None, [host, record])) or None


def of_host(result):
    if result.late:
        return "hangs"
    if result.signal:
        return f"crashes (signal {result.signal})"
    if not result.left:
        return f"ends the host (exit status {result.exit}), saying {result.shown.strip()!r}"
    if result.change:
        return f"changes the host: {result.change}"
    return f"prints {result.shown!r}" if result.printed else None


def is_answering(fault):
    return fault.error in ANSWERS


def changed_paths(before, after):
    """The changed paths, without those where only the mode has changed."""
    return [path for path in sorted({*before, *after})
            if before.get(path, (0, 0))[1] != after.get(path, (0, 0))[1]
            or (path in before) != (path in after)]


def of_files(scenario, fault, result, before, after, reference):
    changed = changed_paths(before, after)
    documents = [path for path in changed if world.is_document(path)]
    for path in changed:
        if world.is_document(path):
            continue
        wrong = of_other_file(scenario, fault, result, path, after, reference)
        if wrong:
            return wrong
    if scenario.layout is None or result.text != "1":
        return f"answers no and changes {os.path.basename(documents[0])}" if documents else None
    return of_documents(scenario, fault, documents, after, reference)


def of_other_file(scenario, fault, result, path, after, reference):
    if world.is_leftover(path):
        # If removing the file fails, it may stay.
        removed = not fault.onwards and call_of(result) not in ("unlink", "unlinkat")
        return "leaves a hidden file" if removed else None
    if path in after and after[path][1] == reference[1].get(path, (0, b"none"))[1]:
        return None
    if path == world.CONFIGURATION:
        return of_configuration(fault, path, after)
    if scenario.kind == "folder" and path in after and path in reference[1]:
        return None
    return f"changes {os.path.basename(path)}"


def of_configuration(fault, path, after):
    if not is_answering(fault):
        return "changes the configuration file otherwise than an undisturbed record"
    try:
        identifier = plistlib.loads(after[path][1])[world.IDENTIFIER]
    except (KeyError, ValueError, plistlib.InvalidFileException):
        return "leaves a configuration file without an identifier"
    return None if IDENTIFIER.fullmatch(identifier) else "stores a wrong identifier"


def of_documents(scenario, fault, documents, after, reference):
    if not documents:
        return "answers yes without a document"
    if len(documents) > 1 or documents[0] not in after:
        return "changes more than its own document"
    path = documents[0]
    if after[path][1] == reference[1].get(path, (0, None))[1]:
        return None
    if not is_answering(fault):
        return f"answers yes with another document: {difference(after[path][1], reference)}"
    try:
        verify(as_checked(after[path][1], scenario), scenario.layout, CONTENTS)
    except Unsound as problem:
        return f"answers yes with an unsound document: {problem}"
    return None


def as_checked(document, scenario):
    """A mended document carries the checksum of the text before it was mended. That is checked
    here, and replaced by the checksum of the text as it is, so that the verifier accepts it."""
    found = re.fullmatch(rb'(<\w+ SUM=")(\w+)(">)(.*)(</\w+>)', document, re.DOTALL)
    if not scenario.operation.endswith("-mended") or found is None:
        return document
    if digest(found[4].replace(b"&amp;", b"&")) != found[2]:
        raise Unsound("the checksum is not that of the text before it was mended")
    return found[1] + digest(found[4]) + found[3] + found[4] + found[5]


def digest(data):
    return hashlib.md5(data, usedforsecurity=False).hexdigest().upper().encode()


def difference(document, reference):
    """The first element of a document that differs from the undisturbed document."""
    expected = next(data for path, (_, data) in sorted(reference[1].items())
                    if world.is_document(path) and data and data.startswith(b"<Orvan"))
    for name in re.findall(rb"<(\w+)[ >]", expected):
        pattern = re.compile(rb"<" + name + rb"[ >][^<]*")
        mine = pattern.search(document)
        if mine is None:
            return f"no {name.decode()}"
        if b" SUM=" not in mine[0] and mine[0] != pattern.search(expected)[0]:
            return f"{mine[0][:80].decode('utf-8', 'replace')}"
    return "elsewhere, or under another name"


def of_answer(scenario, fault, result, reference):
    right = reference[0].text
    if result.text == right or result.text in FAILING:
        return None
    if result.text.startswith("-1 ") and scenario.kind == "value":
        return None  # a function of the codec has refused
    if scenario.kind == "identifier" and is_answering(fault):
        return None if IDENTIFIER.fullmatch(result.text) else f"answers {result.text}"
    return f"answers {result.text} where {right} is right"


# If the system refuses these calls, nobody can undo the change. The kernel itself never refuses
# them if they are valid.
GIVING_BACK = {"rt_sigprocmask": "the blocked signals", "wait4": "a child is left"}


AT_LOCAL_TIME, AT_PASSWORDS = 1, 2  # see torture_watch


def stated(scenario, fault, result, before, after, reference):
    """Why something wrong with the host is not the library's fault, or None."""
    if result.signal and result.inside == AT_PASSWORDS and not changed_paths(before, after):
        return "crashes inside the C library's first reading of its name services"
    if result.late or not result.left or not result.change:
        return None
    if (of_files(scenario, fault, result, before, after, reference)
            or of_answer(scenario, fault, result, reference)):
        return None
    refused = GIVING_BACK.values() if fault.onwards else {GIVING_BACK.get(call_of(result))}
    if result.change in refused:
        return "signals or children that the system refuses to give back"
    if result.change != "the time zone":
        return None
    if result.inside == AT_LOCAL_TIME:
        return "inside the C library's first reading of the zone"
    return "the zone's file said to be missing" if fault.onwards and is_answering(fault) else None


def after_kill(before, after, reference):
    """What is wrong on disk after the host was killed, or None."""
    for path in changed_paths(before, after):
        if world.is_leftover(path):
            continue
        if path not in after:
            return f"{os.path.basename(path)} is gone"
        if after[path][1] != reference[1].get(path, (0, b"none"))[1]:
            return f"{os.path.basename(path)} is neither the old nor the new one"
    return None
