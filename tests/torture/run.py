#!/usr/bin/env python3
"""Runs the torture's stages. At the end shows what was tried, how often, and what went wrong.

    run.py BUILD_FOLDER short|long [STAGE...]

The exit status is 1 if anything went wrong. Use scripts/torture, which first builds what is
needed."""

import importlib
import pathlib
import sys
import time

sys.dont_write_bytecode = True
here = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(here), str(here.parent / "verifier")]

from campaign import Campaign

STAGES = ["kills", "errors", "allocations", "crowds", "loads", "hosts", "signals"]


def rows_of(name, campaign):
    """All rows of one stage. Shows each with the time since the stage began."""
    rows = []
    began = time.monotonic()
    with campaign.scratch_folder() as folder:
        campaign.scratch = pathlib.Path(folder)
        for row in importlib.import_module(name).rows(campaign):
            rows.append(row)
            print(f"  {time.monotonic() - began:6.1f} s  {row.what}: {row.count}, "
                  f"{row.wrong} wrong", flush=True)
    return rows


def table(rows):
    width = max(len(row.what) for row in rows)
    print(f"\n{'':{width}}  {'how many':>10}  {'wrong':>7}")
    for row in rows:
        print(f"{row.what:{width}}  {row.count:10,}  {row.wrong:7,}")
    total = sum(row.count for row in rows)
    print(f"{'in all':{width}}  {total:10,}  {sum(row.wrong for row in rows):7,}")


def main(build, form, *chosen):
    unknown = [name for name in chosen if name not in STAGES]
    if form not in ("short", "long") or unknown:
        sys.exit(f"{__doc__}\nstages: {' '.join(STAGES)}")
    campaign = Campaign(build, form == "long")
    rows = []
    for name in chosen or STAGES:
        print(f"\n-- {name}", flush=True)
        rows += rows_of(name, campaign)
    if not rows:
        sys.exit("nothing was tried")
    table(rows)
    for text in campaign.skipped:
        print(f"skipped: {text}")
    return 1 if any(row.wrong for row in rows) else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
