"""Stands between a program and its message bus."""

import re
import selectors
import socket
import threading

QUESTION = b"NameHasOwner"


def silent_after_greeting(test, address, path):
    """The address of a bus that answers like the one of `address` until it is asked for the owner of a
    name, and never again on that connection."""
    bus = re.search("unix:path=([^,;]+)", address)[1]
    listener = socket.socket(socket.AF_UNIX)
    test.addCleanup(listener.close)
    listener.bind(str(path))
    listener.listen()

    def serve():
        while True:
            try:
                client, _ = listener.accept()
            except OSError:
                return  # the test is over
            threading.Thread(target=relay, args=(client, bus), daemon=True).start()

    threading.Thread(target=serve, daemon=True).start()
    return f"unix:path={path}"


def relay(client, bus):
    with client, socket.socket(socket.AF_UNIX) as server, selectors.DefaultSelector() as ready:
        server.connect(bus)
        ready.register(client, selectors.EVENT_READ, server)
        ready.register(server, selectors.EVENT_READ, client)
        is_silent = False
        while True:
            for key, _ in ready.select():
                said = key.fileobj.recv(65536)
                if not said:
                    return
                is_silent = is_silent or QUESTION in said
                if not is_silent:
                    key.data.sendall(said)
