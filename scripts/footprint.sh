#!/usr/bin/env bash
# Reports the footprint: the stripped size of libvireline.so for armhf (fails
# at 1 MiB or more) and for the host, and the inspector's peak resident memory
# on a copy of the sample device image.
#   scripts/footprint.sh [PLAIN_BUILD] [ARMHF_BUILD]   (defaults: build/plain build-armhf)
set -euo pipefail
cd "$(dirname "$0")/.."
plain=${1:-build/plain}
armhf=${2:-build-armhf}
limit=$((1024 * 1024))
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# stripped_size STRIP LIBRARY: the bytes of the library with its symbols and debug data stripped.
stripped_size() {
  "$1" --strip-unneeded -o "$work/stripped.so" "$2"
  stat -c %s "$work/stripped.so"
}

status=0
if [ -f "$armhf/libvireline.so" ]; then
  size=$(stripped_size arm-linux-gnueabihf-strip "$(readlink -f "$armhf/libvireline.so")")
  verdict="under 1 MiB"
  if [ "$size" -ge "$limit" ]; then verdict="1 MiB OR MORE"; status=1; fi
  printf 'libvireline.so, armhf, stripped: %d bytes (%.0f KiB), %s\n' "$size" "$(echo "$size / 1024" | bc -l)" "$verdict"
else
  echo "SKIPPED: armhf library size (no $armhf/libvireline.so)"
fi
if [ -f "$plain/libvireline.so" ]; then
  size=$(stripped_size strip "$(readlink -f "$plain/libvireline.so")")
  printf 'libvireline.so, host, stripped: %d bytes (%.0f KiB)\n' "$size" "$(echo "$size / 1024" | bc -l)"
fi

tool="$plain/tools/vireline"
if [ -x "$tool" ]; then
  cp -a examples/device-image/. "$work/image/"
  peak=0
  for command in "paths" "apps" "profiles" "find art welcome.png" "settings" "log stats"; do
    # shellcheck disable=SC2086
    /usr/bin/time -f '%M' -o "$work/rss" "$tool" --root "$work/image" $command >/dev/null 2>&1 || true
    kib=$(tail -n 1 "$work/rss")
    [[ "$kib" =~ ^[0-9]+$ ]] && [ "$kib" -gt "$peak" ] && peak=$kib
  done
  echo "inspector peak resident memory on the sample image: $peak KiB (largest of: paths, apps, profiles, find, settings, log stats)"
fi
exit $status
