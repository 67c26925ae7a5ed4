#!/bin/sh
# The lock screen of Plasma 5.27 with the wallpaper, chosen as README.md has it: reef and clock.
. "$(dirname "$0")/common.sh"
greeter=$(ls /usr/lib/*/libexec/kscreenlocker_greet 2>/dev/null | head -n 1)
[ -n "$greeter" ] || skip "the package libkscreenlocker5 is not installed"
need kwriteconfig5 libkf5config-bin
need dbus-run-session dbus
. "$(dirname "$0")/plasma.sh"
start_display -screen 0 1280x720x24

recipe "Plasma 5.27 and 6" "$tmp/recipe"
as_person sh -e "$tmp/recipe"
cat >>"$XDG_CONFIG_HOME/kscreenlockerrc" <<'RC'

[Greeter][Wallpaper][org.atollia.wallpaper][General]
CameraPos=2
DayTime=0
RC
cat >"$tmp/session" <<'SESSION'
"$1" --testing >"$2/log" 2>&1 &
echo $! >"$2/greeter"
wait
SESSION
as_person dbus-run-session -- sh "$tmp/session" "$greeter" "$tmp" &
session=$!
stop_greeter() { kill "$(cat "$tmp/greeter")"; }
at_end="stop_greeter"

# Open water, where neither reef nor clock stands.
until_true "no lagoon on the lock screen" lagoon_at 1280x200+0+320
# The clock stands in the upper half, white on blue; the picture moves behind it.
clock_shows() {
    import -silent -window root -crop 400x130+440+40 +repage "$tmp/clock.png"
    white=$(convert "$tmp/clock.png" -fuzz 3% -fill black +opaque white -fill white \
        -opaque white -format '%[fx:int(10000*mean)]' info:)
    [ "$white" -gt 50 ]
}
until_true "no clock on the lock screen" clock_shows
moves() {
    import -silent -window root -crop 1280x300+0+420 +repage "$tmp/one.png"
    until_true "the picture stands still" other_picture
}
other_picture() {
    import -silent -window root -crop 1280x300+0+420 +repage "$tmp/other.png"
    ! cmp -s "$tmp/one.png" "$tmp/other.png"
}
moves
if grep -i "atollia\|Reef" "$tmp/log"; then
    fail "the wallpaper complains"
fi
keep_picture plasma-lock
echo "reef and clock are there"
