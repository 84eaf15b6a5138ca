"""Programs that are killed in the middle of a write."""

import concurrent.futures
import contextlib
import fcntl
import json
import random
import select
import statistics
import time
import unittest

from probe import PATIENCE, ProbeTest, catalogue, may_trace, settings

SIZE = 60_000  # bytes of a write
PIPE = 4096  # bytes that wait between this program and the other: what is behind them has been read
WORKERS = 6  # homes in which something is written at the same time


class Write:
    """One kind of write, in a home of its own, again and again. Each time it is killed after a while."""

    def __init__(self, test, name, home, chance):
        self.test, self.name, self.home, self.chance = test, name, home, chance
        self.generation = 0
        self.outcomes = {"old": 0, "new": 0, "temporary": 0}
        self.arguments = {"settings": ("save", home.settings), "catalogue": ("apply", home.folder),
                          "defaults": ("defaults-set", "key", "-")}[name]
        self.length = statistics.median(self.attempt(None) for _ in range(5))  # seconds

    def bytes(self, generation):
        mark = f"generation {generation}"
        if self.name == "settings":
            return settings(mark, SIZE)
        return catalogue(mark, SIZE) if self.name == "catalogue" else (mark + "v" * SIZE).encode()

    def attempt(self, limit):
        """Writes the next generation and kills the writer `limit` seconds after it has its bytes. Gives back the
        seconds that it was left alone."""
        self.generation += 1
        with self.test.probe.start(*self.arguments, home=self.home) as process:
            fcntl.fcntl(process.stdin, fcntl.F_SETPIPE_SZ, PIPE)
            process.stdin.write(self.bytes(self.generation))
            process.stdin.close()
            start = time.monotonic()
            select.select([process.stdout], [], [], limit)
            seconds = time.monotonic() - start
            if limit is not None:
                process.kill()
            answer = process.stdout.read()
        found = self.check()
        if found != self.generation:
            self.test.assertNotIn(b'"bytes"', answer, "it said that it was done")
            self.test.assertIsNotNone(limit, f"{self.name}: not written: {answer}")
        self.generation = found
        return seconds

    def kill(self):
        before = self.generation
        self.attempt(self.chance.uniform(0, 1.25 * self.length))
        self.outcomes["new" if self.generation > before else "old"] += 1
        self.clear()

    def clear(self):
        """What a start of the program does, a minute later."""
        if self.home.leftovers():
            self.outcomes["temporary"] += 1
            self.home.age()
            self.test.ask("sweep", self.home.folder)
        self.test.assertEqual(self.home.leftovers(), [], f"{self.name}: left after the next start")

    def check(self):
        """The generation that stands, which is one of the last two, whole."""
        old, new = self.generation - 1, self.generation
        if self.name == "defaults":
            value = self.test.ask("defaults-get", "key", home=self.home)["value"]
            found = {self.bytes(old).decode(): old, self.bytes(new).decode(): new}.get(value, old if new == 1 else None)
            self.test.assertEqual(self.test.ask("defaults-get", "other", home=self.home)["value"], "kept")
        else:
            file = self.home.settings if self.name == "settings" else self.home.catalogue
            stands = file.read_bytes() if file.exists() else None
            found = {self.bytes(old): old, self.bytes(new): new}.get(stands)
        self.test.assertIsNotNone(found, f"{self.name}: torn or missing")
        if self.name == "catalogue" and self.home.backup.exists():
            whole = [self.bytes(number) for number in range(max(found - 2, 0), found + 1)]
            self.test.assertIn(self.home.backup.read_bytes(), whole, "torn backup")
        return found


class KillTest(ProbeTest):
    def test_leaves_every_file_whole_whenever_a_writer_is_killed(self):
        chance = random.Random(self.options.seed)
        kinds = ["settings", "catalogue", "defaults"]
        parts = [(kinds[number % 3], len(range(number, self.options.kills, WORKERS))) for number in range(WORKERS)]
        with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
            runs = [pool.submit(self.kill, number, name, count, random.Random(chance.random()))
                    for number, (name, count) in enumerate(parts)]
            done = [run.result() for run in runs]
        for name in kinds:
            told = [write.outcomes for write in done if write.name == name]
            print(name, {what: sum(outcomes[what] for outcomes in told) for what in told[0]}, flush=True)

    def kill(self, number, name, count, chance):
        home = self.home(f"home{number}")
        home.settings.write_bytes(settings("generation 0", SIZE))
        home.catalogue.write_bytes(catalogue("generation 0", SIZE))
        home.defaults.write_text(json.dumps({"key": "generation 0" + "v" * SIZE, "other": "kept", "flag": True}))
        write = Write(self, name, home, chance)
        for _ in range(count):
            write.kill()
        return write


class TogetherTest(ProbeTest):
    def test_loses_no_key_when_programs_write_defaults_at_the_same_time(self):
        home = self.home()
        rounds = min(max(self.options.kills // 10, 1), 400)  # their values stay below what a file may hold
        for number in range(rounds):
            with contextlib.ExitStack() as ended:
                pair = [ended.enter_context(self.probe.start("defaults-set", f"{name}{number}", "-", home=home))
                        for name in "ab"]
                for process in pair:
                    fcntl.fcntl(process.stdin, fcntl.F_SETPIPE_SZ, PIPE)
                    process.stdin.write(b"v" * (PIPE + 1))
                for process in pair:
                    process.stdin.close()
                answers = [process.stdout.read() for process in pair]
            self.assertTrue(all(b'"bytes"' in answer for answer in answers), f"round {number}: {answers}")
        kept = json.loads(home.defaults.read_text())
        self.assertEqual(sorted(kept), sorted(f"{name}{number}" for name in "ab" for number in range(rounds)))
        self.assertEqual(home.leftovers(), [])

    def test_loses_no_key_when_the_disk_keeps_the_other_program_waiting(self):
        if not may_trace():
            raise unittest.SkipTest("strace is missing or may not trace")
        home = self.home()
        slow = ("strace", "-f", "--seccomp-bpf", "-o", "/dev/null", "-e", "trace=fsync",
                "-e", "inject=fsync:delay_enter=700000")  # microseconds
        with self.probe.start("defaults-set", "first", "1", home=home, before=slow) as first:
            end = time.monotonic() + PATIENCE
            while not home.leftovers() and first.poll() is None:  # until it holds the lock
                self.assertLess(time.monotonic(), end, "nothing is written")
            self.ask("defaults-set", "second", "2", home=home)
            self.assertIn(b'"bytes"', first.stdout.read())
        self.assertEqual(json.loads(home.defaults.read_text()), {"first": "1", "second": "2"})
