#!/usr/bin/env bash
# Does every header compile alone: the project's own as C++20, the exported ones as C++17 and C++20 with both compilers?
# One that is the first line of its own source file was compiled so with that.
set -euo pipefail
cd "$(dirname "$0")/.."
# alone COMPILER STANDARD HEADER
alone() {
  local options=(-Isrc)
  [[ $3 != include/* ]] || options=(-Wpedantic)
  echo "#include \"${3#*/}\"" |
    "$1" -std="$2" -Wall -Wextra "${options[@]}" -Werror -fsyntax-only -Iinclude -x c++ - ||
    { echo "$3: does not compile alone ($1 -std=$2)" >&2; return 1; }
}
export -f alone
headers() { git ls-files -z --cached --others --exclude-standard -- "$1"; }
without_source() {
  while IFS= read -r -d '' header; do
    [ "$(head -n 1 "${header%.h}.cpp" 2>/dev/null)" = "#include \"${header#src/*}\"" ] || printf '%s\0' "$header"
  done
}
each() { xargs -0 -r -n 1 -P "$(nproc)" bash -c 'alone "$@"' alone "$@"; }
headers 'src/*.h' | without_source | each g++ c++20
for compiler in g++ clang++; do
  for standard in c++17 c++20; do headers 'include/*.h' | each $compiler $standard; done
done
