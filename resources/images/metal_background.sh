#!/usr/bin/env bash
# Makes metal_background.tif, the brushed-metal tile behind the style browser: gaussian noise
# smeared sideways with wrap-around (so that the tile repeats without seams), softened and
# brought into a narrow band of middle greys. Needs ImageMagick; the seed keeps it repeatable.
set -euo pipefail
cd "$(dirname "$0")"
convert -size 128x128 xc:gray50 -seed 7 +noise Gaussian -colorspace Gray \
    -virtual-pixel tile -motion-blur 0x40+0 -virtual-pixel tile -blur 0x0.5 \
    -auto-level +level 38%,58% -depth 8 -compress LZW metal_background.tif
