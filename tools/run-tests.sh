#!/bin/bash
# Runs every CTest tree given (native, fuzz, Windows-under-Wine) and closes
# with one summary line over all of them. Exit status: 0 only if all passed.
# The Windows tests bring up a private Xvfb, Wine's server and PulseAudio;
# whatever of these was not running before is ended when this script ends,
# however it ends, unless VELMORA_KEEP=1 (then `make stop` ends them later).
set -u
here=$(cd "$(dirname "$0")" && pwd)
before=$("$here/wine-down.sh" --running)
trap '[ "${VELMORA_KEEP:-}" = 1 ] || "$here/wine-down.sh" --except "$before"' EXIT
passed=0 failed=0 status=0
for dir in "$@"; do
  echo "=== tests in $dir"
  log=$(mktemp)
  # Windows tests share one display and wineserver; two at a time is what 2 cores carry.
  ctest --test-dir "$dir" -j2 --output-on-failure 2>&1 | tee "$log"
  [ "${PIPESTATUS[0]}" = 0 ] || status=1
  line=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$log" | tail -1)
  total=$(sed -nE 's/.* out of ([0-9]+).*/\1/p' <<<"$line")
  bad=$(sed -nE 's/.*passed, ([0-9]+) tests failed.*/\1/p' <<<"$line")
  if [ -z "$total" ]; then status=1; failed=$((failed + 1)); else
    passed=$((passed + total - bad)); failed=$((failed + bad)); fi
  rm -f "$log"
done
echo
echo "all: $passed passed, $failed failed"
exit $status
