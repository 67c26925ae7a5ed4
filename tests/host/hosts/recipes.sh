#!/bin/sh
# What README.md has for compositors that Debian 12 lacks or that do not start without a graphics
# card: their lines, run in sway the way that each of them runs them.
. "$(dirname "$0")/wayland.sh"
need swayidle swayidle
need wtype wtype
start_sway <<CONFIG
output HEADLESS-1 resolution 640x480
CONFIG
# The values of a key in a file of settings.
values() { # KEY FILE
    sed -n "s/^ *$1 = //p" "$2"
}
# Runs each line of standard input as a command of its own.
run_lines() {
    while read -r line; do
        as_person sh -c "$line" >>"$tmp/said" 2>&1 &
    done
}
background_goes() {
    kill $(started atollia) # as many as there are
    until_true "the background does not go" no_lagoon
    # What swayidle says of a session without D-Bus has the time before it.
    if grep -v "^[-0-9: ]* - \[" "$tmp/said"; then
        fail "a program complains"
    fi
}

recipe labwc "$tmp/autostart"
as_person sh "$tmp/autostart" >>"$tmp/said" 2>&1
until_true "labwc: no background" lagoon_on HEADLESS-1
background_goes
idle_picture_comes_and_goes
kill "$(started swayidle)"
echo "labwc"

recipe Wayfire "$tmp/wayfire.ini"
[ "$(head -n 1 "$tmp/wayfire.ini")" = "[autostart]" ] || fail "another section"
{
    values reef "$tmp/wayfire.ini"
    values idle "$tmp/wayfire.ini"
} | run_lines
until_true "Wayfire: no background" lagoon_on HEADLESS-1
background_goes
idle_picture_comes_and_goes
kill "$(started swayidle)"
echo "Wayfire"

recipe Hyprland "$tmp/hyprland.conf"
# Instead of hypridle, that its time has passed.
recipe hypridle "$tmp/hypridle.conf"
values on-timeout "$tmp/hypridle.conf" >"$tmp/when_idle"
[ "$(wc -l <"$tmp/when_idle")" -eq 1 ] || fail "hypridle: one command is expected"
values exec-once "$tmp/hyprland.conf" | grep -v -x hypridle | run_lines
until_true "Hyprland: no background" lagoon_on HEADLESS-1
background_goes
window && fail "Hyprland: the background is a window"
run_lines <"$tmp/when_idle"
idle_picture_goes
echo "Hyprland"

# Its command is for a background, which it puts behind its own lock.
recipe swaylock-plugin "$tmp/lock"
cat >"$tmp/bin/swaylock-plugin" <<'PLUGIN'
#!/bin/sh
[ $# -eq 2 ] && [ "$1" = --command ] && exec sh -c "$2"
PLUGIN
chmod 755 "$tmp/bin/swaylock-plugin"
run_lines <"$tmp/lock"
until_true "swaylock-plugin: no background" lagoon_on HEADLESS-1
background_goes
echo "swaylock-plugin"
