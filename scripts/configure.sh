#!/bin/sh
# Prepares build/NAME for building: NAME is a preset, or "artwork" for the data files. Quick when
# nothing is to be done; a folder that was copied or moved here is prepared anew.
#   configure.sh NAME [CMAKE ARGUMENTS...]     with arguments, always done
set -eu
cd "$(dirname "$0")/.."
case $PWD in
*[\;\"\#\$\\\`]*)
    echo "$PWD: CMake builds in no folder with one of ; \" # \$ \\ \` in its path" >&2
    exit 1
    ;;
esac
name=$1
shift
folder="build/$name"
case "$name" in
artwork) how="-S artwork -B build/artwork -G Ninja -DCMAKE_BUILD_TYPE=Release" ;;
*) how="--preset $name" ;;
esac
if [ -f "$folder/CMakeCache.txt" ]; then
    made_at=$(sed -n 's/^CMAKE_CACHEFILE_DIR:INTERNAL=//p' "$folder/CMakeCache.txt")
    if [ "$(readlink -f -- "$made_at")" != "$(readlink -f "$folder")" ]; then
        echo "$folder was made in another place; preparing it anew"
        how="--fresh $how"
    elif [ $# -eq 0 ] && [ -f "$folder/build.ninja" ] &&
        { [ "$name" = artwork ] || [ -z "$(find CMakePresets.json -newer "$folder/build.ninja")" ]; }; then
        exit 0
    fi
fi
# shellcheck disable=SC2086  # several words
cmake $how "$@" >/dev/null
