#!/usr/bin/env python3
"""Answers requests as FAKE_ANSWERS says: by command the text of the answer, or what happens instead
("die", "kill", "hang", "stubborn"); of several, one after another. An answer behind "say:", lines
and a NUL comes after the lines on standard error."""

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
        with open(os.environ["FAKE_PID"] + ".waits", "w"):
            pass
        time.sleep(60)
    if answer.startswith("say:"):
        said, answer = answer[4:].split("\0")
        print(said, file=sys.stderr, flush=True)
    raw = answer.encode("latin-1")
    for start in range(0, len(raw), 7):  # in pieces, as pipes may give it
        os.write(1, raw[start:start + 7])
        if start < 70:
            time.sleep(0.001)


for line in sys.stdin.buffer:
    command = json.loads(urllib.parse.unquote_to_bytes(line), strict=False)["Command"]
    answer = answers[command]
    if isinstance(answer, list):
        answer = answer.pop(0) if len(answer) > 1 else answer[0]
    act(answer)
