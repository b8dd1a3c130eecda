#!/usr/bin/env bash
# The installed program: `cmake --install` into a scratch prefix, then a
# first start as a user with an empty home, headless.
# usage: install_cli.sh BUILD_DIR
set -u
build=$1
work=$(mktemp -d "$build/install-test.XXXXXX"); pid=
trap '[ -n "$pid" ] && kill $pid 2>/dev/null; rm -rf "$work"' EXIT
fail=0; pass=0
check() { if eval "$2"; then pass=$((pass+1)); else echo "FAILED: $1"; fail=$((fail+1)); fi; }
. "$(dirname "$0")/lib.sh"

prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log" 2>&1
check "cmake --install succeeds" "[ $? -eq 0 ]"
data=$prefix/share/vonnel
for f in bin/vonnel share/applications/vonnel.desktop share/icons/hicolor/scalable/apps/vonnel.svg \
         share/icons/hicolor/16x16/apps/vonnel.png share/icons/hicolor/256x256/apps/vonnel.png \
         share/vonnel/vonnel.ini.preset share/vonnel/TIPS.TXT share/vonnel/DrawTips.txt share/vonnel/ring.wav \
         share/metainfo/invalid.vonnel.vonnel.metainfo.xml share/man/man1/vonnel.1.gz \
         share/doc/vonnel/copyright share/doc/vonnel/changelog.gz; do
  check "installed $f" "[ -s '$prefix/$f' ]"
done
check "desktop entry starts the program by name" "grep -qx 'Exec=vonnel' '$prefix/share/applications/vonnel.desktop'"
check "manual page compressed" "gzip -t '$prefix/share/man/man1/vonnel.1.gz'"
check "nothing but the program in bin" "[ \"\$(ls '$prefix/bin')\" = vonnel ]"

# The scratch install is this test's own: its preset listens where no one is.
port=$(free_port 24000)
sed -i "s/^LocalPort=.*/LocalPort=$port/" "$data/vonnel.ini.preset"

# First start: the per-user folder is made and filled, and no box asks anything.
home=$work/home; mkdir -p "$home"
user=$home/.local/share/vonnel
env -u VONNEL_HOME -u XDG_DATA_HOME HOME="$home" "$prefix/bin/vonnel" --headless 2>"$work/err1" & pid=$!
wait_listen $port
check "first start listens on the preset's port" "listening $port"
check "no box at the first start" "! grep -q '^box' '$work/err1'"
check "vonnel.ini made from the preset" "grep -q '^LocalPort=$port' '$user/vonnel.ini'"
check "usage counted in the user's copy" "grep -q '^Usage=3' '$user/vonnel.ini'"
for f in vonnel.ini.preset TIPS.TXT DrawTips.txt ring.wav alert.wav; do
  check "user folder has $f" "cmp -s '$data/$f' '$user/$f'"
done
# The help pages and the language file, whichever the install holds.
for f in $(cd "$data" && find help Lang.txt -type f 2>/dev/null); do
  check "user folder has $f" "cmp -s '$data/$f' '$user/$f'"
done
check "installed files untouched" "[ ! -e '$data/vonnel.ini' ] && [ ! -e '$prefix/bin/vonnel.ini' ]"
kill -TERM $pid; wait $pid; rc=$?; pid=
check "first copy ends on TERM" "[ $rc -eq 0 ]"

# A vonnel.ini lost later is a repair, with its box; $XDG_DATA_HOME is the
# user's folder when it is set.
xdg=$work/xdg; mkdir -p "$xdg/vonnel"
cp "$user/vonnel.ini.preset" "$xdg/vonnel/vonnel.ini.preset"
env -u VONNEL_HOME HOME="$home" XDG_DATA_HOME="$xdg" "$prefix/bin/vonnel" --headless 2>"$work/err2" & pid=$!
wait_listen $port
check "lost vonnel.ini: the missing-file box" "grep '^box' '$work/err2' | head -1 | grep -qF '$xdg/vonnel/vonnel.ini is missing.'"
check "lost vonnel.ini: rebuilt from the preset" "grep -q '^LocalPort=$port' '$xdg/vonnel/vonnel.ini'"
check "lost vonnel.ini: the rest filled in" "[ -s '$xdg/vonnel/TIPS.TXT' ] && [ -s '$xdg/vonnel/ring.wav' ]"
kill -TERM $pid; wait $pid; pid=

# $VONNEL_HOME still wins over the per-user folder.
env HOME="$home" VONNEL_HOME="$work/own" "$prefix/bin/vonnel" --headless 2>"$work/err3" & pid=$!
wait_listen $port
check "\$VONNEL_HOME chosen and filled" "grep -q '^LocalPort=$port' '$work/own/vonnel.ini'"
check "no box with a new \$VONNEL_HOME" "! grep -q '^box' '$work/err3'"
kill -TERM $pid; wait $pid; pid=

echo "$pass passed, $fail failed"
[ $fail -eq 0 ]
