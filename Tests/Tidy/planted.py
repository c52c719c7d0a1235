"""A small tree that every check is content with, to plant faults in."""

import tempfile
from pathlib import Path

import run_check

ROOMS = """
lanternfold_room(Support)
lanternfold_room(Platform USES Support)
lanternfold_room(NetBase USES Platform Support)
lanternfold_room(NetworkMonitor USES NetBase Platform Support
                 LIBRARIES nlohmann_json::nlohmann_json)
lanternfold_room(PlatformLinux USES NetworkMonitor/Metrics Platform Support
                 LIBRARIES PkgConfig::mnl Threads::Threads)
lanternfold_room(PlatformDarwin USES Platform Support)
lanternfold_room(CommandLine USES PlatformLinux NetworkMonitor NetBase Platform Support
                 LIBRARIES nlohmann_json::nlohmann_json)
"""

HEADER = """// A number, for the other rooms to read.
#pragma once

namespace lanternfold {

constexpr int number = 1;

}  // namespace lanternfold
"""

FILES = {
    "CMake/Rooms.cmake": ROOMS,
    "Tests/CMakeLists.txt": "lanternfold_tests(NetBase USES NetBase)\n",
    "Fuzz/CMakeLists.txt": "lanternfold_fuzz(LinkMessage USES PlatformLinux)\n",
    ".clang-format": "BasedOnStyle: Google\nColumnLimit: 100\n",
    "Support/Number.h": HEADER,
    "Platform/Seam.h": HEADER,
    "NetBase/Tool.h": HEADER,
    "NetworkMonitor/State.h": HEADER,
    "NetworkMonitor/Metrics/Reader.h": HEADER,
    "PlatformLinux/Side.h": HEADER,
    "README.md": "# House\n\nRead [the map](Docs/MAP.md#the-rooms).\n",
    "Docs/MAP.md": "# Map\n\n## The rooms\n\n`Support/Number.h`\n",
    "Scripts/go": "#!/usr/bin/env bash\n# Goes.\ntrue\n",
}


class PlantedTree:
    """Writes the content tree into a fresh folder; `add` plants files in it."""

    def __init__(self):
        self._folder = tempfile.TemporaryDirectory(prefix="tidy tree ")
        self.root = Path(self._folder.name)
        for path, text in FILES.items():
            self.add(path, text)
        (self.root / "Scripts/go").chmod(0o755)

    def add(self, path, text):
        """Writes a file, replacing what stood there."""
        absolute = self.root / path
        absolute.parent.mkdir(parents=True, exist_ok=True)
        absolute.write_text(text, encoding="utf-8")

    def findings(self, check):
        """What a check finds."""
        return run_check.findings(check, self.root)

    def close(self):
        """Removes the folder."""
        self._folder.cleanup()
