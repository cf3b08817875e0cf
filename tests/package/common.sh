# Shared by the packaging tests (sourced): messages, skipping, a work folder removed at exit.

skip_exit_code=77

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

skip() {
    echo "SKIP: $*"
    exit "$skip_exit_code"
}

# The validators and tools come from Debian packages that scripts/setup installs.
require_tool() {
    command -v "$1" >/dev/null || fail "$1 is not installed (Debian package $2; scripts/setup installs it)"
}

# A private folder for the test's files; world-readable, since man-db reads pages as its own user.
work=$(mktemp -d "${TMPDIR:-/tmp}/tallyvane-package.XXXXXX")
chmod 755 "$work"
remove_work() { rm -rf "$work"; }
trap remove_work EXIT

# A temporary HOME with its own settings, data and runtime folders, so that running the program
# touches nothing of the user's and meets no running instance.
make_home() {
    local home=$1
    mkdir -p "$home/.config" "$home/.local/share" "$home/run"
    chmod 700 "$home/run"
}
run_in_home() {
    local home=$1
    shift
    env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM -u XDG_CONFIG_HOME -u XDG_DATA_HOME \
        HOME="$home" XDG_RUNTIME_DIR="$home/run" "$@"
}

# The value of a key of a desktop entry's main group.
desktop_value() {
    awk -v key="$2" -F= '
        /^\[/ { main = ($0 == "[Desktop Entry]"); next }
        main && $1 == key { sub(/^[^=]*=/, ""); print; exit }' "$1"
}

# "PNG 48 48" for a PNG picture of 48 by 48 pixels; ImageMagick decodes the whole file.
picture_format() {
    identify -format '%m %w %h\n' "$1" 2>/dev/null | head -n 1
}
