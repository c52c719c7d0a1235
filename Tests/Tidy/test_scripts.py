"""The scripts of the front door behave on machines that lack things.

Each test gives a script a PATH of its own, in which apt-get and the like only write down what they
were asked.
"""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BASICS = ["awk", "bash", "basename", "cat", "dirname", "env", "grep", "mktemp", "nproc", "rm", "sed",
          "sort", "tail", "tr"]
ALL_PACKAGES = [line.split()[1] for line in (ROOT / "Scripts/packages.txt").read_text().splitlines()
                if line.strip() and not line.startswith("#")]


class Machine:
    """A machine with these packages installed, on which this user works."""

    def __init__(self, installed, user_id, sudo=False):
        self._folder = tempfile.TemporaryDirectory(prefix="a machine ")
        self._bin = Path(self._folder.name) / "bin"
        self._bin.mkdir()
        for tool in BASICS:
            found = next(path for path in ["/usr/bin/" + tool, "/bin/" + tool] if os.path.exists(path))
            (self._bin / tool).symlink_to(found)
        self._asked = Path(self._folder.name) / "asked"
        self.tool("dpkg-query", "".join(f'echo "ii {package}"\n' for package in installed))
        self.tool("id", f"echo {user_id}\n")
        self.tool("apt-get", f'echo "apt-get $*" >>"{self._asked}"\n')
        if sudo:
            self.tool("sudo", f'echo "sudo $*" >>"{self._asked}"\n')

    def tool(self, name, script):
        """Puts a program of this name into the PATH."""
        (self._bin / name).write_text(f"#!/bin/bash\n{script}")
        (self._bin / name).chmod(0o755)

    def remove(self, name):
        """Takes a program out of the PATH."""
        (self._bin / name).unlink()

    def run(self, script, *arguments):
        """The finished script; it has no terminal."""
        return subprocess.run([str(ROOT / script), *arguments], env={"PATH": str(self._bin)},
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
                              cwd=self._folder.name)

    @property
    def asked(self):
        """What apt-get and sudo were asked, a call a line."""
        return self._asked.read_text().splitlines() if self._asked.exists() else []

    def close(self):
        """Removes what the machine consists of."""
        self._folder.cleanup()


class Setup(unittest.TestCase):
    def machine(self, *arguments, **options):
        machine = Machine(*arguments, **options)
        self.addCleanup(machine.close)
        return machine

    def test_says_and_asks_nothing_when_nothing_is_missing(self):
        machine = self.machine(ALL_PACKAGES, user_id=0)
        done = machine.run("Scripts/setup", "check")
        self.assertEqual((0, "", ""), (done.returncode, done.stdout, done.stderr))
        self.assertEqual([], machine.asked)

    def test_root_refreshes_the_lists_and_installs_only_what_is_missing(self):
        lacking = {"libmnl-dev", "fonts-inter"}
        machine = self.machine([name for name in ALL_PACKAGES if name not in lacking], user_id=0)
        done = machine.run("Scripts/setup", "run")
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertEqual(2, len(machine.asked))
        self.assertRegex(machine.asked[0], r"apt-get .*update")
        self.assertRegex(machine.asked[1], r"apt-get .*install .*--yes.* libmnl-dev fonts-inter$")

    def test_without_root_and_sudo_it_says_what_to_run(self):
        machine = self.machine([name for name in ALL_PACKAGES if name != "cmake"], user_id=1000)
        done = machine.run("Scripts/setup", "run")
        self.assertEqual(1, done.returncode)
        self.assertEqual("setup: some packages are missing; as root, run: apt-get update && apt-get "
                         "install --yes --no-install-recommends cmake\n", done.stderr)

    def test_sudo_is_used_when_it_needs_no_password(self):
        machine = self.machine([name for name in ALL_PACKAGES if name != "cmake"], user_id=1000,
                               sudo=True)
        done = machine.run("Scripts/setup", "run")
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertRegex(machine.asked[-1], r"^sudo env DEBIAN_FRONTEND=noninteractive apt-get .*"
                         r"install .*cmake$")

    def test_an_install_that_fails_ends_the_script(self):
        machine = self.machine([], user_id=0)
        machine.tool("apt-get", 'echo "E: no such package"; exit 100\n')
        done = machine.run("Scripts/setup", "run")
        self.assertEqual(1, done.returncode)
        self.assertIn("E: no such package", done.stderr)

    def test_a_machine_without_apt(self):
        machine = self.machine([], user_id=0)
        machine.remove("apt-get")
        done = machine.run("Scripts/setup", "run")
        self.assertEqual(1, done.returncode)
        self.assertIn("Scripts/packages.txt", done.stderr)

    def test_groups_hold_what_they_build_on(self):
        machine = self.machine([], user_id=0)
        listed = {group: set(machine.run("Scripts/setup", "--list", group).stdout.split())
                  for group in ["run", "test", "check"]}
        self.assertLess(listed["run"], listed["test"])
        self.assertLess(listed["test"], listed["check"])
        self.assertEqual(set(ALL_PACKAGES), listed["check"])

    def test_an_unknown_group(self):
        machine = self.machine([], user_id=0)
        done = machine.run("Scripts/setup", "everything")
        self.assertEqual(1, done.returncode)
        self.assertIn('unknown group "everything"', done.stderr)


class Options(unittest.TestCase):
    def test_a_mistyped_option_of_the_tests_is_no_reason_to_run_them_all(self):
        machine = Machine(ALL_PACKAGES, user_id=0)
        self.addCleanup(machine.close)
        machine.tool("ctest", 'echo "  --output-on-failure  = Output anything"\n')
        finished = machine.run("Scripts/test", "--quik")
        self.assertEqual(finished.returncode, 1)
        self.assertIn('unknown option "--quik"', finished.stderr + finished.stdout)


class Help(unittest.TestCase):
    def test_every_target_of_the_front_door_is_listed(self):
        listed = subprocess.run(["make", "-C", str(ROOT), "--no-print-directory", "help"],
                                capture_output=True, text=True, check=True).stdout
        for target in ["setup", "build", "test", "test-one", "golden", "golden-update", "gallery",
                       "fuzz-smoke", "bench", "format", "lint", "run", "doctor"]:
            self.assertRegex(listed, rf"(?m)^  make {target} +\S")

    def test_scripts_explain_themselves(self):
        for script in ["setup", "build", "test", "test-one", "golden", "gallery", "fuzz-smoke",
                       "bench", "format", "lint", "doctor"]:
            with self.subTest(script=script):
                done = subprocess.run([str(ROOT / "Scripts" / script), "--help"],
                                      capture_output=True, text=True, check=False)
                self.assertEqual(0, done.returncode)
                self.assertRegex(done.stdout, rf"^(Scripts/{script}|\./{script})\b")


if __name__ == "__main__":
    unittest.main()
