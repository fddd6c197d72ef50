"""Three virtual printers, one worker, every request: the JSON, the bytes on the wire, the answer.

demo.py FOLDER [WORKER_FOLDER]: where virtual-printer is, and the worker if it is elsewhere."""

import json
import os
import re
import sys
import tempfile

from rig import VirtualPrinter, Worker

PRINTERS = [
    ("Studio", "QM-R410 Series"),
    ("Banner hall", "QM-T84 Series"),
    ("Proof", "QM-V5 Series"),
]


def bold(text):
    return f"\033[1m{text}\033[0m" if sys.stdout.isatty() else text


def shortened(text):
    return text if len(text) <= 200 else text[:140] + " ... " + text[-55:]


class TracedPrinter(VirtualPrinter):
    def __init__(self, binaries, folder, name, model):
        path = os.path.join(folder, name + ".trace")
        with open(path, "w") as trace:
            super().__init__(binaries, name, model, ["--trace"], errors=trace)
        self.trace = open(path)

    def events(self):
        """The datagrams and commands since the last call."""
        return re.findall(r"^\S+ \S+ (\S+ \S+) (.*)$", self.trace.read(), re.M)


def show_bytes(printer):
    shown = set()
    for event, text in printer.events():
        if (event, text) in shown:
            continue  # reading back repeats itself
        shown.add((event, text))
        print(f"  {event:12}  {shortened(text)}")


def search(worker_folder, folder, printers):
    """A worker that knows no printers, but where to ask with SNMP."""
    models = [model for _, model in PRINTERS]
    addresses = ["127.0.0.1:" + printer.uri.partition("snmp=")[2] for printer in printers]
    print("  asks         ", ", ".join(addresses))
    worker = Worker(worker_folder, folder, [], searches={
        "SupportedPrinters": models, "Discovery": {"Network": True, "Addresses": addresses}})
    request = {"Command": "GetPrinterList"}
    print("  request      ", json.dumps(request))
    answer = worker.ask(request)
    for printer in printers:
        show_bytes(printer)
    print("  answer       ", json.dumps(answer))
    assert {found["DeviceName"] for found in answer["Reply"]} == set(models), answer
    worker.end()


def run(binaries, worker_folder, folder):
    printers = [TracedPrinter(binaries, folder, name, model) for name, model in PRINTERS]
    worker = Worker(worker_folder, folder, printers)

    def ask(title, command, printer=None, parameter=None):
        request = {"Command": command}
        if printer:
            request.update(PrinterName=printer.name, DeviceName=printer.model)
        if parameter is not None:
            request["Parameter"] = parameter
        print(bold(f"\n{title}"))
        print("  request      ", shortened(json.dumps(request)))
        answer = worker.ask(request)
        if printer:
            show_bytes(printer)
        print("  answer       ", json.dumps(answer))
        assert answer[command] == 0, answer
        return answer.get("Reply")

    studio, hall, proof = printers
    ask("Which printers are there?", "GetPrinterList")
    ask("How is the first one?", "GetStatusReply", studio, ["StatusCode", "WarningCode",
                                                          "SerialNumber"])
    ask("Write a media record, with named and numeric values", "SetCustomMediaInfo", studio,
        {"CustomMediaNo": 3, "CommandVersion": 0, "CustomMediaName": "Banner 440 g",
         "PlatenGap": "2.5", "PreHeater": 45, "AfterHeater": "Off", "MediaTension": -5,
         "FeedSpeed": "Auto", "RegistrationFlag": 1})
    record = ask("Read it back", "GetCustomMediaInfo", studio,
                 {"CustomMediaNo": 3, "CommandVersion": 0})
    assert record["PlatenGap"] == "2.5" and record["MediaTension"] == -5, record
    ask("What is registered?", "GetCustomMediaName", studio, {"CustomMediaNo": 2})
    ask("Write a whole record as one block, through the data port", "SetCustomMediaInfo", hall,
        {"CustomMediaNo": 1, "CommandVersion": 128, "SettingAll": "00FF5A" + "7E" * 221})
    ask("Initialise the record", "SetMediaInitialize", studio, {"InitializeCustomMedia": 3})
    record = ask("It is no longer registered", "GetCustomMediaInfo", studio,
                 {"CustomMediaNo": 3, "CommandVersion": 0})
    assert record["RegistrationFlag"] == 0, record
    ask("Which firmware does the third one run?", "GetFWVersion", proof)

    print(bold("\nWhich printers does a search on the network find?"))
    with tempfile.TemporaryDirectory() as other_folder:
        search(worker_folder, other_folder, printers)

    print(bold(f"\nThe worker ended with status {worker.end()}."))
    for printer in printers:
        printer.stop()


def main():
    binaries, worker_folder = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[-1])
    with tempfile.TemporaryDirectory() as folder:
        run(binaries, worker_folder, folder)


main()
