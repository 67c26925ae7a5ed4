#!/bin/sh
# no_opengl.sh <program> <with-display.sh>: where no OpenGL driver can be loaded it says so in one
# line and ends with 1, whether the server has OpenGL or not.
home=$(mktemp -d)
trap 'rm -r "$home"' EXIT
export XDG_CONFIG_HOME="$home" XDG_RUNTIME_DIR="$home" LIBGL_ALWAYS_SOFTWARE=1 SDL_AUDIODRIVER=dummy
unset LIBGL_DEBUG EGL_LOG_LEVEL
expect_one_line() {
    said=$1
    shift
    "$@" > "$said" 2>&1
    status=$?
    cat "$said"
    [ $status = 1 ] || { echo "it ended with $status"; exit 1; }
    [ "$(cat "$said")" = "atollia: nothing can be drawn: there is no OpenGL here" ] ||
        { echo "that is not the one line"; exit 1; }
}
expect_one_line "$home/program" "$2" env LIBGL_DRIVERS_PATH=/nonexistent timeout 60 "$1"
export LIBGL_DRIVERS_PATH=/nonexistent
expect_one_line "$home/server" "$2" timeout 60 "$1"
