#!/bin/sh
# until_input.sh <program>: the idle picture is there until a key is pressed and then ends with 0.
command -v xdotool > /dev/null || { echo "skipped: xdotool is not installed"; exit 77; }
home=$(mktemp -d)
trap 'rm -r "$home"' EXIT
export XDG_CONFIG_HOME="$home" LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy QT_QPA_PLATFORM=xcb
"$1" --fullscreen --until-input &
idle=$!
timeout 60 xdotool search --sync --onlyvisible --name Atollia > /dev/null
kill -0 $idle || { echo "it ended without input"; exit 1; }
# A key that comes before the window has the focus is lost.
while kill -0 $idle 2> /dev/null; do
    xdotool key a
done
wait $idle
