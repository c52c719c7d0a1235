"""A program under way, and every line that it writes."""

import signal
import subprocess
import threading

# Nothing that comes at all takes longer, however busy the machine is.
HANG_SECONDS = 30


class WatchedProcess:
    """Every line of standard output and of errors is kept. Leaving the `with` statement ends the
    process."""

    keeps_line_ends = False

    def __init__(self, command, reads_output=True, **options):
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, **options)
        self.lines = []  # only ever appended to
        self.errors = []
        self._news = threading.Condition()
        streams = [(self.process.stderr, self.errors)]
        if reads_output:
            streams.append((self.process.stdout, self.lines))
        self._readers = [threading.Thread(target=self._read, args=each, daemon=True)
                         for each in streams]
        for reader in self._readers:
            reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.wait()
        self.process.stdout.close()
        self.process.stderr.close()

    @property
    def pid(self):
        return self.process.pid

    def is_alive(self):
        return self.process.poll() is None

    def wait(self, seconds=HANG_SECONDS):
        """The exit status, once the process has ended by itself."""
        status = self.process.wait(timeout=seconds)
        for reader in self._readers:
            reader.join(timeout=HANG_SECONDS)
        return status

    def finish(self, number=signal.SIGTERM):
        """Asks the process to end; its exit status."""
        self.process.send_signal(number)
        return self.wait()

    def wait_for_lines(self, count, seconds=HANG_SECONDS, lines=None):
        """The lines so far, at least `count` of them; fails when they do not come in time."""
        lines = self.lines if lines is None else lines
        with self._news:
            if not self._news.wait_for(lambda: len(lines) >= count, seconds):
                raise AssertionError(f"{len(lines)} of {count} lines: {lines}, {self.errors}")
            return list(lines)

    def _read(self, stream, lines):
        for line in stream:
            with self._news:
                text = line.decode()
                lines.append(text if self.keeps_line_ends else text.removesuffix("\n"))
                self._news.notify_all()
