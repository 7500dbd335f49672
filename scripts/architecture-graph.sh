#!/bin/sh
# Draws the library's areas and what each may use, from the CMake targets
# themselves, into docs/architecture.svg (and the Graphviz source next to it).
# Needs cmake and Graphviz's dot (Debian package graphviz). Configures a
# scratch build folder only; nothing is compiled.
set -eu
source_dir=$(cd "$(dirname "$0")/.." && pwd)
build_dir=${1:-$source_dir/build/graph}
mkdir -p "$build_dir"
# Only the library's own targets: no third-party libraries, no programs.
cat > "$build_dir/CMakeGraphVizOptions.cmake" <<'OPTIONS'
set(GRAPHVIZ_GRAPH_NAME "vireline")
set(GRAPHVIZ_EXTERNAL_LIBS FALSE)
set(GRAPHVIZ_INTERFACE_LIBS FALSE)
set(GRAPHVIZ_EXECUTABLES FALSE)
set(GRAPHVIZ_GENERATE_PER_TARGET FALSE)
set(GRAPHVIZ_GENERATE_DEPENDERS FALSE)
set(GRAPHVIZ_IGNORE_TARGETS "^vireline_python$" "^vireline_core$" "^vireline::")
OPTIONS
cmake -S "$source_dir" -B "$build_dir" -DVIRELINE_BUILD_TESTS=OFF -DVIRELINE_BUILD_TOOLS=OFF \
  -DVIRELINE_BUILD_BENCH=OFF -DVIRELINE_BUILD_PYTHON=OFF --graphviz="$build_dir/targets.dot" >/dev/null
cp "$build_dir/targets.dot" "$source_dir/docs/architecture.dot"
dot -Tsvg "$source_dir/docs/architecture.dot" -o "$source_dir/docs/architecture.svg"
echo "docs/architecture.svg"
