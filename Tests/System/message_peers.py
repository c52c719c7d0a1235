"""Whom messages go to: peers over TCP and UDP, each with one way to answer."""

import contextlib
import socket
import struct
import threading

# Nothing that comes at all takes longer.
HANG_SECONDS = 30


class Peer:
    """Has `act` play one connection, or answer datagrams, on a thread of its own."""

    def __init__(self, act, kind=socket.SOCK_STREAM, address="127.0.0.1"):
        family = socket.AF_INET6 if ":" in address else socket.AF_INET
        self._socket = socket.socket(family, kind)
        self._socket.settimeout(HANG_SECONDS)
        self._socket.bind(socket.getaddrinfo(address, 0, family, kind)[0][4])
        if kind == socket.SOCK_STREAM:
            self._socket.listen()
        self._thread = threading.Thread(target=self._play, args=(act, kind), daemon=True)
        self._thread.start()

    def _play(self, act, kind):
        try:
            if kind == socket.SOCK_DGRAM:
                act(self._socket)
                return
            connection, _ = self._socket.accept()
            connection.settimeout(HANG_SECONDS)
            with connection:
                act(connection)
        except OSError:
            pass  # whoever is on the other end went away, which its test looks at

    @property
    def port(self):
        return str(self._socket.getsockname()[1])

    def __exit__(self, *_):
        with contextlib.suppress(OSError):
            # Whom nobody has asked waits no longer; a peer of datagrams cannot be called off, and
            # is for tests that ask it.
            self._socket.shutdown(socket.SHUT_RDWR)
        self._thread.join(timeout=HANG_SECONDS)
        self._socket.close()


def echo_once(connection):
    connection.sendall(connection.recv(65536))


def echo_until_whole(size):
    """Plays a peer that answers once it has all of a message."""
    def act(connection):
        received = b""
        while len(received) < size:
            piece = connection.recv(65536)
            if not piece:
                return
            received += piece
        connection.sendall(received)
    return act


def stay_silent(connection):
    connection.recv(65536)
    connection.recv(65536)  # until the other end is gone


def close_without_data(connection):
    connection.recv(65536)


def reset(connection):
    connection.recv(65536)
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def echo_datagram(sock):
    data, sender = sock.recvfrom(65536)
    sock.sendto(data, sender)
