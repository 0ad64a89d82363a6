# SPDX-License-Identifier: MIT
"""starts_and_ends.py PROGRAM: starts and ends the real program in the ways that users and systems
do, each time with a home folder of its own."""
import os
import plistlib
import resource
import select
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = sys.argv.pop()
PATIENCE = 120
# Lines that the toolkit prints without a screen.
CHATTER = ("This plugin does not support",)


def end(program, how=signal.SIGTERM):
    """Ends a program; returns its status and the lines that it printed."""
    program.send_signal(how)
    _, said = program.communicate(timeout=PATIENCE)
    return program.returncode, [line for line in said.splitlines() if not line.startswith(CHATTER)]


def first_to_end(programs):
    """Waits for one of some programs to end and returns it."""
    handles = {os.pidfd_open(program.pid): program for program in programs}
    ended, _, _ = select.select(list(handles), [], [], PATIENCE)
    for handle in handles:
        os.close(handle)
    if not ended:
        raise AssertionError("all %d programs are still running" % len(handles))
    return handles[ended[0]]


def files_below(folder):
    return {os.path.relpath(os.path.join(path, name), folder)
            for path, _, names in os.walk(folder) for name in names}


def ports_listened_on(process):
    """The local addresses of a process's listening internet sockets."""
    held = {os.readlink(entry.path) for entry in os.scandir(f"/proc/{process}/fd")}
    listening = "0A"
    found = []
    for table in ("tcp", "tcp6"):
        with open(f"/proc/{process}/net/{table}", encoding="ascii") as lines:
            rows = [line.split() for line in lines][1:]
        found += [row[1] for row in rows if row[3] == listening and f"socket:[{row[9]}]" in held]
    return found


class StartsAndEnds(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.runtime = os.path.join(self.folder, "runtime")
        # A connection here shows that a program has started far enough to fetch weather. It never
        # gets an answer.
        self.server = socket.create_server(("127.0.0.1", 0))
        self.server.settimeout(PATIENCE)
        self.addCleanup(self.server.close)
        self.live_in("home")

    def live_in(self, name, *settings):
        self.home = os.path.join(self.folder, name)
        self.settings = os.path.join(self.home, ".config/nosig/nosig.ini")
        self.favourites = os.path.join(self.home, ".local/share/nosig/kzrfavorites.kzrfv")
        os.makedirs(os.path.dirname(self.settings))
        with open(self.settings, "w", encoding="ascii") as file:
            port = self.server.getsockname()[1]
            print("[General]", f"dataserverhost=127.0.0.1:{port}", *settings, sep="\n", file=file)

    def start(self, runtime=None, prepare=None, **variables):
        runtime = runtime or self.runtime
        os.makedirs(runtime, mode=0o700, exist_ok=True)
        environment = {k: v for k, v in os.environ.items() if not k.startswith("XDG_")}
        environment.update(HOME=self.home, XDG_RUNTIME_DIR=runtime, **variables)
        return subprocess.Popen([PROGRAM], env=environment, stderr=subprocess.PIPE, text=True,
                                preexec_fn=prepare)

    def start_fetching(self, **how):
        program = self.start(**how)
        self.accept()
        return program

    def accept(self):
        connection, _ = self.server.accept()
        self.addCleanup(connection.close)

    def later_says(self, runtime):
        later = self.start(runtime)
        said = later.communicate(timeout=PATIENCE)[1]
        self.assertEqual(later.returncode, 0)
        return said

    def test_every_way_to_end_stores_what_is_to_be_kept(self):
        for how in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(how=how):
                self.live_in(how.name)
                program = self.start_fetching()
                began = time.monotonic()
                self.assertEqual(end(program, how), (0, []))
                self.assertLess(time.monotonic() - began, 10, "it must not wait for the weather")
                with open(self.favourites, "rb") as file:
                    self.assertIn("$objects", plistlib.load(file))
                with open(self.settings, encoding="ascii") as file:
                    self.assertIn("curmaptype=1", file.read())

    def test_without_a_session_bus_notifications_cost_one_line(self):
        self.live_in("notified", "favoritenotices=1")
        program = self.start_fetching(DBUS_SESSION_BUS_ADDRESS="unix:path=" + self.folder)
        said = (line for line in program.stderr if not line.startswith(CHATTER))
        self.assertIn("Notifications cannot be shown: ", next(said))
        self.assertEqual(end(program), (0, []))

    def test_one_instance_works_on_a_users_files(self):
        first = self.start_fetching()
        # A second login of the same user has another runtime folder.
        for runtime in (self.runtime, os.path.join(self.folder, "other")):
            with self.subTest(runtime=runtime):
                # While it is still starting, the first one may not answer in time.
                deadline = time.monotonic() + PATIENCE
                while said := self.later_says(runtime):
                    self.assertLess(time.monotonic(), deadline, said)
        first.send_signal(signal.SIGSTOP)
        began = time.monotonic()
        said = self.later_says(self.runtime)
        self.assertLess(time.monotonic() - began, 10)
        self.assertEqual(said.count("\n"), 1, said)
        self.assertIn("cannot be brought to the front", said)
        self.assertIsNone(first.poll())
        # A killed instance does not block the next one.
        end(first, signal.SIGKILL)
        self.assertEqual(end(self.start_fetching()), (0, []))

    def test_of_two_starts_at_once_one_stays(self):
        both = [self.start(), self.start()]
        second = first_to_end(both)
        first = both[1 - both.index(second)]
        second.communicate()
        self.assertEqual(second.returncode, 0)
        self.accept()
        self.assertIsNone(first.poll())
        self.assertEqual(end(first), (0, []))

    def test_a_home_that_cannot_be_written_costs_one_line(self):
        wall = os.path.join(self.folder, "wall")
        with open(wall, "w", encoding="ascii"):
            pass
        self.home = os.path.join(wall, "home")
        program = self.start()
        self.assertIn("/wall/home/.local/share", program.stderr.readline())
        self.assertEqual(end(program), (0, []))

    def test_it_writes_only_the_files_that_it_names_and_listens_on_no_port(self):
        scratch = os.path.join(self.folder, "scratch")
        os.mkdir(scratch)
        program = self.start_fetching(TMPDIR=scratch)
        self.assertEqual(ports_listened_on(program.pid), [])
        self.assertNotEqual(ports_listened_on(os.getpid()), [], "the check must see the test's own")
        self.assertEqual(end(program), (0, []))
        self.assertEqual(files_below(self.home), {
            ".config/nosig/nosig.ini", ".local/share/nosig/kzrfavorites.kzrfv",
            ".local/share/nosig/lock", ".cache/nosig/reports.sqlite"})
        self.assertEqual(files_below(scratch), set())

    def test_64_open_files_are_enough(self):
        few = lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (64, 64))
        self.assertEqual(end(self.start_fetching(prepare=few)), (0, []))
        self.assertTrue(os.path.exists(self.favourites))


if __name__ == "__main__":
    unittest.main()
