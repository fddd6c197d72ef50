"""save, restore, compare and doctor."""

import json
import os
import re
import shutil
import signal
import stat
import sys
import time
import unittest

from companion import SOURCES, Companion, Fake, listed

PRINTERS = [
    ("Studio", "QM-R410 Series"),
    ("Copy", "QM-R210 Series"),
    ("Banner hall", "QM-T84 Series"),
    ("Proof", "QM-V5 Series"),
    ("Forgetful", "QM-R310 Series", ["--fault", "forget"]),
    ("Slow", "QM-R410 Series", ["--fault", "delay=150"]),
]
BLOCK = "5A" * 224


def edited(saved, **changes):
    """A copy of the first record's layout 0 with other settings."""
    copy = json.loads(json.dumps(saved))
    copy["records"][0]["layouts"]["0"].update(changes)
    return copy


class Records(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.companion = Companion(PRINTERS)
        cls.run_words, cls.json = cls.companion.run, cls.companion.json
        for record, name in (("3", b"Banner"), ("7", b"\xc9t\xe9")):
            status, _, errors = cls.run_words("set", "Studio", record, "-y", "MediaTension=-5",
                                              b"CustomMediaName=" + name, "RegistrationFlag=1")
            assert status == 0, errors
        cls.json("set", "Studio", "3", "-y", "--layout", "128", "SettingAll=" + BLOCK)
        cls.json("set", "Studio", "3", "-y", "--layout", "1", "FeedSpeedMTC=Lv2")
        cls.file = cls.companion.path("studio.json")
        status, output, errors = cls.run_words("save", "studio", cls.file)
        assert (status, errors) == (0, ""), errors
        assert output == f'saved 2 records of "Studio" to {cls.file}\n', output
        with open(cls.file) as file:
            cls.saved = json.load(file)

    @classmethod
    def tearDownClass(cls):
        cls.companion.close()

    def write(self, content):
        path = self.companion.path("edited.json")
        with open(path, "w") as file:
            file.write(content if isinstance(content, str) else json.dumps(content))
        return path

    def test_saved_file(self):
        self.assertEqual({key: self.saved[key] for key in ("format", "version", "device")}, {
            "format": "printer-media records", "version": 1, "device": "QM-R410 Series"})
        self.assertRegex(self.saved["saved"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        first, second = self.saved["records"]
        self.assertEqual((first["record"], second["record"]), (3, 7))
        self.assertEqual(first["layouts"]["0"], self.json("get", "Studio", "3")["settings"])
        self.assertEqual(first["layouts"]["1"]["FeedSpeedMTC"], "Lv2")
        self.assertEqual(first["layouts"]["128"], {"SettingAll": BLOCK})
        self.assertEqual(second["layouts"]["0"]["CustomMediaName"], {"hex": "C974E9"})

    def test_restore_to_a_printer_of_the_family(self):
        self.run_words("set", "Copy", "3", "-y", "CustomMediaName=Old", "RegistrationFlag=1")
        self.run_words("set", "Copy", "9", "-y", "CustomMediaName=Mine", "RegistrationFlag=1")
        status, output, errors = self.run_words("restore", "Copy", self.file, "-y")
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, r"^RECORD +NAME +RESULT\n3 +Banner +written\n7 +.*written\n$")
        self.assertEqual(self.json("compare", "Studio", self.file)["same"], True)
        status, output, _ = self.run_words("compare", self.file, "Copy", "--json")
        self.assertEqual((status, json.loads(output)), (5, {
            "same": False, "only_first": [], "only_second": [9], "differences": []}))
        again = self.json("restore", "Copy", self.file, "-y")
        self.assertEqual([row["result"] for row in again], ["unchanged", "unchanged"])
        nameless = edited(self.saved)
        del nameless["records"][0]["layouts"]["0"]["CustomMediaName"]
        again = self.json("restore", "Copy", self.write(nameless), "-y")
        self.assertEqual(again[0]["name"], "Banner")
        self.assertEqual(self.run_words("restore", "Copy", self.file)[0], 6)
        self.json("set", "Copy", "3", "-y", "MediaSuction=9")
        status, shown = self.companion.on_terminal("restore", "Copy", self.file, typed="y\n")
        self.assertEqual(status, 0, shown)
        self.assertRegex(shown, r"RECORD +IS +BECOMES\s+3 +Banner +Banner\s+\[y/N\]")
        self.assertRegex(shown, r"writing \[#*\.*\] \d/2")

    def test_a_wrong_file_changes_nothing(self):
        record = self.saved["records"][0]
        cases = [
            ("{", "no JSON"),
            ("[1]", "no file of saved records"),
            (json.dumps(self.saved)[:-1], "no JSON: line 1, column "),
            ("[" * 100000, "no file of saved records"),
            ('{"version":' + "[" * 500000 + "]" * 500000 + "}", "no file of saved records"),
            ({**self.saved, "version": 2}, "version 2"),
            ({**self.saved, "device": "Plotter"}, '"Plotter"'),
            ({**self.saved, "records": {}}, "list of records"),
            ({**self.saved, "records": [record, record]}, "record 3: the record is there twice"),
            ({**self.saved, "records": [{**record, "record": 0}]}, "record 0: there is no such"),
            ({**self.saved, "records": [{**record, "record": 1e300}]}, "no number"),
            ({**self.saved, "records": [{"record": 3, "layouts": {"2": {}}}]}, "no such layout"),
            (edited(self.saved, PlatenGpa=1), "record 3, layout 0: there is no setting "
                                              '"PlatenGpa"; did you mean PlatenGap?'),
            (edited(self.saved, CustomMediaNo=4), 'no setting "CustomMediaNo"'),
            (edited(self.saved, PlatenGap="3.0"), 'PlatenGap cannot be "3.0"'),
            (edited(self.saved, PlatenGap=1), "PlatenGap cannot be 1"),
            (edited(self.saved, MediaTension=128), "MediaTension cannot be 128"),
            (edited(self.saved, CustomMediaName={"hex": "A"}), "CustomMediaName cannot be"),
            (edited(self.saved, CustomMediaName=33 * "x"), "CustomMediaName cannot be"),
        ]
        for printer in self.companion.printers:
            printer.changes()
        for content, text in cases:
            with self.subTest(text):
                status, output, errors = self.run_words("restore", "Studio", self.write(content),
                                                        "-y")
                self.assertEqual((status, output), (4, ""), errors)
                self.assertIn(text, errors)
        status, _, errors = self.run_words("restore", "Proof", self.file, "-y")
        self.assertEqual(status, 4)
        self.assertIn("another form", errors)
        self.assertIn("DryingTimePerPass, RegistrationFlag and CustomMediaName", errors)
        for path in ("/nowhere/file", self.companion.folder, "/dev/zero"):
            self.assertEqual(self.run_words("restore", "Studio", path, "-y")[0], 4)
        for printer in self.companion.printers:
            self.assertEqual(printer.changes(), [], printer.name)

    def test_restore_says_what_was_not_kept_and_goes_on(self):
        status, output, errors = self.run_words("restore", "Forgetful", self.file, "-y")
        self.assertEqual(status, 1)
        self.assertRegex(output, r"\n3 +Banner +failed: the printer took the write, but did not "
                                 r"keep it: ")
        self.assertRegex(output, r"\n7 .*failed: ")
        self.assertIn("not all records are restored", errors)

    def test_compare(self):
        path = self.write(edited(self.saved, PlatenGap="2.0"))
        status, output, _ = self.run_words("compare", "Studio", path)
        self.assertEqual(status, 5)
        self.assertRegex(output, r"\n3 +PlatenGap +1.5 +2.0\n$")
        status, output, errors = self.run_words("compare", self.file, "Banner hall", "--json")
        self.assertEqual(status, 5)
        self.assertEqual(json.loads(output)["only_first"], [3, 7])
        self.assertIn("compared is what both have", errors)

    def test_json_has_the_members_of_the_document(self):
        def members(value):
            """The names of the object's members, and of those of the objects in it."""
            parts = value if isinstance(value, list) else []
            if isinstance(value, dict):
                parts = [part for part in value.values() if isinstance(part, list)]
            names = set(value) if isinstance(value, dict) else set()
            return names.union(*map(members, parts))

        with open(os.path.join(SOURCES, "docs", "printer-media.md"), encoding="utf-8") as file:
            rows = re.findall(r"^\| `(\w+)` \| an (?:array|object): (.*) \|$", file.read(), re.M)
        changed = self.write(edited(self.saved, PlatenGap="2.0"))
        words = {
            "list": [], "status": ["Proof"], "firmware": ["Proof"], "names": ["Studio"],
            "get": ["Studio", "3"], "set": ["Slow", "9", "-y", "MediaSuction=9"],
            "init": ["Slow", "9", "-y"], "save": ["Proof", self.companion.path("p.json")],
            "restore": ["Forgetful", self.file, "-y"], "compare": ["Studio", changed],
            "doctor": [],
        }
        self.assertEqual([command for command, _ in rows], list(words))
        for command, told in rows:
            output = self.run_words(command, *words[command], "--json")[1]
            self.assertEqual(members(json.loads(output)) | ({"advice"} & set(told.split("`"))),
                             set(re.findall(r"`(\w+)`", told)), command)

    def test_a_printer_that_goes_away_leaves_no_part_of_a_file(self):
        path = self.companion.path("part.json")
        companion = Companion([("Lost", "QM-R410 Series", ["--fault", "delay=100"],
                                "&timeout=300&retries=0")])
        for record in range(1, 6):
            companion.run("set", "Lost", str(record), "-y", "RegistrationFlag=1",
                          f"CustomMediaName=N{record}")
        process = companion.start("save", "Lost", path)
        time.sleep(1.6)  # ten readings of names take a second
        companion.printers[0].process.send_signal(signal.SIGKILL)
        _, errors = process.communicate(timeout=30)
        companion.printers[0].process.wait()
        companion.printers[0].trace.close()
        self.assertEqual(process.returncode, 1, errors)
        self.assertIn(b"no answer", errors)
        self.assertFalse([name for name in os.listdir(self.companion.folder) if "part" in name])
        process = self.companion.start("save", "Slow", path)
        time.sleep(1)
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=30)
        self.assertEqual(process.returncode, -signal.SIGINT)
        self.assertFalse([name for name in os.listdir(self.companion.folder) if "part" in name])
        shutil.rmtree(companion.folder)

    def test_save_replaces_files_only_when_agreed(self):
        path, link = self.companion.path("kept.json"), self.companion.path("link.json")
        for target in (path, link):
            if target == link:
                os.symlink(path, link)
            with open(path, "w") as file:
                file.write("mine")
            status, _, errors = self.run_words("save", "Proof", target)
            self.assertEqual(status, 6, errors)
            with open(path) as file:
                self.assertEqual(file.read(), "mine")
            self.assertEqual(self.json("save", "Proof", target, "-y")["records"], 0)
            with open(path) as file:
                self.assertEqual(json.load(file)["records"], [])
        self.assertTrue(os.path.islink(link))
        mask = os.umask(0)
        os.umask(mask)
        self.assertEqual(stat.S_IMODE(os.stat(path).st_mode), 0o666 & ~mask)
        for target in (self.companion.folder, "/nowhere/file.json", "/dev/full"):
            self.assertEqual(self.run_words("save", "Proof", target, "-y")[0], 4)

    def test_doctor(self):
        environment = self.companion.environment
        worker = environment["PRINTER_NATIVE_PROCESS"]
        os.makedirs(self.companion.path("links"))
        link = self.companion.path("links/worker")
        os.symlink(worker, link)
        for path in (link, worker):
            environment["PRINTER_NATIVE_PROCESS"] = path
            rows = self.json("doctor")
            self.assertEqual({row["grade"] for row in rows}, {"ok"})
            self.assertEqual([row["about"] for row in rows], ["worker", "list"] +
                             [printer[0] for printer in PRINTERS])
        companion = Companion([("Silent", "QM-R410 Series", ["--fault", "drop=100000"],
                                "&timeout=50&retries=0"),
                               ("Naysayer", "QM-R410 Series", ["--fault", "na"])],
                              {"SupportedPrinters": ["QM-R410 Series"], "Discovery": {
                                  "Network": True, "TimeoutMilliseconds": 100,
                                  "Addresses": ["::bad::"]}})
        modules = companion.path("ZIO/ZIOP.plugin/Contents/Linux")
        os.remove(os.path.join(modules, "libZIOPQueues.so"))
        status, output, _ = companion.run("doctor")
        self.assertEqual(status, 1)
        self.assertRegex(output, r"note  libZIOPQueues.so: missing .*\n +Without it")
        self.assertRegex(output, r"note  left out: .*not asked: .*\n +Mend the entry of Addresses")
        self.assertRegex(output, r"bad   Silent: .*no answer.*\n +Is it switched on")
        self.assertRegex(output, r"bad   Naysayer: record 1 .*refused\n +.* another model")
        # The worker's trace is passed on, and is nothing to complain of.
        companion.environment["PRINTER_TRACE"] = "-"
        status, traced, errors = companion.run("doctor")
        self.assertEqual((status, traced), (1, output))
        self.assertRegex(errors, r"Z worker\[\d+\] host request - .*\n(.*\n)+.* host result - .*\n$")
        os.remove(companion.path("PrinterNativeProcess"))
        status, output, _ = companion.run("doctor")
        self.assertEqual((status, output.count("\n")), (1, 2))
        self.assertIn("is not there", output)
        companion.close()

    def test_doctor_explains_the_lines_of_the_document(self):
        with open(os.path.join(SOURCES, "docs", "discovery.md"), encoding="utf-8") as file:
            lines = re.findall(r"^\| `(.*?: .*?)`.* \| .* \|$", file.read(), re.M)
        self.assertGreater(len(lines), 8)
        fake = Fake({"GetPrinterList": "say:" + "\n".join(lines) + "\0" + listed("QM-V5 Series"),
                     "GetStatusReply": '{"GetStatusReply":0}',
                     "GetCustomMediaInfo": '{"GetCustomMediaInfo":-1}'})
        rows = [row for row in json.loads(fake.run("doctor", "--json")[1])
                if row["about"] == "left out"]
        self.assertEqual([row["text"] for row in rows], lines)
        self.assertEqual([row["text"] for row in rows if "advice" not in row], [])
        advice = {row["advice"] for row in rows}
        self.assertNotIn("Mend the entry in the printer list.", advice)
        fake.close()


unittest.main(argv=sys.argv[:1])
