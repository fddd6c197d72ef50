"""Whatever a worker does or answers, and what is known of families, against the documents."""

import json
import os
import re
import signal
import subprocess
import sys
import unittest

from companion import PROGRAM, SOURCES, Fake, listed

STUDIO = listed("QM-R410 Series")
STATUS = ["status", "QM-R410 Series"]

# answer to GetStatusReply, exit status, texts that standard error holds
ANSWERS = [
    ("die", 3, ["ended with status 7", "GetStatusReply", "ZIOP: out of paper"]),
    ("kill", 3, ["ended by signal 9"]),
    ("syntax error", 3, ["did not understand"]),
    ("syntax erro!", 3, ["cannot be read"]),
    ("garbage", 3, ["cannot be read: garbage"]),
    ('{"GetStatusReply":0}{', 3, ["cannot be read"]),
    ('{"GetFWVersion":0}', 3, ["cannot be read"]),
    ('{"GetStatusReply":"0"}', 3, ["cannot be read"]),
    ('{"GetStatusReply":-99}', 1, ["result code -99"]),
    ('{"GetStatusReply":0}', 0, []),
    ('{"GetStatusReply":0,"Reply":{"SerialNumber":"\xe9\x01\\"}"}}', 0, []),
]

# A record, and answers to what reads, writes and resets it; the last reading does not come.
READ = json.dumps({"GetCustomMediaInfo": 0, "Reply": {
    "DeviceID": 55, "CustomMediaNo": 3, "CommandVersion": 0, "MediaSuction": 4}})
WRITTEN = {"SetCustomMediaInfo": '{"SetCustomMediaInfo":0}'}
UNCONFIRMED = {"GetCustomMediaInfo": [READ, "hang"],
               "SetCustomMediaInfo": '{"SetCustomMediaInfo":-6}'}
RESET = {"GetCustomMediaInfo": [READ, "hang"], "SetMediaInitialize": '{"SetMediaInitialize":0}'}


def document(name):
    with open(os.path.join(SOURCES, "docs", name), encoding="utf-8") as file:
        return file.read()


class Worker(unittest.TestCase):
    def fake(self, answers):
        fake = Fake(answers)
        self.addCleanup(fake.close)
        return fake

    def file(self):
        """Of records to restore: record 3 alone, with another value than READ has."""
        path = self.fake({}).path("records.json")
        with open(path, "w") as file:
            json.dump({"format": "printer-media records", "version": 1, "printer": "Studio",
                       "device": "QM-R410 Series",
                       "records": [{"record": 3, "layouts": {"0": {"MediaSuction": 5}}}]}, file)
        return path

    def test_answers(self):
        for answer, expected, texts in ANSWERS:
            with self.subTest(answer):
                fake = self.fake({"GetPrinterList": STUDIO, "GetStatusReply": answer})
                status, _, errors = fake.run(*STATUS)
                self.assertEqual(status, expected, errors)
                for text in texts:
                    self.assertIn(text, errors)
                self.assertTrue(fake.worker_is_gone())
        self.assertEqual(fake.json(*STATUS), {"SerialNumber": {"hex": 'E901227D'}})

    def test_lists(self):
        name = "Büro “3”"
        raw = json.dumps({"GetPrinterList": 0, "Reply": {
            "PrinterName": name, "DeviceName": "QM-T44 series"}}, ensure_ascii=False)
        fake = self.fake({"GetPrinterList": raw.encode().decode("latin-1")})
        self.assertEqual(fake.json("list")[0]["name"], name)
        status, _, errors = fake.run("get", name, "3")
        self.assertEqual(status, 1)
        self.assertRegex(errors, r"no model that the worker knows; did you mean QM-T44 Series\b")
        status, output, errors = self.fake({"GetPrinterList": '{"GetPrinterList":0}'}).run("list")
        self.assertEqual((status, output), (0, ""))
        self.assertIn("No printers", errors)
        fake = self.fake({"GetPrinterList": listed("QM-V5 Series", "QM-V5 Series"),
                          "GetStatusReply": '{"GetStatusReply":0}',
                          "GetCustomMediaInfo": '{"GetCustomMediaInfo":-1}'})
        self.assertEqual(fake.run("status", "qm-v5 series")[0], 0)
        self.assertRegex(fake.run("doctor")[1], "another printer of this name is listed before it")

    def test_columns_of_wide_names(self):
        names = ["大型打印机", "Bu\u0308ro", "Proof"]  # an umlaut of two characters
        raw = json.dumps({"GetPrinterList": 0, "Reply": [
            {"PrinterName": name, "DeviceName": "QM-V5 Series"} for name in names]},
            ensure_ascii=False)
        fake = self.fake({"GetPrinterList": raw.encode().decode("latin-1")})
        for locale in ("C", "C.UTF-8"):
            fake.environment["LC_ALL"] = locale
            rows = fake.run("list")[1].splitlines()
            self.assertEqual([row[:row.index("QM")] for row in rows[1:]],
                             ["大型打印机  ", "Bu\u0308ro        ", "Proof       "])

    def test_silence_ends(self):
        for how in ("hang", "stubborn"):
            fake = self.fake({"GetPrinterList": STUDIO, "GetStatusReply": how})
            status, _, errors = fake.run(*STATUS, "--answer-time", "0.001")
            self.assertEqual(status, 3)
            self.assertIn("did not answer GetStatusReply in 5 seconds", errors)
            self.assertTrue(fake.worker_is_gone())

    def test_interruption(self):
        in_part = "record 3 of \"QM-R410 Series\" may be written in part"
        write = ["set", STATUS[1], "3", "MediaSuction=5", "-y"]
        restore = ["restore", STATUS[1], self.file(), "-y", "--json"]
        hangs = {"GetCustomMediaInfo": READ, "GetStatusReply": "hang",
                 "SetCustomMediaInfo": "stubborn"}
        cases = [
            (STATUS, hangs, signal.SIGTERM, "interrupted\n", None),
            (write, hangs, signal.SIGINT, in_part, None),
            (write, UNCONFIRMED, signal.SIGINT, in_part, None),
            (["init", STATUS[1], "3", "-y"], RESET, signal.SIGINT, in_part, None),
            (restore, hangs, signal.SIGINT, in_part, "interrupted"),
            (restore, {**WRITTEN, "GetCustomMediaInfo": [READ, READ, "hang"]}, signal.SIGINT,
             in_part, "interrupted"),
            (restore, {**WRITTEN, "GetCustomMediaInfo": [READ, "hang"]}, signal.SIGINT,
             "interrupted\n", "not tried"),
        ]
        for words, answers, sent, told, result in cases:
            with self.subTest(words=words, told=told):
                fake = self.fake({"GetPrinterList": STUDIO, **answers})
                process = fake.start(*words)
                fake.wait_for_worker()
                process.send_signal(sent)
                output, errors = process.communicate(timeout=10)
                self.assertEqual(process.returncode, -sent)
                self.assertIn(told, errors.decode())
                self.assertTrue(fake.worker_is_gone())
                results = [row["result"] for row in json.loads(output)] if result else output
                self.assertEqual(results, [result] if result else b"")

    def test_what_was_sent_is_told_when_reading_back_fails(self):
        lost = '{"GetCustomMediaInfo":-6}'
        cases = [
            (["set", STATUS[1], "3", "MediaSuction=5", "-y"], UNCONFIRMED, 1,
             "reading back did not confirm the write (result code -6)"),
            (["init", STATUS[1], "3", "-y"], RESET, 1,
             "took the reset of record 3 of \"QM-R410 Series\", and did not confirm it"),
            (["restore", STATUS[1], self.file(), "-y"],
             {**WRITTEN, "SetCustomMediaInfo": "die", "GetCustomMediaInfo": READ}, 3,
             "one that failed may be written in part"),
        ]
        for words, answers, expected, told in cases:
            with self.subTest(words):
                answers = json.loads(json.dumps(answers).replace('"hang"', json.dumps(lost)))
                status, _, errors = self.fake({"GetPrinterList": STUDIO, **answers}).run(*words)
                self.assertEqual(status, expected, errors)
                self.assertIn(told, errors)

    def test_closed_standard_streams(self):
        fake = self.fake({"GetPrinterList": STUDIO})
        for closed, expected in (("<&-", 0), (">&-", 4), ("2>&-", 0), ("<&- >&- 2>&-", 4)):
            command = ["sh", "-c", f'exec "$0" list {closed}', PROGRAM]
            ended = subprocess.run(command, env=fake.environment, capture_output=True)
            self.assertEqual(ended.returncode, expected, (closed, ended.stderr))
            self.assertEqual(b"QM-R410" in ended.stdout, expected == 0)

    def test_every_result_code_is_explained(self):
        codes = re.findall(r"^\| (-\d) \|", document("protocol.md"), re.M)
        self.assertEqual(len(codes), 6)
        for code in codes:
            fake = self.fake({"GetPrinterList": STUDIO, "GetStatusReply": STUDIO.replace(
                "GetPrinterList\": 0", "GetStatusReply\": " + code)})
            status, _, errors = fake.run(*STATUS)
            self.assertEqual(status, 1)
            self.assertIn(f"(result code {code})\n", errors)
            self.assertNotIn("does not say why", errors)

    def test_families_are_those_of_the_document(self):
        text = document("parameters.md")
        devices = re.findall(r"^\| (`.*?`) \| ([0-9, ]+) \| (yes|no) \|$", text, re.M)
        expected = {device: ([int(layout) for layout in layouts.split(",")], firmware == "yes")
                    for names, layouts, firmware in devices
                    for device in re.findall("`(.*?)`", names)}
        fake = self.fake({"GetPrinterList": listed(*expected)})
        got = {printer["device"]: (printer["layouts"], printer["firmware"])
               for printer in fake.json("list")}
        self.assertEqual(got, expected)

    def test_settings_are_those_of_the_document(self):
        sections = re.findall(r"^## Layout (\d+) of (\S+)$(.*?)(?=^## |\Z)",
                              document("parameters.md"), re.M | re.S)
        self.assertEqual(len(sections), 6)
        for layout, model, section in sections:
            device = model + " Series"
            fake = self.fake({"GetPrinterList": listed(device)})
            errors = fake.run("set", device, "3", "--layout", layout, "-y")[2]
            rows = re.findall(r"^\| `(\w+)` \|.*\| (.*?) \|$", section, re.M)
            expected = [name for name, _ in rows[3:] if not name.startswith("Reserv")]
            self.assertEqual(re.findall(r"^  (\w+) ", errors, re.M), expected)
            for name, values in rows[3:]:
                for value in re.findall("`(.*?)`", values):
                    self.assertRegex(errors, rf"(?m)^  {name} .*\b{re.escape(value)}\b")


unittest.main(argv=sys.argv[:1])
