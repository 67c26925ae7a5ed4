#!/bin/sh
# Shows a model from eight sides and through its animation: turntable.sh MODEL OUT.png [TEXTURE]
# [CELL]. MODEL is a ".nlm" file; without TEXTURE the ".nlt" file beside it is used. CELL is the
# size of one view in pixels. Needs no display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
(
    cd "$top"
    scripts/configure.sh release
    cmake --build --preset release --target turntable
) >&2
exec "$top/build/release/tools/turntable" "$@"
