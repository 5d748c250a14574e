#!/bin/sh
# Time and peak memory of the orderview program on a generated day of N orders (default
# 1,000,000): `orderview list --list full` into a file and into /dev/null, and `orderview export`
# as CSV (RFC 4180), the screen's CSV and JSON Lines, each streaming the day's records, against
# the bound (bench/cli_bound.cpp: orders.csv read once and one full row filled per order, nothing
# printed) and, when given, an earlier build of the program, all in the same run, a round of every
# command at a time; then the time to build the default host in that folder. Medians of RUNS
# rounds.
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
# The commands, one a line: a label, where standard output goes, then the command's words, each
# after a tab (so that paths may hold blanks). The list writes into a file, which it reads the day
# once for, and into /dev/null, which stands for a pipe or a terminal: it reads the day through
# before it writes anything there. Each round runs every command once, in this order, so that a slow spell of a
# shared machine falls on all of them alike.
tab=$(printf '\t')
entry() { printf '%s' "$1"; shift; printf '\t%s' "$@"; printf '\n'; }
{
  entry "bound" /dev/null "$bound" rows "$work/main"
  entry "list --list full >file" "$work/list.txt" "$program" list --main "$work/main" --list full
  entry "list --list full >/dev/null" /dev/null "$program" list --main "$work/main" --list full
  entry "export --format csv" /dev/null "$program" export --main "$work/main" --format csv --output "$work/o.csv"
  entry "export --format screen-csv" /dev/null "$program" export --main "$work/main" --format screen-csv --output "$work/o.csv"
  entry "export --format json" /dev/null "$program" export --main "$work/main" --format json --output "$work/o.json"
  if [ -n "$earlier" ]; then
    entry "earlier list --list full >file" "$work/list.txt" "$earlier" list --main "$work/main" --list full
    entry "earlier export --format csv" /dev/null "$earlier" export --main "$work/main" --format csv --output "$work/o.csv"
  fi
} >"$work/commands"
set -f
round=0
while [ "$round" -lt "$runs" ]; do
  n=0
  while IFS="$tab" read -r label output words; do
    n=$((n + 1))
    IFS="$tab"
    # shellcheck disable=SC2086 # split at the tabs only
    set -- $words
    unset IFS
    /usr/bin/time -f "%e %M %U %S" "$@" >"$output" 2>"$work/time" </dev/null || { cat "$work/time"; exit 1; }
    tail -n 1 "$work/time" >>"$work/times.$n"
  done <"$work/commands"
  round=$((round + 1))
done
# The median wall time, processor time and peak memory of each command.
n=0
while IFS="$tab" read -r label output words; do
  n=$((n + 1))
  wall=$(awk '{ print $1 }' "$work/times.$n" | median)
  peak=$(awk '{ print $2 }' "$work/times.$n" | median)
  cpu=$(awk '{ print $3 + $4 }' "$work/times.$n" | median)
  printf '%-32s %8s s wall %8s s cpu %8s KiB peak\n' "$label" "$wall" "$cpu" "$peak"
done <"$work/commands"
i=0
while [ "$i" -lt "$runs" ]; do "$bound" host "$work/main"; i=$((i + 1)); done
