#!/bin/sh
# Makes the Debian package and says where it is.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh build package
mkdir -p build
(
    flock 9 # Two runs in one clone build one after the other.
    cmake --preset package >/dev/null
    cmake --build --preset package --target atollia.kss data
    cd build/package
    umask 022
    cpack >cpack.log || { cat cpack.log; exit 1; }
) 9>build/.package.lock
ls "$top"/build/package/*.deb
