# SPDX-License-Identifier: MIT
"""starts_and_ends.py PROGRAM: the real program, started and ended in the ways that users and
systems do it, each time in a home of its own."""
import os
import plistlib
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = sys.argv.pop()
PATIENCE = 120
# Of the toolkit, without a screen.
CHATTER = ("This plugin does not support",)


class Home:
    """A user's home folder, and the programs that were started in it."""

    def __init__(self, path):
        self.path = path
        self.runtime = tempfile.mkdtemp()
        self.settings = os.path.join(path, ".config/nosig/nosig.ini")
        self.favourites = os.path.join(path, ".local/share/nosig/kzrfavorites.kzrfv")

    def start(self):
        environment = {k: v for k, v in os.environ.items() if not k.startswith("XDG_")}
        environment.update(HOME=self.path, XDG_RUNTIME_DIR=self.runtime)
        return subprocess.Popen([PROGRAM], env=environment, stderr=subprocess.PIPE, text=True)

    def is_locked(self):
        return any(name.endswith(".lock") for name in os.listdir(self.runtime))


def end(program, how=signal.SIGTERM):
    """Ends a program; its status and what it said."""
    program.send_signal(how)
    _, said = program.communicate(timeout=PATIENCE)
    return program.returncode, [line for line in said.splitlines() if not line.startswith(CHATTER)]


def wait_for(condition):
    deadline = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > deadline:
            raise AssertionError("waited in vain")
        time.sleep(0.02)


class StartsAndEnds(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.home = Home(os.path.join(self.folder, "home"))
        # Tells that a program has come so far as to fetch the weather of a favourite, and keeps it
        # waiting.
        self.server = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(self.server.close)

    def fetch_from_server(self):
        os.makedirs(os.path.dirname(self.home.settings))
        with open(self.home.settings, "w", encoding="ascii") as file:
            file.write("[General]\ndataserverhost=127.0.0.1:%d\n" % self.server.getsockname()[1])
        self.server.settimeout(PATIENCE)

    def accept(self):
        connection, _ = self.server.accept()
        self.addCleanup(connection.close)

    def test_every_way_to_end_stores_what_is_to_be_kept(self):
        for how in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(how=how):
                self.home = Home(os.path.join(self.folder, how.name))
                self.fetch_from_server()
                program = self.home.start()
                self.accept()
                began = time.monotonic()
                self.assertEqual(end(program, how), (0, []))
                self.assertLess(time.monotonic() - began, 10, "it waited for the weather")
                with open(self.home.favourites, "rb") as file:
                    self.assertIn("$objects", plistlib.load(file))
                with open(self.home.settings, encoding="ascii") as file:
                    self.assertIn("curmaptype=1", file.read())

    def test_a_second_start_ends_at_once_and_a_killed_first_is_no_obstacle(self):
        self.fetch_from_server()
        both = [self.home.start(), self.home.start()]
        wait_for(lambda: any(program.poll() is not None for program in both))
        second = next(program for program in both if program.poll() is not None)
        first = both[1 - both.index(second)]
        self.assertEqual(second.communicate()[1], "")
        self.assertEqual(second.returncode, 0)
        self.accept()
        self.assertIsNone(first.poll())
        end(first, signal.SIGKILL)
        self.assertTrue(self.home.is_locked())
        third = self.home.start()
        self.accept()
        self.assertEqual(end(third), (0, []))

    def test_a_home_that_cannot_be_written_costs_one_line(self):
        wall = os.path.join(self.folder, "wall")
        with open(wall, "w", encoding="ascii"):
            pass
        self.home = Home(os.path.join(wall, "home"))
        program = self.home.start()
        wait_for(self.home.is_locked)
        status, said = end(program)
        self.assertEqual(status, 0)
        self.assertEqual(len(said), 1, said)
        self.assertIn("/wall/home/.local/share", said[0])


if __name__ == "__main__":
    unittest.main()
