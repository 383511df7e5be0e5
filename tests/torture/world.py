"""A HOME in which a host may record. After each try it is restored."""

import datetime
import os
import pathlib
import plistlib
import re
import shutil
import stat

SUPPORT = "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
PREFERENCES = f"{SUPPORT}/Config/com.orvan.printing.Quillmere.Pref.plist"
CONFIGURATION = f"{SUPPORT}/Config/com.orvan.printing.WENLOLIB.Conf.plist"
APPLICATION = f"{SUPPORT}/ALM/Quillmere_Log_App_2603.ALM"
FIRST_PRINTER_LOG = f"{SUPPORT}/PLM/App_1.PLM"
IDENTIFIER = "WENLIBUUID"
LEFTOVER = re.compile(r"\.wenlolib-.+\.tmp")

OTHERS = {"Other program": "keeps this here", "Counts": [1, 2, 3], "On": True}
IDENTIFIED = OTHERS | {IDENTIFIER: "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"}

# The entries of the library's configuration file, and its bytes: entries of other programs, with an
# identifier and without, in the plain XML form, in another XML form, and in the binary form.
CONFIGURATIONS = {
    "none": ({}, None),
    "others": (OTHERS, plistlib.dumps(OTHERS)),
    "identified": (IDENTIFIED, plistlib.dumps(IDENTIFIED)),
    "commented": (OTHERS, plistlib.dumps(OTHERS).replace(b"<dict>", b"<!-- mine --><dict>", 1)),
    "binary": (OTHERS, plistlib.dumps(OTHERS, fmt=plistlib.FMT_BINARY)),
}


def contents():
    """The contents of every record, from the header that the hosts use."""
    header = (pathlib.Path(__file__).parent / "contents.h").read_text(encoding="ascii")
    literal = header[header.index("TORTURE_CONTENTS") + len("TORTURE_CONTENTS"):].strip()
    pieces = re.findall(r'"((?:[^"\\]|\\.)*)"', literal)
    return "".join(pieces).encode("ascii").decode("unicode_escape").encode("latin-1")


def base(configuration):
    """The files before a record, each as (mode, bytes). Folders have None for bytes."""
    preferences = plistlib.dumps({
        "InstalledDate": datetime.datetime(2026, 1, 5, 12, 0, 0),
        "LatestSelectedAgreement": True,
        "LatestSelectedLanguage": "zh_Hans_CN",
    })
    lists = plistlib.dumps({"Printer": "QX 200", "Shown": True})
    listing = "Library/Preferences/com.orvan.printing.Quillmere"
    tree = {
        PREFERENCES: (0o644, preferences),
        APPLICATION: (0o666, b"an earlier document"),
        FIRST_PRINTER_LOG: (0o666, b"an earlier printer log"),
        f"{listing}.TargetPrinterList.plist": (0o644, lists),
        f"{listing}.SurveyInfo.plist": (0o644, lists),
    }
    stored = CONFIGURATIONS[configuration][1]
    if stored is not None:
        tree[CONFIGURATION] = (0o666, stored)
    for path in list(tree):
        for folder in pathlib.PurePath(path).parents:
            if folder.name:
                tree[str(folder)] = (0o755, None)
    return tree


def is_document(path):
    return path.startswith((f"{SUPPORT}/ALM/", f"{SUPPORT}/PLM/")) and not is_leftover(path)


def is_leftover(path):
    return LEFTOVER.fullmatch(os.path.basename(path)) is not None


class World:
    """The files in `home`, which is empty at first."""

    def __init__(self, home, configuration):
        self.home = home
        self.base = base(configuration)
        os.makedirs(home)
        self.restore()

    def tree(self):
        found = {}
        pending = [""]
        while pending:
            folder = pending.pop()
            with os.scandir(os.path.join(self.home, folder)) as entries:
                for entry in entries:
                    path = os.path.join(folder, entry.name)
                    mode = stat.S_IMODE(entry.stat(follow_symlinks=False).st_mode)
                    if entry.is_dir(follow_symlinks=False):
                        found[path] = (mode, None)
                        pending.append(path)
                    else:
                        with open(entry.path, "rb") as file:
                            found[path] = (mode, file.read())
        return found

    def restore(self, found=None):
        """Restores the files that differ in `found`."""
        found = self.tree() if found is None else found
        for path in sorted(set(found) - set(self.base)):
            real = os.path.join(self.home, path)
            if found[path][1] is None:
                shutil.rmtree(real, ignore_errors=True)
            elif os.path.lexists(real):
                os.unlink(real)
        for path in sorted(self.base):
            if found.get(path) != self.base[path]:
                self.put(path, *self.base[path])

    def put(self, path, mode, data):
        real = os.path.join(self.home, path)
        if data is None:
            os.makedirs(real, exist_ok=True)
        else:
            with open(real, "wb") as file:
                file.write(data)
        os.chmod(real, mode)
