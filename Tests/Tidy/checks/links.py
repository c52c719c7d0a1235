"""Documents point at files that exist: links, and paths between backticks."""

import re
from pathlib import PurePosixPath

LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*$", re.MULTILINE)
# A path as documents name it: `Room/File.h`, `Scripts/test`, `Docs/decisions/`.
PATH = re.compile(r"`((?:[A-Za-z0-9_.-]+/)+[A-Za-z0-9_.-]*)`")
# What a build makes, or an option's example.
NOT_IN_THE_TREE = re.compile(r"^(build/|usr/|etc/|proc/|sys/|\.\./)")


def check(tree):
    """Findings of the whole tree."""
    for file in tree.files:
        if file.path.suffix != ".md":
            continue
        text = _without_code_blocks(file.text)
        for number, line in enumerate(text.splitlines(), start=1):
            for match in LINK.finditer(line):
                yield from _check_link(tree, file, number, match.group(1))
            for match in PATH.finditer(line):
                yield from _check_path(tree, file, number, match.group(1))


def _without_code_blocks(text):
    return re.sub(r"^```.*?^```", lambda match: "\n" * match.group().count("\n"), text,
                  flags=re.MULTILINE | re.DOTALL)


def _check_link(tree, file, number, target):
    if re.match(r"[a-z]+:", target):
        return
    path, _, anchor = target.partition("#")
    aim = _join(file.path.parent, path) if path else file.path
    if not _exists(tree, aim):
        yield file.finding(number, f"the link to {target} leads nowhere")
    elif anchor and tree.file(aim) and anchor not in _anchors(tree.file(aim)):
        yield file.finding(number, f"{aim} has no heading #{anchor}")


def _check_path(tree, file, number, path):
    if NOT_IN_THE_TREE.match(path) or not tree.root.joinpath(path.split("/")[0]).is_dir():
        return
    if not _exists(tree, PurePosixPath(path)):
        yield file.finding(number, f"`{path}` does not exist")


def _join(folder, target):
    parts = []
    for part in (folder / target).parts:
        if part == "..":
            parts = parts[:-1]
        else:
            parts.append(part)
    return PurePosixPath(*parts)


def _exists(tree, path):
    return tree.root.joinpath(path).exists()


def _anchors(file):
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")
            for heading in HEADING.findall(_without_code_blocks(file.text))}
