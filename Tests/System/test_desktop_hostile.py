"""An extension that means no good: the host neither falls over, nor swells, nor opens what a card
names."""

import socket
import time
from pathlib import Path

from host_process import PROGRAM, ctl, host_beside
from host_test import APPLICATION, HostTest, SwayTest, XTest
from process_figures import proportional_kilobytes
from process_tree import running, wait_until

MANNERS = ("huge sizes", "large sizes", "many views", "many buttons", "deep", "too deep",
           "slow to lay out", "odd texts", "odd names", "many kinds", "long names", "many entries",
           "silent", "leaves", "aborts", "garbage", "endless line", "endless chatter",
           "wrong numbers", "nested json", "wrong types", "stays")
MOST_KILOBYTES = 400_000
WATCHED_SECONDS = 1.5
OWN_SCHEME = "net.quernaple.LanternfoldX"
OWN_LINK = f"{OWN_SCHEME}://bandwidth-monitor"
HANDLER = """[Desktop Entry]
Type=Application
Name=Handler
Exec=sh -c "echo \\"$1\\" >> {log}" handler %u
MimeType={types}
"""


class HostileTest(HostTest):
    def start_hostile(self, manner, number=0, **variables):
        program = host_beside(self.session.folder / f"hostile {number}", "hostile_extension.py")
        return self.start_host(program=program, LANTERNFOLD_MANNER=manner, **variables)


class MannerTest(HostileTest, XTest):
    def test_the_host_bears_it(self):
        """It answers meanwhile, holds what any program holds, and ends when it is asked."""
        for number, manner in enumerate(MANNERS):
            with self.subTest(manner=manner):
                self.store.unlink(missing_ok=True)
                host = self.start_hostile(manner, number)
                self.wait_for_answer()
                deadline = time.monotonic() + WATCHED_SECONDS
                while time.monotonic() < deadline:
                    self.widgets()
                    self.assertLess(proportional_kilobytes(host.pid), MOST_KILOBYTES)
                host.process.terminate()
                self.assertEqual(0, host.wait(10), host.errors)
                wait_until(lambda: not self.stand_ins(), "the end of the extension", 10)
                self.assertLess(len(host.errors), 30, host.errors[:30])

    def wait_for_answer(self):
        wait_until(lambda: ctl(self.environment, "list").returncode == 0, "an answer")

    @staticmethod
    def stand_ins():
        return [pid for pid in running("python3.11")
                if b"hostile_extension" in Path(f"/proc/{pid}/cmdline").read_bytes()]


class LinkTests:
    """What a click on a card opens: https by whoever handles it, and nothing else."""

    def setUp(self):
        super().setUp()
        self.opened = self.session.folder / "opened"
        self.opened.touch()
        self.handle("http", "https", "file", "javascript", "data", "ssh")

    def handle(self, *schemes):
        """Has the test be the program that opens them."""
        types = ";".join(f"x-scheme-handler/{each}" for each in schemes) + ";text/plain;"
        folder = self.session.folder / "share" / "applications"
        folder.mkdir(parents=True)
        (folder / "handler.desktop").write_text(HANDLER.format(log=self.opened, types=types))
        (folder / "mimeapps.list").write_text("[Default Applications]\n" + "".join(
            f"{each}=handler.desktop\n" for each in types.split(";") if each))
        (folder / "mimeinfo.cache").write_text("[MIME Cache]\n" + "".join(
            f"{each}=handler.desktop;\n" for each in types.split(";") if each))

    def click_link(self, url, number=0):
        host = self.start_hostile(f"link {url}", number)
        widget, = self.wait_for_widgets(1)
        place = self.middle(widget)
        wait_until(lambda: self.pixel(*place) == "008000", f"the link {url}")
        self.display.click(*place)
        return host

    def test_https_is_opened(self):
        self.click_link("https://www.example/?a=1&b=2")
        wait_until(lambda: self.opened.read_text(), "the opened URL", 10)
        self.assertEqual("https://www.example/?a=1&b=2\n", self.opened.read_text())

    def test_nothing_else_is_opened(self):
        for number, url in enumerate(("javascript:alert(1)", "file:///etc/passwd", "http://www.example/",
                                      "data:text/html,x", "ssh://www.example/")):
            with self.subTest(url=url):
                host = self.click_link(url, number)
                time.sleep(0.7)
                self.assertEqual("", self.opened.read_text())
                self.finish(host)


class XLinkTest(LinkTests, HostileTest, XTest):
    def test_what_is_opened_has_the_variables_that_the_host_was_given(self):
        """It once had those that the host sets for itself: no session bus, and another language."""
        desktop_file = self.session.folder / "share" / "applications" / "handler.desktop"
        desktop_file.write_text(desktop_file.read_text().replace(
            'echo \\"$1\\"', "env"))
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        listener.bind(str(self.session.folder / "silent"))
        listener.listen()
        bus = f"unix:path={self.session.folder / 'silent'}"
        self.start_hostile("link https://www.example/", DBUS_SESSION_BUS_ADDRESS=bus,
                           LC_ALL="C.UTF-8", LANGUAGE="de_AT:fr")
        x, y = wait_until(lambda: next(iter(self.card_windows()), None), "the card")
        place = x + 85, y + 85
        wait_until(lambda: self.pixel(*place) == "008000", "the link")
        self.display.click(*place)
        lines = wait_until(lambda: self.opened.read_text().splitlines(), "the opened URL", 10)
        self.assertIn(f"DBUS_SESSION_BUS_ADDRESS={bus}", lines)
        self.assertIn("LANGUAGE=de_AT:fr", lines)
        self.assertFalse([line for line in lines if line.startswith("GDK_GL=")])

    def open_by_bus(self, url):
        self.display.run("gdbus", "call", "--session", "--dest", APPLICATION, "--object-path",
                         "/" + APPLICATION.replace(".", "/"), "--method",
                         "org.freedesktop.Application.Open", f"['{url}']", "{}")

    def test_whoever_is_on_the_bus_cannot_have_pages_opened(self):
        host = self.start_host()
        self.wait_for_widgets()
        for number, url in enumerate(("https://www.example/", "file:///etc/passwd", OWN_LINK + "x")):
            self.open_by_bus(url)
            wait_until(lambda: len(host.errors) == number + 1, f"a line on {url}")
            self.assertIn("not opened", host.errors[-1])
        self.assertEqual("", self.opened.read_text())

    def test_a_handler_that_starts_the_host_again_is_no_loop(self):
        """Another desktop file than its own starts it, whether or not that can be seen."""
        for number, command in enumerate((PROGRAM, f"sh -c 'echo started >> {self.opened}; "
                                                   f"exec {PROGRAM} \"$1\"' host")):
            with self.subTest(command=command):
                self.handle_own_links(command)
                host = self.click_link(OWN_LINK, number)
                wait_until(lambda: self.monitors() == 1, "the monitor")
                time.sleep(1.5)
                self.assertEqual((1, "started\n" * number),
                                 (self.monitors(), self.opened.read_text()))
                self.assertEqual([host.pid], running("lanternfold-widget-host"))
                self.finish(host)

    def handle_own_links(self, command):
        folder = self.session.folder / "share" / "applications"
        types = ";".join(f"x-scheme-handler/{each}" for each in (OWN_SCHEME, OWN_SCHEME.lower()))
        (folder / "copy.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Copy\nExec={command} %u\nMimeType={types};\n")
        (folder / "mimeapps.list").write_text("[Default Applications]\n" + "".join(
            f"{each}=copy.desktop\n" for each in types.split(";")))

    def monitors(self):
        """How many windows of bandwidth monitors there are besides the card."""
        return sum("Bandwidth Monitor" in self.display.properties(each).get("WM_NAME", "")
                   and "BELOW" not in self.display.properties(each).get("_NET_WM_STATE", "")
                   for each in self.display.windows())


class SwayLinkTest(LinkTests, HostileTest, SwayTest):
    pass
