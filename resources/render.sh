#!/bin/sh
# Draws the images anew from their vector sources. Wanted only when a source has changed: the results are
# kept with the sources. Needs python3, rsvg-convert (librsvg2-bin), pngtopnm (netpbm), cjpeg
# (libjpeg-turbo-progs), icotool (icoutils) and, for the banner's words, the font Noto Sans CJK SC.
set -eu
cd "$(dirname "$0")"

python3 src/draw.py
for source in src/white/*.svg; do
    rsvg-convert "$source" -o "qss/white/$(basename "$source" .svg).png"
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rsvg-convert src/logo.svg -o "$work/logo.png"
pngtopnm "$work/logo.png" | cjpeg -quality 95 -sample 1x1 -optimize -outfile img/logo.jpg
rsvg-convert src/tavrok.svg -o "$work/tavrok.png"
# An uncompressed bitmap, so that the resource compiler's zlib has something to do.
icotool --create --output img/tavrok.ico "$work/tavrok.png"
