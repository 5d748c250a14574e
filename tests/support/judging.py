"""What the program's and the interop judges share: headless LibreOffice conversions and the
closing failure report."""
import os
import subprocess
import tempfile

# LibreOffice's CSV filter: separator ',' (44), quote '"' (34), UTF-8 (76).
CSV_UTF8 = "csv:Text - txt - csv (StarCalc):44,34,76"


def libreoffice(paths, target, work, out_dir=None, html=False, timeout=600):
    """Converts `paths` to `target` with headless LibreOffice under a profile of its own (so runs
    never share one); returns the folder the converted files are in."""
    profile = tempfile.mkdtemp(dir=work)
    out_dir = out_dir or tempfile.mkdtemp(dir=work)
    command = ["soffice", "-env:UserInstallation=file://" + profile, "--headless"]
    if html:
        command.append("--infilter=HTML (StarCalc)")
    subprocess.run(command + ["--convert-to", target, "--outdir", out_dir, *paths],
                   check=True, capture_output=True, timeout=timeout)
    return out_dir


def converted(path, out_dir, extension):
    """Where LibreOffice put the conversion of `path`."""
    return os.path.join(out_dir, os.path.splitext(os.path.basename(path))[0] + extension)


def report(failures, summary, most=50):
    """Prints the first `most` failures and the summary line; the judge's exit status."""
    for failure in failures[:most]:
        print("FAIL:", failure)
    print(summary)
    return 1 if failures else 0
