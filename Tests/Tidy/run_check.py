#!/usr/bin/env python3
"""Runs checks on the tree and prints what they find.

usage: run_check.py FOLDER [CHECK...]      (all checks when none is named)
"""

import importlib
import sys
from pathlib import Path

from tree import Tree

CHECKS = ["banners", "fixtures", "formatting", "layering", "lengths", "links", "names", "scripts",
          "translations", "words"]


def findings(name, root):
    """What a check finds in a folder, as text."""
    module = importlib.import_module(f"checks.{name}")
    return [str(finding) for finding in module.check(Tree(root))]


def main(arguments):
    if not arguments or not Path(arguments[0]).is_dir() or set(arguments[1:]) - set(CHECKS):
        print(f"{__doc__.strip()}\nchecks: {', '.join(CHECKS)}", file=sys.stderr)
        return 2
    found = [line for name in arguments[1:] or CHECKS for line in findings(name, arguments[0])]
    print("\n".join(found) if found else "nothing found")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
