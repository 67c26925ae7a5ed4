#!/bin/sh
# Runs the saver in valgrind (memcheck) on a virtual display, with Mesa's software renderer: start,
# so many seconds of drawing, exit. Fails when anything is reported, or memory is lost. One
# thing is suppressed: libxcb sends the padding of its request xcb_randr_get_monitors as it finds it.
#   valgrind.sh [SECONDS]     60 when not given
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
if [ "${1:-}" != --on-display ]; then
    scripts/deps.sh build display valgrind xdotool x11-utils
    scripts/configure.sh release
    cmake --build --preset release --target atollia.kss data >/dev/null
    exec scripts/with-display.sh "$0" --on-display "${1:-60}"
fi
seconds=$2

tmp=$(mktemp -d)
pids=""
finish() {
    # shellcheck disable=SC2086  # several ids
    kill $pids 2>/dev/null || true
    rm -rf "$tmp"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# The host's window; when it goes, the saver must end by itself.
xev -geometry 160x120 >/dev/null &
host=$!
pids=$host
window=$(xdotool search --sync --onlyvisible --name "^Event Tester$" | head -n 1)

# The renderer in the saver's own thread, and the sounds that a machine without a device plays.
export LIBGL_ALWAYS_SOFTWARE=1 LP_NUM_THREADS=0 XDG_CONFIG_HOME="$tmp" SDL_AUDIODRIVER=dummy
unset XSCREENSAVER_WINDOW
# The renderer is let go before the search for leaks, which could not name it then: it stays loaded.
renderer=$(find /usr/lib -name swrast_dri.so | head -n 1)
cat >"$tmp/padding.supp" <<'SUPP'
{
    libxcb-padding
    Memcheck:Param
    writev(vector[...])
    fun:__writev
    fun:writev
    obj:*/libxcb.so.*
}
SUPP
LD_PRELOAD=$renderer valgrind --suppressions="$tmp/padding.supp" --leak-check=full \
    --show-leak-kinds=definite --errors-for-leak-kinds=definite --num-callers=40 --log-file="$tmp/log" \
    build/release/atollia.kss -window-id "$window" >"$tmp/said" 2>&1 &
saver=$!
pids="$pids $saver"

# The host's window is white until the first picture.
colours() { import -silent -window "$window" -depth 8 rgb:- | cksum; }
blank=$(colours)
began=$(date +%s)
picture=$blank
while [ "$picture" = "$blank" ]; do
    if ! kill -0 "$saver" 2>/dev/null || [ $(($(date +%s) - began)) -gt 600 ]; then
        echo "there was no picture"
        cat "$tmp/said" "$tmp/log"
        exit 1
    fi
    sleep 1
    picture=$(colours)
done
echo "first picture after $(($(date +%s) - began)) seconds"
pictures=1
began=$(date +%s)
while [ $(($(date +%s) - began)) -lt "$seconds" ]; do
    sleep 1
    before=$picture
    picture=$(colours)
    [ "$picture" = "$before" ] || pictures=$((pictures + 1))
done
kill "$host"
status=0
wait "$saver" || status=$?
cat "$tmp/said" "$tmp/log"
echo "at least $pictures pictures in $seconds seconds, exit status $status"
[ "$status" -eq 0 ] && [ ! -s "$tmp/said" ] && [ "$pictures" -gt 1 ] &&
    grep -q 'ERROR SUMMARY: 0 errors' "$tmp/log"
