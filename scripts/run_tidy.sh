#!/usr/bin/env bash
# clang-tidy over the project's files of a compilation database. What passed is remembered by the hash of all the text
# that was looked at, so that only what changed since is looked at again.
# Usage: run_tidy.sh [--quick] [BUILD_DIRECTORY]      --quick: without the path-sensitive checks, a third of the time
set -euo pipefail
cd "$(dirname "$0")/.."
export quick=0
if [ "${1:-}" = --quick ]; then quick=1; shift; fi
build=${1:-build/dev}
export build passed=${XDG_CACHE_HOME:-$HOME/.cache}/orvmesh-tidy
mkdir -p "$passed"
export version; version=$(clang-tidy --version | grep -i version; cat .clang-tidy)

# The path-sensitive checks stay out of the tests, where they cost most and find least.
# tidy_one FILE PREPROCESS_COMMAND
tidy_one() {
  local key options=(--quiet --extra-arg=-Wno-unknown-warning-option -p "$build")
  key=$( (echo "$version" "$1"; eval "$2") | sha256sum | cut -d' ' -f1)
  [ ! -e "$passed/$key" ] || return 0
  if [[ $1 == tests/* ]]; then
    options+=("--checks=-clang-analyzer-*")
  elif [ "$quick" = 1 ]; then
    options+=("--checks=-clang-analyzer-*")
    key+=-quick
    [ ! -e "$passed/$key" ] || return 0
  fi
  if clang-tidy "${options[@]}" "$1" 2>/dev/null; then touch "$passed/$key"; else echo "clang-tidy: $1" >&2; return 1; fi
}
export -f tidy_one

/usr/bin/python3 - "$build" <<'PYTHON' | xargs -0 -r -n 2 -P "$(nproc)" bash -c 'tidy_one "$@"' tidy_one
import json, os, shlex, sys
for entry in json.load(open(os.path.join(sys.argv[1], "compile_commands.json"))):
    path = os.path.relpath(entry["file"])
    if path.startswith(("src/", "include/", "python/", "tests/", "bench/", "fuzz/")):
        words = [w for w in shlex.split(entry["command"]) if w != "-c" and "ccache" not in os.path.basename(w)]
        words[words.index("-o"):words.index("-o") + 2] = ["-E", "-P", "-C"]
        print(path, f"cd {shlex.quote(entry['directory'])} && {shlex.join(words)}", sep="\0", end="\0")
PYTHON
# Old results are dropped, so that the folder stays small.
find "$passed" -type f -mtime +60 -delete
