"""What the system says of a running process."""
from dataclasses import dataclass
import pathlib
import re


@dataclass(frozen=True)
class ProcessState:
    resident_mb: float
    descriptors: int
    threads: int


def state_of(pid):
    folder = pathlib.Path(f"/proc/{pid}")
    status = (folder / "status").read_text(encoding="utf-8")
    return ProcessState(int(re.search(r"VmRSS:\s+(\d+) kB", status)[1]) / 1024,
                        len(list((folder / "fd").iterdir())),
                        int(re.search(r"Threads:\s+(\d+)", status)[1]))


def udp_ports(pid):
    """The ports of the UDP sockets that the process holds."""
    links = [str(link.readlink()) for link in pathlib.Path(f"/proc/{pid}/fd").iterdir()]
    inodes = {link[len("socket:["):-1] for link in links if link.startswith("socket:[")}
    ports = set()
    for line in pathlib.Path("/proc/net/udp").read_text(encoding="utf-8").splitlines()[1:]:
        fields = line.split()
        if fields[9] in inodes:
            ports.add(int(fields[1].split(":")[1], 16))
    return ports
