#!/bin/sh
# Plasma's desktop with the wallpaper on a screen of its own for each of two monitors: which of them
# move while windows cover them, and what it costs then.
. "$(dirname "$0")/common.sh"
need plasmashell plasma-workspace
need kwin_x11 kwin-x11
need dbus-run-session dbus
[ -d /usr/share/plasma/shells/org.kde.plasma.desktop ] ||
    skip "the package plasma-desktop-data is not installed"
need Xorg xserver-xorg-core
need xrandr x11-xserver-utils
[ -x /usr/lib/qt5/bin/qml ] || skip "the package qml is not installed"
[ -e /usr/lib/xorg/modules/drivers/dummy_drv.so ] ||
    skip "the package xserver-xorg-video-dummy is not installed"
[ "$(id -u)" -eq 0 ] || skip "an X server with two monitors needs root"
. "$(dirname "$0")/plasma.sh"

# Two monitors need a server that has outputs.
cat >"$tmp/xorg.conf" <<'CONF'
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 64000
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Virtual 1280 480
        Modes "640x480"
    EndSubSection
EndSection
Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
EndSection
CONF
mkfifo "$tmp/number"
exec 4<>"$tmp/number"
Xorg -config "$tmp/xorg.conf" -logfile "$tmp/xorg.log" -displayfd 4 -ac -nolisten tcp -noreset \
    -novtswitch -sharevts +extension GLX >/dev/null 2>&1 &
xvfb=$!
read -r number <&4
exec 4>&-
export DISPLAY=":$number" LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy NO_AT_BRIDGE=1
xrandr --newmode test 23.86 640 656 720 800 480 481 484 497
for output in DUMMY0 DUMMY1; do
    xrandr --addmode $output test
done
xrandr --output DUMMY0 --mode test --pos 0x0 --output DUMMY1 --mode test --pos 640x0
unset WAYLAND_DISPLAY

cat >"$tmp/session" <<'SESSION'
echo "$DBUS_SESSION_BUS_ADDRESS" >"$1/bus"
kwin_x11 >"$1/kwin.log" 2>&1 &
kwin=$!
plasmashell >"$1/log" 2>&1 &
echo $! >"$1/shell"
wait $!
kill $kwin
SESSION
start_shell() {
    as_person dbus-run-session -- sh "$tmp/session" "$tmp" &
    session=$!
}
start_shell
# What the session has started outlives its bus, and the next session's activities would not be this
# one's as long as the manager of these still runs.
session_processes() {
    for process in /proc/[0-9]*; do
        grep -s -z -q -x -F "DBUS_SESSION_BUS_ADDRESS=$bus" "$process/environ" || continue
        echo "${process#/proc/}"
    done
}
no_session_processes() { # and kills those that there are, which may start others until then
    left=$(session_processes)
    # shellcheck disable=SC2086  # one word for each process
    [ -z "$left" ] || { kill -KILL $left && false; }
}
stop_shell() {
    bus=$(cat "$tmp/bus")
    kill "$(cat "$tmp/shell")"
    wait $session || true
    until_true "what the session has started does not end" no_session_processes
}
at_end="stop_shell"
in_session() { DBUS_SESSION_BUS_ADDRESS=$(cat "$tmp/bus") as_person "$@"; }
ask_shell() { # SCRIPT
    in_session dbus-send --session --print-reply --dest=org.kde.plasmashell /PlasmaShell \
        org.kde.PlasmaShell.evaluateScript "string:$1"
}
# The shell answers before it has a desktop for every monitor.
both_desktops() { ask_shell 'print(desktops().length + " desktops")' | grep -q "2 desktops"; }
until_true "no desktop for every monitor" both_desktops
chosen() { # how the desktops' wallpapers are called
    ask_shell 'print(desktops().map(desktop => desktop.wallpaperPlugin).join(" "))' |
        grep -q "$1"
}
recipe "Plasma 5.27 and 6, desktop" "$tmp/recipe"
in_session sh -e "$tmp/recipe"
ask_shell 'desktops().forEach(function(desktop) {
    desktop.currentConfigGroup = ["Wallpaper", "org.atollia.wallpaper", "General"];
    desktop.writeConfig("CameraPos", 2);
    desktop.writeConfig("DayTime", 0);
})'

until_true "no lagoon on the first monitor" lagoon_at 640x480+0+0
until_true "no lagoon on the second monitor" lagoon_at 640x480+640+0
keep_picture plasma-desktop
shell=$(cat "$tmp/shell")
seen=$(used_in_ten_seconds "$shell")

# A window on each monitor. What state they are in, 2 normal, 3 minimised, 4 maximised, 5 full
# screen, stands in a file.
cat >"$tmp/cover.qml" <<'QML'
import QtQuick 2.15
import QtQuick.Window 2.15
Item {
    id: covers
    property string told: "2 2"
    property var states: told.split(" ")
    component Cover: Window {
        property int number
        width: 300; height: 200; y: 50; color: "red"; visible: true
        visibility: parseInt(covers.states[number])
    }
    Cover { x: 100; number: 0 }
    Cover { x: 740; number: 1 }
    Timer {
        interval: 200; running: true; repeat: true
        onTriggered: {
            const file = new XMLHttpRequest()
            file.onload = () => covers.told = file.responseText.trim()
            file.open("GET", "file://" + Qt.application.arguments[Qt.application.arguments.length - 1])
            file.send()
        }
    }
}
QML
windows() { # STATE STATE
    echo "$1 $2" >"$tmp/states.new"
    mv "$tmp/states.new" "$tmp/states"
}
windows 2 2
QT_LOGGING_RULES="*=false" /usr/lib/qt5/bin/qml "$tmp/cover.qml" -- "$tmp/states" >/dev/null 2>&1 &
cover=$!
stop_cover() { kill $cover; }
at_end="stop_cover stop_shell"
red() {
    for x in 120 760; do
        import -silent -window root -crop "1x1+$x+100" +repage -depth 8 txt: | grep -q "#FF0000" ||
            return 1
    done
}
until_true "the windows do not come" red

# What the shell draws for a monitor, whether windows cover it or not: kwin keeps it.
desktop_at() { # X
    xwininfo -root -tree | awk -v place="640x480+0+0  +$1+0" \
        '/"Desktop @/ && index($0, place) { print $1; exit }'
}
left=$(desktop_at 0)
right=$(desktop_at 640)
[ -n "$left" ] && [ -n "$right" ] || fail "no window for every desktop"
two_pictures() { # WINDOW SECONDS
    import -silent -window "$1" "$tmp/one.png" && sleep "$2" &&
        import -silent -window "$1" "$tmp/other.png"
}
moves() { two_pictures "$1" 0.5 && ! cmp -s "$tmp/one.png" "$tmp/other.png"; }
stands() { two_pictures "$1" 2 && cmp -s "$tmp/one.png" "$tmp/other.png"; }
expect() { # WHAT LEFT RIGHT
    until_true "$1: the left one does not do what it should: $2" "$2" "$left"
    until_true "$1: the right one does not do what it should: $3" "$3" "$right"
    echo "$1: the left one $2, the right one $3"
}
show_desktop() { # and back
    in_session dbus-send --session --print-reply --dest=org.kde.kglobalaccel /component/kwin \
        org.kde.kglobalaccel.Component.invokeShortcut "string:Show Desktop" >/dev/null
}
expect "small windows" moves moves
windows 4 2
expect "maximised on the left" stands moves
windows 2 2
expect "restored" moves moves
windows 2 5
expect "full screen on the right" moves stands
show_desktop
expect "the desktop is shown" moves moves
show_desktop
expect "and hidden" moves stands
windows 4 3
expect "maximised and minimised" stands moves
windows 5 5
expect "both full screen" stands stands
covered=$(used_in_ten_seconds "$shell")
echo "processor time in ten seconds: seen $seen, covered $covered hundredths of a second"
[ "$covered" -lt $((seen / 5)) ] || fail "it draws on while windows cover it"

# Where the driver does not bear it: Plasma's own wallpaper.
stop_cover
recipe "Desktop of Plasma" "$tmp/recipe" docs/desktops.md
as_person sh -e "$tmp/recipe"
stop_shell
at_end=""
rm "$tmp/bus"
start_shell
at_end="stop_shell"
until_true "the shell does not come back" test -s "$tmp/bus"
until_true "no desktop for every monitor" both_desktops
chosen "org.kde.image org.kde.image" || fail "the wallpaper is still chosen"
# Its own is a picture, too, and not of one colour.
own_picture() {
    import -silent -window "$(desktop_at 0)" "$tmp/one.png" &&
        [ "$(identify -format %k "$tmp/one.png")" -gt 500 ]
}
until_true "no wallpaper" own_picture
lagoon_at 640x480+0+0 && fail "the lagoon is still there"
echo "without the line there is Plasma's own wallpaper"
