#!/bin/sh
# Measures the sand in pictures of the bottom view, 1280x948: sand.sh PICTURE.png ...
# Reach, before the eye: saturation about 0.126, deviation 18, brightest 241, crispness 8.3, fine
# detail 3.2, all or more, and lines of light about 8.3 pixels wide. Needs no display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
(
    cd "$top"
    scripts/configure.sh release
    cmake --build --preset release --target sand
) >&2
exec "$top/build/release/tools/sand" "$@"
