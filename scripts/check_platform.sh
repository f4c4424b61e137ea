#!/usr/bin/env bash
# Can a site link a platform library of its own (docs/platform.md)? Looks at the shared library that a build made over
# examples/platform, runs a program on it, and looks what -DORVMESH_PLATFORM_LIBRARY makes of library and command.
# Usage: check_platform.sh [--build] [BUILD_DIRECTORY]     --build: builds and runs these two as well (minutes)
set -euo pipefail
cd "$(dirname "$0")/.."
whole=0
if [ "${1:-}" = --build ]; then whole=1; shift; fi
build=$(realpath "${1:-build/dev}")
over=$build/examples/platform
platform=$over/libexample_platform.a
other=build/platform
log=$(mktemp)
trap 'rm -f "$log"' EXIT
fail() { echo "check_platform: $*" >&2; exit 1; }
quietly() { "$@" >"$log" 2>&1 || { cat "$log" >&2; fail "$* failed"; }; }

# check_library DIRECTORY: exports what it must, holds the other platform and not the embedded one
check_library() {
  quietly scripts/check_exports.sh "$1"
  quietly nm -C "$1/liborvmesh.so"
  if grep -q 'orvmesh::embedded::' "$log"; then fail "$1: the embedded platform is in the library all the same"; fi
  grep -q 'memory_platform::' "$log" || fail "$1: the other platform is not in the library"
}

# check_words COMMAND...: a mesh on the disk is none in memory; the other platform's own words
check_words() {
  local told
  told=$("$@" 2>&1) && fail "a mesh out of nothing"
  grep -q 'no such OFE file in memory' <<<"$told" || fail "another platform than the example's answers: $told"
}

[ -e "$over/liborvmesh.so" ] || fail "$over/liborvmesh.so: not built (first: cmake --build $build)"
check_library "$over"
check_words "$over/assemble_on_example" README.md nowhere

quietly cmake -G Ninja -S . -B "$other" -DCMAKE_BUILD_TYPE=Debug -DORVMESH_BUILD_TESTS=OFF \
  -DORVMESH_PLATFORM_LIBRARY="$platform"
for target in orvmesh orvmesh_cli; do
  quietly ninja -C "$other" -t commands $target
  grep -q 'libexample_platform.a' "$log" || fail "$target is not linked with the library that was named"
  if grep -q 'src/embedded/' "$log"; then fail "$target takes objects of src/embedded"; fi
done
if [ $whole = 1 ]; then
  quietly cmake --build "$other" --target orvmesh orvmesh_cli --parallel "$(nproc)"
  check_library "$other"
  quietly "$other/src/cli/orvmesh" variants
  check_words "$other/src/cli/orvmesh" info README.md
fi
echo "linked and run with $(basename "$platform")"
