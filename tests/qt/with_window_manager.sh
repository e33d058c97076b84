#!/usr/bin/env bash
# Runs a command with a screen of its own and a window manager that puts frames around windows:
#
#     tests/qt/with_window_manager.sh build/test/tests/qt/qt_forms_test
set -euo pipefail

work=$(mktemp --directory)
cleanup() {
  for process in ${manager-} ${server-}; do kill "$process" 2>/dev/null || true; done
  wait
  rm -rf -- "$work"
}
trap cleanup EXIT

# The server chooses a free number, and says so when it listens.
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp 3>"$work/display" 2>"$work/server.log" &
server=$!
for _ in {1..100}; do
  [[ -s $work/display ]] && break
  sleep 0.1
done
export DISPLAY=:$(<"$work/display") QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$work
openbox >"$work/manager.log" 2>&1 &
manager=$!
for _ in {1..100}; do
  xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep --quiet 'window id' && break
  sleep 0.1
done
"$@"
