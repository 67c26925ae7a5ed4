#!/bin/sh
# Takes the pictures of docs/pictures anew: the views, at moments at which something happens, and
# close-ups of the animals cut out of large pictures. Look at every one before committing it.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
out="$top/docs/pictures"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$out"
echo "SkyType=0" >"$folder/cloudy"
echo "SkyType=1" >"$folder/clear"

# jpeg NAME [CONVERT ARGUMENTS...]: stores the picture just taken.
jpeg() {
    name=$1
    shift
    convert "$folder/picture.png" "$@" -quality 88 -strip "$out/$name.jpg"
    echo "$out/$name.jpg"
}

# view NAME VIEW SEED SECONDS SKY
view() {
    "$top/scripts/snapshot.sh" "$folder/picture.png" --view "$2" --seed "$3" --seconds "$4" \
        --samples 4 --config "$folder/$5"
    jpeg "$1"
}

view bottom bottom 4 22 cloudy
view middle middle 4 22 cloudy
view top top 3 42 cloudy
view top-clear top 4 22 clear
view low low 9 50 cloudy

# hour NAME TIME VIEW: an hour of the day.
hour() {
    "$top/scripts/snapshot.sh" "$folder/picture.png" --view "$3" --seed 4 --seconds 6 \
        --config "$folder/cloudy" --daytime "$2"
    jpeg "day-$1" -resize 960x711
}

hour morning 6:30 top
hour noon 12:00 middle
hour evening 18:15 top
hour night 22:00 top

# close_up NAME ANIMAL SEED SECONDS VIEW WIDTH: 4:3, WIDTH pixels of a picture 2560 wide.
close_up() {
    place=$("$top/scripts/snapshot.sh" "$folder/picture.png" --view "$5" --seed "$3" --seconds "$4" \
        --samples 4 --size 2560x1896 --where | grep "^$2 " | head -1)
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

close_up school school 11 15 bottom 640
close_up hunter hunter 11 19 bottom 720
close_up big-fish big 2 18 bottom 800
close_up manta manta 4 22 bottom 560
close_up gull gull 3 42 middle 600

# A quarter of a minute in the real XScreenSaver, the camera's first way up; they differ from time
# to time.
ATOLLIA_KEEP_PICTURES="$folder" sh "$top/tests/host/hosts/xscreensaver.sh" \
    "$top/build/release/atollia.kss" "$top"
montage "$folder"/xscreensaver-?.png -resize 480x360 -tile 3x2 -geometry +4+4 -background black \
    "$folder/picture.png"
jpeg xscreensaver
