#!/bin/sh
# Lints manual pages with mandoc at warning level and fails on any finding,
# except the empty-paragraph notes that scdoc's own output always gives.
#   lint.sh MANDOC PAGE...
mandoc=$1
shift
out=$("$mandoc" -Tlint -W warning "$@" 2>&1 | grep -v 'WARNING: skipping paragraph macro: PP \(empty\|after SH\)')
if [ -n "$out" ]; then
  printf '%s\n' "$out"
  exit 1
fi
echo "manual pages: $# clean"
