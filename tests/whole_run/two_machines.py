"""Two machines that exist in network namespaces alone, joined by a cable: this one, where Tarvio
runs, and the car's, where the ECU is. Nothing leaves them.

A program that uses this module runs below a namespace() of its own: as root, or as anybody where the
system lets users make them.
"""
import subprocess

HOST = "192.168.1.2"
CAR = "192.168.1.3"


def namespace():
    """The command below which another one has a network of its own; nothing where that is not
    possible."""
    for command in (["unshare", "--net"], ["unshare", "--map-root-user", "--net"]):
        if subprocess.run([*command, "true"], stderr=subprocess.DEVNULL,
                          check=False).returncode == 0:
            return command
    return None


def run(*command):
    subprocess.run(command, check=True)


class TwoMachines:
    """Joined when it is made; the car's machine ends with end()."""

    def __init__(self, host_address=HOST):
        run("ip", "link", "set", "lo", "up")
        self.car = subprocess.Popen(["unshare", "--net", "sh", "-c", "echo; exec sleep infinity"],
                                    stdout=subprocess.PIPE)
        self.car.stdout.readline()
        run("ip", "link", "add", "eth0", "type", "veth", "peer", "name", "eth0", "netns",
            str(self.car.pid))
        run("ip", "address", "add", f"{host_address}/24", "dev", "eth0")
        run("ip", "link", "set", "eth0", "up")
        run(*self.in_car("ip", "address", "add", f"{CAR}/24", "dev", "eth0"))
        self.plug_cable()

    def in_car(self, *command):
        """A command that runs on the car's machine."""
        return ["nsenter", "--net", "--target", str(self.car.pid), *command]

    def plug_cable(self):
        run(*self.in_car("ip", "link", "set", "eth0", "up"))

    def pull_cable(self):
        run(*self.in_car("ip", "link", "set", "eth0", "down"))

    def raise_firewall(self, lets_answers_in):
        """Desktops have one that lets in what was asked for, and nothing else."""
        self.nft("table inet firewall")
        self.nft("chain inet firewall input { type filter hook input priority 0; }")
        if lets_answers_in:
            self.nft("rule inet firewall input ct state established accept")
        self.nft("rule inet firewall input iif eth0 drop")

    @staticmethod
    def nft(what):
        run("nft", "add", *what.split())

    def end(self):
        self.car.kill()
        self.car.communicate()
        subprocess.run(["ip", "link", "delete", "eth0"], stderr=subprocess.DEVNULL, check=False)
