"""Scripts are executable, say what they do, and parse."""

import os
import subprocess


def check(tree):
    """Findings of the whole tree."""
    for file in tree.files:
        path = str(file.path)
        if not file.data.startswith(b"#!/usr/bin/env bash"):
            continue
        if not os.access(tree.root / path, os.X_OK):
            yield file.finding(1, "a script that cannot be executed; chmod +x")
        if not file.lines[1].startswith("# "):
            yield file.finding(2, "a script says in its first lines what it does")
        parsed = subprocess.run(["bash", "-n", str(tree.root / path)], stderr=subprocess.PIPE,
                                text=True, check=False)
        if parsed.returncode != 0:
            yield file.finding(1, parsed.stderr.strip())
