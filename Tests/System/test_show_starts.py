"""`show` up to the moment at which the host takes over: a script stands for the host."""

import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

import program

SECONDS = 30


class ShowStartsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="lanternfold-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.program = self.folder / "lanternfold-widgets"
        shutil.copy(program.PROGRAM, self.program)

    def install_host(self, script):
        host = self.folder / "lanternfold-widget-host"
        host.write_text(f"#!/bin/sh\ncd '{self.folder}'\n{script}\n")
        host.chmod(0o755)

    def show(self, *arguments):
        return program.run("show", *arguments, program=str(self.program))

    def test_the_host_takes_its_place(self):
        self.install_host('echo "$@"; echo wrong >&2; exit 7')
        done = self.show("--skip-geoip", "--refresh-interval", "60", "--app-group", "a.b")
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (7, b"--skip-geoip --app-group=a.b --refresh-interval=60\n", b"wrong\n"))

    def test_without_a_host(self):
        for arguments in ([], ["--detach"]):
            done = self.show(*arguments)
            self.assertEqual(done.returncode, 1)
            self.assertRegex(done.stderr.decode(),
                             r"\Alanternfold-widgets: there is no \"[^\n]*install[^\n]*\n\Z")

    def test_detached_it_returns_and_holds_nothing(self):
        """Whoever reads the output to its end is not kept waiting by the host."""
        self.install_host('exec >/dev/null 2>&1; echo $$ >process; printf s >&"$2"; exec sleep 20')
        begin = time.monotonic()
        done = self.show("--detach")
        self.assertLess(time.monotonic() - begin, 15)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, b"", b""))
        process = (self.folder / "process").read_text().strip()
        self.assertTrue(Path(f"/proc/{process}").exists())
        subprocess.run(["kill", process], check=True, timeout=SECONDS)

    def test_detached_a_failure_reaches_the_terminal(self):
        self.install_host("echo 'host: no display' >&2; exit 1")
        done = self.show("--detach")
        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (1, b"", b"host: no display\n"))

    def test_detached_a_host_that_finds_another_is_done(self):
        self.install_host("exit 0")
        self.assertEqual(self.show("--detach").returncode, 0)


if __name__ == "__main__":
    unittest.main()
