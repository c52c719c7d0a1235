"""What the kernel announces of links and addresses, with the moment at which it did."""

import socket
import struct
import threading
import time

RTMGRP_LINK = 1
RTM_NEWLINK, RTM_DELLINK = 16, 17
IFF_LOWER_UP = 0x10000
SO_RCVBUFFORCE = 33


class KernelEvents:
    """The link messages of the present namespace: (moment, type, index, flags), as they come.

    Use it in a `with` statement.
    """

    def __init__(self):
        self.messages = []
        self.overflows = 0
        self._socket = socket.socket(socket.AF_NETLINK, socket.SOCK_RAW, 0)
        self._socket.setsockopt(socket.SOL_SOCKET, SO_RCVBUFFORCE, 256 * 1024 * 1024)
        self._socket.bind((0, RTMGRP_LINK))
        self._socket.settimeout(0.1)
        self._is_over = False
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._is_over = True
        self._reader.join(timeout=10)
        self._socket.close()

    def _read(self):
        while not self._is_over:
            try:
                data = self._socket.recv(65536)
            except TimeoutError:
                continue
            except OSError:
                self.overflows += 1
                continue
            moment = time.monotonic()
            at = 0
            while at + 32 <= len(data):
                size, kind = struct.unpack_from("=IH", data, at)
                index, flags = struct.unpack_from("=iI", data, at + 20)
                self.messages.append((moment, kind, index, flags))
                at += max((size + 3) & ~3, 16)

    def moment_of(self, condition, seconds):
        """When the first message came that fulfils the condition; none when none does in time."""
        deadline = time.monotonic() + seconds
        while True:
            for message in list(self.messages):
                if condition(*message[1:]):
                    return message[0]
            if time.monotonic() > deadline:
                return None
            time.sleep(0.01)
