#!/usr/bin/env bash
# Counts the system calls of single library operations with `strace -f -c`
# and fails when one makes more than its budget in bench/syscall-budgets.txt.
# Each operation runs in vireline_syscall_probe on a fresh copy of
# examples/device-image, once with the operation and once without it; the
# difference of the totals is the operation's count.
#   scripts/check-syscall-budgets.sh [BUILD_DIR]   (default: build/plain)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/plain}
probe="$build/bench/vireline_syscall_probe"
budgets=bench/syscall-budgets.txt

if ! command -v strace >/dev/null; then
  sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get install -y strace >/dev/null 2>&1 || true
fi
if ! command -v strace >/dev/null; then
  echo "SKIPPED: syscall budgets (strace is not installed and could not be)"
  exit 0
fi
[ -x "$probe" ] || cmake --build "$build" -j2 --target vireline_syscall_probe >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# total OPERATION COUNT: the system calls of one probe run on a fresh image.
total() {
  rm -rf "$work/image"
  cp -a examples/device-image/. "$work/image/"
  strace -f -c -o "$work/summary" "$probe" "$work/image" "$1" "$2" 2>/dev/null >/dev/null
  # strace's last line: "% time, seconds, usecs/call, calls, [errors,] total".
  awk '$NF == "total" { print $4 }' "$work/summary"
}

failed=0
printf '%-16s %7s %7s\n' operation calls budget
while read -r operation budget _; do
  case "$operation" in ''|\#*) continue ;; esac
  base=$(total "$operation" 0)
  with=$(total "$operation" 1)
  count=$((with - base))
  verdict=ok
  if [ "$count" -gt "$budget" ]; then verdict="OVER BUDGET"; failed=1; fi
  printf '%-16s %7d %7d  %s\n' "$operation" "$count" "$budget" "$verdict"
done < "$budgets"
exit $failed
