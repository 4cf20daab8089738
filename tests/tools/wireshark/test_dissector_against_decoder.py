#!/usr/bin/env python3
"""Two readings of one format, written apart: the dissector and the decoder have to agree on every
field of random datagrams, and on which of them are wrong.

usage: test_dissector_against_decoder.py WRITE_RANDOM_DATAGRAMS

What the two see differently by design, and what is compared in its place:
- Wireshark hands out no datagram without bytes; there is none here.
- The dissector shows what stands in a datagram that is dropped, the decoder nothing of it: only
  that it is dropped is compared.
- The dissector shows every sensor block, also empty ones and those that a later block replaces; the
  decoder's result is what is left of them.
- A reply that nobody asked for has no record to the decoder; the frame is compared.
- The simulated ECU takes a sequence of no steps, which silences it; the protocol writes 1 to 12.
- A request of a single byte has no code to the dissector, a wrong checksum to the simulated ECU.
- To the simulated ECU a missing access is a wrong one; to the dissector the request is too short.
"""
import collections
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import dissector_readings as readings

PROGRAM = sys.argv.pop(1)

# What the dissector may find where the simulated ECU answers with a status.
MARKS_OF_STATUS = {
    0: set(),
    1: {"bad_checksum"},
    2: {"unknown_command"},
    3: {"malformed"},
    4: {"out_of_range", "malformed"},
    5: {"out_of_range"},
}
REQUEST_FAULTS = {"bad_checksum", "unknown_command", "malformed", "out_of_range"}


def expected_faults(said):
    if said["size"] == 1:
        return {"malformed", "bad_checksum"}
    if said.get("record", {}).get("stepCount") == 0:
        return {"out_of_range"}
    return MARKS_OF_STATUS[said["status"]]


class DissectorAgainstDecoder(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with tempfile.TemporaryDirectory() as folder:
            capture = pathlib.Path(folder) / "random.pcap"
            lines = subprocess.run([PROGRAM, capture], check=True, text=True,
                                   stdout=subprocess.PIPE).stdout.splitlines()
            cls.decoder = [json.loads(line) for line in lines]
            # Twice over the capture, as the window does: requests then know their replies.
            cls.dissector = readings.dissect(capture, "-2")

    def pairs(self, *flows):
        """Number, decoder's and dissector's reading of the datagrams of these flows."""
        self.assertEqual(len(self.decoder), len(self.dissector))
        for index, (said, frame) in enumerate(zip(self.decoder, self.dissector)):
            if said["flow"] in flows:
                yield index + 1, said, frame

    def assert_live_flow_agrees(self, flow, read):
        compared = collections.Counter()
        for index, said, frame in self.pairs(flow):
            accepted = "tarvio.error" not in frame
            self.assertEqual(said["accepted"], accepted, f"frame {index}")
            if accepted:
                record = {name: said[name] for name in said
                          if name not in ("flow", "accepted", "timeUs", "size")}
                self.assertTrue(readings.equal(record, read(frame)),
                                f"frame {index}\n{record}\n{read(frame)}")
                self.assertEqual(frame.numbers("tarvio.sensor"),
                                 readings.shown(frame.numbers(f"tarvio.{flow}.sensor_id")))
            else:
                self.assertEqual(frame.text("tarvio.error"), "wrong datagram format")
                self.assertIn("malformed", frame.marks(), f"frame {index}")
            compared[accepted] += 1
        print(f"{flow}: {compared[True]} accepted, {compared[False]} dropped")
        self.assertGreater(compared[True], 1000)
        self.assertGreater(compared[False], 100)

    def test_measurements_agree(self):
        self.assert_live_flow_agrees("measurement", readings.measurement)

    def test_freespaces_agree(self):
        self.assert_live_flow_agrees("freespace", readings.freespace)

    def test_requests_agree(self):
        compared = collections.Counter()
        for index, said, frame in self.pairs("request"):
            faults = frame.marks() & REQUEST_FAULTS
            expected = expected_faults(said)
            self.assertEqual(bool(expected), bool(faults), f"frame {index}: {said} {faults}")
            self.assertTrue(not expected or expected & faults, f"frame {index}: {said} {faults}")
            self.assertEqual(frame.text("tarvio.control.reply"), "0")
            if "code" in said:
                self.assertEqual(frame.numbers("tarvio.control.command"), [said["code"]])
            if "record" in said:
                read = readings.control_record(frame)
                self.assertTrue(readings.equal(said["record"], read), f"frame {index}\n{said}\n{read}")
            compared[said["status"]] += 1
        print(f"requests by status: {dict(sorted(compared.items()))}")
        self.assertTrue(all(compared[status] > 10 for status in MARKS_OF_STATUS), compared)

    def test_replies_agree(self):
        compared = collections.Counter()
        for index, said, frame in self.pairs("reply"):
            self.assertEqual(frame.text("tarvio.error"), said["error"], f"frame {index}: {said}")
            self.assertEqual("stray" in frame.marks(), said["stray"], f"frame {index}")
            self.assertEqual(frame.text("tarvio.control.reply"), "1")
            if not said["error"]:
                read = readings.control_record(frame)
                self.assertTrue(readings.equal(said["record"], read), f"frame {index}\n{said}\n{read}")
            compared[said["error"].split("(")[0]] += 1
        print(f"replies by error: {dict(sorted(compared.items()))}")
        for error in ("", "checksum error", "wrong reply type", "wrong data size", "ECU error ",
                      "wrong data format", "wrong format", "wrong sensor id",
                      "wrong scale value read from sensor"):
            self.assertGreater(compared[error], 5, error)

    def test_replies_to_nobody_agree(self):
        compared = 0
        for index, said, frame in self.pairs("unasked"):
            self.assertIn("unasked", frame.marks(), f"frame {index}")
            self.assertNotIn("tarvio.control.response_to", frame)
            if "stray" not in said: # what follows the answer belonged to an operation
                self.assertEqual(frame.text("tarvio.error"), said["error"], f"frame {index}")
                compared += 1
        self.assertGreater(compared, 300)

    def test_replies_belong_to_the_requests_that_the_client_took_them_for(self):
        request = None
        answers = {}
        for index, said, frame in self.pairs("request", "reply"):
            if said["flow"] == "request":
                request = (index, said["timeUs"])
                continue
            if said["stray"]:
                self.assertNotIn("tarvio.control.response_to", frame, f"frame {index}")
                continue
            answers[request[0]] = index
            seconds = (said["timeUs"] - request[1]) / 1e6
            self.assertEqual(frame.numbers("tarvio.control.response_to"), [request[0]])
            self.assertAlmostEqual(frame.numbers("tarvio.control.time")[0], seconds, places=6)
            self.assertEqual("late" in frame.marks(), seconds > 0.5, f"frame {index}")
        self.assertGreater(len(answers), 1000)
        self.assert_requests_know(answers)

    def assert_requests_know(self, answers):
        for index, _, _ in self.pairs("request"):
            frame = self.dissector[index - 1]
            expected = [answers[index]] if index in answers else []
            self.assertEqual(frame.numbers("tarvio.control.response_in"), expected)
            self.assertEqual("unanswered" in frame.marks(), not expected)

    def test_no_bytes_disturb_the_dissector(self):
        self.assertGreater(len(self.dissector), 10000)
        protocol = {"measurement": "measurement", "freespace": "freespace"}
        for index, (said, frame) in enumerate(zip(self.decoder, self.dissector)):
            self.assertNotIn("_ws.lua.error", frame, f"frame {index + 1}")
            self.assertIn("tarvio." + protocol.get(said["flow"], "control"), frame)

    def test_what_a_socket_does_not_read_is_told(self):
        longer = 0
        for index, said, frame in self.pairs("measurement", "freespace", "request", "reply"):
            is_longer = said["size"] > 1440
            told = "are not read" in frame.text("_ws.expert.message")
            self.assertEqual(is_longer, told, f"frame {index}")
            longer += is_longer
        self.assertGreater(longer, 20)


if __name__ == "__main__":
    reason = readings.why_not()
    if reason:
        print(f"skipped: {reason}")
        sys.exit(readings.SKIPPED)
    unittest.main()
