#!/usr/bin/python3
"""Compound files checked against independent readers, both directions.

1. Files that cfbtool writes are listed and read by olefile and by gsf (libgsf) with the same
   names, sizes and bytes.
2. Every corpus file that olefile can open is read by cfbtool with the same entries and the same
   bytes in every stream (streams whose chains are damaged must be refused); every corpus file
   opens, including those olefile rejects.

usage: cfb_interop.py CFBTOOL CORPUS_DIR
"""
import glob
import os
import subprocess
import sys
import tempfile

import olefile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402


def pattern(size):
    return bytes(((i * 131 + size * 7 + i // 256) & 0xFF) for i in range(size))


def gsf_dump(path, member):
    out = subprocess.run(["gsf", "dump", path, member], check=True, capture_output=True).stdout.decode("latin-1")
    data = bytearray()
    for line in out.splitlines():
        if " | " not in line:
            continue
        for token in line.split(" | ")[1].split():
            if token != "XX":
                data.append(int(token, 16))
    return bytes(data)


def chain_loops(ole, name):
    """True when the stream's sector chain revisits a sector before its size is covered."""
    entry = ole.direntries[ole._find(name)]
    small = entry.size < ole.minisectorcutoff
    if small:
        ole.loadminifat()
    table = ole.minifat if small else ole.fat
    unit = ole.minisectorsize if small else ole.sectorsize
    needed = (entry.size + unit - 1) // unit
    seen, sector = set(), entry.isectStart
    for _ in range(needed):
        if sector in seen:
            return True
        seen.add(sector)
        if sector >= len(table):
            return False
        sector = table[sector]
    return False


def check_written(tool, work):
    specs = {
        "empty": 0, "one": 1, "mini63": 63, "mini64": 64, "mini4095": 4095, "big4096": 4096,
        "big4097": 4097, "several_mb": 5 * 1024 * 1024 + 3,
        "Storage/Inner/deep": 100, "Storage/side": 5000,
        "\u5de5\u4f5c\u8868": 17,            # CJK name
        "emoji\U0001F600": 9,                # a surrogate pair in UTF-16
        "n" * 31: 2,                         # the longest name
    }
    path = os.path.join(work, "written.cfb")
    subprocess.run([tool, "make", path] + ["%s=%d" % (k, v) for k, v in specs.items()], check=True)
    failures = []
    ole = olefile.OleFileIO(path)
    streams = {"/".join(s): ole.get_size("/".join(s)) for s in ole.listdir(streams=True, storages=False)}
    if streams != specs:
        failures.append("olefile lists %r" % sorted(streams.items()))
    for name, size in specs.items():
        if ole.openstream(name).read() != pattern(size):
            failures.append("olefile reads different bytes in %s" % name)
    ole.close()
    listing = subprocess.run(["gsf", "list", path], check=True, capture_output=True).stdout.decode("utf-8")
    gsf_sizes = {}
    for line in listing.splitlines()[1:]:
        kind, rest = line[0], line[1:].strip()
        if kind == "f":
            size, name = rest.split(None, 1)
            gsf_sizes[name] = int(size)
    if gsf_sizes != specs:
        failures.append("gsf lists %r" % sorted(gsf_sizes.items()))
    for name, size in specs.items():
        if size <= 70000 and gsf_dump(path, name) != pattern(size):
            failures.append("gsf dumps different bytes in %s" % name)
    return failures


def check_corpus(tool, corpus):
    failures = []
    files = sorted(glob.glob(os.path.join(corpus, "*.xls")))
    compared = 0
    for path in files:
        result = subprocess.run([tool, "ls", path], capture_output=True)
        if result.returncode != 0:
            failures.append("%s: cfbtool cannot open it (%d)" % (path, result.returncode))
            continue
        try:
            ole = olefile.OleFileIO(path)
        except Exception:
            continue  # the independent reader rejects it; cfbtool only had to survive it
        ours = {}
        for line in result.stdout.decode("utf-8", "surrogateescape").splitlines():
            kind, size, name = line.split("\t", 2)
            if kind == "S":
                ours[name] = int(size)
        theirs = {"/".join(s): ole.get_size("/".join(s)) for s in ole.listdir(streams=True, storages=False)}
        if ours != theirs:
            failures.append("%s: streams differ: ours %r theirs %r" % (path, sorted(ours.items()), sorted(theirs.items())))
            continue
        for name in theirs:
            mine = subprocess.run([tool, "cat", path, name], capture_output=True)
            theirs_data = ole.openstream(name).read()
            if chain_loops(ole, name) or len(theirs_data) != theirs[name]:
                # A chain that loops or is too short for the stream must be refused; olefile reads
                # the same sectors round and round, or hands back fewer bytes than the size.
                if mine.returncode == 0:
                    failures.append("%s: stream %s has a damaged chain but was read" % (path, name))
            elif mine.returncode != 0 or mine.stdout != theirs_data:
                failures.append("%s: stream %s differs" % (path, name))
        compared += 1
        ole.close()
    print("corpus: %d files, %d compared stream by stream" % (len(files), compared))
    if compared == 0:
        failures.append("no corpus file was compared")
    return failures


def main():
    tool, corpus = sys.argv[1], sys.argv[2]
    with tempfile.TemporaryDirectory() as work:
        failures = check_written(tool, work) + check_corpus(tool, corpus)
    return judging.report(failures, "%d passed, %d failed" % (2 - (1 if failures else 0), 1 if failures else 0),
                          most=None)


if __name__ == "__main__":
    sys.exit(main())
