#!/usr/bin/python3
"""What a desktop is told of the program and its files.

usage: test_desktop_files.py SOURCE_FOLDER
"""
import configparser
import pathlib
import re
import struct
import sys
import unittest
import xml.etree.ElementTree as xml

SOURCE = pathlib.Path(sys.argv.pop(1))
DESKTOP = SOURCE / "packaging/desktop"
MIME = "{http://www.freedesktop.org/standards/shared-mime-info}"


def size_of(png):
    """Width and height, as the picture's own header tells them."""
    data = png.read_bytes()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise AssertionError(f"{png} is no PNG")
    return struct.unpack(">II", data[16:24])


class DesktopFiles(unittest.TestCase):
    def setUp(self):
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(DESKTOP / "tarvio.desktop", encoding="utf-8")
        self.entry = parser["Desktop Entry"]
        self.file_type = xml.parse(DESKTOP / "tarvio.xml").getroot().find(f"{MIME}mime-type")
        self.metainfo = xml.parse(DESKTOP / "org.tarvio.tarvio.metainfo.xml").getroot()

    def test_every_icon_has_the_size_of_its_name(self):
        for picture in ("tarvio", "orv-file"):
            for size in (16, 24, 32, 48, 64, 128, 256):
                png = SOURCE / f"resources/desktop/{picture}-{size}.png"
                self.assertEqual(size_of(png), (size, size), png)

    def test_entry_promises_to_open_no_file(self):
        self.assertNotIn("MimeType", self.entry)
        self.assertNotIn("%", self.entry["Exec"])

    def test_entry_starts_what_is_installed(self):
        self.assertEqual(self.entry["Exec"], "tarvio")
        self.assertIn("add_executable(tarvio ",
                      (SOURCE / "app/CMakeLists.txt").read_text(encoding="utf-8"))

    def test_file_type_is_found_by_the_extension_and_the_first_lines(self):
        self.assertEqual(self.file_type.find(f"{MIME}glob").get("pattern"), "*.orv")
        magic = self.file_type.find(f"{MIME}magic/{MIME}match").get("value")
        document = (SOURCE / "docs/orv-file.md").read_text(encoding="utf-8")
        self.assertIn(f"?>\n{magic}\n", document)

    def test_file_type_has_the_icon_that_is_installed(self):
        icon = self.file_type.find(f"{MIME}icon").get("name")
        text = (SOURCE / "packaging/CMakeLists.txt").read_text(encoding="utf-8")
        self.assertEqual(re.search(r"set\(file_type_icon (\S+)\)", text)[1], icon)

    def test_metainfo_names_entry_and_file_type(self):
        self.assertEqual(self.metainfo.findtext("launchable"), "tarvio.desktop")
        self.assertEqual(self.metainfo.findtext("provides/mediatype"), self.file_type.get("type"))
        self.assertEqual(self.metainfo.findtext("project_license"), "Apache-2.0")


if __name__ == "__main__":
    unittest.main()
