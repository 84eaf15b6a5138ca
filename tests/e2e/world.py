"""What each of the end-to-end tests starts from."""

import json
import re
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

from driver import Corvane, Events, Home, ReferenceServer, Screen, Wrong

ROOT = Path(__file__).resolve().parent.parent.parent
ECHO = "Echo – a chat that repeats you"
NOTES = "Notes – a chat with yourself"
# What the program itself must not say; its web processes speak as other ones.
COMPLAINT = re.compile(r"^\(com\.hollisward\.Corvane:.*(CRITICAL|WARNING)|runtime error:|Sanitizer")


class World(unittest.TestCase):
    """The built program in a home of its own, beside a server of its own with the sample documents."""

    # Set by the script that runs the tests.
    binaries = None
    pictures = None
    events = None

    def setUp(self):
        folder = Path(tempfile.mkdtemp(prefix="corvane-e2e."))
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        self.screen = Screen(self.events)
        self.home = Home(folder / "home")
        self.server = ReferenceServer(self.binaries, folder / "server")
        self.addCleanup(self.server.stop)
        shutil.copytree(ROOT / "tests/e2e/pages", self.server.publish / "e2e")
        self.log = folder / "corvane.log"
        self.log.touch()
        self.program = Corvane(self.binaries, self.home, self.events, self.screen, self.log, self.server.environment())
        self.addCleanup(self.program.kill)

    def tearDown(self):
        said = [line for line in self.log.read_text(errors="replace").splitlines() if COMPLAINT.search(line)]
        self.assertEqual(said, [], "the program complained")

    @classmethod
    def setUpClass(cls):
        if cls.events is None:
            World.events = Events()

    # Beginnings.

    def services(self, *pairs):
        """A catalogue of pairs of a name and a path on the server."""
        return [{"service": name, "url": self.server.base + path, "description": f"{name}."} for name, path in pairs]

    def accept_catalogue(self, *pairs):
        """The catalogue on disk and on the server are one and the same: of these services, or the sample one."""
        if pairs:
            (self.server.publish / "Corvane/sites/sites.json").write_text(json.dumps(self.services(*pairs)))
        self.home.write_catalogue(self.server.get("Corvane/sites/sites.json"))

    def start_registered(self, service, title, settings=None, **defaults):
        """Starts as somebody who has registered, has answered the question about analytics, and has chosen a
        service."""
        self.home.write_defaults(FirstUse=False, AnalyticsConsentShown=True, siteIndex=service, **defaults)
        if settings:
            self.home.write_settings(**settings)
        self.program.start()
        self.program.until_title(title, "the service opens")

    # Steps that several tests take.

    def until(self, what, holds, patience=Events.PATIENCE):
        return self.events.until(what, holds, patience)

    def alert(self, heading, message, answer):
        """Reads a message and answers it with one of its buttons."""
        dialog = self.program.dialog(heading)
        self.until(f'the alert says "{message}"', lambda: dialog.says(message))
        self.program.press(answer, dialog)
        self.program.until_closed(heading)

    def until_something_new(self):
        """Waits for the dot on the menu button. Looking at another window and back makes the program ask the server;
        it does so every five seconds at most."""
        for _ in range(12):
            self.screen.leave_and_return()
            try:
                self.until("the menu button tells of something new", self.tells_of_something_new, 2)
                return
            except Wrong:
                pass
        self.fail("the menu button tells of nothing new")

    def tells_of_something_new(self):
        return self.program.main_window().find("Menu").description == "There is something new"

    # What a failure leaves behind.

    def explain(self):
        """Saves a picture and prints the windows and what the program said."""
        file = Path(self.pictures) / f"{self.id().rpartition('.')[2]}.png"
        try:
            self.screen.picture(file)
            print(f"\n{self.id()}: picture {file}", file=sys.stderr)
            print(self.program.tree().outline(), file=sys.stderr)
        except Exception as problem:  # the failure itself matters more
            print(f"nothing to show: {problem}", file=sys.stderr)
        print("The program said:", self.log.read_text(errors="replace")[-3000:], file=sys.stderr, flush=True)
