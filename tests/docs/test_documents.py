#!/usr/bin/python3
"""The documents: their links lead somewhere, the files and names they quote are there, and their
pictures show what their sources say.

usage: test_documents.py SOURCE_FOLDER
"""
import pathlib
import re
import sys
import unittest
import xml.etree.ElementTree as ElementTree

SOURCE = pathlib.Path(sys.argv.pop(1)).resolve()
sys.path.insert(0, str(SOURCE / "docs/site"))

from guide_pages import Page

FOLDERS = [".ci", "app", "bench", "cmake", "docs", "ecu", "forms", "fuzz", "orv_decoder", "packaging", "resources",
           "tests", "tools", "views"]
SUFFIXES = ["bash", "cmake", "cpp", "csv", "dot", "h", "json", "lua", "md", "py", "qrc", "rng", "sh", "svg", "txt", "ui"]
SOURCES = ["*.cpp", "*.h", "*.in", "*.lua", "*.py", "*.ui", "*.xml", "CMakeLists.txt"]
# What CONTRIBUTING has somebody add, and a file of Wireshark's.
NOT_HERE = ["orv_decoder/SensorGain", "ecu/configuration/gain_section", "SensorGain", "init.lua"]


def documents():
    yield from SOURCE.glob("*.md")
    for folder in FOLDERS:
        yield from (SOURCE / folder).rglob("*.md")


def quotations(path):
    """What stands between backticks outside of blocks; of `a.h`, `.cpp` the second is `a.cpp`."""
    text = re.sub(r"^```.*?^```", "", path.read_text(encoding="utf-8"), flags=re.DOTALL | re.MULTILINE)
    text = re.sub(r"`([^`\s]+)(\.\w+)`, `(\.\w+)`", r"`\1\2`, `\1\3`", text)
    return re.findall(r"`([^`\n]+)`", text)


def quoted_files(path):
    """The files and folders that it quotes, alone or in commands, some by a name without a folder."""
    for word in (word.rstrip(";,:").removeprefix("./") for text in quotations(path) for word in text.split()):
        is_path = "/" in word and word.split("/")[0] in FOLDERS
        is_name = re.fullmatch(rf"[\w-]+\.({'|'.join(SUFFIXES)})", word)
        if (is_path or is_name) and not re.search(r"[<>…|$=\\]", word):
            yield word


def is_there(file):
    """A path may lack the suffix of what is a pair of files; a name alone may stand in any folder."""
    if "/" in file:
        return (SOURCE / file).exists() or any(SOURCE.glob(file)) or any(SOURCE.glob(file + ".*"))
    return (SOURCE / file).exists() or any(any((SOURCE / folder).rglob(file)) for folder in FOLDERS)


def words(text):
    return re.findall(r"\w+", text)


class Documents(unittest.TestCase):
    def test_links_lead_to_what_is_there(self):
        pages = [Page(path) for path in documents()]
        self.assertGreater(len(pages), 20)
        for page in pages:
            for target in page.local_targets():
                self.assertTrue(target.exists(), f"{page.path} links to {target}")

    def test_links_lead_to_headings_that_are_there(self):
        links = [(path, link) for path in documents()
                 for link in re.findall(r"\]\(([^):\s]*#[^)\s]+)\)", path.read_text(encoding="utf-8"))]
        self.assertGreater(len(links), 10)
        for path, link in links:
            name, _, anchor = link.partition("#")
            page = Page((path.parent / name).resolve() if name else path)
            self.assertIn(anchor, page.anchors(), f"{path} links to {link}")

    def test_files_they_quote_are_there(self):
        quoted = {(path, file) for path in documents() for file in quoted_files(path)
                  if not file.startswith(tuple(NOT_HERE))}
        self.assertGreater(len(quoted), 200)
        self.assertEqual([(path.name, file) for path, file in sorted(quoted) if not is_there(file)], [])

    def test_names_they_quote_are_in_the_sources(self):
        known = {word for folder in FOLDERS for kind in SOURCES for file in (SOURCE / folder).rglob(kind)
                 for word in words(file.read_text(encoding="utf-8"))}
        known |= {file.stem for folder in FOLDERS for file in (SOURCE / folder).rglob("*")}
        quoted = {(path, name) for path in [SOURCE / "CONTRIBUTING.md", SOURCE / "docs/architecture.md"]
                  for name in quotations(path) if re.fullmatch(r"\w+(\(\))?", name)}
        self.assertGreater(len(quoted), 100)
        self.assertEqual([(path.name, name) for path, name in sorted(quoted)
                          if name.removesuffix("()") not in known and name not in NOT_HERE], [])


class Drawings(unittest.TestCase):
    def test_pictures_show_the_words_of_their_sources(self):
        sources = list((SOURCE / "docs/images").glob("*.dot"))
        self.assertEqual(len(sources), 3)
        for source in sources:
            labels = re.findall(r'label=(?:<(<b>.*?)>(?:\]|, \w+=)|"(.*?)")', source.read_text(encoding="utf-8"), re.DOTALL)
            said = [re.sub(r"<[/a-z]+>|&[lg]t;|\\l", " ", html or plain) for html, plain in labels]
            drawing = ElementTree.parse(source.with_suffix(".svg"))
            shown = [text.text for text in drawing.iter("{http://www.w3.org/2000/svg}text")]
            self.assertEqual(sorted(words(" ".join(said))), sorted(words(" ".join(shown))), source)


if __name__ == "__main__":
    unittest.main()
