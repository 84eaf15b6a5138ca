"""The reference server as a child process."""

import json
import re
import subprocess
import urllib.parse
import urllib.request
from pathlib import Path

from driver.events import Wrong


class ReferenceServer:
    """`corvane-server` on a free port with a database and a publish folder of its own: the sample documents."""

    def __init__(self, binaries, folder):
        self._program = Path(binaries) / "corvane-server"
        self._data = Path(folder) / "data"
        self.publish = Path(folder) / "publish"
        self.run("publish-folder", self.publish)
        self._process = subprocess.Popen(
            [self._program, "--port", "0", "--data", self._data, "--publish-folder", self.publish],
            stdout=subprocess.PIPE, text=True)
        said = self._process.stdout.readline()
        found = re.search(r"http://127\.0\.0\.1:\d+/", said)
        if not found:
            raise Wrong(f"the server does not start: {said.strip() or self._process.wait()}")
        self.base = found[0]

    def environment(self):
        """The variables that lead Corvane to this server, as the script `run` sets them."""
        base = self.base
        return {"CORVANE_PUBLISHING_URL": base, "CORVANE_NOTIFICATION_URL": base, "CORVANE_DONATION_URL": base,
                "CORVANE_STORE_LOOKUP_URL": f"{base}lookup?id=0000000000&country=us",
                "CORVANE_STORE_PAGE_URL": f"{base}store/", "CORVANE_COLLECT_URL": f"{base}g/collect",
                "CORVANE_TAG_URL": f"{base}gtag/js"}

    def run(self, *arguments):
        """Runs one of the server's commands and gives back what it prints."""
        result = subprocess.run([self._program, *map(str, arguments)], capture_output=True, text=True)
        if result.returncode != 0:
            raise Wrong(f"corvane-server {arguments[0]}: {result.stderr.strip()}")
        return result.stdout

    def notify(self, title, **options):
        """Sends a notification to every installation: body, url."""
        extra = [part for name, value in options.items() for part in (f"--{name}", value)]
        return self.run("notify", "--title", title, *extra, "--data", self._data)

    def profiles(self):
        """The list of profiles with the installations bound to them."""
        return self.run("profiles", "--data", self._data)

    def release(self, version, notes, **options):
        extra = [part for name, value in options.items() for part in (f"--{name.replace('_', '-')}", value)]
        return self.run("release", version, "--publish-folder", self.publish, "--notes", notes, *extra)

    def publish_catalogue(self, file, notes=None):
        extra = ["--notes", notes] if notes else []
        return self.run("catalogue", file, "--publish-folder", self.publish, *extra)

    def get(self, path):
        """The bytes that the server answers with."""
        with urllib.request.urlopen(urllib.parse.urljoin(self.base, path), timeout=30) as answer:
            return answer.read()

    def register(self, install_id):
        """Makes an installation known before its program runs for the first time."""
        body = {"installId": install_id, "platform": "macos", "product": "corvane", "appVersion": ""}
        request = urllib.request.Request(urllib.parse.urljoin(self.base, "api/devices/register"),
                                         json.dumps(body).encode(), {"Content-Type": "application/json"})
        urllib.request.urlopen(request, timeout=30).close()

    def pending(self, install_id):
        """The titles of the notifications that wait for an installation."""
        answer = json.loads(self.get(f"api/notifications/pending?installId={install_id}"))
        return [notification["title"] for notification in answer["notifications"]]

    def stop(self):
        self._process.terminate()
        self._process.stdout.close()
        return self._process.wait(20)
