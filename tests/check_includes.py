#!/usr/bin/env python3
"""Fails when a folder includes what it must not know: app -> views -> ecu -> orv_decoder, never
upwards.

usage: check_includes.py SOURCE_FOLDER
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
SUFFIXES = {".h", ".cpp", ".in"}
QT_HEADER = re.compile(r"^(Q[A-Z]|Qt|ui_|q[a-z]*\.h$)")

SOCKET_HEADER = re.compile(r"(Socket(Base)?\.h|/socket\.h|^QUdpSocket)$")

# By folder: what its files may not include, and why.
FORBIDDEN = {
    "orv_decoder": [
        (re.compile(r"^(ecu|views|app|forms|tools)/"), "the link library knows nothing above it"),
        (QT_HEADER, "the link library is free of Qt"),
    ],
    "ecu": [
        (re.compile(r"^(views|app|forms|tools)/"), "what needs no window knows none"),
        # Headers without their folder are not even found: the target links QtCore alone.
        (re.compile(r"^(QtGui|QtWidgets|ui_)"), "of Qt, QtCore alone is known here"),
    ],
    "views": [
        (re.compile(r"^(app|tools)/"), "a view does not know the application"),
        (SOCKET_HEADER, "a view never opens a socket"),
    ],
    "app": [
        (re.compile(r"^tools/"), "the application does not know the simulated ECU"),
        (SOCKET_HEADER, "the application leaves its sockets to ecu/link"),
    ],
    "tools": [(re.compile(r"^(views|app|forms)/"), "a tool needs no window")],
    "": [(re.compile(r"^(tests|fuzz|bench)/"), "the program does not know its tests")],
}

# The one place where the live records are made known to Qt.
QT_ALLOWED = {"orv_decoder/metatypes.h", "orv_decoder/metatypes.cpp"}


def included(text):
    """The (line number, file) of every include."""
    for number, line in enumerate(text.splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(2)


def violations(path, text):
    """What is wrong with one file, given by its path from the source folder."""
    rules = FORBIDDEN[path.split("/")[0]] + FORBIDDEN[""]
    for number, target in included(text):
        for pattern, reason in rules:
            if pattern is QT_HEADER and path in QT_ALLOWED:
                continue
            if pattern.search(target):
                yield f"{path}:{number}: includes {target}: {reason}"


def check(root):
    found = []
    count = 0
    for folder in filter(None, FORBIDDEN):
        for file in sorted((root / folder).rglob("*")):
            if file.suffix in SUFFIXES:
                count += 1
                path = file.relative_to(root).as_posix()
                found += violations(path, file.read_text(encoding="utf-8"))
    if count == 0:
        found.append(f"{root}: no source files")
    return found


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    found = check(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
