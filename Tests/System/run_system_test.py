#!/usr/bin/env python3
"""Runs a file of system tests.

usage: run_system_test.py FILE [TEST...]      (FILE without its ending, TEST as Class.test_name)

The program under test is the one that LANTERNFOLD_WIDGETS names, and LANTERNFOLD_WIDGET_EXTENSION
the one of the widget extension. Needs root, to make network
namespaces: without it the tests are skipped with status 77, and fail when
LANTERNFOLD_REQUIRE_SYSTEM_TESTS is set. As root nothing is ever skipped.
"""

import os
import sys
import tempfile
import unittest
from pathlib import Path

SKIPPED = 77


def main(arguments):
    if not arguments:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    if os.geteuid() != 0:
        required = bool(os.environ.get("LANTERNFOLD_REQUIRE_SYSTEM_TESTS"))
        print(f"{'failed' if required else 'skipped'}: needs root, to make network namespaces")
        return 1 if required else SKIPPED
    if not os.access(os.environ.get("LANTERNFOLD_WIDGETS", ""), os.X_OK):
        print("failed: LANTERNFOLD_WIDGETS does not name the program under test")
        return 1
    sys.path.insert(0, str(Path(__file__).resolve().parent))
    suite = unittest.defaultTestLoader.loadTestsFromNames(
        [f"{arguments[0]}.{name}" for name in arguments[1:]] or [arguments[0]])
    # What the program records in a test is not what the user's own one has recorded.
    with tempfile.TemporaryDirectory(prefix="lanternfold data ") as folder:
        os.environ["XDG_DATA_HOME"] = folder
        result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    complete = result.testsRun > 0 and not result.skipped
    return 0 if result.wasSuccessful() and complete else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
