"""Whole processes that read a document of 60 MB and write it again: CPU time and peak memory, in alternating runs."""

import collections
import os
import statistics
import subprocess
import sys

from results import Figure

PROGRAMS = [
    ("zutarnex", ["{bin}/zutarnex", "format"]),
    ("zutarnex-plain", ["{bin}/zutarnex", "format", "--plain"]),
    ("Expat (empty)", ["{bin}/whole_expatw_empty"]),
    ("Expat 8-bit (empty)", ["{bin}/whole_expat_empty"]),
    ("Xerces-C", ["{bin}/whole_xerces_copy"]),
    ("Qt", ["{bin}/whole_qt_copy"]),
    ("POCO", ["{bin}/whole_poco_copy"]),
    ("libxml2", ["{bin}/whole_libxml2_copy"]),
    ("xmllint", ["/usr/bin/xmllint", "--huge"]),
]


def run(launcher, command):
    """CPU seconds and peak megabytes of a process whose output is dropped."""
    usage = subprocess.run([launcher] + command, stdout=subprocess.PIPE, text=True)
    if usage.returncode != 0:
        sys.exit("failed: " + " ".join(command))
    seconds, kilobytes = usage.stdout.split()
    return float(seconds), int(kilobytes) / 1024


def measure(binaries, documents, rounds, names=None):
    """{workload: {competitor: Figure}} of all competitors that are there, or of those that `names` holds."""
    programs = [(name, [part.format(bin=binaries) for part in command]) for name, command in PROGRAMS]
    programs = [(name, command) for name, command in programs
                if os.path.exists(command[0]) and (names is None or name in names)]
    figures = collections.defaultdict(dict)
    for document, path in documents.items():
        with open(path, "rb") as file:  # into the page cache
            while file.read(1 << 20):
                pass
        runs = collections.defaultdict(list)
        for _ in range(rounds):
            for name, command in programs:
                runs[name].append(run(os.path.join(binaries, "whole_launch"), command + [path]))
        for name, usages in runs.items():
            time = statistics.median(seconds for seconds, _ in usages)
            memory = max(megabytes for _, megabytes in usages)
            figures["whole." + document][name] = Figure(time, time, None, memory)
    return figures
