#!/usr/bin/env bash
# ulogallery on bad input: each row breaks a scratch copy of the resource directory (or passes a bad
# option) and expects a non-zero exit below 128 (no crash, no sanitizer report) and exactly one line
# on standard error that names the file or value at fault.
# usage: bad-input.sh ULOGALLERY RESOURCES (ULO_EMULATOR, when set, runs the program: Wine;
# ULO_X11_DEVICE=0 names a build without the X11 device)
set -uo pipefail
program=$1
resources=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
# A build without the X11 device (Windows) answers --window so whatever the display.
noDisplay='No X display was found at "nowhere"'
[[ ${ULO_X11_DEVICE:-1} == 1 ]] || noDisplay="this build has no X11 device"

# name | how to break the copy (run in it) | options | what the message must name
cases=(
  "no directory|rm -rf ./*|-r $scratch/none|$scratch/none"
  "no languages.xml|rm languages.xml||languages.xml"
  "languages.xml not a list|echo '<x/>' > languages.xml||languages.xml"
  "language folder missing|rm -r French|-l fr|French"
  "texts missing|rm French/Main.urs|-l fr|French/Main.urs"
  "shared file missing|rm Main.urd||Main.urd"
  "pictures corrupt|head -c 300 /dev/urandom > Main.urb||Main.urb"
  "pictures truncated|truncate -s 200 Main.urb||Main.urb"
  "fonts corrupt|head -c 100 /dev/zero > Main.urf|-l en|Main.urf"
  "Japanese fonts truncated|truncate -s 90 Japanese/Main.urf|-l jp|Japanese/Main.urf"
  "text table malformed|echo 'no equals sign' >> English/Main.urs|-l en|English/Main.urs:"
  "text key missing|sed -i '/^tab.view/d' English/Main.urs|-l en|tab.view"
  "unknown language||-l xx|'xx'"
  "unknown magnification||-m 3|'3'"
  "magnification not a number||-m big|'big'"
  "unknown option||--colour|'--colour'"
  "option without value||-o|-o"
  "no X display||--window --display nowhere|$noDisplay"
)

failures=0
for row in "${cases[@]}"; do
  IFS='|' read -r name breakIt options expected <<<"$row"
  rm -rf "$scratch/res" "$scratch/out"
  cp -r "$resources" "$scratch/res"
  (cd "$scratch/res" && eval "$breakIt")
  # shellcheck disable=SC2086  # options are words
  ${ULO_EMULATOR:-} "$program" -r "$scratch/res" -m 1.0 -o "$scratch/out" $options >/dev/null 2>"$scratch/err"
  status=$?
  # Paths are named with the system's separators: "\" on Windows reads as "/" here.
  tr '\\' / <"$scratch/err" >"$scratch/err.tmp" && mv "$scratch/err.tmp" "$scratch/err"
  lines=$(wc -l <"$scratch/err")
  if [[ $status -eq 0 || $status -ge 128 || $lines -ne 1 ]] || ! grep -qF -- "$expected" "$scratch/err"; then
    echo "FAIL $name: exit $status, $lines line(s) on stderr, expected one naming $expected:"
    cat "$scratch/err"
    failures=$((failures + 1))
  else
    echo "ok   $name: $(cat "$scratch/err")"
  fi
done
echo "${#cases[@]} cases: $failures failed"
[[ $failures -eq 0 ]]
