#!/usr/bin/env bash
# Runs the tour in each language that is installed; each has to print examples/tours/tour.out.
# Arguments: the build folder; `compiled` for the compiled languages alone.
set -euo pipefail
build=$(realpath -- "$1")
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."
export QUORL_LIBRARY=$build PYTHONPATH=python PYTHONIOENCODING=utf-8 PYTHONDONTWRITEBYTECODE=1
failed=0

# prints EXPECTED LANGUAGE COMMAND...: the command prints the content of the file.
prints() {
  if ! command -v "$3" > /dev/null; then
    echo "$2: skipped, there is no $3 here"
  elif "${@:3}" | diff - "$1"; then
    echo "$2: as expected"
  else
    failed=1
  fi
}
prints examples/tours/tour.out C++ "$build/examples/tour_cpp"
prints examples/tours/tour.out C "$build/examples/tour_c" "$build/libquorl.so"
[[ ${2-} != compiled ]] || exit $failed
prints examples/tours/tour.out Python python3 examples/tours/tour.py
prints examples/python/demo.out 'Python, values' python3 examples/python/demo.py
if [[ -d node/node_modules/koffi ]]; then
  prints examples/tours/tour.out JavaScript node examples/tours/tour.mjs
else
  echo 'JavaScript: skipped, node/node_modules has no koffi (npm ci --prefix node)'
fi
exit $failed
