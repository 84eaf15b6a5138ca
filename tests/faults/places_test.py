"""Full disks, places that cannot be written, and other things where a file should be."""

import json
import os
import resource
import shutil
import signal
import socket
import subprocess
import unittest

from probe import Home, ProbeTest, catalogue, settings

NEW = catalogue("new", 20_000)
WRITERS = {  # the file that is written, how, and the bytes before and after
    "apply": (lambda home: home.catalogue, lambda home: ("apply", home.folder), catalogue("old"), NEW),
    "defaults-set": (lambda home: home.defaults, lambda home: ("defaults-set", "key", "-"), b'{"key":"old"}',
                     json.dumps({"key": NEW.decode()}, separators=(",", ":")).encode()),
    "save": (lambda home: home.settings, lambda home: ("save", home.settings), b"old", NEW),
}
LARGEST = 4 << 20  # bytes of a file that is read


def a_link(place, good):
    place.symlink_to(good)


def a_loop(place, good):
    place.symlink_to(place.name)


def a_dangling_link(place, good):
    place.symlink_to(good.with_name("to-be-made"))


def a_link_to_no_folder(place, good):
    place.symlink_to(good.parent / "none/below")


def a_folder(place, good):
    place.mkdir()


def a_pipe(place, good):
    os.mkfifo(place)


def a_socket(place, good):
    where = os.open(place.parent, os.O_PATH)  # the path itself may be too long for an address
    with socket.socket(socket.AF_UNIX) as bound:
        bound.bind(f"/proc/self/fd/{where}/{place.name}")
    os.close(where)


def a_device(place, good):
    place.symlink_to("/dev/zero")


def too_large_a_file(place, good):
    place.write_bytes(good.read_bytes())
    os.truncate(place, LARGEST + 1)


OBSTACLES = (a_loop, a_link_to_no_folder, a_folder, a_pipe, a_socket, a_device)
UNREADABLE = (*OBSTACLES, a_dangling_link, too_large_a_file)


def small_disk():
    """No file of this process grows beyond 4096 bytes; a longer write is cut, the next one fails."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (4096, 4096))


class ObstaclesTest(ProbeTest):
    def test_reads_stand_ins_where_no_regular_file_of_bounded_size_is(self):
        samples = {  # a document of each kind, and what tells that it has been read
            "catalogue": (catalogue("good"), lambda answer: answer["sites"][0]["service"] == "good"),
            "pending": (b'{"notifications":[{"recipientId":1}]}', lambda answer: answer["notifications"] is not None),
            "settings": (settings("Light"), lambda answer: answer["settings"]["AppTheme"] == "Light"),
            "theme": (b'{"colors":{"text":"#010203"}}', lambda answer: answer["colors"]["text"][0] < 0.01),
            "version-file": (b'{"version":"9"}', lambda answer: answer["version"] == "9"),
            "archive": (b'{"archives":[{"file":"a","title":"b"}]}', lambda answer: answer["archives"] != []),
            "redirect": (b'{"source_url":"a"}', lambda answer: answer["address"] is not None)}
        for kind, (document, is_read) in samples.items():
            folder = self.folder / kind
            folder.mkdir()
            (folder / "good").write_bytes(document)
            for obstacle in (a_link, *UNREADABLE):
                obstacle(folder / obstacle.__name__, folder / "good")
            files = ["good", "a_link", *(obstacle.__name__ for obstacle in UNREADABLE), "none"]
            status, answers = self.probe.run(kind, *(folder / name for name in files))
            self.assertEqual(status, 0)
            self.assertEqual([name for name, answer in zip(files, answers, strict=True) if is_read(answer)],
                             ["good", "a_link"], kind)

    def test_takes_the_previous_defaults_where_the_file_cannot_be_read(self):
        for obstacle, expected in [(a_link, "newest"), *((obstacle, "previous") for obstacle in UNREADABLE),
                                   (lambda place, good: None, None)]:
            home = self.home()
            good = home.folder / "good"
            good.write_text('{"key":"newest"}')
            home.defaults.with_name("defaults.json.previous").write_text('{"key":"previous"}')
            obstacle(home.defaults, good)
            self.assertEqual(self.ask("defaults-get", "key", home=home)["value"], expected, obstacle.__name__)
            shutil.rmtree(home.folder)

    def test_writes_through_links_and_leaves_everything_else_alone(self):
        for command, (place, arguments, old, new) in WRITERS.items():
            for obstacle in (a_link, a_dangling_link, *OBSTACLES):
                home = self.home()
                good = home.folder / "good"
                good.write_bytes(old)
                obstacle(place(home), good)
                before = os.lstat(place(home))
                status, answers = self.probe.run(*arguments(home), input=NEW, home=home)
                about = f"{command}, {obstacle.__name__}: {answers}"
                after = os.lstat(place(home))
                self.assertEqual((after.st_ino, after.st_mode), (before.st_ino, before.st_mode), about)
                self.assertEqual(home.leftovers(), [], about)
                if obstacle in OBSTACLES:
                    self.assertEqual((status, list(answers[0])), (1, ["error"]), about)
                else:
                    self.assertEqual((status, place(home).read_bytes()), (0, new), about)
                shutil.rmtree(home.folder)

    def test_writes_all_the_same_when_something_is_in_the_way_of_a_companion(self):
        for command, suffix in [("apply", ".bak"), ("defaults-set", ".previous"), ("defaults-set", ".lock")]:
            place, arguments, old, new = WRITERS[command]
            for obstacle in (a_dangling_link, *OBSTACLES):
                home = self.home()
                file = place(home)
                file.write_bytes(old)
                obstacle(file.with_name(file.name + suffix), file)
                self.ask(*arguments(home), input=NEW, home=home)
                self.assertEqual((file.read_bytes(), home.leftovers()), (new, []), f"{suffix}, {obstacle.__name__}")
                shutil.rmtree(home.folder)


class FullDiskTest(ProbeTest):
    def test_keeps_the_old_bytes_when_the_new_ones_find_no_room(self):
        for command, (place, arguments, old, _) in WRITERS.items():
            home = self.home()
            for before in (None, old):  # nothing was there; something was
                if before:
                    place(home).write_bytes(before)
                status, answers = self.probe.run(*arguments(home), input=NEW, home=home, preexec_fn=small_disk)
                self.assertEqual((status, list(answers[0])), (1, ["error"]), command)
                self.assertEqual(place(home).read_bytes() if place(home).exists() else None, before, command)
                self.assertEqual(home.leftovers(), [], command)
            shutil.rmtree(home.folder)


class ReadOnlyTest(ProbeTest):
    def setUp(self):
        super().setUp()
        self.is_root = os.geteuid() == 0
        if self.is_root:  # who may write whatever its mode is
            trial = self.folder / "trial"
            trial.touch()
            if not self.protect(trial):
                raise unittest.SkipTest("this file system cannot make a file immutable")
            self.release(trial)

    def protect(self, path):
        if self.is_root:
            try:
                return subprocess.run(["chattr", "+i", path], capture_output=True).returncode == 0
            except OSError:
                return False
        path.chmod(path.stat().st_mode & ~0o222)
        return True

    def release(self, path):
        if self.is_root:
            subprocess.run(["chattr", "-i", path], check=True)
        else:
            path.chmod(path.stat().st_mode | 0o200)

    def attempt(self, command, protected, has_file=True):
        """One write while the chosen paths cannot be written. The status, and what stands then."""
        place, arguments, old, _ = WRITERS[command]
        home = Home(self.folder / "home")
        if has_file:
            place(home).write_bytes(old)
        paths = protected(place(home))
        for path in paths:
            self.assertTrue(self.protect(path))
        try:
            status, _ = self.probe.run(*arguments(home), input=NEW, home=home)
            self.assertEqual(home.leftovers(), [], command)
            return status, place(home).read_bytes() if place(home).exists() else None
        finally:
            for path in reversed(paths):
                self.release(path)
            shutil.rmtree(home.folder)

    def test_rewrites_a_file_in_its_place_where_only_the_folder_is_closed(self):
        for command, (_, _, _, new) in WRITERS.items():
            self.assertEqual(self.attempt(command, lambda file: [file.parent]), (0, new), command)

    def test_fails_and_changes_nothing_where_the_file_is_closed_too(self):
        for command, (_, _, old, _) in WRITERS.items():
            self.assertEqual(self.attempt(command, lambda file: [file, file.parent]), (1, old), command)

    def test_fails_where_a_new_file_has_no_place(self):
        for command in WRITERS:
            self.assertEqual(self.attempt(command, lambda file: [file.parent], has_file=False), (1, None), command)
