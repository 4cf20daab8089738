#!/usr/bin/env python3
"""What the dissector says of real traffic between tarvioctl and the simulated ECU on loopback.

usage: test_dissector_on_real_traffic.py TARVIOCTL SIMULATOR
"""
import base64
import pathlib
import re
import struct
import sys
import tempfile
import unittest

import dissector_readings as readings
import recorded_traffic as traffic

SIMULATOR, TARVIOCTL = sys.argv.pop(), sys.argv.pop()

FAULTS = {"malformed", "bad_checksum", "unknown_command", "out_of_range", "block_cut", "refused",
          "stray", "unasked", "late", "unanswered", "ignored"}


class DissectorOnRealTraffic(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def control(self, commands, *options):
        path, port = traffic.control_traffic(SIMULATOR, options, commands, self.folder)
        frames = readings.dissect(path, "-o", f"tarvio.control_port:{port}")
        self.assertGreater(len(frames), 0)
        return frames

    def info(self, *options):
        """One command against an ECU with a fault."""
        return self.control([[TARVIOCTL, "info"]], *options)

    def streams(self, *options, **wanted):
        path, receive, freespace = traffic.stream_traffic(SIMULATOR, TARVIOCTL, options, self.folder,
                                                          **wanted)
        frames = readings.dissect(path, "-o", f"tarvio.receiving_port:{receive}",
                                  "-o", f"tarvio.freespace_port:{freespace}")
        measurements = [frame for frame in frames if "tarvio.measurement" in frame]
        freespaces = [frame for frame in frames if "tarvio.freespace" in frame]
        # Wireshark hands out no datagram without bytes.
        empty = [frame for frame in frames if frame.numbers("udp.length") == [8]]
        self.assertEqual(len(measurements) + len(freespaces) + len(empty), len(frames))
        self.assertGreater(len(measurements), 1)
        self.assertGreater(len(freespaces), 1)
        return measurements, freespaces

    def test_configuration_reads_as_the_settings_file_has_it(self):
        file = self.folder / "car.orv"
        frames = self.control([[TARVIOCTL, "read", file]])
        text = file.read_text(encoding="utf-8")
        records = [readings.control_record(frame) for frame in frames
                   if frame.text("tarvio.control.reply") == "1"]

        positions = base64.b64decode(re.search(r"<MountPositions><!\[CDATA\[(.*?)\]", text)[1])
        [read] = [record["positions"] for record in records if "positions" in record]
        self.assertEqual([tuple(row[:6]) for row in read],
                         list(struct.iter_unpack("<hhHHHH", positions)))

        sensors = re.findall(r'<Sensor id="\d+"><!\[CDATA\[(.*?)\]', text)
        read = [[record["sensor"], *(row[0] << 5 | row[1] for row in record["segments"]),
                 record["scale"]] for record in records if "segments" in record]
        self.assertEqual(read, [list(base64.b64decode(sensor)) for sensor in sensors])

        steps = re.findall(r'<Step id="\d+"><!\[CDATA\[(.*?)\]', text)
        [read] = [record["steps"] for record in records if "steps" in record]
        self.assertEqual([tuple(step) for step in read],
                         [struct.unpack("<5H", base64.b64decode(step)) for step in steps])

    def test_writing_what_was_read_shows_requests_and_replies_in_pairs(self):
        file = self.folder / "car.orv"
        frames = self.control([[TARVIOCTL, "read", file], [TARVIOCTL, "write", file, "--verify"],
                               [TARVIOCTL, "info"]])
        requests = [index for index, frame in enumerate(frames)
                    if frame.text("tarvio.control.reply") == "0"]
        replies = [frame for frame in frames if frame.text("tarvio.control.reply") == "1"]
        self.assertGreater(len(requests), 30)
        self.assertEqual([frame.numbers("tarvio.control.response_to")[0] - 1 for frame in replies],
                         requests)
        for frame in frames:
            # Late on a busy machine is late.
            self.assertFalse(frame.marks() & FAULTS - {"late"}, frame.fields)
            self.assertEqual(frame.text("tarvio.control.checksum_good"), "1")
        for frame in replies:
            [time] = frame.numbers("tarvio.control.time")
            self.assertGreaterEqual(time, 0)
            self.assertEqual("late" in frame.marks(), time > 0.5, time)

    def test_firmware_and_network_settings_are_those_that_info_tells(self):
        records = [readings.control_record(frame) for frame in self.info()
                   if frame.text("tarvio.control.reply") == "1"]
        self.assertIn({"firmware": "2.14.0"}, records)
        [network] = [record for record in records if "ports" in record]
        self.assertEqual(network["addresses"][0], "127.0.0.1")
        self.assertEqual(network["addresses"][3], "127.0.0.1")
        self.assertEqual([network["ports"][0], network["ports"][2]], [50001, 50003])

    def test_walls_at_two_metres_stand_at_two_metres(self):
        measurements, freespaces = self.streams("--scene", "wall", "--wall-distance", "2000")
        for frame in measurements:
            self.assertFalse(frame.marks() & FAULTS, frame.fields)
            [sending] = [echoes for echoes in readings.measurement(frame)["sensors"].values()
                         if echoes[0] == 1]
            # 4 m there and back take 11.66 ms at 343 m/s.
            self.assertAlmostEqual(sending[1][0], 11662, delta=200)
        for frame in freespaces:
            self.assertFalse(frame.marks() & FAULTS, frame.fields)
            entries = readings.freespace(frame)["entries"]
            self.assertEqual([entry["sensor"] for entry in entries], list(range(12)))
            self.assertEqual(frame.numbers("tarvio.sensor"), list(range(1, 13)))
            self.assertTrue(all(entry["distances"][1][:2] == [1, 2000] for entry in entries))

    def test_wrong_checksum_is_marked(self):
        frames = self.info("--corrupt-replies", "1")
        self.assertEqual(frames[1].text("tarvio.error"), "checksum error")
        self.assertIn("bad_checksum", frames[1].marks())
        self.assertEqual(frames[1].numbers("tarvio.control.response_to"), [1])

    def test_late_reply_is_marked(self):
        path, port = traffic.control_traffic(
            SIMULATOR, ["--delay-replies", "1", "--delay-ms", "700"], [[TARVIOCTL, "info"]],
            self.folder)
        frames = readings.dissect(path, "-o", f"tarvio.control_port:{port}")
        self.assertIn("late", frames[1].marks())
        self.assertGreater(frames[1].numbers("tarvio.control.time")[0], 0.69)

    def test_stray_reply_is_no_answer_and_the_one_behind_it_is(self):
        frames = self.info("--stray-replies", "1")
        self.assertEqual(frames[1].text("tarvio.error"), "wrong reply type")
        self.assertIn("stray", frames[1].marks())
        self.assertNotIn("tarvio.control.response_to", frames[1])
        self.assertEqual(frames[2].numbers("tarvio.control.response_to"), [1])

    def test_second_copy_of_a_reply_is_unasked(self):
        frames = self.info("--duplicate-replies", "1")
        copies = [frame for frame in frames if "unasked" in frame.marks()]
        self.assertTrue(copies)
        self.assertTrue(all("tarvio.control.response_to" not in frame for frame in copies))

    def test_refusal_is_told_as_tarvio_does(self):
        frames = self.info("--status", "2=3")
        self.assertEqual(frames[1].text("tarvio.error"), "ECU error (3)")
        self.assertIn("refused", frames[1].marks())

    def test_request_without_a_reply_is_marked_once_the_capture_is_known(self):
        path, port = traffic.control_traffic(SIMULATOR, ["--drop-replies", "1"],
                                             [[TARVIOCTL, "info"]], self.folder, timeout_ms=500)
        frames = readings.dissect(path, "-2", "-o", f"tarvio.control_port:{port}")
        self.assertIn("unanswered", frames[0].marks())

    def test_damaged_streams_are_marked(self):
        measurements, freespaces = self.streams("--corrupt-stream", "0.5", "--rate", "200",
                                                packets=200)
        dropped = [frame for frame in freespaces
                   if frame.text("tarvio.error") == "wrong datagram format"]
        self.assertTrue(dropped)
        self.assertTrue(any(frame.marks() & FAULTS for frame in measurements))

    def test_port_that_is_not_set_is_left_to_others(self):
        path, _ = traffic.control_traffic(SIMULATOR, [], [[TARVIOCTL, "info"]], self.folder)
        frames = readings.dissect(path)
        self.assertTrue(all(not frame.fields.keys() - {"udp.length"} for frame in frames))

    def test_connection_chosen_by_hand_is_read(self):
        path, port = traffic.control_traffic(SIMULATOR, [], [[TARVIOCTL, "info"]], self.folder)
        frames = readings.dissect(path, "-d", f"udp.port=={port},tarvio.control")
        self.assertEqual([frame.text("tarvio.control.reply") for frame in frames[:4]],
                         ["0", "1", "0", "1"])
        self.assertEqual(frames[3].numbers("tarvio.control.response_to"), [3])

    def test_what_the_capture_holds_only_in_part_is_not_judged(self):
        path = self.folder / "short.pcap"
        capture = traffic.Capture(path, longest=60)
        capture.write(50002, 50001, bytes(8) + b"\x01\x00\x0a" + bytes(40))
        capture.write(50002, 50001, bytes(8) + b"\x00")
        capture.close()
        cut, whole = readings.dissect(path)
        self.assertEqual(cut.marks(), {"capture_cut"})
        self.assertNotIn("tarvio.error", cut)
        self.assertEqual((whole.marks(), whole.numbers("tarvio.measurement.block_count")),
                         (set(), [0]))

    def test_script_works_without_being_installed(self):
        path, port = traffic.control_traffic(SIMULATOR, [], [[TARVIOCTL, "info"]], self.folder)
        entry = readings.DISSECTOR / "tarvio.lua"
        output = readings.tshark("-X", f"lua_script:{entry}", "-o", f"tarvio.control_port:{port}",
                                 "-r", str(path), plugins=None)
        self.assertIn("TARVIO 30 Request: read firmware version", output)
        self.assertIn("TARVIO 34 Reply: read firmware version", output)


if __name__ == "__main__":
    reason = readings.why_not()
    if reason:
        print(f"skipped: {reason}")
        sys.exit(readings.SKIPPED)
    unittest.main()
