#!/bin/sh
# xsecurelock: draws while the screen is locked, ends with the locker.
. "$(dirname "$0")/common.sh"
need xsecurelock xsecurelock
start_display -screen 0 640x480x24
export HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/home/.config"
export XSECURELOCK_SAVER="$tmp/bin/atollia" XSECURELOCK_NO_COMPOSITE=1 XSECURELOCK_BLANK_TIMEOUT=-1

xsecurelock >"$tmp/log" 2>&1 &
host=$!
stop_host() { kill $host 2>/dev/null; }
at_end="stop_host"
until_true "the saver does not start" running
until_true "no lagoon on the screen" lagoon_at 640x480+0+0
keep_picture xsecurelock
# A key brings the locker's password dialog: it has the keyboard, not we.
asks() {
    xdotool key a
    pgrep -P $host auth_x11
}
until_true "keys do not reach the locker" asks
before_the_end
kill $host
# The locker's own way to its saver takes most of it on a busy machine.
expect_gone 3000
