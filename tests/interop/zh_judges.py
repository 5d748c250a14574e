#!/usr/bin/python3
"""Traditional Chinese end to end: the orderview program on a copy of the sample main folder
(Chinese account and stock names) with the Chinese language file, judged by independent readers.

usage: zh_judges.py ORDERVIEW SAMPLE_DIR workbook-xlrd|workbook-libreoffice|html|list-width|workbook-sheets

  workbook-xlrd         the full and deal lists' workbooks read by xlrd: the headings are the
                        Chinese language texts, the account names those of accounts.csv, and
                        every cell that is not ASCII reads exactly as the same list's CSV export
                        (narrow UTF-8 bytes, written unchanged) holds it
  workbook-libreoffice  the same workbook converted to CSV (UTF-8) by headless LibreOffice
  html                  the HTML export converted to CSV by headless LibreOffice: the account block
                        and every Chinese cell exactly
  list-width            'orderview list' and 'check' line their columns up by display width, with
                        Python's unicodedata.east_asian_width as the judge (W and F take two
                        columns, combining characters none)
  workbook-sheets       a generated day of more than 65,535 orders: the workbook goes on over
                        sheets "Orders", "Orders (2)", each with the heading row, read by xlrd
"""
import csv
import io
import os
import shutil
import subprocess
import sys
import tempfile
import unicodedata

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402

PROGRAM, SAMPLE, MODE = sys.argv[1], sys.argv[2], sys.argv[3]
failures = []

# The program's default columns of each list (the order screens' columns), as language ids.
FULL = ["IDS_ORDER-ITEM_ORDERNO", "IDS_ORDER-ITEM_BOKDTANDTM", "IDS_ORDER-ITEM_ACCOUNT_NAME",
        "IDS_ORDER-ITEM_COMTYPE", "IDS_ORDER-ITEM_COMMODITY", "IDS_ORDER-ITEM_BUYSELL", "IDS_ORDER-ITEM_NEWOFFSET",
        "IDS_ORDER-ITEM_ORDERTYPE_AND_PRICE", "HTS_ORDER-ITEM_ROLE", "IDS_ORDER-ITEM_ORDERQTY",
        "IDS_ORDER-ITEM_DEALQTY", "IDS_ORDER-ITEM_CANCELQTY", "IDS_ORDER-ITEM_AVEPRICE", "IDS_ORDER-ITEM_STATUS"]
DEAL = ["IDS_ORDER-ITEM_DEALTIME", "IDS_ORDER-ITEM_DEALNO", "IDS_ORDER-ITEM_ORDERNO", "IDS_ORDER-ITEM_ACCOUNT_NAME",
        "IDS_ORDER-ITEM_COMMODITY", "IDS_ORDER-ITEM_BUYSELL", "IDS_ORDER-ITEM_NEWOFFSET", "IDS_ORDER-ITEM_DEALPRICE",
        "IDS_ORDER-ITEM_DEALQTY", "IDS_ORDER-TAB-DEALREPORT_FEE", "IDS_ORDER-TAB-DEALREPORT_TAX",
        "IDS_ORDER-ITEM_NETAMOUNT"]


def check(name, condition, detail=""):
    if not condition:
        failures.append(name + (": " + str(detail) if detail else ""))
    return condition


def run(*args, binary=False):
    result = subprocess.run([PROGRAM, "--lang", "zh-TW", *args], capture_output=True, text=not binary)
    if result.returncode not in (0, 1) or (result.returncode == 1 and args[0] != "check"):
        raise SystemExit("orderview %s failed (%d): %s" % (" ".join(args), result.returncode, result.stderr))
    return result


def language(folder):
    texts = {}
    with open(os.path.join(folder, "sys", "language.zh-TW.txt"), encoding="utf-8") as f:
        for line in f:
            if "=" in line and not line.startswith("#"):
                key, text = line.rstrip("\n").split("=", 1)
                texts[key] = text
    return texts


def sys_csv(folder, name):
    with open(os.path.join(folder, "sys", name), encoding="utf-8", newline="") as f:
        return list(csv.DictReader(f))


def non_ascii(text):
    return isinstance(text, str) and any(ord(c) > 127 for c in text)


def csv_export(folder, work, kind):
    """The list's CSV export: narrow text byte for byte, so its Chinese fields are the oracle.
    Rows of fields that are not ASCII (CSV here is a plain dump: grouped numbers split, but
    Chinese texts hold no ASCII comma)."""
    out = os.path.join(work, kind + ".csv")
    run("export", "--main", folder, "--list", kind, "--format", "screen-csv", "--output", out)
    with open(out, "rb") as f:
        lines = f.read().decode("utf-8").split("\r\n")[:-1]
    rows = []
    for line in lines:
        fields = line.split(",")
        fields[-1] = fields[-1][:-1]  # the blank after the last field
        rows.append([f for f in fields if non_ascii(f)])
    return rows


def libreoffice_csv(path, work, html=False):
    out_dir = judging.libreoffice([path], judging.CSV_UTF8, work, html=html)
    with open(judging.converted(path, out_dir, ".csv"), encoding="utf-8", newline="") as f:
        return list(csv.reader(f))


def expected_lists(folder, work):
    texts = language(folder)
    names = {a["account"]: a["name"] for a in sys_csv(folder, "accounts.csv")}
    return {
        "full": {"headings": [texts[k] for k in FULL], "oracle": csv_export(folder, work, "full"),
                 "accounts": [names[o["csAccount"]] for o in sys_csv(folder, "orders.csv") if o["list"] == "today"],
                 "sheet": "Orders"},
        "deal": {"headings": [texts[k] for k in DEAL], "oracle": csv_export(folder, work, "deal"),
                 "accounts": [names[d["csAccount"]] for d in sys_csv(folder, "deals.csv")], "sheet": "Deals"},
    }


def judge_grid(where, grid, want):
    """grid: rows of cell values as a reader gives them (heading row first)."""
    check(where + " headings", [str(v) for v in grid[0][:len(want["headings"])]] == want["headings"], grid[0])
    check(where + " row count", len(grid) == len(want["oracle"]), "%d, expected %d" % (len(grid), len(want["oracle"])))
    column = want["headings"].index(language(SAMPLE)["IDS_ORDER-ITEM_ACCOUNT_NAME"])
    chinese = 0
    for r in range(1, min(len(grid), len(want["oracle"]))):
        row = grid[r]
        check("%s row %d account name" % (where, r), row[column] == want["accounts"][r - 1],
              "%r, expected %r" % (row[column], want["accounts"][r - 1]))
        cells = [v for v in row if non_ascii(v)]
        chinese += len(cells)
        check("%s row %d Chinese cells" % (where, r), cells == want["oracle"][r], "%r, expected %r" % (cells, want["oracle"][r]))
    # Account name, side, open/close and status at least: the list really is Chinese.
    check(where + " Chinese cells read", chinese >= 3 * (len(grid) - 1), chinese)


def judge_workbook(folder, work, reader):
    import xlrd
    want = expected_lists(folder, work)
    for kind in ["full", "deal"]:
        book_path = os.path.join(work, kind + ".xls")
        run("export", "--main", folder, "--list", kind, "--format", "xls", "--output", book_path)
        if reader == "xlrd":
            book = xlrd.open_workbook(book_path)
            sheet = book.sheet_by_index(0)
            check(kind + " sheet name", sheet.name == want[kind]["sheet"], sheet.name)
            grid = [[sheet.cell_value(r, c) for c in range(sheet.ncols)] for r in range(sheet.nrows)]
        else:
            grid = libreoffice_csv(book_path, work)
        judge_grid("%s %s" % (reader, kind), grid, want[kind])


def judge_html(folder, work):
    want = expected_lists(folder, work)["full"]
    out = os.path.join(work, "orders.html")
    run("export", "--main", folder, "--list", "full", "--format", "html", "--output", out)
    with open(out, "rb") as f:
        check("html declares UTF-8", b"charset=utf-8" in f.read(2000).lower())
    grid = libreoffice_csv(out, work, html=True)
    texts = language(folder)
    check("html account block", grid[0][0] == texts["IDS_QWORDERVIEW_GLOABLDATAPROC_NAME"] + ":陳大文", grid[0][:2])
    judge_grid("html", grid[1:], want)


def display_columns(line):
    """The characters of a line placed on terminal columns: a list of (column, width, char)."""
    placed, at = [], 0
    for ch in line:
        width = 0 if unicodedata.combining(ch) else 2 if unicodedata.east_asian_width(ch) in "WF" else 1
        placed.append((at, width, ch))
        at += width
    return placed, at


def judge_table(where, lines):
    rule = lines[1]
    spans, start = [], None
    for i, ch in enumerate(rule + " "):
        if ch == "-" and start is None:
            start = i
        elif ch != "-" and start is not None:
            spans.append((start, i))
            start = None
    check(where + " rule", len(spans) >= 5 and set(rule) <= {"-", " "}, rule)
    wide = 0
    for n, line in enumerate([lines[0]] + lines[2:]):
        placed, _ = display_columns(line)
        occupied = {}
        for col, width, ch in placed:
            for k in range(width):
                occupied[col + k] = ch
            wide += width == 2
        # Between columns two blanks, on the same terminal columns on every line; no character
        # straddles a column's edge.
        for (s, e), (next_s, _) in zip(spans, spans[1:]):
            gap = [occupied.get(k, " ") for k in range(e, next_s)]
            if not check("%s line %d gap at %d" % (where, n, e), gap == [" "] * (next_s - e), repr(line)):
                break
        for col, width, ch in placed:
            if width == 2 and any(col < e < col + 2 or col < s < col + 2 for s, e in spans):
                check("%s line %d: %r straddles a column edge" % (where, n, ch), False, repr(line))
    check(where + " holds wide characters", wide > len(lines), wide)


def judge_list_width(folder, work):
    for args in [("list", "--list", "full"), ("list", "--list", "simple"), ("list", "--list", "deal")]:
        result = run(*args, "--main", folder)
        lines = result.stdout.splitlines()
        check(" ".join(args) + " rows", len(lines) > 10, len(lines))
        judge_table(" ".join(args), lines)
    # The check command's check column starts on one terminal column on every line of a check
    # (between its heading row and its closing summary).
    result = run("check", "--main", folder)
    starts = set()
    for line in result.stdout.splitlines():
        placed, _ = display_columns(line)
        text = "".join(ch for _, _, ch in placed)
        if " stock " not in text and " insurance " not in text:
            continue
        at = text.find(" stock ") if " stock " in text else text.find(" insurance ")
        starts.add(placed[at][0])
    check("check verdict column", len(starts) == 1, starts)
    check("check names Chinese refusals", "委託遭風控設定拒絕" in result.stdout)


def judge_sheets(work):
    import xlrd
    folder = os.path.join(work, "big")
    subprocess.run([PROGRAM, "generate", "--orders", "70000", "--seed", "3", "--output", folder], check=True)
    orders = [o for o in sys_csv(folder, "orders.csv") if o["list"] == "today"]
    names = {a["account"]: a["name"] for a in sys_csv(folder, "accounts.csv")}
    out = os.path.join(work, "big.xls")
    run("export", "--main", folder, "--list", "full", "--format", "xls", "--output", out)
    book = xlrd.open_workbook(out)
    sheets = book.sheets()
    per_sheet = 65535
    want_sheets = (len(orders) + per_sheet - 1) // per_sheet
    check("orders above a sheet", len(orders) > per_sheet, len(orders))
    check("sheet names", [s.name for s in sheets] == ["Orders"] + ["Orders (%d)" % (i + 1) for i in range(1, want_sheets)],
          [s.name for s in sheets])
    headings = [language(folder)[k] for k in FULL]
    column = headings.index(language(folder)["IDS_ORDER-ITEM_ACCOUNT_NAME"])
    row = 0
    for s in sheets:
        check(s.name + " heading row", s.row_values(0) == headings, s.row_values(0))
        check(s.name + " rows", s.nrows == min(per_sheet, len(orders) - row) + 1, s.nrows)
        for r in range(1, s.nrows):
            if row + r - 1 < len(orders):
                want = names[orders[row + r - 1]["csAccount"]]
                if s.cell_value(r, column) != want:
                    check("%s row %d account name" % (s.name, r), False, "%r, expected %r" % (s.cell_value(r, column), want))
                    break
        row += s.nrows - 1
    check("every order on a sheet", row == len(orders), "%d rows, %d orders" % (row, len(orders)))


def main():
    with tempfile.TemporaryDirectory() as work:
        folder = os.path.join(work, "main")
        shutil.copytree(SAMPLE, folder)
        if MODE.startswith("workbook-") and MODE != "workbook-sheets":
            judge_workbook(folder, work, MODE[len("workbook-"):])
        elif MODE == "html":
            judge_html(folder, work)
        elif MODE == "list-width":
            judge_list_width(folder, work)
        elif MODE == "workbook-sheets":
            judge_sheets(work)
        else:
            print("unknown mode", MODE)
            return 2
    return judging.report(failures, "%s: %d failures" % (MODE, len(failures)), most=40)


if __name__ == "__main__":
    sys.exit(main())
