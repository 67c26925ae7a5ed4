#!/bin/sh
# trace.sh POVRAY SCENE.pov PICTURE.png SIZE HOUR INCLUDE_FOLDER...
# Renders a square picture with alpha in the light of noon (0), evening (1) or night (2),
# unsmoothed: it is halved later. With more than one thread a few pixels would differ from run to
# run. The ray tracer is chatty: it is heard only when it fails.
# It takes no path with a blank or a letter outside ASCII, so it sees links in a folder of its own.
set -eu
povray=$1 scene=$2 picture=$3 size=$4 hour=$5
shift 5
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
ln -s "$scene" "$folder/scene.pov"
count=$#
for include; do
    ln -s "$include" "$folder/include$count"
    set -- "$@" "+Linclude$count"
    shift
    count=$((count - 1))
done
if ! (cd "$folder" && "$povray" +Iscene.pov +Opicture.png "$@" "+W$size" "+H$size" \
    "Declare=Hour=$hour" +FN +UA +WT1 -A -D -V >log 2>&1); then
    cat "$folder/log"
    exit 1
fi
mv "$folder/picture.png" "$picture"
