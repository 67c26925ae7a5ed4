#!/bin/sh
# What deps.sh asks the system for, on a system that is made up: programs of the same names that
# write down what they are told. Argument: deps.sh.
set -eu
deps=$1
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
fail() {
    echo "FAILED: $*"
    cat "$tmp/said" "$tmp/log"
    exit 1
}

program() { # NAME, its lines on standard input
    { echo '#!/bin/sh' && cat; } >"$tmp/bin/$1"
    chmod +x "$tmp/bin/$1"
}
mkdir "$tmp/bin"
for tool in env sed tr sh cat; do
    ln -s "$(command -v $tool)" "$tmp/bin/$tool"
done
program dpkg-query <<END
printf '%s\n' 'installed here, ' 'installed stand-in, meant (= 1.2), other' 'config-files gone, '
END
program apt-get <<END
echo "apt-get \$* as \${DEBIAN_FRONTEND:-nothing}" >>"$tmp/log"
[ ! -e "$tmp/no-network" ]
END
program id <<END
cat "$tmp/user"
END

run() { # STATUS WORDS...
    expected=$1
    shift
    : >"$tmp/log"
    status=0
    PATH="$tmp/bin" "$tmp/bin/sh" "$deps" "$@" >"$tmp/said" 2>&1 || status=$?
    [ $status -eq "$expected" ] || fail "status $status for: $*"
}
installs="apt-get -qq -o DPkg::Lock::Timeout=600 install -y --no-install-recommends gone new as noninteractive"

echo 0 >"$tmp/user"
run 0 here meant other
[ ! -s "$tmp/said" ] && [ ! -s "$tmp/log" ] || fail "something is done although all is there"
run 0 here gone new meant new
tail -n 1 "$tmp/log" | grep -qxF -e "$installs" || fail "root does not install what is missing"

echo 1000 >"$tmp/user"
run 1 gone new
[ ! -s "$tmp/log" ] || fail "apt is called without the right to"
grep -qx " *apt-get install --no-install-recommends gone new" "$tmp/said" || fail "no advice"

# One that passes no variables on.
program sudo <<END
exec env -i "PATH=$tmp/bin" "\$@"
END
run 0 gone new
tail -n 1 "$tmp/log" | grep -qxF -e "$installs" || fail "apt asks questions behind sudo"

: >"$tmp/no-network"
run 1 gone new
grep -qx " *apt-get install --no-install-recommends gone new" "$tmp/said" || fail "no advice offline"
run 0 here
echo "asks for what is missing only"
