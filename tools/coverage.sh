#!/usr/bin/env bash
# Builds everything with gcc's counters, runs the tests and prints how much of quorl/ they reach, by
# lines and by branches; what is not reached is told line by line in build/coverage/uncovered.txt.
# docs/coverage.md gives the reasons.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

source tools/require_packages.sh
require_packages g++ cmake ninja-build libgtest-dev python3 unicode-data gcovr
cmake --preset coverage
cmake --build --preset coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage
# Branches that only an exception takes are the compiler's, one for almost every call.
gcovr --root . --filter quorl/ --exclude-throw-branches --exclude-unreachable-branches \
  --txt build/coverage/uncovered.txt --print-summary build/coverage
