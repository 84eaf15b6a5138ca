"""The keys of the main window."""

from world import ECHO, NOTES, World

VISITS = "e2e/visits.html"


class KeysTest(World):
    def type_address(self, path):
        """Types an address in URL mode, which must be on."""
        self.until("the address field has the focus", lambda: self.program.focused() == "Address")
        self.screen.type(self.server.base + path)
        self.screen.keys("Return")

    def test_travel_and_reload(self):
        self.accept_catalogue()
        self.start_registered("Echo (this server)", ECHO)
        self.screen.keys("ctrl+shift+u")
        self.type_address("chat/notes/")
        self.program.until_title(NOTES, "the typed address opens")
        self.screen.keys("ctrl+l")
        self.type_address(VISITS)
        self.program.until_title("Visit 1, light", "Control+L takes another address")
        self.screen.keys("F5")
        self.program.until_title("Visit 2, light", "F5 reloads")
        self.screen.keys("ctrl+r")
        self.program.until_title("Visit 3, light", "Control+R reloads")
        self.screen.keys("alt+Left")
        self.program.until_title(NOTES, "Alt+Left goes back")
        self.screen.keys("alt+Right")
        self.program.until_title("Visit 3, light", "Alt+Right goes forward")
        self.screen.keys("ctrl+shift+u")
        self.program.until_title(ECHO, "leaving URL mode returns to the service")
        self.screen.keys("F1")
        self.program.until_title("Corvane Help", "F1 opens the help page")
        self.screen.keys("alt+Home")
        self.program.until_title(ECHO, "Alt+Home leads to the service's first page")
        self.screen.keys("ctrl+q")
        self.program.until_ended()

    def test_list_themselves_and_close_the_window(self):
        self.accept_catalogue()
        self.start_registered("Echo (this server)", ECHO)
        self.screen.keys("ctrl+question")
        shortcuts = self.until("the list of keys opens",
                               lambda: (window := self.program.active_window()) and window.name != ECHO and window)
        for title in ("Back", "Switch URL Mode", "Keyboard Shortcuts", "Quit"):
            self.assertTrue(shortcuts.says(title), title)
        self.screen.keys("Escape")
        self.until("the list closes", lambda: self.program.window_titles() == [ECHO])
        self.screen.keys("ctrl+w")
        self.program.until_ended()
