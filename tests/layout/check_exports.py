#!/usr/bin/env python3
"""Checks that every g_ function and global the public headers declare is exported by the built
library: check_exports.py SOURCE_DIR LIBRARY [DUMPER DEMANGLER]. The exported names come from
`nm -D` of a shared object, or from the export table that DUMPER (`objdump -p`) prints for a DLL;
they are demangled with DEMANGLER (c++filt)."""
import re
import subprocess
import sys
from pathlib import Path

HEADER_DIRS = ["order_data", "platform", "host", "format", "rows", "checks", "smart_orders", "settings", "export", "xls"]


def declared_names(source):
    names = set()
    for folder in HEADER_DIRS:
        for header in (Path(source) / folder).glob("*.h"):
            text = header.read_text(errors="replace")
            for match in re.finditer(r"ORDERVIEW_API\b[^;{]*?\b(g_\w+)\s*[(;\[]", text):
                names.add(match.group(1))
    return names


def exported_names(library, dumper, demangler):
    if library.endswith(".dll"):
        table = subprocess.run([dumper, "-p", library], capture_output=True, text=True, check=True).stdout
        start = table.find("[Ordinal/Name Pointer] Table")
        if start < 0:
            sys.exit("no export table in " + library)
        mangled = re.findall(r"\[\s*\d+\]\s+(\S+)", table[start:])
    else:
        listing = subprocess.run(["nm", "-D", "--defined-only", library], capture_output=True, text=True,
                                 check=True).stdout
        mangled = [line.split()[-1] for line in listing.splitlines() if line.strip()]
    demangled = subprocess.run([demangler], input="\n".join(mangled), capture_output=True, text=True,
                               check=True).stdout
    return set(re.findall(r"\b(g_\w+)\b", demangled))


def main():
    source, library = sys.argv[1], sys.argv[2]
    dumper = sys.argv[3] if len(sys.argv) > 3 else "objdump"
    demangler = sys.argv[4] if len(sys.argv) > 4 else "c++filt"
    declared = declared_names(source)
    exported = exported_names(library, dumper, demangler)
    missing = sorted(declared - exported)
    if len(declared) < 100:
        sys.exit("only %d g_ names found in the headers: the header scan is broken" % len(declared))
    if missing:
        print("declared but not exported:", " ".join(missing))
        return 1
    print("exports: all %d g_ names of the headers are exported" % len(declared))
    return 0


if __name__ == "__main__":
    sys.exit(main())
