#!/usr/bin/env python3
"""Provokes what docs/user-guide/first-contact.md tells about, and compares it with the words quoted
there: those of `tarvioctl doctor`, and where they are quoted those of the window. The window's light is
looked at in each.

usage: test_first_contact.py GUIDE TARVIO TARVIOCTL SIMULATOR

With TARVIO_SCREENSHOTS in the environment it also takes the pictures of that chapter.
"""
import os
import pathlib
import re
import shutil
import sys
import unittest

import first_contact
import two_machines

GUIDE = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")
BINARIES = sys.argv[2:5]
del sys.argv[1:]
SKIPPED = 77  # the status that ctest counts as skipped
LOOKS = 3  # before what is said counts as wrong: the doctor listens for two seconds, in which a busy
           # machine may let an ECU send nothing, or one record

PICTURES = {"no-cable": "light-red", "two-windows": "light-half",
            "wrong-address": "light-green-without-version"}
SAME_WORDS = {"ecu-off": "no-cable"}
QUOTED = {(kind, name): text for kind, name, text in
          re.findall(r"^```text (doctor|window) (\S+)\n(.*?)\n```", GUIDE, re.DOTALL | re.MULTILINE)}


def without_counts(text):
    """How much came in two seconds is not the same each time."""
    return re.sub(r"\d+ records, [\d.]+ a second", "N records, N a second", text)


def problems(text):
    return "\n".join(line for line in text.split("\n") if not line.startswith("ok "))


def picture(name):
    folder = os.environ.get("TARVIO_SCREENSHOTS")
    return str(pathlib.Path(folder) / f"{PICTURES[name]}.png") if folder and name in PICTURES else ""


class FirstContact(unittest.TestCase):
    def test_guide_has_a_place_for_each_situation(self):
        told = {name for kind, name in QUOTED if kind == "doctor"}
        self.assertEqual(told, set(first_contact.SITUATIONS) - set(SAME_WORDS))

    def test_each_picture_is_shown(self):
        for name in PICTURES.values():
            self.assertIn(f"(images/{name}.png)", GUIDE)

    def assert_told(self, name):
        quoted = without_counts(QUOTED["doctor", SAME_WORDS.get(name, name)])
        for _ in range(LOOKS):
            seen = first_contact.look(BINARIES, name, picture(name))
            said = without_counts(seen["doctor"].strip("\n"))
            if quoted in (said, problems(said)):
                break
        self.assertIn(quoted, (said, problems(said)))
        if ("window", name) in QUOTED:
            self.assertEqual(seen["light"], QUOTED["window", name])


def add_test_of(name):
    def test(self):
        if first_contact.SITUATIONS[name].firewall and not shutil.which("nft"):
            self.skipTest("nft is not installed (packaging/install-packages test)")
        self.assert_told(name)
    setattr(FirstContact, "test_" + name.replace("-", "_"), test)


for situation in first_contact.SITUATIONS:
    add_test_of(situation)

if __name__ == "__main__":
    if not two_machines.namespace():
        print("skipped: no network namespace can be made here; root may make one, as may whom user "
              "namespaces are allowed")
        sys.exit(SKIPPED)
    unittest.main(verbosity=2)
