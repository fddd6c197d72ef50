"""A shell at a terminal, where the products are installed: what a user of them types and sees."""

import atexit
import codecs
import fcntl
import os
import pty
import re
import select
import shlex
import shutil
import signal
import socket
import struct
import tempfile
import termios
import time

SHIPPED_LIST = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "port_driver",
                            "SupportPrinterList.xml")
LIST = "/etc/printer-native-process/SupportPrinterList.xml"
WORKER_FOLDER = "/usr/libexec/printer-native-process"
PLACES = ("/etc/printer-native-process", WORKER_FOLDER)
PORTS = ("9100", "9101", "9102", "1161", "1162", "1163")  # stand for free ones of this machine
PROMPT = "\x1e"
QUESTION = "[y/N] "
WIDTH = 104
TIME_LIMIT_S = 60


def install(binaries, root):
    """Lays the products of a build out below root as the package does."""
    programs, worker_folder = root + "/usr/bin", root + WORKER_FOLDER
    for folder in (programs, worker_folder, os.path.dirname(root + LIST), root + "/home"):
        os.makedirs(folder)
    for name in ("printer-media", "virtual-printer"):
        shutil.copy(os.path.join(binaries, name), programs)
    for name in ("PrinterNativeProcess", "libCoreFoundation.so"):
        shutil.copy(os.path.join(binaries, name), worker_folder)
    shutil.copytree(os.path.join(binaries, "ZIO"), worker_folder + "/ZIO")
    shutil.copy(SHIPPED_LIST, root + LIST)  # the one in the build may have been edited
    os.symlink(root + LIST, os.path.join(worker_folder, "SupportPrinterList.xml"))


def free_ports(count):
    """Ports that neither protocol uses at the moment."""
    held = []
    while len(held) < 2 * count:
        pair = [socket.socket(socket.AF_INET, kind)
                for kind in (socket.SOCK_STREAM, socket.SOCK_DGRAM)]
        try:
            pair[0].bind(("127.0.0.1", 0))
            pair[1].bind(pair[0].getsockname())
            held += pair
        except OSError:
            for one in pair:
                one.close()
    ports = [str(one.getsockname()[1]) for one in held[::2]]
    for one in held:
        one.close()
    return ports


class Console:
    """What is typed and shown has the places of the package and the ports above, whatever stands for
    them on this machine."""

    def __init__(self, binaries, shell=None):
        """With shell, the command of one where the package is installed; else binaries is installed
        in a folder of its own."""
        self.root, environment = "", dict(os.environ)
        if shell is None:
            self.root = tempfile.mkdtemp()
            atexit.register(shutil.rmtree, self.root)
            install(binaries, self.root)
            environment = {"PATH": self.root + "/usr/bin:" + os.environ["PATH"],
                           "HOME": self.root + "/home", "LANG": "C.UTF-8"}
        self.ports = dict(zip(PORTS, free_ports(len(PORTS))))
        words = shlex.split(shell or "") + ["bash", "--norc", "--noprofile", "--noediting", "-i"]
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.execvpe(words[0], words, environment)
        atexit.register(self.close)
        self.decode = codecs.getincrementaldecoder("utf-8")(errors="replace").decode
        self.set_up_terminal()
        self.send(f"cd; set +H; PS1=$'\\x{ord(PROMPT):02x}' PS2=")
        self.read_until(lambda shown: shown.endswith(PROMPT))

    def set_up_terminal(self):
        attributes = termios.tcgetattr(self.terminal)
        attributes[3] &= ~termios.ECHO
        termios.tcsetattr(self.terminal, termios.TCSANOW, attributes)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 40, WIDTH, 0, 0))

    def close(self):
        """Ends the shell, and what runs in it."""
        os.kill(self.process, signal.SIGHUP)  # which it hands on, unless its terminal goes first
        os.waitpid(self.process, 0)
        os.close(self.terminal)

    def send(self, text):
        os.write(self.terminal, text.encode() + b"\n")

    def read_until(self, is_whole, shown=""):
        end = time.monotonic() + TIME_LIMIT_S
        while not is_whole(shown):
            left = max(0, end - time.monotonic())
            if not select.select([self.terminal], [], [], left)[0]:
                raise TimeoutError(f"the terminal shows, and no more: {shown}")
            shown += self.decode(os.read(self.terminal, 65536))
        return shown

    def real(self, text):
        for port, stand_in in self.ports.items():
            text = re.sub(rf"\b{port}\b", stand_in, text)
        return re.sub("|".join(PLACES), lambda place: self.root + place[0], text)

    def run(self, command, answers=()):
        """What the terminal shows after command, with the answers to its questions. One that stays in
        the background is waited for until it has told a line of itself."""
        def is_whole(shown):
            is_ready = not command.endswith("&") or "}" in shown
            return is_ready and PROMPT in shown

        self.send(self.real(command))
        shown = ""
        for answer in answers:
            shown = self.read_until(lambda text: text.endswith(QUESTION), shown)
            self.send(answer)
            shown += answer + "\n"
        shown = self.tidy(self.read_until(is_whole, shown).replace(PROMPT, ""))
        if not command.endswith("&"):
            return shown
        # The shell tells the job's number first, unless what it has started is faster.
        return "".join(sorted(shown.splitlines(True),
                              key=lambda text: re.match(r"\[\d\] \d+$", text) is None))

    def tidy(self, shown):
        """Without what a terminal would have erased, and with what differs from run to run made
        equal."""
        shown = re.sub(r"[^\n]*\r\x1b\[K", "", shown.replace("\r\n", "\n"))
        shown = re.sub(r"^\[(\d)\] \d+$", r"[\1] 471\1", shown, flags=re.M)
        for port, stand_in in self.ports.items():
            shown = re.sub(rf"\b{stand_in}\b", port, shown)
        return shown.replace(self.root, "") if self.root else shown
