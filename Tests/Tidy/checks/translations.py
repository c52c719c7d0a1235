"""Every key of the product has a text in every language, with the key's placeholders, and nothing
else has one."""

import subprocess
from pathlib import Path

from catalogue import entries, faults
from tree import Finding

FOLDER = "Translations"
TEMPLATE = f"{FOLDER}/lanternfold.pot"
SCRIPT = Path(__file__).resolve().parents[3] / "Scripts" / "translations"
PLACEHOLDER = "%@"
UPDATE = "run Scripts/translations"


def check(tree):
    """Findings of the whole tree."""
    keys = _keys_of_the_code(tree)
    catalogues = [file for file in tree.files
                  if str(file.path.parent) == FOLDER and file.path.suffix == ".po"]
    if keys or catalogues:
        yield from _check_template(tree, keys)
    for file in catalogues:
        faulty = faults(tree.root, file.path)
        for line, fault in faulty:
            yield file.finding(line, f"no catalogue of gettext: {fault}")
        if not faulty:
            yield from _check_catalogue(file, keys)


def _keys_of_the_code(tree):
    done = subprocess.run([SCRIPT, "--template", tree.root], stdout=subprocess.PIPE, check=True)
    return {entry.key for entry in entries(done.stdout.decode())}


def _check_template(tree, keys):
    file = tree.file(TEMPLATE)
    known = {entry.key for entry in entries(file.text)} if file else set()
    for key in sorted(keys ^ known):
        where = "the code" if key in keys else "the template"
        yield Finding(TEMPLATE, 1, f'"{key}" is a key of {where} only; {UPDATE}')


def _check_catalogue(file, keys):
    found = entries(file.text)
    present = {entry.key for entry in found if not entry.is_obsolete}
    for key in sorted(keys - present):
        yield file.finding(1, f'no entry for "{key}"; {UPDATE}')
    for entry in found:
        fault = _fault_of(entry, keys)
        if fault:
            yield file.finding(entry.line, f'"{entry.key}" {fault}')


def _fault_of(entry, keys):
    """The first of them; None when there is none."""
    if entry.is_obsolete:
        return f"is obsolete; {UPDATE}"
    if entry.key not in keys:
        return f"is used by no code; {UPDATE}"
    if entry.is_fuzzy:
        return "is marked as fuzzy; check the text and remove the mark"
    if not entry.text:
        return "has no text"
    if entry.text.count(PLACEHOLDER) != entry.key.count(PLACEHOLDER):
        return f'has another number of "{PLACEHOLDER}" than its text'
    if entry.text != entry.text.strip():
        return "has a text that begins or ends with a space"
    return None
