"""What the tests of `record` begin with: a pair of links that count, and a data folder of their own."""

import json
import os
import tempfile
from pathlib import Path

from namespaces import NamespaceTest, ip
from program import AS_NOBODY, install, run
from recording import DataFolder, Recorder, Sender, kernel_bytes


class RecordTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.data = DataFolder(self.folder / "data")
        ip("link add en0 arp off type veth peer name far0 arp off", "link set en0 up",
           "link set far0 up")
        self.sender = Sender("far0")
        self.addCleanup(self.sender.close)

    def recorder(self, *arguments):
        return Recorder(*arguments, *self.data.options())

    def adjusted(self):
        done = self.data.once()
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        return json.loads(done.stdout)

    def assert_kernels_counters(self, counters):
        self.assertEqual(kernel_bytes("en0"), (counters["sentBytes"], counters["recvBytes"]))

    def give_folders_to_nobody(self):
        """The program as nobody runs it, with a data folder of its own."""
        program = install(self.folder)
        for folder in (self.data.path, self.data.path / "groups", self.data.group):
            os.chown(folder, AS_NOBODY["user"], AS_NOBODY["group"])
        return program

    def state(self, *arguments, **options):
        """The counters of en0 as `state` shows them, and what it says on standard error."""
        done = run("state", "--json", *self.data.options(), *arguments, **options)
        self.assertEqual(0, done.returncode, done.stderr)
        return (json.loads(done.stdout)["state"]["others"][0]["metrics"], done.stderr.decode())
