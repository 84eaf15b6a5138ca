"""Waiting for what other programs do."""

import os
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

KINDS = ("object:children-changed", "object:state-changed", "object:property-change", "object:text-changed", "window",
         "document:load-complete")


class Wrong(Exception):
    """Something is not as it should be."""


class Events:
    """Wakes whoever waits when something happened: an event on the accessibility bus, a changed file, the end of a
    process. What nothing announces is looked at again twice a second."""

    PATIENCE = 30  # seconds until something that has not happened counts as wrong
    FALLBACK = 500  # milliseconds
    BATCH = 500  # events that are taken together at most

    def __init__(self):
        self._context = GLib.MainContext.default()
        self._documents = []
        self._active = None
        self._monitors = {}
        # The bus tells of programs that are only just arriving; reading those too early is no fault.
        GLib.log_set_handler("dbind", GLib.LogLevelFlags.LEVEL_WARNING, lambda *_: None, None)
        self._listener = Atspi.EventListener.new(self._heard)
        for kind in KINDS:
            self._listener.register(kind)

    def until(self, what, holds, patience=PATIENCE):
        """Waits until `holds` gives something true, and gives that back; `what` says in words what is awaited."""
        end = time.monotonic() + patience
        ticks = GLib.timeout_add(self.FALLBACK, lambda: True)
        try:
            while True:
                self._drain()
                try:
                    if found := holds():
                        return found
                except GLib.Error:
                    pass  # the tree changed while it was read
                if time.monotonic() > end:
                    raise Wrong(f"{what}: not within {patience} seconds")
                self._context.iteration(True)
        finally:
            GLib.source_remove(ticks)

    def watch_folder(self, folder):
        """Changes below this existing folder, not below its folders, wake from now on."""
        if str(folder) not in self._monitors:
            monitor = Gio.File.new_for_path(str(folder)).monitor_directory(Gio.FileMonitorFlags.WATCH_MOVES, None)
            monitor.connect("changed", lambda *_: None)
            self._monitors[str(folder)] = monitor

    def until_ended(self, process, what, patience=PATIENCE):
        """Waits for the end of a child process and gives its status back."""
        descriptor = os.pidfd_open(process.pid)
        GLib.io_add_watch(descriptor, GLib.IOCondition.IN, lambda *_: False)  # once: it stays readable
        try:
            self.until(what, lambda: process.poll() is not None, patience)
        finally:
            os.close(descriptor)
        return process.returncode

    def documents(self):
        """The documents that web processes have told of, the latest last; some may have gone."""
        self._drain()
        return list(self._documents)

    def active(self):
        """The window that is active on the bus; None when none is. Dialogs only announce it: the toolkit leaves it out
        of their states."""
        self._drain()
        return self._active

    def _drain(self):
        for _ in range(self.BATCH):
            if not self._context.pending():
                return
            self._context.iteration(False)

    def _heard(self, event):
        if event.type == "object:state-changed:active":
            if event.detail1:
                self._active = event.source
            elif event.source == self._active:
                self._active = None
        try:
            if event.source.get_role() == Atspi.Role.DOCUMENT_WEB and event.source not in self._documents:
                self._documents.append(event.source)
        except GLib.Error:
            pass  # it has gone already
