#!/usr/bin/env bash
# A host would miss a function, or find its own replaced by one of the plug-in's: the library exports what it declares and
# not one symbol more.
# Usage: exports.sh NM LIBRARY
set -euo pipefail
expected="D _ZN7android11aft_versionE
T allocNotifyKeyArgs
T clearRawPointerData
T configureSurface
T copyRawPointerData
T filterAndCompactPointers
T notifyInputExit
T notifyInputStart
T notifyScreenState
T processInputWindow
T processKey
T processRawTouches
T releaseNotifyKeyArgs
T touchDataValid
T touchIsFolded
T touchOnSide"
diff <(echo "$expected") <("$1" -D --defined-only "$2" | cut -d' ' -f2- | LC_ALL=C sort)
