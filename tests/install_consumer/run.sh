#!/bin/sh
# Installs the built library into a scratch prefix, checks the installed headers, then builds and runs a consumer against it
# with find_package and with pkg-config.
set -eu
build_dir="$1"
source_dir="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
# The installed headers are orderview.h and exactly what it includes; the consumer includes
# orderview.h alone, so no public header may need one that stays behind.
include="$work/prefix/include/orderview"
(cd "$include" && find . -name '*.h' | sed 's|^\./||' | sort) >"$work/installed"
{ echo orderview.h; sed -n 's/^#include "\(.*\)"$/\1/p' "$include/orderview.h"; } | sort >"$work/included"
if ! diff "$work/installed" "$work/included"; then
  echo "the installed headers (<) differ from orderview.h and its includes (>)"
  exit 1
fi
cmake -S "$source_dir" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/prefix" \
  -DCMAKE_CXX_FLAGS="${CONSUMER_CXX_FLAGS:-}" >/dev/null
cmake --build "$work/build" >/dev/null
LD_LIBRARY_PATH="$work/prefix/lib:${LD_LIBRARY_PATH:-}" "$work/build/consumer"
if command -v pkg-config >/dev/null 2>&1; then
  export PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig"
  # shellcheck disable=SC2046
  g++ -std=c++17 ${CONSUMER_CXX_FLAGS:-} $(pkg-config --cflags orderview) "$source_dir/consumer.cpp" -o "$work/pc" \
    $(pkg-config --libs orderview)
  LD_LIBRARY_PATH="$work/prefix/lib:${LD_LIBRARY_PATH:-}" "$work/pc"
fi
