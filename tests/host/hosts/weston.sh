#!/bin/sh
# weston: the window on a second kind of compositor, and one line where there is no layer-shell.
. "$(dirname "$0")/wayland.sh"
need weston weston
start compositor weston --backend=headless-backend.so --width=640 --height=480 --use-pixman \
    --idle-time=0 --socket=wayland-7
at_end="stop_compositor"
until_true "weston does not start" test -S "$XDG_RUNTIME_DIR/wayland-7"
export WAYLAND_DISPLAY=wayland-7

as_person atollia --wallpaper >"$tmp/out" 2>&1 && fail "there is no layer-shell"
[ "$(cat "$tmp/out")" = \
    "atollia: --wallpaper needs layer-shell, which this compositor does not have" ] ||
    { cat "$tmp/out"; fail "not one clear line"; }

start program atollia --fullscreen
busy() { [ "$(awk '{ print $14 + $15 }' /proc/$program/stat)" -gt 100 ]; }
until_true "it does not draw" busy
kill -0 $program || fail "it does not run"
[ ! -s "$tmp/program" ] || { cat "$tmp/program"; fail "the program complains"; }
echo "the window is there"
