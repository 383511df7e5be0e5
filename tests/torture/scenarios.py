"""Which operations are tried, on which files."""

import collections
import pathlib
import re

from world import CONFIGURATIONS

Scenario = collections.namedtuple("Scenario", "program operation configuration kind layout without",
                                  defaults=(0,))
# File systems that lack something by which a file is published without replacing another.
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
    """The name under which the library offers what an operation calls."""
    return operation.split("-")[0]


def scenarios(program, operations, thorough):
    """What writes an identifier meets every configuration file, in a thorough run; else one of the
    C functions of each file type, and getWENLOLIBId, do. The others meet one. Some meet file
    systems that lack something."""
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
    """The names that the library exports and no operation calls."""
    listed = pathlib.Path(__file__).resolve().parents[2] / "product" / "exports.txt"
    lines = re.findall(r"^[^#\n]+", listed.read_text(encoding="utf-8"), re.MULTILINE)
    names = {re.sub(r"^wenlolib::|\[abi:cxx11\]|\(.*", "", line) for line in lines}
    if len(names) < 50:
        raise RuntimeError(f"{listed} names {len(names)} exports alone")
    return len(names), sorted(names - {exported(operation) for operation in operations})
