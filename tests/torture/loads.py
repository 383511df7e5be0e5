"""Loads, records and unloads again and again: nothing in the process may grow or change."""

import subprocess

from campaign import Row
from crowd_world import plugin


def rows(campaign):
    rounds = 20000 if campaign.long else 2500
    finished = subprocess.run([campaign.build / "tests" / "hosts" / "plugin_hygiene",
                               plugin(campaign), campaign.scratch, str(rounds)],
                              capture_output=True)
    if finished.returncode != 0 or finished.stdout:
        campaign.report(f"loads: {finished.returncode}, {finished.stdout!r}, {finished.stderr!r}")
    yield Row("loads, records and unloads", rounds, int(finished.returncode != 0))
