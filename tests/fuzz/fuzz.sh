#!/usr/bin/env bash
# Feeds each target so many seconds with what libFuzzer makes of its corpus: fuzz.sh [SECONDS]. What
# breaks a promise is kept in build/fuzz; put it into the corpus with the fix.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.."
seconds=${1:-60}

cmake --preset fuzz > /dev/null
cmake --build --preset fuzz
for corpus in tests/fuzz/corpus/*; do
  name=${corpus##*/}
  mkdir -p "build/fuzz/corpus/$name"
  echo "fuzzing $name for $seconds s"
  QUORL_FUZZ_TARGET=$name build/fuzz/tests/fuzzer -max_len=4096 -max_total_time="$seconds" \
    -artifact_prefix="build/fuzz/$name-" -verbosity=0 -print_final_stats=1 \
    "build/fuzz/corpus/$name" "$corpus"
done
echo "fuzzing calls by name for $seconds s"
build/fuzz/tests/invoke_fuzzer -max_len=4096 -max_total_time="$seconds" -verbosity=0 \
  -artifact_prefix=build/fuzz/invoke- -print_final_stats=1
