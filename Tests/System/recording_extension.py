#!/usr/bin/python3
"""The real extension in the place of itself, with somebody in between who listens, and who can
refuse.

usage: recording_extension.py --service-fd N [OPTION...]

Every line that the host says is a line of the file LANTERNFOLD_TRANSCRIPT, behind the moment. While
there is a file LANTERNFOLD_REFUSALS, timelines are refused.
"""

import json
import os
import selectors
import socket
import subprocess
import sys
import time

REAL = os.environ["LANTERNFOLD_WIDGET_EXTENSION"]
REFUSALS = os.environ["LANTERNFOLD_REFUSALS"]


def main(arguments):
    at = arguments.index("--service-fd") + 1
    host = socket.socket(fileno=int(arguments[at]))
    near, far = socket.socketpair()
    arguments[at] = str(far.fileno())
    process = subprocess.Popen([REAL, *arguments], pass_fds=[far.fileno()])
    far.close()
    with open(os.environ["LANTERNFOLD_TRANSCRIPT"], "a", buffering=1, encoding="utf-8") as transcript:
        relay(host, near, transcript)
    near.close()
    host.close()
    return process.wait()


def relay(host, extension, transcript):
    """Until either side ends."""
    selector = selectors.DefaultSelector()
    for side in (host, extension):
        selector.register(side, selectors.EVENT_READ)
    begun = b""
    while True:
        for key, _ in selector.select():
            data = key.fileobj.recv(65536)
            if not data:
                return
            if key.fileobj is extension:
                host.sendall(data)
                continue
            *lines, begun = (begun + data).split(b"\n")
            for line in lines:
                transcript.write(f"{time.monotonic()} {line.decode()}\n")
                hand_on(line, host, extension)


def hand_on(line, host, extension):
    message = json.loads(line)
    if message.get("method") == "widget/timeline" and os.path.exists(REFUSALS):
        refusal = {"jsonrpc": "2.0", "id": message["id"],
                   "error": {"code": -32000, "message": "not now"}}
        host.sendall(json.dumps(refusal).encode() + b"\n")
    else:
        extension.sendall(line + b"\n")


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
