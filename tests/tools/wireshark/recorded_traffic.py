"""Real traffic of the simulated ECU in capture files, made without rights to capture: a relay
stands between tarvioctl and the ECU and writes down what passes; tarvioctl records the streams."""
import pathlib
import re
import socket
import struct
import subprocess
import threading
import time

LOOPBACK = "127.0.0.1"
RAW_IPV4 = 101


class Capture:
    """A pcap file of UDP datagrams on loopback."""

    def __init__(self, path, longest=65535):
        self.longest = longest  # of what is kept of a packet
        self.file = open(path, "wb")
        self.file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 65535, RAW_IPV4))

    def write(self, source_port, destination_port, payload):
        seconds, nanoseconds = divmod(time.time_ns(), 10**9)
        address = socket.inet_aton(LOOPBACK)
        udp = struct.pack(">HHHH", source_port, destination_port, 8 + len(payload), 0) + payload
        packet = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(udp), 0, 0, 64, 17, 0, address,
                             address) + udp
        kept = packet[:self.longest]
        self.file.write(struct.pack("<IIII", seconds, nanoseconds // 1000, len(kept),
                                    len(packet)) + kept)

    def close(self):
        self.file.close()


class Relay:
    """Stands where a client looks for the ECU; one client at a time."""

    def __init__(self, ecu_port, capture):
        self.capture = capture
        self.ecu_port = ecu_port
        self.to_clients = self.bound_socket()
        self.to_ecu = self.bound_socket()
        self.to_ecu.connect((LOOPBACK, ecu_port))
        self.port = self.to_clients.getsockname()[1]
        self.client = None
        self.ended = threading.Event()
        self.threads = [threading.Thread(target=run) for run in (self.requests, self.replies)]
        for thread in self.threads:
            thread.start()

    @staticmethod
    def bound_socket():
        endpoint = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        endpoint.bind((LOOPBACK, 0))
        endpoint.settimeout(0.05)
        return endpoint

    def requests(self):
        while not self.ended.is_set():
            try:
                request, self.client = self.to_clients.recvfrom(2048)
            except TimeoutError:
                continue
            self.capture.write(self.client[1], self.port, request)
            self.to_ecu.send(request)

    def replies(self):
        while not self.ended.is_set():
            try:
                reply = self.to_ecu.recv(2048)
            except TimeoutError:
                continue
            self.capture.write(self.port, self.client[1], reply)
            self.to_clients.sendto(reply, self.client)

    def end(self):
        self.ended.set()
        for thread in self.threads:
            thread.join()
        self.to_clients.close()
        self.to_ecu.close()
        self.capture.close()


class SimulatedEcu:
    """The process, which ends with the block."""

    def __init__(self, program, *options):
        self.command = [program, "--control-port", "0", *options]

    def __enter__(self):
        self.process = subprocess.Popen(self.command, stdout=subprocess.PIPE, text=True)
        self.control_port = int(re.search(r":(\d+)$", self.process.stdout.readline()).group(1))
        return self

    def __exit__(self, *failure):
        self.process.terminate()
        self.process.communicate()


def free_ports(count):
    """Of UDP, all different."""
    sockets = [Relay.bound_socket() for _ in range(count)]
    ports = [endpoint.getsockname()[1] for endpoint in sockets]
    for endpoint in sockets:
        endpoint.close()
    return ports


def control_traffic(simulator, options, commands, folder, timeout_ms=10000):
    """Runs tarvioctl commands against an ECU, which a busy machine may keep from answering for long;
    the capture of it, and its control port. What the commands say does not matter: with most faults
    they fail."""
    path = pathlib.Path(folder) / "control.pcap"
    with SimulatedEcu(simulator, "--streams", "off", *options) as ecu:
        relay = Relay(ecu.control_port, Capture(path))
        try:
            for command in commands:
                subprocess.run([*command, "--ecu", LOOPBACK, "--control-port", str(relay.port),
                                "--timeout", str(timeout_ms)],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False,
                               timeout=600)
        finally:
            relay.end()
    return path, relay.port


def packets_in(path):
    """How many packets the capture holds."""
    data = path.read_bytes()
    at, count = 24, 0
    while at < len(data):
        at += 16 + struct.unpack_from("<I", data, at + 8)[0]
        count += 1
    return count


def stream_traffic(simulator, tarvioctl, options, folder, packets=30):
    """What tarvioctl records of the live streams, some packets at the least; the capture, and the
    two ports."""
    path = pathlib.Path(folder) / "streams.pcap"
    receive_port, freespace_port = map(str, free_ports(2))
    with SimulatedEcu(simulator, "--receive-port", receive_port, "--fsp-port", freespace_port,
                      *options):
        # A busy machine needs longer for them.
        for seconds in (1, 5, 30):
            result = subprocess.run(
                [tarvioctl, "record", path, "--seconds", str(seconds), "--ecu", LOOPBACK,
                 "--receive-port", receive_port, "--fsp-port", freespace_port],
                check=False, timeout=600, stdout=subprocess.DEVNULL)
            if result.returncode == 0 and packets_in(path) >= packets:
                return path, receive_port, freespace_port
    raise RuntimeError(f"status {result.returncode}, {packets_in(path)} of {packets} packets")
