#!/usr/bin/env bash
# Installs the Debian packages the build, the program and the tests need,
# only those that are missing; or, given package names, those.
#   bash scripts/deps.sh [PACKAGE...]
set -euo pipefail
# Beyond the build and the tests: qt6-svg-dev, as the toolbar's and menus'
# pictures are SVG drawings that Qt's own renderer makes crisp at any scale;
# qt6-wayland, the platform plugin without which Qt opens no window under
# Wayland; weston, a headless compositor to run the program under Wayland;
# libssl-dev, as a copy makes its own key pair and certificate for private
# sessions with libcrypto (Qt can read keys but not make them).
packages=(cmake make g++ pkg-config python3 libgtest-dev
  qt6-base-dev qt6-multimedia-dev qt6-speech-dev qt6-declarative-dev qt6-svg-dev libxkbcommon-dev
  qt6-speech-flite-plugin gstreamer1.0-plugins-good libxss-dev libssl-dev
  xvfb xdotool dbus dbus-daemon at-spi2-core python3-pyatspi appstream desktop-file-utils
  weston qt6-wayland)
[ $# -gt 0 ] && packages=("$@")
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi
