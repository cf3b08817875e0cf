#!/usr/bin/env bash
# Builds the Debian package with CPack from the build folder into OUTPUT_DIR, for the tests
# that check and install it.
#
#     deb_build.sh BUILD_DIR OUTPUT_DIR
set -euo pipefail
build=$1
output=$2
. "$(dirname "$0")/common.sh"

require_tool dpkg-shlibdeps dpkg-dev
require_tool dpkg-deb dpkg

rm -rf "$output"
mkdir -p "$output"
(cd "$build" && cpack --config CPackConfig.cmake -G DEB -B "$output") >"$work/cpack.log" 2>&1 ||
    { cat "$work/cpack.log"; fail "cpack could not build the package"; }
shopt -s nullglob
packages=("$output"/*.deb)
[ ${#packages[@]} -eq 1 ] || { cat "$work/cpack.log"; fail "cpack made ${#packages[@]} .deb files, not one"; }
rm -rf "$output/_CPack_Packages"

dpkg-deb --info "${packages[0]}"
depends=$(dpkg-deb --field "${packages[0]}" Depends)
# Computed by dpkg-shlibdeps, so present only when that worked.
for library in libc6 libqt6core6 libqt6widgets6; do
    grep -qE "(^|, )$library( |,|$)" <<<"$depends" ||
        fail "the package does not depend on $library: Depends: $depends"
done
echo "built ${packages[0]}"
