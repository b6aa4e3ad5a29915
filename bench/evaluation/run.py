#!/usr/bin/env python3
"""Runs the benchmarks of a build and writes RESULTS.md and the chart. scripts/bench calls it.

usage: run.py [--quick] BUILD OUTPUT-FOLDER [BUILD-I386]
"""

import datetime
import os
import re
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.append(os.path.join(HERE, "..", "whole"))

import documents
import report
import results
import whole_process

FAMILIES = ["writer", "codec", "uri", "pool", "transcoding", "conversion"]


class Effort:
    def __init__(self, quick):
        self.repetitions, self.min_time = (3, 0.02) if quick else (11, 0.08)
        self.rounds = 1 if quick else 5
        self.growth_repetitions = 1 if quick else 3
        self.growth_limit = 0.1 if quick else 0.5


def run_benchmark(build, name, arguments, environment=None):
    print("bench_" + name, flush=True)
    out = os.path.join(build, "bench", name + ".json")
    subprocess.run([os.path.join(build, "bin", "bench_" + name), "--benchmark_out=" + out,
                    "--benchmark_out_format=json"] + arguments,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True,
                   env={**os.environ, "LC_ALL": "C", **(environment or {})})
    return out


def run_families(build, rows, effort, name_filter=None):
    measures = {row.workload: row.measure for row in rows}
    arguments = ["--benchmark_repetitions=%d" % effort.repetitions, "--benchmark_min_time=%g" % effort.min_time,
                 "--benchmark_enable_random_interleaving=true"]
    if name_filter:
        arguments.append("--benchmark_filter=" + name_filter)
    figures = {}
    for family in FAMILIES:
        figures.update(results.read_figures(run_benchmark(build, family, arguments), measures))
    return figures


def run_growth(build, effort):
    arguments = ["--benchmark_repetitions=%d" % effort.growth_repetitions, "--benchmark_min_time=0.01"]
    return results.read_growth(run_benchmark(build, "growth", arguments,
                                             {"ZUTARNEX_BENCH_GROWTH_LIMIT": str(effort.growth_limit)}))


def cache_entry(build, name):
    cache = open(os.path.join(build, "CMakeCache.txt")).read()
    return re.search("^%s:[A-Z]*=(.*)$" % name, cache, re.M).group(1)


def facts_of(build, peers, effort):
    cpu = re.search(r"model name\s*: (.*)", open("/proc/cpuinfo").read()).group(1)
    system = re.search('PRETTY_NAME="(.*)"', open("/etc/os-release").read()).group(1)
    compiler = cache_entry(build, "CMAKE_CXX_COMPILER")
    version = subprocess.run([compiler, "--version"], stdout=subprocess.PIPE, text=True).stdout.splitlines()[0]
    return [
        ("Machine", "%s, %d cores, %s, Linux %s" % (cpu, os.cpu_count(), system, os.uname().release)),
        ("Compiler", "%s, %s" % (version, cache_entry(build, "CMAKE_CXX_FLAGS_RELEASE"))),
        ("Peers", ", ".join("%s %s" % (name, version) for name, version in peers if version)
         + ", and the C library, glibc " + os.confstr("CS_GNU_LIBC_VERSION").split()[1]),
        ("Runs", "%d of each benchmark, %d of each process, %d of each size of growing input"
         % (effort.repetitions, effort.rounds, effort.growth_repetitions)),
        ("Date", datetime.date.today().isoformat()),
    ]


def draw(build, rows, figures, out):
    lines = "".join(line + "\n" for line in report.chart_lines(rows, figures))
    with open(os.path.join(out, "results.svg"), "wb") as svg:
        subprocess.run([os.path.join(build, "bin", "bench_chart")], input=lines.encode(), stdout=svg, check=True)


def main(quick, build, out, build32=None):
    effort = Effort(quick)
    rows = results.read_rows(os.path.join(HERE, "goals.tsv"))
    peers = results.read_peers(os.path.join(build, "bench", "peers.txt"))
    paths, left_out = documents.make_all(os.path.join(build, "documents"))
    left_out = [name + " (not found)" for name, version in peers if not version] + left_out

    figures = run_families(build, rows, effort)
    print("whole processes", flush=True)
    figures.update(whole_process.measure(os.path.join(build, "bin"), paths, effort.rounds))
    growths = run_growth(build, effort)
    figures32 = {}
    if build32:
        figures32 = run_families(build32, rows, effort, "/zutarnex$")
        figures32.update(whole_process.measure(os.path.join(build32, "bin"), paths, effort.rounds,
                                               ["zutarnex", "Expat (empty)"]))
    else:
        left_out.append("the i386 build")

    text = report.markdown(rows, figures, figures32, growths, facts_of(build, peers, effort), left_out)
    with open(os.path.join(out, "RESULTS.md"), "w") as results_file:
        results_file.write(text)
    draw(build, rows, figures, out)
    print(text)


if __name__ == "__main__":
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    if len(arguments) not in (2, 3):
        sys.exit(__doc__)
    main("--quick" in sys.argv, *arguments)
