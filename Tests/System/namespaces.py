"""Network namespaces of a test's own.

The test's process moves into a new namespace itself, and the programs that it starts inherit it.
The kernel frees the namespace, with every link in it, when its last process has left: whatever
happens to a test, nothing stays behind.
"""

import ctypes
import json
import os
import subprocess
import unittest

CLONE_NEWNS = 0x00020000
CLONE_NEWNET = 0x40000000
MS_REC_PRIVATE = 0x4000 | 0x40000
MNT_DETACH = 2

_libc = ctypes.CDLL(None, use_errno=True)


def check(result, what):
    """The result of a C call; an OSError when it failed."""
    if result < 0:
        number = ctypes.get_errno()
        raise OSError(number, f"{what}: {os.strerror(number)}")
    return result


def mount(source, target, kind, flags=0, data=None):
    encoded = [None if text is None else os.fsencode(text) for text in (source, target, kind, data)]
    check(_libc.mount(encoded[0], encoded[1], encoded[2], ctypes.c_ulong(flags), encoded[3]),
          f"mount {target}")


def unmount(target):
    check(_libc.umount2(os.fsencode(target), MNT_DETACH), f"umount {target}")


def unshare(flags):
    check(_libc.unshare(flags), "unshare")


def enter_network(descriptor):
    """Moves the calling thread into the network namespace that an open file stands for."""
    check(_libc.setns(descriptor, CLONE_NEWNET), "setns")


def make_mounts_private():
    """What is mounted from here on stays out of the namespace that this one was copied from.

    In a chroot "/" is no mount, so the way leads over the namespace's real root, where setns goes.
    """
    root, working, mounts = (os.open(path, os.O_RDONLY) for path in ("/", ".", "/proc/self/ns/mnt"))
    check(_libc.setns(mounts, CLONE_NEWNS), "setns")
    mount(None, "/", None, MS_REC_PRIVATE)
    os.fchdir(root)
    os.chroot(".")
    os.fchdir(working)
    for descriptor in (root, working, mounts):
        os.close(descriptor)


def ip(*commands):
    """Runs commands of iproute2, each a line without the leading "ip"."""
    for command in commands:
        done = subprocess.run(["ip", *command.split()], capture_output=True, text=True, timeout=30)
        if done.returncode != 0:
            raise AssertionError(f"ip {command}: {done.stderr.strip()}")


def ip_batch(lines):
    """Runs many commands of iproute2 in one process."""
    done = subprocess.run(["ip", "-batch", "-"], input="\n".join(lines) + "\n", capture_output=True,
                          text=True, timeout=120)
    if done.returncode != 0:
        raise AssertionError(f"ip -batch: {done.stderr.strip()[-500:]}")


def ip_json(*arguments):
    """What iproute2 answers, as a value; links that vanished while it ran are left out by it."""
    done = subprocess.run(["ip", "-j", *arguments], capture_output=True, timeout=60, check=True)
    return json.loads(done.stdout or b"[]")


class NamespaceTest(unittest.TestCase):
    """A test that begins in an empty namespace with its own sysfs and a loopback that is up."""

    maxDiff = None

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        unshare(CLONE_NEWNS)
        make_mounts_private()

    def setUp(self):
        super().setUp()
        unshare(CLONE_NEWNET)
        mount("sysfs", "/sys", "sysfs")
        self.addCleanup(unmount, "/sys")
        ip("link set lo up")

    def switch_ipv6_off(self):
        """For links made from now on: nothing is sent through them on the kernel's own account."""
        for scope in ("all", "default"):
            with open(f"/proc/sys/net/ipv6/conf/{scope}/disable_ipv6", "w") as switch:
                switch.write("1")
