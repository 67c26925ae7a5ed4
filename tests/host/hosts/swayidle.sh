#!/bin/sh
# swayidle: the lagoon comes when nobody is there, and goes at the first key.
. "$(dirname "$0")/wayland.sh"
need swayidle swayidle
need wtype wtype
start_sway <<'CONFIG'
output HEADLESS-1 resolution 640x480
CONFIG

# A shell reads the command, and the program's path may have blanks and quotes in it.
ATOLLIA=$atollia
export ATOLLIA
start program swayidle -w timeout 1 '"$ATOLLIA" --fullscreen --until-input'
until_true "no lagoon when nobody is there" lagoon_on HEADLESS-1
keep_output HEADLESS-1 swayidle
press_key() {
    wtype x
    ! swaymsg -t get_tree | grep -q '"app_id": "atollia"'
}
until_true "it does not go at the first key" press_key
echo "it came and went"
