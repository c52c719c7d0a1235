"""The widget extension under way, as a process that serves one end of a pair of sockets."""

import os
import signal
import socket
import subprocess
import threading

PROGRAM = os.environ["LANTERNFOLD_WIDGET_EXTENSION"]
# Nothing that comes at all takes longer, however busy the machine is.
HANG_SECONDS = 30


class Extension:
    """`socket` is the host's end. Every line of diagnostics and of errors is kept. Leaving the
    `with` statement ends the process."""

    def __init__(self, *arguments, through=(), **options):
        self.socket, service = socket.socketpair()
        with service:
            self.process = subprocess.Popen(
                [*through, PROGRAM, "--service-fd", str(service.fileno()), *arguments],
                pass_fds=[service.fileno()], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.PIPE, **options)
        self.diagnostics = []  # only ever appended to
        self.errors = []
        self._news = threading.Condition()
        self._readers = [threading.Thread(target=self._read, args=each, daemon=True)
                         for each in ((self.process.stdout, self.diagnostics),
                                      (self.process.stderr, self.errors))]
        for reader in self._readers:
            reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.socket.close()
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

    def wait_for_diagnostics(self, count=1):
        """The lines so far, at least `count` of them."""
        with self._news:
            if not self._news.wait_for(lambda: len(self.diagnostics) >= count, HANG_SECONDS):
                raise AssertionError(f"{len(self.diagnostics)} of {count} lines")
            return list(self.diagnostics)

    def _read(self, stream, lines):
        for line in stream:
            with self._news:
                lines.append(line.decode())
                self._news.notify_all()
