"""Uses the installed worker where it lies, as a host does.

edit LIST PRINTER         adds the virtual printer that told PRINTER of itself to the list, and a
                          search for which there is no library
configured WORKER_FOLDER  that printer is listed and answers, and the search is left out
example WORKER_FOLDER     the printer of the example plug-in is listed"""

import json
import os
import plistlib
import subprocess
import sys

from rig import line

MODEL = "QM-R410 Series"


def edit(path, told):
    printer = json.loads(told)
    with open(path, "rb") as file:
        printers = plistlib.load(file)
    printers["Printers"].append({
        "InfoTargetName": "Studio", "InfoPrinterName": printer["model"],
        "DeviceURI": f"socket://127.0.0.1:{printer['raw']}?snmp={printer['snmp']}"})
    printers["Discovery"].update(Network=True, Addresses=["127.0.0.1"])
    with open(path, "wb") as file:
        plistlib.dump(printers, file)


def ask(folder, **request):
    worker = subprocess.run([os.path.join(folder, "PrinterNativeProcess")], input=line(request),
                            capture_output=True, timeout=60, check=False)
    return json.loads(worker.stdout), worker.stderr.decode()


def configured(folder):
    answer, complaint = ask(folder, Command="GetPrinterList")
    assert answer["Reply"] == {"PrinterName": "Studio", "DeviceName": MODEL}, answer
    assert "search left out" in complaint, complaint
    answer, complaint = ask(folder, Command="GetStatusReply", PrinterName="Studio",
                            DeviceName=MODEL, Parameter=["StatusCode"])
    assert (answer["Reply"], complaint) == ({"StatusCode": 4}, ""), (answer, complaint)


def example(folder):
    answer, complaint = ask(folder, Command="GetPrinterList")
    assert answer["Reply"]["PrinterName"] == "Example printer", (answer, complaint)


{"edit": edit, "configured": configured, "example": example}[sys.argv[1]](*sys.argv[2:])
