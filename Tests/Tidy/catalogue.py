"""The entries of a gettext catalogue, as far as this product's catalogues go: one text a key, no
plurals and no contexts.

Read by the check of translations.
"""

import re
import subprocess
from pathlib import Path

_STRING = re.compile(r'"((?:\\.|[^"\\])*)"')
_ESCAPES = {"\\n": "\n", "\\t": "\t", '\\"': '"', "\\\\": "\\"}


class Entry:
    """A key and its text; the line is that of the key."""

    def __init__(self, line, is_fuzzy, is_obsolete):
        self.line = line
        self.is_fuzzy = is_fuzzy
        self.is_obsolete = is_obsolete
        self.key = ""
        self.text = ""


def faults(root, path):
    """What msgfmt says of a file, by the number of the line; 1 when it says none."""
    done = subprocess.run(["msgfmt", "--output-file=/dev/null", str(path)], cwd=Path(root),
                          stderr=subprocess.PIPE, text=True, check=False)
    if done.returncode == 0:
        return []
    first = done.stderr.splitlines()[0] if done.stderr else "no catalogue"
    match = re.search(r":(\d+): *(?:\d+: *)?(.*)", first)
    return [(int(match.group(1)), match.group(2)) if match else (1, first)]


def entries(text):
    """Every entry but the header, of a text that msgfmt takes."""
    found, field, is_fuzzy = [], None, False
    for number, line in enumerate(text.splitlines(), start=1):
        is_obsolete = line.startswith("#~")
        line = line.removeprefix("#~").strip()
        if line.startswith("#,"):
            is_fuzzy = "fuzzy" in line
        if line.startswith("msgid"):
            found.append(Entry(number, is_fuzzy, is_obsolete))
            field, is_fuzzy = "key", False
        elif line.startswith("msgstr"):
            field = "text"
        elif not line.startswith('"'):
            continue
        for piece in _STRING.findall(line):
            setattr(found[-1], field, getattr(found[-1], field) + _unescaped(piece))
    return [entry for entry in found if entry.key]


def _unescaped(piece):
    return re.sub(r"\\.", lambda match: _ESCAPES.get(match.group(), match.group()), piece)
