#!/usr/bin/env bash
# Does every header compile alone?
set -euo pipefail
cd "$(dirname "$0")/.."
alone() {
  echo "#include \"${1#*/}\"" | g++ -std=c++20 -Wall -Wextra -Werror -fsyntax-only -Iinclude -Isrc -x c++ - ||
    { echo "$1: does not compile alone" >&2; return 1; }
}
export -f alone
git ls-files -z --cached --others --exclude-standard -- 'src/*.h' 'include/*.h' |
  xargs -0 -r -n 1 -P "$(nproc)" bash -c 'alone "$1"' alone
