#!/usr/bin/env bash
# Renders the pictures that a desktop shows of the program and its files, in the sizes of the
# hicolor theme. Needs rsvg-convert (librsvg2-bin).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

render() {
    rsvg-convert --width "$2" --height "$2" --output "$3-$2.png" "$1"
}

# Three arcs run into each other below 32 pixels.
for size in 16 24; do render svg/tarvio-small.svg "$size" tarvio; done
for size in 32 48 64 128 256; do render ../icons/svg/wave.svg "$size" tarvio; done
for size in 16 24 32 48 64 128 256; do render svg/orv-file.svg "$size" orv-file; done
