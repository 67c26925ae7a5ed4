#!/bin/sh
# The lock screen of Plasma 5.27 with the wallpaper, chosen as README.md has it: reef and clock,
# and what it costs while nobody can see it.
. "$(dirname "$0")/common.sh"
greeter=$(ls /usr/lib/*/libexec/kscreenlocker_greet 2>/dev/null | head -n 1)
[ -n "$greeter" ] || skip "the package libkscreenlocker5 is not installed"
need kwriteconfig5 libkf5config-bin
need dbus-run-session dbus
[ -x /usr/lib/qt5/bin/qml ] || skip "the package qml is not installed"
. "$(dirname "$0")/plasma.sh"
start_display -screen 0 1280x720x24

recipe "Plasma 5.27 and 6, lock screen" "$tmp/recipe"
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
start_greeter() {
    as_person dbus-run-session -- sh "$tmp/session" "$greeter" "$tmp" &
    session=$!
}
start_greeter
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

lock=$(cat "$tmp/greeter")
seen=$(used_in_ten_seconds "$lock")
# Less than the reef, and not nothing: the cursor that blinks in the password is drawn on, also
# with a plain colour for a wallpaper.
stands() { # WHAT
    used=$(used_in_ten_seconds "$lock")
    echo "processor time in ten seconds: seen $seen, $1 $used hundredths of a second"
    [ "$used" -lt $((seen / 5)) ] || fail "it draws on while $1"
}
cat >"$tmp/cover.qml" <<'QML'
import QtQuick 2.15
import QtQuick.Window 2.15
Window { width: 1280; height: 720; color: "red"; visible: true }
QML
QT_LOGGING_RULES="*=false" /usr/lib/qt5/bin/qml "$tmp/cover.qml" >/dev/null 2>&1 &
cover=$!
stop_cover() { kill $cover; }
at_end="stop_cover stop_greeter"
all_red() {
    import -silent -window root -depth 8 "$tmp/red.png"
    convert "$tmp/red.png" -scale 1x1! -depth 8 txt: | grep -q "#FF0000"
}
until_true "the window does not come" all_red
stands "covered"
all_red || fail "it does not stay covered"
stop_cover
at_end="stop_greeter"
until_true "no lagoon when the window has gone" lagoon_at 1280x200+0+320
moves

greeter_window=$(xdotool search --onlyvisible --pid "$lock" | head -n 1)
xdotool windowunmap "$greeter_window"
stands "unmapped"
xdotool windowmap "$greeter_window"
until_true "no lagoon when it is mapped again" lagoon_at 1280x200+0+320
moves

# Where the driver does not bear it: without the package, and without the line.
restart_greeter() {
    stop_greeter
    wait $session || true
    start_greeter
    until_true "no clock on the lock screen" clock_shows
    lagoon_at 1280x200+0+320 && fail "the wallpaper is still there"
    return 0
}
mkdir "$tmp/removed"
mv "$tmp/share/plasma/wallpapers/org.atollia.wallpaper" "$tmp/qml" "$tmp/removed"
restart_greeter
echo "without the package there is another wallpaper"
mv "$tmp/removed/org.atollia.wallpaper" "$tmp/share/plasma/wallpapers"
mv "$tmp/removed/qml" "$tmp"
recipe "Lock screen of Plasma" "$tmp/recipe" docs/desktops.md
as_person sh -e "$tmp/recipe"
restart_greeter
echo "without the line, too"
