#!/usr/bin/python3
"""The guide's site, read the way a browser finds its way: by its links alone.

usage: test_guide_site.py SOURCE_FOLDER
"""
import html.parser
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1)).resolve()
GUIDE = SOURCE / "docs" / "user-guide"


class Reading(html.parser.HTMLParser):
    """The links, pictures, anchors and navigation of one page."""

    def __init__(self, path):
        super().__init__()
        self.links, self.anchors, self.navigation, self.images = [], set(), [], []
        self._in_navigation = False
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        values = dict(attrs)
        self._in_navigation |= tag == "nav"
        if "id" in values:
            self.anchors.add(values["id"])
        if tag == "img":
            self.images.append(values)
        for name in ("href", "src"):
            if name in values:
                self.links.append(values[name])
                if self._in_navigation and "#" not in values[name]:
                    self.navigation.append(values[name])

    def handle_endtag(self, tag):
        self._in_navigation &= tag != "nav"


def made(folder, start=GUIDE / "README.md"):
    return subprocess.run(
        ["/usr/bin/python3", "-B", SOURCE / "docs/site/make_guide.py", folder, "--start", start,
         "--version", "1.2.3"], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
        check=False)


class GuideOfTheTree(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls._folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls._folder.cleanup)
        cls.site = pathlib.Path(cls._folder.name) / "html"
        result = made(cls.site)
        if result.returncode:
            raise AssertionError(result.stdout)
        cls.pages = {path.name: Reading(path) for path in cls.site.glob("*.html")}

    def test_every_link_leads_to_something_in_the_site(self):
        self.assertGreater(len(self.pages), 10)
        for name, page in self.pages.items():
            for link in page.links:
                if re.match(r"https://", link):
                    continue
                target, _, anchor = link.partition("#")
                with self.subTest(page=name, link=link):
                    self.assertNotRegex(link, r"^\w+:|\.md$")
                    self.assertTrue((self.site / (target or name)).is_file())
                    if anchor:
                        self.assertIn(anchor, self.pages[target or name].anchors)

    def test_nothing_is_loaded_from_elsewhere(self):
        for path in [*self.site.glob("*.html"), self.site / "style.css"]:
            text = path.read_text(encoding="utf-8")
            self.assertNotRegex(text, r'src="\w+:|url\(|@import|<script', path.name)

    def test_every_chapter_of_the_list_stands_in_the_navigation_in_its_order(self):
        listed = re.findall(r"^(?:\d+\.|\*) \[[^\]]*\]\(([^)]*)\.md\)",
                            (GUIDE / "README.md").read_text(encoding="utf-8"), re.MULTILINE)
        self.assertGreater(len(listed), 10)
        paths = [pathlib.PurePosixPath(link) for link in listed]
        expected = ["index.html"] + [
            f"{path.parent.name if path.name == 'README' else path.name}.html" for path in paths]
        for name, page in self.pages.items():
            self.assertEqual(page.navigation[:len(expected)], expected, name)

    def test_every_chapter_of_the_folder_is_listed(self):
        navigation = self.pages["index.html"].navigation
        for path in GUIDE.glob("*.md"):
            if path.name != "README.md":
                self.assertIn(f"{path.stem}.html", navigation)

    def test_every_picture_has_a_text(self):
        images = [image for page in self.pages.values() for image in page.images]
        self.assertGreater(len(images), 5)
        for image in images:
            self.assertTrue(image.get("alt"), image)

    def test_tables_and_code_are_what_they_are(self):
        text = (self.site / "simulated-ecu.html").read_text(encoding="utf-8")
        self.assertIn("<td><code>--scene car|wall</code></td>", text)
        self.assertIn("# An ECU that remembers\n", text)


class FaultyGuide(unittest.TestCase):
    """What would lead a reader nowhere is told, with the page where it stands."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.write("README.md", "# Guide\n\n1. [One](one.md): first\n")
        self.write("one.md", "# One\n\n## Its *first* part\n\n## Its first part\n")

    def write(self, name, text):
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def make(self):
        return made(self.folder / "html", self.folder / "README.md")

    def assert_refused(self, *words):
        result = self.make()
        self.assertNotEqual(result.returncode, 0)
        for word in words:
            self.assertIn(word, result.stdout)
        self.assertNotIn("Traceback", result.stdout)

    def test_sound_one_is_made(self):
        result = self.make()
        self.assertEqual((result.returncode, result.stdout), (0, ""))

    def test_page_that_is_not_there(self):
        self.write("one.md", "# One\n\n[Two](two.md)\n")
        self.assert_refused("two.md")

    def test_picture_that_is_not_there(self):
        self.write("one.md", "# One\n\n![Two](images/two.png)\n")
        self.assert_refused("one.md", "images/two.png")

    def test_heading_that_is_not_there(self):
        self.write("README.md", "# Guide\n\n1. [One](one.md#its-last-part): first\n")
        self.assert_refused("README.md", "#its-last-part")

    def test_headings_of_the_same_text_have_anchors_of_their_own(self):
        self.write("README.md", "# Guide\n\n[a](one.md#its-first-part), [b](one.md#its-first-part-1)\n")
        self.assertEqual(self.make().returncode, 0)

    def test_page_that_only_another_one_links_to_is_taken_too(self):
        self.write("one.md", "# One\n\n[Two](deeper/two.md)\n")
        self.write("deeper/two.md", "# Two\n\n[back](../one.md)\n")
        self.assertEqual(self.make().returncode, 0)
        self.assertIn("two.html", Reading(self.folder / "html" / "index.html").navigation)
        self.assertIn("one.html", Reading(self.folder / "html" / "two.html").links)

    def test_two_pages_of_one_name(self):
        self.write("one.md", "# One\n\n[Other](deeper/one.md)\n")
        self.write("deeper/one.md", "# Other\n")
        self.assert_refused("one.html")

    def test_page_without_a_title(self):
        self.write("one.md", "Text alone.\n")
        self.assert_refused("one.md", "title")


if __name__ == "__main__":
    unittest.main()
