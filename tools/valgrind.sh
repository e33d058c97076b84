#!/usr/bin/env bash
# Runs the test programs under valgrind, some minutes long. An error, or a block of memory that
# nothing leads to any more, ends it with status 1. Left out are long sweeps, and what forks or fails
# allocations by the hundred: the sanitizers see these.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

source tools/require_packages.sh
require_packages g++ cmake ninja-build libgtest-dev valgrind
cmake --preset test
cmake --build --preset test
left_out='*AgreesWith*:*ReadsBack*:*AMillion*:*OnWildArguments:*EveryDayOfTheCalendar*:*DamagedArguments*'
left_out+=':*ArraysWithoutAnEnd*:*OnASmallStack:*CollectionsThatLie*:*DeepNesting*:ParityRe*.*:ThreeWays.*'
left_out+=':Damage.*:Faults.*:InvokeFuzz.*:Kill.*:Memory.*:PowerLoss.*:Sharing.*:Sizes.*'
for program in build/test/tests/*_test; do
  echo "valgrind ${program##*/}"
  # A program's own operator new stays in force.
  GTEST_FILTER=-$left_out valgrind --quiet --leak-check=full --show-leak-kinds=definite \
    --errors-for-leak-kinds=definite --error-exitcode=1 \
    --soname-synonyms=somalloc=nouserintercepts "$program" --gtest_brief=1
done
