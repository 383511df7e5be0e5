"""Places for hosts, in which the system's own files give another zone or another home. Only these
hosts see the change."""

import os
import subprocess

from faulty_host import BERLIN, Place

ZONE = "mount --bind /usr/share/zoneinfo/Europe/Berlin /etc/localtime"
PASSWORDS = 'mount --bind "$PASSWORDS" /etc/passwd && unset PASSWORDS'


def in_namespace(mounting):
    """A command that mounts something, and then runs the command that follows it."""
    rights = ["--mount"] if os.geteuid() == 0 else ["--mount", "--map-root-user"]
    return ("unshare", *rights, "sh", "-c", f'{mounting} && exec "$@"', "sh")


def is_possible(mounting):
    environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "PASSWORDS": "/etc/passwd"}
    return subprocess.run([*in_namespace(mounting), "true"], env=environment, capture_output=True,
                          check=False).returncode == 0


def zones(campaign):
    """One place with TZ set, and one without it, in which the system's zone is not GMT."""
    yield BERLIN
    if is_possible(ZONE):
        yield Place(None, command=in_namespace(ZONE))
    else:
        campaign.skip("the system's zone: mounting is not possible, or there is no /etc/localtime")


def homes(campaign):
    """A place without HOME, with the home in the password database."""
    if is_possible(PASSWORDS):
        yield BERLIN._replace(command=in_namespace(PASSWORDS), passwords=True)
    else:
        campaign.skip("the home from the password database: mounting is not possible")
