"""Virtual printers, and one worker in a folder of its own that lists them."""

import atexit
import json
import os
import plistlib
import select
import shutil
import subprocess
import time
import urllib.parse

TIME_LIMIT_S = 20
SERIAL = "SN00012345"
FIRMWARE = "2.31"


def line(request):
    """The line on which a host sends a request."""
    text = json.dumps(request, separators=(",", ":"), ensure_ascii=False)
    return urllib.parse.quote(text, safe="").encode() + b"\n"


class VirtualPrinter:
    def __init__(self, binaries, name, model, options=(), uri_options="", errors=None):
        self.name, self.model = name, model
        self.process = subprocess.Popen(
            [os.path.join(binaries, "virtual-printer"), "--model", model,
             "--serial", SERIAL, "--firmware", FIRMWARE, *options],
            stdout=subprocess.PIPE, stderr=errors, text=True)
        atexit.register(self.process.kill)
        ready = json.loads(self.process.stdout.readline())
        self.uri = f"socket://127.0.0.1:{ready['raw']}?snmp={ready['snmp']}{uri_options}"

    def stop(self):
        self.process.terminate()
        self.process.wait(TIME_LIMIT_S)


def ship(binaries, folder, printers, searches=None):
    """Copies the shipped products to folder, with the printers in the list, and further keys that
    say what is searched."""
    for name in ("PrinterNativeProcess", "libCoreFoundation.so", "ZIO"):
        source = os.path.join(binaries, name)
        copy = shutil.copytree if os.path.isdir(source) else shutil.copy
        copy(source, os.path.join(folder, name))
    with open(os.path.join(folder, "SupportPrinterList.xml"), "wb") as file:
        plistlib.dump({**(searches or {}), "Printers": [
            {"InfoTargetName": printer.name, "InfoPrinterName": printer.model,
             "DeviceURI": printer.uri} for printer in printers]}, file)


class Worker:
    """A worker of the products that ship() puts into folder."""

    def __init__(self, binaries, folder, printers, errors=None, searches=None):
        ship(binaries, folder, printers, searches)
        environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder, "config"))
        self.process = subprocess.Popen([os.path.join(folder, "PrinterNativeProcess")], bufsize=0,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=errors, env=environment)
        atexit.register(self.process.kill)

    def exchange(self, text, is_whole):
        """Sends lines and returns what comes back as soon as it is whole; what there is of it when
        the worker ended or is silent for too long."""
        self.process.stdin.write(text)
        output = self.process.stdout.fileno()
        answer = b""
        end = time.monotonic() + TIME_LIMIT_S
        while not is_whole(answer):
            left = max(0, end - time.monotonic())
            more = os.read(output, 65536) if select.select([output], [], [], left)[0] else b""
            if not more:
                break
            answer += more
        return answer

    def ask(self, request):
        """The answer to a well-formed request, read as JSON."""
        return json.loads(self.exchange(line(request), is_json), strict=False)

    def end(self):
        """The exit status after the end of the requests."""
        self.process.stdin.close()
        return self.process.wait(TIME_LIMIT_S)


def is_json(text):
    try:
        json.loads(text, strict=False)
        return True
    except ValueError:
        return False
