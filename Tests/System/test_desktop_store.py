"""The file of the widgets as others have left it: kinds that nobody knows, places off the screen,
damage; and a machine that lacks what every desktop has."""

import json
import os
import signal
import stat

from host_process import ctl, host_beside
from host_test import ADAPTER, BANDWIDTH, INTERNET, KINDS, XTest
from namespaces import mount, unmount
from process_tree import wait_until

NO_FONTS = """<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>/nonexistent</dir><cachedir>{folder}/font-cache</cachedir></fontconfig>
"""


def stored(identifier, kind, **members):
    return {"id": identifier, "kind": kind, "family": "small", "configuration": {},
            "monitor": "", "x": 100, "y": 100} | members


class StoreTest(XTest):
    def write_store(self, contents):
        self.store.parent.mkdir(parents=True, exist_ok=True)
        self.store.write_text(contents if isinstance(contents, str) else
                              json.dumps({"version": 1, "widgets": contents}))

    def asides(self):
        return sorted(each.name for each in self.store.parent.glob("widgets.json.damaged-*"))

    def test_the_file_belongs_to_its_user_alone(self):
        host = self.start_host()
        self.wait_for_widgets()
        self.finish(host)
        self.assertEqual(0o600, stat.S_IMODE(self.store.stat().st_mode))
        self.assertEqual(0o700, stat.S_IMODE(self.store.parent.stat().st_mode))

    def test_kinds_that_nobody_knows_stay_in_the_file(self):
        strange = stored("7", "SomethingElse", odd=[1, {"two": 2}])
        self.write_store([stored("1", BANDWIDTH), strange])
        host = self.start_host()
        self.assert_shown(self.wait_for_widgets(1)[0])
        self.ctl("add", INTERNET)
        self.assertEqual(2, len(self.widgets()))
        self.finish(host)
        self.assertIn(strange, json.loads(self.store.read_text())["widgets"])

    def test_places_off_the_screen(self):
        """Shown on it, and remembered where they were."""
        places = [(-5000, 40), (90000, 300), (400, -99999), (500, 99999)]
        self.write_store([stored(str(number), BANDWIDTH, x=x, y=y, monitor="HDMI-9")
                          for number, (x, y) in enumerate(places)])
        host = self.start_host()
        self.assertEqual(places, [(each["x"], each["y"]) for each in self.wait_for_widgets(4)])
        width, height = self.display.size
        windows = wait_until(lambda: len(found := self.card_windows()) == 4 and found, "windows")
        for x, y in windows:
            self.assertTrue(0 <= x <= width - 170 and 0 <= y <= height - 170, windows)
        self.finish(host)

    def test_a_damaged_file_is_set_aside(self):
        for number, contents in enumerate(("", "{", "[]", '{"version":1}', "\0" * 100, "[" * 100_000,
                                           "x" * 2_000_000)):
            with self.subTest(contents=contents[:20]):
                self.write_store(contents)
                host = self.start_host()
                self.assertEqual(sorted(KINDS), sorted(each["kind"]
                                                       for each in self.wait_for_widgets()))
                self.assertEqual(number + 1, len(self.asides()))
                self.finish(host)
                self.assertEqual(1, len(host.errors), host.errors)
                self.assertIn("widgets.json", host.errors[0])

    def test_what_is_no_file_is_called_so(self):
        """It once was "Invalid argument", and permissions were to be looked at for a link that
        leads nowhere."""
        self.store.parent.mkdir(parents=True)
        for put, said in ((lambda: os.mkfifo(self.store), "it is no file; move away"),
                          (lambda: self.store.symlink_to("/dev/zero"), "it is no file; move away"),
                          (lambda: self.store.symlink_to("/nonexistent/widgets.json"),
                           "a link into a folder that is not there; remove it")):
            put()
            host = self.start_host()
            self.wait_for_widgets()
            self.finish(host)
            self.assertEqual(1, sum(said in line for line in host.errors), host.errors)
            self.store.unlink()

    def test_a_file_of_a_later_version_is_left_alone(self):
        contents = json.dumps({"version": 9, "widgets": [stored("1", BANDWIDTH)], "new": True})
        self.write_store(contents)
        host = self.start_host()
        widget, = self.wait_for_widgets(1)
        self.ctl("add", INTERNET)
        self.ctl("remove", widget["id"])
        self.finish(host)
        self.assertEqual(contents, self.store.read_text())

    def test_a_full_disk_loses_nothing(self):
        before = self.put_on_a_small_disk()
        self.fill_disk()
        host = self.start_host()
        widget = self.wait_for_widgets()[0]
        self.ctl("remove", widget["id"])
        self.assertEqual(4, len(self.widgets()))
        self.finish(host)
        self.assertEqual(before, self.store.read_bytes())
        self.assertEqual(1, len(host.errors), host.errors)
        self.assertIn("make room", host.errors[0])

    def test_what_a_full_disk_did_not_take_is_written_at_the_end(self):
        """Before anybody reads it who is started meanwhile."""
        before = self.put_on_a_small_disk()
        host = self.start_host(
            program=host_beside(self.session.folder / "late", "late_extension.py"),
            LANTERNFOLD_SIGNAL=str(self.session.folder / "never"),
            LANTERNFOLD_WIDGET_EXTENSION=os.environ["LANTERNFOLD_WIDGET_EXTENSION"])
        gone = self.wait_for_widgets()[0]
        self.fill_disk()
        self.ctl("remove", gone["id"])
        left = self.widgets()
        self.assertEqual(before, self.store.read_bytes())
        (self.store.parent / "filler").unlink()
        # For as long as an extension has that does not end by itself.
        host.process.send_signal(signal.SIGTERM)
        self.session.environment["DBUS_SESSION_BUS_ADDRESS"] = self.session.begin_bus()
        second = self.start_host()
        wait_until(second.children, "the second host's extension")
        self.assertEqual([], host.children())
        self.assertEqual(left, self.wait_for_widgets(4))
        self.assertEqual(0, host.wait(10), host.errors)
        self.assertEqual([True], ["make room" in line for line in host.errors], host.errors)
        self.finish(second)
        self.assertEqual([], second.errors)

    def put_on_a_small_disk(self):
        """The file with the five widgets, and what stands in it."""
        host = self.start_host()
        self.wait_for_widgets()
        self.finish(host)
        before = self.store.read_bytes()
        mount("tmpfs", str(self.store.parent), "tmpfs", data="size=16k,mode=700")
        self.addCleanup(unmount, str(self.store.parent))
        self.store.write_bytes(before)
        return before

    def fill_disk(self):
        filler = os.open(self.store.parent / "filler", os.O_WRONLY | os.O_CREAT)
        try:
            while True:
                os.write(filler, bytes(4096))
        except OSError:
            pass
        finally:
            os.close(filler)

    def test_what_a_script_asks_wrongly(self):
        host = self.start_host()
        self.wait_for_widgets()
        for status, *arguments in ((1, "remove", "nobody"), (2, "add", "Nothing"),
                                   (2, "add", ADAPTER, "--family", "large"), (1, "reload", "nobody"),
                                   (2, "add", ADAPTER, "--family", "gigantic"), (2, "dance"),
                                   (2, "add", ADAPTER, "--adapter", "x" * 100_000), (2, "reload", "")):
            with self.subTest(arguments=[each[:20] for each in arguments]):
                done = ctl(self.environment, *arguments)
                self.assertEqual((status, b""), (done.returncode, done.stdout))
                self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]+\n\Z")
        self.assertEqual(5, len(self.widgets()))
        self.finish(host)


class BareMachineTest(XTest):
    def test_no_typefaces(self):
        configuration = self.session.folder / "fonts.conf"
        configuration.write_text(NO_FONTS.format(folder=self.session.folder))
        host = self.start_host(FONTCONFIG_FILE=str(configuration))
        widget = self.wait_for_widgets()[0]
        x, y = self.middle(widget)
        wait_until(lambda: self.pixel(x, y) != self.display.background, "a card")
        self.finish(host)

    def test_no_icons_and_no_theme(self):
        host = self.start_host(XDG_DATA_DIRS="/nonexistent", GTK_THEME="Nothing")
        self.assert_all_shown(self.wait_for_widgets())
        self.finish(host)

    def test_a_home_that_cannot_be_written(self):
        """The widgets are shown, and a line says that they are not remembered."""
        blocked = self.session.folder / "blocked"
        blocked.touch()
        host = self.start_host(XDG_CONFIG_HOME=str(blocked / "config"))
        self.assert_shown(self.wait_for_widgets()[0])
        self.finish(host)
        self.assertTrue(host.errors)
