"""`lanternfold-widgets gallery`: one sheet with every widget in every size, light and dark."""

import os
import resource
import signal
import subprocess
import threading

from extension_test import ADDRESS, FAMILIES, MAC, ExtensionTest
from internet_test import environment
from namespaces import mount, unmount
from pictures import pdf_places, pdf_words, png_size, svg_size
from program import AS_NOBODY, PROGRAM, install, run
from web_servers import LONGEST_PLAY_SECONDS, WebServer, address_of, answer, provider_of

REFUSE_NETLINK = os.environ["LANTERNFOLD_REFUSE_NETLINK"]
WIDTH_POINTS, HEIGHT_POINTS = 1760, 1006
ECHO, GEOLOCATION = "/lanternfold/ip.php", "/json/"
NOT_ANSWERED = "Not every service has answered: "


class GalleryTest(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()
        self.sheets = self.folder / "sheets"
        self.sheets.mkdir()

    def gallery(self, *arguments, services=None, **options):
        return run("gallery", *arguments, *self.options(**(services or {})),
                   **{"env": environment(LC_ALL="C.UTF-8"), "cwd": self.sheets} | options)

    def drawn(self, name, *arguments, **options):
        """The path of a sheet; the command says where it is and nothing else."""
        path = self.sheets / name
        done = self.gallery(*arguments, "-o", name, **options)
        self.assertEqual((0, f"Wrote {path}\n", ""),
                         (done.returncode, done.stdout.decode(), done.stderr.decode()))
        return path

    def words(self, *arguments, **options):
        path = self.drawn("words.pdf", *arguments, **options)
        words = pdf_words(path)
        path.unlink()
        return words

    def assert_fails(self, done, status, *words):
        errors = done.stderr.decode()
        self.assertEqual((status, b"", 1), (done.returncode, done.stdout, errors.count("\n")),
                         f"{done.args}: {errors}")
        self.assertTrue(errors.startswith("lanternfold-widgets: "), errors)
        for word in words:
            self.assertIn(word, errors)

    def names_of_sheets(self):
        return sorted(each.name for each in self.sheets.iterdir())


class SampleTest(GalleryTest):
    def test_without_options_samples_are_drawn_into_a_png_of_the_current_folder(self):
        done = self.gallery()
        path = self.sheets / "lanternfold-gallery.png"
        self.assertEqual((0, f"Wrote {path}\n", b""),
                         (done.returncode, done.stdout.decode(), done.stderr))
        self.assertEqual(["lanternfold-gallery.png"], self.names_of_sheets())
        self.assertEqual((2 * WIDTH_POINTS, 2 * HEIGHT_POINTS), png_size(path.read_bytes()))

    def test_a_png_at_every_scale(self):
        for scale in (0.5, 1.3, 3):
            size = png_size(self.drawn("sheet.png", "--scale", str(scale)).read_bytes())
            for pixels, points in zip(size, (WIDTH_POINTS, HEIGHT_POINTS)):
                self.assertLess(abs(pixels - points * scale), 1)

    def test_an_svg_is_whole(self):
        size = svg_size(self.drawn("sheet.svg", "--scale", "1").read_bytes())
        self.assertEqual((WIDTH_POINTS, HEIGHT_POINTS), size)
        self.assertEqual((3 * WIDTH_POINTS, 3 * HEIGHT_POINTS),
                         svg_size(self.drawn("sheet.SVG", "--scale", "3").read_bytes()))

    def test_every_widget_in_every_size_has_its_caption_in_both_schemes(self):
        words = self.words()
        for name, kinds in (("Panoramic", 3), ("Internet", 2), ("WiFi", 2), ("Monitor", 1)):
            self.assertEqual(2 * kinds, words.count(name), name)
        for family in ("small", "medium", "large"):
            cards = sum(family in families for families in FAMILIES.values())
            self.assertEqual(2 * cards, words.count(family.capitalize()), family)
        self.assertEqual((1, 1), (words.count("Light"), words.count("Dark")))

    def test_a_language_from_right_to_left_mirrors_the_sheet(self):
        """Seen by the product's name, which is the same in every language."""
        for language, lefts in (("en", (683, 1563)), ("ar", (64, 944))):
            path = self.drawn("sheet.pdf", "--scale", "1", env=environment(
                LC_ALL="", LANG="en_GB.UTF-8", LANGUAGE=language))
            begins = [left for word, left, *_ in pdf_places(path) if word == "Lanternfold"]
            for begin, left in zip(begins, lefts, strict=True):
                self.assertLess(abs(begin - left), 40, language)
            self.assertEqual(language == "en", "Small" in pdf_words(path))

    def test_samples_are_the_same_on_every_machine_byte_for_byte_and_tell_nothing_of_this_one(self):
        for name in ("sheet.png", "sheet.svg", "sheet.pdf"):
            first = self.drawn(name, "--scale", "1").read_bytes()
            again = self.drawn(name, "--scale", "1", through=[REFUSE_NETLINK]).read_bytes()
            self.assertEqual(first, again, name)
        for entry in ("placeholder", "snapshot"):
            text = " ".join(self.words("--entry", entry))
            for own in (ADDRESS, MAC):
                self.assertNotIn(own, text)


class ThisMachineTest(GalleryTest):
    def serve(self):
        """Services that answer at once, as `services` of `gallery`."""
        plays = {ECHO: answer(address_of), GEOLOCATION: answer(provider_of())}
        self.server = self.start(WebServer(plays))
        return {"ipv4_echo": self.server.url(), "geolocation": self.server.url()}

    def test_shows_the_network_that_is_there(self):
        words = self.words("--entry", "timeline", services=self.serve())
        for word, cards in ((ADDRESS, 4), (MAC, 2)):
            self.assertGreaterEqual(words.count(word), cards, word)
        self.assertIn("127.0.0.1", words)

    def test_each_card_asks_once_for_both_schemes_and_the_provider_is_asked_once(self):
        self.drawn("sheet.svg", "--entry", "timeline", services=self.serve())
        self.assertEqual(5, len(self.server.visits(ECHO)))
        self.assertEqual(1, len(self.server.visits(GEOLOCATION)))

    def test_what_all_widgets_meet_is_said_once(self):
        done = self.gallery("--entry", "timeline", "-o", "sheet.png")
        lines = done.stdout.decode().splitlines()
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertEqual((2, NOT_ANSWERED, f"Wrote {self.sheets / 'sheet.png'}"),
                         (len(lines), lines[0][:len(NOT_ANSWERED)], lines[-1]), lines)

    def test_a_kernel_that_refuses_netlink(self):
        done = self.gallery("--entry", "timeline", through=[REFUSE_NETLINK])
        self.assert_fails(done, 1, "netlink")
        self.assertEqual([], self.names_of_sheets())

    def test_few_file_descriptors(self):
        """Said before anything is opened, so that no file is blamed for it."""
        limit = (48, 48)
        done = self.gallery("--entry", "timeline", preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_NOFILE, limit))
        self.assert_fails(done, 1, "Too many open files")
        self.assertEqual([], self.names_of_sheets())

    def test_a_user_without_any_privilege(self):
        program = install(self.folder)
        self.sheets.chmod(0o777)
        self.folder.chmod(0o777)
        done = self.gallery("--entry", "timeline", "-o", str(self.sheets / "sheet.png"),
                            program=program, **AS_NOBODY)
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        self.assertEqual((2 * WIDTH_POINTS, 2 * HEIGHT_POINTS),
                         png_size((self.sheets / "sheet.png").read_bytes()))


class InterruptedTest(GalleryTest):
    """What stood in the file's place is kept, and nothing stands beside it."""

    def end_while_it_asks(self, number, command):
        is_over = threading.Event()
        self.addCleanup(is_over.set)
        server = self.start(WebServer({ECHO: lambda visit, stream:
                                       is_over.wait(LONGEST_PLAY_SECONDS)}))
        process = subprocess.Popen(
            [PROGRAM, *command, "-o", "sheet.png", *self.options(ipv4_echo=server.url())],
            cwd=self.sheets, env=environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE)
        self.addCleanup(process.kill)
        self.wait_until(lambda: server.visits(ECHO))
        process.send_signal(number)
        output, errors = process.communicate(timeout=10)
        is_over.set()
        return process.returncode, output, errors

    def wait_until(self, condition):
        for _ in range(200):
            if condition():
                return
            threading.Event().wait(0.1)
        self.fail("it has not come within 20 seconds")

    def test_an_interruption_keeps_the_old_picture(self):
        for command in (("gallery", "--entry", "timeline"),
                        ("render", "InternetNetworkStateWidget")):
            for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
                (self.sheets / "sheet.png").write_text("the old one")
                self.assertEqual((-number, b"", b""), self.end_while_it_asks(number, command))
                self.assertEqual(["sheet.png"], self.names_of_sheets())
                self.assertEqual("the old one", (self.sheets / "sheet.png").read_text())


class FileTest(GalleryTest):
    def test_an_older_sheet_is_replaced(self):
        (self.sheets / "sheet.png").write_text("x" * 5_000_000)
        self.assertEqual((WIDTH_POINTS, HEIGHT_POINTS),
                         png_size(self.drawn("sheet.png", "--scale", "1").read_bytes()))

    def test_a_symbolic_link_stays_and_its_file_is_replaced(self):
        (self.folder / "elsewhere.png").write_text("the old one")
        for target in ("../elsewhere.png", "../absent.png"):
            (self.sheets / "sheet.png").unlink(missing_ok=True)
            (self.sheets / "sheet.png").symlink_to(target)
            path = self.drawn("sheet.png", "--scale", "1")
            self.assertEqual(target, os.readlink(path))
            self.assertFalse((self.folder / target.removeprefix("../")).is_symlink())
            self.assertEqual((WIDTH_POINTS, HEIGHT_POINTS), png_size(path.read_bytes()))

    def test_a_pipe_gets_the_sheet_and_stays(self):
        pipe = self.sheets / "sheet.svg"
        os.mkfifo(pipe)
        contents = []
        reader = threading.Thread(target=lambda: contents.append(pipe.read_bytes()), daemon=True)
        reader.start()
        self.drawn("sheet.svg", "--scale", "1")
        reader.join(timeout=10)
        self.assertEqual((WIDTH_POINTS, HEIGHT_POINTS), svg_size(contents[0]))
        self.assertTrue(pipe.is_fifo())

    def test_a_full_disk_keeps_the_old_sheet(self):
        mount("none", str(self.sheets), "tmpfs", data="size=64k")
        self.addCleanup(unmount, str(self.sheets))
        sheet = self.sheets / "lanternfold-gallery.png"
        sheet.write_text("the old one")
        self.assert_fails(self.gallery("-o", str(sheet), cwd="/"), 1, "cannot write", "make room")
        self.assertEqual(([sheet.name], "the old one"), (self.names_of_sheets(), sheet.read_text()))

    def test_places_where_no_sheet_can_be_written(self):
        (self.sheets / "folder.png").mkdir()
        (self.sheets / "file").write_text("")
        for place in ("folder.png", "absent/sheet.png", "file/sheet.png", "a" * 300 + ".png"):
            self.assert_fails(self.gallery("-o", place), 1, "cannot write")
        self.assertEqual(["file", "folder.png"], self.names_of_sheets())

    def test_a_folder_that_may_only_be_read(self):
        program = install(self.folder)
        self.sheets.chmod(0o555)
        self.assert_fails(self.gallery(program=program, **AS_NOBODY | {"cwd": self.sheets}), 1,
                          "lanternfold-gallery.png", "cannot write", "permissions")
        self.assertEqual([], self.names_of_sheets())

    def test_an_output_that_is_full(self):
        with open("/dev/full", "w") as output:
            done = self.gallery(stdout=output, stderr=subprocess.PIPE)
        self.assertEqual((1, 1), (done.returncode, done.stderr.count(b"\n")), done.stderr)


class ArgumentTest(GalleryTest):
    def test_arguments_that_are_none(self):
        """Each is one line with status 2, and nothing is written."""
        for arguments, words in (
                (["--scale", "0.4"], ["--scale takes a number from 0.5 to 8"]),
                (["--scale", "8.1"], ["--scale takes"]), (["--scale", "nan"], ["--scale takes"]),
                (["--scale", "0x2"], ["--scale takes"]), (["--scale"], ["--scale needs"]),
                (["--entry", "now"], ["now", "placeholder, snapshot or timeline"]),
                (["-o", "sheet.jpeg"], ["sheet.jpeg", ".png, .svg or .pdf"]),
                (["-o", "sheet"], [".png, .svg or .pdf"]), (["-o", ".png"], [".png, .svg or .pdf"]),
                (["-o", ""], [".png, .svg or .pdf"]), (["-o"], ["--output needs"]),
                (["-o", "a.png", "--output", "b.png"], ["twice"]),
                (["--family", "small"], ["--family"]), (["--scheme", "dark"], ["--scheme"]),
                (["--adapter", "en0"], ["--adapter"]), (["--json"], ["--json"]),
                (["NetworkAdapterWidget"], ["NetworkAdapterWidget"]),
                (["--ipv4-echo", "nonsense"], ["--ipv4-echo"])):
            with self.subTest(arguments=arguments):
                done = run("gallery", *arguments, cwd=self.sheets)
                self.assert_fails(done, 2, *words)
                self.assertEqual([], self.names_of_sheets())

    def test_a_sheet_that_would_be_too_large(self):
        for name in ("sheet.png", "sheet.svg", "sheet.pdf"):
            self.assert_fails(self.gallery("--scale", "8", "-o", name), 1, "smaller scale")
        self.assertEqual([], self.names_of_sheets())

    def test_help_names_every_option_and_the_default_file(self):
        done = run("gallery", "--help")
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        for word in ("--scale", "--entry", "--output", "--data-dir", "lanternfold-gallery.png"):
            self.assertIn(word, done.stdout.decode())
