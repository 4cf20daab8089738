"""A virtual screen whose pixels can be read while programs draw on it."""
import contextlib
import mmap
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile


class Screen:
    """The pixels of a virtual screen, read where its server keeps them."""

    def __init__(self, folder, width, height):
        self.width, self.height = width, height
        self._file = open(pathlib.Path(folder) / "Xvfb_screen0", "rb")
        self._memory = mmap.mmap(self._file.fileno(), 0, access=mmap.ACCESS_READ)
        header = struct.unpack(">25I", self._memory[:100])
        self._bytes_per_line = header[12]
        self._pixels = header[0] + 12 * header[19]

    def pixel(self, x, y):
        at = self._pixels + y * self._bytes_per_line + 4 * x
        blue, green, red, _ = self._memory[at:at + 4]
        return red, green, blue

    def row(self, y):
        start = self._pixels + y * self._bytes_per_line
        return self._memory[start:start + 4 * self.width]


@contextlib.contextmanager
def virtual_screen(width, height):
    """Programs that are started meanwhile draw on it."""
    if not shutil.which("Xvfb"):
        sys.exit("Xvfb is not there: packaging/install-packages display")
    with tempfile.TemporaryDirectory() as folder:
        read_end, write_end = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{width}x{height}x24", "-fbdir",
             folder, "-nolisten", "tcp", "-noreset"], pass_fds=[write_end],
            stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as numbers:
            os.environ["DISPLAY"] = ":" + numbers.readline().strip()
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        try:
            yield Screen(folder, width, height)
        finally:
            server.terminate()
            server.wait()
