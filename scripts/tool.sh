#!/bin/sh
# tool.sh NAME ARGUMENTS...: builds the program NAME of tools/ and runs it.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
name=$1
shift
(
    cd "$top"
    scripts/configure.sh release
    cmake --build --preset release --target "$name"
) >&2
exec "$top/build/release/tools/$name" "$@"
