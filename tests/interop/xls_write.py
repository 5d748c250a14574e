#!/usr/bin/python3
"""Workbooks this library writes, read by independent programs with identical values.

The workbook: several sheets (one with a CJK name), integers (around the 30-bit RK limits too),
doubles at full precision, narrow (8-bit) and wide text (CJK, a surrogate pair), 10,000 distinct
strings (so the shared string table needs CONTINUE records), and cells at row 65535 and column 255.

usage: xls_write.py XLSTOOL xlrd|poi|libreoffice
  poi compiles PoiDump.java against Debian's Apache POI; libreoffice converts every sheet to CSV
  with a private user profile. Corpus workbooks saved again by this library are judged by
  xls_corpus.py (xlrd) and xls_resave_libreoffice.py (LibreOffice).
"""
import csv
import json
import math
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
POI_CLASSPATH = ":".join(["/usr/share/java/poi.jar", "/usr/share/java/commons-collections4.jar",
                          "/usr/share/java/commons-math3.jar", "/usr/share/java/commons-codec.jar"])


def test_workbook():
    numbers = [[0, 0, "int", 0], [1, 0, "int", -1], [2, 0, "int", 2 ** 29 - 1], [3, 0, "int", -(2 ** 29)],
               [4, 0, "int", 2 ** 29], [5, 0, "int", -(2 ** 31)], [6, 0, "int", 2 ** 31 - 1],
               [0, 1, "double", 1 / 3], [1, 1, "double", math.pi], [2, 1, "double", 1e-300],
               [3, 1, "double", 1.7976931348623157e308], [4, 1, "double", -2.5], [5, 1, "double", 0.1 + 0.2],
               [6, 1, "double", 123456789.123456789], [65535, 255, "int", 65535255], [65535, 0, "double", 0.5],
               [0, 255, "text", "far right"]]
    texts = [[0, 0, "text", "plain ASCII"], [1, 0, "text", "Latin-1 caf\u00e9 \u00e0 la carte"],
             [2, 0, "wtext", "\u5de5\u4f5c\u8868 \u4e2d\u6587"], [3, 0, "wtext", "emoji \U0001F600 pair"],
             [4, 0, "wtext", "plain but wide"], [5, 0, "text", ""], [6, 0, "text", "x" * 300]]
    many = [[i, 0, "text", "distinct string %05d %s" % (i, "abc" * (i % 7))] for i in range(10000)]
    many += [[i, 1, "int", i] for i in range(0, 10000, 3)]
    return {"sheets": [{"name": "Numbers", "cells": numbers}, {"name": "Texts", "cells": texts},
                       {"name": "\u5de5\u4f5c\u8868", "cells": many}, {"name": "Empty", "cells": []}]}


def expected_values(workbook):
    """{(sheet, row, col): value} with numbers as floats."""
    values = {}
    for sheet in workbook["sheets"]:
        for row, col, kind, value in sheet["cells"]:
            values[(sheet["name"], row, col)] = float(value) if kind in ("int", "double") else value
    return values


def close(a, b):
    """LibreOffice's CSV shows numbers with 15 significant digits: equal to that precision."""
    return isinstance(a, float) and isinstance(b, float) and abs(a - b) <= 1e-14 * max(abs(a), abs(b))


def compare(expected, actual, reader):
    failures = []
    for key, value in expected.items():
        if value == "" and reader != "xlrd":
            continue  # an empty text cell reads as empty: nothing to compare against
        if key not in actual:
            failures.append("%s: %r missing (expected %r)" % (reader, key, value))
        elif actual[key] != value and not (reader == "libreoffice" and close(actual[key], value)):
            failures.append("%s: %r is %r, expected %r" % (reader, key, actual[key], value))
    extra = set(actual) - set(expected)
    if extra:
        failures.append("%s: unexpected cells %r" % (reader, sorted(extra)[:5]))
    return failures


def read_xlrd(path):
    import xlrd
    book = xlrd.open_workbook(path)
    values = {}
    for sheet in book.sheets():
        for r in range(sheet.nrows):
            for c in range(sheet.ncols):
                cell = sheet.cell(r, c)
                if cell.ctype == xlrd.XL_CELL_NUMBER:
                    values[(sheet.name, r, c)] = float(cell.value)
                elif cell.ctype == xlrd.XL_CELL_TEXT:
                    values[(sheet.name, r, c)] = cell.value
    return values


def read_poi(path, work):
    classes = os.path.join(work, "classes")
    os.makedirs(classes, exist_ok=True)
    subprocess.run(["javac", "-cp", POI_CLASSPATH, "-d", classes, os.path.join(HERE, "PoiDump.java")], check=True)
    out = subprocess.run(["java", "-cp", POI_CLASSPATH + ":" + classes, "PoiDump", path],
                         check=True, capture_output=True).stdout.decode("utf-8")
    values = {}
    for line in out.splitlines():
        sheet, row, col, kind, value = line.split("\t", 4)
        if kind == "n":
            values[(sheet, int(row), int(col))] = float(value)
        else:
            values[(sheet, int(row), int(col))] = value.replace("\\n", "\n").replace("\\t", "\t").replace("\\\\", "\\")
    return values


def read_libreoffice(path, work, sheets):
    """Every sheet as CSV (raw values, full precision), through headless LibreOffice."""
    # From line 1, standard cell format, quoted fields as text, raw values, all sheets.
    out_dir = judging.libreoffice([path], judging.CSV_UTF8 + ",1,,0,false,true,false,false,false,-1", work)
    stem = os.path.splitext(os.path.basename(path))[0]
    values = {}
    for sheet in sheets:
        csv_path = os.path.join(out_dir, "%s-%s.csv" % (stem, sheet))
        if not os.path.exists(csv_path):
            continue
        with open(csv_path, encoding="utf-8", newline="") as f:
            for r, row in enumerate(csv.reader(f)):
                for c, text in enumerate(row):
                    if text == "":
                        continue
                    try:
                        values[(sheet, r, c)] = float(text)
                    except ValueError:
                        values[(sheet, r, c)] = text
    return values


def main():
    tool, reader = sys.argv[1], sys.argv[2]
    failures = []
    with tempfile.TemporaryDirectory() as work:
        workbook = test_workbook()
        plan_path = os.path.join(work, "workbook.json")
        with open(plan_path, "w", encoding="utf-8") as f:
            json.dump(workbook, f)
        path = os.path.join(work, "written.xls")
        subprocess.run([tool, "make", path, plan_path], check=True)
        expected = expected_values(workbook)
        names = [s["name"] for s in workbook["sheets"]]
        if reader == "xlrd":
            failures += compare(expected, read_xlrd(path), "xlrd")
        elif reader == "poi":
            failures += compare(expected, read_poi(path, work), "poi")
        elif reader == "libreoffice":
            failures += compare(expected, read_libreoffice(path, work, names), "libreoffice")
    return judging.report(failures, "%d passed, %d failed" % (0 if failures else 1, 1 if failures else 0))


if __name__ == "__main__":
    sys.exit(main())
