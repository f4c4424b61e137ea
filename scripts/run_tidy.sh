#!/usr/bin/env bash
# clang-tidy over the project's files of a compilation database. What passed is remembered by the hash of all the text
# that was looked at, so that only what changed since is looked at again.
# Usage: run_tidy.sh [--quick] [BUILD_DIRECTORY]
#   --quick: not the tests, and without the checks that take longest; a sixth of the time
set -euo pipefail
cd "$(dirname "$0")/.."
quick=
parts=(src include python tests bench fuzz)
if [ "${1:-}" = --quick ]; then quick=-quick; parts=(src include python); shift; fi
export build=${1:-build/dev} passed=${XDG_CACHE_HOME:-$HOME/.cache}/orvmesh-tidy quick
mkdir -p "$passed"
export version; version=$(clang-tidy --version | grep -i version; cat .clang-tidy)

# The path-sensitive checks stay out of the tests, where they cost most and find least. The long ones of the others go
# through every line of the system's headers as well; compiler warnings come near to most of them.
paths='-clang-analyzer-*'
long=$paths,-performance-unnecessary-value-param,-bugprone-stringview-nullptr,-bugprone-assert-side-effect
long+=,-bugprone-suspicious-semicolon,-bugprone-multiple-statement-macro,-bugprone-unused-raii
long+=,-bugprone-undelegated-constructor,-bugprone-sizeof-expression,-bugprone-suspicious-string-compare
long+=,-readability-redundant-control-flow,-bugprone-infinite-loop
export paths long

# tidy_one FILE PREPROCESS_COMMAND
tidy_one() {
  local key checks=
  key=$( (echo "$version" "$1"; eval "$2") | sha256sum | cut -d' ' -f1)
  [ ! -e "$passed/$key" ] || return 0
  [[ $1 != tests/* ]] || checks=$paths
  if [ -n "$quick" ]; then
    checks=$long
    key+=$quick
    [ ! -e "$passed/$key" ] || return 0
  fi
  if clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p "$build" --checks="$checks" "$1" 2>/dev/null; then
    touch "$passed/$key"
  else
    echo "clang-tidy: $1" >&2
    return 1
  fi
}
export -f tidy_one

/usr/bin/python3 - "$build" "${parts[@]}" <<'PYTHON' | xargs -0 -r -n 2 -P "$(nproc)" bash -c 'tidy_one "$@"' tidy_one
import json, os, shlex, sys
for entry in json.load(open(os.path.join(sys.argv[1], "compile_commands.json"))):
    path = os.path.relpath(entry["file"])
    if path.split("/")[0] in sys.argv[2:]:
        words = [w for w in shlex.split(entry["command"]) if w != "-c"]
        words[words.index("-o"):words.index("-o") + 2] = ["-E", "-P", "-C"]
        print(path, f"cd {shlex.quote(entry['directory'])} && {shlex.join(words)}", sep="\0", end="\0")
PYTHON
# Old results are dropped, so that the folder stays small.
find "$passed" -type f -mtime +60 -delete
