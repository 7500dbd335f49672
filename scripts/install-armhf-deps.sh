#!/usr/bin/env bash
# Installs what building for the devices' 32-bit ARM processor (Debian armhf)
# and running the result under emulation need: the cross compiler, qemu-user and
# the armhf development packages of the library's dependencies.
#
# Debian multiarch needs a package that exists for both architectures at the
# same version on both. When the armhf index of a suite cannot be fetched (the
# security suite's often fails its size check), the armhf side only sees the
# main suite's versions and apt reports held packages; this script then pins
# those packages, and their installed siblings, to the armhf side's version on
# both architectures, and says which ones it pinned.
#
# Exit status: 0 when everything is installed; 3 when the package mirror
# refused the packages (no armhf index, or downloads refused), with the reason
# printed last; 1 on any other failure.
set -euo pipefail

readonly kRefused=3
readonly kTargetArch=armhf
native_arch=$(dpkg --print-architecture)
readonly native_arch
native_packages=(g++-arm-linux-gnueabihf qemu-user cmake pkg-config libboost-dev libcli11-dev)
target_packages=(libglibmm-2.4-dev libjsoncpp-dev zlib1g-dev libgtest-dev libgmock-dev libbenchmark-dev)
log=$(mktemp)
trap 'rm -f "$log"' EXIT

say() { echo "install-armhf-deps: $*"; }

refused() {
  say "the package mirror refused the packages the armhf stage needs: $*"
  exit "$kRefused"
}

installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}

wanted=("${native_packages[@]}")
for package in "${target_packages[@]}"; do wanted+=("$package:$kTargetArch"); done
missing=()
for package in "${wanted[@]}"; do installed "$package" || missing+=("$package"); done
if [ ${#missing[@]} -eq 0 ]; then
  say "all armhf build dependencies already installed"
  exit 0
fi

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
apt_get() {
  DEBIAN_FRONTEND=noninteractive $sudo apt-get -o DPkg::Lock::Timeout=600 "$@"
}

if ! dpkg --print-foreign-architectures | grep -qx "$kTargetArch"; then
  $sudo dpkg --add-architecture "$kTargetArch"
  say "added the $kTargetArch architecture to dpkg"
fi

# A failed index leaves that suite's packages out; what is left may still do.
apt_get update >"$log" 2>&1 || true
if grep -qE '^(E|W): (Failed to fetch|Some index files)' "$log"; then
  say "apt-get update could not fetch some indexes; going on with what it has:"
  grep -E '^(E|W): Failed to fetch' "$log" | sed 's/^/  /' || true
fi
if ! apt-cache policy | grep -q " $kTargetArch Packages\$"; then
  refused "no $kTargetArch package index could be fetched ($(grep -m1 -E '^(E|W):' "$log" || echo 'no error text'))"
fi

# Prints the candidate version of package $1 for architecture $2, or nothing.
candidate() {
  apt-cache policy "$1:$2" 2>/dev/null | awk '/Candidate:/ { if ($2 != "(none)") print $2 }'
}

# Prints the "name:arch=version" pins that give the held package $1 and those
# of its installed siblings (same source package and version) that must move
# with it, Multi-Arch: same or bound by an exact version, the armhf side's
# version on the native architecture. The armhf side takes that version anyway.
pins_for() {
  local name=$1 target_version native_version source
  target_version=$(candidate "$name" "$kTargetArch")
  native_version=$(dpkg-query -W -f='${Version}' "$name:$native_arch" 2>/dev/null || true)
  [ -n "$target_version" ] && [ -n "$native_version" ] && [ "$target_version" != "$native_version" ] || return 0
  source=$(dpkg-query -W -f='${source:Package}' "$name:$native_arch")
  {
    echo "$name"
    dpkg-query -W -f='${Package}\t${source:Package}\t${Version}\t${Multi-Arch}\t${Depends}\n' 2>/dev/null \
      | awk -F'\t' -v s="$source" -v v="$native_version" \
          '$2 == s && $3 == v && ($4 == "same" || index($5, "(= " v ")")) { print $1 }'
  } | sort -u | while read -r sibling; do
    installed "$sibling:$native_arch" || continue
    apt-cache show "$sibling:$native_arch=$target_version" >/dev/null 2>&1 \
      && echo "$sibling:$native_arch=$target_version"
  done
}

# The packages apt named as not installable in its last answer.
held_packages() {
  grep -oE "(^ [^ ]+|Depends: [^ ]+)" "$log" | sed -E 's/^(Depends:)? *//; s/:.*//' | sort -u
}

pins=()
for round in 1 2 3 4; do
  if apt_get install -y --no-install-recommends --no-remove --allow-downgrades \
       "${missing[@]}" ${pins[@]+"${pins[@]}"} >"$log" 2>&1; then
    break
  fi
  if grep -qE '^E: (Failed to fetch|Unable to fetch)' "$log"; then
    refused "$(grep -m1 -E '^E: (Failed to fetch|Unable to fetch)' "$log")"
  fi
  if ! grep -qE 'held broken packages|unmet dependencies' "$log" || [ "$round" -eq 4 ]; then
    say "apt-get install failed:"
    tail -n 25 "$log"
    exit 1
  fi
  added=0
  for name in $(held_packages); do
    for pin in $(pins_for "$name"); do
      case " ${pins[*]-} " in *" $pin "*) ;; *) pins+=("$pin"); added=1 ;; esac
    done
  done
  if [ "$added" -eq 0 ]; then
    say "apt-get reports held packages that matching versions does not resolve:"
    tail -n 25 "$log"
    exit 1
  fi
  say "held packages: the $kTargetArch side lacks the installed $native_arch versions; pinning both architectures to: ${pins[*]}"
done

for pin in ${pins[@]+"${pins[@]}"}; do
  case "$pin" in *:"$native_arch"=*) say "changed ${pin%%=*} to version ${pin#*=} to match $kTargetArch" ;; esac
done
say "installed: ${missing[*]}"
