"""Reads off the shipped ELF files that they are hardened, with binutils."""

import os
import re
import subprocess
import sys

SKIPPED = 77  # what ctest is told
IS_X86 = os.uname().machine == "x86_64"

# A function of each file that indirect calls reach, whether the file calls what _FORTIFY_SOURCE
# checks, and what it may need besides the C library. The first and the fourth are loaded by every
# request.
RUNTIME = {"stdc++", "gcc_s"}
FILES = {
    "PrinterNativeProcess": ("main", True, set()),
    "virtual-printer": ("main", True, {"m"} | RUNTIME),
    "libCoreFoundation.so": ("CFRelease", False, {"plist-2.0", "m"} | RUNTIME),
    "libZIOP.so": ("ZIOPlugInFactory", False, {"CoreFoundation"}),
    "libZIOPDiscovery.so": ("ZIOPDiscover", False, {"CoreFoundation"} | RUNTIME),
    "libZIOPNetwork.so": ("ZIOPSearch", False, {"CoreFoundation", "netsnmp"} | RUNTIME),
    "libZIOPQueues.so": ("ZIOPSearch", False, {"CoreFoundation", "cups"} | RUNTIME),
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def checks_containers(code):
    """Whether functions of ours, and not only those of a runtime linked in, check containers."""
    return any(re.match(r"\w+ <_ZN?K?\d+(Ravik|CoreFoundation|ZIOP|VirtualPrinter)", function) and
               "__glibcxx_assert_fail" in function for function in code.split("\n\n"))


def x86_checks(code, entry):
    """What to look for in code: functions begin with landing pads, large frames are probed."""
    # The C runtime's start-up code has no landing pads, so that no file as a whole is marked as
    # having them; our code has them.
    return {"landing pads": re.search(rf"<{entry}>:\n.*\bendbr64\b", code),
            "stack probes": re.search(r"\bor[lq] +\$0x0,", code)}


def faults(path):
    """What the file lacks, a line each."""
    entry, is_fortified, libraries = FILES[os.path.basename(path)]
    header, segments, dynamic, symbols = (
        output("readelf", "-W", option, path) for option in ("-h", "-l", "-d", "--dyn-syms"))
    code = output("objdump", "-d", "--no-show-raw-insn", path)
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
        "checked containers": checks_containers(code),
        "checked string calls": not is_fortified or re.search(r" __\w+_chk@", symbols),
        "run paths beginning with $ORIGIN": all(
            re.match(r"\$ORIGIN(/|$)", folder)
            for paths in run_paths for folder in paths.split(":")),
        "run path before LD_LIBRARY_PATH": "(RUNPATH)" not in dynamic,
        "no further library": libraries | {"c"} >=
            set(re.findall(r"NEEDED.*\[lib(.*?)\.so", dynamic)),
    }
    if IS_X86:
        checks.update(x86_checks(code, entry))
    return [f"{path}: missing: {name}" for name, holds in checks.items() if not holds]


def offered_names(path):
    symbols = output("nm", "-D", "--defined-only", path)
    # A version is that of a library's variable, which a program has in its own memory.
    return {line.split()[-1] for line in symbols.splitlines() if "@" not in line}


def copy_faults(paths):
    """What would give the process of the worker a second CoreFoundation, or parts of one."""
    file = {os.path.basename(path): path for path in paths}
    worker, library = file["PrinterNativeProcess"], file["libCoreFoundation.so"]
    found = [f"{worker}: offers other names than {library}: {name}"
             for name in sorted(offered_names(worker) ^ offered_names(library))]
    for path in paths:
        if ".plugin/" not in path:
            continue
        # The dynamic linker lists what it would map into the worker, and ends.
        listing = dict(os.environ, LD_TRACE_LOADED_OBJECTS="1", LD_PRELOAD=path)
        mapped = subprocess.run([worker], env=listing, check=True, capture_output=True, text=True)
        if "libZIOP" not in mapped.stdout or "libCoreFoundation" in mapped.stdout:
            found.append(f"{path}: not served by the worker's CoreFoundation:\n{mapped.stdout}")
    return found


def main():
    paths = sys.argv[1:]
    if "--skip" in paths:
        print("skipped: this build does not ship")
        sys.exit(SKIPPED)
    found = [fault for path in paths for fault in faults(path)] + copy_faults(paths)
    print("\n".join(found) or f"{len(paths)} files are hardened")
    sys.exit(1 if found else 0)


main()
