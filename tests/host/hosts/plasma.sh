# Common to the tests with Plasma: a person's folders, and the wallpaper of the build.
build=$(dirname "$saver")
export HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/home/.config" XDG_CACHE_HOME="$tmp/home/.cache"
export XDG_DATA_HOME="$tmp/home/.local/share" XDG_RUNTIME_DIR="$tmp/run"
export XDG_DATA_DIRS="$tmp/share:/usr/local/share:/usr/share"
export QML2_IMPORT_PATH="$tmp/qml" QT_LOGGING_RULES="*.debug=false"
mkdir -p "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
[ -d "$build/qml/org/atollia/reef" ] || skip "the QML module was not built"
# Plasma asks whether it may read package and module, and that is not so in another account's home.
cp -rL "$build/plasma5" "$tmp/share"
cp -rL "$build/qml" "$tmp/qml"

# Hundredths of a second of processor time that a process takes in ten seconds.
used_in_ten_seconds() { # PROCESS
    before=$(ticks "$1")
    sleep 10
    echo $(($(ticks "$1") - before))
}
ticks() { awk '{ print $14 + $15 }' "/proc/$1/stat"; }
