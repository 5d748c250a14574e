#!/bin/sh
# Line and branch coverage of the library by the whole test suite: builds the coverage preset
# (gcov counters), runs every test and prints gcovr's summary for the library's own sources
# (tests, tools and benchmarks left out). Extra arguments go to gcovr, for example
#   tools/coverage.sh --html-details build/coverage/index.html
set -eu
cd "$(dirname "$0")/.."
cmake --workflow --preset coverage
gcovr --root . --object-directory build/coverage --exclude 'tests/' --exclude 'tools/' --exclude 'bench/' \
      --exclude 'build/' --exclude-directories 'build/coverage/(tests|tools|bench|googletest)' \
      --exclude-throw-branches --print-summary "$@" build/coverage >build/coverage/gcovr.txt
tail -n 3 build/coverage/gcovr.txt
