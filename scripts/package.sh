#!/bin/sh
# Makes the Debian packages and says where they are. The same sources give the same bytes: times in it
# are the last commit's, or the changelog's where there is no repository.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh build package
: "${SOURCE_DATE_EPOCH:=$(git log -1 --format=%ct 2>/dev/null ||
    dpkg-parsechangelog -l packaging/changelog -S Timestamp)}"
export SOURCE_DATE_EPOCH
# The packer reads paths in the locale's letters.
export LC_ALL=C.UTF-8
mkdir -p build
(
    flock 9 # Two runs in one clone build one after the other.
    scripts/configure.sh package
    cmake --build --preset package --target atollia.kss atollia reefplugin data
    cd build/package
    rm -f -- *.deb
    umask 022
    cpack >cpack.log || { cat cpack.log; exit 1; }
) 9>build/.package.lock
ls "$top"/build/package/*.deb
