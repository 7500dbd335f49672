#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those that are missing.
set -euo pipefail

packages=(build-essential cmake pkg-config libglibmm-2.4-dev libjsoncpp-dev zlib1g-dev libboost-dev
          libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev help2man abigail-tools
          pybind11-dev python3-pybind11 python3-dev python3-pytest python3-pandas)
missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "Installing: ${missing[*]}" >&2
$sudo apt-get update -qq || echo "apt-get update reported errors; trying the install anyway" >&2
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >&2
