#!/usr/bin/python3
"""A resave keeps what LibreOffice shows: for every corpus workbook that loads, the formatted
text of every sheet (headless CSV export of the cells as shown) is the same before and after a
Load + Save, except in formula cells: the library keeps a formula's last result as the cell's
value, while LibreOffice computes the formulas of the original again (NOW(), functions it lacks).
Formula cells are the FORMULA records of the original (read here with olefile), and any cell a
third export of the originals with formulas shows as one.

A workbook loads when `xlstool dump` accepts it; it must then `xlstool resave` without failure.
Both sets are converted by one LibreOffice run each, with a profile of their own.

usage: xls_resave_libreoffice.py XLSTOOL CORPUS_DIR
"""
import csv
import glob
import os
import subprocess
import sys
import struct
import tempfile

import olefile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402

# From line 1, standard cell format, language, quoted fields as text, detect special numbers,
# save cell contents as shown, no formulas (or formulas), no trimming, all sheets.
CSV_OPTIONS = judging.CSV_UTF8 + ",1,,0,false,true,true,false,false,-1"
FORMULA_OPTIONS = judging.CSV_UTF8 + ",1,,0,false,true,true,true,false,-1"


def loads(tool, path):
    try:
        return subprocess.run([tool, "dump", path], capture_output=True, timeout=120).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def convert(files, work, name, options=CSV_OPTIONS):
    """CSV of every sheet of `files`; returns the output folder."""
    out_dir = os.path.join(work, name)
    os.makedirs(out_dir)
    return judging.libreoffice(files, options, work, out_dir=out_dir, timeout=1800)


def sheets_of(folder, stem):
    """Sheet CSV rows by file name for one workbook stem."""
    found = {}
    for path in glob.glob(os.path.join(glob.escape(folder), glob.escape(stem) + "-*.csv")):
        with open(path, encoding="utf-8", errors="replace", newline="") as f:
            found[os.path.basename(path)] = list(csv.reader(f))
    return found


def formula_cells(path):
    """{sheet name: {(row, column)}} of the FORMULA records of a workbook."""
    try:
        ole = olefile.OleFileIO(path)
        name = next(n for n in ("Workbook", "Book", "workbook", "WORKBOOK") if ole.exists(n))
        data = ole.openstream(name).read()
    except Exception:  # what olefile cannot read, only the formula export judges
        return {}
    sheets, at = [], 0
    while at + 4 <= len(data):
        code, size = struct.unpack_from("<HH", data, at)
        body = data[at + 4:at + 4 + size]
        if code == 0x0085 and len(body) >= 8:
            length, wide = body[6], body[7] & 1
            text = body[8:8 + length * (2 if wide else 1)]
            sheets.append((struct.unpack_from("<I", body)[0], text.decode("utf-16-le" if wide else "latin-1")))
        if code == 0x000A:
            break
        at += 4 + size
    found = {}
    for position, sheet in sheets:
        cells, at, depth = set(), position, 0
        while at + 4 <= len(data):
            code, size = struct.unpack_from("<HH", data, at)
            depth += code == 0x0809
            if code == 0x0006 and depth == 1 and size >= 4:
                cells.add(struct.unpack_from("<HH", data, at + 4))
            depth -= code == 0x000A
            if depth <= 0:
                break
            at += 4 + size
        found[sheet] = cells
    return found


def cell(rows, r, c):
    return rows[r][c] if r < len(rows) and c < len(rows[r]) else ""


def first_difference(old, new, formulas, records):
    """(row, column, before, after) of the first differing cell that holds no formula, or None."""
    for r in range(max(len(old), len(new))):
        width = max(len(old[r]) if r < len(old) else 0, len(new[r]) if r < len(new) else 0)
        for c in range(width):
            if (r, c) in records or cell(formulas, r, c).startswith("="):
                continue
            if cell(old, r, c) != cell(new, r, c):
                return r, c, cell(old, r, c), cell(new, r, c)
    return None


def main():
    tool, corpus = sys.argv[1], sys.argv[2]
    with tempfile.TemporaryDirectory() as work:
        before_dir = os.path.join(work, "in")
        after_dir = os.path.join(work, "resaved")
        os.makedirs(before_dir)
        os.makedirs(after_dir)
        failures = []
        stems = []
        for index, path in enumerate(sorted(glob.glob(os.path.join(corpus, "*.xls")))):
            if not loads(tool, path):
                continue
            stem = "w%03d" % index  # plain names: sheet CSVs are named after the workbook
            original = os.path.join(before_dir, stem + ".xls")
            with open(path, "rb") as src, open(original, "wb") as dst:
                dst.write(src.read())
            resaved = os.path.join(after_dir, stem + ".xls")
            if subprocess.run([tool, "resave", original, resaved], capture_output=True, timeout=120).returncode != 0:
                failures.append("%s: loads but does not save" % os.path.basename(path))
                continue
            stems.append((stem, os.path.basename(path), formula_cells(original)))
        if not stems:
            print("no corpus workbook loads")
            return 1
        before = convert([os.path.join(before_dir, s[0] + ".xls") for s in stems], work, "csv-in")
        after = convert([os.path.join(after_dir, s[0] + ".xls") for s in stems], work, "csv-resaved")
        with_formulas = convert([os.path.join(before_dir, s[0] + ".xls") for s in stems], work, "csv-formulas",
                                FORMULA_OPTIONS)
        for stem, name, records in stems:
            old, new = sheets_of(before, stem), sheets_of(after, stem)
            formulas = sheets_of(with_formulas, stem)
            if not old:
                continue  # LibreOffice cannot read the original either
            if sorted(old) != sorted(new):
                failures.append("%s: sheets %s became %s" % (name, sorted(old), sorted(new)))
                continue
            for sheet in sorted(old):
                sheet_name = sheet[len(stem) + 1:-len(".csv")]
                difference = first_difference(old[sheet], new[sheet], formulas.get(sheet, []),
                                              records.get(sheet_name, set()))
                if difference:
                    failures.append("%s, %s, row %d, column %d: %r became %r" % ((name, sheet) + difference))
        for failure in failures:
            print(failure)
        print("%d workbooks resaved, %d differences" % (len(stems), len(failures)))
        return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
