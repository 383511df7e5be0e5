"""Runs programs of the build in worlds made for them, and reads the documents that they leave."""

import json
import pathlib
import subprocess
import sys
import tempfile

TESTS = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(TESTS / "product"), str(TESTS / "verifier")]

from plugin_world import PluginWorld
from survey_document import Unsound
from verify_document import verify


def plugin(campaign):
    return str(campaign.build / "WENLOLIB.bundle" / "Contents" / "Linux" / "WENLOLIB")


def new_folder(campaign, on_disk):
    """A temporary folder, on a disk or where the scratch folder is. On a disk, flushing a file
    takes time, in which other writers go on. So more can go wrong there, and a run takes longer."""
    return tempfile.TemporaryDirectory(prefix="torture-",
                                       dir=campaign.build if on_disk else campaign.scratch)


def new_world(folder, name):
    home = pathlib.Path(folder) / name
    home.mkdir()
    return PluginWorld(str(home))


def numbers_from(campaign, world, name, *arguments):
    """The numbers in a program's one line. If it did not end well: nothing, and a report."""
    path = str(campaign.build / "tests" / "torture" / ("torture_" + name))
    try:
        finished = world.launch(path, *arguments, timeout=900)
    except subprocess.TimeoutExpired:
        campaign.report(f"{name} {arguments[:2]} did not end in time")
        return None
    if finished.returncode == 0 and not finished.stderr:
        return [int(word) for word in finished.stdout.split()]
    campaign.report(f"{name} {arguments[:2]} ended with {finished.returncode}: "
                    f"{finished.stderr.decode()}")
    return None


def names_in(world):
    """The names of all files in the folders of records, including unfinished ones."""
    return [folder + "/" + path.name for folder in ["ALM", "PLM"]
            for path in pathlib.Path(world.path(folder)).iterdir()]


def read_document(campaign, world, name):
    """The document. If it is not sound: nothing, and a report."""
    try:
        return verify(world.read(name))
    except Unsound as error:
        campaign.report(f"{name}: {error}")
        return None


def unsound_documents(campaign, world):
    """How many unsound documents the command finds in the whole world, in one run."""
    finished = subprocess.run([str(campaign.build / "tools" / "wenlolib"), "verify", "--quiet",
                               "--json", "--jobs", "2", world.home], capture_output=True)
    if finished.returncode > 1 or finished.stderr:
        raise RuntimeError(f"wenlolib verify: {finished.stderr!r}")
    lines = finished.stdout.splitlines()
    for line in lines[:5]:
        campaign.report(str(json.loads(line)))
    return len(lines)
