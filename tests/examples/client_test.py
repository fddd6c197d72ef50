"""The client module of one language, over its probe, against a misbehaving and the real worker."""

import argparse
import json
import os
import subprocess
import sys
import tempfile
import threading
import time
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
sys.path.insert(0, os.path.join(ROOT, "scripts"))
import rig

ARGUMENTS = argparse.Namespace()
HUGE = 8 << 20


class Probe:
    """A host that makes requests through the module."""

    def __init__(self, worker, environment=None):
        self.process = subprocess.Popen([*ARGUMENTS.probe, worker], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        env=environment)
        self.errors = b""
        self._reader = threading.Thread(target=self._read_errors)
        self._reader.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.end()

    def _read_errors(self):
        self.errors = self.process.stderr.read()

    def at_once(self, calls):
        self.process.stdin.write(json.dumps(calls).encode() + b"\n")
        self.process.stdin.flush()
        # A module may hand on the bytes of a text as the printer holds them.
        return json.loads(self.process.stdout.readline().decode("utf-8", "surrogateescape"))

    def ask(self, printer, parameter=None, command="GetStatusReply", device="", limit=20):
        return self.at_once([{"command": command, "printer": [printer, device],
                              "parameter": [] if parameter is None else parameter,
                              "limit": limit}])[0]

    def workers(self):
        """The states of its child processes: "S" one that waits, "Z" one that nobody waited for."""
        states = []
        for number in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{number}/stat") as file:
                    state, parent = file.read().rpartition(")")[2].split()[:2]
            except OSError:
                continue
            if int(parent) == self.process.pid:
                states.append(state)
        return states

    def end(self):
        """The exit status, after the end of input."""
        if not self.process.stdin.closed:
            self.process.stdin.close()
        status = self.process.wait(rig.TIME_LIMIT_S)
        self._reader.join()
        self.process.stdout.close()
        self.process.stderr.close()
        return status


class MisbehavingWorker(unittest.TestCase):
    def setUp(self):
        self.probe = Probe(os.path.join(HERE, "fake_worker.py"))
        self.addCleanup(self.probe.end)

    def process(self):
        """A number for the worker that answers now; no others may be left behind."""
        reply = self.probe.ask("fine")["reply"]
        self.assertEqual(len(self.probe.workers()), 1, self.probe.workers())
        return reply["Process"]

    def expect(self, error, text, printer, **call):
        outcome = self.probe.ask(printer, **call)
        self.assertEqual(outcome.get("error"), error, str(outcome)[:300])
        self.assertIn(text, outcome["text"])

    def test_answers_arrive_in_pieces(self):
        reply = self.probe.ask("byte by byte")["reply"]
        self.assertEqual(reply["Name"], 'é€𝄞 {"\\}"')
        self.assertEqual(reply["Tail"][0], "\x01")
        self.assertEqual(self.probe.ask("huge")["reply"], "x" * HUGE)

    def test_one_worker_serves_requests_in_turn(self):
        process = self.process()
        calls = [{"command": "GetStatusReply", "printer": ["slow", ""],
                  "parameter": [str(i), "é+%"], "limit": 20} for i in range(40)]
        for call, outcome in zip(calls, self.probe.at_once(calls)):
            self.assertEqual(outcome["reply"], {"Echo": call["parameter"], "Process": process})
        self.assertEqual(self.process(), process)

    def test_codes_and_refusals_leave_the_worker_running(self):
        process = self.process()
        outcome = self.probe.ask("code")
        self.assertEqual((outcome["error"], outcome["code"]), ("PrinterError", -6))
        self.assertIn("did not answer", outcome["text"])
        self.expect("RequestError", "syntax error", "syntax")
        self.assertEqual(self.process(), process)

    def test_what_the_worker_would_ignore_or_garble_is_refused(self):
        outcome = self.probe.ask("fine", command='Get"{')
        self.assertIn("is no command", outcome.get("text", ""))
        for value in True, 2.5, [1], None:
            outcome = self.probe.ask("fine", parameter={"MediaSuction": value})
            self.assertIn("MediaSuction is neither", outcome.get("text", ""), str(value))

    def test_another_worker_follows_one_that_failed(self):
        for printer, error, text, limit in (
                ("half and end", "WorkerEnded", "with status 3", 20),
                ("killed", "WorkerEnded", "ended by", 20),
                ("silent", "WorkerTimeout", "in time", 0.3),
                ("deaf", "WorkerTimeout", "in time", 0.3),
                ("chatter", "ProtocolError", "Ready", 20),
                ("another's", "ProtocolError", "was answered", 20),
                ("endless", "ProtocolError", "does not end", 20)):
            with self.subTest(printer):
                process = self.process()
                self.expect(error, text, printer, limit=limit)
                self.assertNotEqual(self.process(), process)

    def test_an_answer_too_many_reaches_no_request(self):
        process = self.probe.ask("twice")["reply"]["Process"]
        self.assertNotEqual(self.process(), process)

    def test_a_worker_that_ended_between_requests_is_replaced(self):
        process = self.probe.ask("then end")["reply"]["Process"]
        end = time.monotonic() + rig.TIME_LIMIT_S
        while set(self.probe.workers()) - {"Z"} and time.monotonic() < end:
            time.sleep(0.01)
        for _ in range(2):  # a host that works on events has its turn to see the end
            self.probe.at_once([])
        self.assertNotEqual(self.process(), process)

    def test_a_worker_that_reads_nothing_does_not_hold_the_host(self):
        self.probe.ask("then rest")
        self.expect("WorkerTimeout", "in time", "fine", parameter=["x" * (4 << 20)], limit=0.5)
        self.process()

    def test_closing_ends_the_worker_in_order(self):
        self.process()
        self.assertEqual(self.probe.end(), 0)
        self.assertEqual(self.probe.errors.split(b"\n")[:2], [b"started", b"ended in order"])


class RealWorker(unittest.TestCase):
    PRINTERS = [  # a setting, what it is changed to, and how that is shown
        ("Studio", "QM-R410 Series", "PlatenGap", "2.0"),
        ("Größe 64\"", "QM-T84 Series", "MediaSuction", "7"),
        ("Proof", "QM-T44 Series", "PaperFeedAdjustmentValue", "-12"),
        ("Last", "QM-V5 Series", "CustomMediaName", "Décor {\"} 𝄞"),
    ]

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        printers = [rig.VirtualPrinter(ARGUMENTS.products, name, model)
                    for name, model, _, _ in self.PRINTERS]
        for printer in printers:
            self.addCleanup(printer.process.stdout.close)
            self.addCleanup(printer.stop)
        worker = rig.Worker(ARGUMENTS.products, folder.name, printers)
        worker.end()
        worker.process.stdout.close()
        self.worker = os.path.join(folder.name, "PrinterNativeProcess")
        self.environment = dict(os.environ, XDG_CONFIG_HOME=os.path.join(folder.name, "config"))

    def run_host(self, *arguments):
        return subprocess.run([*ARGUMENTS.host, self.worker, *arguments], env=self.environment,
                              capture_output=True, text=True, errors="surrogateescape",
                              timeout=60, check=False)

    def test_example_program(self):
        listed = [f"printer: {name}" for name, _, _, _ in self.PRINTERS]
        for name, model, setting, value in self.PRINTERS:
            run = self.run_host(name, "3", setting, value)
            self.assertEqual((run.returncode, run.stderr), (0, ""), model)
            lines = run.stdout.splitlines()
            self.assertEqual(lines[:-2], listed)
            self.assertEqual(lines[-1], f"after: {value}")
            self.assertNotEqual(lines[-2], f"before: {value}")
        self.assertIn("after: 440\n", self.run_host("Last", "3", "CustomMediaName", "440").stdout)
        for name, setting, wrong in (("Nobody", "PlatenGap", "Nobody"),
                                     ("Studio", "PlattenGap", "PlattenGap")):
            run = self.run_host(name, "3", setting, "2.0")
            self.assertNotEqual(run.returncode, 0)
            self.assertIn(wrong, run.stderr)
            self.assertNotIn("before", run.stdout)

    def test_a_name_that_was_cut_within_a_character_goes_back_as_it_came(self):
        write = {"Command": "SetCustomMediaInfo", "PrinterName": "Studio",
                 "DeviceName": "QM-R410 Series", "Parameter": {
                     "CustomMediaNo": 3, "CommandVersion": 0, "CustomMediaName": "x" * 31 + "@"}}
        lines = rig.line({"Command": "GetPrinterList"}) + rig.line(write).replace(b"%40", b"%C3")
        subprocess.run([self.worker], input=lines, env=self.environment, capture_output=True,
                       timeout=60, check=True)
        self.environment["PYTHONIOENCODING"] = "utf-8:strict"  # as in most locales
        self.assertIn("after: 7\n", self.run_host("Studio", "3", "MediaSuction", "7").stdout)
        run = self.run_host("Studio", "3", "CustomMediaName", "new")
        self.assertRegex(run.stdout, "before: x{31}[\udcc3\ufffd]\nafter: new\n")

    def test_failures(self):
        with Probe(self.worker, self.environment) as probe:
            self.assertEqual(probe.ask("", command="GetPrinterList")["reply"][0],
                             {"DeviceName": "QM-R410 Series", "PrinterName": "Studio"})
            self.assertEqual(probe.ask("Nobody")["code"], -4)
            self.assertEqual(probe.ask("Studio", {"CustomMediaNo": 1}, "GetCustomMediaInfo",
                                       "QM-R410 Series")["code"], -1)
            self.assertEqual(probe.ask("Studio", {}, "GetStatusReply")["error"], "RequestError")
            self.assertEqual(probe.ask("Studio", {"CustomMediaNo": 1, "CommandVersion": 7},
                                       "GetCustomMediaInfo", "QM-R410 Series")["error"],
                             "WorkerEnded")
            status = probe.ask("Studio", ["StatusCode"], device="QM-R410 Series")
            self.assertEqual(status["reply"], {"StatusCode": 4})


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--products", required=True)
    parser.add_argument("--host", nargs="+", required=True)
    parser.add_argument("--probe", nargs="+", required=True)
    parser.parse_args(namespace=ARGUMENTS)
    unittest.main(argv=sys.argv[:1], verbosity=2)


main()
