#!/bin/sh
# Measures the sand in pictures of the bottom view, 1280x948: sand.sh PICTURE.png ...
# Reach, before the eye: saturation about 0.126, deviation 20.6, brightest 241 or more, crispness 9
# or more, fine detail 3.8 or more, lines of light about 8.3 pixels wide. Needs no display.
set -eu
exec "$(dirname "$0")/tool.sh" sand "$@"
