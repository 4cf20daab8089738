#!/usr/bin/env python3
"""Runs of the two real programs.

usage: test_programs.py CASE TARVIO SIMULATOR
"""
import os
import sys
import time
import unittest

import programs
from programs import wait_for

CASE, TARVIO, SIMULATOR = sys.argv[1:4]

# What test drivers take for "skipped".
SKIPPED = 77

DEFAULT_ECU_ADDRESS = "192.168.1.3"
CONNECTED = "ECU (re)connected. Firmware version: 2.14.0"
LOST = "Connection to ECU lost"
CONNECTIONS = 4
LOOK_S = 15

WALL_MM = 2000
SPEED_OF_SOUND_M_PER_S = 343
# One unit of the ECU's time of flight.
RESOLUTION_MS = 0.0512


class WholeRun(unittest.TestCase):
    def setUp(self):
        self.ports = [programs.free_port() for _ in range(3)]
        self.simulator = None
        control, receive, fsp = self.ports
        self.tarvio = programs.Tarvio(TARVIO, {"ecu_ip": "127.0.0.1", "control_port": control,
                                               "receive_port": receive, "fsp_port": fsp})

    def tearDown(self):
        self.stop_simulator()
        self.tarvio.stop()

    def start_simulator(self):
        # The first sensor alone: else its table would mostly show what its neighbours sent.
        self.simulator = programs.Simulator(SIMULATOR, *self.ports, "--scene", "wall",
                                            "--wall-distance", str(WALL_MM), "--sensors-missing",
                                            "2,3,4,5,6,7,8,9,10,11,12")

    def stop_simulator(self):
        if self.simulator:
            self.assertEqual(self.simulator.stop(), 0)
            self.simulator = None

    def wait_for_link(self, state):
        wait_for(f"the LED to say {state!r}", lambda: self.tarvio.link_state() == state)

    def wait_for_message(self, text):
        wait_for(f"the message {text!r}", lambda: self.tarvio.message() == text)

    def sees_message_of_connection(self):
        end = time.monotonic() + LOOK_S
        while self.tarvio.message() != CONNECTED:
            if time.monotonic() > end:
                return False
        return True

    def wait_for_message_of_connection(self):
        """It stands for five seconds, in which a busy screen reader may miss it: then for another
        connection."""
        for _ in range(CONNECTIONS):
            if self.sees_message_of_connection():
                return
            self.stop_simulator()
            self.wait_for_message(LOST)
            self.start_simulator()
        self.fail(f"no {CONNECTED!r}")

    def first_echo_ms(self):
        """The time of flight in the echo table's first row; None while it is empty."""
        text = self.tarvio.first_row_of(rows=5, columns=2)[0]
        return float(text) if text else None

    def shows_the_wall(self):
        echo_ms = self.first_echo_ms()
        wall_ms = 2 * WALL_MM / SPEED_OF_SOUND_M_PER_S
        return echo_ms is not None and abs(echo_ms - wall_ms) <= RESOLUTION_MS

    def test_link_comes_up_echoes_are_shown_and_the_link_is_lost_and_found(self):
        self.wait_for_link("ECU disconnected.")
        self.assertEqual(self.tarvio.message(), "")

        self.start_simulator()
        wait_for("the automatic read", lambda: self.simulator.requests("read sensor positions"))
        self.assertEqual(self.simulator.requests("read thresholds"), 12)
        self.wait_for_message_of_connection()
        self.wait_for_link("ECU connected.")

        self.tarvio.type("alt+c", "c")
        wait_for("the wall's echo in the table", self.shows_the_wall)

        self.stop_simulator()
        self.wait_for_message(LOST)
        self.wait_for_link("ECU disconnected.")

        self.start_simulator()
        self.wait_for_message_of_connection()
        self.wait_for_link("ECU connected.")
        self.assertEqual(self.simulator.requests("read thresholds"), 0)

        self.assertEqual(self.tarvio.output(), "", "nothing is expected on standard error")


class FirstStart(unittest.TestCase):
    """Without any settings; the default address has to be one of this machine."""

    def test_first_start_talks_to_the_default_address_and_writes_its_settings(self):
        self.assertTrue(programs.is_own_address(DEFAULT_ECU_ADDRESS),
                        "nothing may be sent to a stranger: run this below tests/in-namespace")
        simulator = programs.Program([SIMULATOR, "--address", DEFAULT_ECU_ADDRESS])
        tarvio = programs.Tarvio(TARVIO, None)
        try:
            wait_for("the connection", lambda: tarvio.link_state() == "ECU connected.")
            wait_for("the settings", tarvio.store.exists)
            text = tarvio.store.read_text()
        finally:
            tarvio.stop()
            simulator.stop()
        section = text.split("[network]")[1].split("[")[0].split()
        self.assertEqual(sorted(section), [
            "control_port=50002", "ecu_gateway=192.168.1.1", "ecu_ip=192.168.1.3",
            "ecu_subnet=255.255.255.0", "host_ip=192.168.1.5", "receive_port=50001"])


if __name__ == "__main__":
    if CASE == FirstStart.__name__ and os.environ.get("TARVIO_NO_NAMESPACE"):
        print(f"skipped: without a network namespace {DEFAULT_ECU_ADDRESS} is no address of this machine; "
              "root may make one, as may whom user namespaces are allowed")
        sys.exit(SKIPPED)
    unittest.main(argv=[sys.argv[0], CASE], verbosity=2)
