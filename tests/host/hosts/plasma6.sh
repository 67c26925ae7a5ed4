#!/bin/sh
# Plasma 6's wallpaper where docs/desktops.md has people copy it: Qt 6 finds the module there, and
# the wallpaper draws. Plasma's own modules are stand-ins, Debian 12 has no Plasma 6.
. "$(dirname "$0")/common.sh"
need qmake6 qmake6
[ -x /usr/lib/qt6/bin/qml ] || skip "the package qml-qt6 is not installed"
build=$(dirname "$saver")
[ -d "$build/qml6/org" ] || skip "the module for Qt 6 was not built"
if [ -z "${IN_OWN_MOUNTS:-}" ]; then
    unshare -rm true 2>/dev/null || skip "there are no mounts of one's own here"
    export IN_OWN_MOUNTS=1
    status=0
    unshare -rm sh "$0" "$@" || status=$?
    exit $status
fi
# What is copied into the system is copied into this test's system only.
modules=$(qmake6 -query QT_INSTALL_QML)
cp -r "$modules" "$tmp/modules"
mount --bind "$tmp/modules" "$modules"
cat >"$tmp/bin/sudo" <<'SUDO'
#!/bin/sh
exec "$@"
SUDO
chmod 755 "$tmp/bin/sudo"
export HOME="$tmp/home" PATH="$tmp/bin:$PATH"
start_display -screen 0 640x480x24

mkdir -p "$tmp/clone/build"
ln -s "$build" "$tmp/clone/build/release"
recipe "Plasma 6" "$tmp/recipe" docs/desktops.md
(cd "$tmp/clone" && sh -e "$tmp/recipe")
wallpaper="$HOME/.local/share/plasma/wallpapers/org.atollia.wallpaper"
grep -q '"KPackageStructure": "Plasma/Wallpaper"' "$wallpaper/metadata.json" ||
    fail "no package of a wallpaper"
unset QML2_IMPORT_PATH
export QML_IMPORT_PATH="$sources/tests/quick/plasma6" QML_XHR_ALLOW_FILE_READ=1
timeout 120 /usr/lib/qt6/bin/qml "$sources/tests/quick/plasma6.qml" -- "$wallpaper/contents/ui" ||
    fail "the copied wallpaper does not draw"
echo "the copied wallpaper draws"
