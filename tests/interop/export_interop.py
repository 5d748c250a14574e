#!/usr/bin/python3
"""List exports read by independent programs.

usage: export_interop.py EXPORTTOOL TEMPLATE csv|html|workbook-xlrd|workbook-libreoffice

  csv                   the CSV export read by Python's csv module: every field as in the list,
                        the line-break cell of the commodity column joined, a trailing blank
  html                  the HTML export converted to .xlsx by headless LibreOffice (own profile)
                        and read by openpyxl: account block, grouping row, headings, numbers as
                        numbers with their values, texts as texts
  workbook-xlrd         the binary workbook read by xlrd: numbers and texts with identical values
  workbook-libreoffice  the same workbook converted to .xlsx by LibreOffice, read by openpyxl

LibreOffice 7.4 does not read the x:num mark of HTML cells: it keeps its own number recognition,
which takes grouped and decimal numbers but leaves percent texts as text. Percent cells of the
HTML export are therefore checked as their exact text there, and text cells of the list are
chosen so that LibreOffice's recognition does not take them for numbers.
"""
import csv
import json
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402

COLUMNS = [["Account", 0], ["IDS_ORDER-ITEM_COMMODITY", 0], ["Qty", 1], ["Price", 1], ["Change", 1],
           ["Time", 1], ["Side", 2], ["IDS_ORDER-ITEM_AVEPRICE", 1], ["Note", 1]]
USER = {"name": "Wang", "branch": "9A95", "main_branch": "9A00", "account": "1234567"}


def make_rows(count=40):
    rows = []
    for i in range(count):
        qty = 1000 * (i + 1) + 234
        rows.append(["F%05d" % i,
                     "TXF\r\nMXF" if i % 3 == 0 else "TXF",
                     "{:,}".format(qty),
                     "%d.%02d" % (100 + i, (i * 7) % 100),
                     ("-%d.%d%%" % (i, i % 10)) if i % 2 else ("%d%%" % (i * 5)),
                     "09:%02d:%02d" % (i % 60, (i * 13) % 60),
                     "Buy" if i % 2 else "Sell",
                     "1,%03d.%d" % (i * 11 % 1000, i % 10),
                     "caf\u00e9 A" if i % 4 == 0 else "x y"])
    return rows


def is_number(column, text):
    """The export's rule: a right-aligned column, a digit or comma, no backslash, blank, colon."""
    return (COLUMNS[column][1] & 3) == 1 and text != "" and any(c in "0123456789," for c in text) \
        and not any(c in "\\ :" for c in text)


def number_value(text):
    value = float(text.replace(",", "").rstrip("%"))
    return value / 100 if text.endswith("%") else value


def run_export(tool, mode, plan, out, home):
    plan_path = out + ".json"
    with open(plan_path, "w", encoding="utf-8") as f:
        json.dump(plan, f)
    env = dict(os.environ, ORDERVIEW_SAVE_AS=out, ORDERVIEW_HOME=home)
    subprocess.run([tool, mode, plan_path], check=True, env=env)


def libreoffice_xlsx(path, work, html):
    import openpyxl
    out_dir = judging.libreoffice([path], "xlsx", work, html=html)
    return openpyxl.load_workbook(judging.converted(path, out_dir, ".xlsx")).worksheets[0]


def check(failures, where, got, want):
    if isinstance(want, float):
        ok = isinstance(got, (int, float)) and not isinstance(got, bool) and abs(got - want) <= 1e-9 * max(1, abs(want))
    else:
        ok = got == want
    if not ok:
        failures.append("%s: %r, expected %r" % (where, got, want))


def check_csv(tool, work, home, failures):
    rows = make_rows()
    out = os.path.join(work, "list.csv")
    # A main folder without a language file: the headings are matched as the ids themselves.
    bare = os.path.join(work, "bare")
    os.makedirs(os.path.join(bare, "sys"), exist_ok=True)
    run_export(tool, "text", {"columns": COLUMNS, "rows": rows}, out, bare)
    with open(out, encoding="utf-8", newline="") as f:
        lines = f.read().split("\r\n")
    check(failures, "line count", len(lines), len(rows) + 2)
    check(failures, "end of file", lines[-1], "")
    records = list(csv.reader(lines[:-1]))
    headings = [c[0] for c in COLUMNS]
    headings[-1] += " "
    check(failures, "heading line", records[0], headings)
    for r, row in enumerate(rows):
        want = list(row)
        want[1] = want[1].replace("\r\n", ";") if want[1].find("\n") > 0 else want[1]
        want[-1] += " "
        # The grouped numbers hold the separator: CSV is a plain dump, so they split into fields.
        expected = []
        for text in want:
            expected += text.split(",")
        check(failures, "row %d" % r, records[r + 1], expected)


def check_html(tool, work, home, failures):
    rows = make_rows()
    folder = os.path.join(work, "main")
    os.makedirs(os.path.join(folder, "sys"))
    shutil.copy(os.path.join(home, "sys", "xls_head.txt"), os.path.join(folder, "sys", "xls_head.txt"))
    with open(os.path.join(folder, "sys", "OrderCfg.ini"), "w") as f:
        f.write("[ORDER_SETTING]\r\nUSE_NEWSTOCKUNOFFSET=1\r\n")
    out = os.path.join(work, "list.xls")
    run_export(tool, "html", {"columns": COLUMNS, "rows": rows, "user": USER,
                              "title": "Tab IDS_ORDER-EXT-TAB_STOCK_UNOFFSET"}, out, folder)
    sheet = libreoffice_xlsx(out, work, True)
    grid = [[cell.value for cell in row] for row in sheet.iter_rows()]
    block = ["IDS_QWORDERVIEW_GLOABLDATAPROC_NAME:Wang", "IDS_QWORDERVIEW_GLOABLDATAPROC_BHNO:9A95",
             "IDS_QWORDERVIEW_GLOABLDATAPROC_MAINBHNO:9A00", "IDS_QWORDERVIEW_GLOABLDATAPROC_CSEQ:9A951234567"]
    for c, text in enumerate(block):
        check(failures, "account block %d" % c, grid[0][c], text)
    # The grouping row: an empty cell, then cells spanning 6, 7, 7 and 6 columns.
    for c, text in [(1, "IDS_ORDER-TAB-FINANCE_STATIC_TYPE2"), (7, "IDS_ORDER-TAB-FINANCE_STATIC_RZ"),
                    (14, "IDS_ORDER-TAB-FINANCE_STATIC_RG"), (21, "IDS_QWORDERVIEW_GLOABLDATAPROC_ODD_STKNUM")]:
        check(failures, "grouping row column %d" % c, grid[1][c], text)
    for c, (heading, _) in enumerate(COLUMNS):
        check(failures, "heading %d" % c, grid[2][c], heading)
    check(failures, "row count", len([row for row in grid if any(v is not None for v in row)]), len(rows) + 3)
    for r, row in enumerate(rows):
        for c, text in enumerate(row):
            got = grid[r + 3][c]
            where = "row %d column %d (%r)" % (r, c, text)
            if is_number(c, text) and not text.endswith("%"):
                check(failures, where, got, number_value(text))
            else:
                # HTML collapses the line break of a cell into one blank; the template declares
                # UTF-8, the narrow text of the exports here.
                check(failures, where, got, " ".join(text.split()))


def workbook_expected(rows):
    expected = {}
    for c, (heading, _) in enumerate(COLUMNS):
        expected[(0, c)] = heading
    for r, row in enumerate(rows):
        for c, text in enumerate(row):
            # Narrow (UTF-8) text that is not ASCII is stored as UTF-16: readers show its characters.
            expected[(r + 1, c)] = number_value(text) if is_number(c, text) else text
    return expected


def check_workbook(tool, work, home, reader, failures):
    rows = make_rows()
    out = os.path.join(work, "book.xls")
    run_export(tool, "workbook", {"columns": COLUMNS, "rows": rows, "sheet": "Orders"}, out, home)
    expected = workbook_expected(rows)
    if reader == "xlrd":
        import xlrd
        sheet = xlrd.open_workbook(out).sheet_by_index(0)
        check(failures, "sheet name", sheet.name, "Orders")
        check(failures, "size", (sheet.nrows, sheet.ncols), (len(rows) + 1, len(COLUMNS)))
        for (r, c), want in expected.items():
            cell = sheet.cell(r, c)
            got = cell.value if cell.ctype in (xlrd.XL_CELL_NUMBER, xlrd.XL_CELL_TEXT) else None
            if isinstance(want, float) and cell.ctype != xlrd.XL_CELL_NUMBER:
                got = ("text", got)
            check(failures, "R%dC%d" % (r, c), got, want)
    else:
        sheet = libreoffice_xlsx(out, work, False)
        check(failures, "sheet name", sheet.title, "Orders")
        for (r, c), want in expected.items():
            if isinstance(want, str):
                want = want.replace("\r\n", "\n")  # .xlsx keeps line breaks as line feeds
            check(failures, "R%dC%d" % (r, c), sheet.cell(row=r + 1, column=c + 1).value, want)


def main():
    tool, template_home, mode = sys.argv[1], sys.argv[2], sys.argv[3]
    failures = []
    with tempfile.TemporaryDirectory() as work:
        if mode == "csv":
            check_csv(tool, work, template_home, failures)
        elif mode == "html":
            check_html(tool, work, template_home, failures)
        elif mode.startswith("workbook-"):
            check_workbook(tool, work, template_home, mode[len("workbook-"):], failures)
        else:
            print("unknown mode", mode)
            return 2
    return judging.report(failures, "%s: %d failures" % (mode, len(failures)))


if __name__ == "__main__":
    sys.exit(main())
