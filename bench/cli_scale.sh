#!/bin/sh
# Time and peak memory of the orderview program on a generated day of N orders (default
# 1,000,000): `orderview list --list full` and `orderview export` as CSV (RFC 4180), the screen's
# CSV and JSON Lines, each streaming the day's records. bench/cli_scale.sh build/default/tools/orderview [N]
set -eu
program="$1"
orders="${2:-1000000}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$program" generate --orders "$orders" --output "$work/main"
du -sh "$work/main/sys/orders.csv" "$work/main/sys/deals.csv"
measure() {
  /usr/bin/time -f "%e s wall, %M KiB peak" "$@" >/dev/null 2>"$work/time" || { cat "$work/time"; exit 1; }
  printf '%-40s %s\n' "$2 $4 $5" "$(tail -n 1 "$work/time")"
}
measure "$program" list --main "$work/main" --list full
measure "$program" export --main "$work/main" --format csv --output "$work/orders.csv" --quiet
measure "$program" export --main "$work/main" --format screen-csv --output "$work/orders.csv" --quiet
measure "$program" export --main "$work/main" --format json --output "$work/orders.json" --quiet
