#!/bin/sh
# cracks.sh [FRAMES]: looks for places where what lies behind the sea floor, or behind the whole
# world, shows through, in so many frames of each of five views; 2000 without FRAMES, which takes
# half an hour. Needs no display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
(
    cd "$top"
    [ -f build/release/build.ninja ] || cmake --preset release
    cmake --build --preset release --target data floor_test
) >&2
ATOLLIA_FLOOR_FRAMES=${1:-2000} exec "$top/build/release/tests/scene/floor_test"
