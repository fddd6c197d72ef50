"""Measures the shipped worker beside what no worker can be faster than, in one run on one
processor: times, memory, counts, and how they grow with the work. Prints tables in Markdown, with
medians and, in parentheses, quartiles, and at the end the goals. A goal that is missed is no failure."""

import argparse
import os
import pathlib
import re
import subprocess
import sys

from growth import grow
from report import Report
from setting import ROOT, Load, Setting
from speed import batch, counts, kept_running, memory, million, parts, starts

DOCUMENT = ROOT / "docs/performance.md"
PLOTS = ROOT / "docs/performance"


def machine(build):
    """What it ran on and how it was built, a line."""
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    path, kind = (re.search(rf"^{name}:\w+=(.*)$", cache, re.M)[1]
                  for name in ("CMAKE_CXX_COMPILER", "CMAKE_BUILD_TYPE"))
    info = pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines()
    model = next((row.partition(": ")[2] for row in info if row.startswith("model name")), "")
    release = dict(row.split("=", 1) for row in
                   pathlib.Path("/etc/os-release").read_text(encoding="utf-8").split("\n") if row)
    compiler = subprocess.run([path, "--version"], capture_output=True, text=True, check=True)
    return ", ".join([model, f"{os.cpu_count()} processors", f"Linux {os.uname().release}",
                      release["PRETTY_NAME"].strip('"'), compiler.stdout.splitlines()[0], kind])


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench", description=__doc__)
    parser.add_argument("--rounds", type=int, default=1000, metavar="N",
                        help="how often programs are started one after the other (1000)")
    parser.add_argument("--million", action="store_true",
                        help="also watch a worker's memory over a million requests")
    parser.add_argument("--document", action="store_true",
                        help="with --million, and put the tables and plots into "
                        "docs/performance.md")
    parser.add_argument("--renew-costs", action="store_true", help=
                        "only write the figures anew that the test of the costs compares with")
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build", metavar="FOLDER",
                        help="where everything was built (build)")
    parser.add_argument("--processor", type=int, default=max(os.sched_getaffinity(0)),
                        metavar="NUMBER", help="what everything runs on (the last)")
    options = parser.parse_args()
    if options.renew_costs:
        return subprocess.call([sys.executable, "-B", ROOT / "tests/cost/check_costs.py",
                                options.build, "--renew"])
    os.sched_setaffinity(0, {options.processor})
    load = Load(options.processor)
    report = Report()
    report.add("machine", "Measured on", ["machine"], [[machine(options.build)]])
    with Setting(options.build) as setting:
        starts(setting, options.rounds, report)
        exchange_time = kept_running(setting, options.rounds, report)
        batch(setting, max(3, options.rounds // 100), exchange_time, report)
        memory(setting, report)
        counts(setting, report)
        parts(setting, report)
        grow(setting, report, PLOTS if options.document else None)
        if options.million or options.document:
            million(setting, report)
    report.add_goal("share of the processor that others took meanwhile, %", load.of_others(), 2, 1)
    report.add_goals()
    if options.document:
        report.write_into(DOCUMENT)
    return 0


sys.exit(main())
