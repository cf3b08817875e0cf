#!/usr/bin/env bash
# Runs lintian on the Debian package that deb_build.sh made; fails on any error and shows the
# warnings and notes.
#
#     deb_lintian.sh PACKAGE_DIR
set -euo pipefail
packages=$1
. "$(dirname "$0")/common.sh"

require_tool lintian lintian

shopt -s nullglob
debs=("$packages"/*.deb)
[ ${#debs[@]} -eq 1 ] || fail "no single .deb in $packages; the package_deb_build test makes it"
status=0
lintian --display-info "${debs[0]}" >"$work/lintian.txt" 2>&1 || status=$?
cat "$work/lintian.txt"
if grep -q '^E: ' "$work/lintian.txt"; then
    fail "lintian reports errors on ${debs[0]}"
fi
# Exit status 1 means that lintian itself failed, not that it found something.
[ "$status" -eq 0 ] || grep -qE '^[WIPX]: ' "$work/lintian.txt" || fail "lintian did not run (status $status)"
echo "lintian: no error"
