#!/usr/bin/env python3
"""Answers requests as FAKE_ANSWERS says: by command the text of the answer, or what happens instead
("die", "kill", "hang", "stubborn"), or a list of those for one request after another."""

import json
import os
import signal
import sys
import time
import urllib.parse

answers = json.loads(os.environ["FAKE_ANSWERS"])
with open(os.environ["FAKE_PID"], "w") as file:
    file.write(str(os.getpid()))


def act(answer):
    if answer == "die":
        print("ZIOP: out of paper", file=sys.stderr)
        sys.exit(7)
    if answer == "kill":
        os.kill(os.getpid(), signal.SIGKILL)
    if answer == "stubborn":
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
    if answer in ("hang", "stubborn"):
        print("waiting", file=sys.stderr, flush=True)
        time.sleep(60)
    raw = answer.encode("latin-1")
    for start in range(0, len(raw), 7):  # in pieces, as pipes may give it
        os.write(1, raw[start:start + 7])
        if start < 70:
            time.sleep(0.001)


for line in sys.stdin.buffer:
    command = json.loads(urllib.parse.unquote_to_bytes(line), strict=False)["Command"]
    said = answers[command]
    act(said.pop(0) if isinstance(said, list) else said)
