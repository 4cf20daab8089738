"""Drives the real programs as a person would: by keys, and by what the screen reader sees.

Needs a display and a session bus of its own (see CMakeLists.txt) and the AT-SPI bindings.
"""
import os
import pathlib
import re
import signal
import socket
import subprocess
import tempfile
import time

import pyatspi

WAIT_S = 60


def wait_for(what, condition):
    """Polls until the condition gives something true and returns that."""
    end = time.monotonic() + WAIT_S
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"waited {WAIT_S} s for {what}")
        time.sleep(0.1)


def free_port():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Program:
    """A started program; what it prints is kept in a file."""

    def __init__(self, command, environment=None):
        self._output = tempfile.NamedTemporaryFile(mode="w+")
        self.process = subprocess.Popen(command, stdout=self._output, stderr=subprocess.STDOUT,
                                        env={**os.environ, **(environment or {})})

    def output(self):
        return pathlib.Path(self._output.name).read_text()

    def stop(self):
        """Asks the program to end and returns its exit status."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise


class Simulator(Program):
    """The simulated ECU on given ports."""

    def __init__(self, binary, control_port, receive_port, fsp_port, *options):
        super().__init__([binary, "--control-port", str(control_port), "--receive-port",
                          str(receive_port), "--fsp-port", str(fsp_port), "--verbose", *options])
        wait_for("the simulated ECU", lambda: "listening on " in self.output())

    def requests(self, pattern):
        """How many request lines match the pattern."""
        return len(re.findall(pattern, self.output(), re.IGNORECASE | re.MULTILINE))


class Tarvio(Program):
    """The tool with a settings store of its own."""

    def __init__(self, binary, network):
        self._profile = tempfile.TemporaryDirectory()
        self.store = pathlib.Path(self._profile.name) / "maltrex" / "tarvio.ini"
        if network:
            self.store.parent.mkdir()
            lines = "\n".join(f"{key}={value}" for key, value in network.items())
            self.store.write_text(f"[network]\n{lines}\n")
        super().__init__([binary], {"XDG_CONFIG_HOME": self._profile.name,
                                    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        self._application = wait_for("the window", self._find_application)

    def _find_application(self):
        desktop = pyatspi.Registry.getDesktop(0)
        desktop.clearCache()
        for application in desktop:
            if application and application.get_process_id() == self.process.pid:
                return application
        return None

    def all(self, role=None, name=None):
        """Every accessible of this role and name, depth first."""
        pending = [self._application]
        while pending:
            node = pending.pop()
            if (role is None or node.getRoleName() == role) and name in (None, node.name):
                yield node
            pending.extend(reversed([child for child in node if child]))

    def find(self, role=None, name=None):
        return next(self.all(role, name), None)

    def message(self):
        """What the status bar says."""
        bar = self.find("status bar")
        bar.clearCache()
        return bar.name

    def link_state(self):
        led = self.find(name="ECU link")
        led.clearCache()
        return led.description

    def type(self, *keys):
        """Presses keys in the main window."""
        windows = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Tarvio$"],
                                 stdout=subprocess.PIPE, text=True, check=True).stdout.split()
        subprocess.run(["xdotool", "windowfocus", "--sync", windows[0]], check=True)
        for key in keys:
            subprocess.run(["xdotool", "key", key], check=True)
            time.sleep(0.2)  # a menu has to open before its mnemonics count

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", path], check=True)
