"""Measures the shipped worker beside what no worker can be faster than, in one run on one
processor, and prints tables in Markdown: medians with their quartiles, and the goals."""

import argparse
import os
import statistics
import subprocess
import sys

from costs import costs, libraries, system_calls
from setting import INFO, REQUESTS, ROOT, Setting, object_identifier

BATCH = 10_000


class Samples:
    """Figures of one contender, in the order in which they were taken."""

    def __init__(self, values):
        self.low, self.median, self.high = statistics.quantiles(values, n=4)

    def text(self, unit=1, digits=1):
        low, median, high = (f"{value / unit:,.{digits}f}" for value in
                             (self.low, self.median, self.high))
        return f"{median} ({low} to {high})"


class Goals:
    def __init__(self):
        self.rows = []

    def add(self, what, figure, limit, digits=2):
        self.rows.append([what, f"{figure:,.{digits}f}", f"{limit:,}",
                          "met" if figure <= limit else "not met"])


def print_table(title, head, rows):
    print(f"\n### {title}\n")
    print("| " + " | ".join(head) + " |")
    print("|" + "---|" * len(head))
    for row in rows:
        print("| " + " | ".join(map(str, row)) + " |")
    sys.stdout.flush()


def samples(setting, command):
    """Samples by the number of the contender and the place of the figure in its lines."""
    columns = {}
    for row in setting.run(command, b"").stdout.decode().splitlines():
        number, *figures = row.split()
        if number != "#":
            columns.setdefault(int(number), []).append(tuple(map(int, figures)))
    return {number: [Samples(column) for column in zip(*rows)] for number, rows in columns.items()}


def starts(setting, rounds, goals):
    identifier = object_identifier(setting.datagram(INFO))
    get = ["-v1", "-c", "orchid", f"127.0.0.1:{setting.port}", identifier]
    contenders = {
        "static hello": [setting.program("hello_static")],
        "stream hello": [setting.program("hello_stream")],
        "worker": setting.worker,
        "snmpget": ["/usr/bin/snmpget", *get],
        "snmpget -m ''": ["/usr/bin/snmpget", "-m", "", *get],
    }
    command = [setting.program("time_starts"), str(rounds), setting.file("request", INFO)]
    for program in contenders.values():
        command += ["--", *program]
    taken = dict(zip(contenders, samples(setting, command).values()))
    time, processor = ({name: figures[i].median for name, figures in taken.items()}
                       for i in (0, 1))
    print_table(
        f"A worker started for one GetCustomMediaInfo ({rounds} rounds)",
        ["program", "time, us", "processor time, us", "peak memory, KiB", "page faults",
         "worker's time to its", "worker's processor time to its"],
        [[name, wall.text(1000), used.text(digits=0), f"{peak.median:,.0f}",
          f"{faults.median:.0f}", f"{time['worker'] / time[name]:.2f}",
          f"{processor['worker'] / processor[name]:.2f}"]
         for name, (wall, used, peak, faults) in taken.items()])
    for name, limit in (("snmpget", 0.20), ("stream hello", 1.3)):
        goals.add(f"one-shot: time to that of {name}", time["worker"] / time[name], limit)
        goals.add(f"one-shot: processor time to that of {name}",
                  processor["worker"] / processor[name], limit)


def kept_running(setting, rounds, goals):
    answer = setting.answer(INFO)
    command = [setting.program("time_requests"), str(rounds), setting.file("request", INFO),
               setting.file("answer", answer), setting.file("datagram", setting.datagram(INFO)),
               str(setting.port), "--", *setting.worker, "--", setting.program("pipe_echo"), answer]
    worker, echo, exchange = samples(setting, command).values()
    floor = [echo[i].median + exchange[i].median for i in (0, 1)]
    ratio = [worker[i].median / floor[i] for i in (0, 1)]
    print_table(
        f"A worker kept running, one GetCustomMediaInfo at a time ({rounds} rounds of 10)",
        ["", "time, us", "processor time, us"],
        [["worker", *(figure.text(1000) for figure in worker)],
         ["pipe echo", *(figure.text(1000) for figure in echo)],
         ["bare UDP exchange, socket of its own", *(figure.text(1000) for figure in exchange)],
         ["sum of the two", *(f"{figure / 1000:.1f}" for figure in floor)],
         ["worker to the sum", *(f"{figure:.2f}" for figure in ratio)]])
    goals.add("kept running: time to that of pipe echo and bare exchange", ratio[0], 1.6)


def batch(setting, rounds):
    command = [setting.program("time_starts"), str(rounds),
               setting.file("requests", INFO * BATCH), "--", *setting.worker]
    if setting.run(setting.worker, INFO * BATCH).stdout != setting.answer(INFO) * BATCH:
        raise RuntimeError("a batch is not answered as its requests are one by one")
    (wall, used, _, _), = samples(setting, command).values()
    print_table(f"{BATCH:,} requests on standard input ({rounds} rounds)",
                ["time a request, us", "processor time a request, us"],
                [[wall.text(1000 * BATCH), used.text(BATCH)]])


def memory(setting, goals):
    """Of a worker that has answered some requests, as /proc gives it."""
    rows = []
    for rounds in 1, 100, 1000:
        output = setting.run(
            [setting.program("time_requests"), str(rounds), setting.file("request", INFO),
             setting.file("answer", setting.answer(INFO)), "--", *setting.worker], b"").stdout
        *_, peak, anonymous = output.decode().split()
        rows.append([f"{10 * rounds:,}", f"{int(peak):,}", f"{int(anonymous):,}"])
    print_table("Memory of a worker kept running",
                ["requests", "peak (VmHWM), KiB", "anonymous (RssAnon), KiB"], rows)
    goals.add("peak memory, KiB", int(peak), 3072, 0)


def counts(setting, goals):
    rows = []
    for name, text in REQUESTS.items():
        once, each = (taken.instructions for taken in costs(setting, text, {}))
        calls_once, calls_each = system_calls(setting, text)
        calls = sum(calls_each.values())
        rows.append([name, f"{once:,}", f"{each:,.0f}", calls_once, f"{calls:.1f}",
                     ", ".join(f"{count:g} {call}" for call, count in
                               sorted(calls_each.items(), key=lambda item: -item[1]))])
        if text == INFO:
            goals.add("instructions a request", each, 25_000, 0)
            goals.add("system calls a request", calls, 12, 1)
    print_table("Instructions and system calls",
                ["request", "instructions, started for it", "kept running, each",
                 "system calls, started for it", "kept running, each", "these are"], rows)
    print("\nFiles with code in memory:", ", ".join(libraries(setting, INFO)))


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__)
    parser.add_argument("--rounds", type=int, default=500, metavar="N",
                        help="how often everything is measured that depends on the clock (500)")
    parser.add_argument("--build", default=ROOT / "build", metavar="FOLDER",
                        help="where everything was built (build)")
    parser.add_argument("--processor", type=int, default=max(os.sched_getaffinity(0)),
                        metavar="NUMBER", help="what everything runs on (the last)")
    parser.add_argument("--renew-costs", action="store_true", help=
                        "only write the figures anew that the test of the costs compares with")
    options = parser.parse_args()
    if options.renew_costs:
        sys.exit(subprocess.call([sys.executable, "-B", ROOT / "tests/cost/check_costs.py",
                                  options.build, "--renew"]))
    os.sched_setaffinity(0, {options.processor})
    goals = Goals()
    with Setting(options.build) as setting:
        starts(setting, options.rounds, goals)
        kept_running(setting, options.rounds, goals)
        batch(setting, max(3, options.rounds // 50))
        memory(setting, goals)
        counts(setting, goals)
    print_table("Goals", ["figure", "measured", "goal", ""], goals.rows)


main()
