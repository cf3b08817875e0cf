#!/usr/bin/env bash
# The real application with N stored widgets counted in UNIT (time or day), under a temporary
# HOME, for the side-by-side comparison with the anchors:
#   ../shared/bench-anchors/compare.sh "bench/app_live.sh build/src/tallyvane {N} {UNIT}" 50
# The widgets are added through the command line before the program starts; the script then
# becomes the program (exec), so that its process id is the one measured.
set -euo pipefail
program=$1 count=$2 unit=$3
home=$(mktemp -d /tmp/tallyvane-live.XXXXXX)
export HOME=$home
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME
# Events a few weeks to a few months ahead, so that day-counted widgets do not turn over.
for i in $(seq "$count"); do
    "$program" add --title "Event $i" --date "$(date -d "+$((20 + i)) days" +%F) 12:00" \
        --unit "$unit" --style $((i % 12)) >/dev/null
done
exec "$program"
