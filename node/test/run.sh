#!/usr/bin/env bash
# The package's tests. Argument: the folder of the libraries. Exit code 77: skipped, a line says why.
set -euo pipefail
export QUORL_LIBRARY=${1:-${QUORL_LIBRARY:?the folder of the libraries}}
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

skip() {
  echo "skipped: $1"
  exit 77
}
command -v node > /dev/null || skip 'there is no node here'
node tools/generate.mjs --check
[[ -d node_modules/koffi ]] || skip 'node_modules has no koffi (npm ci)'
node --test test/*.test.mjs
if [[ -d node_modules/typescript ]]; then
  node node_modules/typescript/bin/tsc --project test
else
  echo 'the declarations are not checked: node_modules has no typescript'
fi
