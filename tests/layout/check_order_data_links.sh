#!/bin/sh
# Checks that the order data layer links on its own: its objects need, of the library's own
# symbols, only each other's and the built-in host's definition (detail::BuiltInHost, in host/),
# and every member of its types that the library defines out of line (a destructor, a default
# implementation) is defined among them, so a host of the embedder's links against order_data/.
#   check_order_data_links.sh LIBRARY-OBJECT-DIR
set -eu
dir="$1"
layer="$dir/order_data"
types=$(grep -h -E '^(class|struct) ' "$(dirname "$0")/../../order_data/"*.h | grep -v ';' \
        | sed -E 's/ORDERVIEW_API //; s/^(class|struct) ([A-Za-z0-9_]+).*/\2/' | sort -u | paste -s -d '|')
defined() { nm -C --defined-only "$@" | awk '$2 ~ /[TWVBDR]/ { $1 = ""; $2 = ""; print substr($0, 3) }' | sort -u; }
ours=$(defined "$layer"/*.o)
needed=$(nm -C --undefined-only "$layer"/*.o | awk '{ $1 = ""; print substr($0, 2) }' \
         | grep -E '^(orderview::|CString|CBase|BKOrderInterface|X1Format|g_)' | sort -u)
missing=$(printf '%s\n' "$needed" | grep -v -x -F "$ours" | grep -v -x -F 'orderview::detail::BuiltInHost()' || true)
members=$(find "$dir" -name '*.o' ! -path "$layer/*" -print0 | xargs -0 nm -C --defined-only \
          | awk '$2 ~ /[TDR]/ { $1 = ""; $2 = ""; print substr($0, 3) }' \
          | grep -E "^((vtable|typeinfo|typeinfo name) for )?(orderview::)?($types)(::|\$)" | grep -v '<' | sort -u || true)
elsewhere=$(printf '%s\n' "$members" | grep -v -x -F "$ours" | grep -v '^$' || true)
status=0
if [ -n "$missing" ]; then printf 'layout: order_data/ needs symbols from elsewhere:\n%s\n' "$missing"; status=1; fi
if [ -n "$elsewhere" ]; then printf 'layout: members of order_data/ types defined elsewhere:\n%s\n' "$elsewhere"; status=1; fi
[ $status -eq 0 ] && echo "layout: order_data/ links on its own but for the built-in host"
exit $status
