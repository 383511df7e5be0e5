"""The operations that are tried, and on which files."""

import collections
import pathlib
import re

from world import CONFIGURATIONS

Scenario = collections.namedtuple("Scenario", "program operation configuration kind layout without",
                                  defaults=(0,))
# File systems without certain ways to publish a file without replacing another one.
WITHOUT = {0: "", 1: ", no exclusive rename", 3: ", no exclusive rename and no links"}

RECORDS = {
    "WENLOLIB_writeAppInfoWithContents": "application",
    "WENLOLIB_writeAppInfoWithContents-user": "application",
    "WENLOLIB_writePrinterLogInfoWithContents-older": "printer-older",
    "WENLOLIB_writePrinterLogInfoWithContents-mended": "printer-older",
    "WENLOLIB_writePrinterLogInfoWithContents-newer": "printer",
    "WENLOLIB::writeAppInfo": "application",
    "WENLOLIB::writeAppInfo-printer": "printer-older",
    "WENLOLIB::writeAppInfo-newer": "printer",
    "WENLOLIB::writeAppInfoWithContents": "application",
    "WENLOLIB::writePrinterLogInfoWithContents": "printer-older",
}
OTHER_KINDS = {
    "WENLOLIB::getWENLOLIBId": "identifier",
    "WENLOLIB::WENLOLIBCreateXMLDocument": "identifier",
    "CommonTooWenlolib::createDir": "folder",
    "WENLOLIB::createTask": "task",
}


def record(program, operation, configuration):
    return Scenario(program, operation, configuration, "record", RECORDS[operation])


def exported(operation):
    """The exported name of the function that an operation calls."""
    return operation.split("-")[0]


def scenarios(program, operations, thorough):
    """In a thorough run, every operation that writes an identifier meets every configuration file.
    Otherwise only one C function of each file type and getWENLOLIBId do. All other operations meet
    one configuration file. Some also meet file systems that lack something."""
    found = []
    for operation in operations:
        layout = RECORDS.get(operation)
        kind = "record" if layout else OTHER_KINDS.get(exported(operation), "value")
        everywhere = (kind in ("record", "identifier") if thorough else
                      operation.endswith(("-older", "getWENLOLIBId", "_writeAppInfoWithContents")))
        for configuration in CONFIGURATIONS if everywhere else ["others"]:
            found.append(Scenario(program, operation, configuration, kind, layout))
        if operation.endswith(("-older", "getWENLOLIBId")):
            found += [Scenario(program, operation, configuration, kind, layout, without)
                      for configuration in ("none", "others") for without in WITHOUT if without]
    return found


def untried(operations):
    """How many names the library exports, and those that no operation calls."""
    listed = pathlib.Path(__file__).resolve().parents[2] / "product" / "exports.txt"
    lines = re.findall(r"^[^#\n]+", listed.read_text(encoding="utf-8"), re.MULTILINE)
    names = {re.sub(r"^wenlolib::|\[abi:cxx11\]|\(.*", "", line) for line in lines}
    if len(names) < 50:
        raise RuntimeError(f"{listed} names {len(names)} exports, which is too few")
    return len(names), sorted(names - {exported(operation) for operation in operations})
