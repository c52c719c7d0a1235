"""Recorded traffic: where it is kept, what a file of it holds, and a recorder under way."""

import json
import os
import socket
import threading
import time

from program import PROGRAM, run
from watched_process import WatchedProcess

GROUP = "7RKM3PW2ZB.net.quernaple.LanternfoldX"
STORAGE = "connection-metrics-storage_default"
COUNTERS = ["sentBytes", "recvBytes", "sentError", "recvError", "sentPacket", "recvPacket",
            "collisions", "mtu"]
LEASE_SECONDS = 0.5
# From 1 January 1970 to 1 January 2001, in UTC.
EPOCH_OF_2001 = 978307200


class DataFolder:
    """A data folder of a test's own and the files of its application group."""

    def __init__(self, path):
        self.path = path
        self.group = path / "groups" / GROUP
        self.metrics = path / "metrics"
        self.file = self.group / f"{STORAGE}.json"
        self.lock = self.group / f"{STORAGE}.lock"

    def make(self):
        self.group.mkdir(parents=True)
        return self

    def options(self):
        return ["--data-dir", str(self.path)]

    def once(self, *arguments, **options):
        return run("record", "--once", "--json", *self.options(), *arguments, **options)

    def recorded(self, kind=1):
        """The adjusted counters of the file (0: the original ones)."""
        return decoded(self.file.read_bytes())[kind]


def decoded(contents):
    """What the file holds, by type; an AssertionError for anything that is no whole file."""
    document = json.loads(contents)
    if not isinstance(document, list) or len(document) % 2 != 0:
        raise AssertionError(f"no list of pairs: {contents[:200]}")
    result = dict(zip(document[::2], document[1::2]))
    for kind, interfaces in result.items():
        if kind not in (0, 1):
            raise AssertionError(f"unknown type {kind}")
        for name, counters in interfaces.items():
            check_counters(name, counters)
    return result


def check_counters(name, counters):
    if list(counters) != COUNTERS and sorted(counters) != sorted(COUNTERS):
        raise AssertionError(f"{name}: {sorted(counters)}")
    for key, value in counters.items():
        if type(value) is not int or not 0 <= value < 2**64:
            raise AssertionError(f"{name}/{key}: {value!r}")


def went_backwards(earlier, later):
    """The counters that are smaller in `later`, as texts; interfaces that are gone do not count."""
    return [f"{name}/{key}: {counters[key]} then {later[name][key]}"
            for name, counters in earlier.items() if name in later
            for key in COUNTERS[:-1] if later[name][key] < counters[key]]


class Recorder(WatchedProcess):
    """`record` under way."""

    def __init__(self, *arguments, **options):
        super().__init__([PROGRAM, "record", *arguments], **options)

    def samples(self, count, seconds):
        return [json.loads(line) for line in self.wait_for_lines(count, seconds)]


def boot_time():
    """When the kernel says that it began, in seconds since 1970."""
    with open("/proc/stat") as counts:
        return next(int(line.split()[1]) for line in counts if line.startswith("btime "))


def lease_end(path):
    """Until when a lock file keeps others out, in seconds since 1970; none when it does not."""
    try:
        return float(path.read_text()) + EPOCH_OF_2001
    except (FileNotFoundError, ValueError):
        return None


def write_lock(path, seconds_from_now):
    path.write_text(f"{time.time() + seconds_from_now - EPOCH_OF_2001:.8f}")


class Sender:
    """Sends Ethernet frames of a known length through one link, which nobody listens for."""

    ETHERNET_HEADER = 14
    # Reserved for local experiments: no protocol of the kernel takes it.
    ETHER_TYPE = b"\x88\xb5"

    def __init__(self, link):
        self._socket = socket.socket(socket.AF_PACKET, socket.SOCK_RAW, 0)
        self._socket.bind((link, 0))

    def close(self):
        self._socket.close()

    def send(self, length, count=1):
        """`count` frames of `length` bytes, header included; the number of bytes."""
        frame = b"\xff" * 6 + b"\x0a\x00\x00\x00\x00\x02" + self.ETHER_TYPE
        frame += bytes(length - self.ETHERNET_HEADER)
        for _ in range(count):
            if self._socket.send(frame) != length:
                raise AssertionError("a frame was cut short")
        return length * count


class SteadySender:
    """Frames at a steady rate from a thread, until it is closed."""

    def __init__(self, link, bytes_per_second, length):
        self._sender = Sender(link)
        self._rate = bytes_per_second
        self._length = length
        self.sent_bytes = 0
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._send, daemon=True)
        self._thread.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join(timeout=10)
        self._sender.close()

    def _send(self):
        begin = time.monotonic()
        while not self._is_over.wait(0.005):
            due = (time.monotonic() - begin) * self._rate
            while self.sent_bytes < due and not self._is_over.is_set():
                self.sent_bytes += self._sender.send(self._length)


def kernel_bytes(link):
    """(sent, received) of a link as the kernel counts them, of the present namespace."""
    return tuple(int(open(f"/sys/class/net/{link}/statistics/{each}_bytes").read())
                 for each in ("tx", "rx"))


def environment_with(**variables):
    return os.environ | variables
