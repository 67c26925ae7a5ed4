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

for words in "" "both" "add remove"; do
    status=0
    # shellcheck disable=SC2086  # several words
    "$command" $words 2>/dev/null || status=$?
    [ $status -eq 2 ] || fail "status $status for \"$words\""
done
echo "all lists as expected"
