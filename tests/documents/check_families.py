"""The README's table of what works with which family is what the worker does for every device name.

check_families.py FOLDER SOURCES: where the products and the sources are."""

import concurrent.futures
import json
import os
import re
import subprocess
import sys
import tempfile

BINARIES, SOURCES = (os.path.abspath(path) for path in sys.argv[1:3])
sys.path.insert(0, os.path.join(SOURCES, "scripts"))
from rig import VirtualPrinter, line, ship  # pylint: disable=wrong-import-position


def record(version, **settings):
    """The requests that write a record in a layout and read it."""
    number = {"CustomMediaNo": 3, "CommandVersion": version}
    return [("SetCustomMediaInfo", {**number, **settings}), ("GetCustomMediaInfo", number)]


# What a column of the table promises.
COLUMNS = {
    "status": [("GetStatusReply", ["StatusCode", "SerialNumber"])],
    "names": [("GetCustomMediaName", {"CustomMediaNo": 1})],
    "layout 0": record(0, CustomMediaName="Film", RegistrationFlag=1),
    "layout 1": record(1, CustomMediaName="Film", RegistrationFlag=1),
    "layout 128": record(128, SettingAll="00FF5A" + "7E" * 221),
    "init": [("SetMediaInitialize", {"InitializeCustomMedia": 3})],
    "firmware": [("GetFWVersion", None)],
}
PORTS = ("network", "local")


class LocalPort:
    """The local port of a virtual printer, as an entry of the list."""

    name = "Local"

    def __init__(self, model, path):
        self.model, self.uri = model, "file://" + path


def answers(folder, printer, requests):
    """The results of a worker that gets all the requests at once."""
    text = line({"Command": "GetPrinterList"})
    for command, parameter in requests:
        request = {"Command": command, "PrinterName": printer.name, "DeviceName": printer.model}
        text += line(request if parameter is None else {**request, "Parameter": parameter})
    environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder, "config"))
    worker = subprocess.run([os.path.join(folder, "PrinterNativeProcess")], input=text, timeout=100,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=environment,
                            check=False)
    told, results = worker.stdout.decode(errors="replace"), []
    while told:
        answer, end = json.JSONDecoder(strict=False).raw_decode(told)
        results += [(command, code) for command, code in answer.items() if command != "Reply"]
        told = told[end:]
    return results


def check_port(printer, cells):
    with tempfile.TemporaryDirectory() as folder:
        ship(BINARIES, folder, [printer])
        promised = [request for column, requests in COLUMNS.items() if cells[column] == "yes"
                    for request in requests]
        expected = [("GetPrinterList", 0)] + [(command, 0) for command, _ in promised]
        got = answers(folder, printer, promised)
        assert got == expected, (printer.model, printer.uri, got)
        if printer.name == "Local":
            return
        # What the family does not have ends the worker, before it asks the printer.
        for column, requests in COLUMNS.items():
            if cells[column] != "yes":
                got = answers(folder, printer, requests)
                assert got == [("GetPrinterList", 0)], (printer.model, column, got)


def check(device, cells):
    assert [cells[port] for port in PORTS] == ["yes", "yes"], (device, cells)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "lp")
        printer = VirtualPrinter(BINARIES, "Network", device, ["--local", path])
        try:
            check_port(printer, cells)
            check_port(LocalPort(device, path), cells)
        finally:
            printer.stop()


def rows():
    """From device names to their cells by column."""
    with open(os.path.join(SOURCES, "README.md"), encoding="utf-8") as file:
        lines = [[cell.strip() for cell in text.strip("|\n").split("|")]
                 for text in file if text.startswith("|")]
    head = next(cells for cells in lines if cells[0] == "device names")
    table = {device: dict(zip(head, cells)) for cells in lines
             for device in re.findall(r"`([^`]* Series[^`]*)`", cells[0])}
    assert set(head[1:]) == set(COLUMNS) | set(PORTS), head
    return table


def main():
    table = rows()
    told = subprocess.run([os.path.join(BINARIES, "virtual-printer"), "--help"], text=True,
                          stdout=subprocess.PIPE, check=True).stdout
    known = set(re.findall(r"^ +((?:ZARMO )?QM-\w+ Series(?: Comm Driver)?)$", told, re.M))
    assert set(table) == known, set(table) ^ known
    # Not threads: what one of them starts would hold the program that another one is copying open
    # for writing, and such a program cannot be started.
    with concurrent.futures.ProcessPoolExecutor(6) as pool:
        for outcome in [pool.submit(check, device, cells) for device, cells in table.items()]:
            outcome.result()


main()
