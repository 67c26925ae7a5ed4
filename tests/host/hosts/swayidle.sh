#!/bin/sh
# swayidle, as README.md has it for sway: the lagoon comes when nobody is there, and goes at
# the first key.
. "$(dirname "$0")/wayland.sh"
need swayidle swayidle
need wtype wtype
recipe sway "$tmp/recipe"
start_sway <<CONFIG
output HEADLESS-1 resolution 640x480
$(cat "$tmp/recipe")
CONFIG
window() { swaymsg -t get_tree | grep -q '"app_id": "atollia"'; }
until_true "no background" lagoon_on HEADLESS-1
window && fail "it comes while somebody is there"
# Without it, so that what is seen is the window's.
kill "$(started atollia)"
no_lagoon() { ! lagoon_on HEADLESS-1; }
until_true "the background does not go" no_lagoon
# To swayidle this signal means that its time has passed.
kill -USR1 "$(started swayidle)"
until_true "nothing comes when nobody is there" window
until_true "no lagoon when nobody is there" lagoon_on HEADLESS-1
keep_output HEADLESS-1 swayidle
press_key() {
    wtype x
    ! window
}
until_true "it does not go at the first key" press_key
gone() { [ -z "$(started atollia)" ]; }
until_true "the program does not end" gone
echo "it came and went"
