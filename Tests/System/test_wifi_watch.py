"""`state --watch` while a machine's Wi-Fi joins, roams and loses a network: each change is reported
without being asked for, once the kernel tells of it, and nothing is when nothing happens."""

import json
import time

from radio_machine import PROGRAM
from radio_network import NAMESPACE, Network, until
from radio_test import DATA, RadioTest

# Whoever does not report by then has hung.
LIMIT_SECONDS = 240
# Of the machine's own time, in which the program reports.
PAUSE = "usleep 100000"
QUIET = "sleep 2"
LONG_QUIET = "sleep 10"
# A change makes the kernel tell several things, each of which may be worth a report or two.
MOST_REPORTS_OF_A_CHANGE = 24
SECOND_ACCESS_POINT = "wlan2"


class Watching:
    """The program under way in the machine, and what it has reported."""

    def __init__(self, machine, data):
        self.machine = machine
        self._output = machine.shared / "watch.out"
        self._errors = machine.shared / "watch.err"
        self._output.write_bytes(b"")
        machine.run(f"{PROGRAM} state --watch --categories wlan --json --data-dir {data} "
                    ">>/shared/watch.out 2>/shared/watch.err </dev/null & echo $! >/run/watch.pid")

    def end(self):
        self.machine.script("kill $(cat /run/watch.pid)\n" +
                            until("! kill -0 $(cat /run/watch.pid) 2>/dev/null",
                                  "kill -9 $(cat /run/watch.pid)"))

    def reports(self):
        """The Wi-Fi of every whole report so far."""
        lines = self._output.read_bytes().split(b"\n")[:-1]
        reports = [json.loads(line) for line in lines]
        return [report["state"]["wlan"] for report in reports if report["complete"]]

    def errors(self):
        return self._errors.read_bytes()

    def wait_for(self, condition, since):
        """Waits for a report after number `since` that fulfils the condition; how many there are."""
        deadline = time.monotonic() + LIMIT_SECONDS
        while True:
            reports = self.reports()
            for number, wlan in enumerate(reports[since:], since + 1):
                if condition(wlan):
                    return number
            if time.monotonic() > deadline:
                raise AssertionError(f"no such report among {reports[since:]}, {self.errors()}")
            self.machine.run(PAUSE)

    def settle(self):
        """Waits until no report has come for a while; how many there are."""
        deadline = time.monotonic() + LIMIT_SECONDS
        count = -1
        while count != len(self.reports()):
            if time.monotonic() > deadline:
                raise AssertionError(f"reports never end: {self.reports()[-3:]}")
            count = len(self.reports())
            self.machine.run(QUIET)
        return count


def joined(name="Meadow", cell=None):
    def condition(wlan):
        network = wlan and wlan["currentNetwork"]
        return (network is not None and network["ssid"] == name
                and (cell is None or network["bssid"] == cell))
    return condition


def unjoined(wlan):
    return wlan["active"] and wlan["currentNetwork"] is None


def without_wifi(wlan):
    return wlan is None


def switched_off(wlan):
    return not wlan["active"] and wlan["currentNetwork"] is None


class WatchTest(RadioTest):
    radios = 3

    def setUp(self):
        super().setUp()
        self.network = Network(protection="open")
        self.air.offer(self.network)
        self.air.leave()

    def watch(self, first=lambda wlan: wlan is not None, data=DATA):
        watching = Watching(self.machine, data)
        self.addCleanup(watching.end)
        watching.wait_for(first, 0)
        return watching

    def expect(self, watching, change, condition):
        """Makes a change and waits for its report; reports are few, and end."""
        before = watching.settle()
        change()
        watching.wait_for(condition, before)
        self.assertLessEqual(watching.settle() - before, MOST_REPORTS_OF_A_CHANGE)
        self.assertTrue(condition(watching.reports()[-1]), watching.reports()[-1])

    def run_there(self, script):
        return lambda: self.machine.run(script)

    def test_a_network_is_joined_and_left(self):
        watching = self.watch()
        self.expect(watching, lambda: self.air.join(self.network), joined())
        self.expect(watching, self.run_there("wpa_cli -i wlan1 disconnect"), unjoined)
        self.expect(watching, self.run_there("wpa_cli -i wlan1 reconnect"), joined())

    def test_the_access_point_goes_away_and_comes_back(self):
        self.air.join(self.network)
        watching = self.watch()
        self.expect(watching, self.run_there("hostapd_cli -p /run/hostapd -i wlan0 disable"),
                    unjoined)
        self.expect(watching, self.run_there("hostapd_cli -p /run/hostapd -i wlan0 enable"),
                    joined())

    def test_the_switch_is_turned_off_and_on(self):
        switch = "/sys/class/net/wlan1/phy80211/rfkill*/soft"
        self.addCleanup(self.machine.run, f"echo 0 | tee {switch} && /usr/sbin/ip link set wlan1 up")
        self.air.join(self.network)
        watching = self.watch()
        self.expect(watching, self.run_there(f"echo 1 | tee {switch}"), switched_off)
        self.expect(watching, self.run_there(f"echo 0 | tee {switch} && "
                                             "/usr/sbin/ip link set wlan1 up"), joined())

    def test_roaming(self):
        self.air.join(self.network)
        watching = self.watch()
        cell = self.offer_a_second_cell()
        self.expect(watching, self.run_there(f"""
            wpa_cli -i wlan1 scan freq={self.network.frequency}
            {until(f"wpa_cli -i wlan1 bss {cell} | grep -q ^bssid", "wpa_cli scan_results")}
            wpa_cli -i wlan1 roam {cell}"""), joined(cell=cell))

    def offer_a_second_cell(self):
        """The same network from another radio; its address."""
        settings = self.network.access_point().replace("interface=wlan0",
                                                       f"interface={SECOND_ACCESS_POINT}")
        (self.machine.shared / "second.conf").write_text(settings)
        self.machine.run(f"""
            radio=$(cat /sys/class/net/{SECOND_ACCESS_POINT}/phy80211/name)
            [ -z "$radio" ] || iw phy $radio set netns name {NAMESPACE}""")
        self.air.access_point("hostapd -B -t -f /tmp/second.log /shared/second.conf")
        self.machine.run(until("grep -q AP-ENABLED /tmp/second.log", "cat /tmp/second.log"))
        return self.air.access_point(f"cat /sys/class/net/{SECOND_ACCESS_POINT}/address").strip()

    def test_names_are_withheld_while_another_process_denies_them(self):
        data = "/tmp/others"
        self.machine.run(f"rm -rf {data}; {PROGRAM} location allow --data-dir {data}")
        self.air.join(self.network)
        watching = self.watch(joined(), data)
        # A network whose name is withheld is none in the reports.
        for action, condition in (("deny", unjoined), ("allow", joined()), ("reset", unjoined)):
            self.expect(watching, self.run_there(f"{PROGRAM} location {action} --data-dir {data}"),
                        condition)
            self.assertTrue(self.wifi(data=DATA)["isJoined"])

    def test_the_kernels_wifi_comes_goes_and_comes_again(self):
        self.air.remove_wifi()
        self.addCleanup(self.air.bring_wifi)
        watching = self.watch(without_wifi)
        self.expect(watching, self.join_with_all_that_is_new, joined())
        self.expect(watching, self.air.remove_wifi, without_wifi)
        self.expect(watching, self.join_with_all_that_is_new, joined())

    def join_with_all_that_is_new(self):
        self.air.bring_wifi()
        self.air.offer_and_join(self.network)

    def test_nothing_is_reported_while_nothing_happens(self):
        self.air.join(self.network)
        watching = self.watch()
        before = watching.settle()
        self.machine.run(LONG_QUIET)
        self.assertEqual(before, len(watching.reports()))
        self.assertEqual(b"", watching.errors())
