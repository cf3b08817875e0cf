#!/usr/bin/env bash
# Installs the build into a temporary prefix, as `cmake --install` does, and checks that every
# file a desktop needs is in place and valid: the program, its desktop entry, its AppStream
# metainfo, the icons, the manual page and the package documents.
#
#     install_test.sh BUILD_DIR
set -euo pipefail
build=$1
. "$(dirname "$0")/common.sh"

require_tool desktop-file-validate desktop-file-utils
require_tool appstreamcli appstream
require_tool man man-db
require_tool identify imagemagick
require_tool python3 python3

app_id=com.velto.tallyvane
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log" ||
    { cat "$work/install.log"; fail "cmake --install failed"; }
cd "$prefix"

# The program, and the version it reports.
[ -x bin/tallyvane ] || fail "bin/tallyvane is not installed as an executable"
version_text=$(bin/tallyvane --version)
[[ $version_text =~ ^Tallyvane\ ([0-9]+(\.[0-9]+)+)$ ]] ||
    fail "tallyvane --version printed '$version_text', not 'Tallyvane VERSION'"
version=${BASH_REMATCH[1]}
echo "installed program: $version_text"

# The desktop entry: valid without a single warning, and naming what the launcher needs.
desktop=share/applications/$app_id.desktop
[ -f "$desktop" ] || fail "$desktop is missing"
validation=$(desktop-file-validate "$desktop" 2>&1) ||
    fail "desktop-file-validate rejects $desktop: $validation"
[ -z "$validation" ] || fail "desktop-file-validate warns about $desktop: $validation"
for key in Name GenericName Comment Categories Keywords Icon Exec StartupWMClass; do
    [ -n "$(desktop_value "$desktop" "$key")" ] || fail "$desktop has no $key"
done
[ "$(desktop_value "$desktop" Type)" = Application ] || fail "$desktop is not of type Application"
[ "$(desktop_value "$desktop" Exec)" = tallyvane ] || fail "$desktop does not start tallyvane"
[ "$(desktop_value "$desktop" Icon)" = "$app_id" ] || fail "$desktop does not use the $app_id icon"
[ "$(desktop_value "$desktop" X-GNOME-SingleWindow)" = true ] ||
    fail "$desktop does not say that Tallyvane runs as one instance"

# The metainfo: valid alone and together with the installed tree (its launchable and icons),
# without errors or warnings, and its newest release is the program's version.
metainfo=share/metainfo/$app_id.metainfo.xml
[ -f "$metainfo" ] || fail "$metainfo is missing"
for validation in "validate --no-net $metainfo" "validate-tree --no-net $prefix"; do
    # shellcheck disable=SC2086 # the words of the command are meant to be split
    report=$(appstreamcli $validation 2>&1) || fail "appstreamcli $validation failed: $report"
    if grep -qE '^ *[EW]: ' <<<"$report"; then
        fail "appstreamcli $validation reports: $report"
    fi
done
python3 - "$metainfo" "$app_id" "$version" <<'PYTHON' || fail "$metainfo does not describe the installed program"
import sys
import xml.etree.ElementTree as ET

path, app_id, version = sys.argv[1:]
root = ET.parse(path).getroot()
problems = []
def expect(condition, problem):
    if not condition:
        problems.append(problem)

expect(root.get("type") == "desktop-application", "not a desktop-application component")
expect(root.findtext("id") == app_id, "id is not " + app_id)
expect(root.findtext("launchable") == app_id + ".desktop", "launchable is not the desktop entry")
expect(root.find("launchable").get("type") == "desktop-id", "launchable is not a desktop-id")
expect(root.findtext("provides/binary") == "tallyvane", "does not provide the tallyvane binary")
expect(root.findtext("project_license") == "MIT", "project_license is not MIT")
for tag in ("name", "summary", "description", "developer/name", "url[@type='homepage']"):
    expect((root.find(tag) is not None) and "".join(root.find(tag).itertext()).strip(),
           "no " + tag)
expect(root.find("content_rating[@type='oars-1.1']") is not None, "no OARS content rating")
releases = root.findall("releases/release")
expect(releases and releases[0].get("version") == version,
       "the newest release is not version " + version)
expect(releases and releases[0].get("date"), "the newest release has no date")
shots = root.findall("screenshots/screenshot")
expect(shots, "no screenshot")
for shot in shots:
    expect((shot.findtext("caption") or "").strip(), "a screenshot without caption")
    expect((shot.findtext("image") or "").startswith("https://"), "a screenshot not at https")
for problem in problems:
    print("  " + problem, file=sys.stderr)
sys.exit(1 if problems else 0)
PYTHON

# The icons: the scalable original and a PNG of each size in the hicolor theme.
svg=share/icons/hicolor/scalable/apps/$app_id.svg
python3 - "$svg" <<'PYTHON' || fail "$svg is missing or not an SVG picture"
import sys
import xml.etree.ElementTree as ET

sys.exit(0 if ET.parse(sys.argv[1]).getroot().tag == "{http://www.w3.org/2000/svg}svg" else 1)
PYTHON
for size in 16 22 24 32 48 64 128 256 512; do
    png=share/icons/hicolor/${size}x$size/apps/$app_id.png
    format=$(picture_format "$png")
    [ "$format" = "PNG $size $size" ] ||
        fail "$png should be a PNG of $size by $size pixels, is '${format:-missing}'"
done

# The manual page: renders without a warning, and names every option the program offers.
page=share/man/man1/tallyvane.1.gz
[ -f "$page" ] || fail "$page is missing"
LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$page" >"$work/page.txt" 2>"$work/page.err" ||
    fail "man cannot render $page: $(cat "$work/page.err")"
[ ! -s "$work/page.err" ] || fail "man warns about $page: $(cat "$work/page.err")"
for section in NAME SYNOPSIS DESCRIPTION OPTIONS COMMANDS FILES; do
    grep -q "^$section\$" "$work/page.txt" || fail "$page has no $section section"
done
options=$(bin/tallyvane --help | grep -oE -- '--[a-z][a-z-]*' | sort -u)
[ -n "$options" ] || fail "tallyvane --help names no options"
for option in $options; do
    grep -qF -- "$option" "$work/page.txt" || fail "$page does not describe $option"
done

# What Debian asks of every package: the licence, and a changelog compressed reproducibly.
[ -s share/doc/tallyvane/copyright ] || fail "share/doc/tallyvane/copyright is missing"
gzip -t share/doc/tallyvane/changelog.gz || fail "share/doc/tallyvane/changelog.gz is not gzip"
zcat share/doc/tallyvane/changelog.gz | head -n 1 | grep -q "^tallyvane ($version)" ||
    fail "the changelog's newest entry is not version $version"

echo "every installed file is in place and valid"
