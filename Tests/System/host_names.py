"""What the C library's resolver finds in /etc, for one test."""

import os
from pathlib import Path

from namespaces import mount, unmount

MS_BIND = 4096


def write_names(test, folder, hosts="", servers=""):
    """What /etc/hosts and /etc/resolv.conf hold until `test` ends; may be called again. The files
    stand in `folder`."""
    for name, contents in (("hosts", hosts), ("resolv.conf", servers),
                           ("nsswitch.conf", "hosts: files dns\n")):
        source = Path(folder) / name
        is_new = not source.exists()
        source.write_text(contents)
        if is_new:
            target = os.path.realpath(f"/etc/{name}")
            mount(str(source), target, None, MS_BIND)
            test.addCleanup(unmount, target)
