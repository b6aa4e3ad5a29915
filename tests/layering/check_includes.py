#!/usr/bin/env python3
"""Reads every #include of the product and fails on an arrow that docs/architecture.md does not draw.

usage: check_includes.py PROJECT INSTALLED

INSTALLED lists the installed headers, one per line.
"""
import os
import re
import sys

# Folder -> the folders that it stands on. A folder may always include its own files; the longest folder counts.
ARROWS = {
    "src/zutarnex": [],
    "src/runtime/kernels": ["src/zutarnex"],
    "src/runtime": ["src/zutarnex", "src/runtime/kernels"],
    "src/system": ["src/zutarnex", "src/runtime"],
    "src/common": ["src/zutarnex", "src/runtime", "src/system"],
    "src/xml": ["src/zutarnex", "src/runtime", "src/runtime/kernels", "src/system"],
    "src/xml/codec": ["src/zutarnex", "src/runtime", "src/runtime/kernels", "src/system", "src/xml"],
    "src/xml/sax": ["src/zutarnex", "src/runtime", "src/runtime/kernels", "src/system", "src/xml"],
    "src/xml/sax/writer": ["src/zutarnex", "src/runtime", "src/runtime/kernels", "src/system", "src/xml", "src/xml/sax"],
    "src/net": ["src/zutarnex", "src/runtime", "src/runtime/kernels", "src/system", "exceptions of src/xml"],
    "src/dataconv": ["src/zutarnex", "src/runtime", "src/runtime/kernels", "src/system", "exceptions of src/xml"],
    "src/saxengine": ["src/zutarnex", "src/runtime", "src/system", "src/xml", "src/xml/sax"],
    "plugins/saxengine": ["src/zutarnex", "src/runtime", "src/system", "src/xml", "src/xml/sax"],
    "tools/zutarnex": ["src/zutarnex", "src/runtime", "src/system", "src/xml", "src/xml/codec", "src/xml/sax",
                       "src/xml/sax/writer", "src/net", "src/dataconv", "src/saxengine"],
}

# Headers from outside that only some folders may see; every other one in angle brackets is free.
OUTSIDE = [
    (r"expat(_config|_external)?\.h$", ["plugins/saxengine"]),
    (r"CLI/", ["tools/zutarnex"]),
    (r"boost/(shared_ptr|weak_ptr|make_shared|enable_shared_from_this)\.hpp$", ["src", "tools/zutarnex"]),
    (r"boost/", []),
    (r"dlfcn\.h$", ["src/common"]),
    (r"iconv\.h$", ["src/runtime"]),
    (r"([a-z]mmintrin|immintrin|x86intrin|cpuid)\.h$", ["src/runtime/kernels"]),
    (r"(gtest|gmock)/", []),
]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def folder_of(path):
    folder = os.path.dirname(path)
    while folder and folder not in ARROWS:
        folder = os.path.dirname(folder)
    return folder


def product_files(project):
    for top in ("src", "plugins", "tools"):
        for folder, _, names in os.walk(os.path.join(project, top)):
            for name in names:
                if name.endswith((".h", ".cpp", ".c", ".in")):
                    yield os.path.relpath(os.path.join(folder, name), project)


def may_see(folder, included):
    target = folder_of(included)
    if target == folder or target in ARROWS[folder]:
        return True
    is_exception = re.search(r"(Exception|Error)\.h$", included)
    return f"exceptions of {target}" in ARROWS[folder] and is_exception


def project_path(project, folder, name):
    """The path of an included file inside the project, None when it lies outside."""
    for base in ("src", folder):
        path = os.path.join(base, name)
        if os.path.isfile(os.path.join(project, path)):
            return path
    return None


def outside_fault(folder, name):
    for pattern, folders in OUTSIDE:
        if re.match(pattern, name):
            return not any(folder == f or folder.startswith(f + "/") for f in folders)
    return False


def faults_of_include(project, path, name, quoted, installed):
    folder = folder_of(path)
    if not folder:
        yield "lies in a folder that has no arrows"
        return
    included = project_path(project, folder, name)
    if included is None:
        if quoted:
            yield f'includes "{name}", which is not there (paths start at src/)'
        elif outside_fault(folder, name):
            yield f"includes <{name}>, which is not for {folder}"
        return
    if not may_see(folder, included):
        yield f"includes {included}, but {folder} does not stand on {folder_of(included)}"
    if path in installed and included not in installed:
        yield f"is installed, but includes {included}, which is not"


def main(project, installed_list):
    with open(installed_list, encoding="utf-8") as lines:
        installed = {os.path.relpath(line.strip(), project) for line in lines if line.strip()}
    found, count = [], 0
    for path in sorted(product_files(project)):
        with open(os.path.join(project, path), encoding="utf-8") as source:
            includes = INCLUDE.findall(source.read())
        count += len(includes)
        for bracket, name in includes:
            found += [(path, fault) for fault in faults_of_include(project, path, name, bracket == '"', installed)]
        is_public = path.startswith("src/") and path.endswith(".h") and not path.endswith("Internal.h")
        if is_public and path not in installed:
            found.append((path, "is neither installed nor named ...Internal.h"))
        if path in installed and path.endswith("Internal.h"):
            found.append((path, "is internal, but installed"))
    for path, fault in found:
        print(path, fault)
    print(f"{count} includes read, {len(found)} faults")
    return 1 if found or not count or not installed else 0


sys.exit(main(*sys.argv[1:]))
