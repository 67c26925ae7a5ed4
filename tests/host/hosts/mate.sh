#!/bin/sh
# MATE's screensaver, which runs only what lies in its own folders.
. "$(dirname "$0")/common.sh"
need mate-screensaver mate-screensaver
need dbus-run-session dbus
start_display -screen 0 640x480x24

folder=/usr/libexec/xscreensaver
if [ -z "${IN_OWN_MOUNTS:-}" ] && ! { mkdir -p $folder 2>/dev/null && [ -w $folder ]; }; then
    unshare -rm true 2>/dev/null || skip "$folder cannot be written"
    export IN_OWN_MOUNTS=1
    status=0
    unshare -rm sh "$0" "$@" || status=$?
    exit $status
fi
[ -z "${IN_OWN_MOUNTS:-}" ] || mount --bind "$tmp/bin" $folder
link="$folder/atollia-test-$$"
ln -s "$saver" "$link"
remove_link() { rm -f "$link"; }
at_end="remove_link"

export HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/home/.config" XDG_DATA_HOME="$tmp/home/data"
export GSETTINGS_BACKEND=keyfile XDG_CURRENT_DESKTOP=MATE
mkdir -p "$XDG_DATA_HOME/applications/screensavers" "$XDG_CONFIG_HOME"
sed -e "s|/usr/libexec/xscreensaver/atollia|$link|" "$sources/packaging/theme.desktop" \
    >"$XDG_DATA_HOME/applications/screensavers/atollia.desktop"

cat >"$tmp/session" <<'SESSION'
. "$TEST_FUNCTIONS"
gsettings set org.mate.screensaver mode "'single'"
gsettings set org.mate.screensaver themes "['screensavers-atollia']"
gsettings set org.mate.screensaver lock-enabled false
mate-screensaver --no-daemon --debug >"$tmp/log" 2>&1 &
host=$!
trap 'kill $host 2>/dev/null || true' EXIT
until_true "MATE's screensaver does not start" mate-screensaver-command --query

mate-screensaver-command --activate
until_true "the saver does not start" running
until_true "no lagoon on the screen" lagoon_at 640x480+0+0
keep_picture mate
before_the_end
mate-screensaver-command --deactivate
expect_gone

# Again, and this time a person comes back.
mate-screensaver-command --activate
until_true "no lagoon on the screen" lagoon_at 640x480+0+0
shake() {
    xdotool mousemove 100 100 click 1 mousemove 300 200 key a mousemove 500 400
    none_left
}
until_true "input does not reach the host" shake

mate-screensaver-command --exit
until_true "MATE's screensaver does not end" sh -c "! kill -0 $host"
SESSION
# The session's shell gets the functions and the variables of this one.
sed -e '/^trap finish/d' -e '/^tmp=/d' -e '/^mkdir/d' -e '/^ln -s/d' -e '/^chmod 755/d' \
    -e '/^saver=/d' -e '/^sources=/d' "$(dirname "$0")/common.sh" >"$tmp/functions"
export TEST_FUNCTIONS="$tmp/functions" tmp saver sources
dbus-run-session -- sh "$tmp/session"
none_left || fail "a saver is left"
