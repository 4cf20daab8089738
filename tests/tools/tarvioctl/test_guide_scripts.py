#!/usr/bin/env python3
"""Runs the scripts of the guide as they stand there.

usage: test_guide_scripts.py GUIDE FOLDER_OF_PROGRAMS...
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

GUIDE = pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")
PROGRAMS = sys.argv[2:]
del sys.argv[1:]


def script(name):
    return re.search(rf"```sh {name}\n(.*?)```", GUIDE, re.DOTALL).group(1)


def waits_for_each(text):
    """A simulated ECU that was started in the background answers a moment later; a person types
    slower than that."""
    return re.sub(r"^(\s*)(tarvio-ecu-simulator.*) &$",
                  r"\1exec {ready}< <(\2); read -r -u $ready", text, flags=re.MULTILINE)


# A busy machine may keep a simulated ECU from answering for longer than a person's does.
PATIENT = 'tarvioctl() { command tarvioctl "$@" --timeout 10000; }\n'


class GuideScripts(unittest.TestCase):
    def run_scripts(self, text):
        environment = {**os.environ, "PATH": ":".join(PROGRAMS + [os.environ["PATH"]])}
        with tempfile.TemporaryDirectory() as folder:
            return subprocess.run(["bash", "-c", PATIENT + text + "\npkill -P $$ 2>/dev/null; true"],
                                  cwd=folder, env=environment, text=True, capture_output=True,
                                  timeout=600, check=False)

    def test_every_car_of_the_line_is_checked(self):
        result = self.run_scripts(waits_for_each(script("golden") + script("line")))
        self.assertIn("Firmware:       2.14.0", result.stdout)
        self.assertIn("verified: the ECU holds what the file says", result.stdout)
        self.assertEqual(result.stdout.count("is as the golden one"), 20, result.stderr)
        self.assertNotIn("stop the line", result.stdout)

    def test_car_that_differs_stops_the_line(self):
        # Its first step alone.
        spoil = ("sed '/<Step id=\"[1-9]/d' golden.orv > other.orv\n"
                 "tarvioctl write other.orv --only sequence --ecu 127.0.0.1 --control-port 25004\n")
        line = script("line").replace("\nfor car", "\n" + spoil + "for car", 1)
        result = self.run_scripts(waits_for_each(script("golden") + line))
        self.assertEqual(result.stdout.count("is as the golden one"), 2,
                         result.stdout + result.stderr)
        self.assertIn("sequence: ", result.stdout)
        self.assertIn("car 25004 differs: stop the line", result.stdout)


if __name__ == "__main__":
    unittest.main()
