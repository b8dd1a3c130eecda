#!/usr/bin/env bash
# Builds the Debian package (cpack -G DEB), shows what it holds, and, given
# a folder, installs it into a clean Debian 12 there (debootstrap makes one
# when the folder is missing; needs root and the Debian mirror) and starts
# it as a new user: headless, then, when $DISPLAY is set, with windows on
# that display (a screenshot is written to $SHOT, default
# /tmp/vonnel-package.png). Before that it runs the validators on what the
# package holds: appstreamcli (metainfo), desktop-file-validate (desktop
# entry), lintian (the .deb) and man (the manual page); it installs them
# when missing and fails when one reports an error. Not part of the test
# suite.
# usage: scripts/package.sh [CHROOT_DIR]   (PORT: the port the trial copy listens on, default 31300)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
port=${PORT:-31300}
shot=${SHOT:-/tmp/vonnel-package.png}
[ -f build/CMakeCache.txt ] || cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
(cd build && cpack -G DEB >/dev/null)
deb=$(ls -t "$root"/build/vonnel_*.deb | head -1)
echo "== $deb"
dpkg-deb --info "$deb" | grep -E '^ (Package|Version|Architecture|Depends|Recommends|Installed-Size):'
echo "== contents"
dpkg-deb --contents "$deb" | awk '$6 !~ /\/$/ {print $3, $6}'

bash scripts/deps.sh appstream desktop-file-utils lintian man-db >/dev/null
unpacked=$(mktemp -d); trap 'rm -rf "$unpacked"' EXIT
dpkg-deb -x "$deb" "$unpacked"
bad=0
echo "== appstreamcli validate --no-net"
appstreamcli validate --no-net "$unpacked"/usr/share/metainfo/*.metainfo.xml || bad=1
echo "== desktop-file-validate"
desktop-file-validate "$unpacked"/usr/share/applications/vonnel.desktop && echo "(no output: clean)" || bad=1
echo "== lintian"
lintian --fail-on error,warning "$deb" && echo "(no tags at error or warning level)" || bad=1
echo "== man --warnings"
warn=$(MANWIDTH=80 man --warnings -l "$unpacked"/usr/share/man/man1/vonnel.1.gz 2>&1 >/dev/null)
[ -z "$warn" ] && echo "(no warnings)" || { echo "$warn"; bad=1; }
rm -rf "$unpacked"; trap - EXIT
[ $bad -eq 0 ] || { echo "a validator failed"; exit 1; }

[ $# -ge 1 ] || exit 0
chroot_dir=$1
if [ ! -d "$chroot_dir/usr" ]; then
  debootstrap --variant=minbase bookworm "$chroot_dir" http://deb.debian.org/debian
fi
mounted=()
cleanup() { for m in "${mounted[@]}"; do umount "$m" 2>/dev/null || true; done; }
trap cleanup EXIT
mount -t proc proc "$chroot_dir/proc"; mounted+=("$chroot_dir/proc")
mount --bind /dev/pts "$chroot_dir/dev/pts"; mounted=("$chroot_dir/dev/pts" "${mounted[@]}")
if [ -n "${DISPLAY:-}" ] && [ -d /tmp/.X11-unix ]; then
  mkdir -p "$chroot_dir/tmp/.X11-unix"
  mount --bind /tmp/.X11-unix "$chroot_dir/tmp/.X11-unix"; mounted=("$chroot_dir/tmp/.X11-unix" "${mounted[@]}")
fi
cp "$deb" "$chroot_dir/tmp/vonnel.deb"
in_root() { chroot "$chroot_dir" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive "$@"; }
echo "== apt-get install ./vonnel.deb in $chroot_dir"
in_root apt-get update -qq
in_root apt-get install -y -q /tmp/vonnel.deb 2>&1 | grep -E '^(The following NEW|[0-9]+ upgraded|Setting up vonnel|E:)' || true
in_root dpkg -s vonnel | grep -E '^(Status|Version)'
in_root bash -c 'id tester >/dev/null 2>&1 || useradd -m tester'
in_root rm -rf /home/tester/.local
# The trial copy listens on $PORT, not on the preset's 2500.
in_root sed -i "s/^LocalPort=.*/LocalPort=$port/" /usr/share/vonnel/vonnel.ini.preset

as_tester() { chroot --userspec=tester:tester "$chroot_dir" env -i HOME=/home/tester PATH=/usr/bin:/bin "$@"; }
echo "== first start, headless"
as_tester bash -c 'vonnel --headless 2>/tmp/vonnel-err & pid=$!; sleep 4
  awk -v h="$(printf ":%04X" '"$port"')" '\''$4 == "0A" && substr($2, length($2) - 4) == h {f=1} END {exit !f}'\'' /proc/net/tcp /proc/net/tcp6 \
    && echo "listening on '"$port"'" || echo "NOT listening"
  kill -TERM $pid; wait $pid; echo "exit $?"
  echo "boxes: $(grep -c "^box" /tmp/vonnel-err)"; grep "^box" /tmp/vonnel-err || true
  ls ~/.local/share/vonnel; grep -E "^(LocalPort|Usage)=" ~/.local/share/vonnel/vonnel.ini'
if [ -n "${DISPLAY:-}" ] && [ -d /tmp/.X11-unix ]; then
  echo "== start with windows on $DISPLAY"
  as_tester env DISPLAY="$DISPLAY" vonnel & pid=$!
  sleep 6
  import -window root "$shot" && echo "screenshot: $shot"
  kill -TERM $pid 2>/dev/null; wait $pid || true
fi
