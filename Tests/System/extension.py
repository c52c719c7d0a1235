"""The widget extension under way, as a process that serves one end of a pair of sockets."""

import os
import socket

from watched_process import WatchedProcess

PROGRAM = os.environ["LANTERNFOLD_WIDGET_EXTENSION"]


class Extension(WatchedProcess):
    """`socket` is the host's end. Lines are kept with their ends: each is to have one."""

    keeps_line_ends = True

    def __init__(self, *arguments, through=(), **options):
        self.socket, service = socket.socketpair()
        with service:
            super().__init__([*through, PROGRAM, "--service-fd", str(service.fileno()), *arguments],
                             pass_fds=[service.fileno()], **options)

    def __exit__(self, *_):
        self.socket.close()
        super().__exit__()

    @property
    def diagnostics(self):
        return self.lines

    def wait_for_diagnostics(self, count=1):
        """The lines so far, at least `count` of them."""
        return self.wait_for_lines(count)
