#!/bin/sh
# Runs a Windows program of the cross build under Wine: wine-run.sh PREFIX PROGRAM [ARGS...].
# The Wine prefix lives in the build folder, so a build never touches the user's own.
#
# The program's output goes through files: the Wine services the first program of a session
# starts would otherwise inherit the caller's pipes and hold them open after the program ends
# (ctest and execute_process wait for those pipes to close).
prefix="$1"
shift
WINEPREFIX="$prefix"
WINEDEBUG=-all
WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
wine=wine64
command -v wine64 >/dev/null 2>&1 || wine=/usr/lib/wine/wine64
out=$(mktemp) && err=$(mktemp) || exit 1
trap 'rm -f "$out" "$err"' EXIT
run() {
  status=0
  "$wine" "$@" </dev/null >"$out" 2>"$err" || status=$?
}
run "$@"
# A test program always prints something; failing with no output at all means Wine did not get
# the program running (seen once in about a thousand starts on a busy machine): start it once more.
if [ "$status" -ne 0 ] && [ ! -s "$out" ] && [ ! -s "$err" ]; then
  echo "wine-run.sh: $1 ended with status $status and no output; starting it once more" >&2
  run "$@"
fi
cat "$out"
cat "$err" >&2
exit $status
