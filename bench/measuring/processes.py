"""What a program and everything below it costs, read from /proc."""

import os
from collections import defaultdict
from pathlib import Path

TICKS = os.sysconf("SC_CLK_TCK")


def _stat(pid):
    """The fields of /proc/PID/stat after the name, which may itself hold blanks and brackets."""
    return Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()


def tree(root):
    """The ids of a process and all its descendants."""
    children = defaultdict(list)
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                children[int(_stat(entry)[1])].append(int(entry))
            except (OSError, IndexError):
                continue
    found, waiting = [], [root]
    while waiting:
        pid = waiting.pop()
        found.append(pid)
        waiting += children[pid]
    return found


def name(pid):
    try:
        return Path(f"/proc/{pid}/comm").read_text().strip()
    except OSError:
        return "?"


def pss(pids, part="Pss"):
    """Proportional set size in MiB by process name; a process whose memory is closed to us counts as nothing. The part
    "Pss_Anon" leaves out what files hold, whose share depends on the other programs that run."""
    sizes = defaultdict(float)
    for pid in pids:
        try:
            for line in Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
                if line.startswith(f"{part}:"):
                    sizes[name(pid)] += int(line.split()[1]) / 1024
        except OSError:
            continue
    return dict(sizes)


def cpu_seconds(pids):
    """User and system time so far by process id."""
    seconds = {}
    for pid in pids:
        try:
            fields = _stat(pid)
            seconds[pid] = (int(fields[11]) + int(fields[12])) / TICKS
        except OSError:
            continue
    return seconds


def cpu_milliseconds(pid):
    """The time that a process's threads, those that run still, have spent on a processor so far, to the nanosecond."""
    spent = 0
    for statistics in Path(f"/proc/{pid}/task").glob("*/schedstat"):
        try:
            spent += int(statistics.read_text().split()[0])
        except (OSError, ValueError, IndexError):
            pass
    return spent / 1e6


def wake_ups(pids):
    """How often each thread has gone to sleep so far, by (process id, thread id)."""
    counts = {}
    for pid in pids:
        try:
            threads = os.listdir(f"/proc/{pid}/task")
        except OSError:
            continue
        for thread in threads:
            try:
                status = Path(f"/proc/{pid}/task/{thread}/status").read_text()
                counts[pid, int(thread)] = int(status.rpartition("\nvoluntary_ctxt_switches:")[2].split()[0])
            except (OSError, IndexError, ValueError):
                continue
    return counts


def grown(before, after):
    """Differences by key; what began in between counts from nothing, what ended does not count."""
    return {key: value - before.get(key, 0) for key, value in after.items()}
