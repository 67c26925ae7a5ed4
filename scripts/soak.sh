#!/bin/sh
# Runs the saver on a virtual display with Mesa's software renderer, samples its memory every minute
# and fails when it goes on growing after the first one.
#   soak.sh [MINUTES]     60 when not given
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
if [ "${1:-}" != --on-display ]; then
    scripts/deps.sh build display
    scripts/configure.sh release
    cmake --build --preset release --target atollia.kss data >/dev/null
    exec scripts/with-display.sh nice "$0" --on-display "${1:-60}"
fi
minutes=$2
# KiB. What a rare moment needs for the first time, the renderer compiles when it comes; that ends, a
# leak does not.
allowed=4096 # from the end of the first minute to that of the last
allowed_late=1024 # in the second half

tmp=$(mktemp -d)
# Default settings: a configuration that is empty.
export XDG_CONFIG_HOME="$tmp" SDL_AUDIODRIVER=dummy LIBGL_ALWAYS_SOFTWARE=1
unset XSCREENSAVER_WINDOW
build/release/atollia.kss -demo -geometry 320x240 >"$tmp/said" 2>&1 &
pid=$!
finish() {
    kill "$pid" 2>/dev/null || true
    rm -rf "$tmp"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

value() { sed -n "s/^$1:[[:space:]]*\([0-9]*\).*/\1/p" "/proc/$pid/status" 2>/dev/null || echo 0; }
ticks() { sed 's/.*) //' "/proc/$pid/stat" | awk '{ print $12 + $13 }'; }

echo "$(git log -1 --format='%h %s'), $minutes minutes"
echo "minute  resident KiB  anonymous KiB  highest KiB  processor s"
minute=0
first=0
half=0
last=0
used=0
while [ "$minute" -lt "$minutes" ]; do
    # What the renderer needs for the frames it is at comes and goes: the least of the minute counts.
    least=""
    for _ in 1 2 3 4 5 6 7 8 9 10 11 12; do
        sleep 5
        now=$(value RssAnon)
        [ -n "$least" ] && [ "$now" -ge "$least" ] || least=$now
    done
    minute=$((minute + 1))
    if ! grep -qs '^State:[[:space:]]*[RSD]' "/proc/$pid/status"; then
        echo "the saver ended in minute $minute"
        cat "$tmp/said"
        exit 1
    fi
    last=$least
    [ "$minute" -gt 1 ] || first=$last
    [ "$minute" -gt $(((minutes + 1) / 2)) ] || half=$last
    before=$used
    used=$(ticks)
    if [ "$used" -le "$before" ]; then
        echo "nothing was drawn in minute $minute"
        exit 1
    fi
    printf '%6d  %12d  %13d  %11d  %11d\n' "$minute" "$(value VmRSS)" "$last" "$(value VmHWM)" \
        $((used / $(getconf CLK_TCK)))
done
if [ -s "$tmp/said" ]; then
    cat "$tmp/said"
    echo "the saver complained"
    exit 1
fi
echo "grown by $((last - first)) KiB since the first minute, $((last - half)) KiB in the second half"
[ $((last - first)) -le "$allowed" ] && [ $((last - half)) -le "$allowed_late" ]
