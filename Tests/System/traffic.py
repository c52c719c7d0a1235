"""Traffic of a test's own through an interface, at a known pace."""

import socket
import threading
import time

FRAME_BYTES = 1000
FRAMES_AT_ONCE = 20
ETHERNET = bytes.fromhex("ffffffffffff 0a00000000ff 88b5")  # a protocol for experiments


class Traffic:
    """Frames that go out of an interface until the `with` statement is left; what falls behind is
    caught up with."""

    def __init__(self, interface, bytes_per_second):
        self._pause = FRAMES_AT_ONCE * FRAME_BYTES / bytes_per_second
        self._socket = socket.socket(socket.AF_PACKET, socket.SOCK_RAW, 0)
        self._socket.bind((interface, 0))
        self._is_over = threading.Event()
        self._sender = threading.Thread(target=self._send, daemon=True)

    def __enter__(self):
        self._sender.start()
        return self

    def __exit__(self, *_):
        self._is_over.set()
        self._sender.join()
        self._socket.close()

    def _send(self):
        due = time.monotonic()
        while not self._is_over.wait(max(0, due - time.monotonic())):
            for _ in range(FRAMES_AT_ONCE):
                self._socket.send(ETHERNET.ljust(FRAME_BYTES, b"\0"))
            due += self._pause
