#!/usr/bin/env python3
"""Runs ./run and ./test in a copy of the tree's scripts where the programs they call are stand-ins,
and looks at what they say.

usage: test_run_and_test.py SOURCE_FOLDER
"""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

SOURCE = pathlib.Path(sys.argv.pop(1))
SCRIPTS = ["run", "test", "packaging/install-packages", "packaging/stages.bash", "packaging/window.bash",
           "tests/in-namespace"]

STAND_INS = {
    "apt-get": '[ -z "$NO_NETWORK" ] || { echo "E: Temporary failure resolving deb.debian.org"; exit 100; }',
    "dpkg-query": 'for package; do :; done; [ "$package" = "$MISSING" ] || echo installed',
    "id": "echo 1000",
    "import": "exit 1",
    "sudo": 'exec "$@"',
    "cmake": '[ "$1" = "$FAILS" ] || { echo "cmake $*"; exit 0; }; echo "$COMPLAINT"; exit 1',
    "convert": "exit 1",
    "ctest": """echo "$TESTED"
[ -z "$RESULTS" ] || { mkdir -p "${RESULTS_FILE%/*}"; echo "$RESULTS" >"$RESULTS_FILE"; }
[ -z "$TEST_FAILS" ]""",
    "timeout": "exit 124",
    "unshare": "exit 1",
    "xdotool": "exit 1",
    "xvfb-run": 'echo "virtual display: $*"',
    "tarvio": 'echo $$ >tarvio.pid; [ -n "$COMPLAINT" ] || exec sleep "${OPEN_FOR:-0}"; echo "$COMPLAINT"; exit 134',
    "tarvio-ecu-simulator": 'echo $$ >simulator.pid; echo "listening on 127.0.0.1:50123"; exec sleep 60',
}


def heed_signals():
    """A shell gives up no signal that was ignored when it started, as below nohup."""
    for number in [signal.SIGINT, signal.SIGHUP]:
        signal.signal(number, signal.SIG_DFL)


def alive(process_id):
    """A zombie has ended."""
    try:
        text = pathlib.Path(f"/proc/{process_id}/stat").read_text(encoding="utf-8")
    except FileNotFoundError:
        return False
    return text.rpartition(")")[2].split()[0] != "Z"


class Scripts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="a path with blanks ")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)
        self.tree = self.home / "tarvio copy"
        for name in SCRIPTS:
            (self.tree / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(SOURCE / name, self.tree / name)
        self.programs = self.home / "programs"
        for name, text in STAND_INS.items():
            self.add(self.programs / name, text)
        for program in ["app/tarvio", "tools/ecu_simulator/tarvio-ecu-simulator"]:
            place = self.tree / "build/run" / program
            self.add(place, STAND_INS[place.name])
        # Only what the scripts call, so that what is taken away (sudo, apt-get) is away.
        for name in ["awk", "bash", "cat", "chmod", "cp", "dirname", "env", "find", "grep", "head", "install",
                     "mkdir", "mv", "realpath", "rm", "sed", "seq", "sh", "sleep", "stat", "tail", "tee", "touch"]:
            (self.programs / name).symlink_to(shutil.which(name))

    @staticmethod
    def add(program, text):
        program.parent.mkdir(parents=True, exist_ok=True)
        program.write_text(f"#!/bin/sh\n{text}\n", encoding="utf-8")
        program.chmod(0o755)

    def start(self, *command, **environment):
        environment = {"PATH": str(self.programs), "HOME": str(self.home), **environment}
        script = f"./{self.tree.name}/{command[0]}"
        return subprocess.Popen([script, *command[1:]], env=environment, cwd=self.home, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, preexec_fn=heed_signals)

    def output_of(self, *command, status=0, **environment):
        process = self.start(*command, **environment)
        output, _ = process.communicate(timeout=60)
        self.assertEqual(process.returncode, status, output)
        return output

    def log(self, name):
        return f"(log: {self.tree}/build/{name})"

    # What it does, as it does it.

    def test_run_says_each_stage_and_its_log(self):
        output = self.output_of("run", DISPLAY=":7")
        stages = ["run: looking for the packages", f"run: configuring build/run {self.log('configure.log')}",
                  f"first time {self.log('build.log')}", self.log("simulator.log"),
                  self.log("tarvio.log"), "press Capture", "the window was closed"]
        places = [output.find(stage) for stage in stages]
        self.assertNotIn(-1, places, output)
        self.assertEqual(places, sorted(places), output)

    def test_run_builds_the_doctor_too(self):
        self.assertRegex(self.output_of("run", DISPLAY=":7"), r"cmake --build .* tarvioctl\n")

    def test_test_says_each_stage_and_its_log(self):
        output = self.output_of("test")
        self.assertIn(f"test: configuring build/debug {self.log('configure.log')}", output)
        self.assertIn(f"test: running the tests {self.log('test.log')}", output)
        self.assertIn("in-namespace: no network namespace can be made here", output)
        self.assertIn("test: every test that could run passed", output)

    def output_with_results(self, results, **environment):
        """What ./test says after ctest has kept these outputs of tests."""
        file = self.tree / "build" / environment.get("TARVIO_PRESET", "debug") / "Testing/Temporary/LastTest.log"
        return self.output_of("test", RESULTS=results, RESULTS_FILE=str(file), **environment)

    def test_skipped_tests_are_named_with_their_own_reasons(self):
        output = self.output_with_results(
            "1/3 Test: test_default\nskipped: no network namespace\n"
            "2/3 Test: test_dissector\nskipped: tshark is not installed\n"
            "3/3 Test: test_silent\n",
            TESTED="\t  1 - test_default (Skipped)\n\t  2 - test_dissector (Skipped)\n\t  3 - test_silent (Skipped)")
        self.assertIn("\nLeft out here:\n  test_default: no network namespace\n"
                      "  test_dissector: tshark is not installed\n  test_silent\ntest: every", output)

    def test_what_a_passed_test_leaves_out_is_named(self):
        output = self.output_with_results(
            "1/2 Test: first_contact\n"
            "test_wall (__main__.FirstContact.test_wall) ... skipped 'nft is not installed (for \"wall\")'\n"
            "2/2 Test: test_pixels\nSKIP   : Pixels::memoryStays() nobody tells what is allocated\n"
            "   Loc: [test_pixels.cpp(183)]\nTotals: 5 passed, 0 failed, 1 skipped\n", TARVIO_PRESET="asan")
        self.assertIn("\nLeft out here:\n  first_contact: test_wall: nft is not installed (for \"wall\")\n"
                      "  test_pixels: Pixels::memoryStays() nobody tells what is allocated\ntest: every", output)

    def test_nothing_is_left_out_without_a_word_of_it(self):
        self.assertNotIn("Left out", self.output_with_results("1/1 Test: test_x\n2 tests skipped nothing\n"))

    def test_what_an_earlier_run_left_out_is_not_told_again(self):
        self.output_with_results("1/1 Test: test_default\nskipped: no network namespace\n")
        self.assertNotIn("Left out", self.output_of("test"))

    def test_failed_tests_can_be_repeated(self):
        output = self.output_of("test", TEST_FAILS="1", status=1)
        self.assertIn("not every test passed", output)
        self.assertIn(" ./test --rerun-failed", output)
        output = self.output_of("test", TEST_FAILS="1", TARVIO_PRESET="asan", status=1)
        self.assertIn(" TARVIO_PRESET=asan ./test --rerun-failed", output)

    def test_what_qt_6_takes_is_looked_for(self):
        for preset in ["qt6", "qt6-asan"]:
            self.assertIn("Installing qt6-base-dev\n",
                          self.output_of("test", MISSING="qt6-base-dev", TARVIO_PRESET=preset))

    # What to do next when something is missing.

    def test_without_sudo_the_command_is_told(self):
        (self.programs / "sudo").unlink()
        for script in ["run", "test"]:
            output = self.output_of(script, MISSING="libpcap-dev", status=1)
            self.assertIn("no sudo", output)
            self.assertIn("\n  apt-get update && apt-get install --no-install-recommends libpcap-dev\n", output)

    def test_without_network_the_log_and_the_command_are_told(self):
        output = self.output_of("run", MISSING="cmake", NO_NETWORK="1", status=1)
        self.assertIn("Temporary failure resolving", output)
        self.assertIn(self.log("apt.log"), output)
        self.assertIn("\n  apt-get update && apt-get install --no-install-recommends cmake\n", output)

    def test_installs_what_is_missing(self):
        self.assertIn("Installing cmake\n", self.output_of("run", MISSING="cmake", DISPLAY=":7"))

    def test_another_system_goes_on_with_what_is_installed(self):
        (self.programs / "apt-get").unlink()
        output = self.output_of("run", MISSING="cmake", DISPLAY=":7")
        self.assertIn("docs/building.md", output)
        self.assertIn("the window was closed", output)

    def test_missing_library_leads_to_the_list_of_packages(self):
        output = self.output_of("test", FAILS="--preset", status=1,
                                COMPLAINT="  Could not find a package configuration file provided by Qt5")
        self.assertIn("provided by Qt5", output)
        self.assertIn("→ a package is missing: docs/building.md", output)

    def next_after(self, complaint):
        return self.output_of("test", FAILS="--preset", status=1, COMPLAINT=complaint)

    def test_missing_compilers_and_programs_lead_there_too(self):
        for complaint in ["  No CMAKE_CXX_COMPILER could be found.",
                          "  is not a full path and was not found in the PATH.",
                          "  Could not find XMLLINT_PROGRAM using the following names: xmllint",
                          'CMake Error: CMake was unable to find a build program corresponding to "Ninja".']:
            self.assertIn("→ a package is missing: docs/building.md", self.next_after(complaint))

    def test_what_can_be_done_without_is_no_missing_package(self):
        self.assertNotIn("a package is missing", self.next_after("-- Could NOT find PCAP (missing: PCAP_LIBRARY)"))

    def test_cmake_that_is_too_old_is_told(self):
        for complaint in ["  CMake 3.22 or higher is required.  You are running version 3.18.4",
                          'CMake Error: Could not read presets from /x: "cmakeMinimumRequired" version too new']:
            self.assertIn("→ this CMake is too old", self.next_after(complaint))

    def test_missing_cmake_is_told(self):
        (self.programs / "cmake").unlink()
        output = self.output_of("run", DISPLAY=":7", status=1)
        self.assertIn("run: cmake is not installed", output)
        self.assertIn("→ docs/building.md", output)

    def test_build_folder_of_another_place(self):
        output = self.output_of("run", FAILS="--preset", status=1,
                                COMPLAINT="CMake Error: The current CMakeCache.txt directory /x is different")
        self.assertIn(f"rm -r '{self.tree}/build'", output)

    def test_failed_build_is_no_success(self):
        output = self.output_of("run", FAILS="--build", COMPLAINT="FAILED: tarvio", status=1)
        self.assertIn("FAILED: tarvio", output)
        self.assertIn("the build failed", output)

    def output_for_another_user(self):
        """What ./run says to somebody who may read everything and write nothing."""
        self.home.chmod(0o755)
        as_nobody = ["setpriv", "--reuid", "65534", "--clear-groups"] if os.geteuid() == 0 else []
        result = subprocess.run([*as_nobody, self.tree / "run"], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 1)
        return result.stderr

    def test_tree_that_is_not_ours(self):
        shutil.rmtree(self.tree / "build")
        self.tree.chmod(0o555)
        self.addCleanup(self.tree.chmod, 0o755)
        self.assertIn(f"run: you cannot write in {self.tree}", self.output_for_another_user())

    def test_build_that_is_not_ours(self):
        (self.tree / "build").chmod(0o777)
        (self.tree / "build/run").chmod(0o555)
        self.addCleanup((self.tree / "build/run").chmod, 0o755)
        output = self.output_for_another_user()
        self.assertIn(f"run: {self.tree}/build/run is not yours to write", output)
        self.assertIn(f"it was built by {self.tree.owner()}", output)

    def test_without_display_a_virtual_one(self):
        output = self.output_of("run")
        self.assertIn("no display here", output)
        self.assertRegex(output, f"virtual display: .* -noreset .*{self.tree}/run --on-virtual-display")

    def test_what_a_virtual_display_takes_is_named(self):
        (self.programs / "apt-get").unlink()
        for program in ["xvfb-run", "xdotool", "convert", "import"]:
            (self.programs / program).rename(self.programs / "away")
            output = self.output_of("run", status=1)
            self.assertIn(f"is not installed here: {program}\n", output)
            self.assertIn("→ docs/building.md names the packages", output)
            (self.programs / "away").rename(self.programs / program)

    def test_window_that_does_not_come_is_told(self):
        output = self.output_of("run", "--on-virtual-display", DISPLAY=":7", status=1)
        self.assertIn(f"no window appeared: see {self.tree}/build/tarvio.log", output)

    def test_display_that_takes_no_window(self):
        output = self.output_of("run", DISPLAY=":7", COMPLAINT="qt.qpa.xcb: could not connect to display :7", status=1)
        self.assertIn("the display ':7' takes no window", output)
        self.assertIn("env -u DISPLAY -u WAYLAND_DISPLAY ./run", output)

    def test_crash_is_told(self):
        output = self.output_of("run", DISPLAY=":7", COMPLAINT="Aborted", status=1)
        self.assertIn(f"Tarvio ended with status 134: see {self.tree}/build/tarvio.log", output)

    def test_ecu_needs_a_display(self):
        output = self.output_of("run", "--ecu", status=1)
        self.assertIn("no display here for the window", output)
        self.assertIn("tarvioctl needs none", output)

    def test_ecu_tells_a_port_in_use(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as other:
            other.bind(("127.0.0.1", 0))
            port = other.getsockname()[1]
            store = self.home / ".config/maltrex/tarvio.ini"
            store.parent.mkdir(parents=True)
            store.write_text(f"[network]\nreceive_port={port}\nfsp_port=1\n", encoding="utf-8")
            output = self.output_of("run", "--ecu", DISPLAY=":7")
        self.assertIn(f"port {port} is in use (by whom: ss -uanp 'sport = :{port}')", output)
        self.assertNotIn("port 1 ", output)

    def test_simulator_that_does_not_start(self):
        self.add(self.tree / "build/run/tools/ecu_simulator/tarvio-ecu-simulator", "echo port in use; exit 1")
        former = self.tree / "build/simulator.log"
        former.write_text("listening on 127.0.0.1:50123\n", encoding="utf-8")
        output = self.output_of("run", DISPLAY=":7", status=1)
        self.assertIn("the simulated ECU did not start: port in use", output)
        self.assertIn("it takes others each time", output)

    def test_unknown_option(self):
        self.assertIn("./run --ecu for a real one", self.output_of("run", "--what", status=1))

    # How it ends.

    def wait_for_id(self, name, process):
        """The id of a stand-in, which runs in the tree's folder."""
        file = self.tree / name
        while not (file.exists() and file.read_text(encoding="utf-8").endswith("\n")):
            self.assertIsNone(process.poll())
            time.sleep(0.01)
        return int(file.read_text(encoding="utf-8"))

    def wait_for_end(self, process_id):
        deadline = time.monotonic() + 30
        while alive(process_id):
            self.assertLess(time.monotonic(), deadline, f"process {process_id} goes on")
            time.sleep(0.01)

    def test_a_signal_ends_both_programs(self):
        for number in [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]:
            process = self.start("run", DISPLAY=":7", OPEN_FOR="60")
            started = [self.wait_for_id(name, process) for name in ["simulator.pid", "tarvio.pid"]]
            # To the script alone: it has to end what it started.
            process.send_signal(number)
            output, _ = process.communicate(timeout=30)
            self.assertNotEqual(process.returncode, 0, output)
            for process_id in started:
                self.wait_for_end(process_id)
            for name in ["simulator.pid", "tarvio.pid"]:
                (self.tree / name).unlink()


if __name__ == "__main__":
    unittest.main()
