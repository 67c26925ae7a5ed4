#!/bin/sh
# Builds everything and runs every test, on a virtual display of its own. Tests with foreign
# programs (lockers, desktops, compositors) run where these are installed; the last line names what
# was left out.
#   test.sh [--hosts] [--sanitize] [CTEST ARGUMENTS...]
# --hosts: installs the foreign programs first; a test that is left out is a failure then.
# --sanitize: with the address and undefined behaviour sanitizers instead.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
preset=release
hosts=""
while :; do
    case ${1:-} in
    --hosts) hosts=hosts ;;
    --sanitize) preset=asan ;;
    *) break ;;
    esac
    shift
done
# shellcheck disable=SC2086  # no word at all when there is nothing
scripts/deps.sh build display package tests $hosts
mkdir -p build
(
    flock 9 # Two runs in one clone build one after the other.
    scripts/configure.sh "$preset" -DATOLLIA_TESTS=ON
    cmake --build --preset "$preset"
) 9>build/.test.lock

results=$(mktemp)
trap 'rm -f "$results"' EXIT
status=0
scripts/with-display.sh ctest --preset "$preset" -j "$(nproc)" --output-junit "$results" "$@" ||
    status=$?

# Each test that did not run, with the reason that it gave.
left_out=$(awk '
    /<testcase / { name = $0; sub(/.* name="/, "", name); sub(/".*/, "", name) }
    /<skipped/ { skipped = 1; reason = "" }
    skipped && /skipped: / { reason = $0; sub(/.*skipped: /, " (", reason); sub(/<.*/, "", reason); reason = reason ")" }
    /<\/testcase>/ { if (skipped) { printf "%s%s%s", between, name, reason; between = ", " } skipped = 0 }
    ' "$results")
if [ -n "$left_out" ]; then
    if [ -z "$hosts" ]; then
        echo "Left out: $left_out. See scripts/test.sh --hosts."
    else
        echo "Left out: $left_out."
        [ $status -ne 0 ] || status=1
    fi
else
    echo "Nothing was left out."
fi
exit $status
