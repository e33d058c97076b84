#!/usr/bin/env bash
# Prints what the library shows to hosts: the headers below the folder $1 and the names that the
# shared libraries after it export. tests/doors.txt is what it should be; a name in quorl::internal or
# quorl::abi there is one that the classes or the component need from the platform. The adapter for Qt
# is not among them: it is there only where Qt is.
set -euo pipefail
export LC_ALL=C
(cd -- "$1" && find . -type f -not -path './quorl/qt/*' | sed 's|^\./|header |' | sort)
nm --dynamic --defined-only --demangle "${@:2}" | sed -n -E 's/^[0-9a-f]{16} . //p' |
  sed -E 's/^(guard variable|vtable|typeinfo( name)?) for //; s/\[abi:cxx11\]//g; s/\(.*//' |
  grep -v -E '^std::' | sort -u | sed 's/^/symbol /'
