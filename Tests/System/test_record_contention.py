"""Several processes that sample one file at once: nothing is lost, torn or negative."""

import json
import tempfile
import threading
import time
from pathlib import Path

from namespaces import NamespaceTest, ip
from recording import (LEASE_SECONDS, DataFolder, Recorder, SteadySender, check_counters, decoded,
                       kernel_bytes, went_backwards)

SECONDS = 30
PROCESSES = 3


class ContentionTest(NamespaceTest):
    def setUp(self):
        super().setUp()
        self.switch_ipv6_off()
        folder = tempfile.TemporaryDirectory(prefix="lanternfold ")
        self.addCleanup(folder.cleanup)
        self.data = DataFolder(Path(folder.name) / "data").make()
        ip("link add en0 arp off type veth peer name far0 arp off", "link set en0 up",
           "link set far0 up")
        self.end = time.monotonic() + SECONDS
        self.faults = []
        self.samples = 0
        self.refused = 0

    def is_over(self):
        return time.monotonic() > self.end

    def test_30_seconds_of_samplers_that_get_into_each_others_way(self):
        threads = [threading.Thread(target=self.take_samples) for _ in range(PROCESSES)]
        threads.append(threading.Thread(target=self.look_at_the_file))
        with SteadySender("far0", bytes_per_second=200_000, length=1514), \
                Recorder("--json", "--interval", "1", *self.data.options()) as recorder:
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            self.assertEqual(0, recorder.finish())
        print(f"{self.samples} samples of {PROCESSES} processes beside {len(recorder.lines)} of the "
              f"recorder, {self.refused} refused for the lock; {self.looks} looks at the file")
        self.assertEqual([], self.faults)
        self.assertGreater(len(recorder.lines), SECONDS // 3, recorder.errors)
        self.check_recorder(recorder)
        self.check_nothing_is_lost()

    def take_samples(self):
        """One process after the other; the counters of each are none below those before."""
        earlier = {}
        while not self.is_over():
            done = self.data.once()
            if done.returncode == 0:
                later = json.loads(done.stdout)
                for name, counters in later.items():
                    check_counters(name, counters)
                self.faults += went_backwards(earlier, later)
                earlier = later
                self.samples += 1
            elif self.is_refusal(done):
                self.refused += 1
            else:
                self.faults.append(f"{done.returncode}: {done.stderr.decode()}")

    def is_refusal(self, done):
        return done.returncode == 1 and b"lock" in done.stderr and len(
            done.stderr.splitlines()) == 1

    def look_at_the_file(self):
        """Whole at every look. The lock is a lease that two may take at the same moment, and the
        slower of them may then put its counters over younger ones: never older than a lease."""
        seen = []
        self.looks = 0
        while not self.is_over():
            if self.data.file.exists():
                counters = decoded(self.data.file.read_bytes())[1]
                now = time.monotonic()
                settled = [each for moment, each in seen if now - moment > LEASE_SECONDS]
                if settled:
                    self.faults += went_backwards(settled[-1], counters)
                seen = [each for each in seen if now - each[0] < 2 * LEASE_SECONDS] + [
                    (now, counters)]
                self.looks += 1
            time.sleep(0.002)

    def check_recorder(self, recorder):
        earlier = {}
        for line in recorder.lines:
            later = json.loads(line)["metrics"]
            self.assertEqual([], went_backwards(earlier, later))
            earlier = later

    def check_nothing_is_lost(self):
        """Traffic has ended: the next sample equals the kernel's own counters."""
        done = self.data.once()
        self.assertEqual((0, b""), (done.returncode, done.stderr))
        for name in ("en0", "far0"):
            last = self.data.recorded()[name]
            self.assertEqual(kernel_bytes(name), (last["sentBytes"], last["recvBytes"]))
