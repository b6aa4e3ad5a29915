#!/usr/bin/env python3
"""Checks what a shared library asks of the dynamic linker.

usage: dynamic_section.py LIBRARY --soname NAME --runpath PATH --may-need NAME...

It may need only the libraries named (up to their version), must call itself NAME, and looks for others in PATH only.
"""
import argparse
import re
import subprocess
import sys


def entries(library):
    text = subprocess.run(["readelf", "-d", "--wide", library], check=True, capture_output=True, text=True).stdout
    return re.findall(r"\((NEEDED|SONAME|RUNPATH|RPATH)\).*\[(.*)\]", text)


def faults(options):
    found = entries(options.library)
    for kind, value in found:
        if kind == "NEEDED" and not any(value.split(".so")[0] == name for name in options.may_need):
            yield f"needs {value}"
    if options.soname and ("SONAME", options.soname) not in found:
        yield f"is not called {options.soname}"
    paths = [entry for entry in found if entry[0] in ("RUNPATH", "RPATH")]
    if paths != [("RUNPATH", options.runpath)]:
        yield f"looks for libraries in {paths or 'no path of its own'}, not in RUNPATH {options.runpath}"


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("library")
    parser.add_argument("--soname")
    parser.add_argument("--runpath", required=True)
    parser.add_argument("--may-need", nargs="+", required=True)
    options = parser.parse_args()
    found = list(faults(options))
    for fault in found:
        print(f"{options.library} {fault}")
    return 1 if found else 0


sys.exit(main())
