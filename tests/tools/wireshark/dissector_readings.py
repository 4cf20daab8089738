"""Runs tshark with the dissector, and brings what it reads into the form in which
decoder_readings.h tells what the decoder reads."""
import math
import os
import pathlib
import shutil
import subprocess
import tempfile

DISSECTOR = pathlib.Path(__file__).resolve().parents[3] / "tools/wireshark"
SKIPPED = 77  # the status that ctest counts as skipped

COMMON = ["tarvio.control", "tarvio.measurement", "tarvio.freespace", "tarvio.sensor",
          "tarvio.error", "_ws.lua.error", "_ws.expert.message", "udp.length"]
MARKS = ["tarvio." + name for name in (
    "malformed", "bad_checksum", "unknown_command", "out_of_range", "block_cut", "refused",
    "stray", "unasked", "late", "unanswered", "ignored", "replaced", "capture_cut")]
CONTROL = ["tarvio.control." + name for name in (
    "reply", "command", "access", "sensor_id", "payload", "status", "checksum", "checksum_good",
    "response_in", "response_to", "time", "step_count", "step.active_mask", "step.passive_mask",
    "step.modulation", "step.code", "step.fifth_value", "thresholds.sensor_id",
    "segment.time_index", "segment.level_index", "segment.duration_us", "segment.level",
    "segment.level_db", "thresholds.scale", "firmware_version", "network.ecu_address",
    "network.ecu_subnet_mask", "network.ecu_gateway", "network.host_address",
    "network.receiving_port", "network.control_port", "network.freespace_port", "position.x_mm",
    "position.y_mm", "position.height_mm", "position.yaw", "position.pitch", "position.roll",
    "position.yaw_deg", "position.pitch_deg", "position.roll_deg", "calibration_state")]
MEASUREMENT = ["tarvio.measurement." + name for name in (
    "word", "send_mask", "receive_mask", "block_count", "sensor_id", "role", "echo_count",
    "echo.raw_time", "echo.time_us", "echo.magnitude", "echo.magnitude_db", "echo.level",
    "echo.second_value")]
FREESPACE = ["tarvio.freespace." + name for name in (
    "entry_count", "sensor_id", "corner.x_mm", "corner.y_mm", "arc_end.x_mm", "arc_end.y_mm",
    "second_pair.x_mm", "second_pair.y_mm", "position.x_mm", "position.y_mm",
    "position.direction", "position.direction_deg", "absence_flags", "distance.place",
    "distance.mm", "distance.first_point.x_mm", "distance.first_point.y_mm",
    "distance.second_point.x_mm", "distance.second_point.y_mm")]
FIELDS = COMMON + MARKS + CONTROL + MEASUREMENT + FREESPACE
SENSOR_COUNT = 12


def why_not():
    """Why the dissector cannot be tried here; nothing where it can."""
    if not shutil.which("tshark"):
        return "tshark is not installed (packaging/install-packages test)"
    if "Lua" not in tshark("--version"):
        return "this tshark was built without Lua"
    if "tarvio.measurement" not in tshark("-G", "protocols"):
        return "this tshark runs no Lua scripts for this user (run_user_scripts_when_superuser)"
    return None


def tshark(*arguments, plugins=DISSECTOR):
    """Its output. Its personal plugins are the dissector alone, installed as the guide tells."""
    with tempfile.TemporaryDirectory() as folder:
        if plugins:
            shutil.copytree(plugins, pathlib.Path(folder) / "plugins")
        environment = {**os.environ, "WIRESHARK_CONFIG_DIR": folder, "HOME": folder,
                       "LC_ALL": "C.UTF-8", "TZ": "UTC"}
        result = subprocess.run(["tshark", *arguments], env=environment, text=True,
                                encoding="utf-8", capture_output=True, timeout=240, check=False)
    complaints = [line for line in result.stderr.splitlines()
                  if line and "This could be dangerous" not in line]
    if result.returncode != 0 or complaints:
        raise RuntimeError(f"tshark {' '.join(arguments)}: {result.returncode} {complaints}")
    return result.stdout


def dissect(capture, *options):
    """A frame for each packet: field names to lists of texts, in the order of the bytes."""
    wanted = [argument for field in FIELDS for argument in ("-e", field)]
    output = tshark("-r", str(capture), *options, "-T", "fields",
                    "-E", "aggregator=;", *wanted)
    return [Frame(line.split("\t")) for line in output.split("\n")[:-1]]


class Frame:
    """The fields of one packet."""

    def __init__(self, columns):
        self.fields = {name: column.split(";")
                       for name, column in zip(FIELDS, columns, strict=True) if column}

    def texts(self, name):
        return self.fields.get(name, [])

    def numbers(self, name):
        return [number(text) for text in self.texts(name)]

    def text(self, name):
        return ";".join(self.texts(name))

    def __contains__(self, name):
        return name in self.fields

    def marks(self):
        return {name.split(".")[1] for name in MARKS if name in self}


def number(text):
    if text.startswith("0x"):
        return int(text, 16)
    return float(text) if "." in text or "e" in text else int(text)


def groups(values, sizes):
    """Cuts a list into pieces; nothing may be left."""
    pieces, at = [], 0
    for size in sizes:
        pieces.append(values[at:at + size])
        at += size
    assert at == len(values), (len(values), sizes)
    return pieces


def shown(numbers):
    """Sensors as the window numbers them."""
    return [number + 1 for number in numbers if number < SENSOR_COUNT]


def rows(frame, prefix, names):
    return [list(row) for row in zip(*(frame.numbers(prefix + name) for name in names),
                                     strict=True)]


def measurement(frame):
    prefix = "tarvio.measurement."
    echoes = groups(rows(frame, prefix, ("echo.time_us", "echo.magnitude", "echo.magnitude_db",
                                         "echo.level", "echo.second_value")),
                    frame.numbers(prefix + "echo_count"))
    for raw, time in rows(frame, prefix, ("echo.raw_time", "echo.time_us")):
        assert time == raw * 512 // 10 % 65536, (raw, time)
    roles = iter(frame.numbers(prefix + "role"))
    sensors = {}
    for sensor, heard in zip(frame.numbers(prefix + "sensor_id"), echoes, strict=True):
        role = next(roles) if sensor < SENSOR_COUNT else 0
        if heard:
            sensors[str(sensor)] = [role, *heard]
    [word], [send], [receive] = (frame.numbers(prefix + name)
                                 for name in ("word", "send_mask", "receive_mask"))
    return {"word": word, "send": send, "receive": receive, "sensors": sensors}


def freespace(frame):
    prefix = "tarvio.freespace."

    def points(name):
        return rows(frame, prefix + name, (".x_mm", ".y_mm"))

    ids = frame.numbers(prefix + "sensor_id")
    present = [3 - (flags & 7).bit_count() for flags in frame.numbers(prefix + "absence_flags")]
    positions = rows(frame, prefix + "position", (".x_mm", ".y_mm", ".direction"))
    degrees = frame.numbers(prefix + "position.direction_deg")
    # The last entry alone can come without a position.
    positions += [[0, 0, 0]] * (len(ids) - len(positions))
    degrees += [0] * (len(ids) - len(degrees))
    distances = [[place, distance, first, second] for place, distance, first, second in zip(
        frame.numbers(prefix + "distance.place"), frame.numbers(prefix + "distance.mm"),
        points("distance.first_point"), points("distance.second_point"), strict=True)]
    entries = zip(ids, groups(points("corner"), [4] * len(ids)),
                  groups(points("arc_end"), [2] * len(ids)),
                  groups(points("second_pair"), [2] * len(ids)), positions, degrees,
                  groups(distances, present), strict=True)
    names = ("sensor", "corners", "arcEnds", "secondPair", "position", "degrees", "distances")
    return {"entries": [dict(zip(names, entry)) for entry in entries]}


def control_record(frame):
    """The record in a request or a reply, whatever its kind."""
    prefix = "tarvio.control."
    record = {}
    for name, field in (("sensor", "sensor_id"), ("sensor", "thresholds.sensor_id"),
                        ("scale", "thresholds.scale"), ("stepCount", "step_count"),
                        ("state", "calibration_state")):
        for value in frame.numbers(prefix + field):
            record[name] = value
    if prefix + "firmware_version" in frame:
        record["firmware"] = frame.text(prefix + "firmware_version")
    lists = {
        "segments": rows(frame, prefix + "segment.",
                         ("time_index", "level_index", "duration_us", "level", "level_db")),
        "steps": rows(frame, prefix + "step.",
                      ("active_mask", "passive_mask", "modulation", "code", "fifth_value")),
        "positions": rows(frame, prefix + "position.",
                          ("x_mm", "y_mm", "height_mm", "yaw", "pitch", "roll",
                           "yaw_deg", "pitch_deg", "roll_deg")),
        "addresses": [frame.text(prefix + "network." + name) for name in (
            "ecu_address", "ecu_subnet_mask", "ecu_gateway", "host_address")
                      if prefix + "network." + name in frame],
        "ports": [value for name in ("receiving_port", "control_port", "freespace_port")
                  for value in frame.numbers(prefix + "network." + name)],
    }
    record |= {name: values for name, values in lists.items() if values}
    return record | {"steps": lists["steps"]} if "stepCount" in record else record


def equal(left, right):
    """Numbers agree to six digits: the decoder's tables hold floats."""
    if isinstance(left, dict) and isinstance(right, dict):
        return left.keys() == right.keys() and all(equal(left[key], right[key]) for key in left)
    if isinstance(left, list) and isinstance(right, list):
        return len(left) == len(right) and all(map(equal, left, right))
    if isinstance(left, float) or isinstance(right, float):
        return math.isclose(left, right, rel_tol=1e-6)
    return left == right
