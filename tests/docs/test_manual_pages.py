#!/usr/bin/python3
"""The man pages and the completion of the simulated ECU against what the programs print.

usage: test_manual_pages.py SOURCE_FOLDER SIMULATOR TARVIOCTL
"""
import pathlib
import re
import subprocess
import sys
import unittest

TARVIOCTL = pathlib.Path(sys.argv.pop(3))
SIMULATOR = pathlib.Path(sys.argv.pop(2))
SOURCE = pathlib.Path(sys.argv.pop(1))


def printed_options(*command):
    """The long options that a program's help lists."""
    text = subprocess.run([*command, "--help"], stdout=subprocess.PIPE, text=True, check=True).stdout
    return set(re.findall(r"^ +(?:-\w, )?(--[\w-]+)", text, re.MULTILINE))


def named_options(path):
    text = path.read_text(encoding="utf-8").replace("\\-", "-")
    return set(re.findall(r"(?<![\w-])--[a-z][\w-]*", text))


class ManualPages(unittest.TestCase):
    def test_simulator_page_names_the_options_of_its_help_and_no_others(self):
        options = printed_options(SIMULATOR)
        self.assertGreater(len(options), 30)
        self.assertEqual(named_options(SOURCE / "docs/man/tarvio-ecu-simulator.1"), options)

    def test_simulator_completion_offers_them(self):
        offered = named_options(SOURCE / "tools/ecu_simulator/tarvio-ecu-simulator.bash")
        self.assertEqual(offered, printed_options(SIMULATOR) - {"--help-all"})

    def test_tarvioctl_page_names_what_its_help_says(self):
        options = printed_options(TARVIOCTL, "info")
        self.assertIn("--ecu", options)
        self.assertLessEqual(options - {"--help-all"}, named_options(SOURCE / "docs/man/tarvioctl.1"))

    def test_window_page_names_no_option(self):
        self.assertEqual(named_options(SOURCE / "docs/man/tarvio.1"), set())

    def test_pages_are_set_without_a_warning(self):
        pages = list((SOURCE / "docs/man").glob("*.1"))
        self.assertEqual(len(pages), 3)
        for page in pages:
            result = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z", page], text=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=True)
            self.assertEqual(result.stderr, "", page)


class Completion(unittest.TestCase):
    def completed(self, *words):
        script = SOURCE / "tools/ecu_simulator/tarvio-ecu-simulator.bash"
        words = ["tarvio-ecu-simulator", *words]
        return subprocess.run(
            ["bash", "-c", f'. {script}; COMP_WORDS=("$@"); COMP_CWORD={len(words) - 1}; '
             '_tarvio_ecu_simulator; printf "%s\\n" "${COMPREPLY[@]}"', "bash", *words],
            stdout=subprocess.PIPE, text=True, check=True).stdout.split()

    def test_option_is_completed(self):
        self.assertEqual(self.completed("--wall"), ["--wall-distance"])

    def test_value_is_completed(self):
        self.assertEqual(self.completed("--calibration", "a"), ["abort"])
        self.assertEqual(self.completed("--scene", ""), ["car", "wall"])


if __name__ == "__main__":
    unittest.main()
