#!/usr/bin/env bash
# Checks the form of the code (clang-format) and looks for faults without running it (clang-tidy, over
# the build `quick`, which compiles each source by itself). Takes minutes; test.sh does the first half.
#   tools/lint.sh             all sources
#   tools/lint.sh FILE...     these
set -euo pipefail
cd "$(dirname "$0")/.."

tools/check-format.sh "$@"
command -v clang-tidy >/dev/null || { echo "clang-tidy is not installed"; exit 1; }
tools/install-dependencies.sh
cmake --preset quick >/dev/null

sources=("$@")
[ $# -gt 0 ] || mapfile -t sources < <(git ls-files 'src/*.cpp' 'share/*.cpp' 'tests/*.cpp' 'bench/*.cpp' 'tools/*.cpp')
printf '%s\0' "${sources[@]}" |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/quick --quiet --extra-arg=-Wno-unknown-warning-option
echo "No findings."
