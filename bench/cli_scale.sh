#!/bin/sh
# Time and peak memory of the orderview program on a generated day of N orders (default
# 1,000,000): `orderview list --list full` and `orderview export` as CSV (RFC 4180), the screen's
# CSV and JSON Lines, each streaming the day's records, against the bound (bench/cli_bound.cpp: orders.csv read once and one full
# row filled per order, nothing printed) and, when given, an earlier build of the program, all
# in the same run; then the time to build the default host in that folder. Medians of RUNS runs.
#   bench/cli_scale.sh build/default/tools/orderview build/default/bench/cli_bound [N] [RUNS] [EARLIER]
set -eu
program="$1"
bound="$2"
orders="${3:-1000000}"
runs="${4:-3}"
earlier="${5:-}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$program" generate --orders "$orders" --output "$work/main" >/dev/null
du -sh "$work/main/sys/orders.csv" "$work/main/sys/deals.csv"
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
# The median wall time, processor time and peak memory of RUNS runs of a command.
measure() {
  label="$1"
  shift
  : >"$work/times"
  i=0
  while [ "$i" -lt "$runs" ]; do
    /usr/bin/time -f "%e %M %U %S" "$@" >/dev/null 2>"$work/time" || { cat "$work/time"; exit 1; }
    tail -n 1 "$work/time" >>"$work/times"
    i=$((i + 1))
  done
  wall=$(awk '{ print $1 }' "$work/times" | median)
  peak=$(awk '{ print $2 }' "$work/times" | median)
  cpu=$(awk '{ print $3 + $4 }' "$work/times" | median)
  printf '%-32s %8s s wall %8s s cpu %8s KiB peak\n' "$label" "$wall" "$cpu" "$peak"
}
measure "bound" "$bound" rows "$work/main"
measure "list --list full" "$program" list --main "$work/main" --list full
measure "export --format csv" "$program" export --main "$work/main" --format csv --output "$work/orders.csv"
measure "export --format screen-csv" "$program" export --main "$work/main" --format screen-csv --output "$work/orders.csv"
measure "export --format json" "$program" export --main "$work/main" --format json --output "$work/orders.json"
if [ -n "$earlier" ]; then
  measure "earlier list --list full" "$earlier" list --main "$work/main" --list full
  measure "earlier export --format csv" "$earlier" export --main "$work/main" --format csv --output "$work/orders.csv"
fi
i=0
while [ "$i" -lt "$runs" ]; do "$bound" host "$work/main"; i=$((i + 1)); done
