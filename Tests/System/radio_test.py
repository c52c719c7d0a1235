"""What the tests of Wi-Fi begin with: a machine with simulated radios, the program's figures beside
those of iw and wpa_cli, and what both said.

Every comparison adds lines "| situation | figure | ours | theirs |" to the file that
LANTERNFOLD_WIFI_TABLE names, if it names one.
"""

import json
import os
import unittest
from pathlib import Path

from program import AS_NOBODY
from radio_figures import QUESTIONS, contradictions, texts_of, theirs, throughput_text
from radio_machine import PROGRAM, RadioMachine
from radio_network import Air

CACHE = Path(os.environ["LANTERNFOLD_RADIO_CACHE"])
# In the machine.
DATA = "/tmp/data"
NOBODYS_DATA = "/tmp/nobodys"
NOBODY = f"/usr/sbin/setpriv --reuid={AS_NOBODY['user']} --regid={AS_NOBODY['group']} --clear-groups"
# A beacon or a late frame may change a figure while it is read. So often, with a pause of the
# machine's own time in between, are they read until they were the same before and after, and those
# that wander from frame to frame also in between; whoever does not agree by then never does.
ATTEMPTS = 60
PAUSE = "usleep 200000"
WANDERING = {"transmitRate", "receiveRate", "transmitRateMegabits", "expectedThroughput",
             "signalDbm", "signalAverageDbm"}
# Who tells what may change while nobody makes a change.
ASKED_AGAIN = ["link", "info", "station", "signal", "status", "survey", "country"]
# Told by the program alone, or changing with every second.
NOT_COMPARED = {"generation", "namesWithheld", "powerOn", "links", "connectedSeconds"}
OF_THE_LINK = {"channel", "frequencyMegahertz", "widthMegahertz", "center1Megahertz",
               "transmitRate", "receiveRate"}
# Nothing in this machine tells these; every other figure is told of a joined network.
MAY_BE_UNTOLD = {"noiseDbm", "rsn", "wpa", "receiveRate", "expectedThroughput"}

_machine = None


def the_machine():
    """One for all tests of a file."""
    global _machine
    if _machine is None:
        _machine = RadioMachine(CACHE)
        unittest.addModuleCleanup(_end_machine)
        _machine.__enter__()
        _machine.run(f"{PROGRAM} location allow --data-dir {DATA}")
        _machine.run(f"{NOBODY} {PROGRAM} location allow --data-dir {NOBODYS_DATA}")
    return _machine


def _end_machine():
    global _machine
    ending, _machine = _machine, None
    ending.__exit__()


class RadioTest(unittest.TestCase):
    maxDiff = None
    radios = 2

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.machine = the_machine()
        cls.air = Air(cls.machine, cls.radios)

    def wifi(self, data=DATA, through=""):
        """What `wifi --json` says, without a word on standard error."""
        return self.answer(f"{through} {PROGRAM} wifi --json --data-dir {data}")

    def state(self, data=DATA, through=""):
        """The Wi-Fi of `state --json`."""
        command = f"{through} {PROGRAM} state --categories wlan --json --data-dir {data}"
        report = self.answer(command)
        self.assertTrue(report["complete"])
        return report["state"]["wlan"]

    def answer(self, command):
        done = self.machine.script(command)
        self.assertEqual((0, b""), (done.status, done.errors), command)
        return json.loads(done.output)

    def readings(self, interface, data, through):
        """What the others and the program say of a moment in which nothing changed."""
        options = f"--json --data-dir {data}"
        ask = {name: question.format(interface) for name, question in QUESTIONS.items()}
        for _ in range(ATTEMPTS):
            said = self.machine.sections(
                ask | {"wifi": f"{through} {PROGRAM} wifi {options}",
                       "state": f"{through} {PROGRAM} state --categories wlan {options}"}
                | {f"{name} again": ask[name] for name in ASKED_AGAIN})
            first = theirs(said)
            again = theirs(said | {name: said[f"{name} again"] for name in ASKED_AGAIN})
            reading = first, json.loads(said["wifi"]), json.loads(said["state"])
            if first == again and not contradictions(said) and not wandered(*reading):
                break
            self.machine.run(PAUSE)
        else:
            self.assertEqual(first, again, "iw and wpa_cli never say the same twice")
            self.assertEqual([], contradictions(said), "iw and wpa_cli")
        return reading

    def assert_same_figures(self, situation, interface="wlan1", data=DATA, through="", **known):
        """Compares every figure of the joined network with what iw and wpa_cli say of it, or with
        what is known better; those figures."""
        expected, wifi, state = self.readings(interface, data, through)
        expected |= known
        untold = {name for name, value in expected.items() if value is None}
        self.assertLessEqual(untold, MAY_BE_UNTOLD, "iw and wpa_cli do not tell")
        ours = figures_of(wifi)
        self.tell(situation, ours, expected)
        self.assertEqual(expected, ours)
        self.assertEqual(set(wifi), NOT_COMPARED | set(expected) - OF_THE_LINK -
                         {"expectedThroughput"} | {"expectedThroughputKilobits"})
        wlan = state["state"]["wlan"]
        self.assertEqual((True, True), (wifi["powerOn"], wlan["active"]))
        self.assertEqual(("Station", expected["interface"]),
                         (wlan["mode"], wlan["interface"]["name"]))
        self.assertEqual(texts_of(expected), wlan["currentNetwork"])
        return expected

    def assert_not_joined(self, is_on=True, interface="wlan1"):
        """There is a Wi-Fi interface, and no network."""
        wifi, wlan = self.wifi(), self.state()
        self.assertEqual((interface, is_on, False, None, None),
                         tuple(wifi[key] for key in ("interface", "powerOn", "isJoined", "ssid",
                                                     "bssid")))
        self.assertEqual((is_on, None, interface),
                         (wlan["active"], wlan["currentNetwork"], wlan["interface"]["name"]))
        return wifi

    def tell(self, situation, ours, expected):
        """Adds to the table of comparisons, when there is to be one."""
        table = os.environ.get("LANTERNFOLD_WIFI_TABLE")
        if not table:
            return
        with open(table, "a", encoding="utf-8") as file:
            if file.tell() == 0:
                file.write("| situation | figure | ours | theirs |\n|---|---|---|---|\n")
            for name, value in expected.items():
                file.write(f"| {situation} | {name} | {cell(ours[name])} | {cell(value)} |\n")


def figures_of(wifi):
    """The figures of `wifi --json` that others tell as well; of a network with one link."""
    figures = {name: value for name, value in wifi.items() if name not in NOT_COMPARED}
    figures |= {name: wifi["links"][0][name] for name in OF_THE_LINK}
    figures["expectedThroughput"] = throughput_text(figures.pop("expectedThroughputKilobits"))
    for kind in ("rsn", "wpa"):
        if figures[kind]:
            # iw does not show it.
            figures[kind] = {name: value for name, value in figures[kind].items()
                             if name != "managementCipher"}
    return figures


def wandered(expected, wifi, state):
    """Whether a figure that may wander did so while the program read it."""
    ours = figures_of(wifi)
    metrics = (state["state"]["wlan"]["currentNetwork"] or {}).get("metrics") or {}
    return (any(ours[name] != expected[name] for name in WANDERING)
            or metrics.get("transmitRate") != expected["transmitRateMegabits"])


def cell(value):
    """A value in a table."""
    text = value if isinstance(value, str) else json.dumps(value, ensure_ascii=False)
    return "`" + text.replace("|", "\\|").replace("`", "'") + "`"
