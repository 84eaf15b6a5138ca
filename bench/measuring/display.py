"""A virtual display whose frame buffer is read directly, so that looking at it costs next to nothing."""

import mmap
import os
import shutil
import struct
import subprocess
import tempfile
from pathlib import Path


class Display:
    """One Xvfb with a 24-bit screen; `name` is what DISPLAY takes."""

    def __init__(self, width=1280, height=1024):
        self._folder = tempfile.mkdtemp(prefix="bench-display.")
        reader, writer = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24", "-fbdir", self._folder,
             "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.name = f":{number}"
        self._map()

    def _map(self):
        """Maps the screen: an XWD file, whose header is a row of big-endian 32-bit words and a colour table."""
        with open(Path(self._folder) / "Xvfb_screen0", "rb") as file:
            self._memory = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        words = struct.unpack(">25I", self._memory[:100])
        header_size, colours = words[0], words[19]
        self.width, self.height = words[4], words[5]
        self._stride = words[12]
        self._first = header_size + colours * 12

    def pixel(self, x, y):
        """The colour at a place as (red, green, blue)."""
        start = self._first + y * self._stride + x * 4
        blue, green, red = self._memory[start:start + 3]
        return red, green, blue

    def share(self, colour, step=64):
        """How much of the screen has the colour, from 0 to 1, by a coarse grid of places."""
        places = [(x, y) for x in range(step // 2, self.width, step) for y in range(step // 2, self.height, step)]
        return sum(self.pixel(x, y) == colour for x, y in places) / len(places)

    def close(self):
        self._memory.close()
        self._server.terminate()
        self._server.wait()
        shutil.rmtree(self._folder, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
