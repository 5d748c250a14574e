#!/usr/bin/env python3
"""Judges the PDF files the list printer writes with independent programs.

Runs the sample printer (pdf_judges.cpp) into a temporary folder, then for every file:
  qpdf --check        finds no error;
  pdfinfo             reports the page count the layout computed and the paper of every page;
  pdftotext -layout   shows on every page each text the layout drew there (title, date,
                      headings, cells as cut, page number), in drawing order;
  pdftoppm -r 40      renders every page, and no page is blank.

Usage: pdf_judges.py PATH_TO_pdf_judges_PROGRAM
"""
import glob
import os
import re
import subprocess
import sys
import tempfile


def run(args):
    return subprocess.run(args, capture_output=True, timeout=600)


def read_manifest(path):
    files = []
    with open(path, encoding="ascii") as f:
        for line in f:
            key, _, rest = line.rstrip("\n").partition(" ")
            if key == "pdf":
                files.append({"name": rest, "texts": {}})
            elif key == "pages":
                files[-1]["pages"] = int(rest)
            elif key == "paper":
                files[-1]["paper"] = tuple(float(v) for v in rest.split())
            elif key == "text":
                page, data = rest.split(" ")
                raw = b"" if data == "-" else bytes.fromhex(data)
                files[-1]["texts"].setdefault(int(page), []).append(raw)
    return files


def as_printed(raw, embedded):
    """The text a reader extracts: UTF-8 characters that WinAnsi (cp1252) holds, and when the
    file embeds a Chinese font the ideographs too; '?' for the others and for each byte that is
    not valid UTF-8; blanks left out."""
    out = []
    for ch in raw.decode("utf-8", errors="surrogateescape"):
        try:
            ch.encode("cp1252")
            out.append(ch)
        except UnicodeEncodeError:
            out.append(ch if embedded and "\u3400" <= ch <= "\u9fff" else "?")
    return squeeze("".join(out))


def squeeze(text):
    """Without blanks: the reader spaces words by their positions, not by the blanks drawn."""
    return re.sub(r"\s+", "", text.replace("\u00a0", " "))


def judge(folder, entry):
    path = os.path.join(folder, entry["name"])
    errors = []

    check = run(["qpdf", "--check", path])
    if check.returncode != 0:
        errors.append("qpdf --check: exit %d: %s" % (check.returncode, check.stdout.decode(errors="replace")[-500:]))

    pages = entry["pages"]
    info = run(["pdfinfo", "-f", "1", "-l", str(pages), path]).stdout.decode(errors="replace")
    found = re.search(r"^Pages:\s+(\d+)", info, re.M)
    if not found or int(found.group(1)) != pages:
        errors.append("pdfinfo: pages %s, layout %d" % (found and found.group(1), pages))
    sizes = re.findall(r"^Page\s+\d+ size:\s+([\d.]+) x ([\d.]+) pts", info, re.M)
    want = entry["paper"]
    if len(sizes) != pages or any(abs(float(w) - want[0]) > 0.01 or abs(float(h) - want[1]) > 0.01 for w, h in sizes):
        errors.append("pdfinfo: page sizes %s, want %s" % (sorted(set(sizes)), want))

    fonts = run(["pdffonts", path]).stdout.decode(errors="replace")
    embedded = "CID TrueType" in fonts
    text = run(["pdftotext", "-layout", path, "-"]).stdout.decode("utf-8", errors="replace")
    page_texts = text.split("\f")
    for page in range(1, pages + 1):
        shown = squeeze(page_texts[page - 1]) if page - 1 < len(page_texts) else ""
        at = 0
        for raw in entry["texts"].get(page, []):
            want_text = as_printed(raw, embedded)
            if not want_text:
                continue
            found_at = shown.find(want_text, at)
            if found_at < 0:
                errors.append("pdftotext: page %d lacks %r after position %d" % (page, want_text[:80], at))
                break
            at = found_at + len(want_text)
        number = "%d/%d" % (page, pages)
        if number not in shown:
            errors.append("pdftotext: page %d lacks %r" % (page, number))

    prefix = os.path.join(folder, entry["name"] + "-render")
    render = run(["pdftoppm", "-r", "40", "-gray", path, prefix])
    images = sorted(glob.glob(prefix + "-*.pgm"))
    if render.returncode != 0 or len(images) != pages:
        errors.append("pdftoppm: exit %d, %d images for %d pages" % (render.returncode, len(images), pages))
    for image in images:
        with open(image, "rb") as f:
            data = f.read()
        # Binary PGM: "P5", width, height, maxval, then one byte a pixel.
        fields = re.match(rb"P5\s+(\d+)\s+(\d+)\s+(\d+)\s", data)
        pixels = data[fields.end():] if fields else b""
        if not pixels or min(pixels) > 128:
            errors.append("pdftoppm: %s is blank" % os.path.basename(image))
    return errors


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory(prefix="orderview-pdf-") as folder:
        made = run([program, folder])
        if made.returncode != 0:
            print("sample printer failed:", made.stderr.decode(errors="replace"))
            return 1
        failed = 0
        for entry in read_manifest(os.path.join(folder, "manifest.txt")):
            errors = judge(folder, entry)
            status = "ok" if not errors else "FAILED"
            print("%-16s %4d pages  %s" % (entry["name"], entry["pages"], status))
            for e in errors[:10]:
                print("    " + e)
            failed += bool(errors)
        return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
