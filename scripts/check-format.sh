#!/bin/sh
# Fails, and shows the places, when a source is not formatted as .clang-format says.
set -eu
cd "$(dirname "$0")/.."
git ls-files -z --cached --others --exclude-standard '*.cpp' '*.h' |
    xargs -0 clang-format --dry-run --Werror
