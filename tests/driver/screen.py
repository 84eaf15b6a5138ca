"""The screen and the keyboard."""

import contextlib
import os
import re
import shutil
import subprocess
from pathlib import Path

from driver.events import Wrong


def run(*command):
    """Runs a tool and gives back what it prints."""
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode != 0:
        raise Wrong(f"{' '.join(map(str, command))}: {result.stderr.strip() or result.returncode}")
    return result.stdout.strip()


@contextlib.contextmanager
def composited():
    """Shadows and translucency while this lasts, where a compositor is installed."""
    compositor = subprocess.Popen(["xcompmgr"], stderr=subprocess.DEVNULL) if shutil.which("xcompmgr") else None
    try:
        yield
    finally:
        if compositor:
            compositor.terminate()
            compositor.wait()


class Screen:
    """Presses real keys, moves windows about, and takes pictures."""

    STILL_BITS = 30_000  # of difference between two pictures: a blinking caret, not more
    EDGE = 60  # of difference between two neighbours in a row: text, not a gradient

    def __init__(self, events):
        self._events = events

    def keys(self, *names):
        """Presses keys one after the other, named as xdotool names them."""
        run("xdotool", "key", "--clearmodifiers", *names)

    def type(self, text):
        run("xdotool", "type", "--delay", "15", text)

    def active(self):
        """The number of the active window; None while there is none."""
        found = subprocess.run(["xdotool", "getactivewindow"], capture_output=True, text=True)
        return found.stdout.strip() or None  # empty while no window is active

    def leave_and_return(self):
        """Minimises the active window and brings it back, as somebody does who looks at something else."""
        window = self._events.until("a window is active", self.active)
        run("xdotool", "windowminimize", window)
        self._events.until("no window is active", lambda: self.active() != window)
        run("xdotool", "windowactivate", window)
        self._events.until("the window is active again", lambda: self.active() == window)

    def frame(self, border=0):
        """Where the active window is on the screen: x, y, width, height, without a border of this width."""
        window = self._events.until("a window is active", self.active)
        values = dict(re.findall(r"^(\w+)=(-?\d+)$", run("xdotool", "getwindowgeometry", "--shell", window), re.M))
        x, y, width, height = (int(values[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))
        return x + border, y + border, width - 2 * border, height - 2 * border

    def scale_text(self, factor):
        """Text of this size in programs started from now on, as a desktop's own setting does it."""
        run("xprop", "-root", "-f", "RESOURCE_MANAGER", "8s", "-set", "RESOURCE_MANAGER", f"Xft.dpi: {96 * factor:g}\n")

    def put_pointer_away(self):
        run("xdotool", "mousemove", "0", "0")

    def until_still(self):
        """Waits until the picture does not change any more, but for a blinking caret."""
        before = None

        def is_still():
            nonlocal before
            now = int.from_bytes(self._pixels(), "little")
            changed, before = (now.bit_count() if before is None else (now ^ before).bit_count()), now
            return changed < self.STILL_BITS

        self._events.until("the picture is still", is_still)

    def picture(self, file, crop=None):
        """Saves what is on the screen, or of it the rectangle `crop` (x, y, width, height)."""
        Path(file).parent.mkdir(parents=True, exist_ok=True)
        run("import", "-silent", "-window", "root", *self._part(crop), "-strip", "-depth", "8", str(file))

    def until_drawn(self, crop):
        """Waits until there is text in the rectangle `crop` (x, y, width, height): the engine tells of a document before
        it draws it."""
        def has_text():
            pixels = self._pixels(*self._part(crop))
            return any(abs(left - right) > self.EDGE for left, right in zip(pixels, pixels[3:]))
        self._events.until("the document is drawn", has_text)

    def still_pixels(self, crop):
        """The colours of the rectangle `crop` (x, y, width, height), once they do not change any more."""
        self.until_still()
        return self._pixels(*self._part(crop))

    @staticmethod
    def _part(crop):
        return ["-crop", "{2}x{3}+{0}+{1}".format(*crop), "+repage"] if crop else []

    @staticmethod
    def _pixels(*part):
        return subprocess.run(["import", "-silent", "-window", "root", *part, "-depth", "8", "rgb:-"], check=True,
                              capture_output=True).stdout

    @staticmethod
    def is_there():
        return "WITH_DISPLAY_RUN" in os.environ
