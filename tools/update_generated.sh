#!/usr/bin/env bash
# Writes anew what is generated from the catalogue: docs/quorl.idl, docs/quorl.classes, docs/quorl.json
# and from it the classes of python/quorl and node/lib, and the class tables of quorl/abi/quorl.h.
# Argument: the program describe as built.
#
#   tools/update_generated.sh build/test/tools/describe
set -euo pipefail
describe=$(realpath -- "$1")
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

"$describe" idl > docs/quorl.idl
"$describe" classes > docs/quorl.classes
"$describe" json > docs/quorl.json
tools/generate_python.py
if command -v node > /dev/null; then
  node node/tools/generate.mjs
else
  echo 'node/lib is left as it is: there is no node here' >&2
fi

header=quorl/abi/quorl.h
tables=$(mktemp)
trap 'rm -f "$tables"' EXIT
"$describe" tables > "$tables"
sed -i -e '/^\/\* begin generated \*\/$/,/^\/\* end generated \*\/$/{
/^\/\* begin generated \*\/$/r '"$tables"'
/^\/\* \(begin\|end\) generated \*\/$/!d
}' "$header"
