"""What the kernel says of a process: how much it holds of what must not grow."""

import os
import threading


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def threads(pid):
    return len(os.listdir(f"/proc/{pid}/task"))


def resident_kilobytes(pid):
    return _kilobytes(f"/proc/{pid}/status", "VmRSS:")


def proportional_kilobytes(pid):
    """What is shared with other processes counts in part."""
    return _kilobytes(f"/proc/{pid}/smaps_rollup", "Pss:")


def _kilobytes(path, field):
    with open(path) as figures:
        return next(int(line.split()[1]) for line in figures if line.startswith(field))


def figures(pid):
    return {"descriptors": descriptors(pid), "threads": threads(pid),
            "resident": resident_kilobytes(pid), "proportional": proportional_kilobytes(pid)}


class Peaks:
    """The most of each that a process has had at any look, until the `with` statement ends."""

    def __init__(self, pid):
        self.descriptors = self.threads = self.resident_kilobytes = 0
        self._pid = pid
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._look, daemon=True)
        self._thread.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join(timeout=10)

    def _look(self):
        while not self._is_over.wait(0.01):
            self.descriptors = max(self.descriptors, descriptors(self._pid))
            self.threads = max(self.threads, threads(self._pid))
            self.resident_kilobytes = max(self.resident_kilobytes, resident_kilobytes(self._pid))
