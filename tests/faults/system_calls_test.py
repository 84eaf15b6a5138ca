"""Writes in which one system call fails, or in which the program is killed, at every place in turn."""

import collections
import concurrent.futures
import json
import os
import random
import re
import shutil
import unittest

from probe import Home, ProbeTest, catalogue, may_trace

ERRORS = ("EIO", "ENOSPC", "EACCES", "EINTR", "EDQUOT", "EROFS")
# Everything that is done to a file or a folder.
CALLS = ("openat,open,creat,close,read,pread64,write,pwrite64,fsync,fdatasync,ftruncate,fallocate,lseek,flock,fcntl,"
         "newfstatat,fstat,lstat,stat,statx,access,faccessat,faccessat2,readlink,readlinkat,getdents64,mkdir,mkdirat,"
         "chmod,fchmod,fchmodat,rename,renameat,renameat2,link,linkat,unlink,unlinkat,symlink")
WORKERS = 3
CALL = re.compile(r"^\d+ +([a-z0-9_]+)\(")
LAST_INPUT = re.compile(r'^\d+ +read\(0, "", ')


class Case:
    """A write that starts from the same files each time: how to begin, how to write, and what may stand then."""

    def __init__(self, arguments, input, begin, state):
        self.arguments, self.input, self.begin, self.state = arguments, input, begin, state


def save_case():
    def begin(home):
        home.settings.write_bytes(b"old")
        home.settings.chmod(0o640)

    def state(home):
        if home.settings.stat().st_mode & 0o777 != 0o640:
            return "another mode"
        return {b"old": "old", b"new and longer": "new"}.get(home.settings.read_bytes())
    return Case(lambda home: ("save", home.settings), b"new and longer", begin, state)


def linked_save_case():
    """Through a link: what is replaced lies elsewhere."""
    def begin(home):
        home.catalogue.write_bytes(b"old")
        home.settings.symlink_to(home.catalogue)

    def state(home):
        if not home.settings.is_symlink():
            return "the link was replaced"
        return {b"old": "old", b"new": "new"}.get(home.catalogue.read_bytes())
    return Case(lambda home: ("save", home.settings), b"new", begin, state)


def apply_case():
    def begin(home):
        home.catalogue.write_bytes(catalogue("old"))
        home.backup.write_bytes(catalogue("older"))

    def state(home):
        if home.backup.exists() and home.backup.read_bytes() not in (catalogue("older"), catalogue("old")):
            return "a torn backup"
        return {catalogue("old"): "old", catalogue("new"): "new"}.get(home.catalogue.read_bytes())
    return Case(lambda home: ("apply", home.folder), catalogue("new"), begin, state)


def defaults_case():
    """The previous generation lacks a key that the file has."""
    def begin(home):
        home.defaults.write_text(json.dumps({"key": "old", "other": "kept"}))
        home.defaults.with_name("defaults.json.previous").write_text(json.dumps({"key": "older"}))

    def state(home):
        for file in (home.defaults, home.defaults.with_name("defaults.json.previous")):
            values = json.loads(file.read_bytes())
            if file == home.defaults and values.get("other") != "kept":
                return f"a key was lost: {values}"
        return {"old": "old", "new": "new"}.get(json.loads(home.defaults.read_bytes())["key"])
    return Case(lambda home: ("defaults-set", "key", "-"), b"new", begin, state)


class SystemCallsTest(ProbeTest):
    def setUp(self):
        super().setUp()
        if not may_trace():
            raise unittest.SkipTest("strace is missing or may not trace")

    def begin(self, case, name):
        home = Home(self.folder / name)
        case.begin(home)
        return home

    def places(self, case):
        """Every call of the write itself, each as its name and its number among all calls of that name."""
        home, log = self.begin(case, "counted"), self.folder / "calls"
        before = ("strace", "-f", "--seccomp-bpf", "-o", log, "-e", f"trace={CALLS}")
        self.ask(*case.arguments(home), home=home, before=before, input=case.input)
        self.assertEqual(case.state(home), "new")
        lines = log.read_text(errors="replace").splitlines()
        main = lines[0].split()[0]
        counts, places = collections.Counter(), []
        start = max(number for number, line in enumerate(lines) if LAST_INPUT.match(line))
        for number, line in enumerate(lines):
            found = CALL.match(line)
            if found and line.split()[0] == main:
                counts[found[1]] += 1
                if number > start:
                    places.append((found[1], counts[found[1]]))
        return places

    def attempt(self, case, number, place, fault):
        """One write with one fault. Gives back what is wrong then, or None; and whether the fault came about."""
        call, when = place
        home, log = self.begin(case, f"{number}"), self.folder / f"{number}.log"
        killed = fault.startswith("signal")
        quick = () if killed else ("--seccomp-bpf",)  # which leaves out what only sends a signal
        before = ("strace", "-f", *quick, "-o", log, "-e", f"trace={call}", "-e", f"inject={call}:{fault}:when={when}")
        status, _ = self.probe.run(*case.arguments(home), home=home, before=before, input=case.input)
        state = case.state(home)
        hit = ("killed by SIGKILL" if killed else "INJECTED") in log.read_text(errors="replace")
        wrong = None
        if state not in ("old", "new") or (status == 0 and state != "new"):
            wrong = f"{call} {when} {fault}: status {status}, {state}"
        elif home.leftovers() and (killed or call in ("unlink", "unlinkat")):
            home.age()
            self.ask("sweep", home.folder)
        if home.leftovers():
            wrong = f"{call} {when} {fault}: {home.leftovers()} left"
        shutil.rmtree(home.folder)
        os.unlink(log)
        return wrong, hit

    def inject(self, name, case):
        chance = random.Random(self.options.seed)
        places = self.places(case)
        errors = {place: ERRORS if self.options.all_errors else (chance.choice(ERRORS),) for place in places}
        faults = [(place, f"error={error}") for place in places for error in errors[place]]
        faults += [(place, "signal=KILL") for place in places]
        with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
            told = list(pool.map(lambda item: self.attempt(case, item[0], *item[1]), enumerate(faults)))
        hits = sum(hit for _, hit in told)
        print(f"{name}: {len(places)} calls, {len(faults)} faults, {hits} came about", flush=True)
        self.assertEqual([wrong for wrong, _ in told if wrong], [])
        self.assertGreater(hits, 0.9 * len(faults), "the calls are others than those that were counted")

    def test_keeps_files_whole_whichever_call_of_a_save_fails(self):
        self.inject("save", save_case())

    def test_keeps_links_and_their_targets_whichever_call_fails(self):
        self.inject("save through a link", linked_save_case())

    def test_keeps_the_catalogue_whichever_call_of_an_update_fails(self):
        self.inject("apply", apply_case())

    def test_keeps_every_default_whichever_call_of_a_change_fails(self):
        self.inject("defaults-set", defaults_case())
