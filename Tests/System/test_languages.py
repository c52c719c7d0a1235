"""The real program in the languages that there are catalogues of, in environments of every kind, on a
machine that has no locale installed but C.UTF-8."""

import json
import re
import shutil
import tempfile
from pathlib import Path

from extension_test import ADAPTER, ADDRESS, BANDWIDTH, PANORAMIC, ExtensionTest
from internet_test import environment
from pictures import pdf_words, png_size
from program import ASSETS, PROGRAM, json_of, run

CATALOGUES = Path(PROGRAM).parent / "Translations"
VARIABLES = ("LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_TIME", "LC_NUMERIC", "LANG", "TZ")
# By the locale: "Router", "Received", "Not available", "Not connected", and what comes before and
# after "today" in the time of drawing.
WORDS = {
    "de_DE": ("Router", "Empfangen", "Nicht verfügbar", "Nicht verbunden", "Aktualisiert: heute, "),
    "fr_FR": ("Routeur", "Reçus", "Non disponible", "Non connecté",
              "Mis à jour : aujourd’hui, "),
    "it_IT": ("Router", "Ricevuti", "Non disponibile", "Non connesso", "Aggiornato: oggi, "),
    "es_ES": ("Router", "Recibidos", "No disponible", "Sin conexión", "Actualizado: hoy, "),
    "ja_JP": ("ルーター", "受信", "利用できません", "未接続", "更新: 今日 "),
    "zh_CN": ("路由器", "已接收", "不可用", "未连接", "更新于：今天 "),
    "ar_EG": ("الموجّه", "المستلَم", "غير متاح", "غير متصل", "آخر تحديث: اليوم، "),
    "ru_RU": ("Роутер", "Получено", "Недоступен", "Не подключено", "Обновлено: сегодня, "),
}
ENGLISH = ("Router", "Received", "Not available", "Not connected", "Last update Today, ")
# Which language an environment chooses, where the name of the locale does not say it.
CHOICES = [
    ({"LC_ALL": "de_DE"}, "de_DE"), ({"LANG": "de_DE.UTF-8"}, "de_DE"),
    ({"LANG": "de_AT"}, "de_DE"), ({"LC_MESSAGES": "it_IT.UTF-8", "LANG": "C.UTF-8"}, "it_IT"),
    ({"LANG": "C.UTF-8", "LANGUAGE": "fr:de"}, "fr_FR"),
    ({"LANG": "en_US.UTF-8", "LANGUAGE": "tlh:pl:ru"}, "ru_RU"),
    ({"LANG": "de_DE.UTF-8", "LANGUAGE": "en:de"}, None), ({"LANG": "zh"}, "zh_CN"),
    ({"LANG": "zh_Hans"}, "zh_CN"), ({"LANG": "zh_SG.UTF-8"}, "zh_CN"), ({"LANG": "zh_TW"}, None),
    ({}, None), ({"LANG": "C"}, None), ({"LC_ALL": "POSIX", "LANG": "de_DE"}, None),
    ({"LANGUAGE": "de"}, None), ({"LC_ALL": "C", "LANGUAGE": "de"}, None),
    ({"LANG": "tlh"}, None), ({"LANG": "pl_PL.UTF-8"}, None), ({"LANG": "../../../etc"}, None),
    ({"LANG": "%n%s%@"}, None), ({"LANG": "ä" * 100}, None), ({"LC_ALL": "x" * 50_000}, None),
    ({"LANG": "C.UTF-8", "LANGUAGE": "pl:" * 20_000}, None),
    ({"LANG": "C.UTF-8", "LANGUAGE": "/etc:" + "x" * 50_000 + ":ja"}, "ja_JP"),
]


def speaking(**variables):
    """The test's environment with no other language than this."""
    own = {name: value for name, value in environment().items() if name not in VARIABLES}
    return own | variables


class LanguagesTest(ExtensionTest):
    def setUp(self):
        super().setUp()
        self.add_adapter()

    def text(self, *arguments, env, **options):
        """What a command that succeeds without a word on standard error writes."""
        done = run(*arguments, *self.options(), **{"env": env} | options)
        self.assertEqual((0, b""), (done.returncode, done.stderr), self.said(env))
        return done.stdout.decode()

    def said(self, env):
        """What an environment says of the language."""
        return {name: value[:40] for name, value in env.items() if name in VARIABLES}

    def assert_speaks(self, words, env, **options):
        router, received, _, _, today = words
        text = self.text("timeline", ADAPTER, "--show-timestamp", env=env, **options)
        labels = [re.split(" {2,}", line)[0] for line in text.splitlines()]
        self.assertEqual((router, received), (labels[2], labels[4]), self.said(env))
        self.assertTrue(labels[-1].startswith(today), f"{labels[-1]} in {self.said(env)}")

    # Words

    def test_every_language(self):
        for locale, words in WORDS.items():
            self.assert_speaks(words, speaking(LANG=locale + ".UTF-8"))

    def test_every_catalogue_is_tried(self):
        found = sorted(folder.name for folder in CATALOGUES.iterdir())
        names = {locale.split("_")[0]: locale for locale in WORDS}
        self.assertEqual(sorted("zh_CN" if name == "zh" else name for name in names), found)

    def test_every_environment(self):
        for env, locale in CHOICES:
            self.assert_speaks(WORDS[locale] if locale else ENGLISH, speaking(**env))

    def test_a_refusal_in_every_language(self):
        for locale, words in WORDS.items():
            done = run("timeline", ADAPTER, "--adapter", "en7", *self.options(),
                       env=speaking(LANG=locale))
            self.assertEqual(0, done.returncode)
            self.assertIn(words[2], done.stdout.decode())
            self.assertIn(b'no adapter is called "en7"', done.stderr)

    def test_state_in_every_language(self):
        for locale, words in WORDS.items():
            done = run("state", "--categories", "internet,other", *self.options(),
                       env=speaking(LANG=locale))
            self.assertEqual(0, done.returncode)
            for word in (words[0], words[3]):
                self.assertIn(word, done.stdout.decode())

    # Numbers

    def test_numbers_have_the_separator_of_the_language(self):
        for env, expected in (({"LANG": "de_DE"}, "10,54"), ({"LANG": "de_CH"}, "10.54"),
                              ({"LANG": "fr_FR"}, "10,54"), ({"LANG": "ru_RU"}, "10,54"),
                              ({"LANG": "ja_JP"}, "10.54"), ({}, "10.54"),
                              ({"LANG": "es_MX"}, "10.54"), ({"LC_ALL": "C"}, "10.54"),
                              ({"LANG": "de_DE", "LC_NUMERIC": "de_CH"}, "10.54"),
                              ({"LANG": "pl_PL"}, "10.54")):
            path = self.folder / "sample.pdf"
            self.text("render", ADAPTER, "--entry", "placeholder", "-o", str(path),
                      env=speaking(**env))
            self.assertIn(expected, pdf_words(path), env)

    def test_numbers_have_the_digits_of_the_region(self):
        for locale, zero in (("ar_EG", "٠ ك.ب"), ("ar_AE", "0 ك.ب"), ("ru_RU", "0 КБ")):
            text = self.text("timeline", ADAPTER, env=speaking(LANG=locale))
            self.assertTrue(text.splitlines()[-1].endswith(zero), text)

    # Time

    def test_hours_are_those_of_the_region(self):
        for env, expected in (({"LANG": "en_US"}, r"Today, \d+:\d\d\s[AP]M\Z"),
                              ({"LANG": "en_GB"}, r"Today, \d\d:\d\d\Z"),
                              ({"LANG": "pl_PL"}, r"Today, \d\d:\d\d\Z"),
                              ({"LANG": "C.UTF-8", "LC_TIME": "de_DE"}, r"Today, \d\d:\d\d\Z"),
                              ({"LANG": "de_DE", "LC_TIME": "en_GB"}, r"heute, \d\d:\d\d\Z"),
                              ({"LANG": "ar_EG"}, r"اليوم، [٠-٩]+:[٠-٩]{2}\s[صم]\Z"),
                              ({"LANG": "ja_JP"}, r"今日 \d+:\d\d\Z")):
            self.assertRegex(self.time_of_drawing(env), expected, env)

    def test_time_zone_of_the_environment(self):
        """However long the program takes to say it, short of ten minutes."""
        for zone, ahead in (("UTC", 0), ("Asia/Kathmandu", 345), ("Etc/GMT-14", 840),
                            (":Asia/Tokyo", 540), ("America/Bogota", 1140)):
            utc = self.minutes_of_drawing("UTC")
            passed = (self.minutes_of_drawing(zone) - ahead - utc) % 1440
            self.assertLess(passed, 10, zone)

    def minutes_of_drawing(self, zone):
        shown = self.time_of_drawing({"LANG": "en_GB", "TZ": zone})
        hours, minutes = re.search(r"(\d\d):(\d\d)\Z", shown).groups()
        return int(hours) * 60 + int(minutes)

    def time_of_drawing(self, env):
        text = self.text("timeline", ADAPTER, "--show-timestamp", env=speaking(**env))
        return text.splitlines()[-1]

    # What no language changes

    def test_json_of_records_is_the_same_byte_for_byte(self):
        commands = (["interfaces", "--json"], ["state", "--categories", "internet,wlan,other", "--json"],
                    ["wifi", "--json"], ["location", "status", "--json"])
        for command in commands:
            usual = run(*command, *self.options(), env=speaking())
            for locale in [*WORDS, "tlh", "C"]:
                done = run(*command, *self.options(), env=speaking(LANG=locale))
                self.assertEqual((usual.returncode, usual.stdout),
                                 (done.returncode, done.stdout), f"{command} in {locale}")

    def test_exit_status_and_diagnostics(self):
        for locale in [*WORDS, "C"]:
            done = run("render", "ClockWidget", "-o", "x.png", env=speaking(LANG=locale))
            self.assertEqual(2, done.returncode)
            self.assertIn(b'unknown widget kind "ClockWidget"', done.stderr)
            done = run("render", ADAPTER, "-o", str(self.folder / "no" / "x.png"), *self.options(),
                       env=speaking(LANG=locale))
            self.assertEqual(1, done.returncode)
            self.assertIn(b"No such file or directory", done.stderr)

    def test_json_of_a_view_speaks_the_language(self):
        view = json.dumps(json_of("timeline", ADAPTER, "--json", *self.options(),
                                  env=speaking(LANG="fr_FR")), ensure_ascii=False)
        self.assertIn("Routeur", view)
        self.assertIn(ADDRESS, view)

    def test_what_the_host_of_the_extension_gets(self):
        host = self.host(env=speaking(LANG="de_DE.UTF-8"))
        names = [widget["displayName"] for widget in host.ask("widgets/list")["widgets"]]
        self.assertEqual(["Panorama", "Internet", "Netzwerkadapter", "Bandbreitenmonitor", "WLAN"],
                         names)
        host = self.host(env=speaking(LANG="ja_JP.UTF-8"))
        descriptions = [each["description"] for each in host.ask("widgets/list")["widgets"]]
        self.assertIn("ネットワークアダプタのウィジェット。", descriptions)

    # Pictures

    def test_a_picture_in_every_language(self):
        for locale, words in WORDS.items():
            path = self.folder / "card.pdf"
            self.text("render", ADAPTER, "-o", str(path), env=speaking(LANG=locale))
            if locale not in ("ja_JP", "zh_CN", "ar_EG"):
                self.assertIn(words[0], pdf_words(path), locale)
            path = self.folder / "card.png"
            for kind in (PANORAMIC, BANDWIDTH):
                self.text("render", kind, "--entry", "snapshot", "--show-timestamp", "-o", str(path),
                          env=speaking(LANG=locale))
                png_size(path.read_bytes())

    # Where the catalogues are

    def test_installed_program_finds_its_catalogues(self):
        program = self.install_with(CATALOGUES)
        self.assert_speaks(WORDS["it_IT"], speaking(LANG="it_IT"), program=program)

    def test_language_that_was_not_installed_is_english(self):
        """Its dates, too: they have one language."""
        program = self.install_with(CATALOGUES)
        shutil.rmtree(Path(program).parent.parent / "share" / "locale" / "it")
        self.assert_speaks(ENGLISH, speaking(LANG="it_IT"), program=program)
        self.assert_speaks(WORDS["de_DE"], speaking(LANG="C.UTF-8", LANGUAGE="it:de"),
                           program=program)

    def install_with(self, catalogues):
        folder = tempfile.TemporaryDirectory(prefix="lanternfold installed ")
        self.addCleanup(folder.cleanup)
        program = Path(folder.name) / "bin" / "lanternfold-widgets"
        share = Path(folder.name) / "share"
        program.parent.mkdir()
        shutil.copy(PROGRAM, program)
        shutil.copytree(ASSETS, share / "lanternfold-widgets" / "Assets")
        shutil.copytree(catalogues, share / "locale")
        return str(program)
