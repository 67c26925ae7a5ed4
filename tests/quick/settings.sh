#!/bin/sh
# settings.sh <program> <desktop file>: what the menu's entry for the settings starts. "Always noon",
# which is not what the program does without settings, is kept.
command -v xdotool > /dev/null || { echo "skipped: xdotool is not installed"; exit 77; }
home=$(mktemp -d)
trap 'rm -r "$home"' EXIT
export XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home" QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8
command=$(sed -n '/^\[Desktop Action Settings\]/,$ s/^Exec=//p' "$2" | head -n 1)
[ "${command%% *}" = atollia ] || { echo "the entry starts '$command'"; exit 1; }
# shellcheck disable=SC2086  # its options, each a word
"$1" ${command#atollia} &
dialog=$!
window=$(timeout 60 xdotool search --sync --onlyvisible --pid $dialog | head -n 1)
xdotool windowfocus --sync "$window"
# The last page of the list; its first choice.
xdotool key End Tab space
# A key that comes before the dialog has the focus is lost.
while kill -0 $dialog 2> /dev/null; do
    xdotool key Return
done
wait $dialog || { echo "the dialog ended with $?"; exit 1; }
cat "$home/Orvo Atollia"
grep -qx "DayTime=0" "$home/Orvo Atollia"
