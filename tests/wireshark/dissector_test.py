"""The dissector in tshark, over exchanges of the worker with virtual printers."""

import os
import random
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.join(ROOT, "scripts"))
import rig
from capture import Relay, write_capture

PRODUCTS, DISSECTOR, TSHARK = sys.argv[1:4]
STAYS = "stays"


class RelayedPrinter(rig.VirtualPrinter):
    def __init__(self, model, options=()):
        super().__init__(PRODUCTS, "Studio", model, options)
        port = self.uri.partition("snmp=")[2]
        self.relay = Relay(int(port))
        self.uri = self.uri.replace("snmp=" + port, f"snmp={self.relay.port}")

    def stop(self):
        super().stop()
        self.process.stdout.close()
        self.relay.close()


def record(model, requests, options=()):
    """Makes the requests, pairs of command and parameter. Returns the answers and the datagrams."""
    printer = RelayedPrinter(model, options)
    with tempfile.TemporaryDirectory() as folder:
        worker = rig.Worker(PRODUCTS, folder, [printer])
        worker.ask({"Command": "GetPrinterList"})
        answers = [worker.ask({"Command": command, "PrinterName": "Studio", "DeviceName": model,
                               "Parameter": parameter}) for command, parameter in requests]
        worker.end()
        worker.process.stdout.close()
    printer.stop()
    return answers, printer.relay.datagrams


class Dissection:
    """What tshark makes of datagrams, run with further options."""

    def __init__(self, datagrams, *options, **capture):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "capture.pcap")
            write_capture(path, datagrams, **capture)
            self.run = subprocess.run(
                [TSHARK, "-n", "-r", path, "-X", "lua_script:" + DISSECTOR, *options],
                env=dict(os.environ, WIRESHARK_CONFIG_DIR=folder), capture_output=True, check=True)
        self.text = self.run.stdout.decode()
        self.errors = re.sub(r'Running as user "root".*\n', "", self.run.stderr.decode())


def dissect(datagrams, *options, **capture):
    """For each packet, the dissector's element, or None."""
    text = Dissection(datagrams, "-T", "pdml", *options, **capture).text
    packets = xml.etree.ElementTree.fromstring(text).iter("packet")
    return [packet.find("proto[@name='printer_command']") for packet in packets]


def shown(element):
    """Names and values of an element's own fields; a list for a name that occurs again."""
    values = {}
    for field in element.findall("field"):
        name = field.get("name").rpartition("printer_command.")[2]
        values.setdefault(name, []).append(field.get("show"))
    return {name: value[0] if len(value) == 1 else value for name, value in values.items()}


def lower(parameters):
    """Parameters as the dissector's fields have them."""
    return {name.lower(): str(value) for name, value in parameters.items()}


WRITES = [
    ("QM-R410 Series", 0, {"PlatenGap": "2.5", "MediaTension": -5, "MultiStrikePrinting": 3,
                           "FeedSpeed": "Auto", "RegistrationFlag": 1, "CustomMediaName": "Dür"}),
    ("QM-R410 Series", 1, {"FeedSpeedMTC": "Lv1", "MediaTensionMTC": 100, "PreHeater": 200}),
    ("QM-R310 Series", 0, {"CustomMediaName": "No room for one letter more, no.."[:32]}),
    ("QM-T84 Series", 0, {"BlankAreaFeed": "Mode0", "TakeupTension": "Auto", "PreHeater": "Off"}),
    ("QM-T64 Series", 0, {"FeedingTension": -128, "CustomMediaName": "Banner", "AfterHeater": 45}),
    ("QM-T44 Series", 0, {"ReferenceMediaType": 7, "PaperFeedAdjustmentValue": -12,
                          "PlatenGapD": "Narrow", "MediaTensionD": "High"}),
    ("QM-V5 Series", 0, {"ReferenceMediaType": 200, "UsePaperEjectRoller": 1, "Removeskew": "On"}),
]


class Dissector(unittest.TestCase):
    maxDiff = None

    def test_records_of_every_family_and_layout(self):
        for model, layout, settings in WRITES:
            with self.subTest(model, layout=layout):
                head = {"CustomMediaNo": 3, "CommandVersion": layout}
                answers, datagrams = record(model, [("SetCustomMediaInfo", {**head, **settings}),
                                                    ("GetCustomMediaInfo", head)])
                self.assertEqual([answer.popitem()[0] for answer in answers],
                                 ["SetCustomMediaInfo", "Reply"])
                self.check_record(dissect(datagrams), lower({**head, **settings}), datagrams, model,
                                  head)

    def check_record(self, packets, written, datagrams, model, head):
        self.assertEqual(len(packets), len(datagrams))
        self.assertNotIn(None, packets)
        write, read_request, read_answer = shown(packets[0]), shown(packets[-2]), packets[-1]
        self.assertEqual(write["operation"], "Write record")
        self.assertIn(model.split()[0], write["families"])
        settings = {name: value for name, value in write.items() if value != STAYS}
        self.assertEqual({name: settings.get(name) for name in written}, written)
        stay = {name for name, value in write.items() if value == STAYS}
        self.assertFalse(stay & set(written))
        self.assertGreater(len(stay), 8)
        self.assertEqual(read_request["operation"], "Read record")
        self.assertEqual({name: read_request[name] for name in lower(head)}, lower(head))
        answer = self.answers_to(read_answer)
        self.assertEqual({name: answer[name] for name in written if name in answer},
                         {name: value for name, value in written.items() if name in answer})

    @staticmethod
    def answers_to(element):
        return shown(element.find("field[@name='printer_command.reply']"))

    def test_reply_is_what_the_worker_answers(self):
        for model, layouts in (("QM-R210 Series", (0, 1, 128)), ("QM-T64 Series", (0, 128)),
                               ("QM-T44 Series", (0,)), ("QM-V7 Series", (0,))):
            requests = [("GetCustomMediaInfo", {"CustomMediaNo": 9, "CommandVersion": layout})
                        for layout in layouts]
            answers, datagrams = record(model, requests)
            answers = [lower(answer["Reply"]) for answer in answers]
            packets = dissect(datagrams)
            self.assertEqual([self.answers_to(packet) for packet in packets[1::2]], answers)

    def test_other_operations(self):
        requests = [("GetCustomMediaName", {"CustomMediaNo": 3}), ("GetFWVersion", {}),
                    ("SetMediaInitialize", {"InitializeCustomMedia": 3}),
                    ("SetMediaInitialize", {"InitializeCustomMedia": "All"})]
        _, datagrams = record("QM-V5 Series", requests)
        packets = dissect(datagrams)
        operations = [shown(packet)["operation"] for packet in packets]
        self.assertEqual(operations[::2],
                         ["Read names", "Read firmware version", "Initialise records",
                          "Make permanent", "Read record", "Initialise records", "Make permanent"])
        names, firmware = self.answers_to(packets[1]), self.answers_to(packets[3])
        self.assertEqual(names["custommediano"], ["3", "4", "5"])
        self.assertEqual(firmware["firmwareversion"], rig.FIRMWARE)
        self.assertEqual([shown(packets[4])["initializecustommedia"],
                          shown(packets[10])["initializecustommedia"]], ["3", "All"])

    def test_refusal(self):
        _, datagrams = record("QM-T44 Series", [
            ("GetCustomMediaInfo", {"CustomMediaNo": 31, "CommandVersion": 0})])
        text = Dissection(datagrams).text.splitlines()
        self.assertIn("[Read record 31, layout 0]", text[0])
        self.assertIn("[Read record 31, layout 0, refused]", text[1])
        # What an agent without such an object answers: the request with an error in it.
        error = datagrams[0][1].replace(b"\xA0", b"\xA2", 1)
        error = error.replace(b"\x02\x01\x02\x02\x01\x00", b"\x02\x01\x02\x02\x01\x02", 1)
        text = Dissection([(True, error)], "-Y", "printer_command.refused").text
        self.assertIn("[Read record 31, layout 0, refused]", text)

    def test_other_ports_and_families_by_preference(self):
        _, datagrams = record("QM-R410 Series", [
            ("GetCustomMediaInfo", {"CustomMediaNo": 3, "CommandVersion": 0})])
        self.assertEqual(dissect(datagrams, port=10161), [None, None])
        for option in (["-d", "udp.port==10161,snmp"],
                       ["-o", "printer_command.ports:5161,10000-10200"]):
            self.assertNotIn(None, dissect(datagrams, *option, port=10161))
        chosen = dissect(datagrams, "-o", "printer_command.family:QM-T84, QM-T64")
        self.assertEqual([shown(packet)["families"] for packet in chosen], ["QM-T84, QM-T64"] * 2)

    def test_family_of_a_printer_is_remembered(self):
        head = {"CustomMediaNo": 3, "CommandVersion": 0}
        write = ("SetCustomMediaInfo", {**head, "Reserved": 1, "TakeupTension": 5})
        _, datagrams = record("QM-T84 Series", [("GetCustomMediaInfo", head), write])
        self.assertEqual(shown(dissect(datagrams)[2]).get("takeuptension"), "5")
        self.assertNotIn("takeuptension", shown(dissect(datagrams[2:])[0]))

    def test_damaged_packets(self):
        requests = [("SetCustomMediaInfo", {"CustomMediaNo": 3, "CommandVersion": 0,
                                            "CustomMediaName": "é" * 9, "PlatenGap": 9}),
                    ("GetCustomMediaInfo", {"CustomMediaNo": 3, "CommandVersion": 128}),
                    ("GetCustomMediaName", {"CustomMediaNo": 3})]
        _, datagrams = record("QM-R410 Series", requests)
        source = random.Random(1)
        damaged = []
        for is_answer, datagram in datagrams:
            damaged += [(is_answer, datagram[:size]) for size in range(len(datagram))]
            for _ in range(200):
                changed = bytearray(datagram)
                for _ in range(source.choice((1, 1, 2, 8))):
                    changed[source.randrange(len(changed))] = source.randrange(256)
                damaged.append((is_answer, bytes(changed)))
        for kept in 65535, 120, 70:
            run = Dissection(damaged, "-V", kept=kept)
            self.assertEqual(run.errors, "")
            self.assertEqual(re.findall(r".*Lua Error.*|.*\.lua:\d.*", run.text)[:3], [])
            self.assertEqual(len(re.findall(r"^Frame \d", run.text, re.M)), len(damaged))
        told = Dissection(damaged, "-Y", "printer_command.damaged").text.splitlines()
        self.assertGreater(len(told), 100)

    def test_documented_example(self):
        _, datagrams = record("QM-R410 Series", [
            ("SetCustomMediaInfo", {"CustomMediaNo": 3, "CommandVersion": 0, "PlatenGap": "2.5",
                                    "MediaSuction": 4, "CustomMediaName": "Banner"})])
        with open(os.path.join(ROOT, "docs", "dissector.md")) as page:
            example = page.read().partition("```text\n")[2].partition("```")[0]
        text = Dissection(datagrams[:1], "-O", "printer_command").text
        self.assertIn(example, text)


unittest.main(argv=sys.argv[:1], verbosity=2)
