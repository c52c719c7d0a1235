"""The check of translations finds a planted fault in a catalogue, and nothing in one without."""

import unittest

from test_checks import PlantedTest


class Translations(PlantedTest):
    """With one key in the code, and a catalogue that has it."""

    CODE = 'std::string text() { return strings.localized("%s"); }\n'
    HEAD = 'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n\n'
    ENTRY = 'msgid "Sent to %@"\nmsgstr "Gesendet an %@"\n'

    def setUp(self):
        super().setUp()
        self.tree.add("NetBase/Texts.cpp", self.CODE % "Sent to %@")
        self.tree.add("Translations/lanternfold.pot", self.HEAD + 'msgid "Sent to %@"\nmsgstr ""\n')
        self.plant(self.ENTRY)

    def plant(self, entries):
        self.tree.add("Translations/de.po", self.HEAD + entries)

    def test_a_catalogue_that_has_every_key(self):
        self.assert_found("translations")

    def test_a_key_that_is_marked_where_it_stands(self):
        self.tree.add("NetBase/Texts.cpp", 'constexpr auto key = localizable("Sent to %@");\n')
        self.assert_found("translations")

    def test_a_key_without_an_entry(self):
        self.plant("")
        self.assert_found("translations", ("Translations/de.po:1", 'no entry for "Sent to %@"'))

    def test_a_key_that_only_one_language_lacks(self):
        self.tree.add("Translations/fr.po", self.HEAD)
        self.assert_found("translations", ("Translations/fr.po:1", 'no entry for "Sent to %@"'))

    def test_an_entry_without_a_text(self):
        self.plant('msgid "Sent to %@"\nmsgstr ""\n')
        self.assert_found("translations", ("Translations/de.po:4", "has no text"))

    def test_an_entry_that_was_guessed(self):
        self.plant("#, fuzzy\n" + self.ENTRY)
        self.assert_found("translations", ("Translations/de.po:5", "fuzzy"))

    def test_an_obsolete_entry(self):
        self.plant(self.ENTRY + '\n#~ msgid "Old"\n#~ msgstr "Alt"\n')
        self.assert_found("translations", ("Translations/de.po:7", "obsolete"))

    def test_an_entry_that_no_code_uses(self):
        self.plant(self.ENTRY + '\nmsgid "Old"\nmsgstr "Alt"\n')
        self.assert_found("translations", ("Translations/de.po:7", '"Old" is used by no code'))

    def test_a_placeholder_that_is_missing_or_doubled(self):
        for text in ("Gesendet", "Gesendet an %", "%@ an %@"):
            self.plant(f'msgid "Sent to %@"\nmsgstr "{text}"\n')
            self.assert_found("translations", ("Translations/de.po:4", "another number of"))

    def test_a_text_with_a_space_at_its_end(self):
        self.plant('msgid "Sent to %@"\nmsgstr "Gesendet an %@ "\n')
        self.assert_found("translations", ("Translations/de.po:4", "ends with a space"))

    def test_a_file_that_is_no_catalogue(self):
        self.tree.add("Translations/de.po", "Sent to: Gesendet an\n")
        self.assert_found("translations", ("Translations/de.po:1", "no catalogue"))

    def test_a_template_that_is_behind_the_code(self):
        self.tree.add("NetBase/More.cpp", self.CODE % "Received")
        self.plant(self.ENTRY + '\nmsgid "Received"\nmsgstr "Empfangen"\n')
        self.assert_found("translations", ("Translations/lanternfold.pot:1", '"Received" is a key of the code only'))

    def test_a_template_that_is_missing(self):
        (self.tree.root / "Translations/lanternfold.pot").unlink()
        self.assert_found("translations", ("Translations/lanternfold.pot:1", '"Sent to %@" is a key of the code only'))

    def test_a_template_that_is_ahead_of_the_code(self):
        self.tree.add("Translations/lanternfold.pot", self.HEAD +
                      'msgid "Sent to %@"\nmsgstr ""\n\nmsgid "Old"\nmsgstr ""\n')
        self.assert_found("translations", ("Translations/lanternfold.pot:1",
                                           '"Old" is a key of the template only'))

    def test_texts_of_several_lines_and_with_quotes(self):
        self.plant('msgid ""\n"Sent "\n"to %@"\nmsgstr ""\n"Gesendet \\"an\\" "\n"%@"\n')
        self.assert_found("translations")

    def test_keys_of_tests_are_none(self):
        self.tree.add("Tests/NetBase/TextsTest.cpp", self.CODE % "Carrier")
        self.assert_found("translations")


if __name__ == "__main__":
    unittest.main()
