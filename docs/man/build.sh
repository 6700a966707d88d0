#!/bin/sh
# One manual page from its scdoc source, plain and gzip-compressed.
#   build.sh SCDOC SOURCE OUTPUT      (writes OUTPUT and OUTPUT.gz)
set -e
mkdir -p "$(dirname "$3")"
"$1" < "$2" > "$3.tmp"
mv "$3.tmp" "$3"
gzip -9n -c "$3" > "$3.gz"
