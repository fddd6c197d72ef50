"""How time and memory grow with the work: curves, each with its plot."""

import json
import math
import re
import subprocess
from types import SimpleNamespace

from costs import costs_of_run
from report import Samples
from setting import INFO, MODEL, NAME, REQUESTS, request

TIME_NS = 500_000_000  # about as long one point is measured
LINEAR = 1.05  # power of instructions that counts as linear: n log n has 1.1 and more
LINEAR_IN_CACHES = 1.2  # power of times and memory that does: more work misses more caches


def measure(setting, text):
    """Median processor time (us) of a request to a worker kept running, and the worker's peak (KiB)."""
    answer = setting.answer(text)
    command = [setting.program("time_requests"), "1", setting.file("request", text),
               setting.file("answer", answer), "--", *setting.worker]
    lines = setting.run(command, b"").stdout.splitlines()
    rounds = min(100, TIME_NS // 10 // int(lines[0].split()[1]))
    if rounds > 1:
        lines = setting.run([command[0], str(rounds), *command[2:]], b"").stdout.splitlines()
    *rows, last = lines
    time = Samples([int(row.split()[2]) for row in rows])
    return time.median / 1000, int(last.split()[2])


def instructions(setting, text):
    """Of a request to a worker that has answered the same before."""
    one, three = (costs_of_run(setting, text * number)[0].instructions for number in (1, 3))
    return (three - one) / 2


def printers(setting):
    """Lists of printers; the one that is asked is the last."""
    this = setting.at_port(setting.port)
    for count in 1, 10, 100, 1_000, 10_000:
        others = [SimpleNamespace(name=f"Printer {i}", model=MODEL,
                                  uri=f"socket://192.0.2.{i % 250}?snmp={i + 1}")
                  for i in range(count - 1)]
        setting.put_printers([*others, this])
        yield count, {"GetCustomMediaInfo": INFO, "GetPrinterList": REQUESTS["GetPrinterList"]}
    setting.put_printers([this])


def parameters(_):
    for count in 1, 10, 100, 1_000, 10_000:
        names = [f"Name{i}" for i in range(count - 1)]
        members = {**dict.fromkeys(names, 1), "CustomMediaNo": 3, "CommandVersion": 0}
        yield count, {"GetCustomMediaInfo": request("GetCustomMediaInfo", members),
                      "GetStatusReply": request("GetStatusReply", [*names, "StatusCode"])}


def line_length(_):
    """Lines of one long text, with every byte as it stands and with every byte escaped, as hosts
    send them. The first line is as short as a request for a figure of the printer can be."""
    for length in 100, 1_000, 10_000, 100_000, 1_000_000, 10_000_000:
        yield length, {"plain": padded(length), "escaped": re.sub(
            rb"[^\n]", lambda byte: b"%%%02X" % ord(byte[0]), padded(length // 3))}


def padded(length):
    head = {"Command": "GetStatusReply", "PrinterName": NAME, "DeviceName": MODEL,
            "Parameter": ["StatusCode"]}
    text = json.dumps(head, separators=(",", ":"))
    if length > len(text):
        text = json.dumps({**head, "Note": "x" * (length - len(text))}, separators=(",", ":"))
    return text.encode() + b"\n"


# Each with what is on its axis, and the least work and two more whose instructions are counted.
CURVES = {
    "printers": ("printers in the list", printers, (1, 100, 1_000)),
    "parameters": ("parameters in the request", parameters, (1, 100, 1_000)),
    "line": ("bytes in the line", line_length, (100, 100_000, 1_000_000)),
}


def power(points, column=1):
    """By which power a figure grows with the work in the last step."""
    (size, *before), (more, *after) = points[-2:]
    return math.log(after[column - 1] / before[column - 1]) / math.log(more / size)


def power_above_least(points):
    """The same for what the work adds to the least; 0 where it adds next to nothing."""
    (_, least), (size, before), (more, after) = points
    if after < 1.1 * least:
        return 0
    return power([(size, max(1, before - least)), (more, after - least)])


def grow(setting, report, plots):
    """Measures every curve, and draws it into the folder plots unless that is None."""
    for name, (axis, works, counted) in CURVES.items():
        curves, counts = {}, {}
        for size, texts in works(setting):
            for kind, text in texts.items():
                curves.setdefault(kind, []).append((size, *measure(setting, text)))
                if size in counted:
                    counts.setdefault(kind, []).append((size, instructions(setting, text)))
        rows = []
        for points in zip(*curves.values()):
            rows.append([f"{points[0][0]:,}",
                         *(f"{figure:,.0f}" for _, *two in points for figure in two)])
        powers = [power(points, column) for points in curves.values() for column in (1, 2)]
        rows.append(["power", *(f"{of:.2f}" for of in powers)])
        exact = {kind: power_above_least(points) for kind, points in counts.items()}
        head = [axis] + [f"{kind}, {figure}" for kind in curves for figure in ("us", "peak KiB")]
        report.add(f"growth-{name}", f"A request by the number of {axis}", head, rows,
                   "Powers of instructions: " +
                   ", ".join(f"{kind} {of:.2f}" for kind, of in exact.items()) + ".")
        report.add_goal(f"{axis}: power of instructions", max(exact.values()), LINEAR)
        report.add_goal(f"{axis}: power of time and memory", max(powers), LINEAR_IN_CACHES)
        if plots:
            plot(plots / f"{name}.svg", axis, curves)


def plot(path, axis, curves):
    """Time on the left, memory on the right, and a line that is linear."""
    quote = json.dumps
    data = "".join(f"${kind} << EOD\n" + "".join(
        " ".join(map(str, point)) + "\n" for point in points) + "EOD\n"
        for kind, points in curves.items())
    # Where the largest time is, the line that leads there shows what grows faster than it.
    size, time, _ = max((points[-1] for points in curves.values()), key=lambda point: point[1])
    drawn = [f"${kind} using 1:2 axes x1y1 with linespoints title {quote(kind + ': time')}"
             for kind in curves]
    drawn += [f"${kind} using 1:3 axes x1y2 with linespoints dashtype 2 "
              f"title {quote(kind + ': memory')}" for kind in curves]
    drawn.append(f"{time / size} * x axes x1y1 with lines dashtype 3 linecolor 'gray' "
                 "title 'linear'")
    script = f"""
set terminal svg size 800,480 font 'sans-serif,13' background 'white'
set output {quote(str(path))}
set logscale xy
set logscale y2
set key left top
set xlabel {quote(axis)}
set ylabel 'processor time of a request, us'
set y2label 'peak memory, KiB'
set ytics nomirror
set y2tics
set format x '10^{{%L}}'
set format y '10^{{%L}}'
set format y2 '10^{{%L}}'
set yrange [10:*]
{data}plot {', '.join(drawn)}
"""
    subprocess.run(["gnuplot"], input=script, text=True, check=True)
