#!/bin/sh
# Looks for places where what lies behind the sea floor, or behind the whole world, shows through:
# frames of five views, the whole world's in the shapes of four screens. Needs no display.
#   cracks.sh [FRAMES [WIDTHxHEIGHT]]     of each view, 2000, which takes an hour; 640x474
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
(
    cd "$top"
    scripts/configure.sh release -DATOLLIA_TESTS=ON
    cmake --build --preset release --target data floor_test
) >&2
ATOLLIA_FLOOR_FRAMES=${1:-2000} ATOLLIA_FLOOR_SIZE=${2:-640x474} \
    exec "$top/build/release/tests/scene/floor_test"
