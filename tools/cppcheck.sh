#!/usr/bin/env bash
# Runs cppcheck over all sources but the tests. It ends without a finding; what is suppressed stands
# with its reason in tools/cppcheck_suppressions.txt.
set -euo pipefail
cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.."

source tools/require_packages.sh
require_packages cppcheck
# An attribute between [[noreturn]] and the function hides it from cppcheck 2.10: QUORL_API is empty
# here, and its header is taken for included.
git ls-files 'quorl/*.cpp' 'adapters/*.cpp' 'examples/*.cpp' 'examples/*.c' 'tools/*.cpp' |
  cppcheck --quiet --std=c++20 --enable=warning,performance,portability --error-exitcode=1 \
    --suppressions-list=tools/cppcheck_suppressions.txt -I . \
    -D QUORL_RUNTIME_EXPORT_H -D QUORL_API= --file-list=-
