"""A PostgreSQL server for one test."""
import contextlib
import glob
import os
import shutil
import subprocess


@contextlib.contextmanager
def postgresql(folder):
    """Starts a PostgreSQL server; gives its environment variables, or None if none is installed."""
    programs = sorted(glob.glob("/usr/lib/postgresql/*/bin/"))
    user = "postgres" if os.geteuid() == 0 else None  # the server refuses to run as root
    if not programs or not shutil.which("psql"):
        yield None
        return

    def call(program, *arguments):
        subprocess.run([programs[-1] + program, "-D", folder / "data", *arguments], user=user,
                       check=True, cwd=folder, stdout=subprocess.DEVNULL, timeout=120)

    folder.mkdir()
    folder.chmod(0o755)
    if user:
        shutil.chown(folder, user)
    call("initdb", "-A", "trust", "-U", "receiver", "-E", "UTF8", "--locale=C.UTF-8")
    call("pg_ctl", "-w", "-l", "log", "-o", f"-k '{folder}' -c listen_addresses=''", "start")
    try:
        yield {"PGHOST": str(folder), "PGUSER": "receiver", "PGDATABASE": "postgres"}
    finally:
        call("pg_ctl", "-w", "-m", "immediate", "stop")
