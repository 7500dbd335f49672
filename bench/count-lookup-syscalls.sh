#!/usr/bin/env bash
# Counts the file-system calls of single asset lookups: runs `vireline find`
# under strace on a copy of the sample device image and reports, per lookup,
# the calls that touch the asset's candidate files (expected: one open per
# candidate tried, an openat2 that refuses links as the image is a device
# root, one close for the file found, and no stat of any kind),
# then strace's own summary of the whole process.
#   bench/count-lookup-syscalls.sh [BUILD_DIR]   (default: build-plain)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build-plain}

if ! command -v strace >/dev/null; then
  sudo=""
  [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get install -y strace >/dev/null
fi
if [ ! -x "$build/tools/vireline" ]; then
  cmake -S . -B "$build" >/dev/null
  cmake --build "$build" -j2 --target vireline_tool >/dev/null
fi

image=$(mktemp -d)
trap 'rm -rf "$image"' EXIT
cp -a examples/device-image/. "$image/"

# lookup "description" NAME-PATTERN find-arguments...
lookup() {
  local description=$1 pattern=$2
  shift 2
  local log="$image/strace.log"
  strace -f -qq -y -o "$log" -e trace=%file,%desc "$build/tools/vireline" --root "$image" find "$@" >/dev/null || true
  # The candidate files are the ones whose name holds the asset's (or its placeholder's) name;
  # -y shows the file behind every descriptor, so closes and fstats are matched by name too.
  local opens stats closes
  opens=$(grep -cE "open(at2?)?\(.*($pattern)\"" "$log" || true)
  stats=$(grep -cE "(stat|statx|access|faccessat|readlink)[a-z0-9]*\(.*($pattern)" "$log" || true)
  closes=$(grep -cE "close\([0-9]+<.*($pattern)>\)" "$log" || true)
  printf '%-48s opens %2d  stats %d  closes %d\n' "$description" "$opens" "$stats" "$closes"
}

title=/QV/Bulk/ProgramFiles/ZooKeeper
echo "File-system calls on the candidate files of one lookup (fresh process each):"
lookup "find art welcome.png (first candidate)" "welcome\.png" art welcome.png
lookup "find art dragon.png (full chain + placeholder)" "dragon\.png|missingAsset\.png" art dragon.png
lookup "find audio hello.wav (second folder)" "hello\.wav" audio hello.wav --title "$title"
lookup "find audio roar.mp3 (full chain + placeholder)" "roar\.(wav|mp3)|h_BROM_AudioNotFoundSfx_6\.(wav|mp3)" \
  audio roar.mp3 --title "$title"
echo
echo "strace -c -f of the whole 'vireline find audio roar.mp3 --title $title' process (start-up, settings and lookup):"
strace -c -f -o "$image/summary.txt" "$build/tools/vireline" --root "$image" find audio roar.mp3 --title "$title" >/dev/null || true
cat "$image/summary.txt"
