#!/bin/sh
# Takes a picture of the scene: snapshot.sh OUT.png [--view bottom|middle|top|low|automatic]
# [--seconds S] [--size WxH] [--proportions stretched|true] [--samples N] [--seed N] [--config FILE]
# [--frames N --fps F] [--show-fps] [--where] [--daytime noon|clock|HH:MM] [--day]
# With --day a whole day passes from the first picture to the last, from --daytime on.
# The same arguments give the same picture. Needs no display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
(
    cd "$top"
    scripts/configure.sh release
    cmake --build --preset release --target data snapshot
) >&2
exec "$top/build/release/tools/snapshot" "$@"
