"""Usage events on their way from the program to the server. A test of its own: it starts the program more often than
the others."""

import json
import os
import unittest

from driver import Wrong
from missing_tag import MissingTag
from processes import listening_addresses, named
from world import ECHO, World

REFUSE_LISTENING = os.environ.get("CORVANE_REFUSE_LISTENING")  # the library that does it
HIDDEN_PAGE_TIME = 2.5  # seconds in which a hidden page would be there; it comes one second after the first page


class Arrivals:
    """The usage events that the server keeps, read anew when its database has changed."""

    def __init__(self, server, events):
        self._server = server
        self._folder = server.publish.parent / "data"
        self._state = None
        self._events = []
        events.watch_folder(self._folder)

    def all(self):
        """In the order of their arrival."""
        state = [(file.stat().st_mtime, file.stat().st_size) for file in sorted(self._folder.glob("server.db*"))]
        if self._state != state:
            lines = self._server.run("events", "--json", "--data", self._folder).splitlines()
            self._state, self._events = state, [json.loads(line) for line in lines]
        return self._events

    def last_change(self):
        """When the database had last changed before it was read, as time.time() has it."""
        return max(time for time, _ in self._state)


class AnalyticsDeliveryTest(World):
    def setUp(self):
        super().setUp()
        self.accept_catalogue(("Echo", "chat/echo/"))
        self.home.write_defaults(FirstUse=False, AnalyticsConsentShown=True, siteIndex="Echo")
        self.arrivals = Arrivals(self.server, self.events)
        self.wanted = []  # name and label of the events so far
        self.is_direct = False

    # What the program is made to do, each step with the events that it tells of.

    def start(self, **environment):
        """Until the events are on their way: those that still wait when analytics is switched off are dropped."""
        self.program.start(**environment)
        self.program.until_title(ECHO, "the service opens")
        self.wanted += [("app_start", "Corvane"), ("ui_created", "MainWindow"), self.page_view()]
        self.assert_arrived()

    def page_view(self):
        return "page_view", f"{self.server.base}chat/echo/"

    def reload(self):
        """Goes on when the page is there again, told by its event."""
        self.program.press("Reload")
        self.wanted += [("button_click", "Reload"), self.page_view()]
        self.assert_arrived()

    def change_setting(self, switch):
        """By the menu."""
        self.screen.keys("F10")
        self.program.press("Settings")
        self.wanted += [("menu_open", "MainMenu"), ("menu_click", "Settings")]
        dialog = self.program.dialog("Settings")
        self.program.press(switch, dialog)
        self.program.press("OK", dialog)
        self.program.until_closed("Settings")

    def use(self):
        """What every one of the tests does with the program."""
        self.reload()
        self.change_setting("Allow service list updates")
        self.wanted += [("settings_changed", "Settings")]
        self.assert_arrived()

    def quit(self):
        self.screen.keys("ctrl+q")
        self.program.until_ended()

    # What the server has to say.

    def sent(self):
        """The events that have arrived, in the order in which they were sent. Direct requests do not wait for each
        other, so they may overtake; their numbers tell."""
        arrived = self.arrivals.all()
        return sorted(arrived, key=lambda event: event["sequence"]) if self.is_direct else arrived

    def assert_arrived(self):
        """Waits for the events so far, and sees that there are no others."""
        try:
            self.until("the events arrive", lambda: len(self.arrivals.all()) >= len(self.wanted), 10)
        except Wrong:
            pass  # the comparison tells more
        self.assertEqual([(event["event"], event["parameters"].get("event_label")) for event in self.sent()],
                         self.wanted)

    def assert_one_sender(self, events):
        """That these are what one run of the program sent, all in the way that is expected."""
        self.assertEqual({event["clientId"] for event in events},
                         {self.home.defaults()["AnalyticsClientId"] + "_rel"})
        self.assertEqual(len({event["sessionId"] for event in events}), 1, "one way, one beginning")
        self.assertEqual([event["sequence"] for event in events], list(range(1, len(events) + 1)))
        self.assertEqual({"AppleWebKit" in event["userAgent"] for event in events}, {not self.is_direct})

    def web_processes(self):
        return named("WebKitWebProcess")

    def own_addresses(self):
        program, = named("corvane")
        return listening_addresses(program)

    # The tests.

    def test_the_page_sends_every_event_once_and_in_order_until_analytics_is_off(self):
        # A proxy that is not there: nothing of this machine is asked for by way of it.
        self.start(http_proxy="http://127.0.0.1:9", no_proxy="example.org")
        self.assertEqual(self.own_addresses(), ["127.0.0.1"])
        self.assertEqual(len(self.web_processes()), 2, "the page that is seen, and the hidden one")
        self.use()
        self.quit()
        self.wanted += [("app_end", "Corvane")]
        self.assert_arrived()
        first_run = self.sent()
        self.assert_one_sender(first_run)
        self.assertIsInstance(first_run[-1]["parameters"]["session_duration_seconds"], int)

        self.start()
        self.change_setting("Enable analytics")
        self.wanted += [("analytics_toggled", None), ("settings_changed", "Settings")]
        self.assert_arrived()
        second_run = self.sent()[len(first_run):]
        self.assert_one_sender(second_run)
        self.assertNotEqual(second_run[0]["sessionId"], first_run[0]["sessionId"])
        self.assertEqual(second_run[-2]["parameters"]["event_action"], "disable")
        self.quit()

        self.program.start()
        self.program.until_title(ECHO, "the service opens")
        with self.assertRaises(Wrong, msg="a hidden page while analytics is off"):
            self.until("there is a hidden page", lambda: len(self.web_processes()) > 1, HIDDEN_PAGE_TIME)
        self.assertEqual(self.own_addresses(), [])
        self.quit()
        self.assert_arrived()

    def test_everything_goes_directly_when_the_tag_is_missing(self):
        self.is_direct = True
        tag = MissingTag()
        self.addCleanup(tag.stop)
        self.start(CORVANE_TAG_URL=tag.url)
        # The page takes events once it knows that there is no tag.
        self.assertLess(self.arrivals.last_change() - tag.asked_at, 3)
        self.use()
        self.quit()
        self.wanted += [("app_end", "Corvane")]
        self.assert_arrived()
        self.assert_one_sender(self.sent())
        self.assertRegex(self.sent()[-1]["parameters"]["session_duration_seconds"], r"^\d+$")

    @unittest.skipUnless(REFUSE_LISTENING, "CORVANE_REFUSE_LISTENING names no library")
    def test_the_page_does_without_a_port(self):
        self.start(LD_PRELOAD=REFUSE_LISTENING)
        self.assertEqual(self.own_addresses(), [])
        self.use()
        self.quit()
        self.wanted += [("app_end", "Corvane")]
        self.assert_arrived()
        self.assert_one_sender(self.sent())
