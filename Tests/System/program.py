"""The program under test, as a process."""

import json
import os
import shutil
import signal
import subprocess
import threading
import time
from pathlib import Path

PROGRAM = os.environ["LANTERNFOLD_WIDGETS"]
ASSETS = Path(__file__).resolve().parents[2] / "Assets"
# For a program that every user may read; see `install`.
AS_NOBODY = {"user": 65534, "group": 65534, "extra_groups": [], "cwd": "/"}


def install(folder):
    """The program as it is installed, below a folder that every user may read: a clone of the tree
    may be private."""
    program = folder / "bin" / "lanternfold-widgets"
    program.parent.mkdir()
    shutil.copy(PROGRAM, program)
    shutil.copytree(ASSETS, folder / "share" / "lanternfold-widgets" / "Assets")
    folder.chmod(0o755)
    return str(program)


def loading(library):
    """The variables of an environment in which a program loads that library before all others."""
    # By its name: a path would end at its first space.
    folder, name = os.path.split(library)
    # A program with sanitizers refuses to start when anything comes before their library.
    options = [os.environ.get("ASAN_OPTIONS"), "verify_asan_link_order=0"]
    return {"LD_PRELOAD": name, "LD_LIBRARY_PATH": folder,
            "ASAN_OPTIONS": ":".join(filter(None, options))}


def run(*arguments, **options):
    """The finished process; whoever takes longer than a minute has hung."""
    settings = {"stdin": subprocess.DEVNULL, "capture_output": True, "timeout": 60} | options
    if "stdout" in settings or "stderr" in settings:
        settings.pop("capture_output")
    command = [*settings.pop("through", []), settings.pop("program", PROGRAM), *arguments]
    return subprocess.run(command, **settings)


def json_of(*arguments, **options):
    """What a command that succeeds without a word on standard error answers."""
    done = run(*arguments, **options)
    if done.returncode != 0 or done.stderr:
        raise AssertionError(f"{' '.join(arguments)}: status {done.returncode}, "
                             f"{done.stderr.decode(errors='replace')}")
    return json.loads(done.stdout)


class Watch:
    """`state --watch --json` under way, with more arguments if there are any, and every report it
    has written with its moment of arrival.

    Use it in a `with` statement; leaving it ends the process.
    """

    def __init__(self, *arguments, program=PROGRAM, **options):
        self.process = subprocess.Popen(
            [program, "state", "--watch", "--json", *arguments], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)
        self.reports = []  # (moment, report), only ever appended to
        self.broken = []  # lines that were not a report
        self._news = threading.Condition()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait(timeout=10)
        self._reader.join(timeout=10)
        self.process.stdout.close()
        self.process.stderr.close()

    def _read(self):
        for line in self.process.stdout:
            moment = time.monotonic()
            with self._news:
                try:
                    self.reports.append((moment, json.loads(line)))
                except ValueError:
                    self.broken.append(line)
                self._news.notify_all()

    def moment_of(self, condition, seconds, since=0):
        """When the first report after number `since` came that fulfils the condition; none when
        none comes within `seconds` from now."""
        deadline = time.monotonic() + seconds
        at = since
        with self._news:
            while True:
                for moment, report in self.reports[at:]:
                    if condition(report):
                        return moment
                at = len(self.reports)
                remaining = deadline - time.monotonic()
                if remaining <= 0 or not self._news.wait(remaining):
                    return None

    def settle(self, quiet_seconds=0.4, limit_seconds=30):
        """Waits until no report has come for a while and the last one is whole; the number of
        reports so far."""
        deadline = time.monotonic() + limit_seconds
        while time.monotonic() < deadline:
            before = len(self.reports)
            time.sleep(quiet_seconds)
            if before > 0 and len(self.reports) == before and self.reports[-1][1]["complete"]:
                break
        return len(self.reports)

    def finish(self, number=signal.SIGTERM):
        """Asks the process to end; its exit status and what it wrote to standard error."""
        self.process.send_signal(number)
        status = self.process.wait(timeout=10)
        self._reader.join(timeout=10)
        return status, self.process.stderr.read()


def others(report):
    """The interfaces of a report, by name."""
    return {each["name"]: each for each in report["state"]["others"]}
