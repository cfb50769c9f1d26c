#!/usr/bin/env bash
# A recording would be judged one way at the desk and another on the phone: every example on every profile that fits it
# gives the same bytes.
# Usage: same-results.sh DESK_ZQAFT EXAMPLES OTHER_ZQAFT...    (the last with the emulator in front, where there is one)
set -euo pipefail
desk=$1 examples=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
compared=0
for recording in "$examples"/*.getevent; do
    for profile in "$examples"/*.yaml; do
        "$desk" import --profile "$profile" "$recording" >"$work/trace" 2>/dev/null || continue
        "$desk" replay --json "$work/trace" >"$work/desk"
        "$@" replay --json "$work/trace" >"$work/other"
        cmp "$work/desk" "$work/other" || { echo "$recording on $profile" >&2; exit 1; }
        [ -s "$work/desk" ]
        compared=$((compared + 1))
    done
done
echo "$compared pairs of a recording and a profile"
[ "$compared" -ge "$(ls "$examples"/*.getevent | wc -l)" ]
