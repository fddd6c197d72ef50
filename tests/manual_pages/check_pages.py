"""The manual pages are well-formed, and say what the programs and their other documents say."""

import glob
import json
import os
import plistlib
import re
import subprocess
import sys
import tempfile

MANDOC, SOURCES, BINARIES = sys.argv[1:]
PAGES = os.path.join(SOURCES, "packaging", "man")
sys.path.insert(0, os.path.join(SOURCES, "scripts"))
from rig import VirtualPrinter, Worker  # pylint: disable=wrong-import-position

failures = []


def check(condition, *what):
    if not condition:
        failures.append(" ".join(map(str, what)))


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def text(page):
    """What the reader sees of a page."""
    return re.sub(".\b", "", run(MANDOC, "-T", "utf8", "-O", "width=200", os.path.join(PAGES, page)))


def document(name):
    with open(os.path.join(SOURCES, "docs", name), encoding="utf-8") as file:
        return file.read()


def terms(page):
    """The words that the lists of a page explain, such as drop=N and oversize[=N]."""
    with open(os.path.join(PAGES, page), encoding="utf-8") as file:
        heads = re.findall(r"^\.It Cm (.*)$", file.read(), re.M)
    return {re.sub(" Ns (?:Ar )?", "", head.replace(" Ns Op = Ns Ar N", "[=N]")) for head in heads}


def check_form():
    companion = os.path.join(SOURCES, "printer_media", "printer-media.1")
    paths = {os.path.basename(path): path for path in [companion, *glob.glob(PAGES + "/*")]}
    for name, path in paths.items():
        lint = subprocess.run([MANDOC, "-T", "lint", path], stdout=subprocess.PIPE, text=True,
                              check=False).stdout
        # Pages that are not installed; those of the project are looked for below.
        check(not re.sub(".*referenced manual not found.*\n?", "", lint), lint)
        with open(path, encoding="utf-8") as file:
            for page, section in re.findall(r"^\.Xr (\S+) (\d)", file.read(), re.M):
                check(f"{page}.{section}" in paths, name, "names", page, section)


def check_virtual_printer(folder):
    told, page = run(os.path.join(BINARIES, "virtual-printer"), "--help"), text("virtual-printer.1")
    option = r"(?<![\w-])--[a-z][a-z-]*"
    both = set(re.findall(option, told)) ^ set(re.findall(option, page))
    check(not both, "options that are not on both sides:", both)
    faults = set(re.findall(r"^  ([a-z]\S+)  ", told.split("Faults.")[1].split("Device")[0], re.M))
    check(faults == terms("virtual-printer.1"), "faults that are not on both sides:",
          faults ^ terms("virtual-printer.1"))
    for default in re.findall(r"\(([\w.]+)\)$", told, re.M):
        check(default in page, "virtual-printer(1) lacks the default", default)

    path = os.path.join(folder, "state")
    VirtualPrinter(BINARIES, "any", "QM-R410 Series", ["--state", path]).stop()
    with open(path, encoding="utf-8") as file:
        state = json.load(file)
    members = set(state) | set(state["slots"][0])
    check(members == terms("virtual-printer-state.5"), "the state file holds", members,
          "and its page", terms("virtual-printer-state.5"))


def check_printer_list(folder):
    page = text("SupportPrinterList.xml.5")
    with open(os.path.join(SOURCES, "port_driver", "SupportPrinterList.xml"), "rb") as file:
        shipped = plistlib.load(file)
    keys = set(shipped) | set(shipped["Discovery"]) | {
        "InfoTargetName", "InfoPrinterName", "DeviceURI"}
    check(keys <= terms("SupportPrinterList.xml.5"), "keys that the page lacks:",
          keys - terms("SupportPrinterList.xml.5"))
    options = re.findall(r"^\| `(\w+)` \| (?:(\d+) to (\d+)|`id`) \| (\d*) ?\|",
                         document("plug-in.md"), re.M)
    check(len(options) == 4, "options in plug-in.md:", options)
    for name, least, most, default in options:
        entry = re.search(rf"^ +{name}=.*\n?.*", page, re.M)
        check(entry, "no option", name)
        for number in (least, most, default):
            check(name == "snmp" or number in entry[0], name, "without", number, "in", entry[0])

    example = plistlib.loads(re.search(r"<plist.*</plist>", page, re.S)[0].encode())
    del example["Discovery"]["USB"]  # the machine's own printers are none of the test's
    worker = Worker(BINARIES, folder, [], searches=example)
    with open(os.path.join(folder, "SupportPrinterList.xml"), "wb") as file:
        plistlib.dump(example, file)
    answer = worker.ask({"Command": "GetPrinterList"})
    check(answer.get("Reply", {}).get("PrinterName") == "Studio", "the example lists", answer)
    worker.end()
    with open(os.path.join(folder, "config", "PrinterNativeProcess.plist"), "rb") as file:
        stored = plistlib.load(file)
    keys = set(stored) | set(stored["infoPrinterList"][0])
    for key in keys:
        check(key in text("PrinterNativeProcess.plist.5"), "no key", key)


def check_protocol(folder):
    name = "printer-native-process-protocol.7"
    page, other = re.sub(r"\s+", " ", text(name)), document("protocol.md")
    for command in re.findall(r"^## (\w+)$", other, re.M):
        check(command in terms(name), "no command", command)
    codes = re.findall(r"^\| (-?\d) \| (.)(.*?) \|$", other, re.M)
    check(len(codes) == 7, "codes in protocol.md:", codes)
    for code, first, meaning in codes:
        check(f"{code} {first.upper()}{meaning}." in page, "no code", code, meaning)
    request, answer = re.findall(r"^ +(\{.*?\}+)$", text(name), re.M | re.S)
    printer = VirtualPrinter(BINARIES, "Studio", "QM-R410 Series")
    worker = Worker(BINARIES, folder, [printer])
    worker.ask({"Command": "GetPrinterList"})
    got = worker.ask(json.loads(request))
    check(got == json.loads(answer), "the example is answered", got)
    worker.end()
    printer.stop()


check_form()
for test in (check_virtual_printer, check_printer_list, check_protocol):
    with tempfile.TemporaryDirectory() as scratch:
        test(scratch)
sys.exit("\n".join(failures) or 0)
