#!/usr/bin/env python3
"""End-to-end tests of the orderview program on the sample main folder and on generated ones:
orderview_cli.py PROGRAM SAMPLE_DIR. Checks properties of the output (headings are the language
texts, one row per record, filters, exit codes, files other programs read back), not its bytes."""
import csv
import io
import os
import shutil
import subprocess
import sys
import tempfile

import xlrd

PROGRAM, SAMPLE = sys.argv[1], sys.argv[2]
failures = []


def run(*args, env=None):
    return subprocess.run([PROGRAM, *args], capture_output=True, text=True, env=env)


def check(name, condition, detail=""):
    if not condition:
        failures.append(name + (": " + detail if detail else ""))


def language(folder):
    texts = {}
    with open(os.path.join(folder, "sys", "language.txt"), encoding="utf-8", errors="replace") as f:
        for line in f:
            if "=" in line and not line.startswith("#"):
                key, text = line.rstrip("\r\n").split("=", 1)
                texts[key.strip()] = text
    return texts


def records(folder, name, list_name=None):
    with open(os.path.join(folder, "sys", name), encoding="utf-8", newline="") as f:
        rows = list(csv.DictReader(f))
    return [r for r in rows if list_name is None or r["list"] == list_name]


def table_rows(stdout):
    lines = stdout.splitlines()
    return lines[0], lines[2:]  # headings, rule, rows


def test_usage():
    for args, status in [((), 2), (("--help",), 0), (("nonsense",), 2), (("list", "--bogus"), 2),
                         (("list", "--list", "weekly"), 2), (("list", "--mode", "x"), 2),
                         (("export", "--format", "csv"), 2), (("check", "--answer", "maybe"), 2),
                         (("print", "--style", "fancy", "--output", "x.pdf"), 2)]:
        result = run(*args)
        check("exit status of %s" % " ".join(args), result.returncode == status,
              "%d, expected %d" % (result.returncode, status))
    # The global --lang: a missing value is a usage error, a language without its file a read error.
    for args, status, message in [(("list", "--lang"), 2, "--lang needs"), (("--lang=", "list"), 2, "--lang needs"),
                                  (("--lang", "fr", "list", "--main", SAMPLE), 1, "language.fr.txt"),
                                  (("list", "--main", SAMPLE, "--lang", "../x"), 1, "not a language name")]:
        result = run(*args)
        check("exit status of %s" % " ".join(args), result.returncode == status and message in result.stderr,
              "%d: %s" % (result.returncode, result.stderr[-200:]))
    texts = language(SAMPLE)
    for args in [("--lang", "zh-TW", "list", "--main", SAMPLE), ("list", "--lang=en", "--main", SAMPLE)]:
        result = run(*args)
        want = "委託書號" if "zh-TW" in args else texts["IDS_ORDER-ITEM_ORDERNO"]
        check(" ".join(args[:2]) + " headings", result.returncode == 0 and result.stdout.startswith(want), result.stdout[:80])
    for command in ["list", "check", "export", "print", "generate", "xls", "cfb"]:
        result = run(command, "--help")
        check(command + " --help", result.returncode == 0 and "usage: orderview " + command in result.stdout,
              result.stdout[:100])


def test_list():
    texts = language(SAMPLE)
    orders = records(SAMPLE, "orders.csv", "today")
    deals = records(SAMPLE, "deals.csv")
    result = run("list", "--main", SAMPLE)
    check("list exit", result.returncode == 0, result.stderr)
    headings, rows = table_rows(result.stdout)
    for key in ["IDS_ORDER-ITEM_ORDERNO", "IDS_ORDER-ITEM_COMMODITY", "IDS_ORDER-ITEM_STATUS"]:
        check("full list heading " + key, texts[key] in headings, headings)
    check("no raw ids in the list", "IDS_" not in result.stdout and "HTS_" not in result.stdout)
    check("one row per order", len(rows) == len(orders), "%d rows, %d orders" % (len(rows), len(orders)))
    for order in orders[:20]:
        check("order %s listed" % order["csOrderNo"], any(r.startswith(order["csOrderNo"]) for r in rows))

    result = run("list", "--main", SAMPLE, "--list", "deal")
    headings, rows = table_rows(result.stdout)
    check("one row per deal", len(rows) == len(deals), "%d rows, %d deals" % (len(rows), len(deals)))
    check("deal list heading", texts["IDS_ORDER-ITEM_DEALNO"] in headings, headings)

    # Mode 4 of the compact list: dealt orders only, requests hidden.
    result = run("list", "--main", SAMPLE, "--list", "simple", "--mode", "4",
                 "--columns", "IDS_ORDER-ITEM_ORDERNO,IDS_ORDER-ITEM_DEALQTY")
    _, rows = table_rows(result.stdout)
    dealt = [o for o in orders if int(o["dwDealQty"]) > 0 and o["dwOrderKind"] not in ("C", "U")]
    check("mode 4 rows", len(rows) == len(dealt), "%d rows, %d dealt orders" % (len(rows), len(dealt)))
    check("mode 4 shows dealt quantities", all(int(r.split()[-1].replace(",", "")) > 0 for r in rows))


def test_check():
    orders = [o for o in records(SAMPLE, "orders.csv", "today") if o["dwOrderKind"] not in ("C", "U")]
    result = run("check", "--main", SAMPLE)
    lines = result.stdout.splitlines()[1:-1]  # the heading row and the summary around the verdicts
    check("two verdicts per order", len(lines) == 2 * len(orders), "%d lines" % len(lines))
    refused = [line for line in lines if " REFUSED" in line]
    check("check exit status follows the verdicts", result.returncode == (1 if refused else 0))
    check("refusals carry a message", all(len(line.split("REFUSED", 1)[1].strip()) > 0 for line in refused))
    answered_no = run("check", "--main", SAMPLE, "--answer", "no")
    check("--answer no refuses at least as often",
          answered_no.stdout.count(" REFUSED") >= result.stdout.count(" REFUSED"))


def test_export(work):
    texts = language(SAMPLE)
    orders = records(SAMPLE, "orders.csv", "today")
    out = os.path.join(work, "orders.csv")
    result = run("export", "--main", SAMPLE, "--format", "screen-csv", "--output", out)
    check("csv export exit", result.returncode == 0, result.stderr)
    with open(out, encoding="utf-8", errors="replace", newline="") as f:
        lines = f.read().split("\r\n")
    check("csv export lines", len(lines) == len(orders) + 2, "%d lines" % len(lines))
    heading = next(csv.reader(io.StringIO(lines[0])))
    check("csv export headings", heading[0] == texts["IDS_ORDER-ITEM_ORDERNO"] and heading[-1].endswith(" "), heading)

    out = os.path.join(work, "orders.xls")
    result = run("export", "--main", SAMPLE, "--format", "xls", "--list", "deal", "--output", out)
    check("workbook export exit", result.returncode == 0, result.stderr)
    sheet = xlrd.open_workbook(out).sheet_by_index(0)
    check("workbook rows", sheet.nrows == len(records(SAMPLE, "deals.csv")) + 1, "%d rows" % sheet.nrows)
    check("workbook headings", sheet.cell_value(0, 1) == texts["IDS_ORDER-ITEM_DEALNO"])
    qty_column = [sheet.cell_value(0, c) for c in range(sheet.ncols)].index(texts["IDS_ORDER-ITEM_DEALQTY"])
    check("workbook numbers", all(sheet.cell_type(r, qty_column) == xlrd.XL_CELL_NUMBER for r in range(1, sheet.nrows)))

    for fmt in ["txt", "html"]:
        out = os.path.join(work, "orders." + fmt)
        result = run("export", "--main", SAMPLE, "--format", fmt, "--output", out)
        check(fmt + " export", result.returncode == 0 and os.path.getsize(out) > 1000, result.stderr)
    with open(os.path.join(work, "orders.html"), encoding="utf-8") as f:
        html = f.read()
    check("html export holds the style sheet and the table", "align_border" in html and "<table" in html)

    result = run("export", "--main", SAMPLE, "--format", "csv", "--output", os.path.join(work, "missing", "x.csv"))
    check("export to a missing folder fails", result.returncode == 1 and os.strerror(2) in result.stderr)


def test_print(work):
    out = os.path.join(work, "orders.pdf")
    result = run("print", "--main", SAMPLE, "--style", "grid", "--output", out)
    check("print exit", result.returncode == 0, result.stderr)
    info = subprocess.run(["pdfinfo", out], capture_output=True, text=True)
    check("printed PDF", info.returncode == 0 and "Pages:" in info.stdout, info.stderr)


def test_generate_and_bad_input(work):
    folder = os.path.join(work, "generated")
    result = run("generate", "--orders", "300", "--seed", "5", "--output", folder)
    check("generate exit", result.returncode == 0, result.stderr)
    orders = records(folder, "orders.csv", "today")
    listing = run("list", "--main", folder, "--list", "full")
    _, rows = table_rows(listing.stdout)
    check("generated folder lists every order", listing.returncode == 0 and len(rows) == len(orders),
          "%d rows, %d orders" % (len(rows), len(orders)))

    broken = os.path.join(work, "broken")
    shutil.copytree(folder, broken)
    with open(os.path.join(broken, "sys", "orders.csv"), "a", encoding="utf-8") as f:
        f.write("today,NOT-A-NUMBER-LINE\n")
    line = len(orders) + len(records(folder, "orders.csv")) - len(orders) + 2
    for args in [("list",), ("check",), ("export", "--format", "csv", "--output", os.path.join(work, "never.csv"))]:
        result = run(*args, "--main", broken)
        check("%s on a malformed file exits 1" % args[0], result.returncode == 1, str(result.returncode))
        check("%s names the file and line" % args[0], "orders.csv:%d:" % line in result.stderr, result.stderr[-300:])
    check("no partial export file", not os.path.exists(os.path.join(work, "never.csv")))


def test_file_commands(work):
    # The workbook and compound file subcommands on a workbook the program itself exported.
    book = os.path.join(work, "deals.xls")
    run("export", "--main", SAMPLE, "--list", "deal", "--format", "xls", "--output", book)
    listing = run("cfb", "ls", book)
    check("cfb ls lists the Workbook stream", listing.returncode == 0 and "\tWorkbook" in listing.stdout, listing.stdout)
    stream = subprocess.run([PROGRAM, "cfb", "cat", book, "Workbook"], capture_output=True)
    check("cfb cat gives the stream's bytes", stream.returncode == 0 and stream.stdout[:2] == b"\x09\x08")
    resaved = os.path.join(work, "resaved.xls")
    check("xls resave", run("xls", "resave", book, resaved).returncode == 0)
    check("xls dump is the same after a resave", run("xls", "dump", book).stdout == run("xls", "dump", resaved).stdout)
    check("xls usage", run("xls", "dump").returncode == 2 and run("cfb", "ls", os.path.join(work, "none")).returncode == 1)


def main():
    with tempfile.TemporaryDirectory() as work:
        test_usage()
        test_list()
        test_check()
        test_export(work)
        test_print(work)
        test_generate_and_bad_input(work)
        test_file_commands(work)
    for failure in failures:
        print("FAIL:", failure)
    print("orderview: %d failures" % len(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
