#!/usr/bin/env bash
# The resource builder's font commands from the command line: pack a manifest, list the file,
# and refuse a manifest without font 0 (every missing ID falls back to it).
set -euo pipefail
ulores=("$@")  # the program, after the emulator that runs it if any
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

cat >"$dir/fonts.xml" <<'XML'
<fonts>
  <font id="0" face="DejaVu Sans" height="11"/>
  <font id="3" face="Liberation Sans" height="12" weight="700" italic="1" name="Caption" heightExt="14">
    <alternative face="DejaVu Sans"/>
  </font>
</fonts>
XML
"${ulores[@]}" pack-fonts "$dir/fonts.xml" -o "$dir/fonts.urf"
listing=$("${ulores[@]}" dump "$dir/fonts.urf")
grep -q 'font 0: .*"DejaVu Sans" height 11 weight 400' <<<"$listing"
grep -q 'font 2: no record (font 0 stands in)' <<<"$listing"
grep -q 'font 3: .*"Liberation Sans" height 12 weight 700 italic .*name "Caption" heightExt 14' <<<"$listing"
grep -q 'alternative "DejaVu Sans"' <<<"$listing"

cat >"$dir/no-zero.xml" <<'XML'
<fonts><font id="1" face="DejaVu Sans" height="11"/></fonts>
XML
if "${ulores[@]}" pack-fonts "$dir/no-zero.xml" -o "$dir/bad.urf" 2>"$dir/err"; then
  echo "a manifest without font 0 was accepted"
  exit 1
fi
[[ ! -e "$dir/bad.urf" ]]
echo "ulores font commands: ok ($(head -c 120 "$dir/err"))"
