#!/bin/sh
# Makes the data files in build/data/ from artwork/; builds of several presets take turns.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
mkdir -p "$top/build"
exec 9>"$top/build/.data.lock"
flock 9
"$top/scripts/configure.sh" artwork
cmake --build "$top/build/artwork"
# Newer than all data files, and touched only when one of them has changed.
stamp="$top/build/data.stamp"
if [ ! -f "$stamp" ] || [ -n "$(find "$top/build/data" -newer "$stamp" -print -quit)" ]; then
    touch "$stamp"
fi
