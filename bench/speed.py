"""What single requests cost: times beside those of the floors, memory, instructions, system calls."""

import json
import time

from costs import costs, libraries, system_calls
from report import Samples
from setting import INFO, REQUESTS, object_identifier

BATCH = 10_000


def samples(setting, command):
    """What a timer's lines hold, by the number of the contender: Samples of each figure."""
    columns = {}
    for row in setting.run(command, b"").stdout.decode().splitlines():
        number, *figures = row.split()
        if number != "#":
            columns.setdefault(int(number), []).append(tuple(map(int, figures)))
    return {number: [Samples(column) for column in zip(*rows)]
            for number, rows in sorted(columns.items())}


def starts(setting, rounds, report):
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
    wall, used = ({name: figures[i].median for name, figures in taken.items()} for i in (0, 1))
    report.add(
        "starts", f"A program started for one request, {rounds} rounds",
        ["program", "time, us", "processor time, us", "peak memory, KiB", "page faults",
         "worker's time to its", "worker's processor time to its"],
        [[name, figures[0].text(1000), figures[1].text(digits=0), f"{figures[2].median:,.0f}",
          f"{figures[3].median:.0f}", f"{wall['worker'] / wall[name]:.2f}",
          f"{used['worker'] / used[name]:.2f}"] for name, figures in taken.items()])
    for name, limit in (("snmpget", 0.20), ("stream hello", 1.3)):
        report.add_goal(f"started: time to that of {name}", wall["worker"] / wall[name], limit)
        report.add_goal(f"started: processor time to that of {name}",
                        used["worker"] / used[name], limit)


def kept_running(setting, rounds, report):
    answer = setting.answer(INFO)
    printer_time = setting.printer_time()
    command = [setting.program("time_requests"), str(rounds), setting.file("request", INFO),
               setting.file("answer", answer), setting.file("datagram", setting.datagram(INFO)),
               str(setting.port), "--", *setting.worker, "--", setting.program("pipe_echo"), answer]
    worker, echo, exchange = samples(setting, command).values()
    printer_time = (setting.printer_time() - printer_time) / (2 * 10 * rounds)
    floor = [echo[i].median + exchange[i].median for i in (0, 1)]
    ratio = [worker[i].median / floor[i] for i in (0, 1)]
    report.add(
        "kept", f"A worker kept running, one request at a time, {10 * rounds:,} requests",
        ["", "time, us", "processor time, us"],
        [["worker", *(figure.text(1000) for figure in worker)],
         ["pipe echo", *(figure.text(1000) for figure in echo)],
         ["bare UDP exchange over a new socket", *(figure.text(1000) for figure in exchange)],
         ["sum of these two", *(f"{figure / 1000:.1f}" for figure in floor)],
         ["worker to the sum", *(f"{figure:.2f}" for figure in ratio)],
         ["printer, for one answer", "", f"{printer_time / 1000:.1f}"]])
    report.add_goal("kept running: time to pipe echo and bare exchange", ratio[0], 1.6)
    return exchange[0].median


def batch(setting, rounds, exchange_time, report):
    requests = INFO * BATCH
    if setting.run(setting.worker, requests).stdout != setting.answer(INFO) * BATCH:
        raise RuntimeError("a batch is not answered as its requests are one by one")
    command = [setting.program("time_starts"), str(rounds), setting.file("requests", requests),
               "--", *setting.worker]
    wall, used, *_ = samples(setting, command)[0]
    report.add("batch", f"{BATCH:,} requests on standard input, {rounds} rounds",
               ["time a request, us", "processor time a request, us", "time to the bare exchange"],
               [[wall.text(1000 * BATCH), used.text(BATCH),
                 f"{wall.median / BATCH / exchange_time:.2f}"]])


def memory(setting, report):
    rows = []
    for rounds in 1, 100, 1000:
        command = [setting.program("time_requests"), str(rounds), setting.file("request", INFO),
                   setting.file("answer", setting.answer(INFO)), "--", *setting.worker]
        *_, peak, anonymous = map(int, setting.run(command, b"").stdout.split()[-2:])
        rows.append([f"{10 * rounds:,}", f"{peak:,}", f"{anonymous:,}"])
    report.add("memory", "Memory of a worker kept running",
               ["requests", "peak (VmHWM), KiB", "anonymous (RssAnon), KiB"], rows)
    report.add_goal("peak memory, KiB", peak, 3072, 0)


def counts(setting, report):
    rows = []
    for name, text in REQUESTS.items():
        once, each = (taken.instructions for taken in costs(setting, text))
        calls_once, calls_each = system_calls(setting, text)
        calls = sum(calls_each.values())
        ordered = sorted(calls_each.items(), key=lambda item: (-round(item[1]), item[0]))
        rows.append([f"`{name}`", f"{once:,}", f"{each:,.0f}", calls_once, f"{calls:.1f}",
                     ", ".join(f"{count:.2g} {call}" for call, count in ordered)])
        if text == INFO:
            report.add_goal("instructions a request", each, 25_000, 0)
            report.add_goal("system calls a request", calls, 12, 1)
    report.add("counts", "Instructions and system calls of a worker started for one request, and "
               "of each request to one kept running",
               ["request", "instructions, started", "each", "system calls, started", "each",
                "which"], rows,
               "Files with code in memory after a request: " +
               ", ".join(f"`{file}`" for file in libraries(setting, INFO)) + ".")


def parts(setting, report):
    """The parts of a request, each by itself."""
    done = setting.run([setting.program("bench_parts"), "--benchmark_format=json",
                        "--benchmark_min_time=0.02", "--benchmark_repetitions=5",
                        "--benchmark_report_aggregates_only=true"], b"")
    figures = {}
    for run in json.loads(done.stdout)["benchmarks"]:
        if "error_message" in run:
            raise RuntimeError(f"{run['name']}: {run['error_message']}")
        figures.setdefault(run["run_name"], {})[run["aggregate_name"]] = run
    report.add("parts", "Parts of a request, medians of five",
               ["part", "processor time, us", "deviation"],
               [[f"`{name}`", f"{of['median']['cpu_time'] / 1000:,.2f}",
                 f"{100 * of['cv']['cpu_time']:.0f} %"]
                for name, of in figures.items() if "median" in of])


def million(setting, report):
    """Memory and descriptors of one worker over a million requests."""
    answer = setting.answer(INFO)
    worker = setting.keep_running()
    step, rows, begin = 100, [], time.monotonic()
    for done in range(step, 1_000_000 + step, step):
        setting.ask(worker, INFO * step, answer * step)
        if done in (1_000, 10_000, 100_000, 250_000, 500_000, 1_000_000):
            figures = setting.memory_of(worker.pid)
            rows.append([f"{done:,}", *(f"{figure:,}" for figure in figures),
                         f"{time.monotonic() - begin:,.0f}"])
            if done == 10_000:
                early = figures
    worker.communicate()
    report.add("million", "One worker over a million requests",
               ["requests", "peak (VmHWM), KiB", "anonymous (RssAnon), KiB", "descriptors",
                "seconds"], rows)
    report.add_goal("KiB that the peak grows from 10,000 to a million requests",
                    figures[0] - early[0], 0, 0)
