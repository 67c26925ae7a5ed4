#!/bin/sh
# Takes the pictures of docs/pictures anew: the four views under both skies, and close-ups of the
# animals cut out of large pictures. Look at every one before committing it.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
out="$top/docs/pictures"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$out"
echo "SkyType=1" >"$folder/clear"

# jpeg NAME [CONVERT ARGUMENTS...]: stores the picture just taken.
jpeg() {
    name=$1
    shift
    convert "$folder/picture.png" "$@" -quality 88 -strip "$out/$name.jpg"
    echo "$out/$name.jpg"
}

for view in bottom middle top low; do
    "$top/scripts/snapshot.sh" "$folder/picture.png" --view $view --seed 2 --seconds 20
    jpeg $view
    "$top/scripts/snapshot.sh" "$folder/picture.png" --view $view --seed 2 --seconds 20 --config "$folder/clear"
    jpeg $view-clear
done

# close_up NAME ANIMAL SEED SECONDS VIEW WIDTH: 4:3, WIDTH pixels of a picture 2560 wide.
close_up() {
    place=$("$top/scripts/snapshot.sh" "$folder/picture.png" --view "$5" --seed "$3" --seconds "$4" \
        --size 2560x1896 --where | grep "^$2 " | head -1)
    # shellcheck disable=SC2086  # name, x, y and more
    set -- "$1" "$6" $place
    width=$2 height=$(($2 * 3 / 4)) x=$4 y=$5
    left=$((x - width / 2)) upper=$((y - height / 2))
    [ $left -ge 0 ] || left=0
    [ $upper -ge 0 ] || upper=0
    [ $left -le $((2560 - width)) ] || left=$((2560 - width))
    [ $upper -le $((1896 - height)) ] || upper=$((1896 - height))
    jpeg "$1" -crop "${width}x$height+$left+$upper" +repage -resize 800x600
}

close_up school school 1 29 bottom 640
close_up hunter hunter 1 33 bottom 640
close_up big-fish big 2 18 bottom 800
close_up manta manta 2 24 bottom 560
close_up gull gull 3 42 middle 360
