"""What the manual page, the help and docs/printer-media.md say is what the program does."""

import json
import os
import re
import shutil
import subprocess
import sys
import unittest

from companion import SOURCES, Fake

PAGE = os.path.join(SOURCES, "printer_media", "printer-media.1")


def text(path):
    with open(os.path.join(SOURCES, path), encoding="utf-8") as file:
        return file.read()


class Documents(unittest.TestCase):
    def setUp(self):
        reply = [{"DeviceName": "QM-V5 Series", "PrinterName": "Proof"},
                 {"DeviceName": "QM-R410 Series", "PrinterName": "Studio"}]
        self.fake = Fake({"GetPrinterList": json.dumps({"GetPrinterList": 0, "Reply": reply}),
                          "GetStatusReply": '{"GetStatusReply":-6}'})
        self.addCleanup(self.fake.close)
        self.document = text("docs/printer-media.md")

    def test_manual_page_is_well_formed(self):
        lint = subprocess.run(["mandoc", "-T", "lint", PAGE], capture_output=True, text=True)
        lines = [line for line in lint.stdout.splitlines() if "referenced manual" not in line]
        self.assertEqual(lines, [])
        if shutil.which("groff"):
            groff = subprocess.run(["groff", "-mdoc", "-ww", "-T", "utf8", PAGE],
                                   capture_output=True, text=True)
            self.assertEqual((groff.returncode, groff.stderr), (0, ""))

    def test_commands_and_options(self):
        told = self.fake.run("--help")[1]
        commands = re.findall(r"^  (\w+) {2,}", told.split("Commands:")[1].split("\n\n")[0], re.M)
        page = text(PAGE)
        self.assertEqual(re.findall(r"^\.It Cm (\w+)$", page, re.M), commands)
        self.assertEqual(re.findall(r"^\| `(\w+)[ `]", self.document, re.M)[:len(commands)],
                         commands)
        for command in commands:
            told += self.fake.run(command, "--help")[1]
        on_page = {"--" + option for option in
                   re.findall(r"^\.It (?:Fl y , )?Fl Fl ([a-z-]+)", page, re.M)}
        self.assertEqual(on_page, set(re.findall(r"--[a-z][a-z-]+", told)))

    def test_exit_statuses(self):
        enumerators = re.findall(r"^  k\w+ = (\d)", text("printer_media/Failure.h"), re.M)
        rows = re.findall(r"^\| (\d) \| (.*) \|$", self.document, re.M)
        self.assertEqual([status for status, _ in rows], enumerators)
        self.assertEqual(re.findall(r"^\.It (\d)$", text(PAGE), re.M), enumerators)
        told = self.fake.run("--help")[1].split("Exit status:")[1]
        self.assertEqual(re.findall(r"\b(\d) \w", told), enumerators)

    def test_examples(self):
        error = re.search(r"^```json error\n(.*?)```", self.document, re.M | re.S)[1]
        self.assertEqual(json.loads(self.fake.run("status", "Proof", "--json")[1]),
                         json.loads(error))
        path = self.fake.path("example.json")
        with open(path, "w") as file:
            file.write(re.search(r"^```json file\n(.*?)```", self.document, re.M | re.S)[1])
        self.assertEqual(self.fake.run("compare", path, path), (0, "the same: 1 record\n", ""))
        refused = re.findall(r"^    \$ printer-media (set .*)\n    (printer-media: .*)$",
                             self.document, re.M)
        self.assertEqual(len(refused), 2)
        for words, line in refused:
            status, _, errors = self.fake.run(*words.split())
            self.assertEqual((status, errors.split("\n")[0]), (2, line))


unittest.main(argv=sys.argv[:1])
