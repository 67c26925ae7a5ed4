#!/bin/sh
# fuzz.sh [SECONDS [TARGET...]]: feeds every decoder of files, or the named ones, with changed files
# for so long each (60 seconds); stops at the first that breaks and leaves the file that did it in
# build/fuzz/found, from where it belongs into fuzz/regressions once mended. What was found to reach
# new code is kept for the next run in build/fuzz/corpus.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
seconds=${1:-60}
[ $# -eq 0 ] || shift
[ $# -gt 0 ] || set -- texture height_map md3 md2 font language settings sound

scripts/deps.sh build tests clang libclang-rt-14-dev
scripts/configure.sh fuzz
for target in "$@"; do
    cmake --build build/fuzz --target "fuzz_$target"
done
for target in "$@"; do
    mkdir -p "build/fuzz/corpus/$target" build/fuzz/found
    extra=""
    [ ! -d "fuzz/regressions/$target" ] || extra="fuzz/regressions/$target"
    [ ! -f "fuzz/dictionaries/$target" ] || extra="$extra -dict=fuzz/dictionaries/$target"
    echo "$target: $seconds seconds"
    # Memory that a file claims may be asked for; what is filled counts.
    # shellcheck disable=SC2086  # no word at all when there is nothing
    "build/fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 \
        -malloc_limit_mb=8192 -max_len=4096 -print_final_stats=1 -verbosity=0 \
        -artifact_prefix="build/fuzz/found/$target-" \
        "build/fuzz/corpus/$target" "fuzz/corpus/$target" $extra
done
