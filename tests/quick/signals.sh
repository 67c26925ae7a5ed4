#!/bin/sh
# signals.sh <program>: TERM, INT and HUP end the window in order: with 0, and it remembers its size.
command -v xdotool > /dev/null || { echo "skipped: xdotool is not installed"; exit 77; }
home=$(mktemp -d)
trap 'rm -r "$home"' EXIT
export XDG_CONFIG_HOME="$home" LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy QT_QPA_PLATFORM=xcb
for signal in TERM INT HUP; do
    # A shell lets what it starts in the background ignore INT.
    env --default-signal=INT "$1" &
    program=$!
    window=$(timeout 60 xdotool search --sync --onlyvisible --name Atollia)
    case $signal in TERM) size='700 500' ;; INT) size='720 510' ;; HUP) size='740 520' ;; esac
    # shellcheck disable=SC2086 # two words
    timeout 60 xdotool windowsize --sync "$window" $size
    kill -$signal $program
    wait $program || { echo "$signal: it ended with $?"; exit 1; }
    grep -q "@Size($size)" "$home"/Orvo/atollia.conf ||
        { echo "$signal: a size is remembered that it did not have"; cat "$home"/Orvo/*; exit 1; }
done
