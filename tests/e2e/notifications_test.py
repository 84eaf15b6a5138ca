"""Messages from the server."""

import uuid

from world import ECHO, World

SERVICE = "Echo (this server)"
NONE = ("Notifications", "There are no unread notifications.", "OK")


class NotificationsTest(World):
    def setUp(self):
        super().setUp()
        self.accept_catalogue()
        self.install = str(uuid.uuid4())

    def start_with(self, **notifications):
        """Starts while these wait, each a title and a body, the last the newest, and opens their list."""
        self.server.register(self.install)
        for title, body in notifications.items():
            self.server.notify(title, body=body)
        self.start_registered(SERVICE, ECHO, push_install_id=self.install)
        self.until("the menu button tells of something new", self.tells_of_something_new)
        self.program.choose("Notifications")
        return self.program.dialog("Notifications")

    def until_open(self, title, text):
        """Waits for a notification to be open and for its text to be shown."""
        dialog = self.program.dialog(title)
        self.program.until_document_shows(text)
        return dialog

    def test_come_on_return_to_the_window_and_are_gone_once_read(self):
        self.start_registered(SERVICE, ECHO, push_install_id=self.install)
        self.program.choose("Notifications")
        self.alert(*NONE)
        self.server.notify("Maintenance tonight", body="From ten to eleven.", url="https://corvane.example/status")
        self.assertEqual(self.server.pending(self.install), ["Maintenance tonight"])
        self.until_something_new()
        self.program.choose("Notifications")
        dialog = self.until_open("Maintenance tonight", "From ten to eleven.")
        self.assertTrue(self.program.page("").find("https://corvane.example/status", "link"))
        self.assertFalse(dialog.button("Back"), "there is no list to go back to")
        self.assertEqual(self.server.pending(self.install), ["Maintenance tonight"])

        self.screen.keys("Return")  # Close
        self.program.until_closed("Maintenance tonight")
        self.assertEqual(self.server.pending(self.install), [])
        self.until("the dot goes", lambda: not self.tells_of_something_new())
        self.program.choose("Notifications")
        self.alert(*NONE)
        self.program.end()

    def test_stay_while_another_one_is_read(self):
        dialog = self.start_with(First="This is the first one.", Second="This is the second one.", Third="And the last.")
        self.program.press("Second", dialog)
        self.program.press("Close", self.until_open("Second", "This is the second one."))
        self.program.dialog("Notifications")
        self.assertEqual(self.server.pending(self.install), ["Third", "First"])

        self.screen.keys("Escape")  # closes the list and leaves the others unread
        self.program.until_closed("Notifications")
        self.assertEqual(self.server.pending(self.install), ["Third", "First"])
        self.program.choose("Notifications")
        self.program.press("Dismiss All", self.program.dialog("Notifications"))
        self.program.until_closed("Notifications")
        self.assertEqual(self.server.pending(self.install), [])
        self.program.end()

    def test_show_nothing_of_the_one_before(self):
        self.start_with(Long="Long! " * 20, Short="Short!")
        pictures = []
        for title in ("Short", "Long", "Short"):
            self.program.press(title, self.program.dialog("Notifications"))
            dialog = self.until_open(title, f"{title}!")
            pictures.append(self.screen.still_pixels(self.program.until_document_shows(f"{title}!")))
            self.program.press("Back", dialog)
        self.assertTrue(pictures[0] != pictures[1], "both look the same")
        self.assertTrue(pictures[0] == pictures[2], "the long one shines through")
        self.program.end()
