#!/bin/sh
# Builds everything and runs every test, in a private virtual display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh
cmake --preset release
cmake --build --preset release
exec xvfb-run -a -s "-screen 0 1280x1024x24" ctest --preset release -j "$(nproc)"
