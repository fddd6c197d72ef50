#!/usr/bin/env python3
"""A worker that misbehaves as the printer's name in the request says."""

import json
import os
import signal
import sys
import time
import urllib.parse

HUGE = 8 << 20


def write(data):
    while data:
        data = data[os.write(1, data):]


def answer(request, reply):
    text = json.dumps({request["Command"]: 0, "Reply": reply}, ensure_ascii=False)
    return text.encode()


def echo(request):
    return answer(request, {"Echo": request.get("Parameter"), "Process": os.getpid()})


def byte_by_byte(request):
    # The raw control character and the lone byte of a character that was cut off come last.
    text = answer(request, {"Name": 'é€𝄞 {"\\}"', "Tail": "@"}).replace(b"@", b"\x01\xc3")
    for i in range(len(text)):
        write(text[i:i + 1])
        time.sleep(0.001)


def endless(request):
    write(b'{"')
    while True:
        write(b"x" * (1 << 20))


def deaf(request):
    signal.signal(signal.SIGTERM, signal.SIG_IGN)
    time.sleep(60)


def half(request):
    write(echo(request)[:20])
    os._exit(3)


def killed(request):
    os.kill(os.getpid(), signal.SIGKILL)


def then_end(request):
    write(echo(request))
    os._exit(0)


def then_rest(request):
    """Reads nothing more."""
    write(echo(request))
    time.sleep(60)


def slow(request):
    time.sleep(0.02)
    write(echo(request))


BEHAVIOURS = {
    "fine": lambda request: write(echo(request)),
    "slow": slow,
    "byte by byte": byte_by_byte,
    "twice": lambda request: write(echo(request) + answer(request, "unasked")),
    "chatter": lambda request: write(b"Ready. " + echo(request)),
    "another's": lambda request: write(echo({**request, "Command": "SetCustomMediaInfo"})),
    "half and end": half,
    "killed": killed,
    "then end": then_end,
    "then rest": then_rest,
    "silent": lambda request: time.sleep(60),
    "deaf": deaf,
    "huge": lambda request: write(answer(request, "x" * HUGE)),
    "endless": endless,
    "syntax": lambda request: write(b"syntax error"),
    "code": lambda request: write(b'{"GetStatusReply":-6}'),
}


def main():
    print("started", file=sys.stderr, flush=True)
    for line in sys.stdin.buffer:
        request = json.loads(urllib.parse.unquote_to_bytes(line.strip()).decode())
        BEHAVIOURS[request["PrinterName"]](request)
    print("ended in order", file=sys.stderr, flush=True)


main()
