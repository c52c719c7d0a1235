"""What a program and the programs that it has started cost: memory, processor time, wake-ups."""

import os
import re
import statistics
import threading
import time
from pathlib import Path

from process_tree import descendants


def memory_kilobytes(pid):
    """Proportional (a page that is shared counts in part), and the process's own pages."""
    sizes = {name: int(size) for name, size in
             re.findall(r"^(\w+): +(\d+) kB$", Path(f"/proc/{pid}/smaps_rollup").read_text(),
                        re.MULTILINE)}
    return sizes["Pss"], sizes["Private_Clean"] + sizes["Private_Dirty"]


def processor_seconds(pid):
    """Of all threads of a process so far, by the kernel's exact clock."""
    return time.clock_gettime((~pid << 3) | 2)  # the kernel's number of that process's clock


def wakeups_of_threads(pid):
    """How often each of its threads has been given a processor after it had waited."""
    result = {}
    for task in os.listdir(f"/proc/{pid}/task"):
        text = Path(f"/proc/{pid}/task/{task}/status").read_text()
        result[int(task)] = int(re.search(r"^voluntary_ctxt_switches:\t(\d+)$", text,
                                          re.MULTILINE)[1])
    return result


class Costs:
    """Of a program from now on, looked at again and again until `end`: often enough that what a
    child does in its last moments is next to nothing."""

    LOOK_SECONDS = 0.5
    MEMORY_LOOKS = 10  # memory is looked at once in so many looks: that disturbs

    def __init__(self, pid):
        self._pid = pid
        self._proportional, self._own = [], []
        self._wakeups, self._seconds = {}, {}  # of who has ended: what it had at the last look
        self._is_over = threading.Event()
        self._began = time.monotonic()
        self._look(True)
        self._wakeups_before = sum(self._wakeups.values())
        self._seconds_before = sum(self._seconds.values())
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def _everyone(self):
        return [self._pid, *descendants(self._pid)]

    def _watch(self):
        looks = 0
        while not self._is_over.wait(self.LOOK_SECONDS):
            looks += 1
            self._look(looks % self.MEMORY_LOOKS == 0)

    def _look(self, with_memory):
        sizes = []
        for pid in self._everyone():
            try:
                for thread, count in wakeups_of_threads(pid).items():
                    self._wakeups[pid, thread] = count
                self._seconds[pid] = processor_seconds(pid)
                if with_memory:
                    sizes.append(memory_kilobytes(pid))
            except OSError:  # it has just ended
                pass
        if sizes:
            self._proportional.append(sum(size for size, _ in sizes))
            self._own.append(sum(size for _, size in sizes))

    def end(self):
        """The figures, by name; processor time and wake-ups a minute."""
        self._is_over.set()
        self._thread.join(timeout=10)
        self._look(True)
        minutes = (time.monotonic() - self._began) / 60
        return {"PSS MiB, median": statistics.median(self._proportional) / 1024,
                "most": max(self._proportional) / 1024,
                "own pages MiB": statistics.median(self._own) / 1024,
                "CPU s a minute": (sum(self._seconds.values()) - self._seconds_before) / minutes,
                "wake-ups a minute": (sum(self._wakeups.values()) - self._wakeups_before) / minutes}
