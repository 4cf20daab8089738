#!/usr/bin/env python3
"""Fails when a file other than ecu/qt_compatibility.h asks the preprocessor for Qt's version.

usage: check_qt_version.py SOURCE_FOLDER
"""
import pathlib
import re
import sys

FOLDERS = ("orv_decoder", "ecu", "views", "app", "tools", "tests", "fuzz", "bench")
THE_ONE_PLACE = "ecu/qt_compatibility.h"
QUESTION = re.compile(r"^\s*#\s*(el)?if.*\bQT_(VERSION|DEPRECATED)")


def joined_lines(text):
    """(line number, line): as the preprocessor reads them, with those that a backslash continues."""
    begin, line = 1, ""
    for number, part in enumerate(text.splitlines(), 1):
        line += part
        if part.endswith("\\"):
            line = line[:-1]
            continue
        yield begin, line
        begin, line = number + 1, ""


def questions(text):
    """The line numbers of what asks for the version."""
    return [number for number, line in joined_lines(text) if QUESTION.match(line)]


def found_in(root):
    """(place, line number) of each question below the source folder."""
    for folder in FOLDERS:
        for file in sorted((root / folder).rglob("*")):
            if file.suffix in {".h", ".cpp"}:
                place = file.relative_to(root).as_posix()
                yield from ((place, line) for line in questions(file.read_text(encoding="utf-8")))


def check(root):
    """What is wrong."""
    found = list(found_in(root))
    if not any(place == THE_ONE_PLACE for place, _ in found):
        return [f"{THE_ONE_PLACE} asks no longer: is it read at all?"]
    return [f"{place}:{line}: asks for Qt's version, which {THE_ONE_PLACE} does for all"
            for place, line in found if place != THE_ONE_PLACE]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    wrong = check(pathlib.Path(sys.argv[1]))
    print("\n".join(wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
