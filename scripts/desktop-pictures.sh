#!/bin/sh
# Takes the pictures of docs/desktops.md anew, but that of the settings page: what the tests with
# Plasma and sway show on the way. They differ from time to time; look at every one before committing
# it.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# take TEST PICTURE NAME [CONVERT ARGUMENTS...]
take() {
    picture="$folder/$2.png" name="$top/docs/pictures/$3.jpg"
    ATOLLIA_KEEP_PICTURES="$folder" sh "$top/tests/host/hosts/$1.sh" \
        "$top/build/release/atollia.kss" "$top" >"$folder/log" 2>&1 || {
        cat "$folder/log"
        return 1
    }
    shift 3
    convert "$picture" "$@" -quality 88 -strip "$name"
    echo "$name"
}

take sway sway-window sway
take plasma-lock plasma-lock plasma-lock -resize 960x540
take plasma-desktop plasma-desktop plasma-desktop
