#!/usr/bin/env bash
# Fails when the shared library exports a strong symbol outside its public families.
# On Linux: the dynamic symbol table; weak symbols (template instantiations of std:: and boost::
# types) follow the visibility of their arguments and are not checked. On Windows (a .dll): the
# export table as objdump -p lists it, every name checked: a DLL exports only what is dllexport.
set -euo pipefail
lib=$1
family='(ULO[A-Za-z_]*|CLR[A-Za-z_0-9]*|COLOR_[A-Z_]+|[A-Z_]+_CLR_COMPONENT|MORE_INTENSE_[A-Z_]+|dontFillBackground|ulogui::|ulo::|magnify::|BitmapResourceFile|FontResourceFile|details::|tools::)'
allowed="^((typeinfo( name)?|vtable|VTT|construction vtable) for |(non-)?virtual thunk to )?${family}"
if [[ "$lib" == *.dll ]]; then
  # The names of "[Ordinal/Name Pointer] Table": lines "[   n] name".
  names=$(x86_64-w64-mingw32-objdump -p "$lib" |
          sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/ s/^[[:space:]]*\[[[:space:]]*[0-9]*\][[:space:]]*//p')
  # The type information of std:: and Boost types that exported classes derive from is exported with
  # them; on Linux it is weak and not checked either.
  exported=$(x86_64-w64-mingw32-c++filt <<<"$names" |
             grep -v -E '^((typeinfo( name)?|vtable) for )(std|boost)::' || true)
else
  exported=$(nm -D --defined-only -C "$lib" | awk '$2 ~ /^[TDBR]$/ { $1 = ""; $2 = ""; sub(/^  /, ""); print }')
fi
bad=$(grep -v -E "$allowed" <<<"$exported" | grep -v -E '^(_init|_fini|_edata|_end|__bss_start|)$' |
      grep -v -E '^__(odr_asan|asan|ubsan)[._]' || true)  # sanitizer bookkeeping of exported data
count=$(grep -c . <<<"$exported" || true)
if [[ -n "$bad" ]]; then
  echo "symbols exported outside the library's boundary:"
  echo "$bad"
  exit 1
fi
if [[ "$count" -eq 0 ]]; then
  echo "no exported symbols found in $lib"
  exit 1
fi
echo "exports: $count symbols, all within the boundary"
