#!/usr/bin/python3
"""Somebody in the extension's place who means no good.

usage: hostile_extension.py --service-fd N [OPTION...]      (LANTERNFOLD_MANNER says how)

The catalogue is honest but for the manners that are about it: a single widget of a small family.
"""

import json
import os
import socket
import sys
import time

MANNER = os.environ["LANTERNFOLD_MANNER"]
KIND = "BandwidthMonitorWidget"
# The numbers of the decisions "always" and "while in use".
ALLOWED = (3, 4)
TEXT = {"type": "text", "text": "Text", "fontSize": 13}


def catalogue(count=1, name="A widget"):
    return {"widgets": [{"kind": KIND if number == 0 else f"Kind{number}", "displayName": name,
                         "description": name, "families": ["small"], "configuration": "static",
                         "intent": None} for number in range(count)]}


def entry(root):
    return {"date": "2026-01-01T00:00:00.000Z", "view": {"version": 1, "root": root}}


def timeline(root, count=1):
    return {"entries": [entry(root)] * count, "policy": "atEnd"}


def nested(depth, kind="padding"):
    root = TEXT
    for _ in range(depth):
        root = {"type": kind, "children": [root]}
    return root


def link(url):
    return {"type": "link", "url": url, "children": [
        {"type": "frame", "width": 170, "height": 170, "children": [
            {"type": "roundedRectangle", "cornerRadius": 0, "fill": {"red": 0, "green": 0.5,
                                                                       "blue": 0}}]}]}


def stack_of(count, child):
    return {"type": "vstack", "children": [child] * count}


# Of each manner the root of its views.
VIEWS = {
    "huge sizes": {"type": "frame", "width": 1e300, "height": -5, "children": [TEXT]},
    "large sizes": {"type": "zstack", "children": [
        {"type": "offset", "x": 1e5, "y": -1e5, "children": [
            {"type": "frame", "width": 1e5, "height": 1e5, "children": [
                {"type": "circle", "lineWidth": 1e5}]}]},
        {"type": "text", "text": "Text " * 12000, "fontSize": 1e5, "lineLimit": 1000}]},
    "many views": stack_of(100_000, TEXT),
    "many buttons": stack_of(3000, {"type": "button", "intent": "RefreshAppIntent",
                                    "children": [TEXT]}),
    "deep": nested(63),
    "too deep": nested(100),
    "slow to lay out": stack_of(100, nested(50, "hstack") | {"type": "firstThatFits"}),
    "odd texts": stack_of(5, {"type": "text", "fontSize": 13, "text":
                              "<b>bold</b> & \u202eevil\u2066 \x01\x02\n\n%s%n {} \U0001f525 \ud7ff"}),
    "clings to a name": TEXT | {"text": "Home network"},
    "odd names": {"type": "zstack", "children": [
        {"type": "image", "name": "../../../../etc/passwd"},
        {"type": "symbol", "name": "/dev/zero"}]},
}


class Hostile:
    def __init__(self, descriptor):
        self.socket = socket.socket(fileno=descriptor)
        self.may_name = False

    def say(self, message):
        self.socket.sendall(json.dumps(message).encode() + b"\n")

    def answer(self, request):
        method, identifier = request.get("method"), request.get("id")
        if identifier is None:
            return
        if method == "widgets/list":
            result = self.catalogue()
        elif method == "intent/perform":
            result = {}
        else:
            result = self.view(method == "widget/timeline")
        self.say({"jsonrpc": "2.0", "id": identifier, "result": result})

    def cling(self, request):
        """Answers for as long as names are allowed, and never again."""
        if request.get("method") == "location/changed":
            self.may_name = request["params"]["status"] in ALLOWED
        elif self.may_name:
            self.answer(request)

    def catalogue(self):
        return {"many kinds": lambda: catalogue(20_000),
                "long names": lambda: catalogue(1, "Name " * 10_000)}.get(MANNER, catalogue)()

    def view(self, is_timeline):
        if MANNER.startswith("link "):
            root = link(MANNER.removeprefix("link "))
        else:
            root = VIEWS.get(MANNER, TEXT)
        count = 20_000 if MANNER == "many entries" else 1
        return timeline(root, count) if is_timeline else entry(root)

    def serve(self):
        for line in self.socket.makefile("rb"):
            request = json.loads(line)
            if MANNER in ALONE and request.get("method") != "widgets/list":
                ALONE[MANNER](self, request)
            else:
                self.answer(request)


def send_forever(self, chunk):
    while True:
        self.socket.sendall(chunk)


# What is no answer at all.
ALONE = {
    "silent": lambda self, request: None,
    "leaves": lambda self, request: sys.exit(3),
    "aborts": lambda self, request: os.abort(),
    "garbage": lambda self, request: self.socket.sendall(b"\xff\x00{]\n" * 1000),
    "endless line": lambda self, request: send_forever(self, b"x" * 65536),
    "endless chatter": lambda self, request: send_forever(
        self, b'{"jsonrpc":"2.0","method":"location/request","params":{"whenInUse":false}}\n'),
    "wrong numbers": lambda self, request: self.say(
        {"jsonrpc": "2.0", "id": request.get("id", 0) + 1_000_000, "result": timeline(TEXT)}),
    "nested json": lambda self, request: self.socket.sendall(b"[" * 1_000_000 + b"\n"),
    "wrong types": lambda self, request: self.say(
        {"jsonrpc": "2.0", "id": request.get("id"), "result": {"entries": 7, "policy": [None]}}),
    "clings to a name": Hostile.cling,
    "stays": lambda self, request: (self.answer(request), time.sleep(1000)),
}


def main(arguments):
    Hostile(int(arguments[arguments.index("--service-fd") + 1])).serve()
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
