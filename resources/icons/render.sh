#!/usr/bin/env bash
# Renders every svg/NAME.svg to NAME.png, NAME@2x.png and NAME@3x.png and reports what icons.qrc lists but nobody drew,
# or the other way round. Needs rsvg-convert (librsvg2-bin) and the DejaVu Sans font.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

missing=0
report() {
    echo "missing: $1" >&2
    missing=1
}

if ! command -v rsvg-convert >/dev/null; then
    report "rsvg-convert"
    exit 1
fi
# A fallback font would render too, but with other widths: the labels of the explanatory picture would collide.
case "$(fc-match --format '%{family}' 'DejaVu Sans' 2>/dev/null)" in
    *"DejaVu Sans"*) ;;
    *) report "font DejaVu Sans"; exit 1 ;;
esac

listed="$(sed -n 's|.*<file[^>]*>\(.*\)</file>.*|\1|p' icons.qrc)"

for drawing in svg/*.svg; do
    name="$(basename "$drawing" .svg)"
    rsvg-convert --zoom 1 --output "$name.png" "$drawing"
    rsvg-convert --zoom 2 --output "$name@2x.png" "$drawing"
    rsvg-convert --zoom 3 --output "$name@3x.png" "$drawing"
    for picture in "$name.png" "$name@2x.png" "$name@3x.png"; do
        grep -qxF "$picture" <<<"$listed" || report "$picture in icons.qrc"
    done
done

while read -r picture; do
    name="${picture%.png}"
    [ -f "svg/${name%@[23]x}.svg" ] || report "svg/${name%@[23]x}.svg, listed in icons.qrc as $picture"
done <<<"$listed"

exit "$missing"
