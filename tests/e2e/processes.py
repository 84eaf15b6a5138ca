"""What the programs that a test has started are made of, as the system tells."""

import os
from pathlib import Path

LISTENING = "0A"


def named(name):
    """The ids of the processes of this name (its first 15 characters) that this process started, or that those did."""
    parents, found = {}, []
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit() and (facts := _facts(entry)):
            own, parents[int(entry.name)] = facts
            if own == name[:15]:
                found.append(int(entry.name))
    return [process for process in found if _descends(process, parents)]


def at_home(folder):
    """The ids of the living processes whose home is this folder, whoever is their parent now."""
    mark, found = f"HOME={folder}".encode(), []
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                if mark in (entry / "environ").read_bytes().split(b"\0"):
                    found.append(int(entry.name))
            except (FileNotFoundError, ProcessLookupError, PermissionError):
                pass  # it has gone, or is none of ours
    return found


def listening_addresses(process):
    """The IPv4 addresses on which a process waits for clients, each as dotted numbers."""
    sockets = set()
    for descriptor in Path(f"/proc/{process}/fd").iterdir():
        try:
            sockets.add(os.readlink(descriptor))
        except FileNotFoundError:
            pass  # closed meanwhile
    rows = [row.split() for row in Path(f"/proc/{process}/net/tcp").read_text().splitlines()[1:]]
    return [_dotted(row[1].partition(":")[0]) for row in rows if row[3] == LISTENING and f"socket:[{row[9]}]" in sockets]


def _dotted(little_endian):
    return ".".join(str(part) for part in reversed(bytes.fromhex(little_endian)))


def _facts(entry):
    """Name and parent; None when the process has gone."""
    try:
        text = (entry / "stat").read_text()
    except (FileNotFoundError, ProcessLookupError):
        return None
    name, rest = text[text.index("(") + 1:].rsplit(")", 1)
    return name, int(rest.split()[1])


def _descends(process, parents):
    while process in parents:
        process = parents[process]
        if process == os.getpid():
            return True
    return False
