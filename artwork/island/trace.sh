#!/bin/sh
# trace.sh POVRAY SCENE.pov PICTURE.png SIZE INCLUDE_FOLDER...
# Renders a square picture with alpha, unsmoothed: it is halved later. With more than one thread a
# few pixels would differ from run to run. The ray tracer is chatty: it is heard only when it fails.
set -eu
povray=$1 scene=$2 picture=$3 size=$4
shift 4
for folder; do
    set -- "$@" "+L$folder"
    shift
done
if ! "$povray" "+I$scene" "+O$picture" "$@" "+W$size" "+H$size" +FN +UA +WT1 -A -D -V \
    >"$picture.log" 2>&1; then
    cat "$picture.log"
    exit 1
fi
