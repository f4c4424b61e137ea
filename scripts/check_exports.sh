#!/usr/bin/env bash
# Are the symbols that liborvmesh.so exports those of docs/exported-symbols.txt? With --update the list is rewritten.
# Usage: check_exports.sh [--update] [BUILD_DIRECTORY]
set -euo pipefail
cd "$(dirname "$0")/.."
update=0
if [ "${1:-}" = --update ]; then update=1; shift; fi
library=${1:-build/dev}/liborvmesh.so
list=docs/exported-symbols.txt
[ -e "$library" ] || { echo "$library: not built (first: cmake --build ${1:-build/dev})" >&2; exit 1; }

# Instances of the standard library's templates are weak, differ between compilers and are no interface.
symbols() {
  nm -D --defined-only "$library" | awk '{print $NF}' | sed 's/@.*//' |
    grep -vE '^_Z(GVN|ZN|T[ISV]|TSN|TIN|TVN)?K?N?K?(St|Ss|Sa|9__gnu_cxx)' | c++filt | LC_ALL=C sort -u
}
if [ $update = 1 ]; then
  symbols >"$list"
elif ! diff -u "$list" <(symbols) >&2; then
  echo "$list: differs from $library; if the change is meant: scripts/check_exports.sh --update" >&2
  exit 1
fi
