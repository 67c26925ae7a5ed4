#!/bin/sh
# sway: the background of two outputs of which one comes later and goes again, as README.md has it,
# and the window.
. "$(dirname "$0")/wayland.sh"
recipe sway "$tmp/recipe"
start_sway <<CONFIG
output HEADLESS-1 resolution 640x480
default_border none
$(grep -e "--wallpaper" "$tmp/recipe")
CONFIG

until_true "no lagoon on the first output" lagoon_on HEADLESS-1
background=$(started atollia)
swaymsg create_output
swaymsg output HEADLESS-2 resolution 800x300
until_true "no lagoon on the second output" lagoon_on HEADLESS-2
window && fail "the background is a window"
keep_output HEADLESS-2 sway-second
swaymsg output HEADLESS-2 disable
until_true "no lagoon on the output that stayed" lagoon_on HEADLESS-1
swaymsg output HEADLESS-2 enable
until_true "no lagoon on the output that came back" lagoon_on HEADLESS-2
kill -0 $background || fail "an output that went took the program with it"
# What sway itself says begins with the time.
if grep -v "^[0-9:.]* \[" "$tmp/compositor"; then
    fail "the program complains"
fi
kill $background
until_true "the background stays" sh -c "! kill -0 $background"
grim -o HEADLESS-1 "$tmp/empty.png"
is_lagoon "$tmp/empty.png" && fail "the background stays"

start program atollia
until_true "no window with the lagoon" lagoon_on HEADLESS-1
window || fail "the window has no name"
keep_output HEADLESS-1 sway-window
[ ! -s "$tmp/program" ] || { cat "$tmp/program"; fail "the program complains"; }
kill $program
no_window() { ! window; }
until_true "the window stays" no_window

as_person atollia --wallpaper --screen NONE-7 >"$tmp/out" 2>&1 && fail "there is no such screen"
grep -q 'no screen "NONE-7", only HEADLESS-1' "$tmp/out" || fail "the reason is not told"
echo "window and backgrounds are there"

# Where the driver does not bear it.
recipe "Lines in sway" "$tmp/recipe" docs/desktops.md
as_person sh -e "$tmp/recipe"
kill "$compositor"
until_true "sway does not end" sh -c "! kill -0 $compositor"
run_sway
until_true "sway does not show its own background" no_lagoon
sleep 3
[ -z "$(started atollia)" ] || fail "a comment starts the program"
echo "without the lines it is not started"
