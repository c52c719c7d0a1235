"""The build under test as `cmake --install` puts it somewhere."""

import os
import subprocess
import tempfile
from pathlib import Path

BUILD = os.environ["LANTERNFOLD_BUILD"]
PROGRAMS = ("lanternfold-widgets", "lanternfold-widget-host", "lanternfold-widget-extension")
APPLICATION = "net.quernaple.LanternfoldX.Widgets"
# Tools ask for the time alone where no word is theirs; a check that hangs has failed.
SECONDS = 120


def install(prefix, **environment):
    subprocess.run(["cmake", "--install", BUILD, "--prefix", str(prefix)], check=True,
                   capture_output=True, timeout=SECONDS, umask=0o022, env=os.environ | environment)


class Installation:
    """For a user of the machine, below a folder with a blank in its name.

    Use it in a `with` statement; leaving it removes everything.
    """

    def __enter__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="lanternfold-")
        self.folder = Path(self._folder.name)
        self.prefix = self.folder / "of one user"
        self.share = self.prefix / "share"
        install(self.prefix)
        # What an interpreter of the shell's words takes without quotes.
        self.plain_share = self.folder / "share"
        self.plain_share.symlink_to(self.share)
        for name in ("home", "run"):
            (self.folder / name).mkdir(mode=0o700)
        # Nothing of the machine's own user or session.
        self.environment = {
            "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": str(self.folder / "home"),
            "XDG_RUNTIME_DIR": str(self.folder / "run"), "XDG_DATA_DIRS": "/nonexistent",
            "XDG_CONFIG_DIRS": "/nonexistent", "XDG_DATA_HOME": str(self.plain_share)}
        return self

    def __exit__(self, *_):
        self._folder.cleanup()

    def program(self, name="lanternfold-widgets"):
        return str(self.prefix / "bin" / name)

    def run(self, *command, **options):
        """The finished process, with its output as text."""
        settings = {"stdin": subprocess.DEVNULL, "capture_output": True, "text": True,
                    "timeout": SECONDS, "env": self.environment} | options
        return subprocess.run([str(each) for each in command], **settings)

    def output(self, *command, **options):
        """What a command writes that has nothing to complain of."""
        done = self.run(*command, **options)
        if done.returncode != 0 or done.stderr:
            raise AssertionError(f"{command}: status {done.returncode}, {done.stdout}{done.stderr}")
        return done.stdout
