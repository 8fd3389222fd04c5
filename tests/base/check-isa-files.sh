#!/usr/bin/env bash
# Fails when an object file built for a wider instruction set defines weak code (an inline function or
# a template instance). The linker keeps one copy of such code, from whichever file it meets first, so a
# copy compiled for AVX2 could run in place of another file's on a processor without AVX2.
set -euo pipefail
status=0
for object in "$@"; do
  weak=$("${NM:-nm}" --defined-only -C "$object" | awk '$2 == "W" { $1 = ""; $2 = ""; sub(/^  /, ""); print }')
  if [[ -n "$weak" ]]; then
    echo "$(basename "$object") defines code another file may share:"
    echo "$weak"
    status=1
  fi
done
echo "checked $# files built for wider instruction sets"
exit $status
