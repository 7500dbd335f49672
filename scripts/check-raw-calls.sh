#!/usr/bin/env bash
# Fails when code outside platform/ calls the C library's file, folder, socket
# or process functions directly: everything must go through the platform layer.
# Reading and writing C streams counts too (files are read and written through
# the platform's file objects); only messages to stdout and stderr are free.
set -euo pipefail
cd "$(dirname "$0")/.."

functions='fopen|fopen64|freopen|fdopen|fclose|open|open64|openat|creat|stat|stat64|lstat|fstat|statvfs|statfs|access|opendir|readdir|closedir|scandir|mkdir|rmdir|unlink|remove|rename|chmod|chown|truncate|socket|connect|bind|listen|accept|system|popen|fork|exec[lv]p?e?|ioctl|mkstemp|mkdtemp|tmpfile|getenv'
streams='fread|fwrite|fgets|fgetc|getc|getc_unlocked|getchar|ungetc|putc|putc_unlocked|fputs|fputc|fprintf|vfprintf|fscanf|vfscanf|getline|getdelim|fseek|fseeko|fseeko64|ftell|ftello|ftello64|fgetpos|fsetpos|rewind|fflush|fileno|setvbuf|setbuf|ferror|feof|clearerr|fopencookie|fmemopen|open_memstream|perror'
# String and character literals are blanked first, so a message such as
# "failed to open (...)" is not taken for a call; comment lines are skipped.
hits=$(git ls-files '*.cpp' '*.cc' '*.h' '*.hpp' \
  | grep -vE '^(platform|tests|bench|examples)/' \
  | xargs -r perl -ne '
      s/"(?:[^"\\]|\\.)*"/""/g; s/'"'"'(?:[^'"'"'\\]|\\.)*'"'"'/'"''"'/g;
      my $code = !m{^\s*//};
      my $stream = m{(^|[^A-Za-z0-9_:.>])(::)?(std::)?('"$streams"')\s*\(} && !m{\b(stdout|stderr)\b};
      print "$ARGV:$.:$_" if $code && ($stream || m{(^|[^A-Za-z0-9_:.>])(::)?(std::)?('"$functions"')\s*\(});
      close ARGV if eof;' || true)
if [ -n "$hits" ]; then
  echo "Direct C library file/folder/socket/process or stream calls outside platform/:" >&2
  echo "$hits" >&2
  exit 1
fi
echo "raw-call check: no direct calls outside platform/"
