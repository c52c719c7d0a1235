"""The processes that a test has started, and those that they have started in turn."""

import ctypes
import os
import signal
import time
from pathlib import Path

PR_SET_CHILD_SUBREAPER = 36
_libc = ctypes.CDLL(None, use_errno=True)


def adopt_orphans():
    """From here on a descendant whose parent ends becomes a child of this process, so that none is
    lost sight of."""
    _libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


def children(pid):
    """Those of all its threads; none when it has ended."""
    result = []
    for task in tasks(pid):
        try:
            text = Path(f"/proc/{pid}/task/{task}/children").read_text()
        except (FileNotFoundError, ProcessLookupError):
            continue  # a thread that has ended; its children are another one's
        result += [int(word) for word in text.split()]
    return result


def tasks(pid):
    try:
        return os.listdir(f"/proc/{pid}/task")
    except (FileNotFoundError, ProcessLookupError):
        return []


def descendants(pid):
    result = []
    for child in children(pid):
        result += [child, *descendants(child)]
    return result


def program_of(pid):
    """The name of the file that it runs; none when it has ended."""
    try:
        return os.path.basename(os.readlink(f"/proc/{pid}/exe"))
    except OSError:
        return None


def is_running(pid):
    try:
        return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):
        return False


def running(program):
    """The descendants of this process that run the program of that name."""
    return [pid for pid in descendants(os.getpid()) if program_of(pid) == program]


def end_descendants(seconds=10):
    """Ends whatever this process has started and not ended itself."""
    deadline = time.monotonic() + seconds
    while (left := descendants(os.getpid())) and time.monotonic() < deadline:
        for pid in left:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        for pid in children(os.getpid()):
            try:
                os.waitpid(pid, os.WNOHANG)
            except ChildProcessError:
                pass
        time.sleep(0.01)


def wait_until(condition, what, seconds=30, pause=0.05):
    """What the condition gives, once that is true; an AssertionError when it stays false."""
    deadline = time.monotonic() + seconds
    while not (result := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"{what}: not within {seconds} s")
        time.sleep(pause)
    return result
