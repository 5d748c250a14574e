#!/bin/sh
# Installs the built library into a scratch prefix, then builds and runs a consumer against it
# with find_package and with pkg-config.
set -eu
build_dir="$1"
source_dir="$2"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
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
