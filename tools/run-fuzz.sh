#!/bin/sh
# Builds the libFuzzer targets and runs each for a bounded time (seconds, default 60), seeded
# from the workbook corpus and the kept regression inputs. A crashing input is copied into
# tests/fuzz_regressions/<target>/ to be kept as a regression test, and the run fails. The
# workbook targets are also seeded with the kept workbook inputs; the font target with its kept
# inputs only (small fonts).
set -eu
cd "$(dirname "$0")/.."
seconds="${1:-60}"
corpus="${ORDERVIEW_CORPUS_DIR:-../shared/corpus/xls}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
status=0
for target in compound_file workbook workbook_roundtrip workbook_edit stream_parts host_tables font workbook_plan; do
  work=$(mktemp -d)
  mkdir -p "$work/seeds" "$work/artifacts"
  cp tests/fuzz_regressions/$target/* "$work/seeds/" 2>/dev/null || true
  case "$target" in
    compound_file) [ -d "$corpus" ] && cp "$corpus"/*.xls "$work/seeds/" 2>/dev/null || true ;;
    host_tables) cp tests/regressions/host/* "$work/seeds/" ;;
    font) ;;
    workbook_plan) cp tests/cli/regressions/*.json "$work/seeds/" 2>/dev/null || true ;;
    *)
      [ -d "$corpus" ] && cp "$corpus"/*.xls "$work/seeds/" 2>/dev/null || true
      cp tests/fuzz_regressions/workbook/* "$work/seeds/" 2>/dev/null || true
      ;;
  esac
  if ! "build/fuzz/tests/fuzz/${target}_fuzz" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=10 \
       -artifact_prefix="$work/artifacts/" "$work/seeds" >"$work/log" 2>&1; then
    tail -n 40 "$work/log"
    mkdir -p "tests/fuzz_regressions/$target"
    cp "$work"/artifacts/* "tests/fuzz_regressions/$target/" 2>/dev/null || true
    echo "fuzz: $target found a failing input (kept in tests/fuzz_regressions/$target)"
    status=1
  else
    echo "fuzz: $target: $(grep -o 'Done [0-9]* runs' "$work/log" | tail -n 1), no failure"
  fi
  rm -rf "$work"
done
exit $status
