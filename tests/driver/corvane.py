"""The program itself as a child process."""

import os
import subprocess
from pathlib import Path

from gi.repository import GLib

from driver.element import Element
from driver.events import Wrong
from driver.pages import Pages


class Corvane:
    """The built program in a home, and what a person does with it."""

    def __init__(self, binaries, home, events, screen, log, environment=None):
        """`log` is the file for what the program says on its standard output and error; `environment` comes on top of
        this process's and names the server."""
        self._program = Path(binaries) / "corvane"
        self._home = home
        self._environment = {**os.environ, **home.environment(), **(environment or {})}
        self._events = events
        self._pages = Pages(events)
        self._screen = screen
        self.log = Path(log)
        self._process = None

    # Start and end.

    def start(self, **environment):
        """Starts it and waits for its window."""
        with self.log.open("ab") as log:
            self._process = subprocess.Popen([self._program], env={**self._environment, **environment}, stdout=log,
                                             stderr=subprocess.STDOUT)
        self._events.until("the window is there",
                           lambda: self._is_running() and self.active_window() and self.main_window())

    def end(self):
        """Ends it from outside; wrong when it does not end well."""
        self._process.terminate()
        self.until_ended()

    def until_ended(self):
        status = self._events.until_ended(self._process, "the program ends")
        self._process = None
        if status != 0:
            raise Wrong(f"the program ended with {status}:\n{self.log.read_text(errors='replace')[-3000:]}")

    def kill(self):
        if self._process and self._process.poll() is None:
            self._process.kill()
            self._process.wait()

    def _is_running(self):
        if self._process.poll() is not None:
            raise Wrong(f"the program ended with {self._process.returncode}:\n"
                        f"{self.log.read_text(errors='replace')[-3000:]}")
        return True

    # What is there to see.

    def tree(self):
        """The program on the accessibility bus."""
        application = Element.application(self._process.pid)
        if not application:
            raise GLib.Error("the program is not on the bus")
        return application

    def windows(self):
        """Its windows: the main one and, above it, dialogs."""
        return list(self.tree().children())

    def main_window(self):
        return next((window for window in self.windows() if window.find("Menu")), None)

    def window(self, title):
        """The window or dialog with this title; None when there is none."""
        return next((window for window in self.windows() if window.name == title), None)

    def window_titles(self):
        return [window.name for window in self.windows()]

    def active_window(self):
        active = self._events.active()
        if not active or active.get_process_id() != self._process.pid:
            return None
        return Element(active)

    def dialog(self, title):
        """Waits for the dialog with this title to be there and active."""
        return self._events.until(f'the dialog "{title}" opens',
                                  lambda: (found := self.active_window()) and found.name == title and found)

    def until_closed(self, title):
        self._events.until(f'the dialog "{title}" closes', lambda: not self.window(title))

    def until_title(self, title, what):
        """Waits for a page with this title in the main window."""
        self._events.until(f'{what}: the title "{title}"', lambda: self.window(title))

    def focused(self):
        """The name of what has the focus in the active window; None while nothing has it."""
        window = self.active_window()
        found = window and window.find(None, None, None, "FOCUSED")
        return found.name if found else None

    def page(self, title):
        """The latest page or document with this title; None when there is none."""
        return self._pages.find(title)

    def until_document_shows(self, text):
        """Waits until the document in the active dialog says this and is drawn; gives back the rectangle it lies in."""
        self._events.until(f'the document says "{text}"', lambda: (page := self.page("")) and page.says(text))
        x, y, width, height = self._screen.frame()
        inside = x + width // 20, y + height // 5, width * 9 // 10, height * 3 // 5  # without header and footer
        self._screen.until_drawn(inside)
        return inside

    # What a person does.

    def press(self, name, within=None):
        """Presses the button of this name in a window, the main one unless told."""
        def button():
            return (within or self.main_window()).button(name)
        self._events.until(f'a button "{name}" that can be pressed', button).press()

    def choose(self, entry):
        """Opens the menu and chooses an entry there with keys."""
        self._screen.keys("F10")
        self._events.until("the menu opens", lambda: self.main_window().button("Profile"))
        self.move_focus_to(entry, "Down")
        self._screen.keys("Return")

    def move_focus_to(self, name, key="Tab", tries=20):
        """Presses a key until what bears this name has the focus."""
        for _ in range(tries):
            before = self._events.until("something has the focus", self.focused)
            if before == name:
                return
            self._screen.keys(key)
            self._events.until(f"{key} moves the focus on from {before}", lambda: self.focused() not in (None, before))
        raise Wrong(f'{key} does not lead to "{name}"')

    def register(self, name):
        """Makes a profile on the registration page that first use begins with."""
        title = "Corvane – Your profile"
        self.until_title(title, "the registration page opens first")
        self._events.until("its first field has the focus",
                           lambda: (page := self.page(title)) and page.find("Name", "entry", None, "FOCUSED"))
        self._screen.type(name)
        self._screen.keys("Return")
        self._events.watch_folder(self._home.folder / ".config/Hollisward/Corvane")
        self._events.until("registration ends first use", lambda: self._home.defaults().get("FirstUse") is False)
