"""Many writers at once: on one file of the month, in one row of numbers, at the first start of
each, and in threads."""

import multiprocessing
import plistlib
import re

from campaign import Row
from crowd_world import (Unsound, names_in, new_folder, new_world, numbers_from, plugin,
                         read_document, unsound_documents, verify)

WRITERS = 8
CONTENTS = re.compile(rb"writer (\d+) record (\d+) (\.*)")


def rows(campaign):
    yield from one_month(campaign, 2000 if campaign.long else 1000)
    for kind, words in [("numbers", ""),
                        ("numbers-no-exclusive", ", no exclusive rename"),
                        ("numbers-no-exclusive-no-links", ", no exclusive rename and no links")]:
        yield from numbers(campaign, kind, words, 20 if campaign.long else 1)
    yield first_starts(campaign, 300 if campaign.long else 40)
    yield threads(campaign, 5000 if campaign.long else 500)


def run_crowd(campaign, world, *words):
    """How many records were refused. If the program itself failed, that counts as one."""
    numbers = numbers_from(campaign, world, "crowd", words[0], plugin(campaign), *words[1:])
    return 1 if numbers is None else numbers[0]


def written(contents):
    """(writer, record) of these contents; nothing if no writer wrote them."""
    match = CONTENTS.fullmatch(contents)
    if match is None:
        return None
    writer, record = int(match[1]), int(match[2])
    return (writer, record) if len(match[3]) == (record * 37 + writer * 613) % 1500 else None


def read_on(world, again, stop, found):
    """Reads all files until told to stop. Unless `again`, a file never changes and is read once."""
    seen, count, wrong = set(), 0, []
    while not stop.is_set():
        for name in names_in(world):
            if name in seen or "/." in name:  # an unfinished file
                continue
            count += 1
            try:
                if written(verify(world.read(name)).contents) is None:
                    wrong.append(name + ": no writer wrote these contents")
            except Unsound as error:
                wrong.append(f"{name}: {error}")
            if not again:
                seen.add(name)
    found.send((count, wrong))


class Readers:
    """Two processes that read while the body of the `with` runs."""

    def __init__(self, campaign, world, again):
        self.campaign, self.count, self.wrong = campaign, 0, 0
        self.stop = multiprocessing.Event()
        self.readers = []
        for _ in range(2):
            ours, theirs = multiprocessing.Pipe(duplex=False)
            reader = multiprocessing.Process(target=read_on, args=(world, again, self.stop, theirs))
            self.readers.append((reader, ours))

    def __enter__(self):
        for reader, _ in self.readers:
            reader.start()
        return self

    def __exit__(self, *_):
        self.stop.set()
        for reader, found in self.readers:
            count, wrong = found.recv()
            reader.join()
            self.count += count
            self.wrong += len(wrong)
            for text in wrong[:5]:
                self.campaign.report("read meanwhile: " + text)


def one_month(campaign, each):
    with new_folder(campaign, campaign.long) as folder:
        world = new_world(folder, "month")
        with Readers(campaign, world, again=True) as readers:
            wrong = run_crowd(campaign, world, "month", str(WRITERS), str(each))
        names = names_in(world)
        last = read_document(campaign, world, names[0]) if len(names) == 1 else None
    if last is None or written(last.contents) not in [(writer, each - 1) for writer in range(8)]:
        campaign.report(f"left at the end: {names}, {last}")
        wrong += 1
    yield Row(f"{WRITERS} writers, one file of the month", WRITERS * each, wrong)
    yield Row("  read meanwhile", readers.count, readers.wrong)


def expected_numbers(total):
    return {(writer, record) for writer in range(WRITERS)
            for record in range(total * writer // WRITERS, total * (writer + 1) // WRITERS)}


def wrong_numbers(campaign, world, total):
    """How many records are lost, stored twice, or in the wrong place."""
    names = names_in(world)
    others = set(names) - {f"PLM/Crowd_{number}.PLM" for number in range(1, total + 1)}
    documents = [read_document(campaign, world, name) for name in names if name not in others]
    found = [written(document.contents) for document in documents if document is not None]
    lost = len(expected_numbers(total) - set(found))
    twice = len(found) - len(set(found))
    if lost or twice or others:
        campaign.report(f"{lost} lost, {twice} stored twice, other files: {sorted(others)[:5]}")
    return lost + twice + len(others) + documents.count(None)


def numbers(campaign, kind, words, rounds):
    total, wrong, read, torn = 999, 0, 0, 0
    for number in range(rounds):
        with new_folder(campaign, number % 4 == 3) as folder:
            world = new_world(folder, kind)
            with Readers(campaign, world, again=False) as readers:
                wrong += run_crowd(campaign, world, kind, str(WRITERS), str(total))
            wrong += wrong_numbers(campaign, world, total)
        read, torn = read + readers.count, torn + readers.wrong
    yield Row(f"{total} printer logs by {WRITERS} processes{words}", rounds * total, wrong)
    yield Row("  read meanwhile", read, torn)


def identifiers_below(campaign, world):
    """The identifiers in all documents and in the configuration file; nothing if a document is
    missing."""
    documents = [read_document(campaign, world, name) for name in names_in(world)]
    if len(documents) != WRITERS or None in documents:
        return set()
    configuration = plistlib.loads(world.read("Config/com.orvan.printing.WENLOLIB.Conf.plist"))
    return ({configuration["WENLIBUUID"]} |
            {document.values["ID"].decode() for document in documents})


def first_starts(campaign, rounds):
    with new_folder(campaign, on_disk=True) as folder:
        worlds = [new_world(folder, str(number)) for number in range(rounds)]
        wrong = run_crowd(campaign, worlds[0], "starts", str(WRITERS), "1",
                          *[world.home for world in worlds])
        found = [len(identifiers_below(campaign, world)) for world in worlds]
    if set(found) != {1}:
        campaign.report(f"identifiers of the first starts: {sorted(found)}")
    wrong += sum(1 for identifiers in found if identifiers != 1)
    return Row(f"first starts of {WRITERS} processes", rounds, wrong)


def threads(campaign, each):
    with new_folder(campaign, campaign.long) as folder:
        world = new_world(folder, "threads")
        wrong = run_crowd(campaign, world, "threads", str(WRITERS), str(each))
        names = names_in(world)
        wrong += abs(WRITERS * each - len(names)) + unsound_documents(campaign, world)
        for name in names[::50]:
            document = read_document(campaign, world, name)
            record = written(document.contents) if document else None
            wrong += record is None or "W%dR%d_" % record not in name
    if wrong:
        campaign.report(f"threads: {len(names)} files, {wrong} wrong")
    return Row(f"records by {WRITERS} threads of one process", WRITERS * each, wrong)
