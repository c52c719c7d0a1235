#!/usr/bin/env python3
"""The widget extension as a process: its start, a widget of all sources, and what it holds.

extension.py PROGRAM EXTENSION [TIMELINES]

PROGRAM is lanternfold-widgets and EXTENSION lanternfold-widget-extension, both built with
optimisation. A network namespace of the benchmark's, which needs root, holds three adapters and our
own services, which answer at once. The processes that are started take turns, and each of their
figures is the median; of requests (200 unless TIMELINES says otherwise) it is the mean. Processor
time is that of all threads, the kernel's share included.
"""

import json
import os
import re
import shutil
import signal
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ADAPTERS = {"en0": "192.0.2.2", "en1": "198.51.100.2", "en2": "203.0.113.2"}
ECHO_PATH = "/lanternfold/ip.php"
TABLE = """{"0.0.0.0/0": {"isp": "Example Net", "countryCode": "AT", "as": ""}}"""
STARTS = 31
TRACED = 50
HANG_SECONDS = 30
# The services end a connection that is kept for another request after 15 s; after 30 s without a
# request the extension leaves.
IDLE_SECONDS = 20
CURL = "/usr/bin/curl"


def in_table(*cells):
    print("|", " | ".join(str(each) for each in cells), "|")


def processor_seconds(pid):
    """What a process has taken so far, threads that have ended included."""
    return time.clock_gettime((~pid << 3) | 2)  # the kernel's number of that process's clock


def kilobytes_held(pid):
    """Resident, proportional (a page that is shared counts in part), and the process's own, which it
    has written."""
    with open(f"/proc/{pid}/smaps_rollup") as figures:
        sizes = {name: int(size) for name, size in
                 re.findall(r"^(\w+): +(\d+) kB$", figures.read(), re.MULTILINE)}
    return sizes["Rss"], sizes["Pss"], sizes["Private_Dirty"]


def threads_and_descriptors(pid):
    return tuple(len(os.listdir(f"/proc/{pid}/{each}")) for each in ("task", "fd"))


def start(command):
    quiet = [(os.POSIX_SPAWN_OPEN, number, os.devnull, os.O_RDWR, 0) for number in (0, 1)]
    return os.posix_spawn(command[0], command, os.environ, file_actions=quiet)


class Extension:
    """One under way, seen by its host."""

    def __init__(self, command):
        self._host, service = socket.socketpair()
        with service:
            service.set_inheritable(True)
            self.pid = start([*command, "--service-fd", str(service.fileno())])
        self._host.settimeout(HANG_SECONDS)
        self._lines = self._host.makefile("rb")
        self._last_id = 0

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._lines.close()
        self._host.close()
        os.waitpid(self.pid, 0)

    def ask(self, entry, times=1):
        """The largest view of all sources; the last answer."""
        for _ in range(times):
            answer = self._ask(entry)
        return answer

    def _ask(self, entry):
        self._last_id += 1
        self._host.sendall(json.dumps({
            "jsonrpc": "2.0", "id": self._last_id, "method": f"widget/{entry}",
            "params": {"kind": "PanoramicNetworkStateWidget", "family": "large"}}).encode() + b"\n")
        for line in self._lines:
            message = json.loads(line)
            if message.get("id") == self._last_id:
                return message["result"]
        raise SystemExit("the extension has left")


# The start


def run(*command):
    """Elapsed and processor seconds of a process, from its start to its end."""
    began = time.monotonic()
    _, status, usage = os.wait4(start(command), 0)
    elapsed = time.monotonic() - began
    if status != 0:
        raise SystemExit(f"{command[0]} ended with {os.waitstatus_to_exitcode(status)}")
    return elapsed, usage.ru_utime + usage.ru_stime


def first_placeholder(command):
    """The same, until the placeholder has come."""
    began = time.monotonic()
    with Extension(command) as extension:
        extension.ask("placeholder")
        return time.monotonic() - began, processor_seconds(extension.pid)


def measure_start(program, command):
    works = [lambda: first_placeholder(command)]
    baselines = [["/bin/true"], [CURL, "--version"], [program, "--version"],
                 [command[0], "--version"]]
    works += [lambda baseline=baseline: run(*baseline) for baseline in baselines]
    for work in works:
        work()  # the files come into memory
    turns = [[work() for work in works] for _ in range(STARTS)]
    product, *others = ([statistics.median(each) * 1000 for each in zip(*figures)]
                        for figures in zip(*turns))
    in_table("start to the first placeholder; beside", "baseline ms", "product ms", "ratio",
             "baseline CPU ms", "product CPU ms", "ratio")
    in_table("---", *["---:"] * 6)
    for baseline, figures in zip(baselines, others):
        cells = [cell for theirs, ours in zip(figures, product)
                 for cell in (f"{theirs:.1f}", f"{ours:.1f}", f"{ours / theirs:.2f}")]
        in_table(f"`{' '.join([os.path.basename(baseline[0]), *baseline[1:]])}`", *cells)


# Requests


def milliseconds_of(extension, entry, count):
    before = processor_seconds(extension.pid)
    extension.ask(entry, count)
    return (processor_seconds(extension.pid) - before) * 1000 / count


def system_calls_of(extension, entry):
    """How often each is made for a request; none without strace."""
    if shutil.which("strace") is None:
        return {}
    with tempfile.NamedTemporaryFile("r") as summary:
        tracer = subprocess.Popen(["strace", "-f", "-c", "-U", "calls,name", "-o", summary.name,
                                   "-p", str(extension.pid)], stderr=subprocess.PIPE, text=True)
        with tracer:
            if "attached" in tracer.stderr.readline():
                extension.ask(entry, TRACED)
            tracer.send_signal(signal.SIGINT)
        counts = re.findall(r"^ *(\d+) +(\w+)$", summary.read(), re.MULTILINE)
    return {name: int(calls) / TRACED for calls, name in counts if name != "total"}


def measure_requests(extension, urls, count):
    extension.ask("timeline")  # what is made once is made
    curl = statistics.median(
        run(CURL, "--disable", "--no-progress-meter", "--parallel", "--parallel-immediate",
            *(word for url in urls for word in ("--output", os.devnull, url)))[1]
        for _ in range(STARTS)) * 1000
    print()
    in_table("request", "curl CPU ms", "product CPU ms", "ratio", "system calls")
    in_table("---", *["---:"] * 4)
    for entry in ("placeholder", "snapshot", "timeline"):
        milliseconds = milliseconds_of(extension, entry, count)
        calls = system_calls_of(extension, entry)
        in_table(entry, f"{curl:.1f}", f"{milliseconds:.2f}", f"{milliseconds / curl:.2f}",
                 f"{sum(calls.values()):.0f}" if calls else "not counted")
    by_count = sorted(calls.items(), key=lambda each: each[1], reverse=True)
    print("\nThe timeline's:", ", ".join(f"{name} {each:.0f}" for name, each in by_count))


# What it holds


def held_row(title, pid):
    in_table(title, *(f"{each / 1024:.1f}" for each in kilobytes_held(pid)),
             *threads_and_descriptors(pid))


def measure_held(command):
    print()
    in_table("held, idle", "resident MiB", "proportional MiB", "written MiB", "threads",
             "descriptors")
    in_table("---", *["---:"] * 5)
    bare = start(["/bin/sleep", str(HANG_SECONDS)])
    with Extension(command) as extension:
        extension.ask("placeholder")
        held_row("`sleep`", bare)
        os.kill(bare, signal.SIGKILL)
        os.waitpid(bare, 0)
        held_row("placeholders before: 1", extension.pid)
        timelines = 0
        for more in (1, 99, 100):
            extension.ask("timeline", more)
            timelines += more
            time.sleep(IDLE_SECONDS)
            held_row(f"timelines before: {timelines}", extension.pid)


def make_adapters(namespaces):
    namespaces.ip("link set lo up", *(
        line for number, (name, address) in enumerate(ADAPTERS.items())
        for line in (f"link add {name} type veth peer name far{number}",
                     f"link set far{number} up", f"link set {name} up",
                     f"address add {address}/24 dev {name}")),
        "route add default via 192.0.2.1")


def main(arguments):
    if not 2 <= len(arguments) <= 3:
        raise SystemExit(__doc__.strip())
    if os.geteuid() != 0:
        raise SystemExit("extension.py: needs root, to make a network namespace")
    program, extension = (os.path.abspath(each) for each in arguments[:2])
    count = int(arguments[2]) if len(arguments) == 3 else 200
    os.environ["LANTERNFOLD_WIDGETS"] = program
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "Tests" / "System"))
    import echo_service  # reads the environment
    import namespaces

    namespaces.unshare(namespaces.CLONE_NEWNS | namespaces.CLONE_NEWNET)
    namespaces.make_mounts_private()
    namespaces.mount("sysfs", "/sys", "sysfs")
    make_adapters(namespaces)
    with tempfile.TemporaryDirectory(prefix="lanternfold-") as folder:
        networks = Path(folder, "networks.json")
        networks.write_text(TABLE)
        with echo_service.EchoService("--geolocation-table", networks,
                                      listen=("127.0.0.1:0", "[::1]:0")) as echo:
            ipv4, ipv6 = (f"http://{host}:{port}" for host, (_, port) in
                          zip(("127.0.0.1", "[::1]"), echo.addresses))
            command = [extension, "--data-dir", os.path.join(folder, "data"), "--ipv4-echo", ipv4,
                       "--ipv6-echo", ipv6, "--geolocation", ipv4]
            measure_start(program, command)
            with Extension(command) as process:
                measure_requests(process, [ipv4 + ECHO_PATH, ipv6 + ECHO_PATH], count)
            measure_held(command)


if __name__ == "__main__":
    main(sys.argv[1:])
