#!/bin/sh
# Makes the data files in build/data/ from artwork/; builds of several presets take turns.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$top/build"
exec 9>"$top/build/.data.lock"
flock 9
[ -f "$top/build/artwork/build.ninja" ] ||
    cmake -S "$top/artwork" -B "$top/build/artwork" -G Ninja -DCMAKE_BUILD_TYPE=Release
cmake --build "$top/build/artwork"
