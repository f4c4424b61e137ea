#!/usr/bin/env bash
# Is every C++ file as clang-format leaves it? With --fix it becomes so.
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(--dry-run -Werror)
[ "${1:-}" != --fix ] || mode=(-i)
files() { git ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp'; }
if ! messages=$(files | xargs -0 -r -n 20 -P "$(nproc)" clang-format "${mode[@]}" 2>&1); then
  echo "not formatted (to mend: scripts/check_format.sh --fix):" >&2
  grep -oE '^[^ :]+:[0-9]+' <<<"$messages" | sort -u -t: -k1,1 >&2
  exit 1
fi
