#!/bin/sh
# The preview in XScreenSaver's settings: drawn in a small window, gone with the dialog.
. "$(dirname "$0")/common.sh"
need xscreensaver-settings xscreensaver
start_display -screen 0 1024x900x24
export HOME="$tmp/home" PATH="$tmp/bin:$PATH" XDG_CONFIG_HOME="$tmp/home/.config"
"$sources/packaging/atollia-xscreensaver" add
printf '%s\n' 'mode: one' 'selected: 0' 'splash: False' >>"$HOME/.xscreensaver"

as_person dbus-run-session -- xscreensaver --no-splash >"$tmp/host-log" 2>&1 &
daemon=$!
until_true "XScreenSaver does not start" as_person xscreensaver-command -time
as_person dbus-run-session -- xscreensaver-settings --debug >"$tmp/log" 2>&1 &
dialog=$!
stop_host() { kill $dialog $daemon 2>/dev/null; }
at_end="stop_host"

until_true "no saver in the preview" running
window=$(tr '\0' '\n' <"/proc/$(savers | head -n 1)/cmdline" |
    grep -A 1 -e '-window-id' | grep -o '0x[0-9A-Fa-f]*\|^[0-9]*$' | head -n 1)
[ -n "$window" ] || fail "the preview has no window id"
preview_shows_lagoon() {
    eval "$(xwininfo -id "$window" | sed -n \
        -e 's/.*Absolute upper-left X: *\(.*\)/x=\1/p' -e 's/.*Absolute upper-left Y: *\(.*\)/y=\1/p' \
        -e 's/.*Width: \(.*\)/w=\1/p' -e 's/.*Height: \(.*\)/h=\1/p')"
    lagoon_at "${w}x$h+$x+$y"
}
until_true "no lagoon in the preview" preview_shows_lagoon
keep_picture xscreensaver-settings

pid=$(savers | head -n 1)
# The dialog, which started the saver, dies without saying goodbye.
parent=$(awk '/^PPid:/ { print $2 }' "/proc/$pid/status")
[ "$(cat "/proc/$parent/comm")" = xscreensaver-se ] || fail "the dialog is not the saver's parent"
kill -KILL "$parent"
until_true "the saver outlives the dialog" none_left
