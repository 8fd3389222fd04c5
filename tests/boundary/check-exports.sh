#!/usr/bin/env bash
# Fails when the shared library exports a strong symbol outside its public families.
# Weak symbols (template instantiations of std:: and boost:: types) follow the visibility of
# their arguments and are not checked.
set -euo pipefail
lib=$1
family='(ULO[A-Za-z_]*|CLR[A-Za-z_0-9]*|COLOR_[A-Z_]+|[A-Z_]+_CLR_COMPONENT|MORE_INTENSE_[A-Z_]+|dontFillBackground|ulogui::|ulo::|magnify::|BitmapResourceFile|FontResourceFile|details::|tools::)'
allowed="^((typeinfo( name)?|vtable|VTT|construction vtable) for |(non-)?virtual thunk to )?${family}"
bad=$(nm -D --defined-only -C "$lib" | awk '$2 ~ /^[TDBR]$/ { $1 = ""; $2 = ""; sub(/^  /, ""); print }' |
      grep -v -E "$allowed" | grep -v -E '^(_init|_fini|_edata|_end|__bss_start)$' |
      grep -v -E '^__(odr_asan|asan|ubsan)[._]' || true)  # sanitizer bookkeeping of exported data
count=$(nm -D --defined-only "$lib" | wc -l)
if [[ -n "$bad" ]]; then
  echo "symbols exported outside the library's boundary:"
  echo "$bad"
  exit 1
fi
echo "exports: $count symbols, all within the boundary"
