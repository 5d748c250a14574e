#!/bin/sh
# Checks that the library's folders include each other one way only:
#   order_data/ -> order_data/ only
#   platform/   -> order_data/, platform/
#   host/       -> order_data/, platform/, host/
#   xls/        -> xls/, order_data/visibility.h, and platform/ for its file layer, page blocks and text
#                  conversions only
#   checks/     -> order_data/, platform/, format/, settings/, checks/
#   print/      -> order_data/, platform/, format/, export/detail/list_cells.h, print/
# and that POSIX and Windows headers appear only in platform/native_posix.cpp, native_win32.cpp and
# native_win32_print.cpp.
# Internal headers sit in each folder's detail/ and follow the folder's rule; public headers (the
# folder's own *.h) include no detail/ header of any folder.
# Prints every include that breaks a rule and fails if there is one.
set -eu
cd "${1:-$(dirname "$0")/../..}"
status=0
# rule FOLDER ALLOWED-REGEX: every project include in FOLDER must match ALLOWED-REGEX.
rule() {
  bad=$(grep -n -E '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' "$1"/*.h "$1"/*.cpp "$1"/detail/*.h 2>/dev/null \
        | grep -v -E "#[[:space:]]*include[[:space:]]*\"($2)\"" || true)
  if [ -n "$bad" ]; then
    printf '%s\n' "$bad" | PREFIX="layout: $1/ may include only ($2): " awk '{ print ENVIRON["PREFIX"] $0 }'
    status=1
  fi
}
rule order_data 'order_data/(detail/)?[a-z0-9_]+\.h'
rule platform   '(order_data|platform)/(detail/)?[a-z0-9_]+\.h'
rule host       '(order_data|platform|host)/(detail/)?[a-z0-9_]+\.h'
rule checks    '(order_data|platform|format|settings|checks)/(detail/)?[a-z0-9_]+\.h'
rule print      '(order_data|platform|format|print)/(detail/)?[a-z0-9_]+\.h|export/detail/list_cells\.h'
rule xls        'xls/(detail/)?[a-z0-9_]+\.h|order_data/visibility\.h|platform/(file_system|detail/page_block|narrow_text)\.h'
# Public headers include no internal one.
leak=$(grep -n -E '^[[:space:]]*#[[:space:]]*include[[:space:]]*"[a-z_]+/detail/' \
       order_data/*.h platform/*.h host/*.h format/*.h rows/*.h checks/*.h smart_orders/*.h settings/*.h \
       export/*.h print/*.h xls/*.h orderview.h 2>/dev/null || true)
if [ -n "$leak" ]; then
  printf '%s\n' "$leak" | sed 's|^|layout: a public header includes an internal one: |'
  status=1
fi
# Operating-system headers only in the native units of the platform folder.
system=$(grep -n -E '^[[:space:]]*#[[:space:]]*include[[:space:]]*<(unistd|fcntl|dirent|pthread|windows|winbase|commdlg|io|direct|sys/[a-z_]+)\.h>' \
         order_data/* platform/* host/* format/* rows/* checks/* smart_orders/* settings/* export/* print/* xls/* \
         */detail/* 2>/dev/null \
         | grep -v -E '^platform/native_(posix|win32|win32_print)\.cpp:' || true)
if [ -n "$system" ]; then
  printf '%s\n' "$system" | sed 's|^|layout: an operating-system header outside platform/native_*.cpp: |'
  status=1
fi
[ $status -eq 0 ] && echo "layout: include directions hold"
exit $status
