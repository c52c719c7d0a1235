"""`render NetworkAdapterWidget`: pictures of the network that is really there."""

import re
import tempfile
import time
from pathlib import Path

from extension_test import ADAPTER, BANDWIDTH, FAMILIES
from namespaces import NamespaceTest, ip
from pictures import pdf_places, pdf_title, pdf_words, png_size, svg_size
from program import run

WIDTH_POINTS, HEIGHT_POINTS = 364, 170


class RenderTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()  # two pictures show the same counters
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def make_two_adapters(self):
        for number, network in ((0, "192.0.2"), (1, "198.51.100")):
            ip(f"link add eth{number} address 0a:00:00:00:00:0{number + 1} type veth peer name "
               f"peer{number}", f"link set peer{number} up", f"link set eth{number} up",
               f"addr add {network}.2/24 dev eth{number}",
               f"route add default via {network}.1 dev eth{number} metric {200 - number * 100}")

    def draw(self, name, *arguments):
        """The picture's path; the command says where it is and nothing else."""
        path, errors = self.draw_and_read_errors(name, *arguments)
        self.assertEqual("", errors)
        return path

    def draw_and_read_errors(self, name, *arguments):
        path = self.folder / name
        done = run("render", "NetworkAdapterWidget", *arguments, "-o", str(path))
        self.assertEqual((0, f"Wrote {path}\n"), (done.returncode, done.stdout.decode()))
        self.assertEqual(path.name, next(iter(self.folder.glob("*" + path.suffix))).name)
        return path, done.stderr.decode()

    def words_of_missing(self, adapter):
        """What the picture says of an adapter that is none; the command says so too, in one line."""
        path, errors = self.draw_and_read_errors("card.pdf", "--adapter", adapter)
        self.assertIn(f'no adapter is called "{adapter}"', errors)
        self.assertEqual(1, errors.count("\n"))
        words = pdf_words(path)
        path.unlink()
        return words

    def words(self, *arguments):
        path = self.draw("card.pdf", *arguments)
        words = pdf_words(path)
        path.unlink()
        return words


class FormatTest(RenderTest):
    def test_a_picture_at_every_scale(self):
        self.make_two_adapters()
        self.assertEqual((728, 340), png_size(self.draw("card.png").read_bytes()))
        for scale in (0.5, 1, 2, 3, 7.9, 8):
            size = png_size(self.draw("card.png", "--scale", str(scale)).read_bytes())
            for pixels, points in zip(size, (WIDTH_POINTS, HEIGHT_POINTS)):
                self.assertLess(abs(pixels - points * scale), 1)

    def test_a_scale_or_format_that_is_none_is_a_bad_argument(self):
        for arguments in (("--scale", "0.4", "-o", "card.png"), ("--scale", "9", "-o", "card.png"),
                          ("--scale", "nan", "-o", "card.png"), ("-o", "card.jpeg"), ("-o", "card"),
                          ("--scheme", "blue", "-o", "card.png"),
                          ("-o", "card.png", "--family", "large")):
            done = run("render", "NetworkAdapterWidget", *arguments, cwd=self.folder)
            self.assertEqual((2, 1), (done.returncode, len(done.stderr.splitlines())), arguments)
        self.assertEqual([], list(self.folder.iterdir()))

    def test_svg_and_pdf_are_whole(self):
        self.make_two_adapters()
        width, height = svg_size(self.draw("card.svg", "--scale", "1").read_bytes())
        self.assertEqual((WIDTH_POINTS, HEIGHT_POINTS), (width, height))
        self.assertIn("eth1", self.words())
        self.assertEqual("NetworkAdapterWidget", pdf_title(self.draw("card.pdf")))

    def test_the_dark_scheme_differs_and_says_the_same(self):
        self.make_two_adapters()
        for name in ("card.png", "card.svg"):
            light = self.draw(name).read_bytes()
            self.assertEqual(light, self.draw(name, "--scheme", "light").read_bytes())
            self.assertNotEqual(light, self.draw(name, "--scheme", "dark").read_bytes())
        self.assertEqual(self.words(), self.words("--scheme", "dark"))

    def test_an_older_picture_is_replaced(self):
        (self.folder / "card.png").write_text("x" * 1_000_000)
        self.assertEqual((728, 340), png_size(self.draw("card.png").read_bytes()))


class EveryWidgetTest(RenderTest):
    """All widgets in all their sizes, as samples."""

    SIZES = {"small": (170, 170), "medium": (364, 170), "large": (364, 382)}

    def pictures(self):
        for kind, families in FAMILIES.items():
            for family in families:
                yield kind, family

    def draw_sample(self, name, kind, family, *arguments):
        path = self.folder / name
        done = run("render", kind, "--family", family, "--entry", "snapshot", *arguments, "-o",
                   str(path))
        self.assertEqual((0, f"Wrote {path}\n", ""),
                         (done.returncode, done.stdout.decode(), done.stderr.decode()))
        return path

    def test_every_format_has_the_size_of_the_family(self):
        for kind, family in self.pictures():
            width, height = self.SIZES[family]
            for scheme in ("light", "dark"):
                picture = (kind, family, "--scheme", scheme, "--scale", "3")
                self.assertEqual((3 * width, 3 * height),
                                 png_size(self.draw_sample("a.png", *picture).read_bytes()))
                self.assertEqual((3 * width, 3 * height),
                                 svg_size(self.draw_sample("a.svg", *picture).read_bytes()))
                words = pdf_words(self.draw_sample("a.pdf", *picture))
                self.assertEqual(kind == BANDWIDTH, not words, f"{kind}, {family}: {words}")

    def test_the_layout_is_the_same_at_every_scale(self):
        for kind, family in self.pictures():
            usual = pdf_places(self.draw_sample("a.pdf", kind, family, "--scale", "1"))
            for scale in (0.5, 3, 8):
                places = pdf_places(self.draw_sample("a.pdf", kind, family, "--scale", str(scale)))
                self.assertEqual([word for word, *_ in usual], [word for word, *_ in places])
                for (word, *box), (_, *scaled) in zip(usual, places):
                    for one, other in zip(box, scaled):
                        # A baseline stands on a whole pixel, half a point away at the smallest scale.
                        self.assertLessEqual(abs(one - other / scale), 1.1, f"{kind}: {word}")

    def test_the_largest_size_is_the_default(self):
        for kind, families in FAMILIES.items():
            usual = self.draw_sample("a.png", kind, families[-1], "--scale", "1").read_bytes()
            done = run("render", kind, "--entry", "snapshot", "--scale", "1", "-o", "b.png",
                       cwd=self.folder)
            self.assertEqual(0, done.returncode, done.stderr)
            self.assertEqual(usual, (self.folder / "b.png").read_bytes())

    def test_a_sample_of_an_adapter_of_this_machine_says_that_it_is_not_there(self):
        """The sample has adapters of its own; a choice among them is kept."""
        words = pdf_words(self.draw_sample("a.pdf", ADAPTER, "medium", "--adapter", "en2"))
        self.assertIn("en2", words)
        text = " ".join(pdf_words(self.draw_sample("b.pdf", ADAPTER, "medium", "--adapter", "eth0")))
        self.assertIn("eth0", text)
        self.assertNotIn("en2", text)


class FileTest(RenderTest):
    def test_without_a_file_nothing_is_drawn(self):
        done = run("render", "NetworkAdapterWidget", cwd=self.folder)
        self.assertEqual((2, b""), (done.returncode, done.stdout))
        self.assertRegex(done.stderr, rb"\Alanternfold-widgets: [^\n]*--output[^\n]*\n\Z")
        self.assertEqual([], list(self.folder.iterdir()))

    def test_a_symbolic_link_stays_and_its_file_is_replaced(self):
        elsewhere = self.folder / "elsewhere"
        elsewhere.mkdir()
        (elsewhere / "card.png").write_text("the old one")
        (self.folder / "card.png").symlink_to("elsewhere/card.png")
        path = self.draw("card.png", "--entry", "placeholder")
        self.assertTrue(path.is_symlink())
        self.assertEqual((728, 340), png_size((elsewhere / "card.png").read_bytes()))
        self.assertEqual(1, len(list(elsewhere.iterdir())))

    def test_a_link_to_itself_is_a_sentence(self):
        (self.folder / "card.png").symlink_to("card.png")
        done = run("render", "NetworkAdapterWidget", "--entry", "placeholder", "-o", "card.png",
                   cwd=self.folder)
        self.assertEqual((1, 1), (done.returncode, done.stderr.count(b"\n")), done.stderr)
        self.assertIn(b"cannot write", done.stderr)


class FiguresTest(RenderTest):
    """What the card says, read from the picture itself."""

    def test_the_card_shows_the_adapter_of_the_best_default_route(self):
        self.make_two_adapters()
        words = self.words()
        for word in ("eth1", "198.51.100.2", "198.51.100.1/24", "0a:00:00:00:00:02"):
            self.assertIn(word, words)
        self.assert_nothing_of(words, "eth0", "192.0.2.", "0a:00:00:00:00:01")

    def test_the_best_default_route_moves(self):
        self.make_two_adapters()
        ip("route del default dev eth1")
        words = self.words()
        for word in ("eth0", "192.0.2.2", "192.0.2.1/24", "0a:00:00:00:00:01"):
            self.assertIn(word, words)

    def test_the_adapter_that_was_asked_for(self):
        self.make_two_adapters()
        words = self.words("--adapter", "eth0")
        for word in ("eth0", "192.0.2.2", "192.0.2.1/24", "0a:00:00:00:00:01"):
            self.assertIn(word, words)
        self.assert_nothing_of(words, "eth1", "198.51.100.", "0a:00:00:00:00:02")

    def test_an_adapter_that_is_gone_shows_nothing_of_another(self):
        self.make_two_adapters()
        words = self.words_of_missing("gone")
        self.assertIn("gone", words)
        self.assertIn("cannot be read", " ".join(words))
        self.assert_nothing_of(words, "eth", "192.0.2.", "198.51.100.", "0a:00:")
        absent = self.draw_and_read_errors("card.svg", "--adapter", "gone")[0].read_bytes()
        for adapter in ("eth0", "eth1"):
            self.assertNotEqual(absent, self.draw("card.svg", "--adapter", adapter).read_bytes())

    def test_a_link_that_is_no_adapter_is_not_shown_either(self):
        self.make_two_adapters()
        ip("addr add 203.0.113.9/24 dev peer0")
        self.assert_nothing_of(self.words_of_missing("peer0"), "203.0.113.", "192.0.2.", "0a:00:")

    def test_an_adapter_without_an_address(self):
        ip("link add eth0 address 0a:00:00:00:00:07 type veth peer name peer0")
        words = self.words()
        self.assertIn("0a:00:00:00:00:07", words)
        self.assertFalse([word for word in words if re.search(r"\d+\.\d+\.\d+\.\d+", word)], words)

    def test_no_adapter_at_all(self):
        words = self.words()
        self.assertTrue(words)
        self.assert_nothing_of(words, "127.0.0.1", "lo ")
        self.assertEqual((728, 340), png_size(self.draw("card.png").read_bytes()))

    def test_the_time_of_drawing_is_shown_on_demand(self):
        self.make_two_adapters()
        self.assertNotIn("update", self.words())
        self.assertIn("update", self.words("--show-timestamp"))

    def assert_nothing_of(self, words, *texts):
        for text in texts:
            self.assertFalse([word for word in words if text in word], f"{text} in {words}")


class PlaceholderTest(RenderTest):
    def test_a_placeholder_is_the_same_on_every_machine_byte_for_byte(self):
        names = ("card.png", "card.svg", "card.pdf")
        first = [self.draw(name, "--entry", "placeholder").read_bytes() for name in names]
        self.make_two_adapters()
        time.sleep(1.1)  # dates in files are whole seconds
        for name, contents in zip(names, first):
            self.assertEqual(contents, self.draw(name, "--entry", "placeholder").read_bytes(), name)

    def test_neither_placeholder_nor_snapshot_tells_of_this_machine(self):
        self.make_two_adapters()
        for entry in ("placeholder", "snapshot"):
            text = " ".join(self.words("--entry", entry))
            for own in ("192.0.2.", "198.51.100.", "0a:00:00"):
                self.assertNotIn(own, text)
            self.assertIn("en2", text)
