#!/bin/sh
# bench.sh [--quick]: what the saver costs, a page of markdown on standard output. Needs no display.
# Best on a machine that does nothing else, where it takes a few minutes; --quick measures a
# twentieth of the frames.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
(
    cd "$top"
    scripts/configure.sh release -DATOLLIA_TESTS=ON
    cmake --build --preset release --target data scene_bench record_frame sizes_bench
) >&2
trace=$(mktemp)
trap 'rm -f "$trace"' EXIT
LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy
export LIBGL_ALWAYS_SOFTWARE SDL_AUDIODRIVER
"$top/build/release/bench/record_frame" >"$trace"
"$top/build/release/bench/scene_bench" "$trace" "$@"
printf '\n### Sizes of windows\n\n'
"$top/build/release/bench/sizes_bench" --edges "$@"
