"""A system that refuses, lacks or garbles things: an answer or one line of error, never a crash."""

import json
import os
import resource
import subprocess
import tempfile
from pathlib import Path

import expected
from namespaces import NamespaceTest, ip, mount, unmount
from program import AS_NOBODY, PROGRAM, install, json_of, loading, run

REFUSE_NETLINK = os.environ["LANTERNFOLD_REFUSE_NETLINK"]
OLD_KERNEL = os.environ["LANTERNFOLD_OLD_KERNEL"]


class BadInputTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        ip("link add en0 address 0a:00:00:00:00:01 type veth peer name peer0",
           "addr add 192.0.2.2/24 dev en0")

    def commands(self):
        """Every way to ask for something, by the arguments."""
        picture = str(self.folder / "picture.png")
        return [("interfaces",), ("interfaces", "--json"), ("interfaces", "--prefix", "en"),
                ("state",), ("state", "--json"), ("state", "--watch", "--json"),
                ("state", "--watch"), ("render", "NetworkAdapterWidget", "-o", picture), ("wifi",),
                ("wifi", "--json")]

    def assert_fails_in_one_line(self, done, *words):
        errors = done.stderr.decode()
        self.assertEqual((1, 1), (done.returncode, len(errors.splitlines())),
                         f"{done.args}: {errors}")
        self.assertTrue(errors.startswith("lanternfold-widgets: "), errors)
        for word in words:
            self.assertIn(word, errors)

    def assert_answers(self, **options):
        """The list is the ordinary one, and the picture is whole."""
        data = ["--data-dir", str(self.folder / "data")]
        self.assertEqual(expected.interfaces({"en0"}), json_of("interfaces", "--json", **options))
        state = json_of("state", "--json", *data, **options)
        self.assertEqual(["en0"], [each["name"] for each in state["state"]["others"]])
        picture = self.folder / "answer.png"
        done = run("render", "NetworkAdapterWidget", "-o", str(picture), *data, **options)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assert_whole_png(picture)

    def assert_whole_png(self, path):
        contents = path.read_bytes()
        self.assertTrue(contents.startswith(b"\x89PNG\r\n\x1a\n"))
        self.assertTrue(contents.endswith(b"IEND\xaeB`\x82"))


class RefusedTest(BadInputTest):
    def test_netlink_refused(self):
        for arguments in self.commands():
            done = run(*arguments, through=[REFUSE_NETLINK])
            self.assert_fails_in_one_line(done, "netlink")
            self.assertFalse((self.folder / "picture.png").exists())

    def test_traffic_is_recorded_without_netlink(self):
        data = ["--data-dir", str(self.folder / "data")]
        shown = json_of("record", "--once", "--json", *data, through=[REFUSE_NETLINK])
        self.assertEqual({"en0", "peer0", "lo"}, set(shown))

    def test_recording_from_a_kernel_that_tells_nothing(self):
        mount("none", "/proc", "tmpfs")
        self.addCleanup(unmount, "/proc")
        for arguments in (("--once",), ("--once", "--json")):
            # Of its own: a sample that fails leaves the lock of its folder to lapse.
            data = ["--data-dir", str(self.folder / f"data{len(arguments)}")]
            done = run("record", *arguments, *data, through=[REFUSE_NETLINK])
            self.assert_fails_in_one_line(done, "netlink")

    def test_a_placeholder_needs_no_kernel(self):
        picture = self.folder / "picture.png"
        done = run("render", "NetworkAdapterWidget", "--entry", "placeholder", "-o", str(picture),
                   through=[REFUSE_NETLINK])
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assert_whole_png(picture)

    def test_a_kernel_without_the_statistics_dump(self):
        refusals = self.folder / "refusals"
        environment = os.environ | loading(OLD_KERNEL) | {"LANTERNFOLD_REFUSALS": str(refusals)}
        self.assertEqual(expected.interfaces({"en0"}),
                         json_of("interfaces", "--json", env=environment))
        self.assertGreater(refusals.stat().st_size, 0, "the dump was not even asked for")

    def test_few_file_descriptors(self):
        """Down to the number with which the program cannot even be loaded."""
        for limit in range(4, 40):
            done = run("interfaces", "--json", preexec_fn=lambda limit=limit: resource.setrlimit(
                resource.RLIMIT_NOFILE, (limit, limit)))
            if done.returncode == 0:
                self.assertIn("en0", [each["name"] for each in json.loads(done.stdout)])
            else:
                self.assertIn(done.returncode, (1, 127), f"{limit}: {done.stderr}")
                self.assertEqual(1, len(done.stderr.splitlines()), f"{limit}: {done.stderr}")
        self.assertEqual(0, done.returncode)

    def test_without_sysfs(self):
        mount("none", "/sys", "tmpfs")
        self.addCleanup(unmount, "/sys")
        self.assert_answers()

    def test_without_procfs(self):
        records = expected.interfaces({"en0"})
        mount("none", "/proc", "tmpfs")
        self.addCleanup(unmount, "/proc")
        self.assertEqual(records, json_of("interfaces", "--json"))
        self.assert_answers()

    def test_as_a_user_without_any_privilege(self):
        program = install(self.folder)
        self.folder.chmod(0o777)
        self.assert_answers(program=program, **AS_NOBODY)


class SurroundingsTest(BadInputTest):
    def test_no_environment_at_all(self):
        self.assert_answers(env={})

    def test_unusual_locales_and_time_zones(self):
        """Numbers keep their point and their digits, and the JSON stays the same byte for byte."""
        usual = run("interfaces", "--json", env={}).stdout
        for setting in ("LC_ALL=ar_EG.UTF-8", "LC_ALL=tr_TR", "LC_ALL=de_DE.UTF-8", "LC_ALL=C",
                        "LANG=" + "x" * 5000, "LANGUAGE=../../etc", "TZ=:/etc/passwd",
                        "TZ=garbage//", "TZ=" + "A" * 5000, "TERM=" + "%s" * 100, "HOME=/nonexistent",
                        "XDG_DATA_HOME=relative"):
            name, _, value = setting.partition("=")
            done = run("interfaces", "--json", env={name: value})
            self.assertEqual((0, usual), (done.returncode, done.stdout), setting[:40])
            picture = self.folder / "picture.png"
            done = run("render", "NetworkAdapterWidget", "--show-timestamp", "-o", str(picture),
                       "--data-dir", str(self.folder / "data"), env={name: value})
            self.assertEqual(0, done.returncode, setting[:40])
            self.assert_whole_png(picture)

    def test_names_with_quotes_and_markup(self):
        ip('link add en"q type ifb', "link add en<b>&amp; type ifb", "link add en'\\n type ifb",
           "link add en$(id) type ifb", "link add en\u00e9\u4e2d type ifb")
        self.assertEqual(expected.interfaces({"en0"}), json_of("interfaces", "--json"))
        for adapter in ('en"q', "en<b>&amp;", "en'\\n", "en\u00e9\u4e2d"):
            picture = self.folder / "picture.svg"
            done = run("render", "NetworkAdapterWidget", "--adapter", adapter, "-o", str(picture))
            self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertIn('en"q', run("interfaces").stdout.decode())

    def test_names_that_are_no_text_reach_no_terminal(self):
        """The kernel takes escape sequences and bytes that are no UTF-8; such links are left out."""
        for name in (b"en\x1b[31mX", b"en\xff\xfe", b"en\x07", b"en\xc2\x9b1m"):
            subprocess.run([b"ip", b"link", b"add", name, b"type", b"ifb"], check=True, timeout=30)
        for arguments in (("interfaces",), ("interfaces", "--json"), ("state",), ("state", "--json")):
            done = run(*arguments)
            self.assertEqual((0, b""), (done.returncode, done.stderr))
            text = done.stdout.decode()  # fails for what is no UTF-8
            self.assertFalse([each for each in text.replace("\n", "") if not each.isprintable()])
            self.assertIn("en0", text)


class OutputTest(BadInputTest):
    def test_a_full_disk(self):
        for arguments in self.commands()[:5]:
            with open("/dev/full", "wb") as full:
                self.assert_fails_in_one_line(
                    run(*arguments, stdout=full, stderr=subprocess.PIPE), "standard output")

    def test_a_watch_whose_output_cannot_be_written_ends(self):
        with open("/dev/full", "wb") as full:
            done = run("state", "--watch", "--json", stdout=full, stderr=subprocess.PIPE)
        self.assert_fails_in_one_line(done, "standard output")

    def closed(self, *descriptors):
        """Closes them in the child, in which they are then free for whatever it opens first."""
        return lambda: [os.close(descriptor) for descriptor in descriptors]

    def test_standard_output_closed(self):
        for arguments in self.commands():
            done = run(*arguments, preexec_fn=self.closed(1))
            self.assert_fails_in_one_line(done, "standard output")

    def test_standard_error_closed(self):
        self.assertEqual(expected.interfaces({"en0"}),
                         json.loads(run("interfaces", "--json", preexec_fn=self.closed(2)).stdout))
        self.assertEqual(2, run("interfaces", "--bogus", preexec_fn=self.closed(2)).returncode)

    def test_nothing_is_written_into_what_took_the_place_of_a_closed_descriptor(self):
        picture = self.folder / "picture.png"
        for descriptors in ((1,), (2,), (1, 2), (0, 1, 2)):
            done = run("render", "NetworkAdapterWidget", "-o", str(picture),
                       preexec_fn=self.closed(*descriptors))
            self.assertEqual(1 if 1 in descriptors else 0, done.returncode)
            self.assert_whole_png(picture)
            picture.unlink()

    def test_a_closed_descriptor_is_not_taken_by_a_socket(self):
        """A line written to it would go to the kernel as a message."""
        process = subprocess.Popen([PROGRAM, "state", "--watch"], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, preexec_fn=self.closed(0, 2))
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait, 10)
        self.addCleanup(process.kill)
        process.stdout.readline()
        for descriptor in (0, 2):
            self.assertEqual("/dev/null", os.readlink(f"/proc/{process.pid}/fd/{descriptor}"))

    def test_places_where_no_picture_can_be_written(self):
        (self.folder / "folder.png").mkdir()
        (self.folder / "file").write_text("")
        for place in ("folder.png", "absent/picture.png", "file/picture.png", "a" * 300 + ".png"):
            done = run("render", "NetworkAdapterWidget", "-o", str(self.folder / place))
            self.assert_fails_in_one_line(done, "cannot write")
        self.assertEqual({"folder.png", "file"}, {each.name for each in self.folder.iterdir()})

    def test_a_folder_that_may_only_be_read(self):
        program = install(self.folder)
        self.folder.chmod(0o555)
        done = run("render", "NetworkAdapterWidget", "-o", str(self.folder / "picture.png"),
                   program=program, **AS_NOBODY)
        self.assert_fails_in_one_line(done, "cannot write", "permissions")
        self.assertEqual({"bin", "share"}, {each.name for each in self.folder.iterdir()})

    def test_a_disk_without_room_keeps_the_old_picture(self):
        place = self.folder / "small"
        place.mkdir()
        mount("none", str(place), "tmpfs", data="size=16k")
        self.addCleanup(unmount, str(place))
        picture = place / "picture.png"
        picture.write_text("the old one")
        done = run("render", "NetworkAdapterWidget", "--scale", "8", "-o", str(picture))
        self.assert_fails_in_one_line(done, "cannot write")
        self.assertEqual([("picture.png", "the old one")],
                         [(each.name, each.read_text()) for each in place.iterdir()])
