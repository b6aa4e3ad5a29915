#!/usr/bin/env python3
"""Checks that object files reach the host only through the host's services.

usage: host_calls.py FILE

FILE lists the object files, one per line. Memory, code pages, output and the end of the process are the business of
runtime/, whose objects alone may call the C library for them; its kernels call nothing but each other and what copies
and compares memory. The choice of the kernels' level reads the environment.
"""
import re
import subprocess
import sys

HOST_SERVICES = re.compile(
    r"(__)?(malloc|calloc|realloc|reallocarray|free|aligned_alloc|posix_memalign|memalign|valloc|strdup|strndup|"
    r"v?asprintf|iconv|iconv_open|iconv_close|mbrtoc16|c16rtomb|mbstowcs|wcstombs|mbrtowc|wcrtomb|"
    r"v?f?printf|v?dprintf|puts|fputs|putchar|fputc|putc|fwrite|perror|"
    r"abort|exit|_exit|_Exit|quick_exit|raise|kill)(_chk|64)?$")
KERNELS_MAY_CALL = re.compile(r"(mem(cpy|move|set|cmp|chr)|_ZN7Quillon7Runtime7Kernels.*|"
                              r"_GLOBAL_OFFSET_TABLE_|__x86\.get_pc_thunk\..*|__(gcov|llvm|cpu)_.*|"
                              r"__stack_chk_fail.*|__gxx_personality_v0)$")
CPU_LEVEL_MAY_CALL = re.compile(r"(secure_)?getenv$")


def undefined(object_file):
    lines = subprocess.run(["nm", "--undefined-only", "--format=posix", object_file],
                           check=True, capture_output=True, text=True).stdout.splitlines()
    return [line.split()[0].split("@")[0] for line in lines]


def kernel_may_call(object_file, name):
    return KERNELS_MAY_CALL.match(name) or ("/kernels/CpuLevel." in object_file and CPU_LEVEL_MAY_CALL.match(name))


def faults(object_file):
    if "/runtime/kernels/" in object_file:
        return [name for name in undefined(object_file) if not kernel_may_call(object_file, name)]
    if "/runtime/" in object_file:
        return []
    return [name for name in undefined(object_file) if HOST_SERVICES.match(name)]


def main(list_file):
    with open(list_file, encoding="utf-8") as lines:
        objects = [line.strip() for line in lines if line.strip()]
    if not any("/runtime/" in name for name in objects):
        print("no object of runtime/ in the list: the folders have moved, or the list is empty")
        return 1
    found = [(name, symbol) for name in objects for symbol in faults(name)]
    for name, symbol in found:
        print(f"{name} calls {symbol}")
    return 1 if found else 0


sys.exit(main(sys.argv[1]))
