#!/bin/bash
# Runs a test that wants a file which is no part of the project: NeedsFile.sh FILE COMMAND...
# Without the file the test is skipped, which 77 says.
set -euo pipefail
if [[ ! -r $1 ]]; then
  echo "skipped: there is no file ${1##*/} in ${1%/*}"
  exit 77
fi
shift
exec "$@"
