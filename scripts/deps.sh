#!/bin/sh
# Installs the Debian packages that building, running and testing need, and those named. Quiet when
# all are there.
#   deps.sh [PACKAGE...]
set -eu

build="cmake ninja-build g++ pkg-config git
    qtbase5-dev libqt5opengl5-dev libqt5x11extras5-dev libkf5config-dev libkf5widgetsaddons-dev
    libsdl1.2-dev libsdl-mixer1.2-dev libgl-dev libegl-dev libglu1-mesa-dev libgl1-mesa-dri
    libxcb1-dev libxcb-dpms0-dev libxcb-xtest0-dev libx11-dev libpng-dev"
artwork="povray povray-includes libfreetype-dev fonts-dejavu-core"
run="xvfb xauth x11-utils imagemagick"
tests="libgtest-dev libgmock-dev libbenchmark-dev clang-format"
hosts="xscreensaver mate-screensaver xsecurelock dbus xdotool x11-utils"
packaging="dpkg-dev lintian desktop-file-utils appstream groff"

missing=""
for package in $build $artwork $run $tests $hosts $packaging "$@"; do
    dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
        missing="$missing $package"
done
[ -n "$missing" ] || exit 0

root=""
[ "$(id -u)" -eq 0 ] || root="sudo"
echo "Installing:$missing"
$root apt-get update -qq
# shellcheck disable=SC2086  # a list of package names
DEBIAN_FRONTEND=noninteractive $root apt-get install -y -qq --no-install-recommends $missing >/dev/null
