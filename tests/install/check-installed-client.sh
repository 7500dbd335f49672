#!/usr/bin/env bash
# Installs the library into a scratch prefix and builds a small client against
# it twice, the two ways applications do: with pkg-config and with CMake's
# find_package. Also checks that only the public interface is exported.
# Given --prefix=DIR instead of a build folder, it checks a tree already
# installed there (such as the unpacked Debian packages).
set -euo pipefail
build_dir=$1
work=$2
cmake_command=${3:-cmake}

rm -rf "$work"
mkdir -p "$work/client"
prefix=$work/prefix
if [ "${build_dir%%=*}" = --prefix ]; then
  prefix=${build_dir#--prefix=}
else
  "$cmake_command" --install "$build_dir" --prefix "$prefix" >/dev/null
fi

cat > "$work/client/client.cpp" <<'CPP'
#include <cstdio>
#include <vireline/vireline.h>

int main() {
  CPkgPathBase paths;
  char folder[256];
  if (!paths.GetPackageDir(folder, sizeof folder, tPackageType("Application"), 0, "Game1")) return 1;
  std::printf("%s\n", folder);
  return 0;
}
CPP

expected=/QV/Bulk/ProgramFiles/Game1
pc_dir=$(dirname "$(find "$prefix" -name vireline.pc | head -n 1)")
lib_dir=$(dirname "$(find "$prefix" -name 'libvireline.so' | head -n 1)")

# pkg-config
flags=$(PKG_CONFIG_PATH="$pc_dir" pkg-config --cflags --libs vireline)
c++ -std=c++17 "$work/client/client.cpp" $flags -o "$work/client/with-pkg-config"
out=$(LD_LIBRARY_PATH="$lib_dir" "$work/client/with-pkg-config")
[ "$out" = "$expected" ] || { echo "pkg-config client printed '$out'"; exit 1; }

# CMake package
cat > "$work/client/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.16)
project(client CXX)
find_package(vireline 0.1 REQUIRED)
add_executable(client client.cpp)
target_link_libraries(client PRIVATE vireline::vireline)
CMAKE
"$cmake_command" -S "$work/client" -B "$work/client/build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
"$cmake_command" --build "$work/client/build" >/dev/null
out=$(LD_LIBRARY_PATH="$lib_dir" "$work/client/build/client")
[ "$out" = "$expected" ] || { echo "CMake client printed '$out'"; exit 1; }

# Only the public interface leaves the library.
exported=$(nm -D --defined-only -C "$lib_dir/libvireline.so")
# Here-strings, not pipes: grep -q stops reading early, and under pipefail the
# writer's broken pipe would fail the check at random.
grep -q 'CPkgPathBase::GetPackageDir' <<<"$exported" || { echo "public class not exported"; exit 1; }
if grep -q 'vireline::Env' <<<"$exported"; then echo "internal platform symbols exported"; exit 1; fi
grep -q 'SONAME.*libvireline.so.0' <<<"$(readelf -d "$lib_dir/libvireline.so")" || { echo "no SONAME"; exit 1; }
echo "installed client built with pkg-config and CMake; only the public interface is exported"
