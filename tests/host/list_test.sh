#!/bin/sh
# The command that puts Atollia into a person's XScreenSaver list. Argument: the command.
set -eu
command=$1
HOME=$(mktemp -d)
export HOME
trap 'rm -rf "$HOME"' EXIT
file="$HOME/.xscreensaver"
fail() {
    echo "FAILED: $*"
    exit 1
}
entry='  GL: "Atollia"  atollia --root  \n\'

# Adds twice, compares with what is expected, removes twice, compares with the start.
check() { # NAME, with the file's start and expectation in $HOME/start and $HOME/expected
    cp "$HOME/start" "$file"
    chmod 640 "$file"
    "$command" add
    cmp "$file" "$HOME/expected" || fail "$1: add"
    "$command" add
    cmp "$file" "$HOME/expected" || fail "$1: second add"
    [ "$(stat -c %a "$file")" = 640 ] || fail "$1: mode"
    "$command" remove
    cmp "$file" "$HOME/start" || fail "$1: remove"
    "$command" remove
    cmp "$file" "$HOME/start" || fail "$1: second remove"
    [ "$(find "$HOME" -type f | wc -l)" -eq 3 ] || fail "$1: something is left"
}

printf 'mode:\tone\nprograms:\t\t\\\n- GL:\t maze --root\t\\n\\\n  "Foo" foo -root \\n\\\n\n\nlast: \344' >"$HOME/start"
printf 'mode:\tone\nprograms:\t\t\\\n%s\n- GL:\t maze --root\t\\n\\\n  "Foo" foo -root \\n\\\n\n\nlast: \344' "$entry" >"$HOME/expected"
check "a list"

printf 'programs:  maze --root \\n\\\n foo --root\nmode: one\n' >"$HOME/start"
printf 'programs:  maze --root \\n\\\n%s\n foo --root\nmode: one\n' "$entry" >"$HOME/expected"
check "a list that begins on the first line"

printf 'mode: one\n! no list, no end of line' >"$HOME/start"
printf 'programs: \\\n%s\n\nmode: one\n! no list, no end of line' "$entry" >"$HOME/expected"
check "no list"

printf 'programs: \\\n mine-atollia --root \\n\\\n atollia2 --root \\n\\\n\n' >"$HOME/start"
printf 'programs: \\\n%s\n mine-atollia --root \\n\\\n atollia2 --root \\n\\\n\n' "$entry" >"$HOME/expected"
check "other savers with similar names"

printf 'mode: one\nprograms: maze --root\nlast: 1\n' >"$HOME/start"
printf 'mode: one\nprograms: maze --root\\n\\\n  GL: "Atollia"  atollia --root\nlast: 1\n' >"$HOME/expected"
check "a list of one line"

printf 'programs: maze --root' >"$HOME/start"
printf 'programs: maze --root\\n\\\n  GL: "Atollia"  atollia --root' >"$HOME/expected"
check "a list of one line without an end"

printf 'programs:\nmode: one\n' >"$HOME/start"
printf 'programs:\\n\\\n  GL: "Atollia"  atollia --root\nmode: one\n' >"$HOME/expected"
check "an empty list"

printf 'mode: one\r\nprograms: \\\r\n maze --root \\n\\\r\n\r\nlast: 1\r\n' >"$HOME/start"
printf 'mode: one\r\nprograms: \\\r\n%s\r\n maze --root \\n\\\r\n\r\nlast: 1\r\n' "$entry" >"$HOME/expected"
check "a list with the line ends of other systems"

printf 'programs: maze --root\r\nmode: one\r\n' >"$HOME/start"
printf 'programs: maze --root\\n\\\r\n  GL: "Atollia"  atollia --root\r\nmode: one\r\n' >"$HOME/expected"
check "a list of one line with the line end of other systems"

printf 'programs: \\' >"$HOME/start"
printf 'programs: \\\n%s' "$entry" >"$HOME/expected"
check "a list that is cut off"

printf 'programs: maze --root\nprograms: \\\n foo \\n\\\n\n' >"$HOME/start"
printf 'programs: maze --root\\n\\\n  GL: "Atollia"  atollia --root\nprograms: \\\n foo \\n\\\n\n' >"$HOME/expected"
check "two lists"

: >"$HOME/start"
printf 'programs: \\\n  GL: "Atollia"  atollia --root\n' >"$HOME/expected"
check "an empty file"

# Our line where people have put it.
removed() { # WHAT START EXPECTED
    printf "$2" >"$file"
    "$command" add
    printf "$2" | cmp - "$file" || fail "added beside: $1"
    "$command" remove
    printf "$3" | cmp - "$file" || fail "not removed: $1"
}
removed "the last of a list" 'programs: \\\n maze \\n\\\n atollia --root\nmode: one\n' \
    'programs: \\\n maze \nmode: one\n'
removed "alone in a list" 'programs: \\\n atollia --root\nmode: one\n' 'programs: \nmode: one\n'
removed "on the first line" 'programs: atollia --root \\n\\\n maze\n' 'programs: \\\n maze\n'
removed "on the only line" 'programs: atollia --root\nmode: one\n' 'programs:\nmode: one\n'
removed "twice in a list" 'programs: \\\n atollia \\n\\\n atollia -root \\n\\\n maze\n' 'programs: \\\n maze\n'
# The same words elsewhere are no entry.
printf 'mode: one\natollia --root\n' >"$file"
"$command" add
grep -q '^programs' "$file" || fail "taken for an entry outside the list"

# Whatever form the line has got meanwhile, also switched off, it is known again.
for line in '- GL: atollia --root --fps \n\' ' "My reef" /usr/bin/atollia.kss --root \n\' 'atollia --root \n\'; do
    printf 'programs: \\\n maze --root \\n\\\n%s\n\n' "$line" >"$file"
    cp "$file" "$HOME/start"
    "$command" add
    cmp "$file" "$HOME/start" || fail "added beside: $line"
    "$command" remove
    printf 'programs: \\\n maze --root \\n\\\n\n' | cmp - "$file" || fail "not removed: $line"
done

rm -f "$HOME"/*  "$file"
"$command" remove
[ ! -e "$file" ] || fail "remove made a file"
"$command" add
printf 'programs: \\\n%s\n\n' "$entry" | cmp - "$file" || fail "no file: add"
"$command" remove
[ ! -e "$file" ] || fail "no file: remove"

printf 'programs: maze --root\n' >"$HOME/real"
ln -s real "$file"
"$command" add
[ -L "$file" ] && grep -q "maze" "$HOME/real" && grep -q "Atollia" "$HOME/real" || fail "a link"

# What is no file is left alone, and what cannot be changed is said.
refused() { # WHAT
    for what in add remove; do
        status=0
        "$command" $what >"$HOME/said" 2>&1 || status=$?
        [ $status -eq 1 ] || fail "$1: $what ended with $status"
        [ "$(wc -l <"$HOME/said")" -eq 1 ] || fail "$1: $what said: $(cat "$HOME/said")"
    done
}
rm -f "$file"
mkdir "$file"
refused "a folder"
[ -z "$(ls -A "$file")" ] || fail "something is in the folder"
rmdir "$file"
mkfifo "$file"
refused "a pipe"
rm "$file"
ln -s .xscreensaver "$file"
refused "a link to itself"
rm "$file"
status=0
HOME=/proc "$command" add 2>/dev/null || status=$?
[ $status -eq 1 ] || fail "a home that takes nothing: $status"
status=0
env -u HOME "$command" add 2>/dev/null || status=$?
[ $status -eq 1 ] || fail "no home: $status"

for words in "" "both" "add remove"; do
    status=0
    # shellcheck disable=SC2086  # several words
    "$command" $words 2>/dev/null || status=$?
    [ $status -eq 2 ] || fail "status $status for \"$words\""
done
echo "all lists as expected"
