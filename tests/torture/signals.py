"""Signals during records, small stacks, and closed standard streams while threads print."""

import datetime
import itertools
import plistlib
import sys

from campaign import Row
from crowd_world import (names_in, new_folder, new_world, numbers_from, plugin, read_document,
                         unsound_documents)

CONFIGURATION = "Config/com.orvan.printing.WENLOLIB.Conf.plist"
PREFERENCES = "Config/com.orvan.printing.Quillmere.Pref.plist"


def rows(campaign):
    yield from interrupted(campaign, 20000 if campaign.long else 1000,
                           1000 if campaign.long else 50)
    yield stacks(campaign)
    yield closed_streams(campaign, 260 if campaign.long else 40)


def interrupted(campaign, records, programs):
    with new_folder(campaign, campaign.long) as folder:
        world = new_world(folder, "interrupted")
        refused, other, signals = numbers_from(campaign, world, "interrupted", str(records),
                                               str(programs)) or (records, programs, 0)
        missing = abs(records - refused - len(names_in(world)))
        unsound = unsound_documents(campaign, world)
    if refused or missing or unsound or other or signals == 0:
        campaign.report(f"{refused} records refused, {missing} missing, {unsound} not sound, "
                        f"{other} programs with a wrong status, {signals} signals")
    yield Row("records, a signal each millisecond", records,
              refused + missing + unsound + (signals == 0))
    yield Row("programs waited for, a signal each millisecond", programs, other)


def nested(levels):
    value = []
    for _ in range(levels - 1):
        value = [value]
    return value


def property_lists():
    """A host's entries, in every form of property list, alone and with 511 nested arrays."""
    entries = {"InstalledDate": datetime.datetime.now().replace(microsecond=0),
               "LatestSelectedAgreement": True, "LatestSelectedLanguage": "zh_Hans_CN"}
    flat = plistlib.dumps(entries)
    arrays = b"<key>other</key>" + b"<array>" * 511 + b"</array>" * 511
    deep = flat.replace(b"<dict>", b"<dict>" + arrays)
    sys.setrecursionlimit(10000)  # Python's plistlib writes by recursion
    return {
        "flat": flat,
        "deep": deep,
        "deep, with a reference": deep.replace(b"zh_Hans", b"zh&#95;Hans"),
        "deep, UTF-16": deep.decode().replace("UTF-8", "UTF-16").encode("utf-16"),
        "deep, binary": plistlib.dumps({**entries, "other": nested(511)},
                                       fmt=plistlib.FMT_BINARY),
    }


def kept_entries(world, before):
    """Whether the configuration file has kept its entries and holds an identifier."""
    after = world.read(CONFIGURATION)
    return after.count(b"<array") == (0 if before == "flat" else 511) and b"WENLIBUUID" in after


def one_stack(campaign, world, before, size):
    """Whether the record on a stack of this size is right."""
    yes, reached = numbers_from(campaign, world, "stack", plugin(campaign), str(size)) or (0, 0)
    documents = [read_document(campaign, world, name) for name in names_in(world)]
    if yes == 5 and len(documents) == 3 and None not in documents and kept_entries(world, before):
        return True
    campaign.report(f"stack of {size} bytes, property lists {before}: {yes} of 5 answered yes, "
                    f"{len(documents)} files, {reached} bytes reached")
    return False


def stacks(campaign):
    cases = list(itertools.product([32, 48, 64, 96], property_lists().items()))
    wrong = 0
    for number, (size, (before, data)) in enumerate(cases):
        world = new_world(campaign.scratch, f"stack{number}")
        world.write(CONFIGURATION, data)
        world.write(PREFERENCES, data)
        wrong += not one_stack(campaign, world, before, size * 1024)
    return Row("hosts with stacks of 32 KiB to 96 KiB", len(cases), wrong)


def closed_streams(campaign, records):
    count, wrong = 0, 0
    for closed in ["", "0", "1", "2", "01", "02", "12", "012"]:
        with new_folder(campaign, on_disk=True) as folder:
            world = new_world(folder, "streams")
            refused, opened = numbers_from(campaign, world, "streams", plugin(campaign), closed,
                                           str(records)) or (records, 0)
            missing = abs(records - refused - len(names_in(world)))
            unsound = unsound_documents(campaign, world)
        if refused or opened or missing or unsound:
            campaign.report(f"closed '{closed}': {refused} of {records} refused, {missing} "
                            f"missing, {unsound} not sound, a stream open after {opened}")
        count, wrong = count + records, wrong + refused + missing + unsound + opened
    return Row("records with standard streams closed, while threads print", count, wrong)
