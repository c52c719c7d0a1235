"""Every C++ file stands as the pinned clang-format writes it."""

import shutil
import subprocess

from tree import Finding

FORMATTER = "clang-format-19"


def check(tree):
    """Findings of the whole tree."""
    if shutil.which(FORMATTER) is None:
        yield Finding(".clang-format", 1, f"{FORMATTER} is missing; `make setup` installs it")
        return
    for file in tree.cpp_files:
        formatted = subprocess.run([FORMATTER, f"--assume-filename={tree.root / file.path}"],
                                   input=file.data, stdout=subprocess.PIPE, check=True).stdout
        if formatted != file.data:
            yield file.finding(_first_difference(file.data, formatted),
                               "not formatted; `make format` does it")


def _first_difference(before, after):
    pairs = zip(before.splitlines(), after.splitlines())
    for number, (left, right) in enumerate(pairs, start=1):
        if left != right:
            return number
    return 1
