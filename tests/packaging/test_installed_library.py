#!/usr/bin/python3
"""The link library as somebody else finds it: installed, and used by its example program.

usage: test_installed_library.py SOURCE_FOLDER BUILD_FOLDER COMPILER SIMULATOR
"""
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

SIMULATOR = pathlib.Path(sys.argv.pop(4))
COMPILER = sys.argv.pop(3)
BUILD = pathlib.Path(sys.argv.pop(2))
SOURCE = pathlib.Path(sys.argv.pop(1))

# For Qt, and for the library itself.
NOT_INSTALLED = {"metatypes.h", "native_socket.h"}


def output_of(*command, **options):
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            check=False, **options)
    if result.returncode:
        raise AssertionError(f"{' '.join(map(str, command))}\n{result.stdout}")
    return result.stdout


def free_port():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.bind(("127.0.0.1", 0))
        return str(probe.getsockname()[1])


class InstalledLibrary(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.work = pathlib.Path(folder.name)
        cls.prefix = cls.work / "installed"
        output_of("cmake", "--install", BUILD, "--component", "development", "--prefix", cls.prefix)
        cls.example = cls.prefix / "share/doc/liborv-decoder-dev/examples"
        package = next(cls.prefix.glob("**/orv-decoder.pc"))
        cls.environment = {**os.environ, "PKG_CONFIG_PATH": str(package.parent)}

    def flags(self, *questions):
        return output_of("pkg-config", *questions, "orv-decoder", env=self.environment).split()

    def start_simulator(self):
        receive_port = free_port()
        simulator = subprocess.Popen(
            [SIMULATOR, "--control-port", "0", "--receive-port", receive_port, "--fsp-port", "0"],
            stdout=subprocess.PIPE, text=True)
        self.addCleanup(simulator.stdout.close)
        self.addCleanup(simulator.wait)
        self.addCleanup(simulator.send_signal, signal.SIGTERM)
        control_port = simulator.stdout.readline().strip().rpartition(":")[2]
        return ["127.0.0.1", control_port, receive_port]

    def check_example(self, program):
        text = output_of(program, *self.start_simulator(), "3")
        self.assertRegex(text, r"^firmware \d+\.\d+\.\d+\n")
        self.assertEqual(len(re.findall(r"^result [123]$", text, re.MULTILINE)), 3)
        self.assertRegex(text, re.compile(r"^  sensor \d+: \d+ us$", re.MULTILINE))

    def test_every_public_header_is_installed_and_no_other(self):
        own = {path.name for path in (SOURCE / "orv_decoder").glob("*.h")}
        installed = {path.name for path in (self.prefix / "include/orv_decoder").iterdir()}
        self.assertEqual(installed, own - NOT_INSTALLED)

    def test_headers_need_nothing_but_each_other_and_the_standard(self):
        headers = sorted(path.name for path in (self.prefix / "include/orv_decoder").iterdir())
        for order in (headers, headers[::-1]):
            text = "".join(f"#include <orv_decoder/{name}>\n" for name in order)
            output_of(COMPILER, "-std=c++20", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "-x",
                      "c++", "-", *self.flags("--cflags"), input=text)

    def test_example_is_built_by_cmake(self):
        folder = self.work / "example"
        output_of("cmake", "-S", self.example, "-B", folder, f"-DCMAKE_PREFIX_PATH={self.prefix}",
                  f"-DCMAKE_CXX_COMPILER={COMPILER}", "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror")
        output_of("cmake", "--build", folder)
        self.check_example(folder / "nearest_echoes")

    def test_example_is_built_by_pkg_config(self):
        program = self.work / "nearest_echoes"
        output_of(COMPILER, "-std=c++20", self.example / "nearest_echoes.cpp",
                  *self.flags("--cflags", "--libs"), "-o", program)
        self.check_example(program)

    def test_version_is_the_projects(self):
        project = re.search(r"project\(tarvio VERSION ([\d.]+)",
                            (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
        self.assertEqual(self.flags("--modversion"), [project])

    def test_example_tells_of_an_ecu_that_is_not_there(self):
        program = self.work / "without_ecu"
        output_of(COMPILER, "-std=c++20", self.example / "nearest_echoes.cpp",
                  *self.flags("--cflags", "--libs"), "-o", program)
        result = subprocess.run([program, "127.0.0.1", free_port(), free_port()], text=True,
                                stderr=subprocess.PIPE, check=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn("The ECU does not answer", result.stderr)


if __name__ == "__main__":
    unittest.main()
