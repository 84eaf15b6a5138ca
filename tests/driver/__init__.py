"""Drives the built programs from outside, as a person with a keyboard and a screen reader would: through the
accessibility bus, real keys, and the files that the programs write. Used by the end-to-end test, the tour and the
screenshots. Everything runs inside tests/display/with-display, with the system's python3."""

from driver.corvane import Corvane
from driver.element import Element
from driver.events import Events, Wrong
from driver.home import Home
from driver.reference_server import ReferenceServer
from driver.screen import Screen, composited
from driver.slow_image import SlowImage

__all__ = ["Corvane", "Element", "Events", "Home", "ReferenceServer", "Screen", "SlowImage", "Wrong",
           "composited"]
