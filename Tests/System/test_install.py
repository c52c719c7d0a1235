"""`cmake --install`: every file where a desktop looks for it, and as the stock validators want it;
programs that find there what they read, and each other."""

import configparser
import shlex
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import pictures
from installation import APPLICATION, PROGRAMS, Installation, install

# Some look a scheme up in lower case, others as it is written.
SCHEMES = ("x-scheme-handler/net.quernaple.lanternfoldx", "x-scheme-handler/net.quernaple.LanternfoldX")
LANGUAGES = ("ar", "de", "es", "fr", "it", "ja", "ru", "zh_CN")
PROGRAM_MODE, FILE_MODE, FOLDER_MODE = 0o755, 0o644, 0o755
EXPECTED = {
    "share/bash-completion/completions": {"lanternfold-widgets", "lanternfold-widget-host"},
    "share/fish/vendor_completions.d": {"lanternfold-widgets.fish", "lanternfold-widget-host.fish"},
    "share/zsh/site-functions": {"_lanternfold-widgets"},
    "share/applications": {f"{APPLICATION}.desktop"},
    "share/dbus-1/services": {f"{APPLICATION}.service"},
    "share/icons/hicolor/48x48/apps": {f"{APPLICATION}.png"},
    "share/icons/hicolor/scalable/apps": {f"{APPLICATION}.svg"},
    "share/icons/hicolor/symbolic/apps": {f"{APPLICATION}-symbolic.svg"},
    "share/man/man1": {f"{program}.1" for program in PROGRAMS},
    "share/metainfo": {f"{APPLICATION}.metainfo.xml"},
    "share/systemd/user": {"lanternfold-widgets.service", "lanternfold-widgets-record.service"},
} | {f"share/locale/{language}/LC_MESSAGES": {"lanternfold.mo"} for language in LANGUAGES}


def names(folder):
    return {path.name for path in folder.iterdir()}


def ini(path):
    parser = configparser.ConfigParser(interpolation=None, strict=False)
    parser.optionxform = str
    parser.read_string(path.read_text())
    return parser


class PackageTest(unittest.TestCase):
    """As a package is made: below a folder that stands for the root."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="lanternfold-")
        cls.addClassCleanup(folder.cleanup)
        cls.root = Path(folder.name)
        install("/usr", DESTDIR=folder.name)

    def test_everything_has_its_place(self):
        usr = self.root / "usr"
        self.assertEqual(names(usr / "bin"), set(PROGRAMS))
        for folder, files in EXPECTED.items():
            self.assertEqual(names(usr / folder), files, folder)
        self.assertIn("LanternfoldLogo.svg", names(usr / "share/lanternfold-widgets/Assets"))
        self.assertEqual(names(self.root / "etc/xdg/autostart"),
                         {"lanternfold-widgets-autostart.desktop"})

    def test_everybody_reads_and_nobody_writes(self):
        programs = self.root / "usr" / "bin"
        for path in self.root.rglob("*"):
            wanted = (FOLDER_MODE if path.is_dir() else
                      PROGRAM_MODE if path.parent == programs else FILE_MODE)
            self.assertEqual(path.stat().st_mode & 0o7777, wanted, path)

    def test_no_file_names_the_folder_it_was_packed_in(self):
        for path in self.root.rglob("*"):
            if path.is_file() and path.parent.name != "bin":
                self.assertNotIn(str(self.root).encode(), path.read_bytes(), path)
        unit = ini(self.root / "usr/share/systemd/user/lanternfold-widgets.service")
        self.assertEqual(unit["Service"]["ExecStart"], '"/usr/bin/lanternfold-widget-host"')

    def test_commands_without_a_space_need_no_quotes(self):
        """Which some that read desktop files do not know."""
        for folder in ("usr/share/applications", "etc/xdg/autostart"):
            command = ini(next((self.root / folder).iterdir()))["Desktop Entry"]["Exec"]
            self.assertEqual(command.split(" ")[0], "/usr/bin/lanternfold-widget-host")

    def test_prefix_that_no_unit_can_name_is_refused_before_anything_is_installed(self):
        with tempfile.TemporaryDirectory(prefix="lanternfold-") as folder:
            for name in ("50%", 'in "quotes"', "back`tick", "back\\slash", "$HOME", "a;b"):
                with self.assertRaises(subprocess.CalledProcessError) as refusal:
                    install(f"{folder}/{name}")
                self.assertIn("choose another --prefix",
                              " ".join(refusal.exception.stderr.decode().split()), name)
                self.assertEqual(list(Path(folder).iterdir()), [], name)

    def test_a_session_wants_the_units_once_they_are_enabled(self):
        units = ("lanternfold-widgets.service", "lanternfold-widgets-record.service")
        subprocess.run(["systemctl", f"--root={self.root}", "--global", "enable", *units], check=True,
                       capture_output=True, timeout=60)
        wants = self.root / "etc/systemd/user"
        self.addCleanup(shutil.rmtree, wants)
        self.assertTrue((wants / "graphical-session.target.wants" / units[0]).is_symlink())
        self.assertTrue((wants / "default.target.wants" / units[1]).is_symlink())


class UserTest(unittest.TestCase):
    """As a user installs it for himself, and what the tools of a desktop say of it."""

    @classmethod
    def setUpClass(cls):
        cls.installed = cls.enterClassContext(Installation())
        cls.share = cls.installed.share

    def assert_starts_the_host(self, command):
        words = shlex.split(command)
        self.assertEqual(words[0], self.installed.program("lanternfold-widget-host"))
        return words[1:]

    def test_desktop_files(self):
        application = self.share / "applications" / f"{APPLICATION}.desktop"
        autostart = self.installed.prefix / "etc/xdg/autostart/lanternfold-widgets-autostart.desktop"
        self.assertEqual(self.installed.output("desktop-file-validate", application, autostart), "")
        entry = ini(application)["Desktop Entry"]
        self.assertEqual(self.assert_starts_the_host(entry["Exec"]), ["%u"])
        for language in LANGUAGES:
            self.assertTrue(entry[f"GenericName[{language}]"])
            self.assertTrue(entry[f"Comment[{language}]"])
        entry = ini(autostart)["Desktop Entry"]
        self.assertEqual(self.assert_starts_the_host(entry["Exec"]), [])
        # A session with systemd would start them twice.
        self.assertEqual(entry["X-systemd-skip"], "true")

    def test_who_opens_the_links(self):
        for scheme in SCHEMES:
            handler = self.installed.output("xdg-mime", "query", "default", scheme)
            self.assertEqual(handler, f"{APPLICATION}.desktop\n", scheme)

    def test_metadata(self):
        metadata = self.share / "metainfo" / f"{APPLICATION}.metainfo.xml"
        self.installed.output("appstreamcli", "validate", "--no-net", "--no-color", metadata)

    def test_units(self):
        units = sorted((self.share / "systemd/user").iterdir())
        self.assertEqual(
            self.installed.output("systemd-analyze", "verify", "--user", "--man=no", *units), "")
        host = ini(self.share / "systemd/user/lanternfold-widgets.service")
        self.assertEqual(self.assert_starts_the_host(host["Service"]["ExecStart"]), [])
        self.assertEqual(host["Install"]["WantedBy"], "graphical-session.target")
        self.assertEqual(host["Unit"]["PartOf"], "graphical-session.target")

    def test_the_units_command_lines_run_as_they_are_written(self):
        """There is no user's manager here: what it would start is started."""
        commands = {unit.stem: shlex.split(ini(unit)["Service"]["ExecStart"])
                    for unit in (self.share / "systemd/user").iterdir()}
        done = self.installed.run(*commands["lanternfold-widgets"])
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"\Alanternfold-widget-host: there is no display [^\n]*\n\Z")
        recorder = subprocess.Popen(commands["lanternfold-widgets-record"], stdout=subprocess.PIPE,
                                    env=self.installed.environment, text=True)
        self.addCleanup(recorder.stdout.close)
        self.addCleanup(recorder.kill)
        self.assertTrue(recorder.stdout.readline().startswith("{"))
        recorder.terminate()
        self.assertEqual(recorder.wait(timeout=30), 0)

    def test_the_bus_starts_the_unit(self):
        service = ini(self.share / f"dbus-1/services/{APPLICATION}.service")["D-BUS Service"]
        self.assertEqual(service["Name"], APPLICATION)
        self.assertEqual(self.assert_starts_the_host(service["Exec"]), [])
        self.assertTrue((self.share / "systemd/user" / service["SystemdService"]).is_file())

    def test_a_host_that_is_started_beside_another_one_has_not_failed(self):
        """It ends with status 0 without ever having had the name on the bus."""
        host = ini(self.share / "systemd/user/lanternfold-widgets.service")["Service"]
        self.assertEqual((host["Type"], host.get("BusName")), ("exec", None))

    def test_icons(self):
        icons = self.share / "icons/hicolor"
        picture = (icons / f"48x48/apps/{APPLICATION}.png").read_bytes()
        self.assertEqual(pictures.png_size(picture), (48, 48))
        for icon, size in (("scalable", 256), ("symbolic", 16)):
            file = next((icons / icon / "apps").iterdir())
            drawn = self.installed.run("rsvg-convert", "--width", size, "--height", size, file,
                                       text=False)
            self.assertEqual((drawn.returncode, drawn.stderr), (0, b""))
            self.assertEqual(pictures.png_size(drawn.stdout), (size, size))

    def test_every_program_runs(self):
        for name in PROGRAMS:
            said = self.installed.output(self.installed.program(name), "--version")
            self.assertRegex(said, rf"\A{name} \d+\.\d+\.\d+\n\Z")


class WhatIsReadTest(unittest.TestCase):
    """The installed files are those that the installed programs read."""

    def setUp(self):
        self.installed = self.enterContext(Installation())
        self.share = self.installed.share

    def draw(self, language):
        picture = self.installed.folder / "card.svg"
        self.installed.output(
            self.installed.program(), "render", "NetworkAdapterWidget", "--entry", "placeholder",
            "-o", picture, env=self.installed.environment | {"LANGUAGE": language})
        return picture.read_bytes()

    def test_the_installed_texts(self):
        english, german = self.draw("en"), self.draw("de")
        self.assertNotEqual(english, german)
        (self.share / "locale/de/LC_MESSAGES/lanternfold.mo").unlink()
        self.assertEqual(self.draw("de"), english)

    def test_the_installed_colours(self):
        before = self.draw("en")
        colours = self.share / "lanternfold-widgets/Assets/Colours.json"
        colours.write_text(colours.read_text().replace("#F", "#A"))
        self.assertNotEqual(self.draw("en"), before)

    def test_the_installed_host(self):
        host = Path(self.installed.program("lanternfold-widget-host"))
        host.unlink()
        host.write_text('#!/bin/sh\necho "the host: $1"\n')
        host.chmod(PROGRAM_MODE)
        said = self.installed.output(self.installed.program(), "show", "--skip-geoip")
        self.assertEqual(said, "the host: --skip-geoip\n")


if __name__ == "__main__":
    unittest.main()
