#!/usr/bin/env bash
# Fails when code outside platform/ calls the C library's file, folder, socket
# or process functions directly: everything must go through the platform layer.
set -euo pipefail
cd "$(dirname "$0")/.."

functions='fopen|fopen64|freopen|fdopen|fclose|open|open64|openat|creat|stat|stat64|lstat|fstat|statvfs|statfs|access|opendir|readdir|closedir|scandir|mkdir|rmdir|unlink|remove|rename|chmod|chown|truncate|socket|connect|bind|listen|accept|system|popen|fork|exec[lv]p?e?|ioctl|mkstemp|mkdtemp|tmpfile|getenv'
# String and character literals are blanked first, so a message such as
# "failed to open (...)" is not taken for a call; comment lines are skipped.
hits=$(git ls-files '*.cpp' '*.cc' '*.h' '*.hpp' \
  | grep -vE '^(platform|tests|bench|examples)/' \
  | xargs -r perl -ne '
      s/"(?:[^"\\]|\\.)*"/""/g; s/'"'"'(?:[^'"'"'\\]|\\.)*'"'"'/'"''"'/g;
      print "$ARGV:$.:$_" if !m{^\s*//} && m{(^|[^A-Za-z0-9_:.>])(::)?(std::)?('"$functions"')\s*\(};
      close ARGV if eof;' || true)
if [ -n "$hits" ]; then
  echo "Direct C library file/folder/socket/process calls outside platform/:" >&2
  echo "$hits" >&2
  exit 1
fi
echo "raw-call check: no direct calls outside platform/"
