#!/usr/bin/env python3
"""What packaging/check-in-clean-root does where no clean root can be made.

usage: test_clean_root.py SOURCE_FOLDER
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(sys.argv.pop(1)) / "packaging/check-in-clean-root"


def run_as_plain_user(**environment):
    """For no package, as somebody whom `id` tells to be a plain user."""
    with tempfile.TemporaryDirectory() as folder:
        program = pathlib.Path(folder) / "id"
        program.write_text("#!/bin/sh\necho 1000\n", encoding="utf-8")
        program.chmod(0o755)
        environment = {**os.environ, "PATH": f"{folder}:{os.environ['PATH']}", **environment}
        return subprocess.run([SCRIPT], env=environment, text=True, capture_output=True, check=False)


class CleanRoot(unittest.TestCase):
    def test_it_is_left_out_with_a_word(self):
        result = run_as_plain_user(TARVIO_NEEDS_CLEAN_ROOT="")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("Left out: a clean root needs root", result.stderr)

    def test_it_fails_where_it_is_needed(self):
        result = run_as_plain_user(TARVIO_NEEDS_CLEAN_ROOT="1")
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertIn("check-in-clean-root: a clean root needs root", result.stderr)


if __name__ == "__main__":
    unittest.main()
