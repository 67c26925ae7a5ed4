#!/bin/sh
# Runs the pages of Qt Quick, two windows at once among them, under the thread sanitizer. Fails when
# two threads of ours meet in one place.
#   threads.sh [GTEST ARGUMENTS...]
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$top"
scripts/deps.sh build tests display
scripts/configure.sh tsan -DATOLLIA_TESTS=ON
# What the build itself runs is not what is looked at.
TSAN_OPTIONS=report_bugs=0 cmake --build --preset tsan --target data item_test
[ $# -gt 0 ] || set -- --gtest_filter='*TwoWindows*:*ThePageAround*:*SettingsTakeEffect*:*ComeAndGo*:ReefSounds.*'
TSAN_OPTIONS="suppressions=$top/tests/quick/threads.supp ignore_noninstrumented_modules=1" \
    exec build/tsan/tests/quick/item_test "$@"
