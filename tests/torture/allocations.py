"""Every allocation of every operation fails, once alone and once with all that follow."""

from first_use import first_uses
from tries import Task, all_scenarios, row


def rows(campaign):
    everything = all_scenarios(campaign)
    for onwards in (False, True):
        tasks = [Task(campaign.build, campaign.scratch, scenario, "allocation", 0, onwards, 1)
                 for scenario in everything]
        what = f"failed allocations, {'from then on' if onwards else 'once'}"
        yield from row(campaign, what, tasks)
    yield from first_uses(campaign, "allocation")
