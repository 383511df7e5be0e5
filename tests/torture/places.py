"""Hosts in places that have to be made for them: with another zone or another home in the system's
own files, seen by them alone."""

import os
import subprocess

from faulty_host import BERLIN, Place

ZONE = "mount --bind /usr/share/zoneinfo/Europe/Berlin /etc/localtime"
PASSWORDS = 'mount --bind "$PASSWORDS" /etc/passwd && unset PASSWORDS'


def in_namespace(mounting):
    """A command that mounts something for the command that follows it."""
    rights = ["--mount"] if os.geteuid() == 0 else ["--mount", "--map-root-user"]
    return ("unshare", *rights, "sh", "-c", f'{mounting} && exec "$@"', "sh")


def is_possible(mounting):
    environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "PASSWORDS": "/etc/passwd"}
    return subprocess.run([*in_namespace(mounting), "true"], env=environment, capture_output=True,
                          check=False).returncode == 0


def zones(campaign):
    """TZ set, and TZ unset with the system's zone being another than GMT."""
    yield BERLIN
    if is_possible(ZONE):
        yield Place(None, command=in_namespace(ZONE))
    else:
        campaign.skip("a zone of the system's: no mounts here, or no /etc/localtime")


def homes(campaign):
    """HOME unset, and the home in the password database."""
    if is_possible(PASSWORDS):
        yield BERLIN._replace(command=in_namespace(PASSWORDS), passwords=True)
    else:
        campaign.skip("a home from the password database: no mounts here")
