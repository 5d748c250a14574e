#!/bin/sh
# Installs the Debian 12 packages orderview needs. With no option: what configuring and building
# the default preset needs (the compiler, CMake, and the libraries the tests, benchmarks and tools
# link with; the default preset builds them all), enough to build and run the orderview program,
# and pkg-config for linking an installed library.
#   --test     adds what running the tests needs: the independent programs the interop tests
#              judge files with (Python readers, gsf, Apache POI with a JDK, LibreOffice, the PDF
#              tools), the Chinese fonts printouts embed, clang for the fuzz targets, gcovr and
#              llvm for coverage, and the workbook benchmark's peers
#   --windows  adds what --test adds, plus the MinGW-w64 cross compiler and Wine for the Windows
#              DLL and its tests, and glibc's locale sources, from which the build makes the Big5
#              locale its Wine tests run in
# The options combine. Uses sudo when not run as root; installs only what is missing.
set -eu
USAGE="usage: tools/install-deps.sh [--test] [--windows]"
SUDO=""
if [ "$(id -u)" != "0" ]; then SUDO="sudo"; fi
BUILD="cmake g++ make pkg-config libgtest-dev libbenchmark-dev nlohmann-json3-dev"
TEST="gcovr python3 python3-olefile python3-xlrd python3-xlwt python3-openpyxl libgsf-bin default-jdk-headless libapache-poi-java libreoffice-calc-nogui qpdf poppler-utils catdoc gnumeric clang-14 libclang-rt-14-dev llvm-14 fonts-arphic-uming fonts-droid-fallback"
WINDOWS="g++-mingw-w64-x86-64-posix wine wine64 locales"
test=0 windows=0
for arg in "$@"; do
  case "$arg" in
    --test) test=1 ;;
    --windows) test=1; windows=1 ;;
    --help|-h) echo "$USAGE"; exit 0 ;;
    *) echo "install-deps.sh: unknown option '$arg'" >&2; echo "$USAGE" >&2; exit 2 ;;
  esac
done
PACKAGES="$BUILD"
if [ "$test" = 1 ]; then PACKAGES="$PACKAGES $TEST"; fi
if [ "$windows" = 1 ]; then PACKAGES="$PACKAGES $WINDOWS"; fi
missing=""
for p in $PACKAGES; do
  dpkg -s "$p" >/dev/null 2>&1 || missing="$missing $p"
done
if [ -n "$missing" ]; then
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq $missing
fi
