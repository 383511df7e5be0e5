"""The first time that the host's process shows a local time is within the library.

The C library reads the zone then, once and for all. Where it cannot, the record has to fail, and
the host's zone must be right afterwards; only where a single fault strikes within that reading
itself can nobody undo it."""

import os
import subprocess

from faulty_host import BERLIN, ERRORS, Zone
from scenarios import record
from tries import Task, row

SCENARIOS = [record("host", "WENLOLIB_writeAppInfoWithContents", "others"),
             record("classes", "WENLOLIB::writeAppInfo-printer", "others")]


def zones(campaign):
    """TZ set, and TZ unset with the system's zone; that is changed for the host alone, in a
    namespace of its own."""
    yield BERLIN
    mine = ["--mount"] if os.geteuid() == 0 else ["--mount", "--map-root-user"]
    command = ["unshare", *mine, "sh", "-c", "mount --bind /usr/share/zoneinfo/Europe/Berlin "
               "/etc/localtime && exec \"$@\"", "sh"]
    if subprocess.run([*command, "true"], capture_output=True, check=False).returncode == 0:
        yield Zone(None, 3600, 7200, tuple(command))
    else:
        campaign.skip("TZ unset and a zone other than GMT: no namespace for mounts, or no "
                      "/etc/localtime")


def first_uses(campaign, kind):
    known = list(zones(campaign))
    errors = {"error": ERRORS, "allocation": {"": 0}, "descriptors": {"": 0}}[kind]
    for onwards in (True,) if kind == "descriptors" else (False, True):
        tasks = [Task(campaign.build, campaign.scratch, scenario, kind, error, onwards,
                      1 if campaign.long else 3, zone, False)
                 for zone in known for scenario in SCENARIOS
                 for name, error in errors.items() if not (onwards and name == "EINTR")]
        what = {"error": "errors at system calls", "allocation": "failed allocations",
                "descriptors": "no more descriptors"}[kind]
        yield from row(campaign, f"first use of local time: {what}, "
                       f"{'from then on' if onwards else 'once'}", tasks)
