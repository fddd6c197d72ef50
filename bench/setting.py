"""What every measurement runs in: the shipped products in a folder of their own, a printer that
answers from memory, and the requests, each with the answer that it must get."""

import atexit
import json
import os
import pathlib
import re
import select
import shutil
import socket
import subprocess
import sys
import tempfile
import time
from types import SimpleNamespace

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "scripts"))
from rig import VirtualPrinter, line, ship

NAME, MODEL = "Studio", "QM-R410 Series"
TIME_LIMIT_S = 300


def request(command, parameter=None):
    parts = {"Command": command, "PrinterName": NAME, "DeviceName": MODEL}
    return line(parts if parameter is None else {**parts, "Parameter": parameter})


INFO = request("GetCustomMediaInfo", {"CustomMediaNo": 3, "CommandVersion": 0})
REQUESTS = {
    "GetCustomMediaInfo": INFO,
    "GetCustomMediaName": request("GetCustomMediaName", {"CustomMediaNo": 1}),
    "GetStatusReply": request("GetStatusReply", ["StatusCode"]),
    "GetPrinterList": line({"Command": "GetPrinterList"}),
}


class Setting:
    """Temporary; use it with "with"."""

    def __init__(self, build):
        self.build = pathlib.Path(build)
        self.products = self.build / "bin"
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="bench"))
        self.environment = {"HOME": str(self.folder), "PATH": os.environ["PATH"]}
        self.worker = [str(self.folder / "PrinterNativeProcess")]
        self.virtual_printer = VirtualPrinter(self.products, NAME, MODEL)
        teacher = self.virtual_printer.uri.rpartition("=")[2]
        self.printer = subprocess.Popen([self.program("prepared_printer"), teacher],
                                        stdout=subprocess.PIPE, text=True)
        atexit.register(self.printer.kill)
        self.port = int(self.printer.stdout.readline())
        self.put_printers([self.at_port(self.port)])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.virtual_printer.stop()
        self.printer.terminate()
        self.printer.wait()
        shutil.rmtree(self.folder)

    def program(self, name):
        return str(self.build / "bench" / name)

    @staticmethod
    def at_port(port, options="&timeout=60000"):
        return SimpleNamespace(name=NAME, model=MODEL, uri=f"socket://127.0.0.1?snmp={port}{options}")

    def put_printers(self, printers):
        """Puts the printers in the list, and lets a worker find them."""
        for entry in self.folder.iterdir():
            shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
        ship(self.products, self.folder, printers)
        self.answer(REQUESTS["GetPrinterList"])

    def run(self, command, text):
        """Runs command with this text as its input; raises what it says when it fails."""
        done = subprocess.run(command, input=text, capture_output=True, check=False,
                              env=self.environment, timeout=TIME_LIMIT_S)
        if done.returncode != 0:
            raise RuntimeError(f"{command[0]}: status {done.returncode}: {done.stderr.decode()}")
        return done

    def keep_running(self, *before):
        """A worker that is kept running, started with what goes before it on the command line."""
        return subprocess.Popen([*before, *self.worker], stdin=subprocess.PIPE,
                                stdout=subprocess.PIPE, env=self.environment, bufsize=0)

    @staticmethod
    def ask(worker, text, answer):
        """Sends text to a worker that is kept running, and waits for this answer."""
        worker.stdin.write(text)
        read = b""
        while len(read) < len(answer):
            if not select.select([worker.stdout], [], [], TIME_LIMIT_S)[0]:
                raise RuntimeError("the worker is silent")
            more = worker.stdout.read(len(answer) - len(read))
            if not more:
                raise RuntimeError("the worker has ended")
            read += more
        if read != answer:
            raise RuntimeError(f"answered {read}, not {answer}")

    def answer(self, text):
        """What the worker answers to a request, which must succeed."""
        answer = self.run(self.worker, text).stdout
        parts = json.loads(answer, strict=False)
        if not parts.pop("Reply", None) or list(parts.values()) != [0]:
            raise RuntimeError(f"{text}: answered {answer}")
        return answer

    def datagram(self, text):
        """The request that the worker sends to its printer for a request of the host."""
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as silent:
            silent.bind(("127.0.0.1", 0))
            printer = self.at_port(silent.getsockname()[1], "&timeout=1&retries=0")
            with tempfile.TemporaryDirectory() as folder:
                ship(self.products, folder, [printer])
                subprocess.run([os.path.join(folder, "PrinterNativeProcess")],
                               input=REQUESTS["GetPrinterList"] + text, capture_output=True,
                               check=False, env={"HOME": folder}, timeout=TIME_LIMIT_S)
            silent.settimeout(5)
            return silent.recv(65536)

    def printer_time(self):
        """Nanoseconds that the printer has spent on a processor."""
        return int(pathlib.Path(f"/proc/{self.printer.pid}/schedstat").read_text().split()[0])

    @staticmethod
    def memory_of(process):
        """Peak and anonymous memory in KiB, and the number of open descriptors."""
        status = pathlib.Path(f"/proc/{process}/status").read_text()
        peak, anonymous = (int(re.search(rf"{name}:\s+(\d+)", status)[1])
                           for name in ("VmHWM", "RssAnon"))
        return peak, anonymous, len(os.listdir(f"/proc/{process}/fd"))

    def file(self, name, content):
        """The path of a new file with this content."""
        path = self.folder / name
        path.write_bytes(content)
        return str(path)


class Load:
    """What others take, from here on, of the one processor that everything runs on."""

    def __init__(self, processor):
        self.name = f"cpu{processor} "
        self.idle, self.begin, self.own = self._idle(), time.monotonic(), self._own()

    def of_others(self):
        """In per cent, with what the machine's host keeps for itself; of what was started here,
        everything must have ended."""
        taken = time.monotonic() - self.begin
        return 100 * (taken - (self._idle() - self.idle) - (self._own() - self.own)) / taken

    def _idle(self):
        rows = pathlib.Path("/proc/stat").read_text(encoding="utf-8").splitlines()
        idle, waiting = next(row for row in rows if row.startswith(self.name)).split()[4:6]
        return (int(idle) + int(waiting)) / os.sysconf("SC_CLK_TCK")

    @staticmethod
    def _own():
        return sum(os.times()[:4])


def split(text):
    """The content of the TLV (ITU-T X.690) that text begins with, and what follows it."""
    start, length = 2, text[1]
    if length > 0x7F:
        start += length & 0x7F
        length = int.from_bytes(text[2:start], "big")
    return text[start:start + length], text[start + length:]


def object_identifier(datagram):
    """The object identifier that an SNMPv1 request asks for, with dots."""
    rest = split(datagram)[0]
    for _ in "version", "community":
        rest = split(rest)[1]
    rest = split(rest)[0]
    for _ in "request-id", "error status", "error index":
        rest = split(rest)[1]
    name = split(split(split(rest)[0])[0])[0]
    arcs = [*divmod(name[0], 40), 0]
    for byte in name[1:]:
        arcs[-1] = arcs[-1] << 7 | byte & 0x7F
        if byte < 0x80:
            arcs.append(0)
    return ".".join(map(str, arcs[:-1]))
