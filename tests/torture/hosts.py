"""The ordinary tests again, in hosts with functions named like the library's, with two copies of
the library, with variables that its parts might read, and with a C++ library of their own."""

import re
import subprocess
import sys

from campaign import Row
from crowd_world import TESTS, plugin

FOREIGN = [(kind, names, place) for kind in ["loading", "linked"] for names in ["own", "brought"]
           for place in ["inside", "library"]]


def rows(campaign):
    hosts = campaign.build / "tests" / "hosts"
    for kind, names, place in FOREIGN:
        host = f"{kind}_host_{names}_{place}"
        arguments = [plugin(campaign)] if kind == "loading" else []
        yield test_row(campaign, host.replace("_", " "), "foreign_functions_test.py", *arguments,
                       hosts / host)
    yield test_row(campaign, "hosts with two copies", "plugin_copies_test.py",
                   hosts / "plugin_copies", hosts / "plugin_copies_linked", plugin(campaign))
    yield test_row(campaign, "hosts with every variable set", "environment_test.py",
                   hosts / "plugin_host", plugin(campaign))
    yield exceptions(campaign, hosts)


def test_row(campaign, what, script, *arguments):
    """A row for a script of tests: how many tests there are, and how many tests or subtests
    fail."""
    finished = subprocess.run([sys.executable, TESTS / "product" / script, *arguments],
                              capture_output=True, text=True)
    count = re.search(r"^Ran (\d+) test", finished.stderr, re.MULTILINE)
    wrong = sum(map(int, re.findall(r"(?:failures|errors)=(\d+)", finished.stderr)))
    if finished.returncode != 0 or count is None:
        campaign.report(f"{what}:\n{finished.stderr[-3000:]}")
        wrong = max(wrong, 1)
    return Row(what, int(count[1]) if count else 0, wrong)


def exceptions(campaign, hosts):
    kinds = ["shared", "static", "static_exporting"]
    wrong = 0
    for kind in kinds:
        finished = subprocess.run([hosts / f"range_error_{kind}"], capture_output=True)
        wrong += finished.returncode != 0
        if finished.returncode != 0:
            campaign.report(f"range_error_{kind}: {finished.returncode}, {finished.stderr!r}")
    return Row("hosts that catch the one exception", len(kinds), wrong)
