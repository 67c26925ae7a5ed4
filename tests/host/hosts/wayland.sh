# Common to the tests with Wayland compositors: one of them, without a screen or input devices, for
# a person's account. Pictures are taken by the compositor's own means.
. "$(dirname "$0")/common.sh"
atollia="$(dirname "$saver")/atollia"
[ -x "$atollia" ] || skip "the program atollia was not built"
ln -sf "$atollia" "$tmp/bin/atollia"
PATH="$tmp/bin:$PATH"
need grim grim
export HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/home/.config" XDG_RUNTIME_DIR="$tmp/run"
mkdir -p "$XDG_CONFIG_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
echo "DayTime=0" >"$XDG_CONFIG_HOME/Orvo Atollia"  # nights are no blue lagoons
export LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy
export WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM SWAYSOCK XSCREENSAVER_WINDOW

# Starts a program for a person and keeps its process id in the variable; what it says goes into a
# file of that name.
start() { # VARIABLE PROGRAM ARGUMENTS...
    name=$1
    shift
    rm -f "$tmp/pid"
    as_person sh -c 'echo $$ >"$0" && exec "$@"' "$tmp/pid" "$@" >"$tmp/$name" 2>&1 &
    until_true "$1 does not start" test -s "$tmp/pid"
    eval "$name=$(cat "$tmp/pid")"
}

start_sway() { # lines of its configuration on standard input
    need sway sway
    mkdir "$XDG_CONFIG_HOME/sway"
    cat >"$XDG_CONFIG_HOME/sway/config"
    run_sway
}
run_sway() {
    start compositor sway
    at_end="stop_compositor"
    until_true "sway does not start" find_socket
    SWAYSOCK=$(ls "$XDG_RUNTIME_DIR"/sway-ipc.*.sock)
    WAYLAND_DISPLAY=$(cd "$XDG_RUNTIME_DIR" && ls | grep '^wayland-[0-9]*$')
    export SWAYSOCK WAYLAND_DISPLAY
}
find_socket() { ls "$XDG_RUNTIME_DIR"/wayland-? "$XDG_RUNTIME_DIR"/sway-ipc.*.sock; }
# Process ids of a program that the compositor has started.
started() { # NAME
    processes "$(readlink -f "$(command -v "$1")")" "XDG_RUNTIME_DIR=$XDG_RUNTIME_DIR"
}
stop_compositor() {
    [ -z "${program:-}" ] || kill "$program" 2>/dev/null || true
    kill "$compositor"
}

# What one output shows is the lagoon: a picture of many colours, a blue sky, a bluish sea.
lagoon_on() { # OUTPUT
    grim -o "$1" "$tmp/$1.png" || return 1
    is_lagoon "$tmp/$1.png"
}
keep_output() { # OUTPUT NAME
    [ -z "${ATOLLIA_KEEP_PICTURES:-}" ] || cp "$tmp/$1.png" "$ATOLLIA_KEEP_PICTURES/$2.png"
}
no_lagoon() { ! lagoon_on HEADLESS-1; }
window() { swaymsg -t get_tree | grep -q '"app_id": "atollia"'; }

# The idle picture, with no background behind it.
idle_picture_comes_and_goes() {
    window && fail "it comes while somebody is there"
    # To swayidle this signal means that its time has passed.
    kill -USR1 "$(started swayidle)"
    idle_picture_goes
}
idle_picture_goes() {
    until_true "nothing comes when nobody is there" window
    until_true "no lagoon when nobody is there" lagoon_on HEADLESS-1
    until_true "it does not go at the first key" press_key
    until_true "the program does not end" gone
}
press_key() {
    wtype -s 300 -k x -s 300 # a keyboard comes, and is there while the window hears of it
    ! window
}
gone() { [ -z "$(started atollia)" ]; }
