#!/usr/bin/env python3
"""The terminal player at a terminal: a pseudo-terminal 60 columns wide, a
player who edits a line, recalls one from the history, completes a command
with Tab (a saved game's name in the folder the save dialog opens in, a
quest's name at the open prompt), and reads the page wrapped on word
boundaries.

Usage: terminal_pty_test.py FABLEWRIGHT_BIN. Every step waits for the text it
expects (at most a few seconds), never for a fixed time."""

import fcntl
import os
import pty
import re
import select
import struct
import sys
import tempfile
import termios
import time

COLUMNS = 60
WAIT = 15.0  # seconds a step may take before the test gives up on it

PAGE = ("The lantern road runs north between wet hedges, past a mill whose wheel has "
        "not turned in years, towards a crossroads where somebody has nailed a "
        "weathered signpost pointing everywhere except home.")

QUEST = ("[Story Info]\r\nTitle=Lantern\r\n"
         "[1]\r\nLocation=The gate\r\nPage Text=" + PAGE + "\r\n"
         "Option One=Walk on towards the crossroads\r\nOption One Score=+3\r\n"
         "Option One Destination Page=2\r\n"
         "[2]\r\nLocation=The crossroads\r\nPage Text=The sign creaks.\r\n")

ESCAPES = re.compile(r"\x1b(\[[0-9;?]*[A-Za-z]|[()][0-9A-B]|[=>])")


class Game:
    def __init__(self, binary, folder):
        quest = os.path.join(folder, "lantern.fbw")
        with open(quest, "w", encoding="cp1252", newline="") as f:
            f.write(QUEST)
        # No line-editor settings of the user's own (libedit reads EDITRC).
        env = dict(os.environ, TERM="xterm", LANG="C.UTF-8", LC_ALL="C.UTF-8", INPUTRC="/dev/null",
                   EDITRC="/dev/null")
        self.pid, self.fd = pty.fork()
        if self.pid == 0:
            os.chdir(folder)
            # The program's folder is not the current one: a bare name at the
            # save prompt means the program's folder, which the player may write.
            os.execve(binary, [binary, "play", "--silent", quest, "--home", folder,
                               "--app-dir", os.path.join(folder, "app")], env)
        fcntl.ioctl(self.fd, termios.TIOCSWINSZ, struct.pack("HHHH", 24, COLUMNS, 0, 0))
        self.raw = b""
        self.seen = 0  # how far expect has read

    def text(self):
        return ESCAPES.sub("", self.raw.decode("utf-8", "replace")).replace("\r", "")

    def read_some(self, deadline):
        ready, _, _ = select.select([self.fd], [], [], max(0.0, deadline - time.monotonic()))
        if not ready:
            return False
        try:
            chunk = os.read(self.fd, 4096)
        except OSError:  # the child has gone
            return False
        self.raw += chunk
        return bool(chunk)

    def expect(self, piece):
        """Waits until piece appears after what was expected before."""
        deadline = time.monotonic() + WAIT
        while True:
            found = self.text().find(piece, self.seen)
            if found >= 0:
                self.seen = found + len(piece)
                return
            if not self.read_some(deadline):  # nothing more came: out of time, or the game ended
                fail("never saw %r" % piece, self)

    def send(self, keys):
        os.write(self.fd, keys.encode("utf-8"))

    def finish(self):
        deadline = time.monotonic() + WAIT
        while self.read_some(deadline):
            pass
        while True:
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid != 0:
                return status
            if time.monotonic() > deadline:  # still running when it should have ended
                os.kill(self.pid, 9)
                fail("the game did not end", self)
            time.sleep(0.01)


def fail(message, game):
    print("FAIL:", message)
    print("---- what the terminal showed ----")
    print(game.text())
    sys.exit(1)


def check_wrapping(game):
    """The page comes in lines that fit the width, no word cut in two."""
    start = game.text().find("The lantern road")
    end = game.text().find("  1. Walk on")
    block = game.text()[start:end].strip("\n")
    lines = block.split("\n")
    if len(lines) < 3:
        fail("the page was not wrapped: %r" % block, game)
    for line in lines:
        if len(line) >= COLUMNS:
            fail("a line of %d columns: %r" % (len(line), line), game)
    if " ".join(lines) != PAGE:
        fail("the wrapped page lost or cut a word: %r" % lines, game)


def main():
    binary = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        os.mkdir(os.path.join(folder, "app"))
        open(os.path.join(folder, "app", "first.sav"), "w").close()
        game = Game(binary, folder)
        # What program this is comes first, and the quest's banner after it.
        game.expect("Fablewright 2004, Beta 5.9: tales told by your choices\nLantern\n")
        # The prompt shows the place and the score.
        game.expect("  1. Walk on towards the crossroads\nThe gate \u00b7 0 > ")
        check_wrapping(game)

        # Edited: "lok", back one character, "o": the command is look.
        game.send("lok\x1b[Do\r")
        game.expect("\nThe gate\nThe lantern road")
        game.expect("> ")

        # Recalled: items, then the up arrow and Enter runs it again.
        game.send("items\r")
        game.expect("You carry no key items.\n")
        game.expect("> ")
        game.send("\x1b[A\r")
        game.expect("You carry no key items.\n")
        game.expect("> ")

        # Completed: "sco" and Tab give score; "save ch" and Tab give save character.
        game.send("sco\t\r")
        game.expect("Score: 0\n")
        game.expect("> ")
        game.send("save ch\t\r")
        game.expect("Quest does not utilize the character option")
        game.expect("> ")

        # Completed: "fi" and Tab give first.sav, found in the program's folder.
        game.send("save\r")
        game.expect("empty to cancel: ")
        game.send("fi\t\r")
        game.expect("/app/first.sav\nSaved Successfully.")
        game.expect("> ")

        # A name with a folder in it completes from the current folder, after
        # the command completions before it: "./lant" and Tab open lantern.fbw again.
        game.send("open\r")
        game.expect("Yes or no (y/n)? ")
        game.send("y\r")
        game.expect("empty to cancel: ")
        game.send("./lant\t\r")
        game.expect("./lantern.fbw \n")
        game.expect("  1. Walk on towards the crossroads\nThe gate \u00b7 0 > ")

        game.send("1\r")
        game.expect("The sign creaks.\nScore: 3\n")
        game.expect("The crossroads \u00b7 3 > ")
        game.send("QUIT \r")  # with a quest open, the game asks first
        game.expect("Are you sure?")
        game.expect("Yes or no (y/n)? ")
        game.send("y\r")
        status = game.finish()
        if not os.WIFEXITED(status) or os.WEXITSTATUS(status) != 0:
            fail("the game ended with status %d" % status, game)
        if "\x1b[?2004" in game.raw.decode("utf-8", "replace"):
            fail("bracketed paste mode was switched on", game)
        if b"\x07" in game.raw:
            fail("the terminal's bell rang at a completion", game)
    print("terminal at %d columns: wrapped, edited, recalled, completed commands and a file name" % COLUMNS)


if __name__ == "__main__":
    main()
