"""printer-media with a worker of its own, over virtual printers or in place of the real worker."""

import fcntl
import json
import os
import pty
import re
import select
import shutil
import struct
import subprocess
import sys
import tempfile
import termios
import time

BINARIES, SOURCES = (os.path.abspath(path) for path in sys.argv[1:3])
sys.path.insert(0, os.path.join(SOURCES, "scripts"))
from rig import VirtualPrinter, ship  # pylint: disable=wrong-import-position

PROGRAM = os.path.join(BINARIES, "printer-media")
FAKE_WORKER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "fake_worker.py")
TIME_LIMIT_S = 60


class TracedPrinter(VirtualPrinter):
    """A virtual printer that tells which commands it got."""

    def __init__(self, folder, name, model, options=(), uri_options=""):
        path = os.path.join(folder, name + ".trace")
        with open(path, "w") as errors:
            super().__init__(BINARIES, name, model, ["--trace", *options], uri_options, errors)
        self.trace = open(path)

    def changes(self):
        """The commands since the last call that write or initialise records."""
        return [line for line in self.trace.read().splitlines()
                if re.search(r"\bwrite-record\b|\binitialize\b", line)]


class Companion:
    """The program in an environment of its own."""

    def __init__(self, printers=(), searches=None):
        self.folder = tempfile.mkdtemp()
        self.printers = [TracedPrinter(self.folder, *printer) for printer in printers]
        ship(BINARIES, self.folder, self.printers, searches)
        self.environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(self.folder, "config"),
                                PRINTER_NATIVE_PROCESS=self.path("PrinterNativeProcess"))

    def close(self):
        for printer in self.printers:
            printer.stop()
            printer.trace.close()
        shutil.rmtree(self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def start(self, *words, **options):
        return subprocess.Popen([PROGRAM, *words], env=self.environment, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, **options)

    def run(self, *words):
        """Exit status, standard output and standard error."""
        process = self.start(*words)
        output, errors = process.communicate(timeout=TIME_LIMIT_S)
        return (process.returncode, output.decode(errors="replace"),
                errors.decode(errors="replace"))

    def json(self, *words):
        """What a command that succeeds prints for programs."""
        status, output, errors = self.run(*words, "--json")
        assert status == 0, (words, status, output, errors)
        return json.loads(output)

    def on_terminal(self, *words, typed=None, ahead="", columns=80):
        """Exit status and what a terminal shows, with typed as the answer to the question, and what
        is typed ahead of it."""
        pid, terminal = pty.fork()
        if pid == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("4H", 24, columns, 0, 0))
            os.execve(PROGRAM, [PROGRAM, *words], self.environment)
        os.write(terminal, ahead.encode())
        shown, end = b"", time.monotonic() + TIME_LIMIT_S
        while time.monotonic() < end:
            try:
                more = os.read(terminal, 4096) if select.select([terminal], [], [], 1)[0] else None
            except OSError:  # the program has ended
                break
            if more == b"":
                break
            shown += more or b""
            if typed and b"[y/N]" in shown:
                os.write(terminal, typed.encode())
                typed = None
        os.close(terminal)
        return os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]), shown.decode(errors="replace")


class Fake(Companion):
    """The program with a worker that answers as it is told: see fake_worker.py."""

    def __init__(self, answers):
        self.folder = tempfile.mkdtemp()
        self.printers = []
        self.environment = dict(os.environ, PRINTER_NATIVE_PROCESS=FAKE_WORKER,
                                FAKE_PID=self.path("pid"), FAKE_ANSWERS=json.dumps(answers))

    def wait_for_worker(self):
        """Until it is asked what it does not answer."""
        end = time.monotonic() + TIME_LIMIT_S
        while not os.path.exists(self.path("pid.waits")) and time.monotonic() < end:
            time.sleep(0.01)
        os.remove(self.path("pid.waits"))

    def worker_is_gone(self):
        with open(self.path("pid")) as file:
            pid = int(file.read())
        try:
            os.kill(pid, 0)
        except ProcessLookupError:
            return True
        return False


def listed(*devices):
    """The answer that lists printers of these device names, each under its own as a name."""
    reply = [{"DeviceName": device, "PrinterName": device} for device in devices]
    return json.dumps({"GetPrinterList": 0, "Reply": reply})
