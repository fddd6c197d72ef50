"""list, status, firmware, names, get, set and init against virtual printers."""

import json
import os
import re
import shutil
import subprocess
import sys
import unittest

from companion import PROGRAM, Companion

SILENT = "&timeout=50&retries=1"
PRINTERS = [
    ("Studio", "QM-R410 Series"),
    ("Banner hall", "QM-T84 Series"),
    ("Proof", "QM-V5 Series"),
    ("Line", "QM-T44 Series"),
    ("Naysayer", "QM-R210 Series", ["--fault", "na"]),
    ("Forgetful", "QM-R210 Series", ["--fault", "forget"]),
    ("Silent", "QM-R210 Series", ["--fault", "drop=100000"], SILENT),
    ("STUDIO 2", "QM-R310 Series"),
    ("studio 2", "QM-R310 Series"),
    ("Stranger", "QM-R410 Series"),
]
BANNER = ["CustomMediaName=Banner", "RegistrationFlag=1"]

# words, exit status, texts that standard error holds; no printer gets a change.
REFUSED = [
    (["gte", "Studio", "3"], 2, ['"gte"', "did you mean get", "The commands are list, "]),
    ([], 2, ["no command is given"]),
    (["get", "Studio"], 2, ["RECORD is required", "get --help"]),
    (["list", "--answer-time", "nan"], 2, ["0.001 to 100000"]),
    (["get", "Studio", "3", "--layout", "x"], 2, ["0 to 255"]),
    (["get", "Studio", "3", "--layout", "1.5"], 2, ['"1.5" is no number from 0 to 255']),
    (["get", "Studio", "3", "--layout"], 2, ["--layout goes with one value"]),
    (["save", "Studio", ""], 2, ["FILE: the name is empty"]),
    (["set", "Studio", "PlatenGap=2.5", "-y"], 2, ['RECORD is required: "PlatenGap=2.5"']),
    (["get", "Studio", "3", "--layuot", "1"], 2, ["not expected: --layuot 1"]),
    (["status", "Studoi"], 1, ['"Studoi"; did you mean Studio?', "Listed are Studio, Banner hall"]),
    (["status", "Studio 2"], 2, ["STUDIO 2 or studio 2"]),
    (["firmware", "Studio"], 2, ["do not tell", "QM-V5, QM-V7"]),
    (["get", "Studio", "0"], 2, ["1 to 127"]),
    (["get", "Studio", "128"], 2, ["1 to 127"]),
    (["get", "Studio", "31"], 1, ["record 31", "refused"]),
    (["get", "Studio", "Canvas"], 2, ['called "Canvas"']),
    (["get", "Proof", "3", "--layout", "1"], 2, ["no layout 1", "have layout 0."]),
    (["get", "Silent", "3"], 1, ["no answer", "-6", "switched on"]),
    (["status", "Silent"], 1, ["no answer", "-6"]),
    (["names", "Naysayer"], 1, ["refused"]),
    (["set", "Studio", "3", "MediaSuction=5"], 6, ["no terminal", "--yes"]),
    (["init", "Studio", "3"], 6, ["no terminal", "--yes"]),
    (["set", "Studio", "3", "-y"], 2, ["nothing to set", "HeadMovement", "PrinterFullWidth"]),
    (["set", "Studio", "3", "-y", "PlatenGpa=2.5"], 2, ["did you mean PlatenGap?\n"]),
    (["set", "Studio", "3", "-y", "PlatenGapD=Wide"], 2, ["QM-R410", "did you mean PlatenGap"]),
    (["set", "Studio", "3", "-y", "Colour=2.5"], 2, ['"Colour" in layout 0\n', "FeedSpeed "]),
    (["set", "Studio", "3", "-y", "FeedSpeedATC=Auto"], 2, ["layout 0", "FeedSpeed"]),
    (["set", "Studio", "3", "-y", "PlatenGap=2"], 2, ["own number for 1.5", "2.0, 1.5, 2.5"]),
    (["set", "Studio", "3", "-y", "PlatenGap=3.0"], 2, ["no such value\n", "2.0, 1.5, 2.5"]),
    (["set", "Studio", "3", "-y", "FeedSpeed=aut"], 2, ["did you mean Auto?"]),
    (["set", "Studio", "3", "-y", "MediaSuction=255"], 2, ["out of range", "0 to 254"]),
    (["set", "Studio", "3", "-y", "MediaTension=127"], 2, ["out of range", "-128 to 126"]),
    (["set", "Studio", "3", "-y", "MultiStrikePrinting=0"], 2, ["1 to 255"]),
    (["set", "Studio", "3", "-y", "MediaSuction=99999999999"], 2, ["no such value"]),
    (["set", "Studio", "3", "-y", "CustomMediaName=" + 33 * "x"], 2, ["33 bytes"]),
    (["set", "Studio", "3", "-y", "CustomMediaName=x "], 2, ["blanks"]),
    (["set", "Studio", "3", "-y", "CustomMediaName="], 2, ["empty"]),
    (["set", "Studio", "3", "-y", "CommandVersion=1"], 2, ["--layout"]),
    (["set", "Studio", "3", "-y", "Reserved=1"], 2, ['no setting "Reserved"']),
    (["set", "Studio", "3", "-y", "MediaSuction"], 2, ["no NAME=VALUE"]),
    (["set", "Studio", "3", "-y", "MediaSuction=5", "mediasuction=6"], 2, ["given twice"]),
    (["set", "Studio", "3", "-y", "--layout", "128", "SettingAll=00"], 2, ["448"]),
    (["set", "Naysayer", "3", "-y", "MediaSuction=5"], 1, ["refused"]),
    (["set", "Silent", "3", "-y", "MediaSuction=5"], 1, ["no answer"]),
    (["init", "Naysayer", "3", "-y"], 1, ["refused"]),
    (["init", "Studio", "Canvas", "-y"], 2, ['called "Canvas"']),
]


class Commands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.companion = Companion(PRINTERS)
        cls.run_words, cls.json = cls.companion.run, cls.companion.json

    @classmethod
    def tearDownClass(cls):
        cls.companion.close()

    def settings(self, printer, record, *options):
        return self.json("get", printer, record, *options)["settings"]

    def changed(self):
        return [printer.name for printer in self.companion.printers if printer.changes()]

    def test_what_is_refused_changes_nothing(self):
        self.changed()
        for words, expected, texts in REFUSED:
            with self.subTest(words):
                status, output, errors = self.run_words(*words)
                self.assertEqual((status, output), (expected, ""), errors)
                for text in texts:
                    self.assertIn(text, errors)
                status, output, _ = self.run_words("--json", *words)
                error = json.loads(output)["error"]
                self.assertEqual((status, error["status"]), (expected, expected))
                self.assertIn(error["message"], errors)
        self.assertEqual(self.changed(), [])

    def test_reading(self):
        listed = self.json("list")
        self.assertEqual([printer["name"] for printer in listed], [p[0] for p in PRINTERS])
        self.assertEqual(listed[1]["layouts"], [0, 128])
        self.assertEqual(self.json("status", "studio")["WarningCode"], [16, 17])
        self.assertTrue(self.json("status", "Studio")["ready"])
        self.assertRegex(self.run_words("status", "Studio")[1], r"state +ready\n")
        self.assertEqual(self.run_words("firmware", "Proof"), (0, "2.31\n", ""))
        names = self.json("names", "Banner hall")
        self.assertEqual([name["record"] for name in names], list(range(1, 31)))
        status, output, errors = self.run_words("get", "Studio", "5")
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, r"SETTING +VALUE\nPlatenGap +1.5\nPreHeater +40\n")
        error = self.run_words("get", "Silent", "5", "--json")[1]
        self.assertIn('"code": -6', error)

    def test_records_by_name(self):
        for record, name in (("7", "Canvas A"), ("8", "canvas b"), ("9", "CANVAS B"), ("10", "12")):
            self.run_words("set", "Stranger", record, "-y", "CustomMediaName=" + name,
                           "RegistrationFlag=1")
        for word, number in (("canvas a", 7), ("canvas b", 8), ("CANVAS B", 9), ("12", 12)):
            self.assertEqual(self.json("get", "Stranger", word)["record"], number)
        status, _, errors = self.run_words("get", "Stranger", "Canvas B")
        self.assertEqual(status, 2)
        self.assertIn("records 8 and 9", errors)
        status, output, _ = self.run_words("names", "Stranger")
        self.assertRegex(output, r"RECORD +NAME\n7 +Canvas A\n8 +canvas b\n9 +CANVAS B\n10 +12\n$")

    def test_set_reads_back_and_leaves_the_rest(self):
        before = self.settings("Studio", "3")
        self.changed()
        given = ["platengap=2.5", "MEDIATENSION=-5", "feedspeed=LV1", "CustomMediaName=A=b\"\\ä"]
        status, output, errors = self.run_words("set", "studio", "3", "-y", *given)
        self.assertEqual((status, output), (0, 'written, and read back: record 3 of "Studio"\n'))
        self.assertIn("RegistrationFlag=1 registers it", errors)
        expected = {**before, "PlatenGap": "2.5", "MediaTension": -5, "FeedSpeed": "Lv1",
                    "CustomMediaName": "A=b\"\\ä"}
        self.assertEqual(self.settings("Studio", "3"), expected)
        self.assertEqual(self.changed(), ["Studio"])
        self.assertEqual(self.json("set", "Studio", "3", "-y", *given),
                         {"written": False, "changes": []})
        self.assertEqual(self.changed(), [])
        block = "a5" * 224
        self.json("set", "Studio", "3", "-y", "--layout", "128", "SettingAll=" + block)
        self.assertEqual(self.settings("Studio", "3", "--layout", "128"),
                         {"SettingAll": block.upper()})

    def test_names_in_an_encoding_of_the_printer_s(self):
        name = b"\xc9t\xe9\x01\n\x1b[2J"
        self.companion.run("set", "Studio", "4", "-y", b"CustomMediaName=" + name,
                           "RegistrationFlag=1")
        self.assertEqual(self.settings("Studio", "4")["CustomMediaName"],
                         {"hex": name.hex().upper()})
        self.assertIn(r"\xC9t\xE9\x01\x0A\x1B[2J", self.run_words("names", "Studio")[1])
        self.assertEqual(self.json("get", "Studio", name)["record"], 4)

    def test_set_keeps_what_a_write_would_reset(self):
        self.json("set", "Proof", "3", "-y", "ReferenceMediaType=9")
        changes = self.json("set", "Proof", "3", "-y", "PaperThickness=4")["changes"]
        self.assertEqual(changes, [{"setting": "PaperThickness", "old": 3, "new": 4}])
        self.assertEqual(self.settings("Proof", "3")["ReferenceMediaType"], 9)
        self.json("set", "Line", "3", "-y", "PaperFeedAdjustmentValue=-101", "MediaTensionD=high")
        self.assertEqual(self.settings("Line", "3")["MediaTensionD"], "High")

    def test_set_says_what_the_printer_did_not_keep(self):
        status, output, errors = self.run_words("set", "Forgetful", "3", "-y", "MediaSuction=7",
                                                "PlatenGap=1.5")
        self.assertEqual((status, output), (1, ""))
        self.assertIn("did not keep it: MediaSuction is 4, not 7 (result code -6)", errors)
        errors = self.run_words("set", "Forgetful", "3", "-y", "--layout", "128",
                                "SettingAll=" + "a5" * 224)[2]
        self.assertIn("did not keep it: the block differs (result code -6)", errors)
        status, _, errors = self.run_words("set", "Banner hall", "3", "-y", "PreHeater=45")
        self.assertEqual(status, 0)
        self.assertIn("PreHeater was sent, but printers of this model do not report it", errors)

    def test_init(self):
        for record in ("5", "6"):
            self.json("set", "Stranger", record, "-y", "CustomMediaName=N" + record,
                      "RegistrationFlag=1", "MediaSuction=9")
        self.assertEqual(self.json("init", "Stranger", "n5", "-y"), {"initialised": 5})
        self.assertEqual(self.settings("Stranger", "5")["MediaSuction"], 4)
        self.assertEqual(self.settings("Stranger", "6")["MediaSuction"], 9)
        self.assertEqual(self.run_words("init", "Stranger", "all", "-y")[0], 0)
        self.assertFalse(any(name["registered"] for name in self.json("names", "Stranger")))

    def test_changes_are_asked_for_on_a_terminal(self):
        words = ["set", "STUDIO 2", "3", "MediaSuction=8"]
        for ahead, typed, expected, kept in (("", "\n", 6, 4), ("", "no\n", 6, 4),
                                             ("y\n", "\n", 6, 4), ("", "Y\n", 0, 8)):
            status, shown = self.companion.on_terminal(*words, typed=typed, ahead=ahead)
            self.assertEqual(status, expected, shown)
            self.assertRegex(shown, r"MediaSuction +4 +8\s+\[y/N\]")
            self.assertEqual(self.settings("STUDIO 2", "3")["MediaSuction"], kept)
        status, shown = self.companion.on_terminal("init", "STUDIO 2", "3", typed="y\n")
        self.assertEqual(status, 0, shown)
        self.assertEqual(self.settings("STUDIO 2", "3")["MediaSuction"], 4)

    def test_progress_fits_the_terminal(self):
        for columns, text in ((80, "reading names [.............................."),
                              (24, "\rreading names 3/127"), (16, "\r3/127")):
            status, shown = self.companion.on_terminal("names", "Proof", columns=columns)
            self.assertEqual(status, 0)
            self.assertIn(text, shown)
            widths = [len(line) for line in re.findall(r"\r([^\r\n]*)\x1b\[K", shown)]
            self.assertLess(max(widths), columns)

    def test_where_the_worker_is_looked_for(self):
        environment = dict(self.companion.environment)
        root = self.companion.path("installation")
        os.makedirs(os.path.join(root, "bin"))
        os.makedirs(os.path.join(root, "libexec"))
        os.symlink(self.companion.folder, os.path.join(root, "libexec", "printer-native-process"))
        installed = shutil.copy(PROGRAM, os.path.join(root, "bin"))
        del environment["PRINTER_NATIVE_PROCESS"]
        for program, count in ((PROGRAM, 0), (installed, len(PRINTERS))):
            output = subprocess.check_output([program, "list", "--json"], env=environment)
            self.assertEqual(len(json.loads(output)), count)
        environment["PRINTER_NATIVE_PROCESS"] = "/nowhere"
        ended = subprocess.run([PROGRAM, "list"], env=environment, capture_output=True, text=True)
        self.assertEqual(ended.returncode, 3)
        self.assertIn("/nowhere cannot be started: No such file", ended.stderr)


unittest.main(argv=sys.argv[:1])
