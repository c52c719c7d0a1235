"""Hosts of the widget extension: one that a stock JSON-RPC library makes, which nobody here wrote,
and one that sends whatever bytes a test makes up."""

import asyncio
import json
import sys
import threading

try:
    import aiorpcx
except ModuleNotFoundError:
    # Debian installs it for its own interpreter, which need not be the one that runs the tests.
    sys.path.append("/usr/lib/python3/dist-packages")
    import aiorpcx

from watched_process import HANG_SECONDS

RPCError = aiorpcx.RPCError
LONGEST_LINE = 4 * 1024 * 1024


class _Connection(aiorpcx.JSONRPCConnection):
    """Keeps the notifications, and what the library says of a line that is no answer to a request
    under way: a second answer, one without an identifier, no JSON-RPC at all."""

    def __init__(self):
        super().__init__(aiorpcx.JSONRPCv2)
        self.notifications = []
        self.faults = []

    def receive_message(self, message):
        try:
            requests = super().receive_message(message)
        except aiorpcx.ProtocolError as error:
            self.faults.append(error.message)
            raise
        self.notifications += [(each.method, each.args) for each in requests]
        return requests


class _Session(aiorpcx.RPCSession):
    sent_request_timeout = HANG_SECONDS

    def default_connection(self):
        return _Connection()


class Pending:
    """A request under way."""

    def __init__(self, identifier, answer):
        self.identifier = identifier
        self.answer = answer

    def is_answered(self):
        return self.answer.done() and not self.answer.cancelled()


class Host:
    """Talks to an extension through the library, which has a thread for itself. The library makes the
    identifiers, pairs answers with requests and checks that every line is JSON-RPC 2.0."""

    def __init__(self, extension):
        self._loop = asyncio.new_event_loop()
        self._thread = threading.Thread(target=self._loop.run_forever, daemon=True)
        self._thread.start()
        self._session = self._run(self._connect(extension.socket))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._thread.is_alive():
            self._run(self._session.close(force_after=1))
            self._loop.call_soon_threadsafe(self._loop.stop)
            self._thread.join(timeout=HANG_SECONDS)
            self._loop.close()

    @property
    def notifications(self):
        """(method, parameters) of each that came, in order."""
        return list(self._session.connection.notifications)

    @property
    def faults(self):
        return list(self._session.connection.faults)

    def ask(self, method, **parameters):
        """The result; an RPCError when there is none."""
        return self._run(self._session.send_request(method, parameters))

    def begin(self, method, **parameters):
        """Sends a request, whatever is under way already."""
        return self._run(self._begin(method, parameters))

    def begin_all(self, method, parameters):
        """Sends a request for each set of parameters, one behind the other."""
        async def begin():
            return [await self._begin(method, each) for each in parameters]
        return self._run(begin())

    def answers(self, pending, seconds=2 * HANG_SECONDS):
        """The result or the RPCError of each, once all of them have come."""
        return self._run(self._gather(pending, seconds), seconds + HANG_SECONDS)

    def notify(self, method, **parameters):
        self._run(self._session.send_notification(method, parameters))

    def cancel(self, pending):
        self.notify("$/cancel", id=pending.identifier)

    def _run(self, work, seconds=2 * HANG_SECONDS):
        return asyncio.run_coroutine_threadsafe(work, self._loop).result(seconds)

    @staticmethod
    async def _connect(socket):
        client = aiorpcx.connect_rs(sock=socket, session_factory=_Session,
                                    framer=aiorpcx.NewlineFramer(LONGEST_LINE))
        _, protocol = await client.create_connection()
        return protocol.session

    async def _begin(self, method, parameters):
        message, answer = self._session.connection.send_request(
            aiorpcx.Request(method, parameters))
        await self._session.transport.write(message)
        return Pending(json.loads(message)["id"], answer)

    @staticmethod
    async def _gather(pending, seconds):
        under_way = asyncio.gather(*(asyncio.shield(each.answer) for each in pending),
                                   return_exceptions=True)
        return await asyncio.wait_for(under_way, seconds)


class RawHost:
    """Sends bytes as they are, and takes the lines that come apart."""

    def __init__(self, socket):
        self._socket = socket
        self._rest = b""

    def send(self, data):
        self._socket.sendall(data)

    def send_messages(self, *messages):
        """In one piece."""
        self.send(b"".join(json.dumps({"jsonrpc": "2.0"} | each).encode() + b"\n"
                           for each in messages))

    def ask(self, method, identifier=1, **parameters):
        """Sends a request; the next message that comes."""
        self.send_messages({"id": identifier, "method": method, "params": parameters})
        return self.receive()

    def receive(self, seconds=HANG_SECONDS):
        """The next message; none at the end. What the end cuts off is a fault."""
        self._socket.settimeout(seconds)
        while b"\n" not in self._rest:
            chunk = self._socket.recv(1 << 16)
            if not chunk:
                if self._rest:
                    raise AssertionError(f"the last line has no end: {self._rest[:200]}")
                return None
            self._rest += chunk
        line, _, self._rest = self._rest.partition(b"\n")
        return json.loads(line)
