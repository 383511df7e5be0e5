"""Hosts in which the library is the first to ask for something that the C library reads only once.

One is local time: the zone is read at the first use. If it cannot be read, the record must fail,
and the host's zone must be right afterwards. Nobody can undo a fault that begins during that
reading itself. The other is the home if HOME is not set: it is read from the password database."""

from faulty_host import ERRORS
from places import homes, zones
from scenarios import record
from tries import Task, row

SCENARIOS = [record("host", "WENLOLIB_writeAppInfoWithContents", "others"),
             record("classes", "WENLOLIB::writeAppInfo-printer", "others")]
WORDS = {"error": "errors at system calls", "allocation": "failed allocations",
         "descriptors": "no more descriptors"}


def tasks(campaign, places, kind, onwards, shown):
    errors = ERRORS if kind == "error" else {"": 0}
    return [Task(campaign.build, campaign.scratch, scenario, kind, error, onwards,
                 1 if campaign.long else 3, place, shown)
            for place in places for scenario in SCENARIOS
            for name, error in errors.items() if not (onwards and name == "EINTR")]


def first_uses(campaign, kind):
    for what, places, shown in [("first use of local time", list(zones(campaign)), False),
                                ("home from the password database", list(homes(campaign)), True)]:
        for onwards in (True,) if kind == "descriptors" else (False, True):
            if places:
                yield from row(campaign, f"{what}: {WORDS[kind]}, "
                               f"{'from then on' if onwards else 'once'}",
                               tasks(campaign, places, kind, onwards, shown))
