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
until_true "no background" lagoon_on HEADLESS-1
# Without it, so that what is seen is the window's.
kill "$(started atollia)"
until_true "the background does not go" no_lagoon
idle_picture_comes_and_goes
echo "it came and went"
