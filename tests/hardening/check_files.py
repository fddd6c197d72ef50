"""Reads off the shipped ELF files that they are hardened, with binutils."""

import os
import re
import subprocess
import sys

SKIPPED = 77  # what ctest is told
IS_X86 = os.uname().machine == "x86_64"

# A function of each file that indirect calls reach, and whether the file calls what
# _FORTIFY_SOURCE checks.
FILES = {
    "PrinterNativeProcess": ("main", True),
    "virtual-printer": ("main", True),
    "libCoreFoundation.so": ("CFRelease", False),
    "libZIOP.so": ("ZIOPlugInFactory", False),
    "libZIOPDiscovery.so": ("ZIOPDiscover", False),
    "libZIOPNetwork.so": ("ZIOPSearch", False),
    "libZIOPQueues.so": ("ZIOPSearch", False),
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def x86_checks(path, entry):
    """What to look for in code: functions begin with landing pads, large frames are probed."""
    code = output("objdump", "-d", "--no-show-raw-insn", path)
    # The C runtime's start-up code has no landing pads, so that no file as a whole is marked as
    # having them; our code has them.
    return {"landing pads": re.search(rf"<{entry}>:\n.*\bendbr64\b", code),
            "stack probes": re.search(r"\bor[lq] +\$0x0,", code)}


def faults(path):
    """What the file lacks, a line each."""
    entry, is_fortified = FILES[os.path.basename(path)]
    header, segments, dynamic, symbols = (
        output("readelf", "-W", option, path) for option in ("-h", "-l", "-d", "--dyn-syms"))
    is_program = entry == "main"
    run_paths = re.findall(r"Library r(?:un)?path: \[(.*)\]", dynamic)
    checks = {
        "position-independent": re.search(r"Type:\s+DYN", header) and
            (not is_program or re.search(r"FLAGS_1.*\bPIE\b", dynamic)),
        "tables read-only after start (RELRO)": "GNU_RELRO" in segments,
        "bound at start (BIND_NOW)": "BIND_NOW" in dynamic,
        "stack not executable": re.search(r"GNU_STACK.* RW ", segments),
        "no segment writable and executable": not re.search(r"LOAD.* RWE ", segments),
        "no relocations in code": "TEXTREL" not in dynamic,
        "stack protector": "__stack_chk_fail" in symbols,
        "checked containers": "__glibcxx_assert_fail" in symbols,
        "checked string calls": not is_fortified or re.search(r" __\w+_chk@", symbols),
        "run paths beginning with $ORIGIN": all(
            re.match(r"\$ORIGIN(/|$)", folder)
            for paths in run_paths for folder in paths.split(":")),
        "run path before LD_LIBRARY_PATH": "(RUNPATH)" not in dynamic,
        "libraries of searches left to their modules": entry == "ZIOPSearch" or
            not re.search(r"NEEDED.*\[lib(netsnmp|cups)\b", dynamic),
    }
    if IS_X86:
        checks.update(x86_checks(path, entry))
    return [f"{path}: missing: {name}" for name, holds in checks.items() if not holds]


def main():
    paths = sys.argv[1:]
    if "--skip" in paths:
        print("skipped: this build does not ship")
        sys.exit(SKIPPED)
    found = [fault for path in paths for fault in faults(path)]
    print("\n".join(found) or f"{len(paths)} files are hardened")
    sys.exit(1 if found else 0)


main()
