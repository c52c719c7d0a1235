"""`ctl` on a real session bus: every verb, and everybody who may be in the host's place."""

import json
import time
import unittest
from pathlib import Path

import program
from portal_world import PYTHON, PortalWorld

HOST = "net.quernaple.LanternfoldX.Widgets"
STAND_IN = Path(__file__).resolve().parent / "stand_in_host.py"


class CtlTest(unittest.TestCase):
    def setUp(self):
        self.world = PortalWorld()
        self.world.__enter__()
        self.addCleanup(self.world.__exit__)

    def serve(self, manner):
        return self.world.serve([PYTHON, "-B", str(STAND_IN), manner], HOST)

    def ctl(self, *arguments, **changes):
        return program.run("ctl", *arguments, env=self.world.environment | changes)

    def written(self, *arguments):
        done = self.ctl(*arguments)
        self.assertEqual((done.returncode, done.stderr), (0, b""), arguments)
        return done.stdout.decode()

    def assert_fails(self, done, text, status=1):
        self.assertEqual(done.returncode, status)
        self.assertEqual(done.stdout, b"")
        self.assertRegex(done.stderr.decode(), rf"\Alanternfold-widgets: [^\n]*{text}[^\n]*\n\Z")

    def test_every_verb(self):
        host = self.serve("obliging")
        self.assertEqual(self.written("add", "NetworkAdapterWidget", "--adapter", "eth0"), "7\n")
        self.assertEqual(host.expect("Add")["arguments"], ["NetworkAdapterWidget", "", "eth0"])
        self.assertEqual(self.written("remove", "7"), "")
        self.assertEqual(host.expect("Remove")["arguments"], ["7"])
        self.assertEqual(self.written("reload", "7"), "")
        self.assertEqual(host.expect("Reload")["arguments"], ["7"])
        self.assertEqual(self.written("reload"), "")
        self.assertEqual(host.expect("Reload")["arguments"], [""])
        self.assertEqual(self.written("quit"), "")
        host.expect("Quit")
        self.assertEqual(json.loads(self.written("list", "--json"))[0]["x"], 24)
        self.assertEqual(self.written("list"),
                         "Id  Widget                Size    Adapter  Monitor   X   Y\n"
                         "1   NetworkAdapterWidget  medium           DP-1     24  48\n")

    def test_without_a_host(self):
        for arguments in [("list",), ("list", "--json"), ("add", "NetworkAdapterWidget"),
                          ("remove", "1"), ("reload",), ("quit",)]:
            self.assert_fails(self.ctl(*arguments), 'start them with "lanternfold-widgets show"')

    def test_it_starts_no_host(self):
        started = self.world.folder / "started"
        self.world.offer_to_start(HOST, f"/usr/bin/touch {started}")
        self.assert_fails(self.ctl("list"), "no widgets are shown")
        self.assertFalse(started.exists())

    def test_without_a_bus(self):
        self.assert_fails(self.ctl("list", DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent"),
                          "session bus")
        self.assert_fails(self.ctl("list", DBUS_SESSION_BUS_ADDRESS="", XDG_RUNTIME_DIR=""),
                          "session bus")

    def test_a_host_that_refuses(self):
        self.serve("refusing")
        for arguments in [("list",), ("remove", "9"), ("reload", "9"), ("quit",)]:
            self.assert_fails(self.ctl(*arguments), "there is no such widget")

    def test_a_host_that_hangs(self):
        self.serve("hanging")
        begin = time.monotonic()
        self.assert_fails(self.ctl("list"), "does not answer")
        self.assertLess(time.monotonic() - begin, 30)

    def test_somebody_else_of_that_name(self):
        self.serve("mute")
        self.assert_fails(self.ctl("list"), "another version")

    def test_bad_arguments_reach_nobody(self):
        host = self.serve("obliging")
        self.assert_fails(self.ctl("add", "Bogus"), "unknown widget kind", status=2)
        self.assert_fails(self.ctl("remove"), "ID", status=2)
        self.assertEqual(self.written("remove", "end"), "")
        self.assertEqual(host.next()["event"], "Remove")

    def test_a_name_that_is_no_text(self):
        host = self.serve("obliging")
        self.assert_fails(self.ctl("remove", b"\xff\xfe"), r"not \"\\xff\\xfe\"", status=2)
        self.assertEqual(self.written("remove", "end"), "")
        self.assertEqual(host.expect("Remove")["arguments"], ["end"])


if __name__ == "__main__":
    unittest.main()
