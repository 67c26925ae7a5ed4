#!/bin/sh
# Runs the fault tests at their full length: every data file missing, empty, cut and random, one by
# one; stopped for a minute; started and ended two hundred times. Takes ten minutes on a quiet
# machine.
#   faults.sh [GTEST ARGUMENTS...]
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh build tests
scripts/configure.sh release -DATOLLIA_TESTS=ON
cmake --build --preset release --target faults_test data >/dev/null
FAULTS_THOROUGH=1 exec build/release/tests/faults/faults_test "$@"
