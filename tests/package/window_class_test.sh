#!/usr/bin/env bash
# Starts the program on the X display and checks that its window carries the class that the
# desktop entry's StartupWMClass names, so that launchers and task bars match the two. Skipped
# without an X display.
#
#     window_class_test.sh TALLYVANE DESKTOP_ENTRY
set -euo pipefail
program=$1
desktop=$2
. "$(dirname "$0")/common.sh"

[ -n "${DISPLAY:-}" ] || skip "no X display"
require_tool xdotool xdotool
require_tool xprop x11-utils

wanted=$(desktop_value "$desktop" StartupWMClass)
[ -n "$wanted" ] || fail "$desktop has no StartupWMClass"

home=$work/home
make_home "$home"
# Without widgets the program opens its preferences window at once.
env -u WAYLAND_DISPLAY -u XDG_CONFIG_HOME -u XDG_DATA_HOME QT_QPA_PLATFORM=xcb HOME="$home" \
    XDG_RUNTIME_DIR="$home/run" "$program" >"$work/program.log" 2>&1 &
pid=$!
stop_program() {
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    remove_work
}
trap stop_program EXIT

window=
for _ in $(seq 100); do
    window=$(xdotool search --onlyvisible --pid "$pid" 2>/dev/null | head -n 1 || true)
    [ -n "$window" ] && break
    kill -0 "$pid" 2>/dev/null || { cat "$work/program.log"; fail "the program ended early"; }
    sleep 0.1
done
[ -n "$window" ] || { cat "$work/program.log"; fail "no window of the program appeared"; }

# WM_CLASS(STRING) = "instance", "class"
classes=$(xprop -id "$window" WM_CLASS)
[[ $classes =~ =\ \"([^\"]*)\",\ \"([^\"]*)\" ]] || fail "the window has no WM_CLASS: $classes"
[ "${BASH_REMATCH[2]}" = "$wanted" ] ||
    fail "the window's class is '${BASH_REMATCH[2]}', the desktop entry says StartupWMClass=$wanted"
echo "the window's class is $wanted, as the desktop entry says"
