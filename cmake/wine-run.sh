#!/bin/sh
# Runs a Windows program of the cross build under Wine: wine-run.sh PREFIX PROGRAM [ARGS...].
# The Wine prefix lives in the build folder, so a build never touches the user's own.
prefix="$1"
shift
WINEPREFIX="$prefix"
WINEDEBUG=-all
WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
if command -v wine64 >/dev/null 2>&1; then
  exec wine64 "$@"
fi
exec /usr/lib/wine/wine64 "$@"
