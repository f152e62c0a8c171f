#!/bin/bash
# Runs one Windows program under Wine in Velmora's test environment and passes
# its exit code on. CTest uses this as the cross-compiling emulator.
here=$(dirname "$0")
"$here/wine-up.sh" || exit 125
. "$here/wine-env.sh"
exec wine "$@"
