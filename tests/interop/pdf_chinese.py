#!/usr/bin/env python3
"""Chinese names printed to PDF by the orderview program, judged by poppler and qpdf.

A copy of the sample main folder gets Chinese account names; `orderview print` prints its order
list with a Chinese title twice: with the system's Chinese font, and with ORDERVIEW_PRINT_FONT
naming a file that is not a font. Then:
  pdftotext        extracts every name, exactly, in the rows' order (as `orderview list` shows);
  pdffonts         shows the Chinese font embedded as a subset (emb yes, sub yes, uni yes);
  pdfinfo          shows the Chinese title;
  pdftoppm         renders a name with ink, and other pixels than the '?' of the file printed
                   without a font, which extracts as '?' and says so once on standard error;
  qpdf --check     passes for both.
Skips (exit 0) when neither fonts-arphic-uming nor fonts-droid-fallback is installed.

Usage: pdf_chinese.py PATH_TO_orderview SAMPLE_DIR
"""
import csv
import html
import os
import re
import shutil
import subprocess
import sys
import tempfile

FONTS = ["/usr/share/fonts/truetype/arphic/uming.ttc", "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf"]
NAMES = ["陳大文期貨", "台積電", "元大台灣50"]
TITLE = "委託回報 Orders"
DPI = 200


def run(args, env=None):
    return subprocess.run(args, capture_output=True, timeout=600, env=env)


def name_folder(sample, folder):
    shutil.copytree(sample, folder)
    path = os.path.join(folder, "sys", "accounts.csv")
    with open(path, encoding="utf-8", newline="") as f:
        reader = csv.DictReader(f)
        fields, rows = reader.fieldnames, list(reader)
    for i, row in enumerate(rows):
        row["name"] = NAMES[i % len(NAMES)]
    with open(path, "w", encoding="utf-8", newline="") as f:
        writer = csv.DictWriter(f, fieldnames=fields)
        writer.writeheader()
        writer.writerows(rows)


def names_in(text):
    return re.findall("|".join(map(re.escape, NAMES)), text)


def gray(path):
    """Width, height and bytes of a binary PGM."""
    with open(path, "rb") as f:
        data = f.read()
    m = re.match(rb"P5\s+(\d+)\s+(\d+)\s+(\d+)\s", data)
    return int(m.group(1)), int(m.group(2)), data[m.end():]


def crop(image, box):
    width, height, pixels = image
    x0, y0, x1, y1 = (int(round(v * DPI / 72.0)) for v in box)
    return bytes(pixels[y * width + x] for y in range(max(0, y0), min(height, y1 + 1))
                 for x in range(max(0, x0), min(width, x1 + 1)))


def first_name_box(pdf):
    """The box, in points, of the first name pdftotext finds on page 1."""
    out = run(["pdftotext", "-bbox", "-f", "1", "-l", "1", pdf, "-"]).stdout.decode("utf-8", errors="replace")
    for m in re.finditer(r'<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">([^<]*)</word>', out):
        if html.unescape(m.group(5)) in NAMES:
            return tuple(float(m.group(i)) for i in range(1, 5))
    return None


def main():
    program, sample = sys.argv[1], sys.argv[2]
    if not any(os.path.exists(f) for f in FONTS):
        print("skipped: no Chinese font installed (fonts-arphic-uming, fonts-droid-fallback)")
        return 0
    errors = []
    with tempfile.TemporaryDirectory(prefix="orderview-pdf-chinese-") as work:
        main_folder = os.path.join(work, "main")
        name_folder(sample, main_folder)
        listed = run([program, "list", "--main", main_folder]).stdout.decode("utf-8")
        expected = names_in(listed)
        if len(expected) < 5:
            errors.append("the list shows only %d names" % len(expected))

        env = dict(os.environ)
        env.pop("ORDERVIEW_PRINT_FONT", None)
        with_font = os.path.join(work, "font.pdf")
        printed = run([program, "print", "--main", main_folder, "--title", TITLE, "--quiet", "--output", with_font], env)
        if printed.returncode != 0 or printed.stderr:
            errors.append("print: exit %d, stderr %r" % (printed.returncode, printed.stderr.decode(errors="replace")))
        not_font = os.path.join(work, "not-a-font.ttf")
        with open(not_font, "w") as f:
            f.write("not a font\n")
        env["ORDERVIEW_PRINT_FONT"] = not_font
        without = os.path.join(work, "none.pdf")
        bare = run([program, "print", "--main", main_folder, "--title", TITLE, "--quiet", "--output", without], env)
        warnings = bare.stderr.decode(errors="replace").splitlines()
        if bare.returncode != 0 or len(warnings) != 1 or "ORDERVIEW_PRINT_FONT" not in warnings[0]:
            errors.append("print without a font: exit %d, stderr %r" % (bare.returncode, warnings))

        for pdf in (with_font, without):
            check = run(["qpdf", "--check", pdf])
            if check.returncode != 0:
                errors.append("qpdf --check %s: %s" % (os.path.basename(pdf), check.stdout.decode(errors="replace")[-300:]))

        text = run(["pdftotext", with_font, "-"]).stdout.decode("utf-8", errors="replace")
        if names_in(text) != expected:
            errors.append("pdftotext: names %s, the list has %s" % (names_in(text)[:8], expected[:8]))
        bare_text = run(["pdftotext", without, "-"]).stdout.decode("utf-8", errors="replace")
        if names_in(bare_text) or "?????" not in bare_text:
            errors.append("pdftotext without a font: %r" % bare_text[:200])

        fonts = run(["pdffonts", with_font]).stdout.decode(errors="replace").splitlines()
        cid = [line for line in fonts if "CID TrueType" in line]
        if len(cid) != 1 or not re.match(r"[A-Z]{6}\+\S+\s+CID TrueType\s+Identity-H\s+yes\s+yes\s+yes\s", cid[0]):
            errors.append("pdffonts: %s" % fonts)
        info = run(["pdfinfo", with_font]).stdout.decode("utf-8", errors="replace")
        if not re.search(r"^Title:\s+" + re.escape(TITLE) + "$", info, re.M):
            errors.append("pdfinfo: no title %r" % TITLE)

        box = first_name_box(with_font)
        if not box:
            errors.append("pdftotext -bbox: no name on page 1")
        else:
            images = []
            for pdf in (with_font, without):
                prefix = pdf + "-page"
                run(["pdftoppm", "-r", str(DPI), "-gray", "-f", "1", "-l", "1", pdf, prefix])
                found = [f for f in os.listdir(work) if f.startswith(os.path.basename(prefix)) and f.endswith(".pgm")]
                images.append(gray(os.path.join(work, found[0])) if found else (0, 0, b""))
            named, questions = crop(images[0], box), crop(images[1], box)
            ink, question_ink = (sum(1 for p in pixels if p < 160) for pixels in (named, questions))
            # Five ideographs have far more strokes than five question marks.
            if ink < 100 or ink < 1.5 * question_ink:
                errors.append("pdftoppm: the name has %d dark pixels, the '?' %d" % (ink, question_ink))
            if named == questions:
                errors.append("pdftoppm: the name renders as the file without a font does")

    for e in errors:
        print("FAILED:", e)
    print("pdf_chinese: %d names in order, %s" % (len(expected), "ok" if not errors else "%d failures" % len(errors)))
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
