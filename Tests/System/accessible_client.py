#!/usr/bin/python3
"""What a screen reader is told of a program, and what it can do with it.

usage: accessible_client.py tree APPLICATION             all that it shows, as JSON
       accessible_client.py press APPLICATION NAME [N]   does the first action of the N-th (0) of that name
       accessible_client.py places APPLICATION NAME      where those of that name are shown: of each
                                                         its window's name, and left, top, width and
                                                         height, on Wayland from the window's corner

(with Debian's own Python, which has the library; the session bus is that of the environment)
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

DEEPEST = 40
STATES = ("FOCUSABLE", "FOCUSED", "SHOWING", "VISIBLE", "SENSITIVE")


def children(node):
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield child


def applications(name):
    return [each for each in children(Atspi.get_desktop(0)) if each.get_name() == name]


def actions(node):
    action = node.get_action_iface()
    return [Atspi.Action.get_action_name(action, index)
            for index in range(Atspi.Action.get_n_actions(action))] if action else []


def described(node, depth=0):
    states = node.get_state_set()
    below = [described(child, depth + 1) for child in children(node)] if depth < DEEPEST else []
    return {"name": node.get_name(), "role": node.get_role_name(),
            "description": node.get_description(), "actions": actions(node),
            "states": [each for each in STATES
                       if states.contains(getattr(Atspi.StateType, each))],
            "children": below}


def shown_of(node, name):
    if node.get_name() == name and node.get_state_set().contains(Atspi.StateType.SHOWING):
        yield node
    for child in children(node):
        yield from shown_of(child, name)


def place(node):
    frame = node.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    return [frame.x, frame.y, frame.width, frame.height]


def places(application, name):
    return [[window.get_name(), *place(node)] for window in children(application)
            for node in shown_of(window, name)]


def named(node, name):
    if node.get_name() == name and actions(node):
        yield node
    for child in children(node):
        yield from named(child, name)


def main(arguments):
    Atspi.init()
    order, application, *rest = arguments
    found = applications(application)
    if order == "tree":
        print(json.dumps([described(each) for each in found]))
        return 0
    if order == "places":
        print(json.dumps([one for each in found for one in places(each, rest[0])]))
        return 0
    buttons = [button for each in found for button in named(each, rest[0])]
    number = int(rest[1]) if len(rest) > 1 else 0
    if number >= len(buttons):
        print(f"{len(buttons)} of the name {rest[0]}", file=sys.stderr)
        return 1
    print(json.dumps(Atspi.Action.do_action(buttons[number].get_action_iface(), 0)))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
