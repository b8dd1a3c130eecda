#!/usr/bin/env bash
# Renders dist/icons/vonnel.svg into the PNG sizes the desktop's icon theme
# looks for (dist/icons/NxN/vonnel.png). The PNGs are committed, so the
# build needs no SVG renderer; run this after changing the drawing.
# Needs ImageMagick (convert).
set -euo pipefail
cd "$(dirname "$0")/../dist/icons"
for s in 16 24 32 48 64 128 256; do
  mkdir -p "${s}x${s}"
  convert -background none -density 300 vonnel.svg -resize "${s}x${s}" "${s}x${s}/vonnel.png"
done
