#!/usr/bin/env python3
"""Holds the names that a shared library exports against a checked-in list.

usage: exported_symbols.py compare LIST LIBRARY    prints what differs
       exported_symbols.py update LIST LIBRARY...  writes the list from builds of all compilers and build types

Names are demangled, so that the list is the same for GCC and Clang, which differ in the kind of some symbols and in how
many copies of a constructor they emit. A line that begins with "? " may be missing: a class whose destructor is pure has
its virtual table and type information in every object file that needs them, and it is the compiler's affair whether
any of the library's does.
"""
import difflib
import subprocess
import sys

MAY_BE_MISSING = "? "


def is_of_standard_library(name):
    """An instance that the standard library made for our types: its return type is in front of its name. Clang leaves
    such functions in debug builds."""
    depth, bare = 0, ""
    for c in name:
        depth += (c == "<") - (c == ">")
        bare += c if depth == 0 else ""
    return " std::" in bare.split("(")[0]


def exported(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", "--demangle", library],
                           check=True, capture_output=True, text=True).stdout.splitlines()
    names = {line.split(None, 2)[2].split("@@")[0] for line in lines}
    return {name for name in names if not is_of_standard_library(name)}


def compare(list_file, library):
    with open(list_file, encoding="utf-8") as checked_in:
        lines = checked_in.read().splitlines()
    now = exported(library)
    optional = {line[len(MAY_BE_MISSING):] for line in lines if line.startswith(MAY_BE_MISSING)}
    expected = [line for line in lines if not line.startswith(MAY_BE_MISSING)]
    difference = list(difflib.unified_diff(sorted(expected), sorted(now - optional), "checked in: " + list_file,
                                           "exported by: " + library, n=0, lineterm=""))
    if difference:
        print(*difference, "If the change is meant: scripts/update-exported-symbols", sep="\n")
    return 1 if difference else 0


def update(list_file, *libraries):
    builds = [exported(library) for library in libraries]
    in_all, in_any = set.intersection(*builds), set.union(*builds)
    for name in in_any - in_all:
        if not name.startswith(("vtable for ", "typeinfo for ", "typeinfo name for ", "construction vtable for ")):
            print("is exported by some builds only:", name)
            return 1
    lines = sorted(in_all) + [MAY_BE_MISSING + name for name in sorted(in_any - in_all)]
    with open(list_file, "w", encoding="utf-8") as out:
        out.write("\n".join(lines) + "\n")
    return 0


sys.exit({"compare": compare, "update": update}[sys.argv[1]](*sys.argv[2:]))
