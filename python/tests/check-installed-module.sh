#!/usr/bin/env bash
# Installs the project into a scratch prefix and imports the Python module
# from there the way a desktop user does: PYTHONPATH at the module's folder
# and nothing else, so the module must find the installed libvireline.so by
# itself (not the build tree's) and its type stub must sit next to it.
#
#   check-installed-module.sh BUILD-DIR WORK-DIR MODULE-DIR-IN-PREFIX PYTHON CMAKE
set -euo pipefail
build_dir=$1 work=$2 module_rel=$3 python=$4 cmake_command=$5

rm -rf "$work"
prefix=$work/prefix
"$cmake_command" --install "$build_dir" --prefix "$prefix" >/dev/null
module_dir=$prefix/$module_rel
[ -f "$module_dir/vireline.pyi" ] || { echo "no type stub in $module_dir"; exit 1; }

cd "$work"
env -u LD_LIBRARY_PATH PYTHONPATH="$module_dir" "$python" - "$module_dir" "$prefix" <<'PY'
import os
import sys

import vireline

module_dir, prefix = (os.path.realpath(p) for p in sys.argv[1:3])
assert os.path.realpath(vireline.__file__).startswith(module_dir + os.sep), vireline.__file__
with open("/proc/self/maps") as maps:
    libraries = {line.split()[-1] for line in maps if "libvireline.so" in line}
assert libraries and all(os.path.realpath(lib).startswith(prefix + os.sep) for lib in libraries), libraries
assert vireline.compare_version("1.10", "1.9") > 0
print("imported vireline", vireline.__version__, "from", module_dir, "with", *libraries)
PY
