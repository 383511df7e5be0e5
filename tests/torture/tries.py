"""Tries many faults in several processes at once, and collects what went wrong."""

import collections
import concurrent.futures
import itertools
import multiprocessing
import os
import shutil
import tempfile
import zlib

import judge
from campaign import Row
from faulty_host import (BERLIN, ERROR_NAMES, SECONDS, UNDISTURBED, Fault, FaultyHost,
                         place_of_allocation, place_of_call)
from scenarios import WITHOUT, scenarios, untried
from world import World

PROGRAMS = ("host", "classes")

Wrong = collections.namedtuple("Wrong", "scenario fault place complaint")
Outcome = collections.namedtuple("Outcome", "count wrongs stated")
Task = collections.namedtuple(
    "Task", "build scratch scenario kind error onwards stride place shown", defaults=(BERLIN, True))


class Bench:
    """A host, its files, and the result of an undisturbed operation."""

    def __init__(self, build, scenario, scratch, place=BERLIN, shown=True):
        self.scenario = scenario
        self.folder = tempfile.mkdtemp(dir=scratch)
        self.world = World(os.path.join(self.folder, "home"), scenario.configuration)
        self.host = FaultyHost(build, scenario.program, self.world.home, place, shown)
        self.reference = (None, {})
        self.reference = self.outcome(UNDISTURBED)[0], self.after
        problem = judge.of_host(self.reference[0]) or judge.of_files(
            scenario, UNDISTURBED, self.reference[0], self.world.base, self.after, self.reference)
        if problem or (scenario.layout and self.reference[0].text != "1"):
            raise RuntimeError(f"{scenario.operation} undisturbed: {problem or 'is refused'}")

    def outcome(self, fault, seconds=SECONDS, meddle=None):
        """The result, what is wrong with it, and why that is not the library's fault. Afterwards
        the files are as they were before."""
        result = self.host.perform(self.scenario.operation, fault, self.scenario.without, seconds)
        if meddle is not None:
            meddle(self.world)
        self.after = self.world.tree()
        problem = excuse = None
        if self.reference[0] is not None:
            seen = (self.scenario, fault, result, self.world.base, self.after, self.reference)
            problem = judge.complaint(*seen)
            excuse = judge.stated(*seen) if problem else None
        self.world.restore(self.after)
        return result, problem, excuse

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.host.__exit__()
        shutil.rmtree(self.folder, ignore_errors=True)


def operations_of(campaign, program):
    with FaultyHost(campaign.build, program, campaign.scratch) as host:
        return host.operations


def all_scenarios(campaign):
    """The scenarios of both programs."""
    return [scenario for program in PROGRAMS
            for scenario in scenarios(program, operations_of(campaign, program), campaign.long)]


def coverage(campaign):
    """A row that shows whether the programs call every exported operation."""
    count, missing = untried(operation for program in PROGRAMS
                             for operation in operations_of(campaign, program))
    for name in missing:
        campaign.report(f"NOT TRIED: {name}")
    return Row("exported operations; wrong: never called", count, len(missing))


def first_index(stride, *names):
    """The index of the first fault if only every `stride`-th is tried. It differs between tasks,
    and is the same in every run."""
    return 1 + zlib.crc32(" ".join(map(str, names)).encode()) % stride


def faults(task):
    """One fault after the other. The caller stops when a fault no longer strikes."""
    if task.kind == "descriptors":
        return (Fault(task.kind, index) for index in range(3, 17))
    names = (task.scenario, task.kind, task.error, task.onwards)
    return (Fault(task.kind, index, task.error, task.onwards)
            for index in itertools.count(first_index(task.stride, *names), task.stride))


def perform(task):
    """Tries all faults of a task."""
    outcome = Outcome(0, [], collections.Counter())
    with Bench(task.build, task.scenario, task.scratch, task.place, task.shown) as bench:
        for fault in faults(task):
            result, problem, excuse = bench.outcome(fault)
            struck = result.struck or result.places or fault.kind == "descriptors"
            if not struck and not problem:
                break
            outcome = outcome._replace(count=outcome.count + 1)
            if excuse:
                outcome.stated[excuse] += 1
            elif problem:
                outcome.wrongs.append(Wrong(task.scenario, fault, place(fault, result), problem))
            if not struck:
                break
    return outcome


def shared_out(work, tasks):
    """Yields work(task) for each task, on as many processes as there are cores."""
    context = multiprocessing.get_context("fork")
    with concurrent.futures.ProcessPoolExecutor(os.cpu_count(), mp_context=context) as pool:
        yield from pool.map(work, tasks)


def row(campaign, what, tasks, work=perform):
    """Does the tasks. Yields a row for their results, and one for each excuse."""
    outcomes = list(shared_out(work, tasks))
    if not any(outcome.count for outcome in outcomes):
        raise RuntimeError(f"{what}: nothing was struck")
    wrongs = [wrong for outcome in outcomes for wrong in outcome.wrongs]
    report(campaign, what, wrongs)
    stated = sum((outcome.stated for outcome in outcomes), collections.Counter())
    total = sum(outcome.count for outcome in outcomes) - sum(stated.values())
    yield Row(what, total, len(wrongs))
    for excuse, count in sorted(stated.items()):
        yield Row(f"  of these: {excuse}: stated", count, 0)


def report(campaign, what, wrongs):
    """Reports the wrong results, those with the same complaint together."""
    groups = collections.defaultdict(list)
    for wrong in wrongs:
        groups[wrong.complaint].append(wrong)
    for problem, alike in sorted(groups.items()):
        where = {f"{w.scenario.program} {w.scenario.operation} ({w.scenario.configuration}"
                 f"{WITHOUT[w.scenario.without]})"
                 for w in alike}
        by = {ERROR_NAMES.get(w.fault.error, w.fault.kind) for w in alike}
        campaign.report(f"WRONG, {what}: {problem}\n    {len(alike)} times, by "
                        f"{', '.join(sorted(by))}\n    in {', '.join(sorted(where))}")
        places = collections.Counter(w.place for w in alike)
        for name, times in places.most_common(12):
            indices = sorted({w.fault.index for w in alike if w.place == name})[:8]
            campaign.report(f"    {times:5} at {name} {indices}")


def place(fault, result):
    if fault.kind == "allocation":
        return place_of_allocation(result.places)
    return place_of_call(result) if result.struck else f"{fault.kind} {fault.index}"
