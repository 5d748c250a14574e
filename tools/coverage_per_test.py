#!/usr/bin/env python3
"""Reads one lcov report per test (coverage_per_test.py SOURCE_DIR LCOV_DIR, files named
PROGRAM__Suite.Test.lcov, a '/' in a name written as '~') and prints: the lines and branches of the library the tests cover
together; then, taking the longest tests first, the tests that can go with every covered line and
branch still covered by those that stay, grouped by test program, with each test's length in
lines that are neither blank nor comments."""
import collections
import glob
import os
import re
import sys


def covered(path, source):
    items, current = set(), None
    with open(path) as f:
        for line in f:
            if line.startswith("SF:"):
                current = os.path.relpath(os.path.normpath(line[3:].strip()), source)
            elif line.startswith("DA:"):
                number, count = line[3:].split(",")[:2]
                if int(count) > 0:
                    items.add(("line", current, int(number)))
            elif line.startswith("BRDA:"):
                number, block, branch, taken = line[5:].strip().split(",")
                if taken not in ("-", "0"):
                    items.add(("branch", current, int(number), block, branch))
    return items


def test_lengths(source):
    """(program, suite, test) -> counted lines from its TEST line to the next one."""
    lengths = {}
    for path in glob.glob(os.path.join(source, "tests", "*_test.cpp")):
        program = os.path.basename(path)[:-4]
        lines = open(path, encoding="utf-8", errors="replace").read().split("\n")
        starts = [(i, m) for i, text in enumerate(lines)
                  for m in [re.match(r"TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", text)] if m]
        for k, (i, m) in enumerate(starts):
            end = starts[k + 1][0] if k + 1 < len(starts) else len(lines)
            body = lines[i:end]
            lengths[(program, m.group(1), m.group(2))] = sum(
                1 for text in body if text.strip() and not text.strip().startswith("//"))
    return lengths


def main():
    source, reports = sys.argv[1], sys.argv[2]
    lengths = test_lengths(source)
    coverage, length = {}, {}
    for path in glob.glob(os.path.join(reports, "*.lcov")):
        test = os.path.basename(path)[:-len(".lcov")]
        program, name = test.split("__", 1)
        suite, _, rest = name.partition(".")
        coverage[test] = covered(path, source)
        # Parameterised tests are named Prefix~Suite.Test~N ('/' becomes '~' in file names).
        length[test] = lengths.get((program, suite.split("~")[-1], rest.split("~")[0]), 0)
    times = collections.Counter()
    for items in coverage.values():
        times.update(items)
    kinds = collections.Counter(item[0] for item in times)
    print("%d tests cover %d lines and %d branches of the library together"
          % (len(coverage), kinds["line"], kinds["branch"]))
    spare = []
    for test in sorted(coverage, key=lambda t: (-length[t], t)):
        if length[test] and all(times[item] > 1 for item in coverage[test]):
            times.subtract(coverage[test])
            spare.append(test)
    print("%d tests (%d lines) could go with that coverage kept:" % (len(spare), sum(length[t] for t in spare)))
    by_program = collections.defaultdict(list)
    for test in spare:
        by_program[test.split("__")[0]].append(test.split("__")[1])
    for program, tests in sorted(by_program.items(), key=lambda kv: -sum(length[kv[0] + "__" + t] for t in kv[1])):
        print("  %s (%d lines)" % (program, sum(length[program + "__" + t] for t in tests)))
        for test in tests:
            print("    %4d  %s" % (length[program + "__" + test], test))


if __name__ == "__main__":
    main()
