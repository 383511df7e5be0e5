"""SIGKILL before every system call of every operation that writes, and another record
afterwards."""

import collections
import plistlib

import judge
import world
from campaign import Row
from faulty_host import Fault
from sabotage import RECORD, add, change, remove
from survey_document import Unsound
from tries import Bench, Outcome, Task, Wrong, all_scenarios, faults, place, row
from verify_document import verify

KILLED = 9


def complaint(bench, result):
    """What is wrong with the files of a killed host or with the record after it, or None."""
    before, left = bench.world.base, bench.world.tree()
    wrong = judge.after_kill(before, left, bench.reference)
    if wrong:
        return wrong
    if result.signal != KILLED:
        return f"ends with signal {result.signal}, not with SIGKILL"
    later = bench.host.perform(bench.scenario.operation, Fault("later"), bench.scenario.without)
    return judge.of_host(later) or of_later_record(bench.scenario, later, left, bench.world.tree())


def of_later_record(scenario, result, left, after):
    """What is wrong with the later record or with the files that the killed host left, or None."""
    if scenario.layout is None:
        return None if result.text not in (None, "0") else "a later call fails"
    written = [path for path in judge.changed_paths(left, after) if world.is_document(path)]
    documents = written or [world.APPLICATION]  # unchanged if it was written before
    if result.text != "1" or len(documents) != 1:
        return "a later record fails"
    try:
        data = judge.as_checked(after[documents[0]][1], scenario)
        document = verify(data, scenario.layout, judge.CONTENTS)
    except Unsound as problem:
        return f"a later record is unsound: {problem}"
    kept = plistlib.loads(after[world.CONFIGURATION][1])
    others = world.CONFIGURATIONS[scenario.configuration][0]
    if kept[world.IDENTIFIER].encode() != document.values["ID"]:
        return "a later record carries another identifier than the configuration file"
    return None if others.items() <= kept.items() else "the configuration has lost entries"


def kill(task):
    count, wrongs = 0, []
    with Bench(task.build, task.scenario, task.scratch) as bench:
        for fault in faults(task):
            result = bench.host.perform(task.scenario.operation, fault, task.scenario.without)
            if not result.struck:
                bench.world.restore()
                break
            count += 1
            wrong = complaint(bench, result)
            bench.world.restore()
            if wrong:
                wrongs.append(Wrong(task.scenario, fault, place(fault, result), wrong))
    return Outcome(count, wrongs, collections.Counter())


def unnoticed(campaign):
    """Changes what a killed host leaves. Answers how often, and how often that was not noticed."""
    disturbances = [change(world.APPLICATION), remove(world.APPLICATION),
                    change(world.PREFERENCES), change(world.CONFIGURATION),
                    remove(world.CONFIGURATION), add("stray")]
    noticed = 0
    with Bench(campaign.build, RECORD, campaign.scratch) as bench:
        for meddle in disturbances:
            result = bench.host.perform(RECORD.operation, Fault("kill", 5))
            meddle(bench.world)
            noticed += complaint(bench, result) is not None
            bench.world.restore()
    return len(disturbances), len(disturbances) - noticed


def rows(campaign):
    writing = [s for s in all_scenarios(campaign) if s.kind in ("record", "identifier", "folder")]
    tasks = [Task(campaign.build, campaign.scratch, scenario, "kill", 0, False, 1)
             for scenario in writing]
    yield Row("what killed hosts leave, changed on purpose; wrong: not noticed",
              *unnoticed(campaign))
    yield from row(campaign, "kills before a system call, and a record after each", tasks, kill)
