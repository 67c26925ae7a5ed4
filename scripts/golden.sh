#!/bin/sh
# Takes the pictures that the picture tests compare with anew. Look at every one that changed, and
# commit them alone, saying why the picture moved.
set -eu
cd "$(dirname "$0")/.."
scripts/configure.sh release -DATOLLIA_TESTS=ON
cmake --build --preset release --target data snapshot golden_test
ATOLLIA_NEW_GOLDEN=1 build/release/tests/scene/golden_test --gtest_filter='*GoldenPicture*'
git status --short tests/scene/golden
