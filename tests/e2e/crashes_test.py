"""Web processes that die. CORVANE_CRASHES says how often, 12 unless told."""

import json
import math
import os
import signal
import time

from driver import Wrong
from processes import at_home, named
from stalling_server import StallingServer
from world import World

CRASHES = int(os.environ.get("CORVANE_CRASHES", "12"))
PAUSE = 30  # seconds in which the program brings a page back only once
SLACK = 2  # seconds between a death and its being noticed, at most
NO_PAGE = "Corvane"


class CrashesTest(World):
    def setUp(self):
        super().setUp()
        self.pages = StallingServer()
        self.addCleanup(self.pages.stop)
        catalogue = json.dumps([{"service": "Page", "url": self.pages.url, "description": "Page."}])
        (self.server.publish / "Corvane/sites/sites.json").write_text(catalogue)
        self.home.write_catalogue(catalogue.encode())
        self.home.write_defaults(FirstUse=False, AnalyticsConsentShown=True, siteIndex="Page")
        self.hidden = set()  # the process of the page that nobody sees
        self.brought_back = -math.inf  # when the program last did it by itself
        self.perhaps_brought_back = -math.inf  # the same, with the times when nobody could tell

    def until_page(self, what):
        """Waits until the page that was asked for last is the one in the window."""
        self.program.until_title(f"Page {self.pages.asked}", what)

    def go(self, button, what):
        """Asks for the page again; it must arrive by one request."""
        asked = self.pages.asked
        self.program.press(button)
        self.until(f"{button} asks for the page {what}", lambda: self.pages.asked > asked)
        self.until_page(f"{button} leads to the page {what}")
        self.assertEqual(self.pages.asked, asked + 1, what)

    def stall(self, mode):
        """Reloads until the answer stops as `mode` says."""
        stopped = self.pages.stopped
        self.pages.mode = mode
        self.program.press("Reload")
        if mode == "dialog":
            self.program.dialog("127.0.0.1 says")
        else:
            self.until(f"the answer stops: {mode}", lambda: self.pages.stopped > stopped)
        if mode in ("streaming", "leaving"):
            self.until_page(f"the page shows: {mode}")
        self.pages.mode = "whole"

    def web_processes(self):
        """Of the page that is seen, the oldest first."""
        return sorted(set(named("WebKitWebProcess")) - self.hidden)

    def kill(self, processes):
        for process in processes:
            os.kill(process, signal.SIGKILL)
        self.until("the processes are gone", lambda: not set(processes) & set(named("WebKitWebProcess")))

    # What happens after the page's process has died.

    def assert_brought_back_once(self, asked, died, what):
        """The program has asked for the page once by itself, or not at all when it did so lately."""
        if died - self.brought_back > PAUSE - SLACK:
            try:
                self.until("the page comes back by itself", lambda: self.pages.asked > asked, 5)
            except Wrong:
                self.assertLess(died - self.perhaps_brought_back, PAUSE + SLACK, f"does not come back {what}")
            else:
                self.until_page(f"comes back {what}")
                self.brought_back = self.perhaps_brought_back = died
                return
        self.program.until_title(NO_PAGE, f"the view is empty {what}")
        self.assertEqual((self.pages.asked, self.web_processes()), (asked, []), f"brought back again {what}")

    def crash(self, state):
        what = f"after a crash: {state}"
        mode, _, victim = state.partition(", ")
        if mode != "loaded":
            self.stall(mode)
        processes = self.web_processes()
        if victim == "the hidden page":
            processes, self.hidden = self.hidden, set()
        elif victim:
            processes = processes[-1:] if victim == "the next page" else processes[:1]
        asked, died = self.pages.asked, time.monotonic()
        self.kill(processes)
        if not victim:
            self.assert_brought_back_once(asked, died, what)
        elif mode == "leaving":
            self.perhaps_brought_back = died
        self.assertTrue(self.program.main_window().button("Menu"), what)
        self.assertNotIn("127.0.0.1 says", self.program.window_titles())
        return what

    # The tests.

    def test_leave_the_window_alive_and_its_buttons_working(self):
        states = ("loaded", "silent", "headers", "streaming", "dialog", "loaded, the hidden page",
                  "leaving, the next page", "leaving, the page")
        self.program.start()
        self.until_page("the service opens")
        first = self.web_processes()
        self.hidden = set(self.until("the hidden page is there", lambda: set(named("WebKitWebProcess")) - set(first)))
        counts = dict.fromkeys(states, 0)
        for number in range(CRASHES):
            state = states[number % len(states)]
            what = self.crash(state)
            for button in ("Reload", "Home") if number % 2 else ("Home", "Reload"):
                self.go(button, what)
            counts[state] += 1
        self.screen.keys("ctrl+q")
        self.program.until_ended()
        self.until("no process is left", lambda: not at_home(self.home.folder), 5)
        print("crashes:", ", ".join(f"{count} {state}" for state, count in counts.items() if count), end=" ... ")

    def test_of_the_first_page_leave_the_buttons_working(self):
        for button in ("Reload", "Home"):
            stopped = self.pages.stopped
            self.pages.mode = "silent"
            self.program.start()
            self.until("the first page is asked for", lambda: self.pages.stopped > stopped)
            self.pages.mode = "whole"
            asked = self.pages.asked
            self.kill(self.web_processes())
            self.until("the program asks for the page again", lambda: self.pages.asked > asked)
            self.until_page("the first page comes back by itself")
            self.go(button, "after that")
            self.program.end()
            self.until("no process is left", lambda: not at_home(self.home.folder), 5)
