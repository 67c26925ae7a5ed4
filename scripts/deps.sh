#!/bin/sh
# Installs the Debian packages of the named groups, and others by their names, where they are
# missing. Quiet, and without network, when all are there. Without the right to install it says what
# is missing and fails.
#   deps.sh GROUP|PACKAGE...
# Groups:
#   build     building and painting, and what the saver runs on
#   display   a display where there is none, and pictures of it
#   package   the Debian package and what looks it over
#   tests     what the tests are built with and look through
#   hosts     foreign programs that the tests labelled "hosts" start: lockers, desktops, compositors
set -eu

packages_of() { # GROUP|PACKAGE
    case $1 in
    build)
        echo cmake ninja-build g++ pkg-config
        echo qtbase5-dev libqt5opengl5-dev libqt5x11extras5-dev
        echo libkf5config-dev libkf5widgetsaddons-dev
        echo libsdl1.2-dev libsdl-mixer1.2-dev
        echo qtdeclarative5-dev liblayershellqtinterface-dev libwayland-dev qtwayland5
        echo qml-module-qtquick2 qml-module-qtquick-window2
        echo libgl-dev libegl-dev libglu1-mesa-dev libgl1-mesa-dri
        echo libxcb1-dev libxcb-dpms0-dev libxcb-randr0-dev libxcb-render0-dev libxcb-shm0-dev
        echo libx11-dev libpng-dev
        echo povray libfreetype-dev fonts-dejavu-core
        ;;
    display) echo xvfb imagemagick ;;
    package) echo dpkg-dev git lintian desktop-file-utils appstream groff ;;
    tests)
        echo libgtest-dev libgmock-dev libbenchmark-dev libxcb-xtest0-dev
        echo clang-format git xdotool x11-utils dbus qml
        echo qml-module-qtquick-controls2 qml-module-qtquick-layouts
        ;;
    hosts)
        echo xscreensaver mate-screensaver xsecurelock
        echo plasma-workspace plasma-desktop libkscreenlocker5 libkf5config-bin kwin-x11 kactivitymanagerd
        echo xserver-xorg-core xserver-xorg-video-dummy x11-xserver-utils
        echo qt6-declarative-dev qml-qt6 qml6-module-qtquick qml6-module-qtquick-window
        echo qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
        echo qml6-module-qtquick-controls qml6-module-qtquick-templates qml6-module-qtquick-layouts
        echo sway swayidle weston grim wtype
        ;;
    *) echo "$1" ;;
    esac
}

# Installed packages, and the names that they stand for.
present=" $(dpkg-query -W -f '${db:Status-Status} ${Package}, ${Provides}\n' |
    sed -n 's/^installed //p' | sed 's/([^)]*)//g' | tr -s ', \n' ' ') "
missing=""
for word; do
    for package in $(packages_of "$word"); do
        case "$present$missing " in
        *" $package "*) ;;
        *) missing="$missing $package" ;;
        esac
    done
done
[ -n "$missing" ] || exit 0

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}
apt() {
    # sudo keeps no variables, so they are set behind it.
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600 "$@" >/dev/null
}
if { [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; } &&
    echo "Installing:$missing" &&
    apt update &&
    apt install -y --no-install-recommends $missing; then
    exit 0
fi
echo "These packages are needed; as root:" >&2
echo "    apt-get install --no-install-recommends$missing" >&2
exit 1
