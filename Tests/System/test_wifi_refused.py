"""Wi-Fi on a machine that has none, and on one whose kernel refuses to tell of it: both are said, and
never the one for the other."""

import os
import resource
import subprocess
import tempfile
from pathlib import Path

from namespaces import NamespaceTest, ip, mount, unmount
from program import AS_NOBODY, Watch, install, json_of, others, run

REFUSE_NETLINK = os.environ["LANTERNFOLD_REFUSE_NETLINK"]
# Adapters can be asked for then, and Wi-Fi cannot.
REFUSE_GENERIC = [REFUSE_NETLINK, "--generic-only"]
NO_WIFI = {"internet": None, "wlan": None, "cellular": None, "others": [],
           "cellularEnabled": False, "multipleSim": False}


class WifiTest(NamespaceTest):
    """In a namespace of its own, into which no radio has been moved."""

    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.data = ["--data-dir", str(self.folder / "data")]
        ip("link add en0 address 0a:00:00:00:00:01 type veth peer name peer0",
           "addr add 192.0.2.2/24 dev en0")

    def wifi_commands(self):
        """Every way to ask for Wi-Fi by its name."""
        wlan = ("state", "--categories", "wlan", *self.data)
        return [("wifi",), ("wifi", "--json"), wlan, (*wlan, "--json"), (*wlan, "--watch"),
                (*wlan, "--watch", "--json"), ("state", "--categories", "other,wlan", *self.data)]

    def assert_fails_in_one_line(self, done, *words):
        errors = done.stderr.decode()
        self.assertEqual((1, 1), (done.returncode, len(errors.splitlines())),
                         f"{done.args}: {errors}")
        for word in ("lanternfold-widgets: ", *words):
            self.assertIn(word, errors)

    def assert_says(self, text, *arguments, **options):
        done = run(*arguments, **options)
        self.assertEqual((0, text, b""), (done.returncode, done.stdout.decode(), done.stderr))


class NoneTest(WifiTest):
    def assert_none(self, **options):
        self.assert_says("No Wi-Fi.\n", "wifi", **options)
        self.assert_says("null\n", "wifi", "--json", **options)
        self.assert_says("No source\n", "state", "--categories", "wlan", *self.data, **options)
        self.assertEqual({"complete": True, "state": NO_WIFI, "wifi": None},
                         json_of("state", "--categories", "wlan", "--json", *self.data, **options))

    def test_a_machine_without_wifi(self):
        self.assert_none()

    def test_whatever_was_decided(self):
        for action in ("allow", "deny", "reset"):
            run("location", action, *self.data, check=True)
            self.assert_none()

    def test_adapters_are_shown_all_the_same(self):
        state = json_of("state", "--json", *self.data)["state"]
        self.assertIsNone(state["wlan"])
        self.assertEqual(["en0"], [each["name"] for each in state["others"]])

    def test_a_watch_without_wifi(self):
        with Watch("--categories", "wlan", *self.data) as watch:
            self.assertIsNotNone(watch.moment_of(lambda report: report["complete"], 30))
            self.assertIsNone(watch.reports[-1][1]["state"]["wlan"])
            self.assertEqual((0, b""), watch.finish())

    def test_the_card_without_wifi(self):
        picture = self.folder / "picture.png"
        done = run("render", "WlanNetworkStateWidget", "-o", str(picture), *self.data)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertTrue(picture.read_bytes().endswith(b"IEND\xaeB`\x82"))

    def test_without_sysfs(self):
        mount("none", "/sys", "tmpfs")
        self.addCleanup(unmount, "/sys")
        self.assert_none()

    def test_as_a_user_without_any_privilege(self):
        program = install(self.folder)
        self.folder.chmod(0o777)
        self.assert_none(program=program, **AS_NOBODY)

    def test_few_file_descriptors(self):
        """Down to the number with which the program cannot even be loaded."""
        for limit in range(4, 40):
            done = run("wifi", "--json", preexec_fn=lambda limit=limit: resource.setrlimit(
                resource.RLIMIT_NOFILE, (limit, limit)))
            if done.returncode == 0:
                self.assertEqual(b"null\n", done.stdout)
            else:
                self.assertIn(done.returncode, (1, 127), f"{limit}: {done.stderr}")
                self.assertEqual(1, len(done.stderr.splitlines()), f"{limit}: {done.stderr}")
        self.assertEqual(0, done.returncode)

    def test_a_full_disk(self):
        for arguments in (("wifi",), ("wifi", "--json")):
            with open("/dev/full", "wb") as full:
                self.assert_fails_in_one_line(
                    run(*arguments, stdout=full, stderr=subprocess.PIPE), "standard output")


class RefusedTest(WifiTest):
    def test_netlink_refused(self):
        for arguments in self.wifi_commands():
            self.assert_fails_in_one_line(run(*arguments, through=[REFUSE_NETLINK]),
                                          "the kernel refused", "netlink")

    def test_only_what_tells_of_wifi_refused(self):
        for arguments in self.wifi_commands():
            done = run(*arguments, through=REFUSE_GENERIC)
            self.assert_fails_in_one_line(done, "cannot read this machine's Wi-Fi",
                                          "the kernel refused", "netlink")
            self.assertNotIn(b"No ", done.stdout)

    def test_who_did_not_ask_for_wifi_sees_the_adapters_and_a_line(self):
        done = run("state", "--json", *self.data, through=REFUSE_GENERIC)
        self.assertEqual(0, done.returncode)
        self.assertRegex(done.stderr, rb"\Alanternfold-widgets: Wi-Fi is left out: [^\n]+\n\Z")
        with Watch(*self.data) as watch:
            self.assertIn("en0", others(watch.reports[watch.settle() - 1][1]))
        self.assertEqual(["en0"], [each["name"] for each in json_of(
            "interfaces", "--prefix", "en", "--json", through=REFUSE_GENERIC)])
        self.assertEqual(["en0"], [each["name"] for each in json_of(
            "state", "--categories", "other", "--json", *self.data,
            through=REFUSE_GENERIC)["state"]["others"]])

    def test_no_card_says_that_there_is_no_wifi(self):
        picture = self.folder / "picture.png"
        done = run("render", "WlanNetworkStateWidget", "-o", str(picture), *self.data,
                   through=REFUSE_GENERIC)
        self.assert_fails_in_one_line(done, "cannot read this machine's Wi-Fi")
        self.assertFalse(picture.exists())


class ArgumentsTest(WifiTest):
    def test_arguments_that_it_does_not_take(self):
        for arguments in (("wifi", "wlan0"), ("wifi", "--categories", "wlan"), ("wifi", "--watch"),
                          ("state", "--categories", "wifi"), ("state", "--categories", "wlan,")):
            done = run(*arguments)
            self.assertEqual((2, b""), (done.returncode, done.stdout))
            self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]+\n\Z")
