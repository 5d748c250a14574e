#!/usr/bin/env python3
"""What a trader and a script rely on from the orderview program, theme by theme:
orderview_contract.py THEME PROGRAM SAMPLE_DIR VERSION [EXPORTTOOL]. Themes: basics, failfast,
csv, pipes, plans, signals, progress, html, print, check. Real program, real files in a temporary
folder; properties of the output (headings are the language texts, one row per record, exit
codes, files other programs read back), not its bytes."""
import csv
import io
import json
import os
import pty
import re
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import judging  # noqa: E402

THEME, PROGRAM, SAMPLE, VERSION = sys.argv[1:5]
EXPORTTOOL = sys.argv[5] if len(sys.argv) > 5 else None
HERE = os.path.dirname(os.path.abspath(__file__))
failures = []


def run(*args, **kw):
    return subprocess.run([PROGRAM, *args], capture_output=True, **kw)


def text(*args):
    return run(*args, text=True)


def check(name, condition, detail=""):
    if not condition:
        failures.append(name + (": " + str(detail)[:400] if detail else ""))


def generated(work, orders, name="big"):
    folder = os.path.join(work, name)
    if not os.path.isdir(folder):
        result = text("generate", "--orders", str(orders), "--output", folder, "--quiet")
        assert result.returncode == 0, result.stderr
        template = os.path.join(folder, "sys", "xls_head.txt")
        if not os.path.exists(template):
            shutil.copy(os.path.join(SAMPLE, "sys", "xls_head.txt"), template)
    return folder


def language(folder):
    with open(os.path.join(folder, "sys", "language.txt"), encoding="utf-8", errors="replace") as f:
        return dict(line.rstrip("\r\n").split("=", 1) for line in f if "=" in line and not line.startswith("#"))


def records(folder, name, list_name=None):
    with open(os.path.join(folder, "sys", name), encoding="utf-8", newline="") as f:
        return [r for r in csv.DictReader(f) if list_name is None or r["list"] == list_name]


def table_rows(stdout):
    lines = stdout.splitlines()
    return lines[0], lines[2:]  # headings, rule, rows


def json_lines(data):
    lines = data.decode("utf-8").splitlines() if isinstance(data, bytes) else data.splitlines()
    return [json.loads(line) for line in lines]


def basic_usage(work):
    for args, status in [((), 2), (("--help",), 0), (("nonsense",), 2), (("list", "--bogus"), 2),
                         (("list", "--list", "weekly"), 2), (("list", "--mode", "x"), 2),
                         (("export", "--format", "csv"), 2), (("check", "--answer", "maybe"), 2),
                         (("print", "--style", "fancy", "--output", "x.pdf"), 2)]:
        result = text(*args)
        check("exit status of %s" % " ".join(args), result.returncode == status,
              "%d, expected %d" % (result.returncode, status))
    # The global --lang: a missing value is a usage error, a language without its file a read error.
    for args, status, message in [(("list", "--lang"), 2, "--lang needs"), (("--lang=", "list"), 2, "--lang needs"),
                                  (("--lang", "fr", "list", "--main", SAMPLE), 1, "language.fr.txt"),
                                  (("list", "--main", SAMPLE, "--lang", "../x"), 1, "not a language name")]:
        result = text(*args)
        check("exit status of %s" % " ".join(args), result.returncode == status and message in result.stderr,
              "%d: %s" % (result.returncode, result.stderr[-200:]))
    texts = language(SAMPLE)
    for args in [("--lang", "zh-TW", "list", "--main", SAMPLE), ("list", "--lang=en", "--main", SAMPLE)]:
        result = text(*args)
        want = "委託書號" if "zh-TW" in args else texts["IDS_ORDER-ITEM_ORDERNO"]
        check(" ".join(args[:2]) + " headings", result.returncode == 0 and result.stdout.startswith(want), result.stdout[:80])


def basic_list(work):
    texts = language(SAMPLE)
    orders = records(SAMPLE, "orders.csv", "today")
    deals = records(SAMPLE, "deals.csv")
    result = text("list", "--main", SAMPLE)
    check("list exit", result.returncode == 0, result.stderr)
    headings, rows = table_rows(result.stdout)
    for key in ["IDS_ORDER-ITEM_ORDERNO", "IDS_ORDER-ITEM_COMMODITY", "IDS_ORDER-ITEM_STATUS"]:
        check("full list heading " + key, texts[key] in headings, headings)
    check("no raw ids in the list", "IDS_" not in result.stdout and "HTS_" not in result.stdout)
    check("one row per order", len(rows) == len(orders), "%d rows, %d orders" % (len(rows), len(orders)))
    for order in orders[:20]:
        check("order %s listed" % order["csOrderNo"], any(r.startswith(order["csOrderNo"]) for r in rows))

    result = text("list", "--main", SAMPLE, "--list", "deal")
    headings, rows = table_rows(result.stdout)
    check("one row per deal", len(rows) == len(deals), "%d rows, %d deals" % (len(rows), len(deals)))
    check("deal list heading", texts["IDS_ORDER-ITEM_DEALNO"] in headings, headings)

    # Mode 4 of the compact list: dealt orders only, requests hidden.
    result = text("list", "--main", SAMPLE, "--list", "simple", "--mode", "4",
                  "--columns", "IDS_ORDER-ITEM_ORDERNO,IDS_ORDER-ITEM_DEALQTY")
    _, rows = table_rows(result.stdout)
    dealt = [o for o in orders if int(o["dwDealQty"]) > 0 and o["dwOrderKind"] not in ("C", "U")]
    check("mode 4 rows", len(rows) == len(dealt), "%d rows, %d dealt orders" % (len(rows), len(dealt)))
    check("mode 4 shows dealt quantities", all(int(r.split()[-1].replace(",", "")) > 0 for r in rows))


def basic_check(work):
    orders = [o for o in records(SAMPLE, "orders.csv", "today") if o["dwOrderKind"] not in ("C", "U")]
    result = text("check", "--main", SAMPLE)
    lines = result.stdout.splitlines()[1:-1]  # the heading row and the summary around the verdicts
    check("two verdicts per order", len(lines) == 2 * len(orders), "%d lines" % len(lines))
    refused = [line for line in lines if " REFUSED" in line]
    check("refusals carry a message", all(len(line.split("REFUSED", 1)[1].strip()) > 0 for line in refused))
    answered_no = text("check", "--main", SAMPLE, "--answer", "no")
    check("--answer no refuses at least as often",
          answered_no.stdout.count(" REFUSED") >= result.stdout.count(" REFUSED"))


def basic_export(work):
    import xlrd
    texts = language(SAMPLE)
    orders = records(SAMPLE, "orders.csv", "today")
    out = os.path.join(work, "orders.csv")
    result = text("export", "--main", SAMPLE, "--format", "screen-csv", "--output", out)
    check("csv export exit", result.returncode == 0, result.stderr)
    with open(out, encoding="utf-8", errors="replace", newline="") as f:
        lines = f.read().split("\r\n")
    check("csv export lines", len(lines) == len(orders) + 2, "%d lines" % len(lines))
    heading = next(csv.reader(io.StringIO(lines[0])))
    check("csv export headings", heading[0] == texts["IDS_ORDER-ITEM_ORDERNO"] and heading[-1].endswith(" "), heading)

    out = os.path.join(work, "orders.xls")
    result = text("export", "--main", SAMPLE, "--format", "xls", "--list", "deal", "--output", out)
    check("workbook export exit", result.returncode == 0, result.stderr)
    sheet = xlrd.open_workbook(out).sheet_by_index(0)
    check("workbook rows", sheet.nrows == len(records(SAMPLE, "deals.csv")) + 1, "%d rows" % sheet.nrows)
    check("workbook headings", sheet.cell_value(0, 1) == texts["IDS_ORDER-ITEM_DEALNO"])
    qty_column = [sheet.cell_value(0, c) for c in range(sheet.ncols)].index(texts["IDS_ORDER-ITEM_DEALQTY"])
    check("workbook numbers", all(sheet.cell_type(r, qty_column) == xlrd.XL_CELL_NUMBER for r in range(1, sheet.nrows)))

    for fmt in ["txt", "html"]:
        out = os.path.join(work, "orders." + fmt)
        result = text("export", "--main", SAMPLE, "--format", fmt, "--output", out)
        check(fmt + " export", result.returncode == 0 and os.path.getsize(out) > 1000, result.stderr)
    with open(os.path.join(work, "orders.html"), encoding="utf-8") as f:
        html = f.read()
    check("html export holds the style sheet and the table", "align_border" in html and "<table" in html)


def basic_generate_and_bad_input(work):
    folder = os.path.join(work, "generated")
    result = text("generate", "--orders", "300", "--seed", "5", "--output", folder)
    check("generate exit", result.returncode == 0, result.stderr)
    orders = records(folder, "orders.csv", "today")
    listing = text("list", "--main", folder, "--list", "full")
    _, rows = table_rows(listing.stdout)
    check("generated folder lists every order", listing.returncode == 0 and len(rows) == len(orders),
          "%d rows, %d orders" % (len(rows), len(orders)))

    broken = os.path.join(work, "broken")
    shutil.copytree(folder, broken)
    with open(os.path.join(broken, "sys", "orders.csv"), "a", encoding="utf-8") as f:
        f.write("today,NOT-A-NUMBER-LINE\n")
    line = len(records(folder, "orders.csv")) + 2  # after the header line and every record
    for args in [("list",), ("check",), ("export", "--format", "csv", "--output", os.path.join(work, "never.csv")),
                 ("export", "--format", "json", "--output", "-")]:
        result = text(*args, "--main", broken)
        check("%s on a malformed file exits 1" % args[0], result.returncode == 1, str(result.returncode))
        check("%s names the file and line" % args[0], "orders.csv:%d:" % line in result.stderr, result.stderr[-300:])
        if args[0] != "check":
            check("%s into a pipe writes nothing" % " ".join(args), result.stdout == "", result.stdout[:200])
    check("no partial export file", not os.path.exists(os.path.join(work, "never.csv")))

    # Into a file, the list writes its rows as it reads them; when the day turns out malformed at
    # its last line, the file is cut back to what it held before. A good day is the piped list.
    piped = run("list", "--main", folder).stdout
    target = os.path.join(work, "list.txt")
    for mode, before in [("wb", b""), ("ab", b"kept\n")]:
        for day, status, after in [(broken, 1, before), (folder, 0, before + piped)]:
            with open(target, "wb") as f:
                f.write(before)
            with open(target, mode) as out:
                result = subprocess.run([PROGRAM, "list", "--main", day, "--quiet"], stdout=out, stderr=subprocess.PIPE)
            with open(target, "rb") as f:
                written = f.read()
            check("list into a file (%s, %s)" % (mode, os.path.basename(day)),
                  result.returncode == status and written == after, "%d, %d bytes" % (result.returncode, len(written)))


def basic_file_commands(work):
    # The workbook and compound file subcommands on a workbook the program itself exported.
    book = os.path.join(work, "deals.xls")
    text("export", "--main", SAMPLE, "--list", "deal", "--format", "xls", "--output", book)
    listing = text("cfb", "ls", book)
    check("cfb ls lists the Workbook stream", listing.returncode == 0 and "\tWorkbook" in listing.stdout, listing.stdout)
    stream = run("cfb", "cat", book, "Workbook")
    check("cfb cat gives the stream's bytes", stream.returncode == 0 and stream.stdout[:2] == b"\x09\x08")
    resaved = os.path.join(work, "resaved.xls")
    check("xls resave", text("xls", "resave", book, resaved).returncode == 0)
    check("xls dump is the same after a resave", text("xls", "dump", book).stdout == text("xls", "dump", resaved).stdout)
    check("xls usage", text("xls", "dump").returncode == 2 and text("cfb", "ls", os.path.join(work, "none")).returncode == 1)


def test_basics(work):
    for part in [basic_usage, basic_list, basic_check, basic_export, basic_generate_and_bad_input, basic_file_commands]:
        part(work)


def test_failfast(work):
    nosys = os.path.join(work, "nosys")
    os.mkdir(nosys)
    missing = os.path.join(work, "missing")
    noday = os.path.join(work, "noday")
    os.makedirs(os.path.join(noday, "sys"))
    # (arguments, exit status, what standard error must name)
    cases = [
        (("list", "--main", missing), 1, [missing, os.strerror(2)]),
        (("check", "--main", missing), 1, [missing]),
        (("export", "--main", missing, "--format", "csv", "--output", "-"), 1, [missing]),
        (("print", "--main", nosys, "--output", os.path.join(work, "x.pdf")), 1, [nosys, "sys"]),
        (("columns", "--main", nosys), 1, [nosys, "sys"]),
        (("list", "--main", noday), 1, [os.path.join(noday, "sys", "orders.csv"), os.strerror(2)]),
        (("list", "--main", noday, "--list", "deal"), 1, [os.path.join(noday, "sys", "deals.csv")]),
        (("check", "--main", noday), 1, [os.path.join(noday, "sys", "orders.csv")]),
        (("export", "--main", noday, "--format", "json", "--output", "-"), 1, ["orders.csv"]),
        (("print", "--main", noday, "--output", os.path.join(work, "x.pdf")), 1, ["orders.csv"]),
        (("list", "--main", SAMPLE, "stray"), 2, ["stray"]),
        (("export", "--main", SAMPLE, "--format", "csv", "--output", "-", "more"), 2, ["more"]),
        (("list", "-x"), 2, ["-x"]),
        (("check", "-q"), 2, ["-q"]),
        (("generate", "--orders", "5", "--output", work, "extra"), 2, ["extra"]),
        (("list", "--main", SAMPLE, "--columns", "IDS_ORDER-ITEM_ORDERNO,NOPE"), 2, ["NOPE"]),
        (("export", "--main", SAMPLE, "--columns", "NOPE", "--format", "csv", "--output", "-"), 2, ["NOPE"]),
        (("list", "--main", SAMPLE, "--mode", "08x"), 2, ["08x"]),
        (("list", "--main", SAMPLE, "--format", "yaml"), 2, ["yaml"]),
        (("--bogus",), 2, ["--bogus"]),
    ]
    for args, status, named in cases:
        result = text(*args)
        check("exit status of %s" % " ".join(args[:4]), result.returncode == status,
              "%d, expected %d: %s" % (result.returncode, status, result.stderr))
        check("%s names %s" % (" ".join(args[:2]), named), all(n in result.stderr for n in named), result.stderr)
        if status == 1:
            check("%s fails in one line" % args[0], result.stderr.count("\n") == 1, result.stderr)
        check("%s writes nothing on standard output" % args[0], result.stdout == "", result.stdout[:100])

    for command in ["list", "columns", "check", "export", "print", "generate", "xls", "cfb"]:
        for flag in ["-h", "--help"]:
            result = text(command, flag)
            check("%s %s" % (command, flag), result.returncode == 0 and "usage: orderview " + command in result.stdout,
                  result.stdout[:100])
    overview = text("-h").stdout
    check("the overview names every command", all("\n  %s " % c in overview for c in
                                                   ["list", "columns", "check", "export", "print", "generate", "xls", "cfb"]),
          overview)
    result = text("--version")
    check("--version", result.returncode == 0 and result.stdout == "orderview %s\n" % VERSION, result.stdout)

    # Numbers are decimal: 010 is ten, not eight.
    def rows(mode):
        return text("list", "--main", SAMPLE, "--list", "simple", "--mode", mode, "--format", "csv").stdout
    check("--mode 010 is 10", rows("010") == rows("10") == rows("0xa"))
    check("--mode 10 is not 8", rows("10") != rows("8"))

    # Files that cannot be written are named with the system's reason.
    read_only = os.path.join(work, "read-only.csv")
    with open(read_only, "w") as f:
        f.write("old")
    os.chmod(read_only, 0o444)
    for fmt in ["csv", "screen-csv", "html", "xls"]:
        for target, reason in [(os.path.join(work, "no", "x.out"), os.strerror(2)), (work, os.strerror(21)),
                               (read_only, os.strerror(13))]:
            result = text("export", "--main", SAMPLE, "--format", fmt, "--output", target)
            check("export %s to %s fails" % (fmt, target), result.returncode == 1, result.stderr)
            check("export %s to %s names it" % (fmt, target), target + ": " + reason in result.stderr, result.stderr)
    check("a read-only file stays", open(read_only).read() == "old")
    result = text("print", "--main", SAMPLE, "--output", os.path.join(work, "no", "x.pdf"))
    check("print to a missing folder", result.returncode == 1 and os.strerror(2) in result.stderr, result.stderr)
    result = text("xls", "dump", os.path.join(work, "none.xls"))
    check("xls dump names a missing file", result.returncode == 1 and os.strerror(2) in result.stderr, result.stderr)
    result = text("cfb", "ls", work)
    check("cfb ls names a folder", result.returncode == 1 and os.strerror(21) in result.stderr, result.stderr)

    # A list past a sheet's 65,535 rows goes on in further sheets (their contents are judged by
    # xlrd in interop.zh_workbook-sheets); the closing line counts every row.
    big = generated(work, 70000)
    count = len(json_lines(text("list", "--main", big, "--format", "json", "--quiet").stdout)) - 1
    result = text("export", "--main", big, "--format", "xls", "--output", os.path.join(work, "big.xls"))
    check("a list past a sheet's rows", result.returncode == 0 and "{:,}".format(count) in result.stderr,
          result.stderr)


def read_csv(data):
    return list(csv.reader(io.StringIO(data.decode("utf-8"), newline="")))


def test_csv(work):
    # A main folder whose account names need quoting.
    folder = os.path.join(work, "quoted")
    shutil.copytree(SAMPLE, folder)
    names = ['Chen, "Big" Futures', 'Lin "Quoted" Futures']
    path = os.path.join(folder, "sys", "accounts.csv")
    with open(path, encoding="utf-8", newline="") as f:
        records = list(csv.reader(f))
    records[1][-1], records[2][-1] = names
    with open(path, "w", encoding="utf-8", newline="") as f:
        csv.writer(f, lineterminator="\n").writerows(records)
    for kind in ["full", "simple", "deal"]:
        for main in [SAMPLE, folder]:
            out = os.path.join(work, "list.csv")
            result = run("export", "--main", main, "--list", kind, "--format", "csv", "--output", out)
            check("csv export of %s" % kind, result.returncode == 0, result.stderr)
            data = open(out, "rb").read()
            rows = read_csv(data)
            reference = json_lines(run("list", "--main", main, "--list", kind, "--format", "json").stdout)
            keys = [c["key"] for c in reference[0]["columns"]]
            check("%s csv heading" % kind, rows[0] == [c["heading"] for c in reference[0]["columns"]], rows[0])
            # Row for row and field for field the list's texts: the counts of rows and fields too.
            check("%s csv texts" % kind, [[o[k] for k in keys] for o in reference[1:]] == rows[1:],
                  "%d rows, %d listed" % (len(rows) - 1, len(reference) - 1))
            unquoted = re.sub(rb'"(?:[^"]|"")*"', b"", data)
            check("%s csv records end in CRLF" % kind, data.endswith(b"\r\n") and
                  unquoted.count(b"\n") == unquoted.count(b"\r\n") == len(rows))
            grouped = [cell for row in rows for cell in row if "," in cell]
            check("%s csv holds grouped numbers" % kind, kind == "deal" or grouped, kind)
            check("%s csv quotes exactly where needed" % kind,
                  data.count(b'"') == sum(2 + 2 * cell.count('"') for row in rows for cell in row
                                          if re.search(r'[",\r\n]', cell)))
        flat = [cell for row in read_csv(run("list", "--main", folder, "--list", kind, "--format", "csv").stdout)
                for cell in row]
        check("%s: quoted account names come back" % kind, all(n in flat for n in names),
              [c for c in flat if "Futures" in c][:4])
    plain = run("export", "--main", SAMPLE, "--format", "csv", "--output", "-").stdout
    bom = run("export", "--main", SAMPLE, "--format", "csv", "--bom", "--output", "-").stdout
    check("--bom adds a byte-order mark", bom == b"\xef\xbb\xbf" + plain)
    check("no byte-order mark by default", not plain.startswith(b"\xef\xbb\xbf"))
    check("--bom goes with csv only", text("list", "--main", SAMPLE, "--bom").returncode == 2)

    # The screen's own exports, byte for byte what the library writes for the same list.
    if EXPORTTOOL:
        for kind in ["full", "deal"]:
            rows = json_lines(run("list", "--main", SAMPLE, "--list", kind, "--format", "json").stdout)
            keys = [c["key"] for c in rows[0]["columns"]]
            plan = {"columns": [[c["heading"], 0] for c in rows[0]["columns"]],
                    "rows": [[r[k] for k in keys] for r in rows[1:]]}
            plan_path = os.path.join(work, "plan.json")
            with open(plan_path, "w", encoding="utf-8") as f:
                json.dump(plan, f, ensure_ascii=False)
            for fmt, ext in [("screen-csv", "csv"), ("screen-txt", "txt")]:
                ours = os.path.join(work, "ours." + ext)
                theirs = os.path.join(work, "theirs." + ext)
                result = run("export", "--main", SAMPLE, "--list", kind, "--format", fmt, "--output", ours)
                env = dict(os.environ, ORDERVIEW_SAVE_AS=theirs, ORDERVIEW_HOME=SAMPLE)
                made = subprocess.run([EXPORTTOOL, "text", plan_path], env=env, capture_output=True)
                check("%s %s written" % (kind, fmt), result.returncode == 0 and made.returncode == 0,
                      result.stderr + made.stderr)
                if made.returncode == 0:
                    check("%s %s is the library's export" % (kind, fmt),
                          open(ours, "rb").read() == open(theirs, "rb").read())


def test_pipes(work):
    for fmt in ["csv", "txt", "html", "json", "screen-csv", "screen-txt"]:
        out = os.path.join(work, "out." + fmt)
        to_file = run("export", "--main", SAMPLE, "--format", fmt, "--output", out)
        to_pipe = run("export", "--main", SAMPLE, "--format", fmt, "--output", "-")
        check("%s to standard output" % fmt, to_pipe.returncode == 0 and to_file.returncode == 0, to_pipe.stderr)
        check("%s on standard output is the file" % fmt, to_pipe.stdout == open(out, "rb").read())
        check("%s closing line" % fmt, re.fullmatch(rb"wrote [0-9,]+ rows to standard output\n", to_pipe.stderr),
              to_pipe.stderr)
        check("%s leaves no staging file" % fmt, not [n for n in os.listdir(work) if ".tmp" in n])
    listing = json_lines(run("list", "--main", SAMPLE, "--format", "json").stdout)
    table = text("list", "--main", SAMPLE).stdout.splitlines()
    check("json: a column line and one line per row", len(listing) == len(table) - 1, len(listing))
    columns = listing[0]["columns"]
    catalogue = dict(line.split("\t")[:2] for line in text("columns", "--main", SAMPLE, "--list", "full").stdout.splitlines())
    check("json columns carry their headings", all(catalogue.get(c["key"]) == c["heading"] for c in columns), columns)
    check("json rows are keyed by item key", all(list(r) == [c["key"] for c in columns] for r in listing[1:]))
    texts = language(SAMPLE)
    check("columns lists headings from the language file",
          all(texts.get(k.strip(), k) == h for k, h in catalogue.items()) and len(catalogue) > len(columns))
    chosen = ["IDS_ORDER-ITEM_STATUS", "IDS_ORDER-ITEM_ORDERNO"]
    narrow = json_lines(run("list", "--main", SAMPLE, "--columns", ",".join(chosen), "--format", "json").stdout)
    check("--columns picks the json keys in order", [c["key"] for c in narrow[0]["columns"]] == chosen and
          [list(r) for r in narrow[1:]] == [chosen] * (len(narrow) - 1))
    check("json texts are those of the table", all(r["IDS_ORDER-ITEM_ORDERNO"] in table[i + 2]
                                                    for i, r in enumerate(listing[1:])))


def test_plans(work):
    cases = [(os.path.join(HERE, "regressions", name), None) for name in sorted(os.listdir(os.path.join(HERE, "regressions")))]
    cases += [(None, b""), (None, b"[[["), (None, b"{}"), (None, b'{"sheets": []}'), (None, b'{"sheets": {}}'),
              (None, b'{"sheets":[{"name":"a","cells":[[70000,0,"int",1]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,256,"int",1]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[-1,0,"int",1]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,0,"int",2.5]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,0,"double",1e400]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,0,"double","x"]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,0,"text","\xe4\xb8\xad"]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,0,"blob",1]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":[[0,0,"int"]]}]}'),
              (None, b'{"sheets":[{"name":"a","cells":{}}]}'),
              (None, b'{"sheets":[{"name":"a"},{"name":"a"}]}'),
              (None, b'{"sheets":[{"name":"a/b?"}]}'),
              (None, b"[" * 200000 + b"]" * 200000)]
    out = os.path.join(work, "plan.xls")
    for path, content in cases:
        if path is None:
            path = os.path.join(work, "plan.json")
            with open(path, "wb") as f:
                f.write(content)
        result = text("xls", "make", out, path)
        label = os.path.basename(path) if content is None else repr(content[:60])
        check("bad plan %s is a usage error" % label, result.returncode == 2, result.returncode)
        check("bad plan %s is explained" % label, result.stderr.startswith("orderview xls: " + path + ": ") and
              result.stderr.count("\n") == 1, result.stderr)
        check("bad plan %s writes nothing" % label, not os.path.exists(out))
    good = os.path.join(work, "good.json")
    with open(good, "w", encoding="utf-8") as f:
        json.dump({"sheets": [{"name": "A", "cells": [[0, 0, "int", -2147483648], [1, 1, "double", 2.5],
                                                       [2, 2, "text", "caf\u00e9"], [3, 3, "wtext", "\u4e2d\u6587"]]},
                              {"name": "B", "cells": [[65535, 255, "int", 2147483647]]}]}, f)
    result = text("xls", "make", out, good)
    dumped = json.loads(text("xls", "dump", out).stdout) if result.returncode == 0 else {}
    sheets = dumped.get("sheets", [{}, {}])
    check("a good plan makes its workbook", result.returncode == 0 and [s.get("name") for s in sheets] == ["A", "B"] and
          [[r, c, v] for r, c, _, v in sheets[0]["cells"]] == [[0, 0, -2147483648], [1, 1, 2.5], [2, 2, "caf\u00e9"],
                                                               [3, 3, "\u4e2d\u6587"]] and
          [k for _, _, k, _ in sheets[0]["cells"]][2:] == ["text", "wtext"] and
          [[r, c, v] for r, c, _, v in sheets[1]["cells"]] == [[65535, 255, 2147483647]],
          result.stderr + str(dumped)[:300])
    cfb = os.path.join(work, "x.cfb")
    for items in [["a=-1"], ["a=99999999999"], ["a=1x"], ["a="], ["=5"], ["a"], ["a=1", "a=2"], ["a=1", "a/b=2"],
                  ["/a=1"], ["a//b=1"], ["x" * 32 + "=1"]]:
        result = text("cfb", "make", cfb, *items)
        check("cfb make %s is a usage error" % items, result.returncode == 2 and result.stderr.count("\n") == 1,
              "%d %s" % (result.returncode, result.stderr))
        check("cfb make %s writes nothing" % items, not os.path.exists(cfb))
    result = text("cfb", "make", cfb, "a=4096", "d/b=70000", "x" * 31 + "=0")
    listing = text("cfb", "ls", cfb).stdout
    check("cfb make with good sizes", result.returncode == 0 and "S\t70000\td/b\n" in listing, result.stderr + listing)


def temporaries(folder, name):
    return [n for n in os.listdir(folder) if n.startswith(name + ".tmp")]


def interrupt(args, sig, ready, settle=0.0, env=None):
    """Starts the program and sends it `sig` `settle` seconds after `ready()` holds (or after it
    ended, or a minute); returns its exit status and whether `ready()` held."""
    process = subprocess.Popen([PROGRAM, *args], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env=env)
    deadline = time.time() + 60
    while not ready() and process.poll() is None and time.time() < deadline:
        time.sleep(0.002)
    seen = bool(ready())
    time.sleep(settle)
    process.send_signal(sig)
    return process.wait(60), seen


def test_signals(work):
    big = generated(work, 150000)
    jobs = [("export", "csv", "o.csv"), ("export", "screen-csv", "s.csv"), ("export", "json", "o.json"),
            ("export", "html", "o.html"), ("print", None, "o.pdf")]
    for number, (command, fmt, name) in enumerate(jobs):
        for sig in [signal.SIGINT, signal.SIGTERM]:
            target = os.path.join(work, name)
            with open(target, "w") as f:
                f.write("the old file")
            args = ["--format", fmt] if fmt else []
            status, seen = interrupt([command, "--main", big, *args, "--output", target, "--quiet"], sig,
                                     lambda: temporaries(work, name), 0.05)
            label = "%s %s on %s" % (command, fmt or "", sig.name)
            check(label + ": a temporary file was being written", seen)
            check(label + ": ended by the signal", status == -sig, status)
            check(label + ": the old file stays", open(target).read() == "the old file")
            check(label + ": no temporary file left", not temporaries(work, name), temporaries(work, name))

    # Standard output: the library's export is staged in TMPDIR, and the staged copy goes too.
    staging = os.path.join(work, "staging")
    os.mkdir(staging)
    for fmt in ["screen-csv", "html"]:
        status, _ = interrupt(["export", "--main", big, "--format", fmt, "--output", "-", "--quiet"], signal.SIGTERM,
                              lambda: [n for n in os.listdir(staging) if ".tmp" in n],
                              env=dict(os.environ, TMPDIR=staging))
        check("%s to standard output on SIGTERM" % fmt, status == -signal.SIGTERM, status)
        check("%s to standard output leaves nothing in TMPDIR" % fmt, os.listdir(staging) == [], os.listdir(staging))

    # generate: the folder keeps its old files.
    folder = generated(work, 50, "regenerated")
    sys_folder = os.path.join(folder, "sys")
    before = {n: open(os.path.join(sys_folder, n), "rb").read() for n in os.listdir(sys_folder)}
    for sig in [signal.SIGINT, signal.SIGTERM]:
        status, _ = interrupt(["generate", "--orders", "3000000", "--output", folder, "--quiet"], sig,
                              lambda: temporaries(sys_folder, "orders.csv"), 0.2)
        check("generate on %s: ended by the signal" % sig.name, status == -sig, status)
        after = {n: open(os.path.join(sys_folder, n), "rb").read() for n in os.listdir(sys_folder)}
        check("generate on %s: the old files stay, no temporary file left" % sig.name, after == before,
              sorted(set(after) ^ set(before)))
    with open(os.path.join(sys_folder, "orders.csv.tmpQ1w2E3"), "w") as f:
        f.write("stale")
    result = text("generate", "--orders", "60", "--output", folder, "--quiet")
    check("generate removes stale temporary files", result.returncode == 0 and
          sorted(os.listdir(sys_folder)) == sorted(before), sorted(os.listdir(sys_folder)))

    # A temporary file of an earlier crash goes with the next write of the same target only.
    target = os.path.join(work, "stale.csv")
    stale = [target + ".tmpAb12Z9", target + ".tmpzzzzzz"]
    kept = [target + ".tmp", target + ".tmpAb12", target + ".tmpAb12Z9x", os.path.join(work, "other.csv.tmpAb12Z9")]
    for fmt in ["csv", "screen-csv", "xls"]:
        for path in stale + kept:
            with open(path, "w") as f:
                f.write("x")
        result = text("export", "--main", SAMPLE, "--format", fmt, "--output", target)
        check("export %s over stale files" % fmt, result.returncode == 0, result.stderr)
        check("%s: stale temporary files removed" % fmt, not any(os.path.exists(p) for p in stale))
        check("%s: other files kept" % fmt, all(os.path.exists(p) for p in kept))


def run_on_terminal(args, stdout_to_terminal=False):
    """Runs the program with standard error (and optionally standard output) on a pseudo-terminal;
    returns (exit status, terminal bytes, standard output bytes)."""
    master, slave = pty.openpty()
    out = None if stdout_to_terminal else subprocess.PIPE
    process = subprocess.Popen([PROGRAM, *args], stdout=slave if stdout_to_terminal else out, stderr=slave)
    os.close(slave)
    seen, stdout = b"", b""
    if out:
        os.set_blocking(process.stdout.fileno(), False)
    while True:
        readers = [master] + ([process.stdout] if out else [])
        ready, _, _ = select.select(readers, [], [], 0.1)
        if master in ready:
            try:
                chunk = os.read(master, 65536)
            except OSError:
                chunk = b""
            seen += chunk
            if not chunk and process.poll() is not None:
                break
        if out and process.stdout in ready:
            stdout += process.stdout.read() or b""
        if not ready and process.poll() is not None:
            break
    if out:
        stdout += process.stdout.read() or b""
    os.close(master)
    return process.wait(), seen, stdout


def test_progress(work):
    # Large enough that every command here still runs past the bar's one-second delay.
    big = generated(work, 400000, "progress")
    target = os.path.join(work, "p.csv")
    status, seen, _ = run_on_terminal(["export", "--main", big, "--format", "csv", "--output", target])
    count = sum(1 for _ in open(target, encoding="utf-8", newline="")) - 1
    check("export draws a bar on a terminal", status == 0 and b"[###" in seen, seen[-200:])
    tail = seen.rsplit(b"#", 1)[-1]
    check("the bar is cleared before the closing line", re.search(
        rb"\r +\r(\r\n)?wrote %s rows to %s\r?\n$" % ("{:,}".format(count).encode(), re.escape(target.encode())),
        tail) is not None, tail[-200:])
    status, seen, _ = run_on_terminal(["export", "--main", big, "--format", "csv", "--output", target, "--quiet"])
    check("--quiet draws nothing", status == 0 and seen == b"", seen[:200])
    result = run("export", "--main", big, "--format", "csv", "--output", target)
    check("no bar when standard error is not a terminal", b"\r" not in result.stderr and
          result.stderr.startswith(b"wrote "), result.stderr[:200])
    status, seen, _ = run_on_terminal(["print", "--main", big, "--output", os.path.join(work, "p.pdf")])
    check("print draws a bar", status == 0 and b"[###" in seen and b"wrote " in seen, seen[-200:])
    status, seen, _ = run_on_terminal(["generate", "--orders", "400000", "--output", os.path.join(work, "g")])
    check("generate draws a bar", status == 0 and b"[###" in seen and seen.endswith(
        b"wrote 400,000 orders to %s\r\n" % os.path.join(work, "g").encode()), seen[-200:])
    shutil.rmtree(os.path.join(work, "g"))
    status, seen, stdout = run_on_terminal(["check", "--main", big])
    check("a long check draws a bar", b"[###" in seen and stdout.rstrip().endswith(b"refused"), seen[-200:])
    # Rows on the terminal the bar would be on: no bar between them.
    shutil.rmtree(big)
    big = generated(work, 150000)
    status, seen, _ = run_on_terminal(["list", "--main", big, "--format", "csv"], stdout_to_terminal=True)
    check("list on the terminal", status == 0 and seen.count(b"\n") > 150000)
    heading = seen.find(b"Order no.")
    check("no bar among rows on the terminal", heading >= 0 and b"[###" not in seen[heading:], seen[heading:][:200])
    bar = seen.rfind(b"[###", 0, max(heading, 0))
    check("the reading bar is cleared before the first row",
          bar < 0 or re.search(rb"\r +\r$", seen[bar:heading]) is not None, seen[bar:heading][-100:])


def test_html(work):
    folder = os.path.join(work, "no-template")
    shutil.copytree(SAMPLE, folder)
    template = os.path.join(folder, "sys", "xls_head.txt")
    os.remove(template)
    out = os.path.join(work, "o.html")
    for target in [out, "-"]:
        result = run("export", "--main", folder, "--format", "html", "--output", target)
        check("html export without a template to %s is refused" % target, result.returncode == 1, result.returncode)
        check("the refusal names the template", template.encode() in result.stderr and
              os.strerror(2).encode() in result.stderr and result.stderr.count(b"\n") == 1, result.stderr)
        check("nothing written", result.stdout == b"" and not os.path.exists(out))
    result = run("export", "--main", SAMPLE, "--format", "html", "--output", out)
    head = open(os.path.join(SAMPLE, "sys", "xls_head.txt"), "rb").read()
    check("html export with the template", result.returncode == 0 and head in open(out, "rb").read())


def pdf_pages(path):
    result = subprocess.run(["pdftotext", "-layout", path, "-"], capture_output=True, text=True)
    return result.stdout.split("\f")[:-1] if result.returncode == 0 else []


def test_print(work):
    out = os.path.join(work, "o.pdf")
    for kind in ["full", "simple", "deal"]:
        listing = json_lines(run("list", "--main", SAMPLE, "--list", kind, "--format", "json").stdout)
        headings = [c["heading"] for c in listing[0]["columns"]]
        for style in ["plain", "grid", "inventory"]:
            result = text("print", "--main", SAMPLE, "--list", kind, "--style", style, "--output", out, "--quiet")
            pages = pdf_pages(out)
            check("print %s %s" % (kind, style), result.returncode == 0 and pages, result.stderr)
            # The sample's columns fit landscape A4 at 6 points or more: every page shows them all.
            missing = [(n, h) for n, page in enumerate(pages) for h in headings if h not in page]
            check("print %s %s: every column on every page" % (kind, style), not missing, missing[:5])

    # Inventory totals: labelled by the language, request rows left out, the list's thousands
    # separators.
    folder = os.path.join(work, "labelled")
    shutil.copytree(SAMPLE, folder)
    with open(os.path.join(folder, "sys", "language.txt"), encoding="utf-8") as f:
        language = f.read()
    check("the sample language has the totals label", "\nIDS_ORDER-COMMON_TOTAL=Total\n" in language)
    with open(os.path.join(folder, "sys", "language.txt"), "w", encoding="utf-8") as f:
        f.write(language.replace("IDS_ORDER-COMMON_TOTAL=Total", "IDS_ORDER-COMMON_TOTAL=Subtotal"))
    rows = json_lines(run("list", "--main", folder, "--format", "json").stdout)[1:]
    orders = [r for r in rows if not re.search(r"-[CU][0-9]+$", r["IDS_ORDER-ITEM_ORDERNO"])]
    check("the sample has request rows", len(orders) < len(rows))
    expected = ["{:,}".format(sum(int(r[key].replace(",", "")) for r in orders))
                for key in ["IDS_ORDER-ITEM_ORDERQTY", "IDS_ORDER-ITEM_DEALQTY", "IDS_ORDER-ITEM_CANCELQTY"]]
    result = text("print", "--main", folder, "--style", "inventory", "--output", out, "--quiet")
    pages = pdf_pages(out)
    totals = [line.split() for line in (pages[-1] if pages else "").splitlines() if line.startswith("Subtotal")]
    check("one totals row, labelled by the language", result.returncode == 0 and len(totals) == 1, totals)
    check("totals of the orders without requests", totals and totals[0][1:] == expected, (totals, expected))


def test_check(work):
    for main in [SAMPLE, generated(work, 300, "small")]:
        result = text("check", "--main", main)
        lines = result.stdout.splitlines()
        check("check heading row", lines[0].split() == ["Order", "Account", "Commodity", "Check", "Verdict", "Message"],
              lines[0])
        rows = lines[1:-1]
        passed = sum(1 for line in rows if line.split()[4] == "PASS")
        refused = sum(1 for line in rows if line.split()[4] == "REFUSED")
        check("one verdict per row", passed + refused == len(rows))
        check("check summary", lines[-1] == "%d checks: %d passed, %d refused" % (len(rows), passed, refused), lines[-1])
        check("no trailing blanks", all(line == line.rstrip() for line in lines))
        check("exit status follows the verdicts", result.returncode == (1 if refused else 0))
        as_json = text("check", "--main", main, "--format", "json", "--quiet")
        records = json_lines(as_json.stdout)
        keys = [c["key"] for c in records[0]["columns"]]
        check("json check columns", keys == ["order", "account", "commodity", "check", "verdict", "message"], keys)
        check("json check rows", len(records) - 1 == len(rows) and all(list(r) == keys for r in records[1:]))
        check("json verdicts are the table's", [r["verdict"] for r in records[1:]] == [line.split()[4] for line in rows])
        check("json refusals carry messages", all(r["message"] for r in records[1:] if r["verdict"] == "REFUSED"))
        check("json check status", as_json.returncode == result.returncode and as_json.stderr == "")


def main():
    with tempfile.TemporaryDirectory() as work:
        globals()["test_" + THEME](work)
    return judging.report(failures, "orderview %s: %d failures" % (THEME, len(failures)), most=None)


if __name__ == "__main__":
    sys.exit(main())
