#!/bin/sh
# Shows a model from eight sides and through its animation: turntable.sh MODEL OUT.png [TEXTURE]
# [CELL]. MODEL is a ".nlm" file; without TEXTURE the ".nlt" file beside it is used. CELL is the
# size of one view in pixels. Needs no display.
set -eu
exec "$(dirname "$0")/tool.sh" turntable "$@"
