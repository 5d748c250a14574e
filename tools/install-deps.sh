#!/bin/sh
# Installs what building, testing, fuzzing and benchmarking orderview needs on Debian 12;
# with --windows, also the MinGW-w64 cross compiler and Wine for the Windows DLL and its tests.
set -eu
SUDO=""
if [ "$(id -u)" != "0" ]; then SUDO="sudo"; fi
PACKAGES="cmake g++ make pkg-config libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev python3 python3-olefile python3-xlrd python3-xlwt libgsf-bin clang-14 libclang-rt-14-dev default-jdk-headless libapache-poi-java libreoffice-calc-nogui python3-openpyxl qpdf poppler-utils catdoc gnumeric fonts-arphic-uming fonts-droid-fallback"
if [ "${1:-}" = "--windows" ]; then
  PACKAGES="$PACKAGES g++-mingw-w64-x86-64-posix wine wine64"
fi
missing=""
for p in $PACKAGES; do
  dpkg -s "$p" >/dev/null 2>&1 || missing="$missing $p"
done
if [ -n "$missing" ]; then
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $missing
fi
