"""The first start, up to the chosen service."""

from world import ECHO, World

CONSENT = "Analytics Data Collection"
REGISTRATION = "Corvane – Your profile"


class FirstUseTest(World):
    def test_leads_from_registration_over_the_question_about_analytics_to_a_service(self):
        self.accept_catalogue()
        self.program.start()
        self.program.until_title(REGISTRATION, "the registration page opens first")
        self.screen.keys("ctrl+shift+u")  # not before somebody has registered
        self.program.register("Ada Lovelace")

        consent = self.program.dialog(CONSENT)
        self.assertNotEqual(self.home.defaults().get("AnalyticsConsentShown"), True)
        self.screen.keys("Escape")  # is no answer
        self.assertEqual(self.program.focused(), "Enable Analytics")
        self.assertTrue(consent.find("Disable Analytics"))
        self.screen.keys("Return")
        self.program.until_closed(CONSENT)
        self.until("the answer is kept", lambda: self.home.defaults().get("AnalyticsConsentShown"))
        self.assertEqual(self.home.settings()["AnalyticsEnabled"], "On")
        self.until("this device is bound to the profile", lambda: not self.home.defaults().get("push_binding_token"))
        self.assertIn(self.home.defaults()["push_install_id"], self.server.profiles())

        self.assertFalse(self.program.main_window().find(None, "text", None, "FOCUSED"), "URL mode during first use")
        self.program.press("Service")
        self.until("the search field has the focus", lambda: self.program.focused() == "Search services")
        self.screen.type("ech")
        self.screen.keys("Return")
        self.program.until_title(ECHO, "the service fills the window")
        self.program.end()

        self.program.start()
        self.program.until_title(ECHO, "the service is still chosen after a restart")
        self.assertFalse(self.program.window(CONSENT), "the question came again")
        self.program.end()
