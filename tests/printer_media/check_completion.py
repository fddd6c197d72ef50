"""bash and zsh, with the completion key pressed on command lines."""

import os
import pty
import re
import select
import shutil
import sys
import time
import unittest

from companion import BINARIES, SOURCES, TIME_LIMIT_S, Companion

SCRIPTS = os.path.join(SOURCES, "printer_media", "completions")
PRINTERS = [("Studio", "QM-R410 Series"), ("Banner hall (1)", "QM-T84 Series"),
            ("Proof", "QM-V5 Series"), ("-dash's", "QM-R410 Series")]
ODD = "Que \"said\" `ls` $(x) \\ !1 *"
SETUP = {
    "bash": f"source {SCRIPTS}/printer-media.bash; set +o history; bind 'set bell-style none'\n",
    "zsh": f"fpath=({SCRIPTS} $fpath); autoload -Uz compinit; compinit -u -D; unsetopt beep\n",
}
START = {"bash": ["bash", "--norc", "--noprofile", "-i"], "zsh": ["zsh", "-f", "-i"]}

# What is typed, with the key as a tab, and the words that come of it.
LINES = [
    ("sta\t\t", ["status"]),
    ("status stu\t", ["status", "Studio"]),
    ("status ban\t", ["status", "Banner hall (1)"]),
    ("status Banner\\ h\t", ["status", "Banner hall (1)"]),
    ('status "Banner h\t', ["status", "Banner hall (1)"]),
    ("get Studio post\t", ["get", "Studio", "Poster 1:2"]),
    ("get Studio Poster\\ 1:\t", ["get", "Studio", "Poster 1:2"]),
    ("get Studio que\t", ["get", "Studio", ODD]),
    ("get Studio \"que\t", ["get", "Studio", ODD]),
    ("get Studio 'que\t", ["get", "Studio", ODD]),
    ("status -- -d\t", ["status", "--", "-dash's"]),
    ("status -- '-d\t", ["status", "--", "-dash's"]),
    ("get Studio 27\t", ["get", "Studio", "27"]),
    ("get Studio 3 --lay\t12\t", ["get", "Studio", "3", "--layout", "128"]),
    ("init Studio al\t", ["init", "Studio", "All"]),
    ("set Studio 3 headm\tprin\t", ["set", "Studio", "3", "HeadMovement=PrinterFullWidth"]),
    ("set Studio 3 PlatenGap=2.5 FeedS\tA\t", ["set", "Studio", "3", "PlatenGap=2.5",
                                               "FeedSpeed=Auto"]),
    ("set Studio 3 FeedSpeed=\"A\t", ["set", "Studio", "3", "FeedSpeed=Auto"]),
    ("set --layout 1 Studio 3 FeedSpeedM\tLv1", ["set", "--layout", "1", "Studio", "3",
                                                 "FeedSpeedMTC=Lv1"]),
    ("set --layout=1 Studio 3 FeedSpeedM\tLv1", ["set", "--layout=1", "Studio", "3",
                                                 "FeedSpeedMTC=Lv1"]),
    ("--js\tlist", ["--json", "list"]),
    ("set Banner\\ hall\\ \\(1\\) 3 Takeup\tAu\t", ["set", "Banner hall (1)", "3",
                                                  "TakeupTension=Auto"]),
    ("save Proof reco\t", ["save", "Proof", "records of proof.json"]),
    ("set Studio 3 Takeup\t", ["set", "Studio", "3", "Takeup"]),
    ("status 'Nobody\t'", ["status", "Nobody"]),
]


class Shell:
    """An interactive shell on a terminal."""

    def __init__(self, name, environment, folder):
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(folder)
            os.execvpe(name, START[name], {**environment, "TERM": "dumb", "PS1": "> "})
        os.write(self.terminal, SETUP[name].encode() + b"printf '%s' rea dy\n")
        self.read_until("ready")

    def read_until(self, end):
        text, limit = "", time.monotonic() + TIME_LIMIT_S
        while end not in text and time.monotonic() < limit:
            if select.select([self.terminal], [], [], 1)[0]:
                text += os.read(self.terminal, 4096).decode(errors="replace")
        return text

    def words(self, typed):
        """The words that a typed line becomes, which the shell prints instead of running them."""
        os.write(self.terminal, b"printer-media " + typed.encode())
        os.write(self.terminal, b"\x01printf '{%s}' \x05 'e'nd\n")
        shown = self.read_until("{end}")
        return re.findall(r"\{([^}]*)\}", shown[shown.rindex("{printer-media}"):])[1:-1]

    def close(self):
        os.close(self.terminal)
        os.waitpid(self.pid, 0)


class Completion(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.companion = Companion(PRINTERS)
        for record, name in (("5", "Poster 1:2"), ("6", ODD)):
            cls.companion.run("set", "Studio", record, "-y", "CustomMediaName=" + name,
                              "RegistrationFlag=1")
        cls.companion.environment["PATH"] = BINARIES + ":" + os.environ["PATH"]
        with open(cls.companion.path("records of proof.json"), "w"):
            pass

    @classmethod
    def tearDownClass(cls):
        cls.companion.close()

    def check(self, name):
        if not shutil.which(name):
            self.skipTest("there is no " + name)
        shell = Shell(name, self.companion.environment, self.companion.folder)
        self.addCleanup(shell.close)
        for typed, expected in LINES:
            with self.subTest(typed):
                self.assertEqual(shell.words(typed), expected)

    def test_bash(self):
        self.check("bash")

    def test_zsh(self):
        self.check("zsh")

    def test_every_command_and_option_is_known(self):
        told = self.companion.run("--help")[1]
        commands = re.findall(r"^  (\w+) {2,}", told.split("Commands:")[1].split("\n\n")[0], re.M)
        words = self.companion.run("complete", "printer-media ")[1].split()
        self.assertEqual(words, commands)
        for command in commands:
            told = self.companion.run(command, "--help")[1] + " --json --answer-time"
            words = self.companion.run("complete", f"printer-media {command} --")[1].split()[1:]
            self.assertEqual(sorted(words), sorted(set(re.findall(r"--[a-z][a-z-]+", told))),
                             command)

    def test_values(self):
        status, output, _ = self.companion.run("complete", "printer-media set Studio 3 PlatenGap=")
        self.assertEqual((status, output.split()),
                         (0, ["PlatenGap=", "PlatenGap=2.0", "PlatenGap=1.5", "PlatenGap=2.5"]))
        for line in ("", "printer-media get Nobody ", "printer-media gte ", "x 'y \\"):
            self.assertEqual(self.companion.run("complete", line)[0], 0)


unittest.main(argv=sys.argv[:1])
