"""A HOME in which a host may record, and ways to run the host in C there."""

import datetime
import os
import plistlib
import subprocess

SUPPORT = "Library/Group Containers/K7MW2PL9QD.QX.common/Library/Application Support/QMR"
CONTENTS = "Usage of a month: Größe A4, 印刷 12, 𝄞\n<&> \"'".encode()


class PluginWorld:
    """Folders and preferences in `home`, which is empty at first."""

    def __init__(self, home):
        self.home = home
        self.support = os.path.join(home, SUPPORT)
        for name in ["PLM", "ALM", "Config"]:
            os.makedirs(os.path.join(self.support, name))
        now = datetime.datetime.now(datetime.timezone.utc).replace(tzinfo=None)
        preferences = {
            "InstalledDate": now - datetime.timedelta(days=100),
            "LatestSelectedAgreement": True,
            "LatestSelectedLanguage": "zh_Hans_CN",
        }
        self.write("Config/com.orvan.printing.Quillmere.Pref.plist", plistlib.dumps(preferences))

    def path(self, name):
        return os.path.join(self.support, name)

    def write(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def write_preferences(self, encoding):
        """Writes the same preferences in another encoding, such as UTF-16."""
        name = "Config/com.orvan.printing.Quillmere.Pref.plist"
        text = self.read(name).decode().replace("UTF-8", encoding)
        self.write(name, text.encode(encoding))

    def run(self, *command, more=(), variables=None):
        """Runs the host to its end, with a file of contents and `more` as its last arguments."""
        contents = os.path.join(self.home, "contents")
        self.write(contents, CONTENTS)
        return self.launch(*command, contents, *more, variables=variables)

    def launch(self, *command, variables=None, timeout=120):
        """Runs a program to its end, without the caller's environment."""
        environment = {"HOME": self.home, "TZ": "EAST-5:45", "LANG": "de_DE.UTF-8"}
        environment.update(variables or {})
        return subprocess.run(command, env=environment, timeout=timeout, capture_output=True,
                              umask=0o077)

    def application_file(self):
        """The name of the one file with application usage."""
        names = os.listdir(self.path("ALM"))
        if len(names) != 1:
            raise AssertionError(f"expected one file of application usage, found {names}")
        return "ALM/" + names[0]
