"""The echo service under way, and clients of it."""

import json
import os
import signal
import socket
import subprocess

from program import PROGRAM


class EchoService:
    """`echo-service` under way; leaving the `with` statement ends it."""

    def __init__(self, *arguments, listen=("127.0.0.1:0",), program=PROGRAM, through=(), **options):
        command = [*through, program, "echo-service", *arguments]
        for address in listen:
            command += ["--listen", address]
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, **options)
        self.line = self.process.stdout.readline()
        words = self.line.removeprefix("Listening on ").removesuffix(" until interrupted.\n")
        self.addresses = [self._parsed(each) for each in words.replace(" and ", ", ").split(", ")]

    @staticmethod
    def _parsed(text):
        host, _, port = text.rpartition(":")
        return host.strip("[]"), int(port)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait(timeout=10)
        self.process.stdout.close()
        self.process.stderr.close()

    def finish(self, number=signal.SIGTERM):
        """Asks the process to end; its exit status and what it wrote to standard error."""
        self.process.send_signal(number)
        status = self.process.wait(timeout=10)
        return status, self.process.stderr.read()

    def connect(self, index=0, source=None, timeout=30):
        return socket.create_connection(self.addresses[index], timeout=timeout,
                                        source_address=(source, 0) if source else None)

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def threads(self):
        return len(os.listdir(f"/proc/{self.process.pid}/task"))

    def resident_kilobytes(self):
        with open(f"/proc/{self.process.pid}/status") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmRSS:"))


class Answer:
    """What came back over a connection, taken apart."""

    def __init__(self, data):
        head, _, body = data.partition(b"\r\n\r\n")
        lines = head.decode("ascii").split("\r\n")
        self.data = data
        self.status = int(lines[0].split()[1])
        self.fields = {name.lower(): value.strip() for name, _, value in
                       (line.partition(":") for line in lines[1:])}
        self.body = body

    def json(self):
        return json.loads(self.body)


def read_to_end(connection):
    data = b""
    while chunk := connection.recv(65536):
        data += chunk
    return data


def read_answer(connection):
    """One answer of a connection that stays open."""
    data = b""
    while b"\r\n\r\n" not in data:
        chunk = connection.recv(65536)
        if not chunk:
            raise AssertionError(f"the connection ended behind {data!r}")
        data += chunk
    head, _, body = data.partition(b"\r\n\r\n")
    length = int(next(line for line in head.split(b"\r\n")
                      if line.lower().startswith(b"content-length:")).split()[1])
    while len(body) < length:
        chunk = connection.recv(65536)
        if not chunk:
            raise AssertionError(f"the connection ended behind {data!r}")
        body += chunk
    return Answer(head + b"\r\n\r\n" + body)


def request(path="/lanternfold/ip.php", *fields, method="GET"):
    lines = [f"{method} {path} HTTP/1.1", "Host: echo.example", *fields]
    return "\r\n".join([*lines, "", ""]).encode()


def ask(service, path="/lanternfold/ip.php", *fields, method="GET", index=0, source=None):
    """The answer to one request over a connection of its own."""
    with service.connect(index, source) as connection:
        connection.sendall(request(path, "Connection: close", *fields, method=method))
        return Answer(read_to_end(connection))
