"""Very many requests of every kind through one worker: each answer is checked against a model of
the printers, which lose requests all the while, and nobody's memory or descriptors may grow."""

import os
import random
import re
import sys
import tempfile
import time

from media_model import SLOTS, MediaModel, read_layouts, to_text
from rig import FIRMWARE, SERIAL, VirtualPrinter, Worker, line

# Name, model, percentage of requests that get lost. What is lost on the data port stays lost, so
# whole blocks, which travel there, are written to printers that lose nothing.
PRINTERS = [
    ("Studio", "QM-R410 Series", 1),
    ("B\u00fcro {1}", "QM-R210 Series", 2),
    ("Atelier", "ZARMO QM-R310 Series Comm Driver", 0),
    ("Banner hall", "QM-T84 Series", 1),
    ("Signs", "QM-T64 Series", 0),
    ("Plans", "QM-T44 Series", 2),
    ("Proof", "QM-V5 Series", 1),
]
URI_OPTIONS = "&timeout=20&retries=100"
WARM_UP = 500  # requests in front of the first measurement
GROWTH_LIMIT_KIB = 64  # what an allocator may still take; a leak of a byte a request is more
STATUS = {"ErrorCode": 0, "SerialNumber": SERIAL, "StatusCode": 4, "WarningCode": [16, 17]}
LETTERS = "abcXYZ 0123456789-/\\\"{}[],:%+&\u00e9\u65e5"

# Each kind of request and its share. Those that wait 30 ms for the printer are few.
KINDS = [("read", 6000), ("read_refused", 200), ("names", 1500), ("status", 1200),
         ("firmware", 300), ("write", 150), ("initialize", 30), ("list", 50),
         ("unknown_printer", 200), ("unknown_device", 100), ("incomplete", 100),
         ("malformed", 369), ("refused_write", 1)]


class Host:
    """Makes requests, each with its answer. A request is a line, or more where some are empty."""

    def __init__(self, printers, models):
        self.random = random.Random(1)
        self.printers, self.models = printers, models
        self.loss = {name: loss for name, _, loss in PRINTERS}

    def next(self):
        kinds, weights = zip(*KINDS)
        kind = self.random.choices(kinds, weights)[0]
        printer = self.random.choice(self.printers)
        return kind, getattr(self, kind)(printer, self.models[printer.name])

    @staticmethod
    def request(command, printer, parameter=None):
        request = {"Command": command, "PrinterName": printer.name, "DeviceName": printer.model}
        if parameter is not None:
            request["Parameter"] = parameter
        return line(request)

    @staticmethod
    def answer(command, code, reply=None):
        tail = "" if not reply else ',"Reply":' + to_text(reply)
        return f'{{"{command}":{code}{tail}}}'.encode()

    def read(self, printer, model):
        version = self.random.choice(list(model.layouts))
        slot = self.random.randint(1, SLOTS)
        return self.reading(printer, model, version, slot)

    # A refusal reads as zeros in digits; in a block of bytes its letters would show.
    def read_refused(self, printer, model):
        version = self.random.choice([version for version in model.layouts if version != 128])
        return self.reading(printer, model, version, self.random.randint(SLOTS + 1, 255))

    def reading(self, printer, model, version, slot):
        parameter = {"CustomMediaNo": slot, "CommandVersion": version}
        return (self.request("GetCustomMediaInfo", printer, parameter),
                self.answer("GetCustomMediaInfo", 0, model.reading(version, slot)))

    def names(self, printer, model):
        first = self.random.randint(1, SLOTS)
        return (self.request("GetCustomMediaName", printer, {"CustomMediaNo": first}),
                self.answer("GetCustomMediaName", 0, model.names(first)))

    def status(self, printer, _):
        wanted = self.random.sample([*STATUS, "Unheard-of"], self.random.randint(0, 5))
        reply = {key: STATUS[key] for key in wanted if key in STATUS}
        return (self.request("GetStatusReply", printer, wanted),
                self.answer("GetStatusReply", 0, reply))

    # Of a family that does not know the request, asking is an error that ends the worker.
    def firmware(self, *_):
        printer = next(printer for printer in self.printers if "QM-V" in printer.model)
        return (self.request("GetFWVersion", printer),
                self.answer("GetFWVersion", 0, {"FirmwareVersion": FIRMWARE}))

    def write(self, printer, model):
        versions = [version for version in model.layouts
                    if version != 128 or self.loss[printer.name] == 0]
        version = self.random.choice(versions)
        parameter = self.settings(model, version, self.random.randint(1, SLOTS))
        model.write(version, parameter)
        return (self.request("SetCustomMediaInfo", printer, parameter),
                self.answer("SetCustomMediaInfo", 0))

    # The printer takes no record of that number, so reading back never shows what was written.
    def refused_write(self, printer, model):
        parameter = {"CustomMediaNo": SLOTS + 1, "CommandVersion": 0}
        return (self.request("SetCustomMediaInfo", printer, parameter),
                self.answer("SetCustomMediaInfo", -6))

    def settings(self, model, version, slot):
        parameter = {"CustomMediaNo": slot, "CommandVersion": version}
        for field in model.layouts[version]:
            if field.name == "SettingAll":
                parameter[field.name] = self.random.randbytes(224).hex().upper()
            elif field.name == "CustomMediaName":
                parameter[field.name] = self.name()
            elif field.is_read and field.is_setting and self.random.random() < 0.7:
                byte = self.random.choice([*field.names, self.random.randint(0, 254)])
                parameter[field.name] = field.shown(byte)
        return parameter

    # 1 to 32 bytes in UTF-8, without blanks around them, which the printer pads with. An empty name
    # is not sent.
    def name(self):
        letters = self.random.choices(LETTERS, k=self.random.randint(0, 32))
        return "".join(letters).encode()[:32].decode(errors="ignore").strip() or "x"

    def initialize(self, printer, model):
        slot = self.random.randint(1, SLOTS)
        model.initialize(slot)
        return (self.request("SetMediaInitialize", printer, {"InitializeCustomMedia": slot}),
                self.answer("SetMediaInitialize", 0))

    def list(self, *_):
        reply = [{"DeviceName": printer.model, "PrinterName": printer.name}
                 for printer in self.printers]
        return line({"Command": "GetPrinterList"}), self.answer("GetPrinterList", 0, reply)

    def unknown_printer(self, printer, _):
        command, parameter = self.random.choice([
            ("GetStatusReply", ["StatusCode"]), ("GetCustomMediaName", {"CustomMediaNo": 1}),
            ("GetCustomMediaInfo", {"CommandVersion": 0}),
            ("SetMediaInitialize", {"InitializeCustomMedia": 1})])
        request = {"Command": command, "PrinterName": f"No. {self.random.random()}",
                   "DeviceName": printer.model, "Parameter": parameter}
        return line(request), self.answer(command, -4)

    # Few different ones, because the worker keeps every device name that it was asked for.
    def unknown_device(self, printer, _):
        command = self.random.choice(["GetCustomMediaInfo", "SetCustomMediaInfo", "Nothing"])
        request = {"Command": command, "PrinterName": printer.name,
                   "DeviceName": f"QM-{self.random.randint(1, 20)}",
                   "Parameter": {"CommandVersion": 0}}
        return line(request), self.answer(command, -1)

    def incomplete(self, printer, _):
        command = self.random.choice(["GetCustomMediaInfo", "SetCustomMediaInfo", "OpenHelpFile"])
        request = {"Command": command, "PrinterName": printer.name, "DeviceName": printer.model,
                   "Parameter": {"CustomMediaNo": 1}, "FilePath": "/"}
        return b"\n" + line(request), self.answer(command, -1)

    def malformed(self, printer, _):
        good = self.request("GetStatusReply", printer, ["StatusCode"])
        bad = self.random.choice([
            b"null\n", b"%\n", b"%zz%0\n", b"%00\n", b"\xff\xfe{\n", b"%7B" * 5000 + b"\n",
            b"{\"Command\":1}\n", good[:self.random.randint(3, len(good) - 4)] + b"\n"])
        return bad, b"syntax error"


def figures(process):
    """VmRSS and RssAnon in KiB, and the number of open descriptors."""
    with open(f"/proc/{process.pid}/status") as file:
        sizes = dict(re.findall(r"^(VmRSS|RssAnon):\s+(\d+) kB", file.read(), re.M))
    return (int(sizes["VmRSS"]), int(sizes["RssAnon"]),
            len(os.listdir(f"/proc/{process.pid}/fd")))


def measure(processes):
    time.sleep(0.5)  # for connections that are closing
    return {name: figures(process) for name, process in processes.items()}


def report(before, after):
    """Prints what was measured; the names of those that grew."""
    print(f"\n{'process':<14}{'VmRSS KiB':>16}{'RssAnon KiB':>18}{'descriptors':>15}")
    grew = []
    for name in before:
        cells = [f"{a} -> {b}" for a, b in zip(before[name], after[name])]
        print(f"{name:<14}{cells[0]:>16}{cells[1]:>18}{cells[2]:>15}")
        _, anonymous, descriptors = (b - a for a, b in zip(before[name], after[name]))
        if anonymous > GROWTH_LIMIT_KIB or descriptors > 0:
            grew.append(name)
    return grew


def send(worker, host, count):
    """The time in seconds that each kind of request took, and their number."""
    spent = {}
    for number in range(1, count + 1):
        kind, (request, expected) = host.next()
        start = time.monotonic()
        answer = worker.exchange(request, lambda text: len(text) >= len(expected))
        seconds, times = spent.get(kind, (0, 0))
        spent[kind] = (seconds + time.monotonic() - start, times + 1)
        if answer != expected:
            sys.exit(f"wrong answer {number} ({kind})\n request  {request!r}\n"
                     f" expected {expected!r}\n answer   {answer!r}")
        if number % max(1, count // 10) == 0:
            print(f"{number} answers are right", flush=True)
    return spent


def learn_factory_settings(worker, printers, models):
    for printer in printers:
        for version in models[printer.name].layouts:
            answer = worker.ask({
                "Command": "GetCustomMediaInfo", "PrinterName": printer.name,
                "DeviceName": printer.model,
                "Parameter": {"CustomMediaNo": SLOTS, "CommandVersion": version}})
            models[printer.name].learn(version, answer["Reply"])


def run(binaries, count, folder, errors):
    with open(os.path.join(os.path.dirname(__file__), "../docs/parameters.md")) as page:
        layouts = read_layouts(page.read())
    printers = [VirtualPrinter(binaries, name, model, ["--fault", f"loss={loss}"], URI_OPTIONS)
                for name, model, loss in PRINTERS]
    models = {printer.name: MediaModel(layouts[re.search(r"QM-\w+", printer.model)[0]])
              for printer in printers}
    worker = Worker(binaries, folder, printers, errors)
    host = Host(printers, models)
    worker.ask({"Command": "GetPrinterList"})
    learn_factory_settings(worker, printers, models)
    send(worker, host, WARM_UP)
    processes = {"worker": worker.process,
                 **{printer.name: printer.process for printer in printers}}
    before = measure(processes)
    start = time.monotonic()
    spent = send(worker, host, count)
    print(f"\n{count} requests in {time.monotonic() - start:.0f} s")
    for kind, (seconds, times) in sorted(spent.items()):
        print(f"{times:>8} {kind:<16}{1000 * seconds / times:8.2f} ms each")
    grew = report(before, measure(processes))
    worker.end()
    for printer in printers:
        printer.stop()
    return grew


def main():
    binaries, count = os.path.abspath(sys.argv[1]), int(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryFile() as errors:
        try:
            grew = run(binaries, count, folder, errors)
        finally:
            errors.seek(0)
            said = errors.read().decode(errors="replace")
            print(said, end="", file=sys.stderr)
    if grew or said:
        sys.exit("grew: " + ", ".join(grew) if grew else "nothing is expected on standard error")


main()
