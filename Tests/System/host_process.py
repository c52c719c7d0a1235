"""The widgets' host under way, and what scripts and the command line say to it."""

import os
import shutil
from pathlib import Path

from process_tree import children, program_of
from program import loading, run
from watched_process import WatchedProcess

PROGRAM = os.environ.get("LANTERNFOLD_WIDGET_HOST", "")
# For its environment: the kernel that it asks has Wi-Fi, and that of its extension has not.
WITH_WIFI = loading(os.environ.get("LANTERNFOLD_WIFI_KERNEL", ""))
EXTENSION_NAME = "lanternfold-widget-extension"
HERE = Path(__file__).resolve().parent


class Host(WatchedProcess):
    def children(self):
        return children(self.pid)

    def extensions(self):
        """The processes of the extension that it has started and that still run."""
        return [pid for pid in children(self.pid) if program_of(pid) == EXTENSION_NAME]


def host_beside(folder, extension):
    """A copy of the host that finds `extension`, a script of this folder, in the extension's place."""
    folder.mkdir()
    shutil.copy(PROGRAM, folder / "lanternfold-widget-host")
    stand_in = folder / EXTENSION_NAME
    stand_in.write_text(f'#!/bin/sh\nexec /usr/bin/python3 -B "{HERE / extension}" "$@"\n')
    stand_in.chmod(0o755)
    return folder / "lanternfold-widget-host"


def ctl(environment, *arguments):
    """The finished command."""
    return run("ctl", *arguments, env=environment)
