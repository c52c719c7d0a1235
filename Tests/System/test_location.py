"""The consent to show Wi-Fi names, as the real program keeps it: between processes, on a disk that
is full, in folders that are no good."""

import json
import os
import stat
import subprocess
import tempfile
import unittest
from pathlib import Path

from program import AS_NOBODY, PROGRAM, install, json_of, run

CONSENTS = {"allow": "authorizedAlways", "allow-in-use": "authorizedWhenInUse", "deny": "denied",
            "reset": "notDetermined"}
RAW_VALUES = {"notDetermined": 0, "denied": 2, "authorizedAlways": 3, "authorizedWhenInUse": 4}


class LocationTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="lanternfold-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.data = self.folder / "data"
        self.file = self.data / "location-consent"

    def location(self, action, *arguments, **options):
        return run("location", action, *arguments, "--data-dir", str(self.data), **options)

    def status(self):
        done = self.location("status")
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        return done.stdout.decode().strip()

    def failure(self, action, **options):
        """The one line of an action that must fail."""
        done = self.location(action, **options)
        self.assertEqual((1, b""), (done.returncode, done.stdout), done.stderr)
        self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]+\n\Z")
        return done.stderr.decode()

    def test_every_decision_is_what_the_next_program_shows(self):
        self.assertEqual("notDetermined", self.status())
        self.assertFalse(self.data.exists())
        for action, name in CONSENTS.items():
            done = self.location(action)
            self.assertEqual((0, b""), (done.returncode, done.stderr))
            self.assertEqual(1, done.stdout.count(b"\n"))
            self.assertEqual(name, self.status())
            self.assertEqual({"status": name, "rawValue": RAW_VALUES[name]},
                             json_of("location", "status", "--json", "--data-dir", str(self.data)))

    def test_the_file_is_the_users_alone(self):
        self.location("allow", umask=0)
        self.assertEqual(0o700, stat.S_IMODE(self.data.stat().st_mode))
        self.assertEqual(0o600, stat.S_IMODE(self.file.stat().st_mode))
        self.assertEqual(["location-consent"], os.listdir(self.data))

    def test_a_file_that_may_not_grow_keeps_the_former_decision(self):
        self.location("deny")
        line = self.failure("allow", through=["prlimit", "--fsize=5"])
        self.assertIn(f"{self.file} could not be written: File too large; ", line)
        self.assertEqual("denied", self.status())
        self.assertEqual(["location-consent"], os.listdir(self.data))

    def test_json_stays_json_when_the_file_is_damaged(self):
        self.data.mkdir(mode=0o700)
        self.file.write_bytes(b"\xff\0{}" * 100)
        done = self.location("status", "--json")
        self.assertEqual({"status": "notDetermined", "rawValue": 0}, json.loads(done.stdout))
        self.assertRegex(done.stderr, rb"\A[^\n]+location-consent.damaged-1[^\n]+\n\Z")
        self.location("deny")
        self.assertEqual("denied", self.status())
        self.assertEqual(b"\xff\0{}" * 100, (self.data / "location-consent.damaged-1").read_bytes())

    def test_a_folder_of_somebody_else_gives_no_consent(self):
        self.folder.chmod(0o755)
        program = install(self.folder)
        self.location("allow")
        self.data.chmod(0o755)
        self.file.chmod(0o644)
        self.assertIn("belongs to another user", self.failure("deny", program=program, **AS_NOBODY))
        done = self.location("status", program=program, **AS_NOBODY)
        self.assertEqual(0, done.returncode)
        self.assertTrue(done.stdout.endswith(b"notDetermined\n"), done.stdout)
        self.assertEqual("authorizedAlways", self.status())

    def test_many_programs_that_decide_at_once_leave_one_decision(self):
        programs = [subprocess.Popen([PROGRAM, "location", action, "--data-dir", str(self.data)],
                                     stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
                    for action in ("allow", "deny", "allow-in-use") * 7]
        self.assertEqual({0}, {program.wait(timeout=60) for program in programs})
        self.assertIn(self.status(), {"authorizedAlways", "denied", "authorizedWhenInUse"})
        self.assertEqual(["location-consent"], os.listdir(self.data))
