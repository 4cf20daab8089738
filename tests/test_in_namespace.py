#!/usr/bin/env python3
"""Runs tests/in-namespace where the programs that make a namespace are stand-ins.

usage: test_in_namespace.py SOURCE_FOLDER
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1))

# What the command under test sees: whose namespace, its arguments and the user's environment.
COMMAND = ["sh", "-c", 'echo "${MADE_BY-nobody}|${TARVIO_NO_NAMESPACE-}|$KEPT|$1|$#"', "sh", "a b", ""]

UNSHARE = """#!/bin/sh
case "$ALLOWED:$1" in
    root:--net) MADE_BY=root ;;
    user:--map-root-user) shift; MADE_BY=user ;;
    sudo:--net) [ -n "$BY_SUDO" ] || exit 1; MADE_BY=sudo ;;
    *) exit 1 ;;
esac
shift
export MADE_BY
exec "$@"
"""

# In the end the command runs as the user again, with the environment given after "env -i".
SETPRIV = """#!/bin/sh
while [ "$1" != env ]; do shift; done
shift 2
exec env -i MADE_BY="$MADE_BY" "$@"
"""

SUDO = """#!/bin/sh
BY_SUDO=1 exec "$@"
"""

REFUSED = """#!/bin/sh
exit 1
"""

ID = """#!/bin/sh
echo "$USER_ID"
"""

IP = """#!/bin/sh
exit 0
"""


class InNamespace(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="in namespace ")
        self.addCleanup(folder.cleanup)
        self.programs = pathlib.Path(folder.name)
        for name, text in [("unshare", UNSHARE), ("setpriv", SETPRIV), ("id", ID), ("ip", IP),
                           ("sudo", REFUSED)]:
            self.add(name, text)

    def add(self, name, text):
        program = self.programs / name
        program.write_text(text, encoding="utf-8")
        program.chmod(0o755)

    def run_where(self, allowed, user="1000"):
        environment = {"PATH": f"{self.programs}:/usr/bin:/bin", "ALLOWED": allowed,
                       "USER_ID": user, "KEPT": "two words"}
        return subprocess.run([SOURCE / "tests/in-namespace", *COMMAND], env=environment,
                              check=True, capture_output=True, text=True)

    def test_root_makes_one(self):
        self.assertEqual(self.run_where("root", "0").stdout, "root||two words|a b|2\n")

    def test_user_namespace_is_next(self):
        self.assertEqual(self.run_where("user").stdout, "user||two words|a b|2\n")

    def test_sudo_makes_one_and_keeps_the_environment(self):
        self.add("sudo", SUDO)
        self.assertEqual(self.run_where("sudo").stdout, "sudo||two words|a b|2\n")

    def test_sudo_is_not_asked_as_root(self):
        self.add("sudo", SUDO)
        self.assertEqual(self.run_where("sudo", "0").stdout, "nobody|1|two words|a b|2\n")

    def test_command_runs_without_one_and_knows_it(self):
        run = self.run_where("nobody")
        self.assertEqual(run.stdout, "nobody|1|two words|a b|2\n")
        self.assertIn("no network namespace can be made here", run.stderr)


if __name__ == "__main__":
    unittest.main()
