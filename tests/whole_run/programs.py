"""Drives the real programs as a person would: by keys, and by what the screen reader sees.

Needs a display and a session bus of its own (see CMakeLists.txt) and the bindings of AT-SPI.
"""
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
WAIT_S = 60
REPEAT_S = 5


def wait_for(what, condition, seen=lambda: ""):
    """Polls until the condition gives something true and returns that. What was seen instead is
    told where it never does."""
    end = time.monotonic() + WAIT_S
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"waited {WAIT_S} s for {what}\n{seen()}")
        time.sleep(0.1)


def repeat(what, gesture, condition):
    """Makes a gesture that does no harm when made again, until it has had its effect."""
    end = time.monotonic() + WAIT_S
    while time.monotonic() < end:
        gesture()
        again = time.monotonic() + REPEAT_S
        while time.monotonic() < again:
            if condition():
                return
            time.sleep(0.1)
    raise AssertionError(f"waited {WAIT_S} s for {what}")


def free_port():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def is_own_address(address):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        try:
            probe.bind((address, 0))
        except OSError:
            return False
    return True


def output_of(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout


def geometry(window):
    """Width and height."""
    text = output_of("xdotool", "getwindowgeometry", "--shell", window)
    return [int(re.search(rf"{name}=(\d+)", text)[1]) for name in ("WIDTH", "HEIGHT")]


class Program:
    """A started program; what it prints is kept in a file."""

    def __init__(self, command, environment=None):
        self._output = tempfile.NamedTemporaryFile(mode="w+")
        self.process = subprocess.Popen(command, stdout=self._output, stderr=subprocess.STDOUT,
                                        env={**os.environ, **(environment or {})})

    def output(self):
        return pathlib.Path(self._output.name).read_text()

    def stop(self):
        """Asks the program to end and returns its exit status; a signal's is negative."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        try:
            return self.process.wait(WAIT_S)
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


def write_store(profile, network):
    """Network settings, as the window stores them; returns the file."""
    store = profile / "maltrex" / "tarvio.ini"
    if network:
        store.parent.mkdir()
        lines = "\n".join(f"{key}={value}" for key, value in network.items())
        store.write_text(f"[network]\n{lines}\n")
    return store


class Tarvio(Program):
    """The tool with a settings store of its own."""

    def __init__(self, binary, network):
        self._profile = tempfile.TemporaryDirectory()
        self.store = write_store(pathlib.Path(self._profile.name), network)
        super().__init__([binary], {"XDG_CONFIG_HOME": self._profile.name,
                                    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        # The first question starts the screen reader's bus. Qt 5.15.8 does not enter itself into
        # one that comes up before its window is shown.
        wait_for("the window", self.shown_windows, self._seen_instead)
        wait_for("the window's name", lambda: self.seen("window") == "Tarvio")

    def stop(self):
        status = super().stop()
        self._profile.cleanup()
        return status

    def _seen_instead(self):
        windows = subprocess.run(["xwininfo", "-root", "-tree"], stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, text=True, check=False).stdout
        return f"exit status: {self.process.poll()}, it said:\n{self.output()}\n{windows}"

    def seen(self, *question):
        """What a screen reader is told now, see screen_reader.py; empty without an answer."""
        command = [sys.executable, HERE / "screen_reader.py", str(self.process.pid)]
        return subprocess.run([*command, *map(str, question)], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, text=True, check=False).stdout.rstrip("\n")

    def message(self):
        """What the status bar says."""
        return self.seen("message")

    def link_state(self):
        return self.seen("link")

    def first_row_of(self, rows, columns):
        """The texts in the first row of the table of this size."""
        return self.seen("table", rows, columns).split("\n")

    @staticmethod
    def shown_windows():
        """The main windows on the screen."""
        return subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Tarvio$"],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True,
                              check=False).stdout.split()

    def all_shown(self):
        """Its windows on the screen, menus and tool tips among them."""
        return set(subprocess.run(["xdotool", "search", "--onlyvisible", "--pid",
                                   str(self.process.pid)], stdout=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL, text=True, check=False).stdout.split())

    def type(self, *keys):
        """Presses keys in the main window, where each but the last opens a menu."""
        subprocess.run(["xdotool", "windowfocus", "--sync", self.shown_windows()[0]], check=True)
        for key in keys[:-1]:
            before = self.all_shown()
            subprocess.run(["xdotool", "key", key], check=True)
            # Before it is open its mnemonics do not count.
            wait_for(f"a menu after {key}", lambda shown=before: self.all_shown() - shown)
        subprocess.run(["xdotool", "key", keys[-1]], check=True)

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", path], check=True)

    def picture_of_light(self, path, height):
        """The lowest part of the window, while the pointer rests on the light."""
        window, *_ = output_of("xdotool", "search", "--all", "--onlyvisible", "--pid",
                              str(self.process.pid), "--name", "^Tarvio$").split()
        wide, high = geometry(window)
        screen_wide, screen_high = map(int, output_of("xdotool", "getdisplaygeometry").split())
        # In the corner of the screen, so that the tool tip finds no room beside the window; and
        # active, because no other window's is shown.
        output_of("xdotool", "windowmove", "--sync", window, str(screen_wide - wide),
                  str(screen_high - high))
        output_of("xdotool", "windowfocus", "--sync", window)
        before = self.all_shown()

        def rest_on_light():
            for step in (80, 60, 36):
                output_of("xdotool", "mousemove", str(screen_wide - step), str(screen_high - 14))
                time.sleep(0.2)

        repeat("the tool tip", rest_on_light, lambda: self.all_shown() - before)
        time.sleep(0.5)  # until it is painted
        output_of("import", "-window", "root", "-crop",
                  f"{wide}x{height}+{screen_wide - wide}+{screen_high - height}", "+repage", path)
