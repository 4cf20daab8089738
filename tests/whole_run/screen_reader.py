#!/usr/bin/env python3
"""Prints as JSON what a screen reader is told about one process: link state, status bar message
and the first row of each table.

usage: screen_reader.py PID

A process of its own for each look: the bindings keep what they once saw of a program, also what
they saw too early, while it was still starting.
"""
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi


def children(node):
    candidates = [node.get_child_at_index(i) for i in range(node.get_child_count())]
    return [child for child in candidates if child]


def first_row(node):
    table = node.get_table_iface()
    cells = [table.get_accessible_at(0, column) for column in range(table.get_n_columns())]
    return {"name": node.get_name(), "rows": table.get_n_rows(),
            "first_row": [cell.get_name() for cell in cells if cell]}


def look(application):
    seen = {"window": False, "tables": []}
    pending = [application]
    while pending:
        node = pending.pop()
        role = node.get_role_name()
        if role == "frame" and node.get_name() == "Tarvio":
            seen["window"] = True
        if role == "status bar":
            seen["message"] = node.get_name()
        if node.get_name() == "ECU link":
            seen["link_state"] = node.get_description()
        if role == "table":
            seen["tables"].append(first_row(node))
        else:
            pending.extend(children(node))
    return seen


def main():
    wanted = int(sys.argv[1])
    for application in children(Atspi.get_desktop(0)):
        if application.get_process_id() == wanted:
            print(json.dumps(look(application)))


if __name__ == "__main__":
    main()
