#!/bin/sh
# with-display.sh COMMAND...: runs the command on a virtual display of its own, 1280x1024 or as
# SCREEN says, and ends with the command's status. Several may run at once.
set -eu
folder=$(mktemp -d)
mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 "${SCREEN:-1280x1024}x24" +extension GLX -nolisten tcp -noreset \
    3>"$folder/display" 2>"$folder/log" &
server=$!
trap 'kill $server 2>/dev/null; wait $server 2>/dev/null; rm -rf "$folder"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
if ! read -r number <"$folder/display"; then
    cat "$folder/log" >&2
    exit 1
fi
unset WAYLAND_DISPLAY XAUTHORITY
export DISPLAY=":$number" QT_QPA_PLATFORM=xcb
"$@"
