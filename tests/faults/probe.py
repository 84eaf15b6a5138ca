"""corvane-probe as a child process, and the home folders that it works in."""

import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

PATIENCE = 60  # seconds until a program that has not ended counts as hanging
OWN = "Hollisward/Corvane"


class Home:
    """A home folder and the small files that Corvane keeps there."""

    def __init__(self, folder):
        self.folder = Path(folder)
        data = self.folder / ".local/share" / OWN
        self.settings = data / "settings/settings.json"
        self.catalogue = data / "sites/sites.json"
        self.backup = data / "sites/sites.json.bak"
        self.defaults = self.folder / ".config" / OWN / "defaults.json"
        for file in (self.settings, self.catalogue, self.defaults):
            file.parent.mkdir(parents=True, exist_ok=True)

    def names(self):
        """The names of all files in the folders of the small files."""
        return sorted(entry.name for file in (self.settings, self.catalogue, self.defaults)
                      for entry in file.parent.iterdir())

    def leftovers(self):
        """The names that belong to no file of the program."""
        known = {file.name for file in (self.settings, self.catalogue, self.backup, self.defaults)}
        known |= {self.defaults.name + ".previous", self.defaults.name + ".lock"}
        return [name for name in self.names() if name not in known]

    def age(self):
        """Makes every file look two minutes older, links and special files aside."""
        for file in (self.settings, self.catalogue, self.defaults):
            for entry in file.parent.iterdir():
                if entry.is_file() and not entry.is_symlink():
                    changed = entry.stat().st_mtime - 120
                    os.utime(entry, (changed, changed))


class Probe:
    def __init__(self, program):
        self.program = str(program)

    def environment(self, home=None, **more):
        """Nothing of this shell's user reaches the program. The leak check cannot run below a tracer."""
        kept = {name: os.environ[name] for name in ("PATH", "LANG", "LSAN_OPTIONS") if name in os.environ}
        return {**kept, "HOME": str(home.folder if home else "/nonexistent"), "ASAN_OPTIONS": "detect_leaks=0", **more}

    def start(self, *arguments, home=None, before=(), **options):
        """A running probe; `before` is the command line of a program that runs it."""
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE}
        return subprocess.Popen([*before, self.program, *map(str, arguments)], env=self.environment(home),
                                **{**pipes, **options})

    def run(self, *arguments, input=b"", home=None, before=(), **options):
        """The exit status and the answers of a probe that has ended, each a value of JSON."""
        with self.start(*arguments, home=home, before=before, **options) as process:
            try:
                said, complaint = process.communicate(input, PATIENCE)
            except subprocess.TimeoutExpired:
                process.kill()
                raise AssertionError(f"corvane-probe {arguments[0]} hangs")
        if b"Sanitizer" in complaint or b"runtime error:" in complaint:
            raise AssertionError(complaint.decode(errors="replace"))
        return process.returncode, [json.loads(line) for line in said.splitlines()]


class ProbeTest(unittest.TestCase):
    """A test with the built probe and a folder of its own."""

    # Set by the script that runs the tests.
    probe = None
    options = None

    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="corvane-faults."))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def ask(self, *arguments, **options):
        """The only answer, of a probe that does what it is asked."""
        status, answers = self.probe.run(*arguments, **options)
        self.assertEqual((status, len(answers)), (0, 1), f"{arguments}: {answers}")
        return answers[0]

    def home(self, name="home"):
        return Home(self.folder / name)


def may_trace():
    try:
        return subprocess.run(["strace", "-f", "--seccomp-bpf", "-o", "/dev/null", "true"], capture_output=True,
                              timeout=30).returncode == 0
    except (OSError, subprocess.TimeoutExpired):
        return False


def catalogue(mark, size=0):
    """A catalogue of one service, whose description brings it to about `size` bytes."""
    return json.dumps([{"service": mark, "url": "https://chat.example/", "description": "d" * size}]).encode()


def settings(mark, size=0):
    """A settings file, whose address of the catalogue brings it to about `size` bytes."""
    return json.dumps({"AllowSiteListUpdates": "On", "AnalyticsEnabled": "Off", "AppTheme": mark,
                       "DialogTheme": "dark", "SitesSourceUrl": "u" * size}).encode()
