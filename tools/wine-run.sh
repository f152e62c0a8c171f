#!/bin/bash
# Runs one Windows program under Wine in Velmora's test environment and passes
# its exit code on. CTest uses this as the cross-compiling emulator.
#
# The program writes into files that are relayed when it ends, not into our
# own stdout/stderr: Wine starts helper processes on demand (its services, the
# desktop, a recorder the program launches) that outlive the program and would
# keep any inherited pipe open, so CTest would wait on them long after the
# test itself finished.
here=$(dirname "$0")
. "$here/wine-env.sh"
environment_in_use
"$here/wine-up.sh" || exit 125

log=$(mktemp -d "$VELMORA_STATE/run.XXXXXX")
relay() {
  cat "$log/out" 2>/dev/null
  cat "$log/err" >&2 2>/dev/null
  rm -rf "$log"
}
wine "$@" <&0 >"$log/out" 2>"$log/err" &
pid=$!
trap 'kill $pid 2>/dev/null; relay; exit 124' TERM INT HUP
wait $pid
rc=$?
relay
exit $rc
