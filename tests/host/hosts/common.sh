# Common to the tests with real screensaver hosts. Each test has an X server, a home and a folder of
# its own, so that several may run at once. Arguments of a test: the saver program, the sources.
set -eu

saver=$(readlink -f "$1")
sources=$2
tmp=$(mktemp -d)
chmod 755 "$tmp"
mkdir "$tmp/home" "$tmp/bin"
ln -s "$saver" "$tmp/bin/atollia"

fail() {
    echo "FAILED: $*"
    exit 1
}

# The test cannot be made here; CTest shows it as skipped.
skip() {
    echo "skipped: $*"
    exit 77
}

need() { # COMMAND PACKAGE
    command -v "$1" >/dev/null || skip "the package $2 is not installed"
}

# What a desktop has started may still be writing its caches when its session has ended. Waits for
# that, but no longer than ten seconds; a folder that is left does not make a test fail.
remove_folder() {
    tries=0
    until rm -rf "$tmp" 2>/dev/null; do
        tries=$((tries + 1))
        [ $tries -lt 100 ] || break
        sleep 0.1
    done
}

at_end=""
finish() {
    status=$?
    trap - EXIT INT TERM
    for action in $at_end; do
        $action || true
    done
    [ -z "${xvfb:-}" ] || kill "$xvfb" 2>/dev/null || true
    remove_folder
    exit $status
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

need Xvfb xvfb
need import imagemagick
need xdotool xdotool

start_display() { # XVFB OPTIONS...
    mkfifo "$tmp/number"
    exec 4<>"$tmp/number"
    Xvfb -displayfd 4 -ac -nolisten tcp -noreset "$@" >/dev/null 2>&1 &
    xvfb=$!
    read -r number <&4
    exec 4>&-
    DISPLAY=":$number"
    export DISPLAY
    export LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy NO_AT_BRIDGE=1
    unset XSCREENSAVER_WINDOW WAYLAND_DISPLAY
}

# A recipe: the lines of code in README.md, or another document, below a paragraph that begins with
# this name in bold or below a heading that is this name, up to the next such paragraph or heading.
recipe() { # NAME FILE [DOCUMENT]
    awk -v name="$1" '
        /^(\*\*|#)/ { inside = index($0, "**" name "**") == 1 || $0 ~ "^#+ " name "$" }
        inside && /^    / { print substr($0, 5); found = 1 }
        END { exit !found }' "$sources/${3:-README.md}" >"$2" ||
        fail "${3:-README.md} has no recipe for $1"
}

# Repeats a command, up to a minute, until it succeeds.
until_true() { # WHAT COMMAND...
    what=$1
    shift
    tries=0
    until "$@" >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ $tries -lt 600 ] || fail "$what"
        sleep 0.1
    done
}

# Process ids of a program that runs with a variable of this test's.
processes() { # FILE VARIABLE=VALUE
    for process in /proc/[0-9]*; do
        [ "$(readlink "$process/exe" 2>/dev/null)" = "$1" ] || continue
        if tr '\0' '\n' 2>/dev/null <"$process/environ" | grep -q -x -e "$2"; then
            echo "${process#/proc/}"
        fi
    done
}

# Process ids of our saver on this test's display.
savers() { processes "$saver" "DISPLAY=$DISPLAY\(\.0\)\{0,1\}"; }

running() { [ "$(savers | wc -l)" -ge "${1:-1}" ]; }
none_left() { [ -z "$(savers)" ]; }

now() { date +%s%3N; }

# Before what ends the saver: which processes are meant, and what time it is. Looking for them takes
# long on a busy machine.
before_the_end() {
    ending=$(savers)
    since=$(now)
}

# After it: they are gone within a second, or so many milliseconds.
expect_gone() { # [MILLISECONDS]
    for process in $ending; do
        tries=0
        # One that has ended and waits for its host to hear of it runs no program any more.
        while [ "$(readlink "/proc/$process/exe" 2>/dev/null)" = "$saver" ]; do
            tries=$((tries + 1))
            [ $tries -lt 3000 ] || fail "the saver is still running"
            sleep 0.02
        done
    done
    took=$(($(now) - since))
    echo "stopped within $took ms"
    [ "$took" -lt "${1:-1000}" ] || fail "stopping took $took ms"
    none_left || fail "another saver is running"
}

# A picture of the lagoon: many colours, a blue sky above and a bluish green sea in the middle.
is_lagoon() { # FILE
    [ "$(identify -format %k "$1")" -gt 500 ] || return 1
    # Mean red, green and blue, 0 to 255, of the upper twentieth and of a band below the horizon.
    set -- $(convert "$1" -scale 1x20! -depth 8 \
        -format '%[fx:int(255*p{0,0}.r)] %[fx:int(255*p{0,0}.g)] %[fx:int(255*p{0,0}.b)]
            %[fx:int(255*p{0,11}.r)] %[fx:int(255*p{0,11}.g)] %[fx:int(255*p{0,11}.b)]' info:)
    [ "$3" -gt "$1" ] && [ "$3" -gt 100 ] && [ $(($6 - $4)) -gt 60 ]
}
lagoon_at() { # GEOMETRY
    import -silent -window root -crop "$1" +repage -depth 8 "$tmp/picture.png" || return 1
    is_lagoon "$tmp/picture.png"
}

# A person's account for a host that refuses to work for root: the same rights on files, another
# name; where there are no user namespaces, the account that exists for this.
as_person() {
    if [ "$(id -u)" -ne 0 ]; then
        "$@"
    elif unshare --user --map-user=65534 true 2>/dev/null; then
        unshare --user --map-user=65534 "$@"
    else
        # Some programs ask whether they may write, and the answer knows nothing of capabilities.
        mkdir -p "${XDG_CONFIG_HOME:-$tmp}"
        chown 65534 "$tmp" "$tmp/home" "${XDG_RUNTIME_DIR:-$tmp}" "${XDG_CONFIG_HOME:-$tmp}"
        setpriv --reuid=65534 --regid=65534 --clear-groups --inh-caps=+dac_override \
            --ambient-caps=+dac_override "$@"
    fi
}

# Keeps pictures for the documentation when asked to: ATOLLIA_KEEP_PICTURES names a folder.
keep_picture() { # NAME
    [ -z "${ATOLLIA_KEEP_PICTURES:-}" ] ||
        import -silent -window root -depth 8 "$ATOLLIA_KEEP_PICTURES/$1.png"
}
