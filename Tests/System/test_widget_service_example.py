"""The host that Docs/formats/widget-service.md shows, as it stands there, with the real extension."""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

from extension import PROGRAM
from namespaces import NamespaceTest

DOCUMENT = Path(__file__).resolve().parents[2] / "Docs" / "formats" / "widget-service.md"


class ExampleTest(NamespaceTest):
    def test_the_document_s_host_shows_all_five_widgets(self):
        blocks = re.findall(r"^```python\n(.*?)^```$", DOCUMENT.read_text(encoding="utf-8"),
                            re.MULTILINE | re.DOTALL)
        self.assertEqual(1, len(blocks))
        with tempfile.TemporaryDirectory(prefix="lanternfold ") as folder:
            done = subprocess.run(
                [sys.executable, "-c", blocks[0], PROGRAM, "--data-dir", folder, "--skip-geoip"],
                stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=120)
        self.assertEqual(0, done.returncode, done.stderr)
        date = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z"
        shown = [line for line in done.stdout.splitlines() if re.search(rf" {date}$", line)]
        self.assertEqual(["Panoramic atEnd", "Internet atEnd", "Network Adapter atEnd",
                          "Bandwidth Monitor never", "WiFi atEnd"],
                         [re.sub(rf" {date}$", "", line) for line in shown])
