"""The Settings dialog, by keyboard."""

from world import ECHO, World

SERVICE = "Echo (this server)"


class SettingsTest(World):
    def open(self):
        self.screen.keys("ctrl+comma")
        return self.program.dialog("Settings")

    def pick_dialog_theme(self, index):
        """Opens the list of dialog themes and picks the one this many places below the chosen one."""
        self.program.move_focus_to("Dialog theme")
        self.screen.keys("space")
        self.until("the list opens", lambda: self.program.focused() != "Dialog theme")
        self.screen.keys(*["Down"] * index, "Return")
        self.until("the list closes", lambda: self.program.focused() == "Dialog theme")

    def test_keeps_what_is_accepted_over_a_restart(self):
        self.accept_catalogue(("Visits", "e2e/visits.html"))
        self.start_registered("Visits", "Visit 1, light")
        self.open()
        self.program.move_focus_to("Dark")
        self.screen.keys("space")
        self.pick_dialog_theme(4)
        self.program.move_focus_to("Allow service list updates")
        self.screen.keys("space")
        self.program.move_focus_to("OK")
        self.screen.keys("Return")
        self.program.until_closed("Settings")
        wanted = {"AppTheme": "Dark", "DialogTheme": "corvane", "AnalyticsEnabled": "On", "AllowSiteListUpdates": "Off"}
        self.until("the file holds them", lambda: wanted.items() <= self.home.settings().items())
        self.screen.keys("F5")
        self.program.until_title("Visit 2, dark", "pages follow at once")
        self.program.end()

        self.program.start()
        self.program.until_title("Visit 1, dark", "pages are dark after a restart")
        dialog = self.open()
        self.assertEqual((dialog.role, dialog.has("MODAL")), ("dialog", True))
        self.assertTrue(dialog.find("Dark", None, None, "PRESSED"))
        self.assertTrue(dialog.find("Corvane"), "the dialog theme is shown")
        self.assertTrue(dialog.find("Enable analytics", None, None, "CHECKED"))
        self.assertFalse(dialog.find("Allow service list updates", None, None, "CHECKED"))
        self.screen.keys("Escape")
        self.program.until_closed("Settings")
        self.screen.keys("F10")
        self.until("the menu is open", lambda: self.program.main_window().button("Settings"))
        self.assertFalse(self.program.main_window().button("Check for List Updates"), "list updates are off")
        self.program.end()

    def test_forgets_what_is_cancelled(self):
        self.accept_catalogue()
        self.start_registered(SERVICE, ECHO, {"AppTheme": "Light", "DialogTheme": "dark", "AnalyticsEnabled": "Off",
                                              "AllowSiteListUpdates": "On", "SitesSourceUrl": "https://kept.example/"})
        before = self.home.settings()
        for leave in ("Escape", "Cancel"):
            dialog = self.open()
            self.assertFalse(dialog.find("Enable analytics", None, None, "CHECKED"), f"kept from before {leave}")
            self.program.press("Dark", dialog)
            self.program.move_focus_to("Enable analytics")
            self.screen.keys("space")
            self.until("the switch is on", lambda: dialog.find("Enable analytics", None, None, "CHECKED"))
            if leave == "Escape":
                self.screen.keys("Escape")
            else:
                self.program.move_focus_to("Cancel")
                self.screen.keys("Return")
            self.program.until_closed("Settings")
            self.assertEqual(self.home.settings(), before)
        self.program.end()
