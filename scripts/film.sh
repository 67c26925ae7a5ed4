#!/bin/sh
# Films the scene as a loop of ten seconds: the automatic camera rests over the water, comes down,
# rests before the reef and goes up again; its end dissolves into its beginning, the same view.
#   film.sh [OUT.webp] [--video OUT.mp4|OUT.webm] [--size WxH] [--fps N] [--quality Q] [--seed N]
#   [--day]
# With --day a whole day passes instead, in twenty seconds: the reef in the forenoon, the sky from
# sunset until after midnight.
# OUT.webp is an animated picture for the README, docs/pictures/film.webp (or day.webp) when neither
# it nor a video is named. With its size, 440x326, 10 pictures a second and quality 36 of 100 it
# stays below 1.5 MB; at 8 the fish, whose tails beat four times a second, would show two poses. A
# video takes the same pictures: name a larger size and rate for it.
# Needs no display.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)

usage() {
    sed -n 's/^#   //p' "$0" >&2
    exit 2
}

webp="" video="" size=440x326 fps=10 quality=36 seed=18 day=""
while [ $# -gt 0 ]; do
    case $1 in
    --video | --size | --fps | --quality | --seed)
        [ $# -gt 1 ] || usage
        case $1 in
        --video) video=$2 ;;
        --size) size=$2 ;;
        --fps) fps=$2 ;;
        --quality) quality=$2 ;;
        --seed) seed=$2 ;;
        esac
        shift
        ;;
    --day) day=--day ;;
    *.webp) webp=$1 ;;
    *) usage ;;
    esac
    shift
done
case $video in
"" | *.mp4 | *.webm) ;;
*) usage ;;
esac
[ -z "$day" ] && name=film || name=day
[ -n "$webp$video" ] || webp="$top/docs/pictures/$name.webp"

"$top/scripts/deps.sh" build ffmpeg
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# What the film shows: its pictures from `from` on, so many seconds, and some more to dissolve with.
seconds=10 dissolved=$(((fps * 3 + 4) / 5))
# The camera leaves the reef after ten seconds and needs 25 degrees up. There it rests for a second,
# and again a little more than `seconds` later: while the film dissolves, it stands still.
# The clear sky does not turn, so no cloud jumps back.
speed=8
printf 'CameraSpeed=%s\nCameraFixTop=1\nCameraFixBottom=3\nSkyType=1\n' "$speed" >"$folder/settings"
from=$(awk "BEGIN { print 10 + 25 / $speed + 0.4 }")
if [ -n "$day" ]; then
    # The camera's round is as long as the film: before the reef in the forenoon, over the water
    # from sunset until after midnight.
    seconds=20 from=25
    printf 'CameraSpeed=5\nCameraFixTop=7\nCameraFixBottom=3\n' >"$folder/settings"
    set -- --day --daytime 05:00
else
    set --
fi
"$top/scripts/snapshot.sh" "$folder/film.png" --view automatic --config "$folder/settings" \
    --seconds "$from" --frames $((seconds * fps + dissolved)) --fps "$fps" \
    --seed "$seed" --size "$size" --samples 4 "$@"

# film OUT [ENCODER OPTIONS...]: the loop, in the format that OUT's ending names.
film() {
    out=$1
    shift
    fade=$(awk "BEGIN { print $dissolved / $fps }")
    ffmpeg -v error -y \
        -framerate "$fps" -start_number "$dissolved" -i "$folder/film-%04d.png" \
        -framerate "$fps" -t "$fade" -i "$folder/film-%04d.png" \
        -filter_complex "[0][1]xfade=duration=$fade:offset=$(awk "BEGIN { print $seconds - $fade }")" \
        "$@" "$out"
    echo "$out: $(wc -c <"$out") bytes"
}

# Every picture whole: where only what differs enough is stored, blocks of a sky that changes little
# by little are left behind.
[ -z "$webp" ] || film "$webp" -c:v libwebp -cr_threshold 0 -loop 0 -compression_level 4 -q:v "$quality"
case $video in
*.mp4) film "$video" -c:v libx264 -preset slow -crf 20 -pix_fmt yuv420p -movflags +faststart ;;
*.webm) film "$video" -c:v libvpx-vp9 -crf 28 -b:v 0 -pix_fmt yuv420p ;;
esac
