"""A web server that plays what a test tells it to: the wrong answer, a late one, none at all.

Every path has a play, a function that is called with the visit and its connection. Connections are
bounded in number and in time, and every one of them is kept as a visit for the test to look at.
"""

import json
import select
import socket
import struct
import threading
import time

MOST_CONNECTIONS = 64
LONGEST_REQUEST = 16384
# Longer than the program waits for any answer.
LONGEST_PLAY_SECONDS = 45


class Visit:
    """One connection: who came, what was asked, and the moments at which things happened."""

    def __init__(self, peer):
        self.peer = peer
        self.began = time.monotonic()
        self.asked = None  # when the request was there
        self.answered = None  # when the play was over
        self.ended = None  # when the connection was closed
        self.method = self.target = None
        self.fields = {}
        self.fault = None  # why there was no request

    @property
    def path(self):
        return self.target.split("?")[0] if self.target else None

    def overlaps(self, other):
        return self.began < other.ended and other.began < self.ended

    def take(self, head):
        lines = head.decode("latin-1").split("\r\n")
        self.method, self.target, _ = lines[0].split(" ", 2)
        self.fields = {name.lower(): value.strip() for name, _, value in
                       (line.partition(":") for line in lines[1:])}
        self.asked = time.monotonic()


class WebServer:
    """Plays `plays` (a play for each path) until the `with` statement ends."""

    def __init__(self, plays, address="127.0.0.1", port=0, tls=None):
        family = socket.AF_INET6 if ":" in address else socket.AF_INET
        self._listener = socket.create_server((address, port), family=family, backlog=64)
        self._host = f"[{address}]" if ":" in address else address
        self.port = self._listener.getsockname()[1]
        self._plays, self._tls = plays, tls
        self._visits = []
        self._connections = {}
        self._lock = threading.Lock()
        self._is_over = False
        self._thread = threading.Thread(target=self._accept, daemon=True)
        self._thread.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._is_over = True
        self._thread.join(timeout=10)
        self._listener.close()
        with self._lock:
            connections = list(self._connections.items())
        for connection, _ in connections:
            try:
                connection.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass  # it has ended by itself
        for _, thread in connections:
            thread.join(timeout=10)

    def url(self, path="", host=None):
        scheme = "https" if self._tls else "http"
        return f"{scheme}://{host or self._host}:{self.port}{path}"

    def visits(self, path=None):
        """So far, in the order of their coming; of one path, or all."""
        with self._lock:
            return [each for each in self._visits if path in (None, each.path)]

    def finished_visits(self, path, count, seconds=10):
        """Once `count` connections for `path` have been closed."""
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            found = [each for each in self.visits(path) if each.ended]
            if len(found) >= count:
                return found
            time.sleep(0.01)
        raise AssertionError(f"not {count} visits of {path} in {seconds} s")

    def _accept(self):
        while not self._is_over:
            if not select.select([self._listener], [], [], 0.05)[0]:
                continue
            connection, peer = self._listener.accept()
            with self._lock:
                if len(self._connections) >= MOST_CONNECTIONS:
                    connection.close()
                    continue
                visit = Visit(peer[0])
                self._visits.append(visit)
                thread = threading.Thread(target=self._serve, args=(connection, visit), daemon=True)
                self._connections[connection] = thread
            thread.start()

    def _serve(self, connection, visit):
        stream = connection
        try:
            connection.settimeout(LONGEST_PLAY_SECONDS)
            if self._tls:
                stream = self._tls.wrap_socket(connection.dup(), server_side=True)
            self._play(stream, visit)
        except (OSError, ValueError) as error:
            visit.fault = error  # the client has left, or never said what it wanted
        finally:
            visit.ended = time.monotonic()
            with self._lock:
                self._connections.pop(connection, None)
            if stream is not connection:
                stream.close()
            connection.close()

    def _play(self, stream, visit):
        head = b""
        while b"\r\n\r\n" not in head:
            chunk = stream.recv(LONGEST_REQUEST)
            if not chunk or len(head) > LONGEST_REQUEST:
                raise ValueError(f"no request: {head!r}")
            head += chunk
            if not head[:1].isalpha():
                stream.sendall(b"HTTP/1.1 400 Bad Request\r\nConnection: close\r\n\r\n")
                raise ValueError(f"no request: {head!r}")
        visit.take(head.partition(b"\r\n\r\n")[0])
        self._plays.get(visit.path, answer("nothing", status="404 Not Found"))(visit, stream)
        visit.answered = time.monotonic()


def answer(body, status="200 OK", fields=(), after_seconds=0):
    """An answer in order: a text, bytes or a value that is written as JSON, or what a function makes
    of the visit."""
    def play(visit, stream):
        time.sleep(after_seconds)
        made = body(visit) if callable(body) else body
        if not isinstance(made, (str, bytes)):
            made = json.dumps(made)
        data = made.encode() if isinstance(made, str) else made
        lines = [f"HTTP/1.1 {status}", f"Content-Length: {len(data)}", "Connection: close", *fields]
        stream.sendall("\r\n".join([*lines, "", ""]).encode() + data)
    return play


def redirect(target, status="302 Found"):
    return answer("", status=status, fields=[f"Location: {target}"])


def address_of(visit):
    """For `answer`: what an echo service says."""
    return {"ip": visit.peer}


def provider_of(isp="Example Telecom", country="IT"):
    """For `answer`: what a geolocation service says."""
    return lambda visit: {"isp": isp, "countryCode": country, "as": "AS64500", "query": visit.peer}


def bytes_as_they_are(data):
    """An answer that need not be one of HTTP."""
    def play(_, stream):
        stream.sendall(data)
    return play


def silence(_, stream):
    """Nothing until the client leaves."""
    while stream.recv(4096):
        pass


def a_byte_a_second(data):
    """For as long as the client listens."""
    def play(_, stream):
        deadline = time.monotonic() + LONGEST_PLAY_SECONDS
        for at in range(len(data)):
            stream.sendall(data[at:at + 1])
            time.sleep(1)
            if time.monotonic() > deadline:
                return
    return play


def a_reset(_, stream):
    stream.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def hanging_up(_, __):
    """The connection is closed without a byte."""
