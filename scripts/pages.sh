#!/bin/sh
# Measures what the reef costs in a page of Qt Quick beside the saver, on a virtual display with Mesa's
# software renderer: two tables of markdown.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh build display tests
scripts/configure.sh release -DATOLLIA_TESTS=ON
cmake --build --preset release --target atollia.kss window_start page_bench data >/dev/null
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home"
chmod 700 "$home"

echo "| processor time of a frame, 1280 x 720 | page | saver | page by saver |"
echo "|---|---|---|---|"
scripts/with-display.sh build/release/bench/page_bench
echo
# The quickest of five, and the most memory of them.
for _ in 1 2 3 4 5; do
    # shellcheck disable=SC2016  # the inner shell's
    scripts/with-display.sh sh -c \
        'build/release/bench/page_bench "$(awk "{ print \$1 * 1000 }" /proc/uptime)"'
done >"$home/starts"
build/release/bench/window_start build/release/atollia.kss >"$home/saver"
echo "| | page | saver |"
echo "|---|---|---|"
awk 'FNR == NR { split($0, words, /[^0-9]+/); saver = words[2]; saver_memory = words[3]; next }
    NR == FNR + 1 && !(still > 0) { still = $1; start = $2 }
    { if ($1 < still) still = $1; if ($2 < start) start = $2; if ($3 > memory) memory = $3 }
    END {
        printf "| a complete page to its still picture | %d ms | |\n", still
        printf "| start to first picture of the reef | %d ms | %d ms |\n", start, saver
        printf "| peak memory | %d MiB | %d MiB |\n", memory, saver_memory
    }' "$home/saver" "$home/starts"
