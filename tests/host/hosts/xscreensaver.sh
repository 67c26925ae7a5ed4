#!/bin/sh
# XScreenSaver: activate, another saver, deactivate by the mouse and by command.
. "$(dirname "$0")/common.sh"
need xscreensaver xscreensaver
start_display -screen 0 640x480x24
export HOME="$tmp/home" PATH="$tmp/bin:$PATH" XDG_CONFIG_HOME="$tmp/home/.config"

printf '%s\n' 'timeout: 1:00:00' 'cycle: 0' 'lock: False' 'splash: False' 'fade: False' \
    'unfade: False' 'dpmsEnabled: False' 'mode: one' 'selected: 0' \
    'programs: \' '  "Second"  env atollia --root  \n\' '' >"$HOME/.xscreensaver"
"$sources/packaging/atollia-xscreensaver" add
[ "$(grep -c Atollia "$HOME/.xscreensaver")" -eq 1 ] || fail "the saver is not in the list"

as_person xscreensaver --no-splash --verbose >"$tmp/log" 2>&1 &
host=$!
stop_host() { kill $host 2>/dev/null; }
at_end="stop_host"
command_host() { as_person xscreensaver-command "$@"; }

until_true "XScreenSaver does not start" command_host -time
command_host -activate
until_true "the saver does not start" running
until_true "no lagoon on the screen" lagoon_at 640x480+0+0
first=$(savers)

i=0
while [ -n "${ATOLLIA_KEEP_PICTURES:-}" ] && [ $i -lt 6 ]; do
    keep_picture "xscreensaver-$i"
    sleep 3
    i=$((i + 1))
done

command_host -select 2
until_true "XScreenSaver does not see a clean end" grep -q "exited normally with SIGTERM" "$tmp/log"
until_true "the first saver is still running" test ! -e "/proc/$first"
until_true "the second saver does not start" running
until_true "no lagoon on the screen" lagoon_at 640x480+0+0

# The mouse: the host must see it although our window lies above its own.
shake() {
    xdotool mousemove 100 100 mousemove 300 200 click 1 mousemove 500 400
    none_left
}
until_true "the mouse does not reach the host" shake

command_host -activate
until_true "no lagoon on the screen" lagoon_at 640x480+0+0
before_the_end
command_host -deactivate
expect_gone
! grep -q "crashed" "$tmp/log" || fail "XScreenSaver saw a crash"
command_host -exit || true
until_true "XScreenSaver does not end" sh -c "! kill -0 $host"
