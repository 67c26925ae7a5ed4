#!/bin/sh
# Measures what the saver costs in a window, when somebody sees it and when nobody does, and how often
# it draws, on a virtual display with Mesa's software renderer.
#   pacing.sh [SECONDS]     each measurement takes so long; 60 when not given
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
seconds=${1:-60}
scripts/deps.sh build display tests
scripts/configure.sh release -DATOLLIA_TESTS=ON
cmake --build --preset release --target atollia.kss standin_saver window_start window_bench data >/dev/null

tmp=$(mktemp -d)
pids=""
finish() {
    # shellcheck disable=SC2086  # several ids
    kill $pids 2>/dev/null || true
    rm -rf "$tmp"
}
trap finish EXIT
mkfifo "$tmp/number"
exec 4<>"$tmp/number"
Xvfb -displayfd 4 -nolisten tcp -noreset -screen 0 1280x720x24 >/dev/null 2>&1 &
pids=$!
read -r number <&4
export DISPLAY=":$number" SDL_AUDIODRIVER=dummy XDG_CONFIG_HOME="$tmp" LIBGL_ALWAYS_SOFTWARE=1
unset XSCREENSAVER_WINDOW

start() { # PROGRAM OPTIONS...
    "$@" >"$tmp/out" 2>/dev/null &
    pid=$!
    pids="$pids $pid"
    window=$(xdotool search --sync --onlyvisible --pid $pid | head -n 1)
    sleep 3
}
stop() {
    kill $pid
    wait $pid 2>/dev/null || true
}
ticks() { awk '{ print $14 + $15 }' "/proc/$pid/stat"; }
processor() { # percent of one core
    before=$(ticks)
    sleep "$seconds"
    awk -v t=$(($(ticks) - before)) -v s="$seconds" -v hz="$(getconf CLK_TCK)" \
        'BEGIN { printf "%.2f %%", 100 * t / hz / s }'
}
frames() { # per second
    before=$(grep -c '^frame$' "$tmp/out" || true)
    sleep "$seconds"
    awk -v n=$(($(grep -c '^frame$' "$tmp/out") - before)) -v s="$seconds" \
        'BEGIN { printf "%.1f", n / s }'
}
hide() {
    xdotool windowunmap --sync "$window"
    sleep 2
}
cover() {
    build/release/tests/host/standin_saver -demo -geometry 700x500+0+0 >/dev/null 2>&1 &
    pids="$pids $!"
    xdotool windowraise "$(xdotool search --sync --onlyvisible --pid $! | head -n 1)"
    sleep 2
}

saver="$top/build/release/atollia.kss"
standin="$top/build/release/tests/host/standin_saver"
export STANDIN_COUNTS=1
demo="-demo -geometry 640x480+20+10"

echo "In a window of 1280 x 720, with sound: $(build/release/bench/window_start "$saver")"
echo "Processor time of one core, $seconds s each:"
# shellcheck disable=SC2086  # options
{
    start "$saver" $demo
    echo "  seen       $(processor)"
    hide
    echo "  unmapped   $(processor)"
    stop
    start "$saver" $demo
    cover
    echo "  covered    $(processor)"
    stop
    kill $! 2>/dev/null || true
    echo "Frames per second of a scene that costs nothing:"
    start "$standin" $demo
    echo "  software renderer   $(frames)"
    stop
    for rate in 10 50 1000; do
        start "$standin" $demo -maxfps $rate
        echo "  -maxfps $rate        $(frames)"
        hide
        [ $rate -ne 1000 ] || echo "  unmapped            $(frames)"
        stop
    done
}
# A virtual machine's processor that sleeps for a moment between two threads' work wakes late, and
# that is not what is measured: loops of the lowest class keep it awake.
for _ in $(seq "$(nproc)"); do
    chrt -i 0 sh -c 'while :; do :; done' &
    pids="$pids $!"
done
# Whatever else the machine does has to wait, where we may say so.
first=""
! chrt -r 1 true 2>/dev/null || first="chrt -r 1"
echo
echo "As large as a screen, default settings, the camera at rest or on its way, $seconds s each:"
echo
# shellcheck disable=SC2086  # a command and its options
SCREEN=1920x1080 $first scripts/with-display.sh build/release/bench/window_bench "$seconds"
