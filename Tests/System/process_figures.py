"""What the kernel says of a process: how much it holds of what must not grow."""

import os


def descriptors(pid):
    return len(os.listdir(f"/proc/{pid}/fd"))


def threads(pid):
    return len(os.listdir(f"/proc/{pid}/task"))


def resident_kilobytes(pid):
    return _kilobytes(f"/proc/{pid}/status", "VmRSS:")


def peak_kilobytes(pid):
    """The most that was ever resident."""
    return _kilobytes(f"/proc/{pid}/status", "VmHWM:")


def proportional_kilobytes(pid):
    """What is shared with other processes counts in part."""
    return _kilobytes(f"/proc/{pid}/smaps_rollup", "Pss:")


def _kilobytes(path, field):
    with open(path) as figures:
        return next(int(line.split()[1]) for line in figures if line.startswith(field))
