#!/bin/sh
# The Debian package: what is in it, what it says about itself, and the program run from a root that
# has nothing but the system's libraries and the package. Argument: the sources.
set -eu
top=$1
tmp=$(mktemp -d)
finish() {
    status=$?
    trap - EXIT
    [ -z "${xvfb:-}" ] || kill "$xvfb" 2>/dev/null || true
    rm -rf --one-file-system "$tmp"
    exit $status
}
trap finish EXIT
fail() {
    echo "FAILED: $*"
    exit 1
}

for tool in dpkg-deb lintian desktop-file-validate appstreamcli groff; do
    command -v $tool >/dev/null || {
        echo "skipped: $tool is not installed"
        exit 77
    }
done

make_packages() { # says where they are
    "$top/scripts/package.sh" >"$tmp/package.log" 2>&1 ||
        { cat "$tmp/package.log" >&2; fail "making the packages" >&2; }
    grep "\.deb$" "$tmp/package.log"
}
packages=$(make_packages)
# One a line, in a folder that may have a space in its name.
IFS="
"
package=$(echo "$packages" | grep /atollia_)
root="$tmp/root"
mkdir "$root" "$tmp/first"
for one in $packages; do
    dpkg-deb -x "$one" "$root"
    mv "$one" "$tmp/first"
done

echo "-- the same again"
for one in $(umask 077 && export TZ=Asia/Tokyo LC_ALL=C && make_packages); do
    cmp "$one" "$tmp/first/$(basename "$one")" || fail "the same sources give another package"
done

echo "-- one version everywhere"
version=$(dpkg-deb -f "$package" Version)
is_version() { # WHERE WHAT
    [ "$2" = "$version" ] || fail "the package is $version, $1 says \"$2\""
}
is_version CMakeLists.txt "$(sed -n 's/^project(atollia VERSION \([0-9.]*\) .*/\1/p' "$top/CMakeLists.txt")"
is_version changelog "$(dpkg-parsechangelog -l "$top/packaging/changelog" -S Version)"
is_version CHANGELOG.md "$(sed -n 's/^## \([0-9.]*\)$/\1/p' "$top/CHANGELOG.md" | head -n 1)"
is_version metainfo.xml "$(sed -n 's/.*<release version="\([^"]*\)".*/\1/p' \
    "$root/usr/share/metainfo/org.orvo.atollia.metainfo.xml" | head -n 1)"
for page in man6/atollia.kss.6.gz man1/atollia-xscreensaver.1.gz man1/atollia.1.gz; do
    is_version "$page" "$(gunzip -c "$root/usr/share/man/$page" |
        sed -n 's/^\.TH .*"Atollia \([^"]*\)".*/\1/p')"
done

echo "-- files"
for file in usr/bin/atollia usr/bin/atollia.kss usr/bin/atollia-xscreensaver \
    usr/libexec/xscreensaver/atollia usr/lib/xscreensaver/atollia \
    usr/libexec/xsecurelock/saver_atollia usr/share/applications/screensavers/atollia.desktop \
    usr/share/applications/atollia.desktop \
    usr/share/applnk/System/ScreenSavers/atollia.kss.desktop \
    usr/share/xscreensaver/config/atollia.xml usr/share/metainfo/org.orvo.atollia.metainfo.xml \
    usr/share/icons/hicolor/scalable/apps/atollia.svg usr/share/man/man6/atollia.kss.6.gz \
    usr/share/man/man6/atollia.6.gz usr/share/man/man1/atollia-xscreensaver.1.gz usr/share/doc/atollia/copyright \
    opt/Orvo/Screensaver/Atollia/Language.dat opt/Orvo/Screensaver/Atollia/font.nlf \
    opt/Orvo/Screensaver/Atollia/models/manta.nlm opt/Orvo/Screensaver/Atollia/sound/water.wav; do
    [ -s "$root/$file" ] || fail "$file is missing or empty"
done
for link in usr/libexec/xscreensaver/atollia usr/lib/xscreensaver/atollia \
    usr/libexec/xsecurelock/saver_atollia; do
    [ "$(readlink -f "$root/$link")" = "$root/usr/bin/atollia.kss" ] || fail "$link leads elsewhere"
done
(cd "$top/build/data" && find . -type f) | sort >"$tmp/made"
(cd "$root/opt/Orvo/Screensaver/Atollia" && find . -type f) | sort >"$tmp/installed"
diff "$tmp/made" "$tmp/installed" || fail "the data is not complete"

echo "-- nothing of this machine"
for path in "$top" "$HOME/" "$(id -un)@" /build/; do
    if grep -rlF -e "$path" "$root/usr" "$root/opt"; then
        fail "\"$path\" is in the files above"
    fi
done

echo "-- exported names"
nm -D --defined-only "$root/usr/bin/atollia.kss" | awk '{ print $3 }' | grep '^kss_' | sort >"$tmp/names"
printf '%s\n' kss_applicationName kss_create kss_description kss_setup kss_version | sort |
    diff - "$tmp/names" || fail "kss_ names"

echo "-- descriptions"
desktop-file-validate "$root"/usr/share/applications/atollia.desktop
desktop-file-validate "$root"/usr/share/applications/atollia-settings.desktop
desktop-file-validate "$root"/usr/share/applications/screensavers/atollia.desktop
appstreamcli validate --no-net --pedantic \
    "$root"/usr/share/metainfo/org.orvo.atollia.metainfo.xml ||
    fail "AppStream"
grep -q "<url type=\"homepage\">$(sed -n 's/^hyperlink *= *{ *\(.*[^ ]\) *}.*/\1/p' \
    "$top/data/Language.dat" | sort -u)</url>" "$root"/usr/share/metainfo/org.orvo.atollia.metainfo.xml ||
    fail "the project's page is not one"
for page in man6/atollia.kss.6.gz man1/atollia-xscreensaver.1.gz man1/atollia.1.gz; do
    gunzip -c "$root/usr/share/man/$page" >"$tmp/page"
    LC_ALL=C.UTF-8 groff -man -Tutf8 -ww -z "$tmp/page" >"$tmp/groff" 2>&1 || true
    [ ! -s "$tmp/groff" ] || { cat "$tmp/groff"; fail "$page"; }
done
gunzip -c "$root/usr/share/man/man6/atollia.kss.6.gz" | grep -q "^.I /opt/Orvo/" || fail "man page"

echo "-- lintian"
# shellcheck disable=SC2086  # several files
lintian --allow-root --fail-on error,warning $packages

if [ "$(id -u)" -eq 0 ]; then
    echo "-- installed and removed"
    mkdir -p "$tmp/system/opt" "$tmp/system/var/lib/dpkg/info" "$tmp/system/var/lib/dpkg/updates"
    : >"$tmp/system/var/lib/dpkg/status"
    in_system() { # DPKG ARGUMENTS...
        dpkg --root="$tmp/system" --force-script-chrootless "$@" >"$tmp/dpkg.log" 2>&1 ||
            { cat "$tmp/dpkg.log"; fail "$*"; }
    }
    # The single package that there was, in which the data lay as well.
    mkdir -p "$tmp/single/DEBIAN" "$tmp/single/opt/Orvo/Screensaver/Atollia" "$tmp/single/usr/bin"
    echo old | tee "$tmp/single/opt/Orvo/Screensaver/Atollia/Language.dat" >"$tmp/single/usr/bin/atollia.kss"
    printf '%s\n' "Package: atollia" "Version: 0.1" "Architecture: $(dpkg --print-architecture)" \
        "Maintainer: Atollia developers <atollia@localhost.localdomain>" "Description: one package" \
        >"$tmp/single/DEBIAN/control"
    dpkg-deb --build "$tmp/single" "$tmp/single.deb" >/dev/null
    in_system -i "$tmp/single.deb"
    # shellcheck disable=SC2086  # several files
    in_system --force-depends --auto-deconfigure -i $packages
    [ "$(wc -l <"$tmp/system/opt/Orvo/Screensaver/Atollia/Language.dat")" -gt 100 ] ||
        fail "the data was not replaced"
    [ "$(wc -c <"$tmp/system/usr/bin/atollia.kss")" -gt 1000 ] || fail "not installed"
    # The wallpaper does without the saver, the saver without the wallpaper.
    in_system --force-depends --purge atollia
    [ -e "$tmp/system/opt/Orvo/Screensaver/Atollia/font.nlf" ] || fail "the data went with the saver"
    in_system --force-depends --purge atollia-plasma
    in_system --force-depends --purge atollia-data
    left=$(cd "$tmp/system" && find . -mindepth 1 -not -path "./var*")
    [ "$left" = ./opt ] || fail "left behind, where only ./opt was: $left"
fi

unset IFS

# A root with the system's libraries and the package: this needs mounts of our own.
own_mounts=""
if [ "$(id -u)" -eq 0 ] && unshare -m true 2>/dev/null; then
    own_mounts="unshare -m"
elif unshare -rm true 2>/dev/null; then
    own_mounts="unshare -rm"
fi
if [ -z "$own_mounts" ]; then
    echo "not run from a root of its own: mounts are not allowed here"
    exit 0
fi

echo "-- a run from a bare root"
mkfifo "$tmp/number"
exec 4<>"$tmp/number"
Xvfb -displayfd 4 -ac -nolisten tcp -noreset -screen 0 320x240x24 >/dev/null 2>&1 &
xvfb=$!
read -r number <&4
cat >"$tmp/in-root" <<'IN_ROOT'
set -eu
root=$1
for folder in lib lib32 lib64 libx32 bin sbin etc; do
    [ -e "/$folder" ] || continue
    if [ -L "/$folder" ]; then
        cp -a "/$folder" "$root/$folder"
    else
        mkdir -p "$root/$folder"
        mount --bind "/$folder" "$root/$folder"
    fi
done
# Everything below /usr except what the package brings, and nothing of /usr/local.
for folder in /usr/*; do
    name=${folder#/usr/}
    case $name in
    bin | local | share | libexec) continue ;;
    lib)
        mkdir -p "$root/usr/lib"
        for sub in /usr/lib/*; do
            [ -d "$sub" ] && [ ! -L "$sub" ] && [ "$sub" != /usr/lib/xscreensaver ] || continue
            mkdir -p "$root$sub"
            mount --bind "$sub" "$root$sub"
        done
        continue
        ;;
    esac
    [ -d "$folder" ] && [ ! -L "$folder" ] || continue
    mkdir -p "$root/usr/$name"
    mount --bind "$folder" "$root/usr/$name"
done
for sub in X11 fonts glvnd drirc.d; do
    [ -d "/usr/share/$sub" ] || continue
    mkdir -p "$root/usr/share/$sub"
    mount --bind "/usr/share/$sub" "$root/usr/share/$sub"
done
mkdir -p "$root/proc" "$root/dev" "$root/tmp" "$root/home"
mount --bind /proc "$root/proc" 2>/dev/null || mount --rbind /proc "$root/proc"
mount --rbind /dev "$root/dev"
mkdir -p "$root/tmp/.X11-unix"
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
exec chroot "$root" /usr/libexec/xscreensaver/atollia --root
IN_ROOT
DISPLAY=":$number" HOME=/home SDL_AUDIODRIVER=dummy LIBGL_ALWAYS_SOFTWARE=1 \
    $own_mounts sh "$tmp/in-root" "$root" >"$tmp/output" 2>&1 &
saver=$!
export DISPLAY=":$number"
tries=0
until import -silent -window root -depth 8 "$tmp/picture.png" &&
    [ "$(identify -format %k "$tmp/picture.png")" -gt 2000 ]; do
    tries=$((tries + 1))
    [ $tries -lt 120 ] && kill -0 $saver 2>/dev/null || {
        cat "$tmp/output"
        fail "no lagoon on the screen"
    }
    sleep 0.5
done
kill $saver
status=0
wait $saver || status=$?
[ $status -eq 143 ] || fail "the saver ended with $status"
! grep -i "failed" "$tmp/output" || fail "data was not found"
echo "the package is as it should be"
