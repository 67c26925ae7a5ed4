#!/bin/sh
# sway: the window, and the background of two outputs of which one comes later and goes again.
. "$(dirname "$0")/wayland.sh"
start_sway <<'CONFIG'
output HEADLESS-1 resolution 640x480
default_border none
CONFIG

start program "$atollia"
until_true "no window with the lagoon" lagoon_on HEADLESS-1
swaymsg -t get_tree | grep -q '"app_id": "atollia"' || fail "the window has no name"
keep_output HEADLESS-1 sway-window
kill $program
until_true "the window stays" sh -c '! swaymsg -t get_tree | grep -q "\"app_id\": \"atollia\""'

start program "$atollia" --wallpaper
until_true "no lagoon on the first output" lagoon_on HEADLESS-1
swaymsg create_output
swaymsg output HEADLESS-2 resolution 800x300
until_true "no lagoon on the second output" lagoon_on HEADLESS-2
swaymsg -t get_tree | grep -q '"app_id": "atollia"' && fail "the background is a window"
keep_output HEADLESS-2 sway-second
swaymsg output HEADLESS-2 disable
until_true "no lagoon on the output that stayed" lagoon_on HEADLESS-1
swaymsg output HEADLESS-2 enable
until_true "no lagoon on the output that came back" lagoon_on HEADLESS-2
kill -0 $program || fail "an output that went took the program with it"
[ ! -s "$tmp/program" ] || { cat "$tmp/program"; fail "the program complains"; }
kill $program

as_person "$atollia" --wallpaper --screen NONE-7 >"$tmp/out" 2>&1 && fail "there is no such screen"
grep -q 'no screen "NONE-7", only HEADLESS-1' "$tmp/out" || fail "the reason is not told"
echo "window and backgrounds are there"
