"""What the tests of the public side begin with: `state --categories internet` in a namespace with
services, names and settings of the test's own, and what it said.

Every situation adds a line "situation | result | message | seconds" to the file that
LANTERNFOLD_SITUATIONS names, if it names one.
"""

import json
import os
import tempfile
import threading
import time
from pathlib import Path

from host_names import write_names
from namespaces import NamespaceTest, ip
from program import run

# Where nobody listens: what is not part of a test is refused at once.
NOBODY = {"ipv4_echo": "http://127.0.0.1:9", "ipv6_echo": "http://[::1]:9",
          "geolocation": "http://127.0.0.1:9"}
# How a line of diagnostics names the services.
IPV4, GEOLOCATION, IPV6 = "IPv4 echo", "geolocation", "IPv6 echo"
# On top of a limit of the program, for a machine that is busy.
SLACK_SECONDS = 10

_table_lock = threading.Lock()


class Outcome:
    """A command that has ended: what it said, and how long it took."""

    def __init__(self, done, seconds):
        self.status = done.returncode
        self.output = done.stdout.decode()
        self.errors = done.stderr.decode()
        self.seconds = seconds
        self.arguments = done.args

    @property
    def report(self):
        return json.loads(self.output)

    @property
    def internet(self):
        return self.report["state"]["internet"]

    def known(self):
        """All that services tell."""
        return {key: self.internet[key] for key in ("ip", "supportsIPv6", "ipv6", "isp", "country")}


def known(ip=None, ipv6=None, isp=None, country=None, supports_ipv6=None):
    """As `Outcome.known`; IPv6 counts as supported when there is an address."""
    return {"ip": ip, "supportsIPv6": True if ipv6 else supports_ipv6, "ipv6": ipv6, "isp": isp,
            "country": country}


def environment(**variables):
    """The test's own without the proxies that whoever runs it has."""
    return {name: value for name, value in os.environ.items()
            if not name.lower().endswith("_proxy")} | variables


class InternetTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold internet ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.data = self.folder / "data"
        self.write_names()

    def write_names(self, hosts="", servers=""):
        """What /etc/hosts and /etc/resolv.conf hold for this test."""
        write_names(self, self.folder, hosts, servers)

    def start(self, server):
        """A server that ends with the test."""
        self.addCleanup(server.__exit__)
        return server

    def state(self, *arguments, as_json=True, data=None, variables=None, **services):
        """`state --categories internet`, asking the services that are named (with None,
        the one that is asked unless told), with other options as in `run`."""
        command = ["state", "--categories", "internet", "--data-dir", str(data or self.data)]
        options = {}
        for name, value in (NOBODY | services).items():
            if name not in NOBODY:
                options[name] = value
            elif value is not None:
                command += [f"--{name.replace('_', '-')}", value]
        begin = time.monotonic()
        done = run(*command, *(["--json"] if as_json else []), *arguments,
                   **{"env": environment(**(variables or {}))} | options)
        return Outcome(done, time.monotonic() - begin)

    def assert_answers(self, outcome, expected, situation=None):
        """A complete report with these values and status 0, also when nothing is known."""
        if situation:
            self.tell(situation, outcome)
        self.assertEqual(0, outcome.status, outcome.errors)
        self.assertTrue(outcome.report["complete"])
        self.assertEqual(("Internet", True),
                         (outcome.internet["displayName"], outcome.internet["active"]))
        self.assertEqual(expected, outcome.known(), outcome.errors)

    def assert_says(self, outcome, *pieces):
        """One line, with these pieces in it; no piece: nothing at all."""
        lines = outcome.errors.splitlines()
        self.assertEqual(1 if pieces else 0, len(lines), outcome.errors)
        for piece in pieces:
            self.assertIn(piece, lines[0])

    def assert_took(self, outcome, at_least, at_most):
        self.assertGreaterEqual(outcome.seconds, at_least)
        self.assertLess(outcome.seconds, at_most + SLACK_SECONDS)

    def tell(self, situation, outcome):
        tell(situation, result_of(outcome), outcome.errors.splitlines(), outcome.seconds)


def tell(situation, result, messages, seconds):
    """Adds a line to the table of situations, when there is to be one."""
    table = os.environ.get("LANTERNFOLD_SITUATIONS")
    if not table:
        return
    line = f"{situation} | {result} | {' / '.join(messages) or '-'} | {seconds:.2f}\n"
    with _table_lock, open(table, "a", encoding="utf-8") as file:
        file.write(line)


def result_of(outcome):
    """For the table: what is known, in a few words."""
    if outcome.status != 0 or not outcome.output.startswith("{"):
        return f"status {outcome.status}"
    internet = outcome.internet
    ipv6 = internet["ipv6"] or {False: "not supported", None: "not known"}.get(
        internet["supportsIPv6"], "supported")
    interface = internet["interface"]
    provider = f"{internet['isp'] or 'not known'} ({internet['country'] or 'not known'})"
    return (f"IPv4 {internet['ip'] or 'not known'}, IPv6 {ipv6}, provider {provider}, "
            f"interface {interface['name'] if interface else 'none'}")


def add_loopback_addresses(*addresses):
    for address in addresses:
        ip(f"address add {address} dev lo nodad" if ":" in address else
           f"address add {address} dev lo")
