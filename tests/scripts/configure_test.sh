#!/bin/sh
# A clone that is copied or moved is prepared for building anew, and only then. Argument:
# configure.sh.
set -eu
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
fail() {
    echo "FAILED: $*"
    exit 1
}
first="$tmp/first place/clone ß" second="$tmp/second's place"
mkdir -p "$first/scripts" "$first/artwork" "$second"
cp "$1" "$first/scripts/configure.sh"
cat >"$first/CMakePresets.json" <<'END'
{"version": 3, "configurePresets": [
    {"name": "preset", "generator": "Ninja", "binaryDir": "${sourceDir}/build/preset"}]}
END
# A build that says where it is.
cat >"$first/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(place LANGUAGES NONE)
add_custom_target(place ALL COMMAND ${CMAKE_COMMAND} -E echo "in ${CMAKE_SOURCE_DIR}" VERBATIM)
END
cp "$first/CMakeLists.txt" "$first/artwork"

is_in() { # CLONE SAID
    for name in preset artwork; do
        said=$("$1/scripts/configure.sh" $name)
        case "$said" in
        "$2"*) ;;
        *) fail "$name in $1 says \"$said\"" ;;
        esac
        built=$(cmake --build "$1/build/$name")
        folder=$1
        [ $name = preset ] || folder="$1/artwork"
        case "$built" in
        *"in $folder"*) ;;
        *) fail "$name is built elsewhere: $built" ;;
        esac
        touch -d @1000000000 "$1/build/$name/CMakeCache.txt" "$1/CMakePresets.json"
    done
}
untouched() { # CLONE
    for name in preset artwork; do
        [ -z "$("$1/scripts/configure.sh" $name)" ] &&
            [ "$(stat -c %Y "$1/build/$name/CMakeCache.txt")" = 1000000000 ] ||
            fail "$name is prepared again for nothing"
    done
}

is_in "$first" ""
untouched "$first"
cp -a "$first" "$second/copy"
is_in "$second/copy" "build/"
untouched "$second/copy"
untouched "$first"
mv "$first" "$second/moved"
is_in "$second/moved" "build/"

for character in ';' '"' '#' '$' '\' '`'; do
    mkdir "$tmp/odd$character"
    cp -a "$second/copy/scripts" "$tmp/odd$character/scripts"
    if said=$("$tmp/odd$character/scripts/configure.sh" preset 2>&1); then
        fail "a folder with $character is taken"
    fi
    [ "$(printf '%s\n' "$said" | wc -l)" -eq 1 ] || fail "a folder with $character: $said"
done

touch "$second/moved/CMakePresets.json"
touch -d @1000000000 "$second/moved/build/preset/build.ninja"
"$second/moved/scripts/configure.sh" preset
[ "$(stat -c %Y "$second/moved/build/preset/build.ninja")" != 1000000000 ] || fail "changed presets are not seen"
echo "prepared where it lies"
