"""The kernel of the machine with simulated radios: Debian's stock one, unpacked and never installed.

Installing a kernel's package runs hooks that have no business in a test. What is needed of it stays
below the build folder, so that one download serves every run.
"""

import fcntl
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

# What gives the machine its folder shared with the tests, the ciphers of every kind of network, and
# its radios. They are loaded in this order, each after what it needs.
RADIOS = "mac80211_hwsim"
MODULES = ["virtio_pci", "9pnet_virtio", "9p", "ccm", "gcm", "cmac", "ctr", "michael_mic", RADIOS]
LIST = "modules.order"


class Kernel:
    """An unpacked kernel: its image, and the modules to load, in order."""

    def __init__(self, folder):
        self.image = folder / "vmlinuz"
        self.modules = [folder / name for name in (folder / LIST).read_text().split()]


def kernel(cache):
    """The kernel in a folder, put there if it is not there yet; safe for several tests at once."""
    cache.mkdir(parents=True, exist_ok=True)
    folder = cache / "kernel"
    with open(cache / "lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not folder.is_dir():
            with tempfile.TemporaryDirectory(dir=cache) as scratch:
                _make(Path(scratch), folder)
    return Kernel(folder)


def _make(scratch, folder):
    tree = scratch / "tree"
    _run("dpkg-deb", "-x", str(_download(scratch)), str(tree))
    version = os.listdir(tree / "lib" / "modules")[0]
    _run("depmod", "-b", str(tree), version)
    made = scratch / "kernel"
    made.mkdir()
    shutil.copy(tree / "boot" / f"vmlinuz-{version}", made / "vmlinuz")
    order = []
    for module in MODULES:
        for path in _needed_by(tree, version, module):
            if path.name not in order:
                shutil.copy(path, made / path.name)
                order.append(path.name)
    (made / LIST).write_text("\n".join(order) + "\n")
    made.rename(folder)


def _needed_by(tree, version, module):
    """The files of a module and of what it needs, which comes first."""
    said = _run("modprobe", "-d", str(tree), "-S", version, "--show-depends", module)
    return [Path(line.split()[1]) for line in said.splitlines() if line.startswith("insmod ")]


def _download(scratch):
    try:
        return _downloaded(scratch)
    except AssertionError:
        # Lists that are too old name a file that is gone.
        _run("apt-get", "-o", "Acquire::Retries=3", "update")
        return _downloaded(scratch)


def _downloaded(scratch):
    said = _run("apt-cache", "depends", "--important", "linux-image-amd64")
    packages = [line.split()[1] for line in said.splitlines() if "Depends: " in line]
    if not packages:
        raise AssertionError("apt knows no package linux-image-amd64, whose kernel the tests run")
    # As the user that runs the tests: apt's own may not write into a private folder.
    _run("apt-get", "-o", "APT::Sandbox::User=root", "-o", "Acquire::Retries=3", "download",
         packages[0], cwd=scratch)
    return next(scratch.glob("*.deb"))


def _run(*command, cwd=None):
    done = subprocess.run(command, cwd=cwd, stdin=subprocess.DEVNULL, capture_output=True,
                          text=True, timeout=600)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)}: {done.stderr.strip()[-500:]}")
    return done.stdout
