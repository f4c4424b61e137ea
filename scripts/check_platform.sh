#!/usr/bin/env bash
# Can a site link a platform library of its own? Builds the shared library and the command with that of
# examples/platform in place of the embedded one (docs/platform.md), looks at what they show and need, and runs both.
# Usage: check_platform.sh [BUILD_DIRECTORY]      a build directory that has the example's library
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(realpath "${1:-build/dev}")
platform=$build/examples/platform/libexample_platform.a
other=build/platform
log=$(mktemp)
trap 'rm -f "$log"' EXIT
fail() { echo "check_platform: $*" >&2; exit 1; }
quietly() { "$@" >"$log" 2>&1 || { cat "$log" >&2; fail "$* failed"; }; }

[ -e "$platform" ] || fail "$platform: not built (first: cmake --build $build)"
quietly cmake -G Ninja -S . -B "$other" -DCMAKE_BUILD_TYPE=Debug -DORVMESH_BUILD_TESTS=OFF \
  -DORVMESH_PLATFORM_LIBRARY="$platform"
quietly cmake --build "$other" --target orvmesh orvmesh_cli --parallel "$(nproc)"
quietly scripts/check_exports.sh "$other"
library=$other/liborvmesh.so
if nm -C "$library" | grep -q 'orvmesh::embedded::'; then fail "the embedded platform is in the library all the same"; fi
quietly nm -C "$library"
grep -q 'memory_platform::' "$log" || fail "the other platform is not in the library"
quietly "$other/src/cli/orvmesh" variants
# A mesh on the disk is none in memory: the other platform's own words.
told=$("$other/src/cli/orvmesh" info README.md 2>&1) && fail "a mesh out of nothing"
grep -q 'no such OFE file in memory' <<<"$told" || fail "another platform than the example's answers: $told"
echo "built, linked and run with $(basename "$platform")"
