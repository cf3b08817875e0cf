#!/usr/bin/env bash
# Installs the Debian package that deb_build.sh made on this machine, runs the installed
# program, switches open-at-login on for it, upgrades the package and checks that the autostart
# entry still starts it, then removes the package and checks that none of its files is left.
# Needs root and dpkg; skipped otherwise.
#
#     deb_install_test.sh PACKAGE_DIR LOGIN_ENTRY_PROBE
set -euo pipefail
packages=$1
probe=$2
. "$(dirname "$0")/common.sh"

command -v dpkg >/dev/null || skip "dpkg is missing: not a Debian system"
[ "$(id -u)" -eq 0 ] || skip "installing a package needs root; run the tests as root (as CI does)"
require_tool identify imagemagick

shopt -s nullglob
debs=("$packages"/*.deb)
[ ${#debs[@]} -eq 1 ] || fail "no single .deb in $packages; the package_deb_build test makes it"
deb=${debs[0]}
package=$(dpkg-deb --field "$deb" Package)
package_version=$(dpkg-deb --field "$deb" Version)

installed_status() { dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true; }
# Never replace or remove a copy that someone installed on purpose.
case "$(installed_status)" in
'' | not-installed | config-files) ;;
*) skip "$package is already installed here; remove it first (dpkg -r $package)" ;;
esac

remove_package() {
    if [ -n "$(installed_status)" ] && [ "$(installed_status)" != not-installed ]; then
        dpkg --purge "$package" >/dev/null 2>&1 || echo "could not purge $package" >&2
    fi
    remove_work
}
trap remove_package EXIT

dpkg -i "$deb" >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "dpkg -i $deb failed"; }
[ "$(installed_status)" = installed ] || fail "$package is not installed after dpkg -i"
[ "$(dpkg-query -W -f='${Version}' "$package")" = "$package_version" ] ||
    fail "the installed version is not the package's $package_version"
echo "installed $package $package_version"

# The installed program reports the package's version.
installed=/usr/bin/tallyvane
[ -x "$installed" ] || fail "$installed is not installed"
version_text=$("$installed" --version)
[ "$version_text" = "Tallyvane $package_version" ] ||
    fail "$installed --version printed '$version_text', the package is $package_version"

# A snapshot with a fresh HOME and no display: the store is created through Qt's SQLite driver
# (a dependency of the package) and a picture is written.
home=$work/home
make_home "$home"
run_in_home "$home" "$installed" --snapshot "$work/snapshot.png" ||
    fail "$installed --snapshot failed"
[[ "$(picture_format "$work/snapshot.png")" =~ ^PNG\ [1-9][0-9]*\ [1-9][0-9]*$ ]] ||
    fail "the snapshot is not a PNG picture"
store=$home/.local/share/com.velto.tallyvane/TallyWidgets.storedata
[ "$(head -c 15 "$store" 2>/dev/null)" = "SQLite format 3" ] ||
    fail "the snapshot did not create an SQLite widget store at $store"
echo "snapshot written, store created"

# Open at login, switched on for the installed program: the autostart entry starts it by name
# while its folder is on the path, and by its installed path otherwise.
exec_of_entry() {
    local entry
    entry=$(run_in_home "$home" env PATH="$1" "$probe" "$installed") ||
        fail "open at login could not be switched on (PATH=$1)"
    desktop_value "$entry" Exec
}
by_name=$(exec_of_entry /usr/local/bin:/usr/bin:/bin)
[ "$by_name" = tallyvane ] || fail "with /usr/bin on the path, the entry runs '$by_name'"
mkdir -p "$work/empty-bin"
by_path=$(exec_of_entry "$work/empty-bin")
[ "$by_path" = "$installed" ] || fail "without it on the path, the entry runs '$by_path'"
entry=$(run_in_home "$home" env PATH=/usr/bin:/bin "$probe" "$installed")

# An upgrade: the same files under a higher version. dpkg writes a new file and renames it over
# the old one, so anything that kept the old file (rather than its path) would break here.
upgrade_version=$package_version+upgrade
mkdir -p "$work/upgrade"
dpkg-deb --raw-extract "$deb" "$work/upgrade/tree"
sed -i "s/^Version: .*/Version: $upgrade_version/" "$work/upgrade/tree/DEBIAN/control"
dpkg-deb --root-owner-group --build "$work/upgrade/tree" "$work/upgrade/upgrade.deb" >/dev/null
old_inode=$(stat -c %i "$installed")
dpkg -i "$work/upgrade/upgrade.deb" >"$work/dpkg.log" 2>&1 ||
    { cat "$work/dpkg.log"; fail "upgrading to $upgrade_version failed"; }
[ "$(dpkg-query -W -f='${Version}' "$package")" = "$upgrade_version" ] ||
    fail "the upgrade to $upgrade_version did not happen"
[ "$(stat -c %i "$installed")" != "$old_inode" ] || fail "the upgrade did not replace $installed"
command=$(desktop_value "$entry" Exec)
run_in_home "$home" env PATH=/usr/bin:/bin "$command" --version >"$work/after-upgrade.txt" ||
    fail "after the upgrade, the autostart entry's command '$command' does not run"
[ "$(cat "$work/after-upgrade.txt")" = "$version_text" ] ||
    fail "after the upgrade, the autostart entry starts '$(cat "$work/after-upgrade.txt")'"
echo "upgraded to $upgrade_version; the autostart entry still starts $installed"

# Removal leaves none of the package's files, and none of the folders only it used.
dpkg-query -L "$package" >"$work/files.txt"
dpkg -r "$package" >"$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; fail "dpkg -r failed"; }
case "$(installed_status)" in
'' | not-installed) ;;
*) fail "$package is still '$(installed_status)' after dpkg -r" ;;
esac
left=()
while IFS= read -r path; do
    [ "$path" = /. ] && continue
    if [ -d "$path" ] && [ ! -L "$path" ]; then
        # Shared folders stay while other packages use them.
        if [ -z "$(ls -A "$path")" ] && ! dpkg-query -S "$path" >/dev/null 2>&1; then
            left+=("$path/")
        fi
    elif [ -e "$path" ] || [ -L "$path" ]; then
        left+=("$path")
    fi
done <"$work/files.txt"
[ ${#left[@]} -eq 0 ] || fail "dpkg -r left behind: ${left[*]}"
echo "removed; nothing of $package is left ($(wc -l <"$work/files.txt") paths checked)"
