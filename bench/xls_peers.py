#!/usr/bin/python3
"""Writes and loads the spreadsheet workload (65,536 rows x 10 columns: an integer, six doubles,
three strings from 5,000 texts) with this library and with the independent programs that do the
same job here, and prints one table of whole-process times (medians) and peak memory, with each
program's time as a multiple of this library's.

usage: xls_peers.py XLS_WORKLOAD [RUNS] [--consecutive]   (see docs/performance.md; RUNS at least 5)
By default the runs go in rounds, every program once a round. With --consecutive each program
makes one unmeasured run and then all of its runs in a row, as a benchmark harness does: the
memory a program frees is then what its next run gets, where in rounds it follows the peers that
free hundreds of MiB.
Peers: xlwt and xlrd (/usr/bin/python3), SheetJS `xlsx` (installed here with npm on first use),
Apache POI (Debian's libapache-poi-java), catdoc's `xls2csv` (reads only) and gnumeric's
`ssconvert` (reads the file to CSV; writes a workbook from a CSV of the same cells, made once
before the timing). Each load reads the file this library wrote. The floor is `xls_floor` beside
XLS_WORKLOAD: the file read into memory in 64 KiB parts, and one pass over its bytes. The bound,
`XLS_WORKLOAD bound`, reads the file the same way and then fills a sheet of the workload's size
with numbers through the library, parsing nothing: what a Load costs that program before it
parses a record (the C++ runtime and the library started, the grid's fresh memory filled).
"""
import csv
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
PEERS = os.path.join(HERE, "peers")
POI = ":".join("/usr/share/java/%s.jar" % j for j in ("poi", "commons-collections4", "commons-math3", "commons-codec"))
ROWS, COLS = 65536, 10
BYTES_PER_CELL = 48  # the Load memory budget, plus the file size


def run_once(command):
    """Wall time, CPU time (user + system) and peak resident memory (MiB) of one run."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    _, status, usage = os.wait4(process.pid, 0)
    elapsed = time.perf_counter() - start
    if status != 0:
        raise RuntimeError("%s failed: %s" % (command, process.stderr.read().decode(errors="replace")))
    process.stderr.close()
    return elapsed, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024.0


def measure(commands, runs, consecutive):
    """Median wall and CPU time and the largest peak memory of each command. The runs go in
    rounds, every command once a round, so that a busy spell of the machine falls on all of them;
    or, `consecutive`, one warm-up and then all runs of a command in a row. Every write makes a
    new file (its output, the last argument, is removed first, untimed): replacing an existing
    file costs this library one flush to disk that the peers do not make."""
    samples = {key: [] for key in commands}

    def sample(key, command):
        if key[1] == "write" and os.path.exists(command[-1]):
            os.remove(command[-1])
        return run_once(command)
    if consecutive:
        for key, command in commands.items():
            sample(key, command)
            samples[key] = [sample(key, command) for _ in range(runs)]
    else:
        for _ in range(runs):
            for key, command in commands.items():
                samples[key].append(sample(key, command))
    return {key: (statistics.median(s[0] for s in runs_of), statistics.median(s[1] for s in runs_of),
                  max(s[2] for s in runs_of)) for key, runs_of in samples.items()}


def write_csv(path):
    """The workload's cells as CSV, the same values xls_workload writes (ssconvert's input)."""
    texts = ["text value %d" % (i * 7919 % 100000) for i in range(5000)]
    with open(path, "w", newline="") as out:
        writer = csv.writer(out)
        for r in range(ROWS):
            writer.writerow([r] + [repr(r * 1.5 + c / 7.0) for c in range(1, 7)] +
                            [texts[(r * 31 + c) % 5000] for c in range(7, 10)])


def seconds(t):
    return "%.3f s" % t if t < 1 else "%.2f s" % t


def main():
    args = [a for a in sys.argv[1:] if a != "--consecutive"]
    consecutive = len(args) < len(sys.argv) - 1
    ours, runs = args[0], max(5, int(args[1]) if len(args) > 1 else 5)
    floor = os.path.join(os.path.dirname(os.path.abspath(ours)), "xls_floor")
    work = tempfile.mkdtemp()
    try:
        if not os.path.exists(os.path.join(PEERS, "node_modules", "xlsx")):
            subprocess.run(["npm", "install", "--no-save", "--silent", "xlsx"], cwd=PEERS, check=True)
        classes = os.path.join(work, "classes")
        os.makedirs(classes)
        subprocess.run(["javac", "-cp", POI, "-d", classes, os.path.join(PEERS, "PoiWorkload.java")], check=True)
        reference = os.path.join(work, "ours.xls")
        cells_csv = os.path.join(work, "cells.csv")
        write_csv(cells_csv)
        biff8 = "--export-type=Gnumeric_Excel:excel_biff8"
        to_csv = "--export-type=Gnumeric_stf:stf_csv"
        # (name, write command or None, load command or None)
        tools = [
            ("orderview xls", [ours, "write", reference], [ours, "load", reference]),
            ("xlwt / xlrd (Python)", ["/usr/bin/python3", os.path.join(PEERS, "xlwt_write.py"), os.path.join(work, "xlwt.xls")],
             ["/usr/bin/python3", os.path.join(PEERS, "xlrd_load.py"), reference]),
            ("SheetJS xlsx (Node.js)", ["node", os.path.join(PEERS, "sheetjs.js"), "write", os.path.join(work, "sheetjs.xls")],
             ["node", os.path.join(PEERS, "sheetjs.js"), "load", reference]),
            ("Apache POI HSSF (Java)", ["java", "-cp", POI + ":" + classes, "PoiWorkload", "write", os.path.join(work, "poi.xls")],
             ["java", "-cp", POI + ":" + classes, "PoiWorkload", "load", reference]),
            ("catdoc xls2csv (C)", None, ["xls2csv", reference]),
            ("gnumeric ssconvert (C)", ["ssconvert", biff8, cells_csv, os.path.join(work, "gnumeric.xls")],
             ["ssconvert", to_csv, reference, os.path.join(work, "gnumeric.csv")]),
        ]
        commands = {}  # writes first in each round: the loads read the file orderview wrote
        for name, write, _ in tools:
            if write:
                commands[(name, "write")] = write
        for name, _, load in tools:
            if load:
                commands[(name, "load")] = load
        commands[("floor", "load")] = [floor, reference]
        commands[("bound", "load")] = [ours, "bound", reference]
        measured = measure(commands, runs, consecutive)
        results = [(name, measured.get((name, "write")), measured.get((name, "load"))) for name, _, _ in tools]
        floor_time, floor_cpu, floor_peak = measured[("floor", "load")]
        bound_time, bound_cpu, bound_peak = measured[("bound", "load")]
        base_write, base_load = results[0][1][0], results[0][2][0]
        size = os.path.getsize(reference) / 2 ** 20
        print("Workload: %d x %d cells; file %.1f MiB; wall time, median of %d runs %s; "
              "ratio = program time / orderview time"
              % (ROWS, COLS, size, runs, "in a row after a warm-up" if consecutive else "taken in rounds"))
        print()
        print("| program | SaveAs | peak memory | Load | peak memory | SaveAs ratio | Load ratio |")
        print("|---|---|---|---|---|---|---|")

        def cells(m, base):
            return ("%s | %.0f MiB" % (seconds(m[0]), m[2]), "%.1fx" % (m[0] / base)) if m else ("- | -", "-")
        for name, w, l in results:
            wc, wr = cells(w, base_write)
            lc, lr = cells(l, base_load)
            print("| %s | %s | %s | %s | %s |" % (name, wc, lc, wr, lr))
        print("| floor: read the file, touch every byte (xls_floor) | - | - | %s | %.0f MiB | - | %.2fx |"
              % (seconds(floor_time), floor_peak, floor_time / base_load))
        print("| bound: read the file, fill the grid, parse nothing (xls_workload bound) | - | - | %s | %.0f MiB | - | %.2fx |"
              % (seconds(bound_time), bound_peak, bound_time / base_load))
        writers = [(r[1][0], r[0]) for r in results[1:] if r[1]]
        loaders = [(r[2][0], r[0]) for r in results[1:] if r[2]]
        fastest_write, fastest_load = min(writers), min(loaders)
        budget = BYTES_PER_CELL * ROWS * COLS / 2 ** 20 + size
        print()
        print("SaveAs: %.1fx faster than the fastest peer (%s; target 10x)" % (fastest_write[0] / base_write, fastest_write[1]))
        print("Load: %.1fx faster than the fastest peer (%s; target 10x); %.2fx the floor (target 2.5x; "
              "CPU time %.0f ms against %.0f ms, %.2fx)" % (fastest_load[0] / base_load, fastest_load[1], base_load / floor_time,
                                                         results[0][2][1] * 1000, floor_cpu * 1000, results[0][2][1] / floor_cpu))
        print("Bound: %.2fx the floor (CPU time %.0f ms); Load %.2fx the bound" % (bound_time / floor_time, bound_cpu * 1000,
                                                                             base_load / bound_time))
        print("Load peak memory: %.1f MiB; budget %d B/cell + file = %.1f MiB" % (results[0][2][2], BYTES_PER_CELL, budget))
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
