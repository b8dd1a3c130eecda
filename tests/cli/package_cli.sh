#!/usr/bin/env bash
# What the package says of the program: the metainfo and the desktop entry
# pass their validators (where installed), every screenshot the metainfo
# names is in docs/screenshots, and the manual page names every option and
# command word README.md's "Running" lists.
# usage: package_cli.sh SOURCE_DIR
set -u
src=$1
fail=0; pass=0
check() { if eval "$2"; then pass=$((pass+1)); else echo "FAILED: $1"; fail=$((fail+1)); fi; }
meta=$src/dist/vonnel.metainfo.xml
man=$src/dist/vonnel.1

if command -v appstreamcli >/dev/null; then
  out=$(appstreamcli validate --no-net "$meta" 2>&1); rc=$?
  echo "$out"
  check "appstreamcli validate passes" "[ $rc -eq 0 ]"
  check "appstreamcli finds no warning or error" "! grep -qE '^[WE]:' <<<\"\$out\""
else
  echo "appstreamcli not installed: metainfo not validated"
fi
if command -v desktop-file-validate >/dev/null; then
  out=$(desktop-file-validate "$src/dist/vonnel.desktop" 2>&1); rc=$?
  check "desktop-file-validate is silent ($out)" "[ $rc -eq 0 ] && [ -z \"\$out\" ]"
else
  echo "desktop-file-validate not installed: desktop entry not validated"
fi
check "metainfo launches the desktop entry we install" \
  "grep -q '<launchable type=\"desktop-id\">vonnel.desktop</launchable>' '$meta'"

shots=$(grep -o '<image>[^<]*</image>' "$meta" | sed 's|<image>https://vonnel.invalid/||; s|</image>||')
check "metainfo names screenshots" "[ -n \"\$shots\" ]"
for s in $shots; do
  check "screenshot $s is in the tree" "[ -s '$src/$s' ]"
done

# README's "Running": the options in the usage line, the command words of
# its list ("Cmd X", "Key X", "Input").
running=$(sed -n '/^## Running/,/^## /p' "$src/README.md")
options=$(grep -oE -- '--[a-z][a-z-]+' <<<"$running" | sort -u)
words=$(grep -oE '`(Cmd|Key) [A-Za-z]+`|`Input text`' <<<"$running" | tr -d '`' | sort -u)
check "README lists options" "[ \$(wc -l <<<\"\$options\") -ge 3 ]"
check "README lists command words" "[ \$(wc -l <<<\"\$words\") -ge 14 ]"
text=$(MANWIDTH=200 man -l "$man" 2>/dev/null | col -b)
for o in $options; do
  check "manual page has $o" "grep -qF -- '$o' <<<\"\$text\""
done
while read -r w; do
  [ -z "$w" ] && continue
  check "manual page has '$w'" "grep -qF -- '$w' <<<\"\$text\""
done <<<"$words"
warnings=$(LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -l "$man" 2>&1 >/dev/null)
check "manual page renders without warnings ($warnings)" "[ -z \"\$warnings\" ]"

echo "$pass passed, $fail failed"
[ $fail -eq 0 ]
