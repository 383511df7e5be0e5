"""The documents that plugin_host, linked_host and similar hosts must leave in a PluginWorld."""

import os

from plugin_world import CONTENTS
from verify_document import verify

PRINTER_LOGS = {
    "Host_1.PLM": ("printer", CONTENTS),
    "Host_2.PLM": ("printer-older", CONTENTS),
    "Host_3.PLM": ("printer-older", b""),
    "Host_4.PLM": ("printer-older", CONTENTS),
}


def sound_documents(world):
    """The documents by the names of their files. Raises if one is missing, if there is one too many
    or if one is not sound."""
    names = sorted(os.listdir(world.path("PLM")))
    if names != sorted(PRINTER_LOGS):
        raise AssertionError(f"the printer logs are {names}")
    documents = {name: verify(world.read("PLM/" + name), layout, contents)
                 for name, (layout, contents) in PRINTER_LOGS.items()}
    usage = world.application_file()
    documents["usage"] = verify(world.read(usage), "application", CONTENTS)
    return documents
