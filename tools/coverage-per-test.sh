#!/bin/sh
# Which tests make coverage no other test makes: builds the coverage-per-test preset (clang's
# source-based coverage), runs every GoogleTest test on its own, exports each one's covered lines
# and branches of the library, and prints tools/coverage_per_test.py's report. A test whose
# coverage the others all make is a place to look, not a verdict: it may still be the one that
# checks the values.
#   tools/coverage-per-test.sh [WORK]     (WORK: where the per-test reports go; default a temp folder)
set -eu
cd "$(dirname "$0")/.."
top=$(pwd)
build="$top/build/coverage-per-test"
cmake --preset coverage-per-test >/dev/null
cmake --build --preset coverage-per-test >/dev/null
work="${1:-$(mktemp -d)}"
mkdir -p "$work/lcov"
cd "$build/tests"
for program in *_test; do
  [ -x "$program" ] || continue
  ./"$program" --gtest_list_tests 2>/dev/null | awk -v p="$program" '/^[^ ]/ { suite = $1 } /^  / { print p, suite $1 }'
done >"$work/tests"
# One test at a time: its raw profile, merged, then exported as lcov of the library's sources.
while read -r program test; do
  id="${program}__$(printf '%s' "$test" | tr '/' '~')"
  LLVM_PROFILE_FILE="$work/$id.profraw" ./"$program" --gtest_filter="$test" >/dev/null 2>&1 ||
    echo "failed: $program $test" >&2
  # (Inline functions compiled into both the library and a test draw "mismatched data" warnings.)
  llvm-profdata-14 merge -sparse "$work/$id.profraw" -o "$work/$id.profdata" 2>/dev/null
  llvm-cov-14 export -format=lcov -instr-profile="$work/$id.profdata" "$build/liborderview.so" \
    -ignore-filename-regex='(/tests/|^/usr/)' >"$work/lcov/$id.lcov" 2>/dev/null
  rm -f "$work/$id.profraw" "$work/$id.profdata"
done <"$work/tests"
python3 "$top/tools/coverage_per_test.py" "$top" "$work/lcov"
