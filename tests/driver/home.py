"""The home folder that a program under test runs in."""

import json
import os
from pathlib import Path

OWN = "Hollisward/Corvane"


class Home:
    """A fresh home folder, and what Corvane keeps there."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.data = self.folder / ".local/share" / OWN
        self.downloads = self.folder / "Downloads"
        self.catalogue = self.data / "sites/sites.json"
        self._settings = self.data / "settings/settings.json"
        self._defaults = self.folder / ".config" / OWN / "defaults.json"
        for part in (".config", ".local/share", ".local/state", ".cache", "Downloads"):
            (self.folder / part).mkdir(parents=True, exist_ok=True)
        (self.folder / ".config/user-dirs.dirs").write_text('XDG_DOWNLOAD_DIR="$HOME/Downloads"\n')

    def environment(self):
        return {"HOME": str(self.folder), "XDG_CONFIG_HOME": str(self.folder / ".config"),
                "XDG_DATA_HOME": str(self.folder / ".local/share"), "XDG_STATE_HOME": str(self.folder / ".local/state"),
                "XDG_CACHE_HOME": str(self.folder / ".cache")}

    def settings(self):
        return self._read(self._settings)

    def defaults(self):
        return self._read(self._defaults)

    def write_settings(self, **values):
        """A whole record: the program takes no part of one."""
        self._write(self._settings, values)

    def write_defaults(self, **values):
        self._write(self._defaults, values)

    def write_catalogue(self, text):
        """As if the user had accepted this catalogue earlier."""
        self.catalogue.parent.mkdir(parents=True, exist_ok=True)
        self.catalogue.write_bytes(text)

    def files_over(self, size):
        """The paths below the home of all files with more bytes than this."""
        return sorted(str(Path(folder, name).relative_to(self.folder)) for folder, _, names in os.walk(self.folder)
                      for name in names if Path(folder, name).lstat().st_size > size)

    @staticmethod
    def _read(file):
        try:
            return json.loads(file.read_text())
        except (FileNotFoundError, ValueError):
            return {}

    @staticmethod
    def _write(file, values):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(json.dumps(values))
