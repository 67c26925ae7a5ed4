#!/bin/sh
# Builds the saver and shows it in a window; arguments go to the program. On a machine without a
# display it runs on a virtual one and leaves a picture, lagoon.png.
#   run.sh [--app] [ARGUMENTS...]
# --app: the program atollia instead, which needs a display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
if [ -n "${DISPLAY:-}" ] || [ "${1:-}" = --app ]; then
    scripts/deps.sh build
else
    scripts/deps.sh build display
fi
scripts/configure.sh release
if [ "${1:-}" = --app ]; then
    shift
    cmake --build --preset release --target atollia data
    exec build/release/atollia "$@"
fi
cmake --build --preset release --target atollia.kss data

saver="$top/build/release/atollia.kss"
if [ -n "${DISPLAY:-}" ]; then
    exec "$saver" "$@"
fi

echo "No display: running on a virtual one."
scripts/with-display.sh sh -eu -c '
    saver=$1 picture=$2
    shift 2
    [ $# -gt 0 ] || set -- -demo -geometry 1280x1024+0+0
    "$saver" "$@" &
    pid=$!
    # The window is black until the first picture; wait for one with many colours.
    tries=0
    while kill -0 $pid 2>/dev/null && [ $tries -lt 60 ]; do
        sleep 1
        tries=$((tries + 1))
        import -window root -depth 8 "$picture"
        [ "$(identify -format %k "$picture")" -lt 1000 ] || break
    done
    kill $pid 2>/dev/null || true
    wait $pid 2>/dev/null || true
    [ "$(identify -format %k "$picture")" -ge 1000 ]
' sh "$saver" "$top/lagoon.png" "$@"
echo "The lagoon is in lagoon.png."
