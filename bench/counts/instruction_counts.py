#!/usr/bin/env python3
"""Counts the instructions of bench/counts/InstructionScenarios.cpp and compares them with a checked-in list.

usage: instruction_counts.py check|update PROGRAM LIST COMPILER-VERSION

check fails when a scenario takes more than 3 % more instructions than the list says. The counts hold for one
compiler, one C library and one level of kernels only (the list's first lines name them); elsewhere nothing is compared,
the reason is printed and the exit status is 77.
"""

import os
import re
import shutil
import subprocess
import sys

LEVEL = "avx2"  # the highest that valgrind knows
GROWTH = 1.03
SKIPPED = 77


def toolchain(compiler):
    system = dict(re.findall(r'^(\w+)="?([^"\n]*)', open("/etc/os-release").read(), re.M))
    return "GCC %s, %s %s, kernels at %s" % (compiler, system.get("ID"), system.get("VERSION_ID"), LEVEL)


def missing():
    if not shutil.which("valgrind"):
        return "valgrind is not installed"
    if LEVEL not in open("/proc/cpuinfo").read():
        return "the processor has no " + LEVEL
    return None


def count(program, scenario):
    # An environment of a fixed size: the stack's alignment follows it.
    environment = {"PATH": os.environ["PATH"], "LC_ALL": "C", "ZUTARNEX_CPU_LEVEL": LEVEL}
    run = subprocess.run(
        ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", "--collect-atstart=no",
         "--toggle-collect=countedRun", program, scenario],
        env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    collected = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or not collected or int(collected.group(1)) == 0:
        sys.exit("%s %s could not be counted:\n%s" % (program, scenario, run.stderr))
    return int(collected.group(1))


def counts_of(program):
    scenarios = subprocess.run([program], stdout=subprocess.PIPE, text=True, check=True).stdout.split()
    return {scenario: count(program, scenario) for scenario in scenarios}


def read(path):
    lines = open(path).read().splitlines()
    rows = [line.split("\t") for line in lines if line and not line.startswith("#")]
    return lines[0].lstrip("# "), {scenario: int(number) for scenario, number in rows}


def update(program, path, compiler):
    with open(path, "w") as out:
        out.write("# %s\n# Written by scripts/count-instructions.\n" % toolchain(compiler))
        for scenario, number in counts_of(program).items():
            out.write("%s\t%d\n" % (scenario, number))


def check(program, path, compiler):
    made_with, listed = read(path)
    if made_with != toolchain(compiler):
        print("left out: instructions are counted for %s, this is %s" % (made_with, toolchain(compiler)))
        return SKIPPED
    counted = counts_of(program)
    if set(counted) != set(listed):
        print("the list has other scenarios: run scripts/count-instructions")
        return 1
    for scenario, number in counted.items():
        growth = 100.0 * number / listed[scenario] - 100
        print("%-12s %12d, listed %12d: %+.2f %%" % (scenario, number, listed[scenario], growth))
    grown = [scenario for scenario in counted if counted[scenario] > listed[scenario] * GROWTH]
    if grown:
        print("grown by more than %d %%: %s. If that is meant, run scripts/count-instructions and say why."
              % (round(100 * GROWTH - 100), ", ".join(grown)))
    return 1 if grown else 0


def main(command, program, path, compiler):
    reason = missing()
    if reason:
        print("left out: instruction counts, because " + reason)
        return SKIPPED
    return (check if command == "check" else update)(program, path, compiler)


if __name__ == "__main__":
    if len(sys.argv) != 5 or sys.argv[1] not in ("check", "update"):
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
