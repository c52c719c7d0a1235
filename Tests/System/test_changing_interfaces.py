"""Interfaces that are renamed, made and deleted while they are read; and a thousand of them."""

import fcntl
import signal
import socket
import struct
import threading
import time

import expected
from namespaces import NamespaceTest, ip, ip_batch
from program import Watch, json_of, others, run

SIOCSIFNAME = 0x8923
ROUNDS = 100


class Commotion:
    """Repeats an action on a thread of its own, in the same namespace, until left."""

    def __init__(self, action, pause_seconds):
        self.count = 0
        self.failure = None
        self._action = action
        self._pause_seconds = pause_seconds
        self._is_over = threading.Event()
        self._thread = threading.Thread(target=self._run, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._thread.join(timeout=30)

    def _run(self):
        try:
            while not self._is_over.wait(self._pause_seconds):
                self._action(self.count)
                self.count += 1
        except Exception as failure:  # told by the test
            self.failure = failure


class RenamingTest(NamespaceTest):
    NAMES = ("en0", "en0123456789abc")

    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        ip("link add en0 address 0a:00:00:00:00:01 type veth peer name peer0", "link set peer0 up",
           "link set en0 up", "addr add 192.0.2.2/24 dev en0",
           "route add default via 192.0.2.1 dev en0")
        self.control = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.addCleanup(self.control.close)

    def rename(self, count):
        names = [name.encode() for name in self.NAMES]
        old, new = names if count % 2 == 0 else reversed(names)
        fcntl.ioctl(self.control, SIOCSIFNAME, struct.pack("16s16s8x", old, new))

    def assert_old_or_new(self, seconds_between, most_missing):
        """Asks while the link is renamed. It may be missing from an answer when the renaming came
        between the look at the links and the look at their counters, which go by name; what is
        there is right."""
        missing = 0
        with Commotion(self.rename, seconds_between) as renaming:
            for _ in range(ROUNDS):
                answer = {each["name"]: each for each in json_of("interfaces", "--json")}
                found = sorted(set(answer) - {"lo", "peer0"})
                self.assertIn(found, [[], [self.NAMES[0]], [self.NAMES[1]]])
                self.assertLessEqual({"lo", "peer0"}, set(answer))
                missing += not found
                for name in found:
                    self.assert_right(answer[name])
        self.assertIsNone(renaming.failure)
        print(f"\n    {renaming.count} renamings in {ROUNDS} answers, of which {missing} lack the "
              "link", end="", flush=True)
        self.assertGreater(renaming.count, ROUNDS / 2)
        self.assertLessEqual(missing, most_missing)
        self.assertEqual(expected.interfaces({self.NAMES[renaming.count % 2]}),
                         json_of("interfaces", "--json"))

    def assert_right(self, record):
        self.assertEqual("0A:00:00:00:00:01", record["hwAddress"])
        self.assertEqual([{"address": "192.0.2.2", "netmask": "255.255.255.0",
                           "gateway": "192.0.2.1", "cidr": "192.0.2.1/24"}], record["IPv4"])
        self.assertIn((record["type"], record["displayName"]),
                      [("ethernet", "Ethernet"), ("unknown", record["name"])])

    def test_now_and_then(self):
        self.assert_old_or_new(0.02, most_missing=ROUNDS // 10)

    def test_as_fast_as_the_kernel_can(self):
        self.assert_old_or_new(0, most_missing=ROUNDS - 1)

    def test_a_watch_ends_with_the_last_name(self):
        with Watch() as watch:
            watch.settle()
            with Commotion(self.rename, 0.001) as renaming:
                time.sleep(2)
            over = time.monotonic()
            last = self.NAMES[renaming.count % 2]
            is_right = (lambda report: report["complete"] and list(others(report)) == [last] and
                        others(report)[last]["type"] == "ethernet")
            since = len(watch.reports)
            if not is_right(watch.reports[-1][1]):
                self.assertIsNotNone(watch.moment_of(is_right, 1, since))
            watch.settle()
            self.assertTrue(is_right(watch.reports[-1][1]))
            self.assertLessEqual(time.monotonic() - over, 12)
            for _, report in watch.reports:
                self.assertLessEqual(len(others(report)), 1)
            self.assertEqual((0, b""), watch.finish(signal.SIGINT))


class ComingAndGoingTest(NamespaceTest):
    def test_links_that_come_and_go_while_the_list_is_read(self):
        """What exists all the time is always there and right; what comes and goes is whole or
        missing."""
        ip("link add en0 type veth peer name peer0", "addr add 192.0.2.2/24 dev en0")
        steady = expected.interfaces({"en0"})
        visitor_names = {f"en{number}" for number in range(100, 108)}

        def come_and_go(_):
            ip_batch([f"link add {name} type ifb" for name in sorted(visitor_names)] +
                     [f"addr add 198.51.100.1/24 dev {name}" for name in sorted(visitor_names)] +
                     [f"link del {name}" for name in sorted(visitor_names)])

        visits = 0
        with Commotion(come_and_go, 0) as commotion:
            for _ in range(ROUNDS):
                answer = json_of("interfaces", "--json")
                self.assertEqual(steady, [each for each in answer
                                          if each["name"] not in visitor_names])
                for each in answer:
                    if each["name"] not in visitor_names:
                        continue
                    visits += 1
                    self.assertRegex(each["hwAddress"], "^([0-9A-F]{2}:){5}[0-9A-F]{2}$")
                    self.assertIn([address["address"] for address in each["IPv4"]],
                                  [[], ["198.51.100.1"]])
                    self.assertEqual(bool(each["IPv4"]), each["active"])
        self.assertIsNone(commotion.failure)
        print(f"\n    {commotion.count} times {len(visitor_names)} links came and went, "
              f"{visits} of them were seen", end="", flush=True)
        self.assertGreater(visits, 0)
        self.assertEqual(steady, json_of("interfaces", "--json"))


class ManyLinksTest(NamespaceTest):
    COUNT = 1000

    def test_a_thousand_interfaces_are_all_there(self):
        names = [f"en{number}" for number in range(self.COUNT)]
        ip_batch([f"link add {name} mtu {1000 + number} type ifb"
                  for number, name in enumerate(names)] +
                 [f"addr add 10.{number // 250}.{number % 250}.1/24 dev {name}"
                  for number, name in enumerate(names)])
        begin = time.monotonic()
        answer = json_of("interfaces", "--json")
        print(f"\n    read in {time.monotonic() - begin:.2f} s", end="", flush=True)
        self.assertEqual(self.COUNT + 1, len(answer))
        self.assertEqual(expected.interfaces(), answer)
        self.assertEqual(self.COUNT, len(json_of("interfaces", "--prefix", "en", "--json")))
        state = json_of("state", "--json")
        self.assertEqual([each for each in answer if each["name"] != "lo"],
                         state["state"]["others"])
        table = run("interfaces")
        self.assertEqual((0, self.COUNT + 2), (table.returncode, len(table.stdout.splitlines())))
        self.assert_watch_keeps_up()

    def assert_watch_keeps_up(self):
        """The counters are read once for each link, so that a thousand of them take their time in a
        build for debugging."""
        with Watch() as watch:
            since = watch.settle()
            ip("addr del 10.1.7.1/24 dev en257")
            changed = time.monotonic()
            moment = watch.moment_of(
                lambda report: report["complete"] and not others(report)["en257"]["active"],
                30, since)
            self.assertIsNotNone(moment)
            print(f"\n    a change among them was reported after "
                  f"{max(moment - changed, 0) * 1000:.0f} ms", end="", flush=True)
