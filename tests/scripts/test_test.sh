#!/bin/sh
# What test.sh asks for and what its last line says, around a CTest that is made up. Argument:
# test.sh.
set -eu
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
fail() {
    echo "FAILED: $*"
    cat "$tmp/said"
    exit 1
}
program() { # PLACE, its lines on standard input
    { echo '#!/bin/sh' && cat; } >"$tmp/$1"
    chmod +x "$tmp/$1"
}
mkdir "$tmp/scripts" "$tmp/bin"
cp "$1" "$tmp/scripts/test.sh"
echo "echo \"\$@\" >'$tmp/wanted'" | program scripts/deps.sh
echo true | program scripts/configure.sh
echo 'exec "$@"' | program scripts/with-display.sh
echo true | program bin/cmake
program bin/ctest <<END
until [ "\$1" = --output-junit ]; do shift; done
cat "$tmp/results" >"\$2"
exit \$(cat "$tmp/status")
END

expect() { # STATUS LAST_LINE OPTIONS...
    expected=$1 last=$2
    shift 2
    status=0
    PATH="$tmp/bin:$PATH" "$tmp/scripts/test.sh" "$@" >"$tmp/said" 2>&1 || status=$?
    [ $status -eq "$expected" ] || fail "status $status with: $*"
    [ "$(tail -n 1 "$tmp/said")" = "$last" ] || fail "the last line with: $*"
}

cat >"$tmp/results" <<'END'
<testsuite name="all" tests="1">
	<testcase name="one" classname="one" time="1" status="run">
		<system-out>what a test may say: skipped: nothing</system-out>
	</testcase>
</testsuite>
END
echo 0 >"$tmp/status"
expect 0 "Nothing was left out."
[ "$(cat "$tmp/wanted")" = "build display package tests" ] || fail "packages: $(cat "$tmp/wanted")"
expect 0 "Nothing was left out." --hosts
[ "$(cat "$tmp/wanted")" = "build display package tests hosts" ] || fail "packages: $(cat "$tmp/wanted")"
echo 8 >"$tmp/status"
expect 8 "Nothing was left out." --sanitize -R one

cat >"$tmp/results" <<'END'
<testsuite name="all" tests="3">
	<testcase name="host.mate" classname="host.mate" time="0.02" status="notrun">
		<skipped message="SKIP_RETURN_CODE=77"/>
		<properties>
			<property name="cmake_labels" value="hosts"/>
		</properties>
		<system-out>skipped: the package mate-screensaver is not installed
</system-out>
	</testcase>
	<testcase name="one" classname="one" time="1" status="run">
		<system-out/>
	</testcase>
	<testcase name="two" classname="two" time="0" status="notrun">
		<skipped message=""/>
		<system-out/>
	</testcase>
</testsuite>
END
list="host.mate (the package mate-screensaver is not installed), two"
expect 8 "Left out: $list. See scripts/test.sh --hosts."
echo 0 >"$tmp/status"
expect 0 "Left out: $list. See scripts/test.sh --hosts."
expect 1 "Left out: $list." --hosts
echo "all that is left out is named"
