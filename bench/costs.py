"""Costs of requests that do not depend on the clock: instructions, system calls, libraries."""

import collections
import os
import re
import subprocess
import typing

FEW, MANY = 100, 300  # what a request costs is the difference of these two runs

# The C library has variants of its functions for the processors that they are fast on, among them
# "rep stosb", which is counted once for each byte. With this it takes those that every processor
# has, and every machine counts the same.
ANY_PROCESSOR = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX,-AVX2,-AVX512F,-AVX512VL,-AVX512BW,-BMI2,"
                                   "-ERMS,-FSRM,-SSSE3,-SSE4_1,-SSE4_2,-AVX_Fast_Unaligned_Load"}


class Costs(typing.NamedTuple):
    instructions: float
    system_calls: float


def costs_of_run(setting, text):
    """What the worker takes for these requests from its start to its end, and what it answers."""
    done = subprocess.run(
        ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", "--trace-syscalls=yes",
         *setting.worker],
        input=text, capture_output=True, check=True, env={**setting.environment, **ANY_PROCESSOR})
    # A call that blocks has a second line when it returns.
    calls = re.findall(rb"SYSCALL\[\d+,\d+\]\( *\d+\) (?!\.\.\. )", done.stderr)
    collected = int(re.search(rb"Collected : (\d+)", done.stderr)[1])
    return Costs(collected, len(calls)), done.stdout


def costs(setting, text):
    """Costs of a worker that is started for one request, and of each further request."""
    answer = setting.answer(text)
    taken = {}
    for number in 1, FEW, MANY:
        taken[number], answers = costs_of_run(setting, text * number)
        if answers != answer * number:
            raise RuntimeError(f"{text}: other answers than {answer}")
    return taken[1], Costs(*((many - few) / (MANY - FEW)
                             for many, few in zip(taken[MANY], taken[FEW])))


def system_calls_of_run(setting, text, number):
    """By name, for requests that are sent one at a time."""
    answer = setting.answer(text)
    output = setting.folder / "calls"
    worker = setting.keep_running("strace", "-f", "-qq", "-c", "-U", "name,calls", "-o",
                                  str(output))
    for _ in range(number):
        setting.ask(worker, text, answer)
    worker.communicate()
    calls = collections.Counter()
    for row in output.read_text().splitlines():
        name, _, count = row.partition(" ")
        if count.strip().isdigit() and name != "total":
            calls[name] = int(count)
    return calls


def system_calls(setting, text):
    """System calls of a worker that is started for one request, and those of each further request,
    by name."""
    once, few, many = (system_calls_of_run(setting, text, number) for number in (1, FEW, MANY))
    each = {name: (many[name] - few[name]) / (MANY - FEW) for name in many}
    return sum(once.values()), {name: count for name, count in each.items() if count}


def libraries(setting, text):
    """The files with code that the worker has in its memory after a request, without the versions
    in their names."""
    worker = setting.keep_running()
    setting.ask(worker, text, setting.answer(text))
    with open(f"/proc/{worker.pid}/maps", encoding="utf-8") as maps:
        paths = {row.split()[5] for row in maps if " r-xp " in row and "/" in row}
    worker.communicate()
    return sorted(re.sub(r"(\.so)\b.*", r"\1", os.path.basename(path)) for path in paths)
