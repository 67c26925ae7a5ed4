#!/bin/sh
# lint.sh [FILE...]: what clang-tidy finds in the program, its tools and its benchmarks, or in the
# named sources. Fails when it finds anything; takes minutes.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh build tests clang-tidy
scripts/configure.sh release -DATOLLIA_TESTS=ON
# Some sources include what the build makes first.
cmake --build --preset release --target atollia.kss snapshot scene_bench >/dev/null
[ $# -gt 0 ] || set -- $(git ls-files 'src/*.cpp' 'tools/*.cpp' 'bench/*.cpp')
printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/release --quiet
