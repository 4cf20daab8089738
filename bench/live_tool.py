"""The program as it runs at a car, and the datagrams of a busy scene for it."""
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests" / "whole_run"))
import programs  # noqa: E402

SENSORS = 12


def measurement(number, marks):
    """A full record whose sender mask holds the number's low bits."""
    senders = number % (1 << marks)
    datagram = struct.pack("<IHHB", number, senders, 0x0FFF, SENSORS)
    for sensor in range(SENSORS):
        datagram += struct.pack("<BB", sensor, 5)
        for echo in range(5):
            raw = 60 + 80 * echo + number % 20
            datagram += struct.pack("<HBB", raw, 3 * echo + 3, 0)
    return datagram


def freespace(number):
    datagram = struct.pack("<B", SENSORS)
    for sensor in range(SENSORS):
        x, reach = 300 * sensor - 1800, 1000 + number % 500
        points = [(x, 0), (x - 300, reach), (x + 300, reach), (x, 100),
                  (x - 100, reach), (x + 100, reach), (0, 0), (0, 0)]
        datagram += struct.pack("<B", sensor)
        datagram += b"".join(struct.pack("<hh", *point) for point in points)
        datagram += struct.pack("<hhHB", x, 0, 16384, 0)
        for item in range(3):
            datagram += struct.pack("<Hhhhh", reach, x + item * 50, reach, x + 50, reach)
    return datagram


def network_store(profile, control=46001, receive=46002, fsp=46003):
    """A settings store that knows of this machine alone."""
    store = pathlib.Path(profile) / "maltrex" / "tarvio.ini"
    store.parent.mkdir()
    store.write_text("[network]\necu_ip=127.0.0.1\n"
                     f"control_port={control}\nreceive_port={receive}\nfsp_port={fsp}\n",
                     encoding="utf-8")


class Tool:
    """Tarvio against a simulated ECU, with settings of its own, capture on."""

    def __init__(self, build, size=None, streaming=("--streams", "off")):
        """Its window is as large as it opens, or of the given size. Unless its options say
        otherwise, the ECU only answers."""
        self.ports = [programs.free_port() for _ in range(3)]
        self._ecu_command = [build / "tools/ecu_simulator/tarvio-ecu-simulator", *self.ports,
                             *streaming]
        self.ecu = programs.Simulator(*self._ecu_command)
        self._profile = tempfile.TemporaryDirectory()
        network_store(self._profile.name, *self.ports)
        self.tarvio = programs.Program([build / "app/tarvio"],
                                       {"XDG_CONFIG_HOME": self._profile.name,
                                        "XDG_RUNTIME_DIR": self._profile.name})
        self._window = self._windows("--sync", "--name", "^Tarvio$")[0]
        self._do("windowmove", self._window, "0", "0")
        if size:
            self._do("windowsize", "--sync", self._window, *map(str, size))
        self._do("windowfocus", "--sync", self._window)
        time.sleep(1)
        self.toggle_capture()

    @property
    def window(self):
        """The main window's number."""
        return int(self._window)

    def toggle_capture(self):
        self._choose("c")

    def read_all(self):
        """Reads the whole configuration, says yes to the question, and closes what is told."""
        self._choose("Down", "Return")
        self._answer_dialogs("Return")
        time.sleep(1)
        self._answer_dialogs("Escape")

    def restart_ecu(self):
        self.ecu.stop()
        self.ecu = programs.Simulator(*self._ecu_command)

    def _choose(self, *keys):
        """An action of the ECU menu."""
        self._do("windowfocus", "--sync", self._window)
        for key in ("alt+c", *keys):
            self._do("key", key)
            time.sleep(0.5)

    def _answer_dialogs(self, key):
        for window in self._windows("--class", "tarvio"):
            if window != self._window:
                # Such a window may be gone by itself meanwhile.
                subprocess.run(["xdotool", "windowfocus", window, "key", key],
                               stderr=subprocess.DEVNULL, check=False)
                time.sleep(0.3)

    @staticmethod
    def _windows(*criteria):
        return subprocess.run(["xdotool", "search", "--onlyvisible", *criteria],
                              stdout=subprocess.PIPE, text=True, check=True).stdout.split()

    @staticmethod
    def _do(*arguments):
        subprocess.run(["xdotool", *arguments], check=True)

    def cpu_seconds(self):
        fields = pathlib.Path(f"/proc/{self.tarvio.process.pid}/stat").read_text()
        user, system = fields.rpartition(")")[2].split()[11:13]
        return (int(user) + int(system)) / os.sysconf("SC_CLK_TCK")

    def signal(self, number):
        self.tarvio.process.send_signal(number)

    def stop(self):
        self.tarvio.stop()
        self.ecu.stop()
