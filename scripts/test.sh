#!/bin/sh
# Builds everything and runs every test, on a virtual display of its own.
#   test.sh [--sanitize] [CTEST ARGUMENTS...]
# --sanitize: with the address and undefined behaviour sanitizers instead.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
preset=release
if [ "${1:-}" = --sanitize ]; then
    preset=asan
    shift
fi
scripts/deps.sh
mkdir -p build
(
    flock 9 # Two runs in one clone build one after the other.
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset"
) 9>build/.test.lock
exec scripts/with-display.sh ctest --preset "$preset" -j "$(nproc)" "$@"
