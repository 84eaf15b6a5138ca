"""A new list of services, and a new version of the program."""

import hashlib
import json

from driver import SlowImage
from world import ECHO, NOTES, ROOT, World

EXAMPLES = ROOT / "server/examples"
NEW_LIST = "What's New – Service List"
NEW_VERSION = "What's New – Corvane"


class ServiceListTest(World):
    def setUp(self):
        super().setUp()
        self.accept_catalogue(("Echo", "chat/echo/"))
        self.start_registered("Echo", ECHO)
        self.accepted = self.home.catalogue.read_bytes()
        file = self.home.folder / "new.json"
        file.write_text(json.dumps(self.services(("Echo", "chat/echo/"), ("Brand new", "chat/notes/"))))
        self.server.publish_catalogue(file, EXAMPLES / "sites-notes.html")

    def offer(self):
        self.program.choose("Check for List Updates")
        dialog = self.program.dialog(NEW_LIST)
        self.program.until_document_shows("A new list of services")
        return dialog

    def test_replaces_the_catalogue_by_the_published_one_when_it_is_accepted(self):
        self.program.press("Cancel", self.offer())
        self.program.until_closed(NEW_LIST)
        self.assertEqual(self.home.catalogue.read_bytes(), self.accepted)

        self.offer()
        self.screen.keys("Return")  # Update
        self.program.until_closed(NEW_LIST)
        published = self.server.get("Corvane/sites/sites.json")
        self.until("the catalogue is stored as published", lambda: self.home.catalogue.read_bytes() == published)
        self.program.press("Service")
        self.until("the new service is offered", lambda: self.program.main_window().find("Brand new"))
        self.screen.keys("Down", "Return")
        self.program.until_title(NOTES, "the new service opens")

        self.program.choose("Check for List Updates")
        dialog = self.program.dialog("Service List – Up to Date")
        self.until("it says so", lambda: dialog.says("Your service list is already up to date."))
        self.assertFalse(dialog.button("Update"))
        self.screen.keys("Escape")
        self.program.until_closed("Service List – Up to Date")
        self.program.end()

    def test_leads_to_earlier_notes_and_back(self):
        self.program.press("Older update", self.offer())
        self.program.until_document_shows("The list of services")
        older = self.program.active_window()
        self.assertTrue(older.name.startswith("Service list until"), older.name)
        self.program.press("Newer update", older)
        self.program.dialog(NEW_LIST)
        self.program.until_document_shows("A new list of services")
        self.program.end()


class NewVersionTest(World):
    def setUp(self):
        super().setUp()
        self.accept_catalogue()
        self.start_registered("Echo (this server)", ECHO)
        self.version_file = self.server.publish / "Corvane/mac_whatsnew/version.json"

    def offer(self, version):
        self.program.choose("Check for App Updates")
        dialog = self.program.dialog(NEW_VERSION)
        self.until("the version is named", lambda: dialog.says(f"Version {version}"))
        return dialog

    def overlay(self):
        return self.program.main_window().find("Downloading update…", "label")

    def test_downloads_the_installer_and_waits_to_be_told_to_quit(self):
        self.server.release("9.0", EXAMPLES / "release-notes.html", image_size=20_000_000)
        self.offer("9.0")
        self.program.until_document_shows("What's new in Corvane 9.0")
        self.events.watch_folder(self.home.downloads)
        self.screen.keys("Return")  # Update
        self.program.until_closed(NEW_VERSION)
        self.alert("Update Ready to Install",
                   "Corvane will quit so you can drag the new version into Applications.", "Later")
        image = self.home.downloads / "Corvane-9.0.dmg"
        self.assertEqual([file.name for file in self.home.downloads.iterdir()], [image.name])
        self.assertEqual(hashlib.sha256(image.read_bytes()).hexdigest(),
                         json.loads(self.version_file.read_text())["sha256"])
        self.assertFalse(self.overlay())
        self.program.end()

    def test_leaves_nothing_of_a_download_that_is_cancelled(self):
        slow = SlowImage()
        self.addCleanup(slow.stop)
        self.version_file.write_text(json.dumps({"version": "9.0", "downloadURL": slow.url}))
        before = self.home.files_over(slow.SENT // 2)
        self.offer("9.0")
        self.screen.keys("Return")  # Update
        self.until("the overlay tells how far it is",
                   lambda: self.overlay() and self.program.main_window().says("5.0 MB of 100.0 MB"))
        self.assertNotEqual(self.home.files_over(slow.SENT // 2), before)
        self.screen.keys("Return")  # Cancel has the focus
        self.until("the overlay goes", lambda: not self.overlay())
        self.assertTrue(slow.left.wait(10), "the connection stays open")
        self.assertEqual(list(self.home.downloads.iterdir()), [])
        self.assertEqual(self.home.files_over(slow.SENT // 2), before)
        self.assertEqual(self.program.window_titles(), [ECHO])
        self.program.end()

    def test_tells_why_a_download_failed(self):
        self.version_file.write_text(json.dumps({"version": "9.0", "downloadURL": self.server.base + "gone/C.dmg"}))
        self.offer("9.0")
        self.screen.keys("Return")  # Update
        self.alert("Download failed", "Server returned status 404.", "OK")
        self.assertEqual(list(self.home.downloads.iterdir()), [])
        self.program.end()
