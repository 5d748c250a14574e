#!/usr/bin/python3
"""Writes and loads the spreadsheet workload (65,536 rows x 10 columns: an integer, six doubles,
three strings from 5,000 texts) with this library and with the independent programs that do the
same job here, and prints one table of whole-process times and peak memory, with each peer's
time as a multiple of this library's.

usage: xls_peers.py XLS_WORKLOAD [RUNS]   (run from a build: see README)
Peers: xlwt and xlrd (/usr/bin/python3), SheetJS `xlsx` (installed here with npm on first use),
Apache POI (Debian's libapache-poi-java). Each load reads the file this library wrote.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
PEERS = os.path.join(HERE, "peers")
POI = ":".join("/usr/share/java/%s.jar" % j for j in ("poi", "commons-collections4", "commons-math3", "commons-codec"))


def measure(command, runs):
    """Best wall time over the runs, and the peak resident memory (MiB) of the process."""
    best, peak = None, 0
    for _ in range(runs):
        start = time.perf_counter()
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        _, status, usage = os.wait4(process.pid, 0)
        elapsed = time.perf_counter() - start
        if status != 0:
            raise RuntimeError("%s failed: %s" % (command, process.stderr.read().decode(errors="replace")))
        best = elapsed if best is None else min(best, elapsed)
        peak = max(peak, usage.ru_maxrss / 1024.0)
    return best, peak


def main():
    ours, runs = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 3
    work = tempfile.mkdtemp()
    try:
        if not os.path.exists(os.path.join(PEERS, "node_modules", "xlsx")):
            subprocess.run(["npm", "install", "--no-save", "--silent", "xlsx"], cwd=PEERS, check=True)
        classes = os.path.join(work, "classes")
        os.makedirs(classes)
        subprocess.run(["javac", "-cp", POI, "-d", classes, os.path.join(PEERS, "PoiWorkload.java")], check=True)
        reference = os.path.join(work, "ours.xls")
        tools = [
            ("orderview xls", [ours, "write", reference], [ours, "load", reference]),
            ("xlwt / xlrd (Python)", ["/usr/bin/python3", os.path.join(PEERS, "xlwt_write.py"), os.path.join(work, "xlwt.xls")],
             ["/usr/bin/python3", os.path.join(PEERS, "xlrd_load.py"), reference]),
            ("SheetJS xlsx (Node.js)", ["node", os.path.join(PEERS, "sheetjs.js"), "write", os.path.join(work, "sheetjs.xls")],
             ["node", os.path.join(PEERS, "sheetjs.js"), "load", reference]),
            ("Apache POI HSSF (Java)", ["java", "-cp", POI + ":" + classes, "PoiWorkload", "write", os.path.join(work, "poi.xls")],
             ["java", "-cp", POI + ":" + classes, "PoiWorkload", "load", reference]),
        ]
        results = []
        for name, write, load in tools:
            results.append((name, measure(write, runs), measure(load, runs)))
        base_write, base_load = results[0][1][0], results[0][2][0]
        size = os.path.getsize(reference) / 2 ** 20
        print("Workload: 65,536 x 10 cells; file %.1f MiB; best of %d runs; ratio = peer time / orderview time" % (size, runs))
        print()
        print("| program | SaveAs | peak memory | Load | peak memory | SaveAs ratio | Load ratio |")
        print("|---|---|---|---|---|---|---|")
        for name, (wt, wm), (lt, lm) in results:
            print("| %s | %.2f s | %.0f MiB | %.2f s | %.0f MiB | %.1fx | %.1fx |" % (name, wt, wm, lt, lm, wt / base_write, lt / base_load))
        fastest_write = min(r[1][0] for r in results[1:])
        fastest_load = min(r[2][0] for r in results[1:])
        cells = 65536 * 10
        print()
        print("orderview against the fastest peer: SaveAs %.1fx faster, Load %.1fx faster; Load peak %.0f MiB "
              "(budget 64 B/cell + file = %.0f MiB)" % (fastest_write / base_write, fastest_load / base_load,
                                                       results[0][2][1], (64 * cells) / 2 ** 20 + size))
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
