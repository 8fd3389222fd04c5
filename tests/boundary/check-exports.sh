#!/usr/bin/env bash
# Fails when the shared library exports a strong symbol outside its public families.
# Template instantiations of std:: and boost:: (weak symbols) follow their arguments'
# visibility and are allowed.
set -euo pipefail
lib=$1
allowed='^(typeinfo( name)? for |vtable for |VTT for |non-virtual thunk to |virtual thunk to )?(ULO[A-Za-z_]*|CLR[A-Za-z_0-9]*|ulogui::|ulo::|magnify::|BitmapResourceFile|FontResourceFile|Directory::|std::|boost::|__gnu_cxx::|operator)'
bad=$(nm -D --defined-only -C "$lib" | awk '$2 ~ /^[TDBRVWu]$/ { $1 = ""; $2 = ""; sub(/^  /, ""); print }' |
      grep -v -E "$allowed" | grep -v -E '^(_init|_fini|_edata|_end|__bss_start)$' || true)
count=$(nm -D --defined-only "$lib" | wc -l)
if [[ -n "$bad" ]]; then
  echo "symbols exported outside the library's boundary:"
  echo "$bad"
  exit 1
fi
echo "exports: $count symbols, all within the boundary"
