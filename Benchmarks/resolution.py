#!/usr/bin/env python3
"""A whole resolution of the internet side, as a process, beside curl asking the same services.

resolution.py PROGRAM [RUNS]

PROGRAM is lanternfold-widgets, built with optimisation. It and curl take turns, and every figure is
the median of their runs (31 each unless RUNS says otherwise): of the time from starting a process
until it has ended, and of the processor time that it took, the kernel's share included. The
services are our own, in a network namespace of the benchmark's, which needs root.
"""

import asyncio
import itertools
import os
import statistics
import sys
import tempfile
import threading
import time
from pathlib import Path

ECHO_PATH = "/lanternfold/ip.php"
GEOLOCATION_PATH = "/json/"
HOSTS = ("127.0.0.1", "192.0.2.2", "::1")
TABLE = """{"127.0.0.0/8": {"isp": "Example Net", "countryCode": "IT", "as": ""},
            "192.0.2.0/24": {"isp": "Example Net", "countryCode": "AT", "as": ""}}"""
DELAY_SECONDS = 0.05
CURL = "/usr/bin/curl"


class Services:
    """Where the three services answer, those over IPv4 at two addresses of this machine, which sees
    itself under the one that it asks."""

    def __init__(self, ports):
        first, second, ipv6 = ports
        self.ipv4, self.moved_ipv4 = (f"http://{host}:{port}"
                                      for host, port in zip(HOSTS, (first, second)))
        self.ipv6 = f"http://[::1]:{ipv6}"
        self.address_url = self.ipv4 + ECHO_PATH
        self.ipv6_url = self.ipv6 + ECHO_PATH
        self.provider_url = self.ipv4 + GEOLOCATION_PATH


class DelayingServer:
    """Repeats the answers of the echo service, each a while after it was asked for."""

    def __init__(self, answers):
        self._answers = answers  # by the host that is asked and the path
        self._ports = []
        self._ready = threading.Event()
        threading.Thread(target=lambda: asyncio.run(self._serve()), daemon=True).start()
        if not self._ready.wait(10):
            raise SystemExit("the delaying server does not listen")

    def services(self):
        return Services(self._ports)

    async def _serve(self):
        servers = [await asyncio.start_server(self._answer, host, 0) for host in HOSTS]
        self._ports = [server.sockets[0].getsockname()[1] for server in servers]
        self._ready.set()
        await asyncio.gather(*(server.serve_forever() for server in servers))

    async def _answer(self, reader, writer):
        head = await reader.readuntil(b"\r\n\r\n")
        await asyncio.sleep(DELAY_SECONDS)
        host = writer.get_extra_info("sockname")[0]
        writer.write(self._answers[host, head.split()[1].decode().partition("?")[0]])
        await writer.drain()
        writer.close()


class Run:
    """Processes that belong together."""

    def __init__(self):
        self._began = time.monotonic()
        self._running = []
        self.processor = 0.0
        self.elapsed = 0.0

    def start(self, command):
        actions = [(os.POSIX_SPAWN_OPEN, number, os.devnull, os.O_RDWR, 0) for number in (0, 1)]
        child = os.posix_spawn(command[0], command, os.environ, file_actions=actions)
        self._running.append(child)
        return child

    def wait(self, child):
        _, status, usage = os.wait4(child, 0)
        self._running.remove(child)
        self.processor += usage.ru_utime + usage.ru_stime
        if status != 0:
            raise SystemExit(f"a process ended with {os.waitstatus_to_exitcode(status)}")

    def finish(self):
        for child in list(self._running):
            self.wait(child)
        self.elapsed = time.monotonic() - self._began
        return self


def curl_command(*urls):
    command = [CURL, "--disable", "--no-progress-meter"]
    if len(urls) > 1:
        command += ["--parallel", "--parallel-immediate"]
    return [*command, *itertools.chain(*(("--output", os.devnull, url) for url in urls))]


def one_curl(*urls):
    """One process that asks for all of them at once."""
    run = Run()
    run.start(curl_command(*urls))
    return run.finish()


def curls_beside_each_other(*urls):
    """A process for each."""
    run = Run()
    for url in urls:
        run.start(curl_command(url))
    return run.finish()


def curls_in_order(services):
    """A process for each, the provider when the address is known, as a resolution has to ask."""
    run = Run()
    address = run.start(curl_command(services.address_url))
    run.start(curl_command(services.ipv6_url))
    run.wait(address)
    run.start(curl_command(services.provider_url))
    return run.finish()


class Product:
    """The program under measurement, with a data folder of its own."""

    def __init__(self, program, folder):
        self._program = program
        self._folder = folder
        self._has_moved = False

    def resolve(self, services):
        """At the same address as before: the provider is stored."""
        ipv4 = services.moved_ipv4 if self._has_moved else services.ipv4
        run = Run()
        run.start([self._program, "state", "--categories", "internet", "--json", "--data-dir",
                   self._folder, "--ipv4-echo", ipv4, "--ipv6-echo", services.ipv6,
                   "--geolocation", ipv4])
        return run.finish()

    def resolve_elsewhere(self, services):
        """At another address than before: all three services are asked."""
        self._has_moved = not self._has_moved
        return self.resolve(services)


class Table:
    """Rows of ratios."""

    def __init__(self, runs):
        self._runs = runs
        self._lines = ["| resolution | curl ms | product ms | ratio | curl CPU ms | product CPU ms "
                       "| ratio |", "|---|---:|---:|---:|---:|---:|---:|"]

    def add(self, title, product, baseline):
        product()  # the program's and the services' files come into memory
        baseline()
        pairs = [(product(), baseline()) for _ in range(self._runs)]
        cells = []
        for kind in ("elapsed", "processor"):
            ours, theirs = (statistics.median(getattr(run, kind) for run in runs) * 1000
                            for runs in zip(*pairs))
            cells += [f"{theirs:.1f}", f"{ours:.1f}", f"{ours / theirs:.2f}"]
        self._lines.append(f"| {title} | {' | '.join(cells)} |")

    def print(self):
        print("\n".join(self._lines))


def measure(table, product, services, title):
    urls = (services.address_url, services.ipv6_url, services.provider_url)

    def elsewhere():
        return product.resolve_elsewhere(services)

    table.add(f"{title}; one curl", elsewhere, lambda: one_curl(*urls))
    table.add(f"{title}; three curls", elsewhere, lambda: curls_beside_each_other(*urls))
    table.add(f"{title}; curls in its order", elsewhere, lambda: curls_in_order(services))
    table.add(f"{title}, provider stored; one curl for two", lambda: product.resolve(services),
              lambda: one_curl(*urls[:2]))


def main(arguments):
    if not 1 <= len(arguments) <= 2:
        raise SystemExit(__doc__.strip())
    if os.geteuid() != 0:
        raise SystemExit("resolution.py: needs root, to make a network namespace")
    os.environ["LANTERNFOLD_WIDGETS"] = os.path.abspath(arguments[0])
    sys.dont_write_bytecode = True
    sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "Tests" / "System"))
    import echo_service  # reads the environment
    import namespaces

    namespaces.unshare(namespaces.CLONE_NEWNET)
    namespaces.ip("link set lo up", "link add en0 type veth peer name far", "link set far up",
                  "link set en0 up", "address add 192.0.2.2/24 dev en0",
                  "route add default via 192.0.2.1")
    table = Table(int(arguments[1]) if len(arguments) == 2 else 31)
    with tempfile.TemporaryDirectory(prefix="lanternfold-") as folder:
        networks = Path(folder, "networks.json")
        networks.write_text(TABLE)
        with echo_service.EchoService("--geolocation-table", networks,
                                      listen=("127.0.0.1:0", "192.0.2.2:0", "[::1]:0")) as echo:
            answers = {(host, path): echo_service.ask(echo, path, index=index).data
                       for index, host in enumerate(HOSTS)
                       for path in (ECHO_PATH, GEOLOCATION_PATH)}
            product = Product(os.environ["LANTERNFOLD_WIDGETS"], os.path.join(folder, "data"))
            measure(table, product, Services([port for _, port in echo.addresses]), "at once")
            measure(table, product, DelayingServer(answers).services(), "after 50 ms")
    table.print()


if __name__ == "__main__":
    main(sys.argv[1:])
