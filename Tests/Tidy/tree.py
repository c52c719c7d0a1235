"""The tree as the checks see it: which files there are, and C++ text without comments or strings.

Made by `run_check.py` from the project's folder, and by the self-tests from a folder with a planted
fault. Read by every module in `checks/`.
"""

import functools
import re
from pathlib import Path, PurePosixPath

# What a build or a tool leaves behind is not ours to check.
IGNORED_FOLDERS = {".git", "build", "__pycache__", ".cache", ".vscode", ".idea"}
CPP_SUFFIXES = {".h", ".cpp"}


class Finding:
    """One fault: where it is and what to do about it."""

    def __init__(self, path, line, message):
        self.path = path
        self.line = line
        self.message = message

    def __str__(self):
        return f"{self.path}:{self.line}: {self.message}"


class SourceFile:
    """A file of the tree; `path` is relative to the top, with forward slashes."""

    def __init__(self, root, path):
        self.path = path
        self._absolute = root / path

    @property
    def room(self):
        """The first folder of the path; "" for a file at the top."""
        return self.path.parts[0] if len(self.path.parts) > 1 else ""

    @property
    def is_cpp(self):
        return self.path.suffix in CPP_SUFFIXES

    @functools.cached_property
    def data(self):
        return self._absolute.read_bytes()

    @property
    def is_binary(self):
        return b"\0" in self.data[:8192]

    @functools.cached_property
    def text(self):
        return self.data.decode("utf-8", errors="replace")

    @functools.cached_property
    def lines(self):
        return self.text.splitlines()

    @functools.cached_property
    def code(self):
        """The text of a C++ file without comments and with empty strings, line for line."""
        return strip_comments_and_strings(self.text)

    @functools.cached_property
    def includes(self):
        """Pairs of line number and header as written, with its <> or ""."""
        pattern = re.compile(r'^\s*#\s*include\s+([<"][^>"]+[>"])')
        found = []
        for number, line in enumerate(self.lines, start=1):
            match = pattern.match(line)
            if match:
                found.append((number, match.group(1)))
        return found

    def finding(self, line, message):
        return Finding(self.path, line, message)


class Tree:
    def __init__(self, root):
        self.root = Path(root)

    @functools.cached_property
    def files(self):
        found = []
        for absolute in sorted(self.root.rglob("*")):
            path = PurePosixPath(absolute.relative_to(self.root).as_posix())
            if IGNORED_FOLDERS.isdisjoint(path.parts) and absolute.is_file():
                found.append(SourceFile(self.root, path))
        return found

    @property
    def cpp_files(self):
        return [file for file in self.files if file.is_cpp]

    @property
    def text_files(self):
        return [file for file in self.files if not file.is_binary]

    def file(self, path):
        """The file of this path; None when there is none."""
        return self._by_path.get(str(path))

    @functools.cached_property
    def _by_path(self):
        return {str(file.path): file for file in self.files}


_TOKENS = re.compile(
    r"""
    (?P<line_comment>//[^\n]*)
  | (?P<block_comment>/\*.*?\*/)
  | (?P<raw>R"(?P<mark>[^\s()\\]{0,16})\(.*?\)(?P=mark)")
  | (?P<string>"(?:\\.|[^"\\\n])*")
  | (?P<character>(?<![0-9A-Za-z_])'(?:\\.|[^'\\\n])+')
    """,
    re.VERBOSE | re.DOTALL,
)


def strip_comments_and_strings(text):
    """Blanks comments and the insides of literals; every line keeps its number."""

    def blank(match):
        newlines = "\n" * match.group().count("\n")
        if match.lastgroup == "line_comment" or match.group("block_comment") is not None:
            return " " + newlines
        return '""' + newlines

    return _TOKENS.sub(blank, text)


def line_of(text, position):
    """The line number of a position in a text."""
    return text.count("\n", 0, position) + 1
