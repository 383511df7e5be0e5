"""Errors at every system call of every operation, once and from then on; and no free
descriptors."""

from campaign import Row
from faulty_host import ERRORS
from first_use import first_uses
from sabotage import unnoticed
from tries import Task, all_scenarios, coverage, row


def tasks(campaign, scenarios, onwards):
    """EINTR is tried only once: if the system interrupted a call for ever, it would be hanging."""
    return [Task(campaign.build, campaign.scratch, scenario, kind, error, onwards,
                 1 if campaign.long else 3)
            for scenario in scenarios
            for kind in (["error", "helper"] if scenario.kind == "task" else ["error"])
            for name, error in ERRORS.items() if not (onwards and name == "EINTR")]


def exhausted(campaign, scenarios):
    return [Task(campaign.build, campaign.scratch, scenario, "descriptors", 0, True, 1)
            for scenario in scenarios]


def rows(campaign):
    yield coverage(campaign)
    yield Row("disturbances made on purpose; wrong: not noticed", *unnoticed(campaign))
    everything = all_scenarios(campaign)
    for onwards in (False, True):
        for records in (True, False):
            chosen = [s for s in everything if (s.layout is not None) == records]
            what = (f"errors at system calls, {'records' if records else 'other operations'}, "
                    f"{'from then on' if onwards else 'once'}")
            yield from row(campaign, what, tasks(campaign, chosen, onwards))
    yield from row(campaign, "no more descriptors", exhausted(campaign, everything))
    yield from first_uses(campaign, "error")
    yield from first_uses(campaign, "descriptors")
