#!/usr/bin/python3
"""The documents: their links lead somewhere, and their pictures show what their sources say.

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

FOLDERS = ["app", "bench", "docs", "ecu", "fuzz", "orv_decoder", "packaging", "tests", "tools", "views"]


def documents():
    yield from SOURCE.glob("*.md")
    for folder in FOLDERS:
        yield from (SOURCE / folder).rglob("*.md")


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
