#!/usr/bin/python3
"""Every corpus workbook that xlrd could read loads here with the values xlrd saw.

For each file whose .expected.json lists sheets, `xlstool dump` must load it, and every number,
date (as its serial number), boolean (as 0/1) and text cell must have the listed value in the
sheet of the same name. Files xlrd rejects must load or fail cleanly (exit 0 or 1, in time).
Then each loadable file is saved again and read back by xlrd with the same values.

usage: xls_corpus.py XLSTOOL CORPUS_DIR
"""
import glob
import json
import os
import subprocess
import sys
import tempfile

import xlrd

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402


def same(kind, expected, actual):
    if kind == "text":
        return isinstance(actual, str) and actual == expected
    if kind == "boolean":
        return actual == (1 if expected else 0)
    return isinstance(actual, (int, float)) and not isinstance(actual, bool) and float(actual) == float(expected)


def compare(expected_sheets, sheets, label):
    failures = []
    by_name = {s["name"]: s for s in sheets}
    for sheet in expected_sheets:
        ours = by_name.get(sheet["name"])
        if ours is None:
            failures.append("%s: sheet %r missing" % (label, sheet["name"]))
            continue
        cells = {(r, c): v for r, c, _, v in ours["cells"]}
        for row, col, kind, value in sheet["cells"]:
            if kind == "error":
                continue
            if (row, col) not in cells:
                failures.append("%s: %s!R%dC%d missing (expected %r)" % (label, sheet["name"], row, col, value))
            elif not same(kind, value, cells[(row, col)]):
                failures.append("%s: %s!R%dC%d is %r, expected %r" % (label, sheet["name"], row, col, cells[(row, col)], value))
    return failures


def xlrd_sheets(path):
    book = xlrd.open_workbook(path)
    sheets = []
    for sheet in book.sheets():
        cells = []
        for r in range(sheet.nrows):
            for c in range(sheet.ncols):
                cell = sheet.cell(r, c)
                if cell.ctype in (xlrd.XL_CELL_NUMBER, xlrd.XL_CELL_DATE, xlrd.XL_CELL_BOOLEAN):
                    cells.append([r, c, "number", cell.value])
                elif cell.ctype == xlrd.XL_CELL_TEXT:
                    cells.append([r, c, "text", cell.value])
        sheets.append({"name": sheet.name, "cells": cells})
    return sheets


def main():
    tool, corpus = sys.argv[1], sys.argv[2]
    failures, checked, rejected = [], 0, 0
    with tempfile.TemporaryDirectory() as work:
        for path in sorted(glob.glob(os.path.join(corpus, "*.xls"))):
            label = os.path.basename(path)
            with open(path + ".expected.json", encoding="utf-8") as f:
                expected = json.load(f)
            try:
                result = subprocess.run([tool, "dump", path], capture_output=True, timeout=60)
            except subprocess.TimeoutExpired:
                failures.append("%s: load hangs" % label)
                continue
            if "sheets" not in expected:
                rejected += 1
                if result.returncode not in (0, 1):
                    failures.append("%s: crashed (%d)" % (label, result.returncode))
                continue
            if result.returncode != 0:
                failures.append("%s: does not load: %s" % (label, result.stderr.decode(errors="replace").strip()))
                continue
            ours = json.loads(result.stdout)["sheets"]
            found = compare(expected["sheets"], ours, label)
            failures += found
            checked += 1
            # Round trip: saved again, xlrd reads the same values.
            resaved = os.path.join(work, "resaved.xls")
            if subprocess.run([tool, "resave", path, resaved], capture_output=True).returncode != 0:
                failures.append("%s: cannot be saved again" % label)
                continue
            try:
                failures += compare(expected["sheets"] if not found else [], xlrd_sheets(resaved), label + " (saved again)")
            except Exception as error:
                failures.append("%s: xlrd cannot read it saved again: %s" % (label, error))
    print("corpus: %d files compared, %d rejected by xlrd survived" % (checked, rejected))
    return judging.report(failures, "%d passed, %d failed" % (0 if failures else 1, 1 if failures else 0),
                          most=200)


if __name__ == "__main__":
    sys.exit(main())
