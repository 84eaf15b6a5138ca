"""The programs that are measured, each started with a home and a session bus of its own."""

import json
import os
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

from . import processes

ROOT = Path(__file__).resolve().parent.parent.parent


class Home:
    """A home folder below the system's folder for temporary files."""

    def __init__(self):
        self.path = Path(tempfile.mkdtemp(prefix="bench-home."))
        self.config, self.data = self.path / ".config", self.path / ".local/share"
        self._run = self.path / "run"
        self._run.mkdir(mode=0o700)

    def environment(self):
        return {"HOME": str(self.path), "XDG_CONFIG_HOME": str(self.config), "XDG_DATA_HOME": str(self.data),
                "XDG_CACHE_HOME": str(self.path / ".cache"), "XDG_STATE_HOME": str(self.path / ".local/state"),
                "XDG_RUNTIME_DIR": str(self._run)}

    def prepare_corvane(self, sites, chosen, analytics=True):
        """As Corvane leaves it once somebody has registered and chosen a service; `sites` maps names to addresses."""
        defaults = self.config / "Hollisward/Corvane/defaults.json"
        catalogue = self.data / "Hollisward/Corvane/sites/sites.json"
        settings = self.data / "Hollisward/Corvane/settings/settings.json"
        for file, content in (
                (defaults, {"FirstUse": False, "AnalyticsConsentShown": True, "siteIndex": chosen}),
                (catalogue, [{"service": name, "url": url, "description": name} for name, url in sites.items()]),
                (settings, {"AllowSiteListUpdates": "On", "AnalyticsEnabled": "On" if analytics else "Off",
                            "AppTheme": "System", "DialogTheme": "default"})):
            file.parent.mkdir(parents=True, exist_ok=True, mode=0o700)
            file.write_text(json.dumps(content))

    def remove(self):
        shutil.rmtree(self.path, ignore_errors=True)


class Party:
    """A program under measurement. `arguments` makes its command line from the page's address."""

    def __init__(self, name, arguments, endpoints=False, fresh=False):
        self.name, self.fresh = name, fresh
        self._arguments, self._endpoints = arguments, endpoints

    def environment(self, display, home, base):
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS",
                                       "GSK_RENDERER", "GDK_DEBUG", "XAUTHORITY", "SESSION_MANAGER")
                       and not name.startswith("CORVANE_")}
        environment |= home.environment()
        environment |= {"DISPLAY": display.name, "GDK_BACKEND": "x11", "GSETTINGS_BACKEND": "memory"}
        if self._endpoints:
            environment |= {"CORVANE_PUBLISHING_URL": base, "CORVANE_NOTIFICATION_URL": base,
                            "CORVANE_DONATION_URL": base, "CORVANE_STORE_LOOKUP_URL": base + "lookup",
                            "CORVANE_STORE_PAGE_URL": base + "store/", "CORVANE_COLLECT_URL": base + "g/collect",
                            "CORVANE_TAG_URL": base + "gtag/js"}
        return environment

    def start(self, display, home, base, page):
        return Running(self._arguments(page, home), self.environment(display, home, base))


class Running:
    """A started program; `started` is the moment just before it began. Leaving the context ends it."""

    def __init__(self, command, environment):
        # The bus is there before the clock starts, and stays until the program has ended: an engine that loses its
        # bus while it starts a page leaves the system marked as a Flatpak.
        self._bus = subprocess.Popen(
            ["dbus-run-session", "--", "sh", "-c", 'echo "$DBUS_SESSION_BUS_ADDRESS"; exec cat'],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=environment, text=True)
        self.environment = environment | {"DBUS_SESSION_BUS_ADDRESS": self._bus.stdout.readline().strip()}
        self._log = tempfile.TemporaryFile()
        self.started = time.monotonic()
        self._program = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=self._log,
                                         stderr=self._log)
        self.pid = self._program.pid

    def processes(self):
        return processes.tree(self.pid)

    def output(self):
        self._log.seek(0)
        return self._log.read().decode(errors="replace")

    def close(self):
        others = self.processes()[1:]
        self._program.send_signal(signal.SIGTERM)
        try:
            self._program.wait(10)
        except subprocess.TimeoutExpired:
            self._program.kill()
            self._program.wait()
        if self._program.returncode not in (0, -signal.SIGTERM):
            print(f"bench: a program ended with status {self._program.returncode}; it said:\n{self.output()}")
        self._end(others)
        self._bus.stdin.close()  # ends "cat", and with it the bus
        self._bus.wait()
        self._bus.stdout.close()
        self._log.close()

    @staticmethod
    def _end(pids):
        """Waits for the helper processes to follow, and ends what has not after two seconds."""
        end = time.monotonic() + 2
        while time.monotonic() < end and any(_runs(pid) for pid in pids):
            time.sleep(0.02)
        for pid in pids:
            if _runs(pid):
                try:
                    os.kill(pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


def _runs(pid):
    try:
        return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except OSError:
        return False


def binaries(folder):
    """The paths of the window and of the bare window in a build's folder."""
    folder = Path(folder) if folder else ROOT / "build/release/bin"
    return folder / "corvane", folder / "bench_bare_window"


def chromium_arguments(page, home):
    return ["chromium", f"--app={page}", "--no-sandbox", f"--user-data-dir={home.path}/chromium", "--window-size=1024,768",
            "--no-first-run", "--no-default-browser-check", "--disable-background-networking",
            "--disable-component-update", "--disable-sync", "--disable-quic", "--disable-default-apps",
            "--password-store=basic", "--disable-extensions"]


def find(folder, wanted, against=None):
    """The parties by the names in `wanted` whose programs are there; says which are not. The "other" ones are Corvane
    of the build in the folder `against`."""
    corvane, bare = binaries(folder)
    other = binaries(against)[0] if against else None
    parties = {
        "corvane-fresh": Party("corvane-fresh", lambda page, home: [str(corvane)], endpoints=True, fresh=True),
        "corvane-used": Party("corvane-used", lambda page, home: [str(corvane)], endpoints=True),
        "corvane-quiet": Party("corvane-quiet", lambda page, home: [str(corvane)], endpoints=True),
        "other-fresh": Party("other-fresh", lambda page, home: [str(other)], endpoints=True, fresh=True),
        "other-used": Party("other-used", lambda page, home: [str(other)], endpoints=True),
        "bare-fresh": Party("bare-fresh", lambda page, home: [str(bare), page], fresh=True),
        "bare-used": Party("bare-used", lambda page, home: [str(bare), page]),
        "chromium-fresh": Party("chromium-fresh", chromium_arguments, fresh=True),
        "chromium-used": Party("chromium-used", chromium_arguments),
    }
    programs = {"corvane": corvane.exists() and str(corvane), "bare": bare.exists() and str(bare),
                "other": other and other.exists() and str(other), "chromium": shutil.which("chromium")}
    found = []
    for name in wanted:
        kind = name.split("-")[0]
        if programs[kind]:
            found.append(parties[name])
        else:
            print(f"bench: {name} is left out: its program is missing")
    return found
