#!/usr/bin/env python3
"""What tools/check-scripts hands to shellcheck and luacheck, which are stand-ins here, and how it ends.

usage: test_check_scripts.py SOURCE_FOLDER
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SCRIPT = pathlib.Path(sys.argv.pop(1)) / "tools/check-scripts"
FILES = {
    "start": "#!/usr/bin/env bash\n",
    "packaging/a hook": "#!/bin/sh\n",
    "lib/shared.bash": "# what two scripts share\n",
    "bench/run": "#!/usr/bin/env python3\nbash\n",
    "notes.md": "#!/bin/sh stands at the head of scripts\n",
    "picture.png": "\x89PNG\r\n",
}


class CheckScripts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="a path with blanks ")
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name) / "tree"
        self.programs = pathlib.Path(folder.name) / "programs"
        (self.tree / "tools").mkdir(parents=True)
        shutil.copy(SCRIPT, self.tree / "tools/check-scripts")
        for program in ["shellcheck", "luacheck"]:
            self.write(self.programs / program, f'#!/bin/sh\nprintf "{program} %s\\n" "$@"; [ "$FAILS" != {program} ]\n')

    @staticmethod
    def write(file, text):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")
        file.chmod(0o755)

    def check(self, fails=""):
        for command in [["init", "-q"], ["add", "--all"]]:
            subprocess.run(["git", "-C", self.tree, *command], check=True)
        environment = {**os.environ, "PATH": f"{self.programs}:{os.environ['PATH']}", "FAILS": fails}
        return subprocess.run([self.tree / "tools/check-scripts"], env=environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def test_every_shell_script_is_checked_and_nothing_else(self):
        for name, text in FILES.items():
            self.write(self.tree / name, text)
        result = self.check()
        self.assertEqual(result.returncode, 0, result.stdout)
        checked = {line.partition(" ")[2] for line in result.stdout.splitlines() if line.startswith("shellcheck")}
        self.assertEqual({name for name in checked if not name.startswith("--")},
                         {"start", "packaging/a hook", "lib/shared.bash", "tools/check-scripts"})
        self.assertIn("\nluacheck tools/wireshark\n", result.stdout)

    def test_what_either_finds_is_a_failure(self):
        for program in ["shellcheck", "luacheck"]:
            self.assertNotEqual(self.check(fails=program).returncode, 0, program)


if __name__ == "__main__":
    unittest.main()
