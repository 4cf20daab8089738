#!/usr/bin/env python3
"""Provokes each cause for which nothing arrives, as docs/user-guide/first-contact.md has them.

usage: first_contact.py TARVIO TARVIOCTL SIMULATOR [SITUATION...]

Prints what the window and the doctor say in each of these situations, all unless some are named.
"""
import dataclasses
import json
import os
import pathlib
import socket
import subprocess
import sys
import tempfile

import programs
import two_machines

SETTINGS = {"ecu_ip": two_machines.CAR, "ecu_subnet": "255.255.255.0",
            "ecu_gateway": "192.168.1.1", "control_port": 50002, "host_ip": two_machines.HOST,
            "receive_port": 50001, "fsp_port": 50003}
RED = "ECU disconnected."
HALF = "ECU online, but not sending live data."
GREEN = "ECU connected."


@dataclasses.dataclass
class Situation:
    """What is wrong, and the light that it gives."""
    light: str
    ecu: tuple = ()                  # options of the ECU beside its addresses
    settings: dict = dataclasses.field(default_factory=dict)  # that Tarvio has stored
    host_address: str = two_machines.HOST
    is_ecu_on: bool = True
    has_sequence: bool = True
    is_plugged: bool = True
    firewall: str = ""               # "desktop" lets answers in, "wall" nothing
    holder: str = ""                 # who holds a port already: "window", or the port


SITUATIONS = {
    "well": Situation(GREEN),
    "no-cable": Situation(RED, is_plugged=False),
    "ecu-off": Situation(RED, is_ecu_on=False),
    "wrong-subnet": Situation(RED, host_address="10.0.0.2"),
    "wrong-address-and-host": Situation(RED, settings={"ecu_ip": "192.168.1.13"},
                                        ecu=("--host", "192.168.1.7")),
    "wall": Situation(RED, firewall="wall"),
    "wrong-address": Situation(GREEN, settings={"ecu_ip": "192.168.1.13"}),
    "wrong-control-port": Situation(GREEN, ecu=("--control-port", "50012")),
    "other-host": Situation(HALF, ecu=("--host", "192.168.1.7")),
    "other-port": Situation(HALF, ecu=("--receive-port", "50011", "--fsp-port", "0")),
    "no-sequence": Situation(HALF, has_sequence=False),
    "firewall": Situation(HALF, firewall="desktop"),
    "two-windows": Situation(HALF, holder="window"),
    "port-in-use": Situation(GREEN, holder="50001"),
    "no-freespace": Situation(GREEN, ecu=("--fsp-port", "0")),
    "exchanged-ports": Situation(HALF, ecu=("--receive-port", "50003", "--fsp-port", "50001")),
}
HOLD = ("import socket, sys, time; s = socket.socket(socket.AF_INET, socket.SOCK_DGRAM);"
        "s.bind(('', int(sys.argv[1]))); print('held', flush=True); time.sleep(1000)")


NO_STEPS = bytes((0, 0, 0, 0xA0))  # a request to write a sequence of none


class Stage:
    """The two machines in one situation."""

    def __init__(self, situation, tarvio, tarvioctl, simulator):
        self.situation = situation
        self.tarvio, self.tarvioctl = tarvio, tarvioctl
        self.programs = []
        self.machines = two_machines.TwoMachines(situation.host_address)
        if situation.is_ecu_on:
            self.start_ecu(simulator)
        if not situation.has_sequence:
            self.take_sequence()
        if not situation.is_plugged:
            self.machines.pull_cable()
        if situation.firewall:
            self.machines.raise_firewall(lets_answers_in=situation.firewall == "desktop")
        self.hold_ports()

    def start_ecu(self, simulator):
        command = [simulator, "--address", two_machines.CAR, "--host", two_machines.HOST,
                   *self.situation.ecu]
        ecu = programs.Program(self.machines.in_car(*command))
        self.programs.append(ecu)
        programs.wait_for("the ECU", lambda: "listening on " in ecu.output())

    def take_sequence(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as client:
            client.settimeout(programs.WAIT_S)
            client.sendto(NO_STEPS, (two_machines.CAR, 50002))
            assert client.recv(100)[1] == 0, "refused"

    def hold_ports(self):
        holder = self.situation.holder
        if holder == "window":
            self.programs.append(self.first_window())
        elif holder:
            program = programs.Program([sys.executable, "-c", HOLD, holder])
            self.programs.append(program)
            programs.wait_for("the holder", lambda: "held" in program.output())

    # Offscreen, since the screen and its screen reader belong to the second one.
    def first_window(self):
        profile = tempfile.mkdtemp(dir=os.environ["HOME"])
        programs.write_store(pathlib.Path(profile), self.network())
        window = programs.Program([self.tarvio], {"XDG_CONFIG_HOME": profile,
                                                  "QT_QPA_PLATFORM": "offscreen"})
        programs.wait_for("both ports to be held", lambda: all(
            f":{port:04X} " in pathlib.Path("/proc/net/udp").read_text()
            for port in (SETTINGS["receive_port"], SETTINGS["fsp_port"])))
        return window

    def network(self):
        return {**SETTINGS, **self.situation.settings}

    def window(self):
        return programs.Tarvio(self.tarvio, self.network())

    def doctor(self):
        """What `tarvioctl doctor` prints with what Tarvio has stored, while no window is open but
        one that belongs to the situation."""
        network = [f"--{option}={self.network()[key]}" for option, key in (
            ("ecu", "ecu_ip"), ("control-port", "control_port"), ("receive-port", "receive_port"),
            ("fsp-port", "fsp_port"))]
        # An ECU on a busy machine may need longer than the doctor waits otherwise.
        return subprocess.run([self.tarvioctl, "doctor", "--timeout", "2000", *network], text=True,
                              check=False, stdout=subprocess.PIPE).stdout

    def end(self):
        for program in reversed(self.programs):
            program.stop()
        self.machines.end()


# A display and a session bus for each situation: what speaks to screen readers ends with the last
# window, and another one may come too early for the next.
SESSION = ["dbus-run-session", "--", "xvfb-run", "--auto-servernum",
           "--server-args=-screen 0 1280x800x24 -noreset"]
INSIDE = "--inside"
PICTURE_HEIGHT, LINE_HEIGHT = 33, 15  # without its tool tip, and each line of that


def window_in(stage, picture):
    """Tool tip of the light and text of the status bar, once the light is what it will be."""
    window = stage.window()
    light = stage.situation.light

    def text_of_light():
        text = window.link_state()
        return text if text.startswith(light) else ""

    seen = {"light": programs.wait_for(light, text_of_light), "message": window.message()}
    if picture:
        lines = seen["light"].count("\n") + 1
        window.picture_of_light(picture, PICTURE_HEIGHT + lines * LINE_HEIGHT)
    window.stop()
    return seen


def look_inside(binaries, name, picture=None):
    stage = Stage(SITUATIONS[name], *binaries)
    try:
        seen = window_in(stage, picture)
        print(json.dumps({**seen, "doctor": stage.doctor()}))
    finally:
        stage.end()


def look(binaries, name, picture=""):
    """What the window says in a situation, and after it the doctor. A picture of the light and its
    tool tip goes into the file that is named."""
    with tempfile.TemporaryDirectory() as profile:
        places = {place: profile for place in ("HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME",
                                               "XDG_CONFIG_HOME")}
        result = subprocess.run([*two_machines.namespace(), *SESSION, "/usr/bin/python3", "-B",
                                 __file__, *binaries, INSIDE, name, picture], text=True,
                                env={**os.environ, **places}, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, check=False)
    if result.returncode != 0:
        raise RuntimeError(f"{name}: {result.stderr}")
    return json.loads(result.stdout.splitlines()[-1])


def main(binaries, names):
    if not two_machines.namespace():
        sys.exit("no network namespace can be made here")
    for name in names or SITUATIONS:
        seen = look(binaries, name)
        print(f"== {name}", f"light:   {seen['light']}", f"message: {seen['message']}",
              seen["doctor"], sep="\n")


if __name__ == "__main__":
    if sys.argv[4:5] == [INSIDE]:
        look_inside(sys.argv[1:4], *sys.argv[5:])
    else:
        main(sys.argv[1:4], sys.argv[4:])
