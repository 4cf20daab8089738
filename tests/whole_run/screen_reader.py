#!/usr/bin/env python3
"""Prints one thing that a screen reader is told about a program; nothing while it is not there.

usage: screen_reader.py PID window | message | link | table ROWS COLUMNS

"table" prints the texts in the first row of the table of this size, one a line. A process of its
own for each look: the bindings keep what they once saw of a program, also what they saw too early,
while it was still starting.
"""
import collections
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi

# Each question to a program that captures waits for its next poll: what cannot hold the answer is
# not entered.
CLOSED_ROLES = ("menu bar", "tool bar", "page tab list", "table")


def children(node):
    candidates = [node.get_child_at_index(i) for i in range(node.get_child_count())]
    return [child for child in candidates if child]


def program(pid):
    for application in children(Atspi.get_desktop(0)):
        if application.get_process_id() == pid:
            return [application]
    return []


def answer(node, role, wanted, size):
    """The answer that this node gives, None when it is another one's."""
    if wanted == "window" and role == "frame":
        return node.get_name()
    if wanted == "message" and role == "status bar":
        return node.get_name()
    if wanted == "link" and node.get_name() == "ECU link":
        return node.get_description()
    if wanted == "table" and role == "table":
        table = node.get_table_iface()
        if [table.get_n_rows(), table.get_n_columns()] == size:
            cells = [table.get_accessible_at(0, column) for column in range(size[1])]
            return "\n".join(cell.get_name() for cell in cells)
    return None


def main():
    pid, wanted, size = int(sys.argv[1]), sys.argv[2], [int(number) for number in sys.argv[3:]]
    pending = collections.deque(program(pid))
    while pending:
        node = pending.popleft()
        role = node.get_role_name()
        found = answer(node, role, wanted, size)
        if found is not None:
            print(found)
            return
        if role not in CLOSED_ROLES:
            pending.extend(children(node))


if __name__ == "__main__":
    main()
